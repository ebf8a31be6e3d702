// Minimise and restore, by the window's own button or by the window manager, and the watch the
// main window keeps on its messages; the round buttons' faces.
#include <gtest/gtest.h>

#include "client/ui/dialer/shell/message_hook.h"
#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::window_state::kMinimized;
using forms::window_state::kNormal;

using MinimiseTest = WindowFamilyTest;

TEST_F(MinimiseTest, TheWindowManagersMinimiseTakesMorePulloutsPanelsAlong) {
    Win().btnMorePullout.UserClick();
    Get<MorePullout>().btnPref.UserClick();
    platform.WindowManagerSetState(Win(), kMinimized);
    EXPECT_FALSE(Get<MorePullout>().Visible() || Get<PrefPullout>().Visible());
    platform.WindowManagerSetState(Win(), kNormal);
    EXPECT_TRUE(Get<MorePullout>().Visible() && Get<PrefPullout>().Visible());
    EXPECT_FALSE(Get<LogPullout>().Visible());
}

// The window keeps its state in these: only the hook can make anything of their messages.
class MessageHookTest : public WindowFamilyTest {
  protected:
    void SetUp() override {
        WindowFamilyTest::SetUp();
        ASSERT_TRUE(platform.HasMessageHook(Win()));
        Win().btnRxPullout.UserClick();
        Get<RxPullout>().Hide();
    }
};

TEST_F(MessageHookTest, TheWindowsSizeMessageReassertsItsScaleAndBringsTheFamilyBack) {
    MainWin& win = Win();
    win.SetScaleWidth(128);
    win.SetScaleHeight(320);
    EXPECT_TRUE(platform.DeliverWindowMessage(win, forms::wm::kSize, forms::wm::size::kRestored,
                                              forms::wm::MakeLParam(win.Width(), win.Height())));
    EXPECT_EQ(win.ScaleWidth(), 133);
    EXPECT_EQ(win.ScaleHeight(), 395);
    EXPECT_TRUE(Get<RxPullout>().Visible());
}

TEST_F(MessageHookTest, TheHookGoesWithTheWindowAndOnlyOnce) {
    Win().Unload();
    EXPECT_FALSE(platform.HasMessageHook(Win()));
    RemoveMessageHook(*app);
    EXPECT_EQ(app->OldWindowProc, 0);
}

using RoundButtonTest = WindowFamilyTest;

TEST_F(RoundButtonTest, TheButtonsAndTheirLabelsShowThePressedFaceWhileHeld) {
    MainWin& win = Win();
    ASSERT_NE(win.Image5.Picture(), win.Image6.Picture());
    for (auto [label, button] : {std::pair{&win.lblMinButton, &win.btnMinimize},
                                 std::pair{&win.lblHelpButton, &win.btnHelp}}) {
        label->UserMouseDown(forms::mouse::kLeft, 0, 2, 2);
        EXPECT_EQ(button->Picture(), win.Image6.Picture()) << button->Name();
        label->UserMouseUp(forms::mouse::kLeft, 0, 2, 2);
        EXPECT_EQ(button->Picture(), win.Image5.Picture()) << button->Name();
    }
}

TEST_F(RoundButtonTest, ADoubleClickOnHelpOpensTheHelpFileOnce) {
    Win().btnHelp.UserDblClick();
    ASSERT_EQ(platform.HelpShown().size(), 1u);
    EXPECT_NE(platform.HelpShown()[0].find("Kestrelway.hlp"), std::string::npos);
}

TEST_F(RoundButtonTest, TheMinimiseLabelMinimisesAsTheButtonDoes) {
    Win().lblMinButton.UserClick();
    EXPECT_EQ(Win().WindowState(), kMinimized);
    EXPECT_FALSE(Get<PerfPulldown>().Visible());
}

TEST_F(RoundButtonTest, EnterOnTheWindowConnectsOnlyWhenNoCallIsUnderWay) {
    Win().UserKeyPress(forms::key::kReturn);
    EXPECT_EQ(engine->CountOf("Connect"), 1);
    ASSERT_TRUE(Win().IsConnecting);
    Win().UserKeyPress(forms::key::kReturn);
    EXPECT_EQ(engine->CountOf("Connect"), 1);
}

}  // namespace
}  // namespace kw::dialer::testing
