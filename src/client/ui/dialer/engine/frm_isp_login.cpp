#include "client/ui/dialer/engine/frm_isp_login.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

frmISPLogin::frmISPLogin(Application& app) : Form(app.Platform(), "frmISPLogin"), app_(app) {
    SetCaption("Login");
    SetForeColor(0x00FF00);
    SetPicture("art/frmisplogin.bmp");
    txtTitle.SetCaption("ISP Login Info:");
    lblLabels0.SetCaption("&User Name:");
    lblLabels1.SetCaption("&Password:");
    txtPassword.SetPasswordChar('*');
    cmdOK.SetCaption("OK");
    cmdOK.SetDefault(true);
    cmdCancel.SetCaption("Cancel");
    cmdCancel.SetCancel(true);
}

void frmISPLogin::Form_Load() {
    ScaleForm(*this, app_.Platform());
    txtPassword.SetText("");
}

}  // namespace kw::dialer
