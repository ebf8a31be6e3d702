#include "client/ui/dialer/shell/more_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/window_shapes.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/log_pullout.h"

namespace kw::dialer {

namespace {

// The three pullouts of this one stand here, relative to the main window's outer frame.
constexpr int kChildX = 114;
constexpr int kChildY = 127;

void Place(forms::Control& c, const layout::LayoutRect& r) {
    c.Move(r.x, r.y, r.w, r.h);
}

// Whether the form stands open on the screen; a form never loaded does not.
template <class F>
bool IsVisible(Application& app) {
    F* form = app.Forms().Peek<F>();
    return form != nullptr && form->IsLoaded() && form->Visible();
}

}  // namespace

MorePullout::MorePullout(Application& app) : Form(app.Platform(), "MorePullout"), app_(app) {
    SetCaption("MorePullout");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    SetPicture(layout::morepullout::kPicture);
    Move(0, 0, layout::morepullout::kWidth, layout::morepullout::kHeight);
    Place(btnDisplay, layout::morepullout::btnDisplay);
    Place(btnLog, layout::morepullout::btnLog);
    Place(btnPref, layout::morepullout::btnPref);
    // Each button names the pullout it opens.
    btnDisplay.SetCaption("Display");
    btnLog.SetCaption("Log");
    btnPref.SetCaption("Pref");
}

void MorePullout::Form_Load() {
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, false);
    btnDisplay.Click = [this] { btnDisplay_Click(); };
    btnLog.Click = [this] { btnLog_Click(); };
    btnPref.Click = [this] { btnPref_Click(); };
    btnDisplay.DblClick = [this] { btnDisplay_Click(); };
    btnLog.DblClick = [this] { btnLog_Click(); };
    btnPref.DblClick = [this] { btnPref_Click(); };
}

void MorePullout::OnHide(bool& ok) {
    MainWin& win = app_.Form<MainWin>();
    ok = false;
    PrefPullout& pref = app_.Form<PrefPullout>();
    bool prefOk = false;
    pref.OnHide(prefOk);
    if (!prefOk) {
        return;
    }
    pref.Hide();
    win.prefShown = false;
    // A refusal here leaves PrefPullout closed and this one open.
    DisplayPullout& display = app_.Form<DisplayPullout>();
    bool displayOk = false;
    display.OnHide(displayOk);
    if (!displayOk) {
        return;
    }
    display.Hide();
    win.displayShown = false;
    app_.Form<LogPullout>().Hide();
    win.logShown = false;
    ok = true;
}

bool MorePullout::CloseIfVisiblePref() {
    if (!IsVisible<PrefPullout>(app_)) {
        return true;
    }
    PrefPullout& pref = app_.Form<PrefPullout>();
    bool ok = false;
    pref.OnHide(ok);
    if (!ok) {
        return false;
    }
    pref.Hide();
    app_.Form<MainWin>().prefShown = false;
    return true;
}

bool MorePullout::CloseIfVisibleDisplay() {
    if (!IsVisible<DisplayPullout>(app_)) {
        return true;
    }
    DisplayPullout& display = app_.Form<DisplayPullout>();
    bool ok = false;
    display.OnHide(ok);
    if (!ok) {
        return false;
    }
    display.Hide();
    app_.Form<MainWin>().displayShown = false;
    return true;
}

void MorePullout::CloseIfVisibleLog() {
    if (!IsVisible<LogPullout>(app_)) {
        return;
    }
    app_.Form<LogPullout>().Hide();
    app_.Form<MainWin>().logShown = false;
}

void MorePullout::OpenChild(forms::Form& child, bool& cut) {
    MainWin& win = app_.Form<MainWin>();
    MoveWindow(child, win.Left() + kChildX, win.Top() + kChildY, child.ScaleWidth(),
               child.ScaleHeight(), true);
    if (!cut) {
        CutBesideMorePullout(child, win, *this);
        cut = true;
    }
}

void MorePullout::btnDisplay_Click() {
    if (!CloseIfVisiblePref()) {
        return;
    }
    CloseIfVisibleLog();
    DisplayPullout& display = app_.Form<DisplayPullout>();
    OpenChild(display, displayCut_);
    display.Show();
    app_.Form<MainWin>().displayShown = true;
}

void MorePullout::btnLog_Click() {
    if (!CloseIfVisiblePref() || !CloseIfVisibleDisplay()) {
        return;
    }
    LogPullout& log = app_.Form<LogPullout>();
    OpenChild(log, logCut_);
    log.Show();
    app_.Form<MainWin>().logShown = true;
}

void MorePullout::btnPref_Click() {
    CloseIfVisibleLog();
    if (!CloseIfVisibleDisplay()) {
        return;
    }
    PrefPullout& pref = app_.Form<PrefPullout>();
    OpenChild(pref, prefCut_);
    MainWin& win = app_.Form<MainWin>();
    if (!win.prefShown) {
        pref.OnShow();
    }
    pref.Show();
    win.prefShown = true;
}

}  // namespace kw::dialer
