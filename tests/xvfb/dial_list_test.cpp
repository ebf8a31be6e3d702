// The dial list pullout in the real window: pictures of the POP and ISP views for a person to
// look at, and how long the longest phone book takes from its arrival to being on screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTreeView>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "dravlink/dial_list.h"
#include "dravlink/engine_arrays.h"
#include "dravlink/store.h"
#include "platform/automation/safe_array.h"
#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"

namespace {

namespace fs = std::filesystem;
using kw::automation::SafeArray;
using kw::automation::Variant;
using kw::dialer::MainWin;
using kw::dialer::ToPullout;

constexpr const char* kFrom = "Home Office";
constexpr const char* kTo = "Ostvarra Corporate";

Variant Names(std::initializer_list<const char*> names) {
    SafeArray list = SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    std::int32_t i = 0;
    for (const char* n : names) {
        list.Set(i++, Variant(std::string(n)));
    }
    return Variant(std::move(list));
}

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
class DialListWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kw-diallist-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        home_ = pattern;
        kw::registry::Configure({(home_ / "user.reg").string(), (home_ / "system.reg").string()});
        kw::registry::HKEY key = nullptr;
        kw::registry::RegCreateKeyExA(kw::registry::HKEY_CURRENT_USER,
                                      kw::dialer::settings::kUserKey, 0, nullptr, 0,
                                      kw::registry::KEY_ALL_ACCESS, nullptr, &key, nullptr);
        const std::string user = "anna";
        kw::registry::RegSetValueExA(key, kw::dialer::settings::kUserName, 0, kw::registry::REG_SZ,
                                     reinterpret_cast<const kw::registry::BYTE*>(user.c_str()),
                                     static_cast<kw::registry::DWORD>(user.size() + 1));
        kw::registry::RegCloseKey(key);
    }
    void TearDown() override {
        app_.reset();
        platform_.reset();
        kw::dialer::EngineFactory::Unregister(kw::dialer::kDefaultEngineName);
        fs::remove_all(home_);
    }

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
        kw::dialer::EngineFactory::Register(
            kw::dialer::kDefaultEngineName,
            [this](const kw::dialer::EngineContext&) { return engine_; });
        platform_ = std::make_unique<kw::qt::QtPlatform>(KW_SOURCE_DIR "/assets",
                                                         "kestrelway-diallist-test");
        app_ = std::make_unique<kw::dialer::Application>(*platform_, KW_SOURCE_DIR "/assets");
        kw::dialer::Main(*app_);
        engine_->RaiseGetGenericISPList("", Variant());
        QTest::qWait(300);
        Click(Win(), "btnToPullout");
        ASSERT_TRUE(platform_->WindowOf(To())->isVisible());
    }

    MainWin& Win() { return app_->Form<MainWin>(); }
    ToPullout& To() { return app_->Form<ToPullout>(); }
    QTreeView* Rows() { return platform_->WindowOf(To())->findChild<QTreeView*>("lstvDialList"); }
    void Click(kw::forms::Form& form, const char* name) {
        QWidget* widget = platform_->WindowOf(form)->findChild<QWidget*>(name);
        ASSERT_NE(widget, nullptr) << name;
        QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
        QTest::qWait(200);
    }
    // The main window and the pullout, as the screen shows them.
    void Shot(const char* name) {
        QTest::qWait(200);
        const QRect both = platform_->WindowOf(Win())->frameGeometry().united(
            platform_->WindowOf(To())->frameGeometry());
        const QString shots = QStringLiteral(KW_BINARY_DIR "/xvfb-shots");
        QDir().mkpath(shots);
        const QString path = shots + "/" + name + ".png";
        QGuiApplication::primaryScreen()
            ->grabWindow(0, both.x(), both.y(), both.width(), both.height())
            .save(path);
        std::printf("  %s\n", qPrintable(path));
    }

    fs::path home_;
    Variant rows_;
    std::shared_ptr<kw::test::ScriptedEngine> engine_ =
        std::make_shared<kw::test::ScriptedEngine>();
    std::unique_ptr<kw::qt::QtPlatform> platform_;
    std::unique_ptr<kw::dialer::Application> app_;
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
    Shot("dial-list-isps");

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
    Shot("dial-list-pops");
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
    Shot("dial-list-32767");
}

}  // namespace
