#include "client/ui/dialer/engine/frm_get_user_info.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/variant.h"

namespace kw::dialer {

frmGetUserInfo::frmGetUserInfo(Application& app)
    : Form(app.Platform(), "frmGetUserInfo"), app_(app) {
    SetCaption("Ostvarra");
    // A plain dialog in the colours of the skin, in the middle of the screen.
    SetBackColor(0x3A312B);
    const int width = face::AtDensity(app.Platform(), 300);
    const int height = face::AtDensity(app.Platform(), 220);
    Move((app.Platform().SystemMetric(forms::metric::kCxScreen) - width) / 2,
         (app.Platform().SystemMetric(forms::metric::kCyScreen) - height) / 3, width, height);
    face::Place(lblPrompt, {12, 10, 276, 40});
    lblPrompt.SetForeColor(0xEBE8E6);
    face::Place(lbChoices, {12, 54, 276, 116});
    lbChoices.SetBackColor(0x29221D);
    lbChoices.SetForeColor(0xEBE8E6);
    face::Place(btnOK, {120, 182, 80, 26});
    face::Place(btnCancel, {208, 182, 80, 26});
    btnOK.SetCaption("OK");
    btnOK.SetDefault(true);
    btnCancel.SetCaption("Cancel");
    btnCancel.SetCancel(true);
}

void frmGetUserInfo::Form_Load() {
    ScaleForm(*this, app_.Platform());
    btnOK.Click = [this] {
        SelectedIndex = automation::CInt(automation::Variant(lbChoices.ListIndex()));
        Cancelled = false;
        Unload();
    };
    btnCancel.Click = [this] {
        Cancelled = true;
        Unload();
    };
}

}  // namespace kw::dialer
