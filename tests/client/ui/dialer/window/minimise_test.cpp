// Minimise and restore, by the window's own button or by the window manager, and the watch the
// main window keeps on its messages; the round buttons' faces.
#include <gtest/gtest.h>

#include "client/ui/dialer/shell/message_hook.h"
#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::window_state::kMinimized;
using forms::window_state::kNormal;

class MinimiseTest : public WindowFamilyTest {};

TEST_F(MinimiseTest, TheButtonHidesTheFamilyAndARestoreByTheWindowManagerBringsItBack) {
    MainWin& win = Win();
    FromPullout& from = Get<FromPullout>();
    PerfPulldown& perf = Get<PerfPulldown>();
    win.btnFromPullout.UserClick();
    ASSERT_TRUE(from.Visible());

    win.btnMinimize.UserClick();
    EXPECT_EQ(win.WindowState(), kMinimized);
    EXPECT_FALSE(from.Visible() || perf.Visible());
    EXPECT_TRUE(win.fromShown && win.perfShown);
    EXPECT_EQ(win.btnMinimize.Picture(), win.Image5.Picture()) << "the flash ends at rest";

    EXPECT_TRUE(platform.WindowManagerSetState(win, kNormal));
    EXPECT_EQ(win.WindowState(), kNormal);
    EXPECT_TRUE(from.Visible() && perf.Visible() && win.fromShown);
    EXPECT_FALSE(Get<ToPullout>().Visible()) << "only flagged windows come back";

    // Every flagged pullout of MorePullout comes back too, minimised by the window manager.
    win.btnMorePullout.UserClick();
    Get<MorePullout>().btnPref.UserClick();
    platform.WindowManagerSetState(win, kMinimized);
    EXPECT_FALSE(Get<MorePullout>().Visible() || Get<PrefPullout>().Visible() || perf.Visible());
    platform.WindowManagerSetState(win, kNormal);
    EXPECT_TRUE(Get<MorePullout>().Visible() && Get<PrefPullout>().Visible() && perf.Visible());
    EXPECT_FALSE(Get<LogPullout>().Visible());
}

TEST_F(MinimiseTest, TheHookActsOnTheWindowsSizeMessagePassesEveryMessageOnAndGoesOnUnload) {
    MainWin& win = Win();
    ASSERT_TRUE(platform.HasMessageHook(win));
    win.btnRxPullout.UserClick();
    RxPullout& rx = Get<RxPullout>();
    // The window keeps its state: only the hook can make anything of these messages.
    rx.Hide();
    EXPECT_TRUE(
        HookedWindowProc(*app, WindowHandleOf(Get<PerfPulldown>()), forms::wm::kSize, 0, 0));
    EXPECT_FALSE(rx.Visible()) << "another window's message is only passed on";
    win.SetScaleWidth(128);
    win.SetScaleHeight(320);
    EXPECT_TRUE(platform.DeliverWindowMessage(win, forms::wm::kSize, forms::wm::size::kRestored,
                                              forms::wm::MakeLParam(win.Width(), win.Height())));
    EXPECT_EQ(win.ScaleWidth(), 133);
    EXPECT_EQ(win.ScaleHeight(), 395);
    EXPECT_TRUE(rx.Visible());

    for (int message : {forms::wm::kSize, forms::wm::kQueryEndSession, forms::wm::kEndSession,
                        forms::wm::kActivate, forms::wm::kMove}) {
        EXPECT_TRUE(platform.DeliverWindowMessage(win, message, 0, 0)) << message;
    }
    EXPECT_NE(app->OldWindowProc, 0);
    win.Unload();
    EXPECT_FALSE(platform.HasMessageHook(win));
    EXPECT_EQ(app->OldWindowProc, 0);
    RemoveMessageHook(*app);  // a second removal finds nothing to do
    EXPECT_EQ(app->OldWindowProc, 0);
}

TEST_F(MinimiseTest, TheRoundButtonsAndTheirLabelsSwapFacesMinimiseAndOpenTheHelpFile) {
    MainWin& win = Win();
    EXPECT_NE(win.Image5.Picture(), win.Image6.Picture());
    for (auto [label, button] : {std::pair{&win.lblMinButton, &win.btnMinimize},
                                 std::pair{&win.lblHelpButton, &win.btnHelp}}) {
        label->UserMouseDown(forms::mouse::kLeft, 0, 2, 2);
        EXPECT_EQ(button->Picture(), win.Image6.Picture()) << button->Name();
        label->UserMouseUp(forms::mouse::kLeft, 0, 2, 2);
        EXPECT_EQ(button->Picture(), win.Image5.Picture()) << button->Name();
    }
    win.btnHelp.UserDblClick();
    ASSERT_EQ(platform.HelpShown().size(), 1u);
    EXPECT_NE(platform.HelpShown()[0].find("Kestrelway.hlp"), std::string::npos);
    win.lblMinButton.UserClick();
    EXPECT_EQ(win.WindowState(), kMinimized);
    EXPECT_FALSE(Get<PerfPulldown>().Visible());
}

TEST_F(MinimiseTest, EnterOnTheWindowConnectsOnlyWhenNoCallIsUnderWay) {
    MainWin& win = Win();
    win.UserKeyPress(forms::key::kReturn);
    EXPECT_EQ(engine->CountOf("Connect"), 1);
    ASSERT_TRUE(win.IsConnecting);
    win.UserKeyPress(forms::key::kReturn);
    EXPECT_EQ(engine->CountOf("Connect"), 1);
}

}  // namespace
}  // namespace kw::dialer::testing
