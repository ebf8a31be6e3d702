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
};

TEST_F(DragTest, ADragThatStartsOnALightMovesTheWindowWithoutAJump) {
    MainWin& win = Win();
    forms::Image& light = win.imgConnectLight;
    const int left = win.Left();
    const int top = win.Top();
    CursorTo(OnScreen(light.Left() + 3, light.Top() + 4));
    light.UserMouseDown(kLeft, 0, 3, 4);
    light.UserMouseMove(kLeft, 0, 3, 4);
    EXPECT_EQ(At(win), (std::pair{left, top}));

    CursorBy(25, -10);
    light.UserMouseMove(kLeft, 0, 28, -6);
    EXPECT_EQ(At(win), (std::pair{left + 25, top - 10}));
    light.UserMouseUp(kLeft, 0, 28, -6);

    // A label drags alike.
    forms::Label& status = win.lblStatus;
    CursorTo(OnScreen(status.Left() + 7, status.Top() + 2));
    status.UserMouseDown(kLeft, 0, 7, 2);
    CursorBy(-40, 30);
    status.UserMouseMove(kLeft, 0, -33, 32);
    EXPECT_EQ(At(win), (std::pair{left + 25 - 40, top - 10 + 30}));
}

TEST_F(DragTest, AMoveWithoutAPressOrAfterTheReleaseMovesNothing) {
    MainWin& win = Win();
    const int left = win.Left();
    const int top = win.Top();
    CursorTo({10, 10});
    win.UserMouseMove(kLeft, 0, 50, 50);
    win.lblFrom.UserMouseMove(kLeft, 0, 5, 5);
    EXPECT_EQ(At(win), (std::pair{left, top}));

    CursorTo(OnScreen(50, 60));
    win.UserMouseDown(kLeft, 0, 50, 60);
    win.UserMouseUp(kLeft, 0, 50, 60);
    CursorBy(100, 100);
    win.UserMouseMove(kLeft, 0, 150, 160);
    EXPECT_EQ(win.Left(), left);

    // Nor does a press of the right button, or a move without the left one held.
    win.UserMouseDown(forms::mouse::kRight, 0, 50, 60);
    win.UserMouseMove(forms::mouse::kRight, 0, 150, 160);
    EXPECT_EQ(win.Left(), left);
    win.UserMouseDown(kLeft, 0, 50, 60);
    win.UserMouseMove(0, 0, 150, 160);
    EXPECT_EQ(win.Left(), left);
}

TEST_F(DragTest, TheOpenPulloutsFollowToTheirPlacesAndTheClosedOnesStay) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    const int fromLeft = Get<FromPullout>().Left();
    win.btnMorePullout.UserClick();
    more.btnDisplay.UserClick();
    CursorTo(OnScreen(60, 20));
    win.UserMouseDown(kLeft, 0, 60, 20);
    CursorTo({300, 150});
    win.UserMouseMove(kLeft, 0, 0, 0);
    const int mx = 300 - 60 - FrameWidth();
    const int my = 150 - 20 - FrameHeight();
    EXPECT_EQ(At(win), (std::pair{mx, my}));
    EXPECT_EQ(win.Width(), 133 + 15);
    EXPECT_EQ(win.Height(), 395 + 22 + FrameHeight());
    EXPECT_EQ(At(more), (std::pair{mx + 114, my + 227}));
    EXPECT_EQ(At(Get<DisplayPullout>()), (std::pair{mx + 114, my + 127}));
    EXPECT_EQ(Get<FromPullout>().Left(), fromLeft);
}

TEST_F(DragTest, APanelOfMorePulloutThatIsHiddenIsLeftBehind) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    DisplayPullout& display = Get<DisplayPullout>();
    win.btnMorePullout.UserClick();
    more.btnDisplay.UserClick();
    const int displayLeft = display.Left();
    const int displayTop = display.Top();

    // Minimised, the panel hides with its flag still set; a drag then moves MorePullout, whose
    // flag it tests, but not the hidden panel, whose visibility it tests.
    win.btnMinimize.UserClick();
    ASSERT_FALSE(display.Visible());
    ASSERT_TRUE(win.displayShown);
    CursorTo(OnScreen(60, 20));
    win.UserMouseDown(kLeft, 0, 60, 20);
    CursorBy(50, 40);
    win.UserMouseMove(kLeft, 0, 0, 0);
    win.UserMouseUp(kLeft, 0, 0, 0);
    EXPECT_EQ(more.Left(), win.Left() + 114);

    platform.WindowManagerSetState(win, forms::window_state::kNormal);
    EXPECT_TRUE(display.Visible());
    EXPECT_EQ(display.Left(), displayLeft);
    EXPECT_EQ(display.Top(), displayTop);
    EXPECT_NE(display.Left(), win.Left() + 114);
}

TEST_F(DragTest, ThePerformancePanelJumpsDownAndBackCutOnceAndFollowsADragInEitherPlace) {
    MainWin& win = Win();
    PerfPulldown& perf = Get<PerfPulldown>();
    FormChanges changes;
    FormChanges main;
    perf.AddObserver(&changes);
    win.AddObserver(&main);
    auto drag = [&] {
        CursorTo(OnScreen(60, 20));
        win.UserMouseDown(kLeft, 0, 60, 20);
        CursorBy(7, 9);
        win.UserMouseMove(kLeft, 0, 0, 0);
        win.UserMouseUp(kLeft, 0, 0, 0);
        EXPECT_EQ(perf.Left(), win.Left() + FrameWidth());
    };
    EXPECT_TRUE(perf.Visible());
    drag();
    EXPECT_EQ(perf.Top(), win.Top() + 176) << "retracted";
    EXPECT_EQ(perf.Width(), perf.Image1.Width() + 20);
    EXPECT_EQ(perf.Height(), perf.Image1.Height() + 10);

    perf.downBtn.UserClick();
    EXPECT_TRUE(win.perfDown);
    EXPECT_EQ(Beside(perf), (std::pair{3, 300}));
    EXPECT_EQ(perf.Width(), perf.Image1.Width() + 15);
    EXPECT_EQ(perf.Height(), perf.Image1.Height() + 22);
    EXPECT_EQ(changes.Of(forms::FormProperty::Region), 1);
    drag();
    EXPECT_EQ(perf.Top(), win.Top() + 300) << "pulled down";

    perf.downBtn.UserClick();
    EXPECT_FALSE(win.perfDown);
    EXPECT_EQ(perf.Top(), win.Top() + 176);
    EXPECT_EQ(main.Of(forms::FormProperty::ZOrder), 1);
    EXPECT_EQ(win.ZOrderRequest(), 0) << "the main window comes to the front";

    perf.downBtn.UserClick();
    EXPECT_EQ(perf.Top(), win.Top() + 300);
    EXPECT_EQ(changes.Of(forms::FormProperty::Region), 1) << "the shape is cut once";
    perf.RemoveObserver(&changes);
    win.RemoveObserver(&main);
}

}  // namespace
}  // namespace kw::dialer::testing
