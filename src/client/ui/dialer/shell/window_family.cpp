// Who closes whom, where each window goes and how its shape is made; the drag that takes the
// family along; minimise and restore.
#include "client/ui/dialer/shell/window_family.h"

#include <cmath>
#include <initializer_list>
#include <limits>
#include <optional>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/pullout.h"
#include "client/ui/dialer/shell/window_shapes.h"

namespace kw::dialer {

namespace {

// A place beyond what a 32-bit position holds ends the move where it stands.
std::optional<int> Sum(std::int64_t a, std::int64_t b) {
    const std::int64_t sum = a + b;
    if (sum < std::numeric_limits<std::int32_t>::min() ||
        sum > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(sum);
}

std::size_t Index(PulloutKind kind) {
    return static_cast<std::size_t>(kind);
}

}  // namespace

WindowFamily::WindowFamily(Application& app, MainWin& win) : app_(app), win_(win) {}

// ---- opening and closing --------------------------------------------------------------------

void WindowFamily::TabClick(PulloutKind kind) {
    const PulloutEntry& own = PulloutOf(kind);
    own.form(app_);  // loaded at the click, whatever follows
    bool anotherOpen = false;
    for (const PulloutEntry& e : Pullouts()) {
        anotherOpen = anotherOpen || (e.kind != kind && win_.*e.shown);
    }
    if (anotherOpen) {
        // All three are asked, open or not; the first refusal ends the click, and what closed
        // before it stays closed.
        for (PulloutKind other : own.closesFirst) {
            if (!Close(other)) {
                return;
            }
        }
    }
    if (win_.*own.shown) {
        Close(kind);
        return;
    }
    Open(kind);
}

void WindowFamily::Open(PulloutKind kind) {
    const PulloutEntry& e = PulloutOf(kind);
    forms::Form& form = e.form(app_);
    MoveWindow(form, win_.Left() + e.x, win_.Top() + e.y, form.ScaleWidth(), form.ScaleHeight(),
               e.moveRepaints);
    if (!cut_[Index(kind)]) {
        Cut(e, form);
        cut_[Index(kind)] = true;
    }
    if (!(win_.*e.shown)) {
        e.contract(app_).OnShow();
    }
    form.Show();
    win_.*e.shown = true;
    if (e.tab != nullptr) {
        (win_.*e.tab).SetPicture(win_.btnLeft.Picture());
    }
}

bool WindowFamily::Close(PulloutKind kind) {
    const PulloutEntry& e = PulloutOf(kind);
    bool ok = false;
    e.contract(app_).OnHide(ok);
    if (!ok) {
        return false;
    }
    e.form(app_).Hide();
    win_.*e.shown = false;
    if (e.tab != nullptr) {
        (win_.*e.tab).SetPicture(win_.btnReg.Picture());
    }
    return true;
}

bool WindowFamily::CloseIfVisible(PulloutKind kind) {
    return !PulloutOf(kind).visible(app_) || Close(kind);
}

void WindowFamily::Cut(const PulloutEntry& e, forms::Form& form) {
    if (!e.ofMorePullout) {
        CutBesideMainWin(form, win_, e.x, e.y, e.shapeRepaints);
        return;
    }
    const PulloutEntry& more = PulloutOf(PulloutKind::kMore);
    CutBesideMorePullout(form, win_, e.x, e.y, more.form(app_), more.x, more.y, e.shapeRepaints);
}

// ---- drag -----------------------------------------------------------------------------------

void WindowFamily::BeginDrag(int button, float x, float y) {
    if (button != forms::mouse::kLeft) {
        return;
    }
    dragging_ = true;
    dragOffsetX_ = static_cast<std::int32_t>(std::lround(x + static_cast<float>(app_.frameWidth)));
    dragOffsetY_ = static_cast<std::int32_t>(std::lround(y + static_cast<float>(app_.frameHeight)));
}

void WindowFamily::Drag(int button) {
    if ((button & forms::mouse::kLeft) == 0 || !dragging_) {
        return;
    }
    const forms::Point cursor = app_.Platform().CursorPos();
    const std::optional<int> mx = Sum(cursor.x, -static_cast<std::int64_t>(dragOffsetX_));
    const std::optional<int> my = Sum(cursor.y, -static_cast<std::int64_t>(dragOffsetY_));
    if (mx && my) {
        MoveFamilyTo(*mx, *my);
    }
}

bool WindowFamily::MoveFamilyTo(int mx, int my) {
    // Each window in turn; a place that does not fit leaves the rest where they stand.
    auto moveTo = [&](forms::Form& form, int dx, int dy, int width, int height) {
        const std::optional<int> x = Sum(mx, dx);
        const std::optional<int> y = Sum(my, dy);
        if (!x || !y) {
            return false;
        }
        MoveWindow(form, *x, *y, width, height, true);
        return true;
    };
    if (!moveTo(win_, 0, 0, win_.ScaleWidth() + 15, win_.ScaleHeight() + 22 + app_.frameHeight)) {
        return false;
    }
    // These sizes differ from those PerfPulldown gives itself; both stand.
    PerfPulldown& perf = app_.Form<PerfPulldown>();
    if (!moveTo(perf, app_.frameWidth,
                win_.perfDown ? PerfPulldown::kPulledDown : PerfPulldown::kRetracted,
                perf.Image1.Width() + 20, perf.Image1.Height() + 10)) {
        return false;
    }
    for (PulloutKind kind : DragOrder()) {
        const PulloutEntry& e = PulloutOf(kind);
        // The three of MorePullout go by what shows, not by their flags: a hidden one stays
        // behind.
        const bool open = e.ofMorePullout ? e.visible(app_) : win_.*e.shown;
        if (!open) {
            continue;
        }
        forms::Form& form = e.form(app_);
        if (!moveTo(form, e.x, e.y, form.ScaleWidth(), form.ScaleHeight())) {
            return false;
        }
    }
    return true;
}

void WindowFamily::EndDrag(int button) {
    win_.Refresh();
    if (button == forms::mouse::kLeft) {
        dragging_ = false;
    }
}

// ---- minimise and restore -------------------------------------------------------------------

void WindowFamily::FollowWindowState(bool minimised) {
    auto follow = [minimised](forms::Form& form) {
        if (minimised) {
            form.Hide();
        } else {
            form.Show();
        }
    };
    if (win_.perfShown) {
        follow(app_.Form<PerfPulldown>());
    }
    for (const PulloutEntry& e : Pullouts()) {
        if (win_.*e.shown) {
            follow(e.form(app_));
        }
    }
}

// ---- wiring ---------------------------------------------------------------------------------

void WindowFamily::Wire() {
    MainWin& w = win_;
    w.btnFromPullout.Click = [&w] { w.btnFromPullout_Click(); };
    w.btnToPullout.Click = [&w] { w.btnToPullout_Click(); };
    w.btnRxPullout.Click = [&w] { w.btnRxPullout_Click(); };
    w.btnMorePullout.Click = [&w] { w.btnMorePullout_Click(); };
    w.btnFromPullout.DblClick = [&w] { w.btnFromPullout_Click(); };
    w.btnToPullout.DblClick = [&w] { w.btnToPullout_Click(); };
    w.btnRxPullout.DblClick = [&w] { w.btnRxPullout_Click(); };
    w.btnMorePullout.DblClick = [&w] { w.btnMorePullout_Click(); };
    WireRoundButtons();
    WireDragSurfaces();
}

void WindowFamily::WireRoundButtons() {
    MainWin& w = win_;
    auto pressFace = [&w](forms::Image& button) {
        return [&w, &button](int, int, float, float) { button.SetPicture(w.Image6.Picture()); };
    };
    auto releaseFace = [&w](forms::Image& button) {
        return [&w, &button](int, int, float, float) { button.SetPicture(w.Image5.Picture()); };
    };
    w.btnMinimize.Click = [&w] { w.btnMinimize_Click(); };
    w.btnMinimize.DblClick = [&w] { w.btnMinimize_Click(); };
    w.btnMinimize.MouseDown = pressFace(w.btnMinimize);
    w.btnMinimize.MouseUp = releaseFace(w.btnMinimize);
    w.lblMinButton.Click = [&w] { w.btnMinimize_Click(); };
    w.lblMinButton.MouseDown = w.btnMinimize.MouseDown;
    w.lblMinButton.MouseUp = w.btnMinimize.MouseUp;

    w.btnHelp.Click = [&w] { w.btnHelp_Click(); };
    w.btnHelp.DblClick = [&w] { w.btnHelp_Click(); };
    w.btnHelp.MouseDown = pressFace(w.btnHelp);
    w.btnHelp.MouseUp = releaseFace(w.btnHelp);
    w.lblHelpButton.Click = [&w] { w.btnHelp_Click(); };
    w.lblHelpButton.MouseDown = w.btnHelp.MouseDown;
    w.lblHelpButton.MouseUp = w.btnHelp.MouseUp;
}

void WindowFamily::WireDragSurfaces() {
    MainWin& w = win_;
    // The artwork is covered with lights and labels; a drag may start on any of them. Their
    // positions reach us in pixels of the control, so the control's place makes them the form's.
    for (forms::Control* surface : std::initializer_list<forms::Control*>{
             &w.imgConnectLight, &w.imgModemDetected, &w.imgPhoneDialing, &w.imgConnectingISP,
             &w.imgAuthorizingISP, &w.imgCreatingTunnel, &w.imgAuthorizingTunnel, &w.Label4,
             &w.lblConnect, &w.lblFrom, &w.lblStatus, &w.lblTo}) {
        surface->MouseDown = [this, surface](int button, int, float x, float y) {
            BeginDrag(button, x + static_cast<float>(surface->Left()),
                      y + static_cast<float>(surface->Top()));
        };
        surface->MouseMove = [this](int button, int, float, float) { Drag(button); };
        surface->MouseUp = [this](int button, int, float, float) { EndDrag(button); };
    }
}

}  // namespace kw::dialer
