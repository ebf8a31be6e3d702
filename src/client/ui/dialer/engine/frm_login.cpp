#include "client/ui/dialer/engine/frm_login.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/user_info.h"

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
    txtUserName.GotFocus = [this] { SelectAll(txtUserName); };
    txtPassword.GotFocus = [this] { SelectAll(txtPassword); };
    // The labels drag the window as its surface does.
    for (forms::Label* label : {&Label1, &lblLabels0, &lblLabels1}) {
        label->MouseDown = [this](int b, int s, float x, float y) { Form_MouseDown(b, s, x, y); };
        label->MouseMove = [this](int b, int s, float x, float y) { Form_MouseMove(b, s, x, y); };
    }
}

void frmLogin::Shape() {
    // The artwork's shape is applied by the shell's region builder when the window is shown.
}

void frmLogin::Form_Activate() {
    if (!Visible()) {
        return;
    }
    forms::TextBox& target = txtUserName.Text().empty() ? txtUserName : txtPassword;
    if (target.HasFocus()) {
        SelectAll(target);  // entered again: all of its text selected as before
    } else {
        target.SetFocus();
    }
}

void frmLogin::SelectAll(forms::TextBox& box) {
    box.SetSelStart(0);
    box.SetSelLength(static_cast<int>(box.Text().size()));
}

void frmLogin::cmdOK_Click() {
    if (txtUserName.Text().empty()) {
        GetPlatform().MsgBox("Invalid User Name, try again!", forms::mb::kSetForeground, "Login");
        txtUserName.SetFocus();
        SelectAll(txtUserName);
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

void frmLogin::Form_MouseDown(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    if (button != forms::mouse::kLeft) {
        return;
    }
    // The window follows the mouse as if its caption had been pressed.
    dragFrom_ = GetPlatform().CursorPos();
    dragLeft_ = Left();
    dragTop_ = Top();
}

void frmLogin::Form_MouseMove(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    if (button != forms::mouse::kLeft) {
        return;
    }
    const forms::Point now = GetPlatform().CursorPos();
    Move(dragLeft_ + now.x - dragFrom_.x, dragTop_ + now.y - dragFrom_.y);
}

}  // namespace kw::dialer
