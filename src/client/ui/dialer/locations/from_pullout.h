#pragma once

#include <cstdint>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The dialing locations pullout: where the user calls from.
class FromPullout : public forms::Form, public EventSubscriber, public Pullout {
  public:
    explicit FromPullout(Application& app);

    // The picture that gives the pullout its outline; first, so that everything stands on it.
    forms::Image Image2{*this, "Image2"};
    forms::Image Image1{*this, "Image1"};
    forms::Label Label3{*this, "Label3"};
    forms::ComboBox cmboLocations{*this, "cmboLocations"};
    forms::Label lbCountry{*this, "lbCountry"};
    forms::ComboBox cmboCountries{*this, "cmboCountries"};
    forms::Label lblPhoneNumber{*this, "lblPhoneNumber"};
    forms::Label Label7{*this, "Label7"};
    forms::TextBox txtAreaCode{*this, "txtAreaCode"};
    forms::Label Label8{*this, "Label8"};
    forms::TextBox txtPhoneNumber{*this, "txtPhoneNumber"};
    forms::Label Label6{*this, "Label6"};
    forms::Label lblOutsideLine{*this, "lblOutsideLine"};
    forms::TextBox txtOutsideAccess{*this, "txtOutsideAccess"};
    forms::Label lblLongDistance{*this, "lblLongDistance"};
    forms::TextBox txtLongDistance{*this, "txtLongDistance"};
    forms::CheckBox chkDisableCallWaiting{*this, "chkDisableCallWaiting"};
    forms::Label lblDisableCallWaiting{*this, "lblDisableCallWaiting"};
    forms::ComboBox cmboCallWaiting{*this, "cmboCallWaiting"};
    forms::CheckBox chkCallingCard{*this, "chkCallingCard"};
    forms::Label lblCallingCard{*this, "lblCallingCard"};
    forms::Label lblCallingCardName{*this, "lblCallingCardName"};
    forms::CheckBox chkManualDial{*this, "chkManualDial"};
    forms::Label lblManualDial{*this, "lblManualDial"};
    forms::CheckBox chkUseExisting{*this, "chkUseExisting"};
    forms::Label lblUseExisting{*this, "lblUseExisting"};
    forms::CommandButton btnAdd{*this, "btnAdd"};
    forms::CommandButton btnRemove{*this, "btnRemove"};
    forms::CommandButton btnCancel{*this, "btnCancel"};

    // Starts the adding of a location.
    void btnAdd_Click();
    // Asked before the pullout closes; false keeps it open.
    void OnHide(bool& ok) override;

    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

  protected:
    void Form_Load() override;
    void Form_Unload(int& cancel) override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();

    Application& app_;
};

}  // namespace kw::dialer
