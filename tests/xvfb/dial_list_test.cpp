// The dial list pullout in the real window: pictures of the POP and ISP views for a person to
// look at, and how long the longest phone book takes from its arrival to being on screen.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>
#include <QTreeView>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "dravlink/dial_list.h"
#include "dravlink/engine_arrays.h"
#include "dravlink/store.h"
#include "platform/qt/form_window.h"
#include "real_program.h"
#include "support/scripted_engine.h"

namespace {

namespace fs = std::filesystem;
using kw::automation::Variant;
using kw::dialer::ToPullout;
using kw::test::Names;

constexpr const char* kFrom = "Home Office";
constexpr const char* kTo = "Ostvarra Corporate";

// Holds the first paint of a widget after it is armed.
class PaintWatch : public QObject {
  public:
    bool painted = false;

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted = true;
        }
        return false;
    }
};

// The real program on the Qt platform, its engine answering with the simulator's own tables.
class DialListWindowTest : public kw::test::RealProgramTest {
  protected:
    // The engine data: the shipped sample, with a generated phone book of count numbers.
    dravlink::Store Data(int generated) {
        const fs::path data = home_ / "dravlink";
        fs::create_directories(data);
        dravlink::Store::Seed(data, fs::path(KW_SOURCE_DIR) / "assets" / "dravlink");
        if (generated > 0) {
            std::ofstream(data / "engine.ini") << "[Engine]\nGeneratedPOPs = Bluewave Online | 1 | "
                                                  "512 | "
                                               << generated << "\n";
        }
        return dravlink::Store::Load(data);
    }

    void Start(const dravlink::Store& store) {
        const dravlink::Destination& to = *const_cast<dravlink::Store&>(store).FindDestination(kTo);
        const dravlink::Location& from = *const_cast<dravlink::Store&>(store).FindLocation(kFrom);
        rows_ = dravlink::DialListArray(dravlink::ComputeDialList(store, "anna", from, to).rows);
        engine_->Default("GetPhoneList", Variant(true), {{0, Names({kTo, "Engineering Lab"})}});
        engine_->Default("GetLocationList", Variant(true), {{0, Names({kFrom, "New York Hotel"})}});
        engine_->Default("GetCallingCardList", Variant(false));
        engine_->Default("GetPolicySetting", Variant(true), {{2, Variant(std::string("1"))}});
        engine_->Default(
            "GetISPList", Variant(std::int32_t{0}),
            {{1, dravlink::IspListArray(dravlink::ComputeIspList(store, "anna", to))}});
        Launch("kestrelway-diallist-test",
               [this](const kw::dialer::EngineContext&) { return engine_; });
        engine_->RaiseGetGenericISPList("", Variant());
        QTest::qWait(300);
        Click(Win(), "btnToPullout");
        ASSERT_TRUE(platform_->WindowOf(To())->isVisible());
    }

    ToPullout& To() { return Form<ToPullout>(); }
    QTreeView* Rows() { return WindowOf(To())->findChild<QTreeView*>("lstvDialList"); }

    Variant rows_;
    std::shared_ptr<kw::test::ScriptedEngine> engine_ =
        std::make_shared<kw::test::ScriptedEngine>();
};

TEST_F(DialListWindowTest, ThePopAndIspViewsOnScreen) {
    Start(Data(0));
    engine_->RaiseGetGenericISPList("", rows_);
    QTest::qWait(200);
    QTreeView* rows = Rows();
    ASSERT_NE(rows, nullptr);
    Click(To(), "rbISP");
    EXPECT_EQ(rows->model()->headerData(0, Qt::Horizontal).toString(), "Name");
    EXPECT_GT(rows->model()->rowCount(), 1);
    Shot(To(), "dial-list-isps");

    Click(To(), "rbPOP");
    engine_->RaiseGetGenericISPList("", rows_);
    QTest::qWait(200);
    // The user picks a row and clears the tick of the second.
    To().lstvDialList.UserSelectItem(1);
    To().lstvDialList.UserCheck(2, false);
    To().lstvDialList.UserMouseUp(kw::forms::mouse::kLeft, 0, 12, 30);
    EXPECT_EQ(rows->model()->rowCount(), To().lstvDialList.ItemCount());
    EXPECT_GT(rows->model()->rowCount(), 3);
    EXPECT_TRUE(To().btnUp.Visible());
    Shot(To(), "dial-list-pops");
}

TEST_F(DialListWindowTest, TheLongestPhoneBookIsOnScreenSoonAfterItArrives) {
    Start(Data(32746));
    QTreeView* rows = Rows();
    ASSERT_NE(rows, nullptr);
    PaintWatch watch;
    rows->viewport()->installEventFilter(&watch);
    QElapsedTimer clock;
    clock.start();
    engine_->RaiseGetGenericISPList("", rows_);
    const qint64 handled = clock.elapsed();
    while (!watch.painted && clock.elapsed() < 30000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    const qint64 shown = clock.elapsed();
    std::printf("  32,767 rows: handled in %lld ms, on screen after %lld ms\n",
                static_cast<long long>(handled), static_cast<long long>(shown));
    EXPECT_EQ(rows->model()->rowCount(), 32767);
    EXPECT_TRUE(watch.painted);
    EXPECT_LT(shown, 10000) << "a phone book this long must not stall the window";
    Shot(To(), "dial-list-32767");
}

}  // namespace
