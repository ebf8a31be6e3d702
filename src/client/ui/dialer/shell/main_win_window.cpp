// MainWin as a window without a caption of its own: the drag by its artwork that takes the whole
// family along, minimise and restore with the companions, the round buttons' faces.
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/shell/window_shapes.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"

namespace kw::dialer {

namespace {

// The window's own coordinate size, whatever size the window has.
constexpr int kScaleWidth = 133;
constexpr int kScaleHeight = 395;

// A place beyond what a 32-bit position holds ends the move where it stands.
std::optional<int> Sum(std::int64_t a, std::int64_t b) {
    const std::int64_t sum = a + b;
    if (sum < std::numeric_limits<std::int32_t>::min() ||
        sum > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(sum);
}

template <class F>
bool IsVisible(Application& app) {
    F* form = app.Forms().Peek<F>();
    return form != nullptr && form->IsLoaded() && form->Visible();
}

}  // namespace

void MainWin::WireWindowFamily() {
    btnFromPullout.Click = [this] { btnFromPullout_Click(); };
    btnToPullout.Click = [this] { btnToPullout_Click(); };
    btnRxPullout.Click = [this] { btnRxPullout_Click(); };
    btnMorePullout.Click = [this] { btnMorePullout_Click(); };
    btnFromPullout.DblClick = [this] { btnFromPullout_Click(); };
    btnToPullout.DblClick = [this] { btnToPullout_Click(); };
    btnRxPullout.DblClick = [this] { btnRxPullout_Click(); };
    btnMorePullout.DblClick = [this] { btnMorePullout_Click(); };

    auto pressFace = [this](forms::Image& button) {
        return [this, &button](int, int, float, float) { button.SetPicture(Image6.Picture()); };
    };
    auto releaseFace = [this](forms::Image& button) {
        return [this, &button](int, int, float, float) { button.SetPicture(Image5.Picture()); };
    };
    btnMinimize.Click = [this] { btnMinimize_Click(); };
    btnMinimize.DblClick = [this] { btnMinimize_Click(); };
    btnMinimize.MouseDown = pressFace(btnMinimize);
    btnMinimize.MouseUp = releaseFace(btnMinimize);
    lblMinButton.Click = [this] { btnMinimize_Click(); };
    lblMinButton.MouseDown = btnMinimize.MouseDown;
    lblMinButton.MouseUp = btnMinimize.MouseUp;

    btnHelp.Click = [this] { btnHelp_Click(); };
    btnHelp.DblClick = [this] { btnHelp_Click(); };
    btnHelp.MouseDown = pressFace(btnHelp);
    btnHelp.MouseUp = releaseFace(btnHelp);
    lblHelpButton.Click = [this] { btnHelp_Click(); };
    lblHelpButton.MouseDown = btnHelp.MouseDown;
    lblHelpButton.MouseUp = btnHelp.MouseUp;

    // The artwork is covered with lights and labels; a drag may start on any of them. Their
    // positions reach us in pixels of the control, so the control's place makes them the form's.
    for (forms::Control* surface : std::initializer_list<forms::Control*>{
             &imgConnectLight, &imgModemDetected, &imgPhoneDialing, &imgConnectingISP,
             &imgAuthorizingISP, &imgCreatingTunnel, &imgAuthorizingTunnel, &Label4, &lblConnect,
             &lblFrom, &lblStatus, &lblTo}) {
        surface->MouseDown = [this, surface](int button, int shift, float x, float y) {
            Form_MouseDown(button, shift, x + static_cast<float>(surface->Left()),
                           y + static_cast<float>(surface->Top()));
        };
        surface->MouseMove = [this](int button, int shift, float x, float y) {
            Form_MouseMove(button, shift, x, y);
        };
        surface->MouseUp = [this](int button, int shift, float x, float y) {
            Form_MouseUp(button, shift, x, y);
        };
    }
}

// ---- drag ---------------------------------------------------------------------------------

void MainWin::Form_MouseDown(int button, int shift, float x, float y) {
    (void)shift;
    if (button != forms::mouse::kLeft) {
        return;
    }
    dragging = true;
    dragOffsetX = static_cast<std::int32_t>(std::lround(x + static_cast<float>(app_.frameWidth)));
    dragOffsetY = static_cast<std::int32_t>(std::lround(y + static_cast<float>(app_.frameHeight)));
}

void MainWin::Form_MouseMove(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    if ((button & forms::mouse::kLeft) == 0 || !dragging) {
        return;
    }
    const forms::Point cursor = GetPlatform().CursorPos();
    const std::optional<int> mx = Sum(cursor.x, -static_cast<std::int64_t>(dragOffsetX));
    const std::optional<int> my = Sum(cursor.y, -static_cast<std::int64_t>(dragOffsetY));
    if (!mx || !my) {
        return;
    }
    // Each window in turn; a place that does not fit leaves the rest where they stand.
    auto moveTo = [&](forms::Form& form, int dx, int dy, int width, int height) {
        const std::optional<int> x1 = Sum(*mx, dx);
        const std::optional<int> y1 = Sum(*my, dy);
        if (!x1 || !y1) {
            return false;
        }
        MoveWindow(form, *x1, *y1, width, height, true);
        return true;
    };
    auto pullout = [&](forms::Form& form, int dx, int dy) {
        return moveTo(form, dx, dy, form.ScaleWidth(), form.ScaleHeight());
    };
    if (!moveTo(*this, 0, 0, ScaleWidth() + 15, ScaleHeight() + 22 + app_.frameHeight)) {
        return;
    }
    // These sizes differ from those PerfPulldown gives itself; both stand.
    PerfPulldown& perf = app_.Form<PerfPulldown>();
    if (!moveTo(perf, app_.frameWidth, perfDown ? 300 : 176, perf.Image1.Width() + 20,
                perf.Image1.Height() + 10)) {
        return;
    }
    if (fromShown && !pullout(app_.Form<FromPullout>(), 90, 80)) {
        return;
    }
    if (toShown && !pullout(app_.Form<ToPullout>(), 90, 80)) {
        return;
    }
    if (rxShown && !pullout(app_.Form<RxPullout>(), 90, 80)) {
        return;
    }
    if (moreShown && !pullout(app_.Form<MorePullout>(), 114, 227)) {
        return;
    }
    // The three of MorePullout go by what shows, not by their flags: a hidden one stays behind.
    if (IsVisible<PrefPullout>(app_) && !pullout(app_.Form<PrefPullout>(), 114, 127)) {
        return;
    }
    if (IsVisible<DisplayPullout>(app_) && !pullout(app_.Form<DisplayPullout>(), 114, 127)) {
        return;
    }
    if (IsVisible<LogPullout>(app_)) {
        pullout(app_.Form<LogPullout>(), 114, 127);
    }
}

void MainWin::Form_MouseUp(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    Refresh();
    if (button == forms::mouse::kLeft) {
        dragging = false;
    }
}

// ---- minimise and restore -----------------------------------------------------------------

void MainWin::Form_Resize() {
    const bool minimised = WindowState() == forms::window_state::kMinimized;
    if (!minimised) {
        SetScaleWidth(kScaleWidth);
        SetScaleHeight(kScaleHeight);
    }
    // Companions follow the window: restored with it, hidden with it, their flags untouched.
    auto follow = [minimised](bool flag, auto getForm) {
        if (!flag) {
            return;
        }
        forms::Form& form = getForm();
        if (minimised) {
            form.Hide();
        } else {
            form.Show();
        }
    };
    follow(perfShown, [this]() -> forms::Form& { return app_.Form<PerfPulldown>(); });
    follow(fromShown, [this]() -> forms::Form& { return app_.Form<FromPullout>(); });
    follow(toShown, [this]() -> forms::Form& { return app_.Form<ToPullout>(); });
    follow(rxShown, [this]() -> forms::Form& { return app_.Form<RxPullout>(); });
    follow(moreShown, [this]() -> forms::Form& { return app_.Form<MorePullout>(); });
    follow(displayShown, [this]() -> forms::Form& { return app_.Form<DisplayPullout>(); });
    follow(logShown, [this]() -> forms::Form& { return app_.Form<LogPullout>(); });
    follow(prefShown, [this]() -> forms::Form& { return app_.Form<PrefPullout>(); });
}

void MainWin::btnMinimize_Click() {
    btnMinimize.SetPicture(Image6.Picture());
    btnMinimize.SetPicture(Image5.Picture());
    SetWindowState(forms::window_state::kMinimized);
    if (perfShown) {
        app_.Form<PerfPulldown>().Hide();
    }
    // The flags stay as they are, so that a restore brings the same windows back.
    auto hideIf = [](bool flag, auto getForm) {
        if (flag) {
            getForm().Hide();
        }
    };
    hideIf(fromShown, [this]() -> forms::Form& { return app_.Form<FromPullout>(); });
    hideIf(toShown, [this]() -> forms::Form& { return app_.Form<ToPullout>(); });
    hideIf(rxShown, [this]() -> forms::Form& { return app_.Form<RxPullout>(); });
    hideIf(moreShown, [this]() -> forms::Form& { return app_.Form<MorePullout>(); });
    hideIf(displayShown, [this]() -> forms::Form& { return app_.Form<DisplayPullout>(); });
    hideIf(logShown, [this]() -> forms::Form& { return app_.Form<LogPullout>(); });
    hideIf(prefShown, [this]() -> forms::Form& { return app_.Form<PrefPullout>(); });
}

// ---- messages of the window -----------------------------------------------------------------

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
