#include "client/ui/dialer/shell/more_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/log_pullout.h"

namespace kw::dialer {

MorePullout::MorePullout(Application& app) : Form(app.Platform(), "MorePullout"), app_(app) {
    SetCaption("MorePullout");
    Move(0, 0, 68, 72);
}

void MorePullout::OnHide(bool& ok) {
    // The three pullouts of this one go first, each with its own say.
    MainWin& win = app_.Form<MainWin>();
    ok = false;
    if (win.logShown) {
        app_.Form<LogPullout>().Hide();
        win.logShown = false;
    }
    if (win.prefShown) {
        bool prefOk = true;
        app_.Form<PrefPullout>().OnHide(prefOk);
        if (!prefOk) {
            return;
        }
        app_.Form<PrefPullout>().Hide();
        win.prefShown = false;
    }
    if (win.displayShown) {
        bool displayOk = true;
        app_.Form<DisplayPullout>().OnHide(displayOk);
        if (!displayOk) {
            return;
        }
        app_.Form<DisplayPullout>().Hide();
        win.displayShown = false;
    }
    ok = true;
}

}  // namespace kw::dialer
