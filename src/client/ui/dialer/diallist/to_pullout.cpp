#include "client/ui/dialer/diallist/to_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"

namespace kw::dialer {

ToPullout::ToPullout(Application& app) : Form(app.Platform(), "ToPullout"), app_(app) {
    SetCaption("ToPullout");
    Move(0, 0, 400, 232);
    Label1.SetCaption("Destination:");
    btnSaveList.SetCaption("Save");
    btnSaveList.SetEnabled(false);
    lstvDialList.SetCheckboxes(true);
}

void ToPullout::Form_Load() {
    lbDestinations.Click = [this] { lbDestinations_Click(); };
    btnSaveList.Click = [this] { btnSaveList_Click(); };
}

void ToPullout::lbDestinations_Click() {
    // The destination list and the main window's combo stand at the same index.
    app_.Form<MainWin>().cmboTo.SetListIndex(lbDestinations.ListIndex());
}

void ToPullout::UpdateDialList(const automation::Variant& list) { lastList_ = list; }

void ToPullout::btnSaveList_Click() { btnSaveList.SetEnabled(false); }

void ToPullout::OnHide(bool& ok) { ok = !btnSaveList.Enabled(); }

}  // namespace kw::dialer
