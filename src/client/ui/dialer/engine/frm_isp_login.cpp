#include "client/ui/dialer/engine/frm_isp_login.h"

#include <cstdlib>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/login_focus.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer {

frmISPLogin::frmISPLogin(Application& app) : Form(app.Platform(), "frmISPLogin"), app_(app) {
    SetCaption("Login");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    txtTitle.SetCaption("ISP Login Info:");
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

void frmISPLogin::PlaceControls() {
    namespace at = layout::login;
    SetPicture(at::kIspLoginPicture);
    Move(Left(), Top(), at::kWidth, at::kHeight);
    auto place = [](forms::Control& c, const layout::LayoutRect& r) { c.Move(r.x, r.y, r.w, r.h); };
    place(txtTitle, at::Label1);
    place(lblLabels0, at::lblLabels0);
    place(lblLabels1, at::lblLabels1);
    place(txtUserName, at::txtUserName);
    place(txtPassword, at::txtPassword);
    place(cmdOK, at::cmdOK);
    place(cmdCancel, at::cmdCancel);
    for (forms::Label* label : {&txtTitle, &lblLabels0, &lblLabels1}) {
        label->SetForeColor(0xE0E0E0);
    }
    txtTitle.SetFontBold(true);
    txtTitle.SetFontSize(10);
}

void frmISPLogin::Frame() {
    // The dialog has a real caption and frame, cut away by its shape.
    SetFrameInset(app_.frameWidth, app_.frameHeight);
    Move(Left(), Top(), layout::login::kWidth + 2 * app_.frameWidth,
         layout::login::kHeight + app_.frameHeight + app_.frameWidth);
}

void frmISPLogin::Form_Load() {
    Frame();
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, true);
    txtPassword.SetText("");
    cmdOK.Click = [this] { cmdOK_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
    SelectTextOnFocus(txtUserName, txtPassword);
    drag_.Attach(*this, {&lblLabels0, &lblLabels1, &txtTitle});
}

void frmISPLogin::Form_Activate() {
    if (Visible()) {
        FocusLoginFields(txtUserName, txtPassword);
    }
}

void frmISPLogin::Form_Resize() {
    // Centred on the main window; a place left of the screen turns into one right of it.
    const MainWin& win = app_.Form<MainWin>();
    const int left = std::abs(win.Left() + win.Width() / 2 - Width() / 2);
    const int top = win.Height() / 2 - Height() / 2 + win.Top();
    Move(left, top);
}

void frmISPLogin::cmdOK_Click() {
    // Looser than the VPN login: refused only for a password without a name.
    if (txtUserName.Text().empty() && !txtPassword.Text().empty()) {
        GetPlatform().MsgBox("Invalid User Name, try again!", forms::mb::kSetForeground,
                             LoadResString(ResConst::kAppName));
        txtUserName.SetFocus();
        SelectAllText(txtUserName);
        return;
    }
    LoginAccepted = true;
    Hide();
}

void frmISPLogin::cmdCancel_Click() {
    LoginAccepted = false;
    Hide();
}

void frmISPLogin::Form_MouseDown(int button, int, float, float) {
    drag_.Press(*this, button);
}

void frmISPLogin::Form_MouseMove(int button, int, float, float) {
    drag_.Follow(*this, button);
}

}  // namespace kw::dialer
