#include "client/ui/dialer/diallist/to_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

ToPullout::ToPullout(Application& app) : Form(app.Platform(), "ToPullout"), app_(app) {
    SetCaption("ToPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("Destination:");
    rbPOP.SetCaption("POP");
    rbISP.SetCaption("ISP");
    btnRefresh.SetCaption("Refresh");
    btnSaveList.SetCaption("Save");
    btnSaveList.SetEnabled(false);
    lstvDialList.SetCheckboxes(true);
    PlaceControls();
}

void ToPullout::PlaceControls() {
    namespace at = layout::topullout;
    SetPicture(at::kPicture);
    Move(Left(), Top(), layout::drawer::kWidth, layout::drawer::kHeight);
    face::Place(Label1, at::Label1);
    face::Place(lbDestinations, at::lbDestinations);
    face::Place(rbPOP, at::rbPOP);
    face::Place(rbISP, at::rbISP);
    face::Place(lstvDialList, at::lstvDialList);
    face::Place(btnUp, at::btnUp);
    face::Place(btnDown, at::btnDown);
    face::Place(btnRefresh, at::btnRefresh);
    face::Place(btnSaveList, at::btnSaveList);
    btnUp.SetPicture(at::kBtnUp);
    btnDown.SetPicture(at::kBtnDown);
    face::OnSkin({&Label1, &rbPOP, &rbISP});
    face::InWell({&lbDestinations, &lstvDialList});
}

void ToPullout::Form_Load() {
    ScaleForm(*this, app_.Platform());
    // Before any list is shown, the view heads the first two columns of the POP list.
    lstvDialList.AddColumn("PhoneNumber", "PhoneNumber", 75);
    lstvDialList.AddColumn("ISP", "ISP", 80);
    app_.Shape(*this, false);
    rbPOP.SetValue(true);  // the POP list is the one shown first
    lbDestinations.Click = [this] { lbDestinations_Click(); };
    btnSaveList.Click = [this] { btnSaveList_Click(); };
}

void ToPullout::lbDestinations_Click() {
    // The destination list and the main window's combo stand at the same index.
    app_.Form<MainWin>().cmboTo.SetListIndex(lbDestinations.ListIndex());
}

void ToPullout::UpdateDialList(const automation::Variant& list) {
    lastList_ = list;
}

void ToPullout::btnSaveList_Click() {
    btnSaveList.SetEnabled(false);
}

void ToPullout::OnHide(bool& ok) {
    ok = !btnSaveList.Enabled();
}

}  // namespace kw::dialer
