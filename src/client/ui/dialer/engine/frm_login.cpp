#include "client/ui/dialer/engine/frm_login.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/user_info.h"
#include "client/ui/dialer/engine/login_focus.h"

namespace kw::dialer {

frmLogin::frmLogin(Application& app) : Form(app.Platform(), "frmLogin"), app_(app) {
    SetCaption("Login");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    SetPicture("art/frmlogin.bmp");
    Label1.SetCaption("VPN User Information");
    lblLabels0.SetCaption("&User Name:");
    lblLabels1.SetCaption("&Password:");
    txtPassword.SetPasswordChar('*');
    cmdOK.SetCaption("OK");
    cmdOK.SetDefault(true);
    cmdCancel.SetCaption("Cancel");
    cmdCancel.SetCancel(true);
    for (forms::Control* c : Controls()) {
        c->SetFontName("Arial");
    }
}

void frmLogin::Form_Load() {
    ScaleForm(*this, app_.Platform());
    Shape();
    cmdOK.Click = [this] { cmdOK_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
    SelectTextOnFocus(txtUserName, txtPassword);
    // The labels drag the window as its surface does.
    drag_.Attach(*this, {&Label1, &lblLabels0, &lblLabels1});
}

void frmLogin::Shape() {
    // The artwork's shape is applied by the shell's region builder when the window is shown.
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

void frmLogin::Form_MouseDown(int button, int, float, float) { drag_.Press(*this, button); }

void frmLogin::Form_MouseMove(int button, int, float, float) { drag_.Follow(*this, button); }

}  // namespace kw::dialer
