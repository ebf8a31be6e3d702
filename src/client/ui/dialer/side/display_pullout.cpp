#include "client/ui/dialer/side/display_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

DisplayPullout::DisplayPullout(Application& app)
    : Form(app.Platform(), "DisplayPullout"), app_(app) {
    SetCaption("DisplayPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("Display Options");
    // The blanks leave room for Image1 in the caption.
    SSFrame1.SetCaption("      VPN User Information");
    Label2.SetCaption("Username:");
    Label3.SetCaption("Password:");
    txtPassword.SetPasswordChar('*');
    SSFrame2.SetCaption("Alternate Tunnel Server ");
    for (forms::Label* dot : {&Label4, &Label5, &Label6}) {
        dot->SetCaption(".");
    }
    // Read-only until Modify is pressed.
    for (forms::TextBox* box : {&txtUserName, &txtPassword, &txtAltTunnelServer0,
                                &txtAltTunnelServer1, &txtAltTunnelServer2, &txtAltTunnelServer3}) {
        box->SetEnabled(false);
    }
    for (forms::TextBox* octet :
         {&txtAltTunnelServer0, &txtAltTunnelServer1, &txtAltTunnelServer2, &txtAltTunnelServer3}) {
        octet->SetMaxLength(3);
    }
    btnModify.SetCaption("Modify");
    btnCancel.SetCaption("Cancel");
    btnCancel.SetEnabled(false);
    PlaceControls();
}

void DisplayPullout::PlaceControls() {
    namespace at = layout::displaypullout;
    SetPicture(at::kPicture);
    face::PlaceForm(*this, layout::panel::kWidth, layout::panel::kHeight);
    Image1.SetPicture(at::kIcon);
    face::Place(Label1, at::Label1);
    face::Place(SSFrame1, at::SSFrame1);
    face::Place(Image1, at::Image1);
    face::Place(Label2, at::Label2);
    face::Place(Label3, at::Label3);
    face::Place(txtUserName, at::txtUserName);
    face::Place(txtPassword, at::txtPassword);
    face::Place(SSFrame2, at::SSFrame2);
    face::Place(txtAltTunnelServer0, at::txtAltTunnelServer0);
    face::Place(Label4, at::Label4);
    face::Place(txtAltTunnelServer1, at::txtAltTunnelServer1);
    face::Place(Label5, at::Label5);
    face::Place(txtAltTunnelServer2, at::txtAltTunnelServer2);
    face::Place(Label6, at::Label6);
    face::Place(txtAltTunnelServer3, at::txtAltTunnelServer3);
    face::Place(btnModify, at::btnModify);
    face::Place(btnCancel, at::btnCancel);
    face::OnSkin({&Label1, &SSFrame1, &Label2, &Label3, &SSFrame2, &Label4, &Label5, &Label6});
    face::InWell({&txtUserName, &txtPassword, &txtAltTunnelServer0, &txtAltTunnelServer1,
                  &txtAltTunnelServer2, &txtAltTunnelServer3});
}

void DisplayPullout::Form_Load() {
    const BitmapBits& art = app_.Art().Bitmap(layout::displaypullout::kPicture);
    face::BlendFrame(SSFrame1, art);
    face::BlendFrame(SSFrame2, art);
    // This one shapes before it scales.
    app_.Shape(*this, false);
    ScaleForm(*this, app_.Platform());
}

void DisplayPullout::OnHide(bool& ok) {
    ok = btnModify.Caption() != "Save";
}

}  // namespace kw::dialer
