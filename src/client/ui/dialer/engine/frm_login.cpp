#include "client/ui/dialer/engine/frm_login.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/user_info.h"
#include "client/ui/dialer/engine/login_dialog.h"
#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer {

frmLogin::frmLogin(Application& app) : Form(app.Platform(), "frmLogin"), app_(app) {
    View().Design("VPN User Information", layout::login::kLoginPicture);
}

LoginView frmLogin::View() {
    return LoginView{*this,       Label1,      lblLabels0, lblLabels1,
                     txtUserName, txtPassword, cmdOK,      cmdCancel};
}

void frmLogin::Form_Load() {
    View().Frame(app_);
    ScaleForm(*this, app_.Platform());
    Shape();
    cmdOK.Click = [this] { cmdOK_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
    SelectTextOnFocus(txtUserName, txtPassword);
    // The labels drag the window as its surface does.
    drag_.Attach(*this, {&Label1, &lblLabels0, &lblLabels1});
}

void frmLogin::Shape() {
    app_.Shape(*this, true);
}

void frmLogin::Form_Activate() {
    if (Visible()) {
        FocusLoginFields(txtUserName, txtPassword);
    }
}

void frmLogin::cmdOK_Click() {
    if (txtUserName.Text().empty()) {
        GetPlatform().MsgBox("Invalid User Name, try again!", forms::mb::kSetForeground, "Login");
        txtUserName.SetFocus();
        SelectAllText(txtUserName);
        return;
    }
    LoginAccepted = true;
    app_.UserName = txtUserName.Text();
    app_.Password = txtPassword.Text();
    SaveUserInfo(app_);
    Hide();
}

void frmLogin::cmdCancel_Click() {
    LoginAccepted = false;
    Hide();
}

void frmLogin::Form_MouseDown(int button, int, float, float) {
    drag_.Press(*this, button);
}

void frmLogin::Form_MouseMove(int button, int, float, float) {
    drag_.Follow(*this, button);
}

}  // namespace kw::dialer
