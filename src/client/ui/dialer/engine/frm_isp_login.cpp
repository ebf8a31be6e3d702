#include "client/ui/dialer/engine/frm_isp_login.h"

#include <cstdlib>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/login_dialog.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer {

frmISPLogin::frmISPLogin(Application& app) : Form(app.Platform(), "frmISPLogin"), app_(app) {
    View().Design("ISP Login Info:", layout::login::kIspLoginPicture);
}

LoginView frmISPLogin::View() {
    return LoginView{*this,       txtTitle,    lblLabels0, lblLabels1,
                     txtUserName, txtPassword, cmdOK,      cmdCancel};
}

void frmISPLogin::Form_Load() {
    View().Frame(app_);
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
