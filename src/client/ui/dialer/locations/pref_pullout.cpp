#include "client/ui/dialer/locations/pref_pullout.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

PrefPullout::PrefPullout(Application& app) : Form(app.Platform(), "PrefPullout"), app_(app) {
    SetCaption("PrefPullout");
    Move(0, 0, 320, 204);
    Label1.SetCaption("User Preferences");
    Label1.SetFontBold(true);
    cmboCallingCards.SetStyle(forms::combo::kDropdownList);
    btnSave.SetCaption("Save");
    btnSave.SetEnabled(false);
}

void PrefPullout::OnHide(bool& ok) { ok = !btnSave.Enabled(); }

}  // namespace kw::dialer
