// MainWin as a window without a caption of its own: its tabs, the drag by its artwork, minimise
// and restore, and the messages it watches. The window family carries them out.
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/shell/window_family.h"

namespace kw::dialer {

namespace {
// The window's own coordinate size, whatever size the window has.
constexpr int kScaleWidth = 133;
constexpr int kScaleHeight = 395;
}  // namespace

void MainWin::btnFromPullout_Click() {
    family_->TabClick(PulloutKind::kFrom);
}

void MainWin::btnToPullout_Click() {
    family_->TabClick(PulloutKind::kTo);
}

void MainWin::btnRxPullout_Click() {
    family_->TabClick(PulloutKind::kRx);
}

void MainWin::btnMorePullout_Click() {
    family_->TabClick(PulloutKind::kMore);
}

void MainWin::Form_MouseDown(int button, int shift, float x, float y) {
    (void)shift;
    family_->BeginDrag(button, x, y);
}

void MainWin::Form_MouseMove(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    family_->Drag(button);
}

void MainWin::Form_MouseUp(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    family_->EndDrag(button);
}

void MainWin::Form_Resize() {
    const bool minimised = WindowState() == forms::window_state::kMinimized;
    if (!minimised) {
        SetScaleWidth(kScaleWidth);
        SetScaleHeight(kScaleHeight);
    }
    family_->FollowWindowState(minimised);
}

void MainWin::btnMinimize_Click() {
    btnMinimize.SetPicture(Image6.Picture());
    btnMinimize.SetPicture(Image5.Picture());
    SetWindowState(forms::window_state::kMinimized);
    // The flags stay as they are, so that a restore brings the same windows back.
    family_->FollowWindowState(true);
}

void MainWin::ProcMsg(forms::WindowHandle window, int message, std::intptr_t wParam,
                      std::intptr_t lParam, std::intptr_t& result) {
    (void)window;
    (void)wParam;
    (void)lParam;
    (void)result;
    try {
        if (message == forms::wm::kSize) {
            // A minimise or restore done by the system itself reaches the companions here.
            Form_Resize();
        }
    } catch (const automation::Failure&) {
        // A message never fails the window.
    }
}

}  // namespace kw::dialer
