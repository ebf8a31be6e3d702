// The window family on a real X server: a pullout opens beside the shaped main window, the
// minimise button hides the family, and a restore done by the window manager (a state change the
// message hook sees) brings back every window whose flag is set.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "platform/automation/safe_array.h"
#include "platform/qt/form_window.h"
#include "platform/qt/message_hook.h"
#include "platform/qt/qt_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"

namespace {

namespace fs = std::filesystem;
using kw::automation::SafeArray;
using kw::automation::Variant;
using kw::dialer::MainWin;

Variant Names(std::initializer_list<const char*> names) {
    SafeArray list = SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    std::int32_t i = 0;
    for (const char* n : names) {
        list.Set(i++, Variant(std::string(n)));
    }
    return Variant(std::move(list));
}

class FamilyTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kw-family-XXXXXX").string();
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

        engine_->Default("GetPhoneList", Variant(true), {{0, Names({"Corporate", "Lab"})}});
        engine_->Default("GetLocationList", Variant(true), {{0, Names({"Home", "Hotel"})}});
        engine_->Default("GetCallingCardList", Variant(false));
        kw::dialer::EngineFactory::Register(
            kw::dialer::kDefaultEngineName,
            [this](const kw::dialer::EngineContext&) { return engine_; });
        platform_ =
            std::make_unique<kw::qt::QtPlatform>(KW_SOURCE_DIR "/assets", "kestrelway-family-test");
        app_ = std::make_unique<kw::dialer::Application>(*platform_, KW_SOURCE_DIR "/assets");
        kw::dialer::Main(*app_);
        engine_->RaiseGetGenericISPList("", Variant());
        QTest::qWait(300);
    }
    void TearDown() override {
        app_.reset();
        platform_.reset();
        kw::dialer::EngineFactory::Unregister(kw::dialer::kDefaultEngineName);
        fs::remove_all(home_);
    }

    QWidget* WindowOf(kw::forms::Form& form) { return platform_->WindowOf(form); }
    void Click(kw::forms::Form& form, const char* name) {
        QWidget* widget = WindowOf(form)->findChild<QWidget*>(name);
        ASSERT_NE(widget, nullptr) << name;
        QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
        QTest::qWait(200);
    }

    fs::path home_;
    std::shared_ptr<kw::test::ScriptedEngine> engine_ =
        std::make_shared<kw::test::ScriptedEngine>();
    std::unique_ptr<kw::qt::QtPlatform> platform_;
    std::unique_ptr<kw::dialer::Application> app_;
};

TEST_F(FamilyTest, MinimiseHidesTheFamilyAndAWindowManagerRestoreBringsItBack) {
    MainWin& win = app_->Form<MainWin>();
    ASSERT_NE(WindowOf(win)->findChild<kw::qt::MessageHookFilter*>(), nullptr)
        << "the load step hooks the main window's top-level window";
    Click(win, "btnToPullout");
    kw::dialer::ToPullout& to = app_->Form<kw::dialer::ToPullout>();
    kw::dialer::PerfPulldown& perf = app_->Form<kw::dialer::PerfPulldown>();
    ASSERT_TRUE(win.toShown);
    ASSERT_TRUE(WindowOf(to)->isVisible());
    ASSERT_TRUE(WindowOf(perf)->isVisible());
    EXPECT_TRUE(WindowOf(to)->mask().boundingRect().isValid()) << "the pullout is shaped";

    // The family with a pullout open, for a person to look at.
    const QString shots = QStringLiteral(KW_BINARY_DIR "/xvfb-shots");
    QDir().mkpath(shots);
    QGuiApplication::primaryScreen()->grabWindow(0).save(shots + "/family-pullout-open.png");

    Click(win, "btnMinimize");
    EXPECT_EQ(win.WindowState(), kw::forms::window_state::kMinimized);
    EXPECT_FALSE(WindowOf(to)->isVisible());
    EXPECT_FALSE(WindowOf(perf)->isVisible());
    EXPECT_TRUE(win.toShown) << "the flags stay, so that a restore knows what to bring back";

    // The window manager restores the main window: a state change on its top-level window.
    QWidget* main = WindowOf(win);
    main->setWindowState(Qt::WindowNoState);
    main->show();
    QTest::qWait(300);
    EXPECT_EQ(win.WindowState(), kw::forms::window_state::kNormal);
    EXPECT_TRUE(WindowOf(to)->isVisible());
    EXPECT_TRUE(WindowOf(perf)->isVisible());
    QGuiApplication::primaryScreen()->grabWindow(0).save(shots + "/family-restored.png");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
