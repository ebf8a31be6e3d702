// The location, preference, log and display pullouts in the real window, with the simulated
// engine behind them: pictures for a person to look at, the tab order of a new location, and a
// long location name that must leave the layouts alone.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/frm_splash.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "dravlink/simulator.h"
#include "platform/qt/form_window.h"
#include "real_program.h"

namespace {

namespace fs = std::filesystem;
using kw::dialer::MainWin;

class SideWindowsTest : public kw::test::RealProgramTest {
  protected:
    void SetUp() override {
        RealProgramTest::SetUp();
        SetUserString(kw::dialer::settings::kPassword, "secret");
        Launch("kestrelway-side-test", [this](const kw::dialer::EngineContext& context) {
            dravlink::Options options;
            options.dataDir = home_ / "dravlink";
            options.sampleDir = fs::path(KW_SOURCE_DIR) / "assets" / "dravlink";
            return std::make_shared<dravlink::Simulator>(context.platform, options);
        });
        ASSERT_TRUE(Idle());
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
