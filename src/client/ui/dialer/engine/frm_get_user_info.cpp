#include "client/ui/dialer/engine/frm_get_user_info.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

frmGetUserInfo::frmGetUserInfo(Application& app)
    : Form(app.Platform(), "frmGetUserInfo"), app_(app) {
    SetCaption("Ostvarra");
    Move(0, 0, 300, 220);
    btnOK.SetCaption("OK");
    btnOK.SetDefault(true);
    btnCancel.SetCaption("Cancel");
    btnCancel.SetCancel(true);
}

void frmGetUserInfo::Form_Load() {
    ScaleForm(*this, app_.Platform());
    btnOK.Click = [this] {
        SelectedIndex = static_cast<std::int16_t>(lbChoices.ListIndex());
        Cancelled = false;
        Unload();
    };
    btnCancel.Click = [this] {
        Cancelled = true;
        Unload();
    };
}

}  // namespace kw::dialer
