// The four pullout buttons of MainWin: one pullout open at a time, beside the window.
#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"

namespace kw::dialer {

namespace {

// Closes whichever pullout is open, asking it first; false when it refuses.
template <class F>
bool CloseIfShown(Application& app, bool& shown) {
    if (!shown) {
        return true;
    }
    F& form = app.Form<F>();
    bool ok = true;
    if constexpr (requires { form.OnHide(ok); }) {
        form.OnHide(ok);
    }
    if (!ok) {
        return false;
    }
    form.Hide();
    shown = false;
    return true;
}

}  // namespace

bool MainWin::CloseOpenPullouts() {
    return CloseIfShown<FromPullout>(app_, fromShown) && CloseIfShown<ToPullout>(app_, toShown) &&
           CloseIfShown<RxPullout>(app_, rxShown) && CloseIfShown<MorePullout>(app_, moreShown);
}

void MainWin::OpenPullout(forms::Form& pullout, bool& shown, int top) {
    if (shown) {
        return;
    }
    pullout.Move(Left() + Width() - app_.frameWidth, Top() + top);
    pullout.Show();
    shown = true;
}

void MainWin::btnFromPullout_Click() {
    const bool wasShown = fromShown;
    if (!CloseOpenPullouts() || wasShown) {
        return;
    }
    OpenPullout(app_.Form<FromPullout>(), fromShown, app_.frameHeight);
}

void MainWin::btnToPullout_Click() {
    const bool wasShown = toShown;
    if (!CloseOpenPullouts() || wasShown) {
        return;
    }
    OpenPullout(app_.Form<ToPullout>(), toShown, app_.frameHeight);
}

void MainWin::btnRxPullout_Click() {
    const bool wasShown = rxShown;
    if (!CloseOpenPullouts() || wasShown) {
        return;
    }
    OpenPullout(app_.Form<RxPullout>(), rxShown, app_.frameHeight);
}

void MainWin::btnMorePullout_Click() {
    const bool wasShown = moreShown;
    if (!CloseOpenPullouts() || wasShown) {
        return;
    }
    OpenPullout(app_.Form<MorePullout>(), moreShown, app_.frameHeight + 200);
}

}  // namespace kw::dialer
