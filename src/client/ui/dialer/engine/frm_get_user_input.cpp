#include "client/ui/dialer/engine/frm_get_user_input.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

frmGetUserInput::frmGetUserInput(Application& app)
    : Form(app.Platform(), "frmGetUserInput"), app_(app) {
    SetCaption("Ostvarra");
    Move(0, 0, 300, 130);
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
