// Dragging the main window by its artwork, its lights or its labels: the whole family follows.
#include <gtest/gtest.h>

#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::mouse::kLeft;

class DragTest : public WindowFamilyTest {
  protected:
    // The screen point of a spot of the main window's client area.
    forms::Point OnScreen(int x, int y) {
        return {Win().Left() + FrameWidth() + x, Win().Top() + FrameHeight() + y};
    }
    void CursorTo(forms::Point p) { platform.SetCursorPos(p); }
    void CursorBy(int dx, int dy) {
        const forms::Point p = platform.CursorPos();
        platform.SetCursorPos({p.x + dx, p.y + dy});
    }
    // A left-button drag on the window's own artwork, by (dx, dy).
    void DragBy(int dx, int dy) {
        CursorTo(OnScreen(60, 20));
        Win().UserMouseDown(kLeft, 0, 60, 20);
        CursorBy(dx, dy);
        Win().UserMouseMove(kLeft, 0, 0, 0);
        Win().UserMouseUp(kLeft, 0, 0, 0);
    }
};

TEST_F(DragTest, ADragThatStartsOnALightOrALabelMovesTheWindowWithoutAJump) {
    MainWin& win = Win();
    for (forms::Control* surface : {static_cast<forms::Control*>(&win.imgConnectLight),
                                    static_cast<forms::Control*>(&win.lblStatus)}) {
        SCOPED_TRACE(surface->Name());
        const auto start = At(win);
        CursorTo(OnScreen(surface->Left() + 3, surface->Top() + 4));
        surface->UserMouseDown(kLeft, 0, 3, 4);
        surface->UserMouseMove(kLeft, 0, 3, 4);
        EXPECT_EQ(At(win), start) << "no jump at the press";
        CursorBy(25, -10);
        surface->UserMouseMove(kLeft, 0, 28, -6);
        EXPECT_EQ(At(win), (std::pair{start.first + 25, start.second - 10}));
        surface->UserMouseUp(kLeft, 0, 28, -6);
    }
}

TEST_F(DragTest, AMoveMovesNothingWithoutALeftPressHeldSinceItsStart) {
    const struct {
        const char* what;
        int press;  // 0: none
        bool release;
        int move;
    } cases[] = {{"no press", 0, false, kLeft},
                 {"after the release", kLeft, true, kLeft},
                 {"a press of the right button", forms::mouse::kRight, false, forms::mouse::kRight},
                 {"the left button no longer held", kLeft, false, 0}};
    MainWin& win = Win();
    const auto start = At(win);
    for (const auto& c : cases) {
        CursorTo(OnScreen(50, 60));
        if (c.press != 0) {
            win.UserMouseDown(c.press, 0, 50, 60);
        }
        if (c.release) {
            win.UserMouseUp(c.press, 0, 50, 60);
        }
        CursorBy(100, 100);
        win.UserMouseMove(c.move, 0, 150, 160);
        EXPECT_EQ(At(win), start) << c.what;
        win.UserMouseUp(kLeft, 0, 150, 160);
    }
}

TEST_F(DragTest, TheOpenPulloutsFollowToTheirPlacesAndTheClosedOnesStay) {
    const auto from = At(Get<FromPullout>());
    Win().btnMorePullout.UserClick();
    Get<MorePullout>().btnDisplay.UserClick();
    DragBy(-40, 35);
    EXPECT_EQ(Beside(Get<MorePullout>()), (std::pair{114, 227}));
    EXPECT_EQ(Beside(Get<DisplayPullout>()), (std::pair{114, 127}));
    EXPECT_EQ(At(Get<FromPullout>()), from);
}

TEST_F(DragTest, APanelOfMorePulloutThatIsHiddenIsLeftBehind) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    DisplayPullout& display = Get<DisplayPullout>();
    win.btnMorePullout.UserClick();
    more.btnDisplay.UserClick();
    const auto displayAt = At(display);

    // Minimised, the panel hides with its flag still set; a drag then moves MorePullout, whose
    // flag it tests, but not the hidden panel, whose visibility it tests.
    win.btnMinimize.UserClick();
    ASSERT_FALSE(display.Visible());
    ASSERT_TRUE(win.displayShown);
    DragBy(50, 40);
    EXPECT_EQ(more.Left(), win.Left() + 114);

    platform.WindowManagerSetState(win, forms::window_state::kNormal);
    EXPECT_TRUE(display.Visible());
    EXPECT_EQ(At(display), displayAt);
}

// The performance panel, retracted under the main window or pulled down below it.
class PerfPanelTest : public DragTest {
  protected:
    PerfPulldown& Perf() { return Get<PerfPulldown>(); }
};

TEST_F(PerfPanelTest, ADragKeepsThePanelBelowInItsStateAndGivesItItsDragSize) {
    for (bool down : {false, true}) {
        SCOPED_TRACE(down ? "pulled down" : "retracted");
        if (down) {
            Perf().downBtn.UserClick();
        }
        DragBy(7, 9);
        EXPECT_EQ(Beside(Perf()), (std::pair{FrameWidth(), down ? 300 : 176}));
        EXPECT_EQ(Perf().Width(), Perf().Image1.Width() + 20);
        EXPECT_EQ(Perf().Height(), Perf().Image1.Height() + 10);
    }
}

TEST_F(PerfPanelTest, PullingDownPlacesThePanel300BelowInItsOwnSize) {
    Perf().downBtn.UserClick();
    EXPECT_TRUE(Win().perfDown);
    EXPECT_EQ(Beside(Perf()), (std::pair{3, 300}));
    EXPECT_EQ(Perf().Width(), Perf().Image1.Width() + 15);
    EXPECT_EQ(Perf().Height(), Perf().Image1.Height() + 22);
}

TEST_F(PerfPanelTest, RetractingBringsThePanelBackAndTheMainWindowToTheFront) {
    Perf().downBtn.UserClick();
    FormChanges main(Win());
    Perf().downBtn.UserClick();
    EXPECT_FALSE(Win().perfDown);
    EXPECT_EQ(Perf().Top(), Win().Top() + 176);
    EXPECT_EQ(main.Of(forms::FormProperty::ZOrder), 1);
    EXPECT_EQ(Win().ZOrderRequest(), 0);
}

TEST_F(PerfPanelTest, ThePulledDownShapeIsCutOnce) {
    FormChanges changes(Perf());
    for (int click = 0; click < 3; ++click) {
        Perf().downBtn.UserClick();
    }
    EXPECT_EQ(Perf().Top(), Win().Top() + 300);
    EXPECT_EQ(changes.Of(forms::FormProperty::Region), 1);
}

}  // namespace
}  // namespace kw::dialer::testing
