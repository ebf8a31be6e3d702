#include "client/ui/dialer/side/rx_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

RxPullout::RxPullout(Application& app) : Form(app.Platform(), "RxPullout"), app_(app) {
    SetCaption("RxPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("Prescriber Output");
    txtStatus.SetLocked(true);
    Command2.SetCaption("Clear");
    Command2.Click = [this] { Command2_Click(); };
    PlaceControls();
}

void RxPullout::PlaceControls() {
    namespace at = layout::rxpullout;
    SetPicture(at::kPicture);
    face::PlaceForm(*this, layout::drawer::kWidth, layout::drawer::kHeight);
    Image1.SetPicture(at::kIcon);
    face::Place(Image1, at::Image1);
    face::Place(Label1, at::Label1);
    face::Place(txtStatus, at::txtStatus);
    face::Place(Command2, at::Command2);
    face::OnSkin({&Label1});
    face::InWell({&txtStatus});
}

void RxPullout::Command2_Click() {
    // Only the view: the Prescriber log of a call stays open and keeps what it has.
    txtStatus.SetText("");
}

void RxPullout::ToggleRxPullout() {
    app_.Form<MainWin>().btnRxPullout_Click();
}

void RxPullout::Form_Load() {
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, false);
}

}  // namespace kw::dialer
