#include "client/ui/dialer/engine/frm_login.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/user_info.h"
#include "client/ui/dialer/engine/login_focus.h"
#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer {

frmLogin::frmLogin(Application& app) : Form(app.Platform(), "frmLogin"), app_(app) {
    SetCaption("Login");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
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
    PlaceControls();
}

void frmLogin::PlaceControls() {
    namespace at = layout::login;
    SetPicture(at::kLoginPicture);
    Move(Left(), Top(), at::kWidth, at::kHeight);
    auto place = [](forms::Control& c, const layout::LayoutRect& r) { c.Move(r.x, r.y, r.w, r.h); };
    place(Label1, at::Label1);
    place(lblLabels0, at::lblLabels0);
    place(lblLabels1, at::lblLabels1);
    place(txtUserName, at::txtUserName);
    place(txtPassword, at::txtPassword);
    place(cmdOK, at::cmdOK);
    place(cmdCancel, at::cmdCancel);
    for (forms::Label* label : {&Label1, &lblLabels0, &lblLabels1}) {
        label->SetForeColor(0xE0E0E0);
    }
    Label1.SetFontBold(true);
    Label1.SetFontSize(10);
}

void frmLogin::Frame() {
    // The dialog has a real caption and frame, cut away by its shape.
    SetFrameInset(app_.frameWidth, app_.frameHeight);
    Move(Left(), Top(), layout::login::kWidth + 2 * app_.frameWidth,
         layout::login::kHeight + app_.frameHeight + app_.frameWidth);
}

void frmLogin::Form_Load() {
    Frame();
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
