#include "client/ui/dialer/locations/from_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

FromPullout::FromPullout(Application& app) : Form(app.Platform(), "FromPullout"), app_(app) {
    SetCaption("FromPullout");
    SetForeColor(face::kKeyColour);
    Label3.SetCaption("Location:");
    cmboLocations.SetText("Combo1");
    cmboLocations.SetSorted(true);
    lbCountry.SetCaption("Country/Region:");
    cmboCountries.SetSorted(true);
    cmboCountries.SetStyle(forms::combo::kDropdownList);
    lblPhoneNumber.SetCaption("Your Phone Number:");
    Label7.SetCaption("(");
    txtAreaCode.SetMaxLength(3);
    Label8.SetCaption(") -");
    Label6.SetCaption("Dialing properties");
    Label6.SetFontBold(true);
    lblOutsideLine.SetCaption("Local");
    txtOutsideAccess.SetText("9");
    txtOutsideAccess.SetMaxLength(32);
    lblLongDistance.SetCaption("Long Distance");
    txtLongDistance.SetText("8");
    txtLongDistance.SetMaxLength(32);
    lblDisableCallWaiting.SetCaption("Disable Call Waiting");
    cmboCallWaiting.SetText("*70,");
    cmboCallWaiting.SetEnabled(false);
    lblCallingCard.SetCaption("Use Calling Card :");
    lblCallingCardName.SetFontBold(true);
    lblManualDial.SetCaption("Manual Dial");
    lblUseExisting.SetCaption("Use Existing Internet connection");
    btnAdd.SetCaption("Add");
    btnRemove.SetCaption("Remove");
    btnCancel.SetCaption("Cancel");
    PlaceControls();
}

void FromPullout::PlaceControls() {
    namespace at = layout::frompullout;
    face::PlaceForm(*this, layout::drawer::kWidth, layout::drawer::kHeight);
    Image2.SetPicture(at::kPicture);
    Image1.SetPicture(at::kIcon);
    face::Place(Image2, at::Image2);
    face::Place(Image1, at::Image1);
    face::Place(Label3, at::Label3);
    face::Place(cmboLocations, at::cmboLocations);
    face::Place(lbCountry, at::lbCountry);
    face::Place(cmboCountries, at::cmboCountries);
    face::Place(lblPhoneNumber, at::lblPhoneNumber);
    face::Place(Label7, at::Label7);
    face::Place(txtAreaCode, at::txtAreaCode);
    face::Place(Label8, at::Label8);
    face::Place(txtPhoneNumber, at::txtPhoneNumber);
    face::Place(Label6, at::Label6);
    face::Place(lblOutsideLine, at::lblOutsideLine);
    face::Place(txtOutsideAccess, at::txtOutsideAccess);
    face::Place(lblLongDistance, at::lblLongDistance);
    face::Place(txtLongDistance, at::txtLongDistance);
    face::Place(chkDisableCallWaiting, at::chkDisableCallWaiting);
    face::Place(lblDisableCallWaiting, at::lblDisableCallWaiting);
    face::Place(cmboCallWaiting, at::cmboCallWaiting);
    face::Place(chkCallingCard, at::chkCallingCard);
    face::Place(lblCallingCard, at::lblCallingCard);
    face::Place(lblCallingCardName, at::lblCallingCardName);
    face::Place(chkManualDial, at::chkManualDial);
    face::Place(lblManualDial, at::lblManualDial);
    face::Place(chkUseExisting, at::chkUseExisting);
    face::Place(lblUseExisting, at::lblUseExisting);
    face::Place(btnAdd, at::btnAdd);
    face::Place(btnRemove, at::btnRemove);
    face::Place(btnCancel, at::btnCancel);
    face::OnSkin({&Label3, &lbCountry, &lblPhoneNumber, &Label7, &Label8, &Label6, &lblOutsideLine,
                  &lblLongDistance, &chkDisableCallWaiting, &lblDisableCallWaiting, &chkCallingCard,
                  &lblCallingCard, &lblCallingCardName, &chkManualDial, &lblManualDial,
                  &chkUseExisting, &lblUseExisting});
    face::InWell({&cmboLocations, &cmboCountries, &txtAreaCode, &txtPhoneNumber, &txtOutsideAccess,
                  &txtLongDistance, &cmboCallWaiting});
}

void FromPullout::Form_Load() {
    app_.EventManagerObject.registerForEvent(event::kConnectRequested, this);
    cmboLocations.SetText("");
    ScaleForm(*this, app_.Platform());
    // The outline comes from Image2, at its place on the form.
    app_.Shape(*this, false, &Image2);
    // At rest nothing is being entered: no name to type, nothing to remove or give up.
    btnRemove.SetEnabled(false);
    cmboLocations.SetEnabled(false);
    btnCancel.SetEnabled(false);
    btnAdd.Click = [this] { btnAdd_Click(); };
}

void FromPullout::Form_Unload(int& cancel) {
    (void)cancel;
    app_.EventManagerObject.deregisterForEvent(event::kConnectRequested, this);
}

void FromPullout::btnAdd_Click() {
    // The location form's editing comes with the locations work; until then adding starts nowhere.
}

void FromPullout::OnHide(bool& ok) {
    ok = true;
}

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
