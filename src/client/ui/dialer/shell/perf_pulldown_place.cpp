// Where PerfPulldown stands: under the main window, its handle showing through the notch, or
// pulled down 300 below the main window's top. It jumps between the two in one move.
#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/window_shapes.h"

namespace kw::dialer {

namespace {
constexpr int kInsetX = 3;
}  // namespace

void PerfPulldown::Form_Load() {
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, false, &Image1);
    PositionWindow(kRetracted);
    downBtn.Click = [this] { downBtn_Click(); };
    LoadView();
}

void PerfPulldown::Form_Activate() {
    // Sent to the back at every activation, so that its retracted part stays behind the main
    // window.
    ZOrder(1);
}

void PerfPulldown::PositionWindow(std::int32_t yOffset) {
    const MainWin& win = app_.Form<MainWin>();
    MoveWindow(*this, win.Left() + kInsetX, win.Top() + yOffset, Image1.Width() + 15,
               Image1.Height() + 22, true);
}

void PerfPulldown::downBtn_Click() {
    MainWin& win = app_.Form<MainWin>();
    if (win.perfDown) {
        win.ZOrder(0);
        PositionWindow(kRetracted);
        win.perfDown = false;
        return;
    }
    if (!regionCut) {
        regionCut = true;
        CutPulledDown(*this, win, kInsetX, kPulledDown);
    }
    PositionWindow(kPulledDown);
    win.perfDown = true;
}

}  // namespace kw::dialer
