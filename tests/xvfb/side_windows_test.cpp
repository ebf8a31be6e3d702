// The location, preference, log and display pullouts in the real window, with the simulated
// engine behind them: pictures for a person to look at, the keyboard in a new location, and a
// long location name that must leave the layouts alone.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/frm_splash.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "dravlink/simulator.h"
#include "real_program.h"

namespace {

namespace fs = std::filesystem;
using kw::dialer::FromPullout;

bool HasFocus(QWidget* widget) {
    QWidget* focus = QApplication::focusWidget();
    return focus != nullptr && (focus == widget || widget->isAncestorOf(focus));
}

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
    FromPullout& OpenFrom() {
        Click(Win(), "btnFromPullout");
        return Form<FromPullout>();
    }
    // The pullout a button of the More pullout opens.
    template <class F>
    F& FromMore(const char* button) {
        Click(Win(), "btnMorePullout");
        Click(Form<kw::dialer::MorePullout>(), button);
        return Form<F>();
    }
    // The country and number of a new location in the United States, as the user gives them.
    void InTheUnitedStates(FromPullout& from) {
        for (int i = 0; i < from.cmboCountries.ListCount(); ++i) {
            if (from.cmboCountries.List(i) == "UNITED STATES (1)") {
                from.cmboCountries.UserSelect(i);
            }
        }
        QTest::qWait(100);
        EXPECT_EQ(from.cmboCountries.Text(), "UNITED STATES (1)");
        QTest::keyClicks(Widget(from, "txtAreaCode"), "512");
        QTest::keyClicks(Widget(from, "txtPhoneNumber"), "555 0143");
    }
};

TEST_F(SideWindowsTest, TheLogPulloutOnScreen) {
    Shot("log-pullout", Beside(FromMore<kw::dialer::LogPullout>("btnLog")));
}

TEST_F(SideWindowsTest, TheDisplayPulloutWhileEditing) {
    auto& display = FromMore<kw::dialer::DisplayPullout>("btnDisplay");
    Click(display, "btnModify");
    EXPECT_TRUE(Widget(display, "txtUserName")->isEnabled());
    Shot("display-pullout-editing", Beside(display));
}

TEST_F(SideWindowsTest, ThePreferencePulloutWithACallingCardChosen) {
    auto& pref = FromMore<kw::dialer::PrefPullout>("btnPref");
    ASSERT_GT(pref.cmboCallingCards.ListCount(), 1);
    pref.cmboCallingCards.UserSelect(1);
    Shot("pref-pullout-card", Beside(pref));
}

TEST_F(SideWindowsTest, ANewLocationStartsInItsNameAndTabsOnToItsCountry) {
    FromPullout& from = OpenFrom();
    // The user works in the pullout: its window has the keyboard.
    WindowOf(from)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(WindowOf(from)));
    Click(from, "btnAdd");
    ASSERT_TRUE(HasFocus(Widget(from, "cmboLocations"))) << "a new location is named first";
    QTest::keyClicks(QApplication::focusWidget(), "Austin Office");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(HasFocus(Widget(from, "cmboCountries"))) << "the country comes next";
    EXPECT_EQ(from.cmboLocations.Text(), "Austin Office");
    InTheUnitedStates(from);
    Shot("from-pullout-new-us", Beside(from));
}

TEST_F(SideWindowsTest, ALongLocationNameLeavesTheCombosWhereTheyStand) {
    FromPullout& from = OpenFrom();
    QWidget* mainCombo = Widget(Win(), "cmboFrom");
    QWidget* nameCombo = Widget(from, "cmboLocations");
    const QRect mainAt = mainCombo->geometry();
    const QRect nameAt = nameCombo->geometry();
    Click(from, "btnAdd");
    const std::string longName = "Conference Centre " + std::string(400, 'W');
    from.cmboLocations.UserSetText(longName);
    InTheUnitedStates(from);
    // The engine's word on the save comes in a box: the user reads it and presses OK.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            box->defaultButton() != nullptr ? box->defaultButton()->click() : box->accept();
        }
    });
    answer.start(100);
    Click(from, "btnAdd");
    ASSERT_TRUE(Idle());
    answer.stop();
    EXPECT_EQ(Win().cmboFrom.Text(), longName);
    EXPECT_EQ(mainCombo->geometry(), mainAt);
    EXPECT_EQ(nameCombo->geometry(), nameAt);
    Shot("from-pullout-long-name", Beside(from));
}

// No run shows the title form; shown all the same, it is whole.
TEST_F(SideWindowsTest, TheTitleFormShowsWhole) {
    kw::dialer::frmSplash& splash = Form<kw::dialer::frmSplash>();
    splash.Show();
    QWidget* window = WindowOf(splash);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    for (const char* name : {"imgLogo", "lblProductName", "lblVersion", "lblCopyright"}) {
        QWidget* widget = Widget(splash, name);
        ASSERT_NE(widget, nullptr);
        EXPECT_TRUE(window->rect().contains(QRect(widget->mapTo(window, QPoint()), widget->size())))
            << name << " stands inside the window";
    }
    Shot("splash", window->frameGeometry());
}

}  // namespace
