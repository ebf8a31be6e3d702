// The dial list pullout in the real window: pictures of the POP and ISP views for a person to
// look at, and how long the longest phone book takes from its arrival to being on screen.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>
#include <QTreeView>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "dravlink/dial_list.h"
#include "dravlink/engine_arrays.h"
#include "dravlink/store.h"
#include "real_program.h"

namespace {

namespace fs = std::filesystem;
using kw::automation::Variant;
using kw::dialer::ToPullout;

// Holds the first paint of a widget after it is armed.
class PaintWatch : public QObject {
  public:
    bool painted = false;

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

// The program with the dial list pullout open, its engine answering from the simulator's tables.
class DialListWindowTest : public kw::test::RealProgramTest {
  protected:
    // The shipped sample data, with a generated phone book of `generated` numbers.
    void Start(int generated) {
        const fs::path data = home_ / "dravlink";
        fs::create_directories(data);
        dravlink::Store::Seed(data, fs::path(KW_SOURCE_DIR) / "assets" / "dravlink");
        if (generated > 0) {
            std::ofstream(data / "engine.ini")
                << "[Engine]\nGeneratedPOPs = Bluewave Online | 1 | 512 | " << generated << "\n";
        }
        dravlink::Store store = dravlink::Store::Load(data);
        const dravlink::Destination& to = *store.FindDestination(kw::test::kDestination);
        const dravlink::Location& from = *store.FindLocation(kw::test::kLocation);
        list_ = dravlink::DialListArray(dravlink::ComputeDialList(store, "anna", from, to).rows);
        engine_->Default("GetPolicySetting", Variant(true), {{2, Variant(std::string("1"))}});
        engine_->Default(
            "GetISPList", Variant(std::int32_t{0}),
            {{1, dravlink::IspListArray(dravlink::ComputeIspList(store, "anna", to))}});
        LaunchScripted("kestrelway-diallist-test");
        Click(Win(), "btnToPullout");
        view_ = WindowOf(To())->findChild<QTreeView*>("lstvDialList");
        ASSERT_NE(view_, nullptr);
    }

    ToPullout& To() { return Form<ToPullout>(); }

    Variant list_;
    QTreeView* view_ = nullptr;
};

TEST_F(DialListWindowTest, ThePopViewOnScreen) {
    Start(0);
    engine_->RaiseGetGenericISPList("", list_);
    QTest::qWait(200);
    // The user picks a row and clears the tick of the next.
    To().lstvDialList.UserSelectItem(1);
    To().lstvDialList.UserCheck(2, false);
    To().lstvDialList.UserMouseUp(kw::forms::mouse::kLeft, 0, 12, 30);
    EXPECT_GT(view_->model()->rowCount(), 3);
    Shot("dial-list-pops", Beside(To()));
}

TEST_F(DialListWindowTest, TheIspViewOnScreen) {
    Start(0);
    engine_->RaiseGetGenericISPList("", list_);
    Click(To(), "rbISP");
    EXPECT_GT(view_->model()->rowCount(), 1);
    Shot("dial-list-isps", Beside(To()));
}

TEST_F(DialListWindowTest, TheLongestPhoneBookIsOnScreenSoonAfterItArrives) {
    Start(32746);
    PaintWatch watch;
    view_->viewport()->installEventFilter(&watch);
    QElapsedTimer clock;
    clock.start();
    engine_->RaiseGetGenericISPList("", list_);
    const qint64 handled = clock.elapsed();
    while (!watch.painted && clock.elapsed() < 30000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    std::printf("  32,767 rows: handled in %lld ms, on screen after %lld ms\n",
                static_cast<long long>(handled), static_cast<long long>(clock.elapsed()));
    EXPECT_EQ(view_->model()->rowCount(), 32767);
    EXPECT_LT(clock.elapsed(), 10000) << "a phone book this long must not stall the window";
    Shot("dial-list-32767", Beside(To()));
}

}  // namespace
