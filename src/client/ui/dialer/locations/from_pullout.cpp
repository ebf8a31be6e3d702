#include "client/ui/dialer/locations/from_pullout.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

FromPullout::FromPullout(Application& app) : Form(app.Platform(), "FromPullout"), app_(app) {
    SetCaption("FromPullout");
    Move(0, 0, 400, 232);
    btnAdd.SetCaption("Add");
    btnRemove.SetCaption("Remove");
    chkCallingCard.SetCaption("Use Calling Card");
    lblCallingCard.SetCaption("");
    cmboCountries.SetSorted(true);
    cmboCountries.SetStyle(forms::combo::kDropdownList);
}

void FromPullout::Form_Load() {
    app_.EventManagerObject.registerForEvent(event::kConnectRequested, this);
    btnAdd.Click = [this] { btnAdd_Click(); };
}

void FromPullout::Form_Unload(int& cancel) {
    (void)cancel;
    app_.EventManagerObject.deregisterForEvent(event::kConnectRequested, this);
}

void FromPullout::btnAdd_Click() {
    // The location form's editing comes with the locations work; until then adding starts nowhere.
}

void FromPullout::OnHide(bool& ok) { ok = true; }

void FromPullout::KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) {
    (void)eventId;
    (void)data;
}

std::int32_t FromPullout::KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                          automation::Variant& data) {
    (void)eventId;
    (void)data;
    return 0;  // nothing unsaved
}

}  // namespace kw::dialer
