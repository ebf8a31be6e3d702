#include "client/ui/dialer/shell/more_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/faces.h"
#include "client/ui/dialer/shell/window_family.h"

namespace kw::dialer {

using face::Place;

MorePullout::MorePullout(Application& app) : Form(app.Platform(), "MorePullout"), app_(app) {
    SetCaption("MorePullout");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    SetPicture(layout::morepullout::kPicture);
    face::PlaceForm(*this, layout::morepullout::kWidth, layout::morepullout::kHeight);
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

WindowFamily& MorePullout::Family() {
    return app_.Form<MainWin>().Family();
}

void MorePullout::OnHide(bool& ok) {
    ok = false;
    WindowFamily& family = Family();
    // A refusal of the login information leaves the preferences closed and this one open.
    if (!family.Close(PulloutKind::kPref) || !family.Close(PulloutKind::kDisplay)) {
        return;
    }
    family.Close(PulloutKind::kLog);
    ok = true;
}

// The three buttons don't toggle: a click on the open one's button places and shows it again.

void MorePullout::btnDisplay_Click() {
    WindowFamily& family = Family();
    if (!family.CloseIfVisible(PulloutKind::kPref)) {
        return;
    }
    family.CloseIfVisible(PulloutKind::kLog);
    family.Open(PulloutKind::kDisplay);
}

void MorePullout::btnLog_Click() {
    WindowFamily& family = Family();
    if (!family.CloseIfVisible(PulloutKind::kPref) ||
        !family.CloseIfVisible(PulloutKind::kDisplay)) {
        return;
    }
    family.Open(PulloutKind::kLog);
}

void MorePullout::btnPref_Click() {
    WindowFamily& family = Family();
    family.CloseIfVisible(PulloutKind::kLog);
    if (!family.CloseIfVisible(PulloutKind::kDisplay)) {
        return;
    }
    family.Open(PulloutKind::kPref);
}

}  // namespace kw::dialer
