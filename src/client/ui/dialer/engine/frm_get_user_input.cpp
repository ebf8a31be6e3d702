#include "client/ui/dialer/engine/frm_get_user_input.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

frmGetUserInput::frmGetUserInput(Application& app)
    : Form(app.Platform(), "frmGetUserInput"), app_(app) {
    SetCaption("Ostvarra");
    // A plain dialog in the colours of the skin, in the middle of the screen.
    SetBackColor(0x3A312B);
    const int width = face::AtDensity(app.Platform(), 300);
    const int height = face::AtDensity(app.Platform(), 130);
    Move((app.Platform().SystemMetric(forms::metric::kCxScreen) - width) / 2,
         (app.Platform().SystemMetric(forms::metric::kCyScreen) - height) / 3, width, height);
    face::Place(lblPrompt, {12, 10, 276, 36});
    lblPrompt.SetForeColor(0xEBE8E6);
    face::Place(txtInput, {12, 50, 276, 22});
    txtInput.SetBackColor(0x29221D);
    txtInput.SetForeColor(0xEBE8E6);
    face::Place(btnOK, {120, 92, 80, 26});
    face::Place(btnCancel, {208, 92, 80, 26});
    btnOK.SetCaption("OK");
    btnOK.SetDefault(true);
    btnCancel.SetCaption("Cancel");
    btnCancel.SetCancel(true);
}

void frmGetUserInput::Form_Load() {
    ScaleForm(*this, app_.Platform());
    btnOK.Click = [this] {
        Cancelled = false;
        Hide();
    };
    btnCancel.Click = [this] {
        Cancelled = true;
        Hide();
    };
}

}  // namespace kw::dialer
