// The location, preference, log and display pullouts in the real window, with the simulated
// engine behind them: pictures for a person to look at, the tab order of a new location, and a
// long location name that must leave the layouts alone.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/frm_splash.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "dravlink/simulator.h"
#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"
#include "platform/registry/registry.h"

namespace {

namespace fs = std::filesystem;
using kw::dialer::MainWin;

void SetUserString(const char* name, const std::string& value) {
    kw::registry::HKEY key = nullptr;
    kw::registry::RegCreateKeyExA(kw::registry::HKEY_CURRENT_USER, kw::dialer::settings::kUserKey,
                                  0, nullptr, 0, kw::registry::KEY_ALL_ACCESS, nullptr, &key,
                                  nullptr);
    kw::registry::RegSetValueExA(key, name, 0, kw::registry::REG_SZ,
                                 reinterpret_cast<const kw::registry::BYTE*>(value.c_str()),
                                 static_cast<kw::registry::DWORD>(value.size() + 1));
    kw::registry::RegCloseKey(key);
}

class SideWindowsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kw-side-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        home_ = pattern;
        kw::registry::Configure({(home_ / "user.reg").string(), (home_ / "system.reg").string()});
        SetUserString(kw::dialer::settings::kUserName, "anna");
        SetUserString(kw::dialer::settings::kPassword, "secret");
        kw::dialer::EngineFactory::Register(
            kw::dialer::kDefaultEngineName, [this](const kw::dialer::EngineContext& context) {
                dravlink::Options options;
                options.dataDir = home_ / "dravlink";
                options.sampleDir = fs::path(KW_SOURCE_DIR) / "assets" / "dravlink";
                return std::make_shared<dravlink::Simulator>(context.platform, options);
            });
        platform_ =
            std::make_unique<kw::qt::QtPlatform>(KW_SOURCE_DIR "/assets", "kestrelway-side-test");
        app_ = std::make_unique<kw::dialer::Application>(*platform_, KW_SOURCE_DIR "/assets");
        kw::dialer::Main(*app_);
        ASSERT_TRUE(Idle());
    }
    void TearDown() override {
        app_.reset();
        platform_.reset();
        kw::dialer::EngineFactory::Unregister(kw::dialer::kDefaultEngineName);
        fs::remove_all(home_);
    }

    bool Idle() {
        for (int ms = 0; ms < 20000; ms += 50) {
            if (Win().IsLoaded() && !Win().IsLoading && !Win().IsGettingDialList) {
                QTest::qWait(200);
                return true;
            }
            QTest::qWait(50);
        }
        return false;
    }
    MainWin& Win() { return app_->Form<MainWin>(); }
    template <class F>
    F& Form() {
        return app_->Form<F>();
    }
    QWidget* Widget(kw::forms::Form& form, const char* name) {
        QWidget* widget = platform_->WindowOf(form)->findChild<QWidget*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    void Click(kw::forms::Form& form, const char* name) {
        QWidget* widget = Widget(form, name);
        ASSERT_NE(widget, nullptr);
        QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
        QTest::qWait(300);
    }
    // The main window and a pullout, as the screen shows them.
    void Shot(kw::forms::Form& pullout, const char* name) {
        QTest::qWait(300);
        const QRect both = platform_->WindowOf(Win())->frameGeometry().united(
            platform_->WindowOf(pullout)->frameGeometry());
        const QString shots = QStringLiteral(KW_BINARY_DIR "/xvfb-shots");
        QDir().mkpath(shots);
        const QString path = shots + "/" + name + ".png";
        QGuiApplication::primaryScreen()
            ->grabWindow(0, both.x(), both.y(), both.width(), both.height())
            .save(path);
        std::printf("  %s\n", qPrintable(path));
    }
    // A user's choice in a combo box, by its text.
    void Choose(kw::forms::ComboBox& combo, const std::string& text) {
        for (int i = 0; i < combo.ListCount(); ++i) {
            if (combo.List(i) == text) {
                combo.UserSelect(i);
                QTest::qWait(100);
                return;
            }
        }
        ADD_FAILURE() << "no " << text;
    }

    fs::path home_;
    std::unique_ptr<kw::qt::QtPlatform> platform_;
    std::unique_ptr<kw::dialer::Application> app_;
};

TEST_F(SideWindowsTest, TheLogPulloutAndTheDisplayPulloutWhileEditing) {
    Click(Win(), "btnMorePullout");
    Click(Form<kw::dialer::MorePullout>(), "btnLog");
    ASSERT_TRUE(platform_->WindowOf(Form<kw::dialer::LogPullout>())->isVisible());
    Shot(Form<kw::dialer::LogPullout>(), "log-pullout");

    Click(Form<kw::dialer::MorePullout>(), "btnDisplay");
    kw::dialer::DisplayPullout& display = Form<kw::dialer::DisplayPullout>();
    ASSERT_TRUE(platform_->WindowOf(display)->isVisible());
    Click(display, "btnModify");
    EXPECT_TRUE(display.IsEditing());
    EXPECT_TRUE(Widget(display, "txtUserName")->isEnabled());
    Shot(display, "display-pullout-editing");
}

TEST_F(SideWindowsTest, ANewLocationStartsInItsNameAndTabsOnToItsCountry) {
    Click(Win(), "btnFromPullout");
    kw::dialer::FromPullout& from = Form<kw::dialer::FromPullout>();
    // The user works in the pullout: its window has the keyboard.
    platform_->WindowOf(from)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(platform_->WindowOf(from)));
    Click(from, "btnAdd");
    QWidget* name = Widget(from, "cmboLocations");
    ASSERT_TRUE(name->isEnabled());
    QWidget* window = platform_->WindowOf(from);
    QWidget* first = window->nextInFocusChain();
    while (first != window && !(first->isEnabled() && first->isVisible() &&
                                (first->focusPolicy() & Qt::TabFocus) != 0)) {
        first = first->nextInFocusChain();
    }
    EXPECT_TRUE(first == name || name->isAncestorOf(first)) << "first in the tab order";
    EXPECT_TRUE(name->isAncestorOf(QApplication::focusWidget()) ||
                QApplication::focusWidget() == name)
        << "a new location is named first";
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClicks(QApplication::focusWidget(), "Austin Office");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QWidget* country = Widget(from, "cmboCountries");
    EXPECT_TRUE(country->isAncestorOf(QApplication::focusWidget()) ||
                QApplication::focusWidget() == country)
        << "the country comes next";
    Choose(from.cmboCountries, "UNITED STATES (1)");
    QTest::keyClicks(Widget(from, "txtAreaCode"), "512");
    QTest::keyClicks(Widget(from, "txtPhoneNumber"), "555 0143");
    EXPECT_EQ(from.cmboLocations.Text(), "Austin Office");
    EXPECT_EQ(from.txtPhoneNumber.Text(), "5550143") << "the number takes digits only";
    Shot(from, "from-pullout-new-us");
}

TEST_F(SideWindowsTest, APreferenceWithACallingCardChosen) {
    Click(Win(), "btnMorePullout");
    Click(Form<kw::dialer::MorePullout>(), "btnPref");
    kw::dialer::PrefPullout& pref = Form<kw::dialer::PrefPullout>();
    ASSERT_GT(pref.cmboCallingCards.ListCount(), 1);
    pref.cmboCallingCards.UserSelect(1);
    QTest::qWait(100);
    EXPECT_EQ(qobject_cast<QComboBox*>(Widget(pref, "cmboCallingCards"))->currentIndex(), 1);
    Shot(pref, "pref-pullout-card");
}

TEST_F(SideWindowsTest, ALongLocationNameLeavesTheCombosWhereTheyStand) {
    Click(Win(), "btnFromPullout");
    kw::dialer::FromPullout& from = Form<kw::dialer::FromPullout>();
    QWidget* mainCombo = Widget(Win(), "cmboFrom");
    QWidget* nameCombo = Widget(from, "cmboLocations");
    const QRect mainAt = mainCombo->geometry();
    const QRect nameAt = nameCombo->geometry();
    Click(from, "btnAdd");
    const std::string longName = "Conference Centre " + std::string(400, 'W');
    from.cmboLocations.UserSetText(longName);
    Choose(from.cmboCountries, "UNITED STATES (1)");
    QTest::keyClicks(Widget(from, "txtAreaCode"), "512");
    QTest::keyClicks(Widget(from, "txtPhoneNumber"), "555 0143");
    // The engine's word on the save comes in a box: the user reads it and presses OK.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            if (QPushButton* ok = box->defaultButton()) {
                ok->click();
            } else {
                box->accept();
            }
        }
    });
    answer.start(100);
    Click(from, "btnAdd");
    ASSERT_TRUE(Idle());
    answer.stop();
    EXPECT_EQ(Win().cmboFrom.Text(), longName);
    EXPECT_EQ(mainCombo->geometry(), mainAt);
    EXPECT_EQ(nameCombo->geometry(), nameAt);
    Shot(from, "from-pullout-long-name");
}

// No run shows the title form; shown all the same, it is whole, and a key takes it away.
TEST_F(SideWindowsTest, TheTitleFormShowsWholeAndGoesAtAKey) {
    kw::dialer::frmSplash& splash = Form<kw::dialer::frmSplash>();
    splash.Show();
    QWidget* window = platform_->WindowOf(splash);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    for (const char* name : {"imgLogo", "lblProductName", "lblVersion", "lblCopyright"}) {
        QWidget* widget = Widget(splash, name);
        ASSERT_NE(widget, nullptr);
        EXPECT_TRUE(window->rect().contains(QRect(widget->mapTo(window, QPoint()), widget->size())))
            << name << " stands inside the window";
    }
    QTest::qWait(200);
    const QString path = QStringLiteral(KW_BINARY_DIR "/xvfb-shots/splash.png");
    window->grab().save(path);
    std::printf("  %s\n", qPrintable(path));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QTest::keyClick(window, Qt::Key_Space);
    QTest::qWait(100);
    EXPECT_FALSE(splash.IsLoaded());
}

}  // namespace
