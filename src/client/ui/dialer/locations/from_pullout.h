#pragma once

#include <cstdint>

#include "client/ui/dialer/core/event_manager.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The dialing locations pullout: where the user calls from.
class FromPullout : public forms::Form, public EventSubscriber {
public:
    explicit FromPullout(Application& app);

    forms::Image Image2{*this, "Image2"};
    forms::ComboBox cmboLocations{*this, "cmboLocations"};
    forms::ComboBox cmboCountries{*this, "cmboCountries"};
    forms::CommandButton btnAdd{*this, "btnAdd"};
    forms::CommandButton btnRemove{*this, "btnRemove"};
    forms::CheckBox chkCallingCard{*this, "chkCallingCard"};
    forms::Label lblCallingCard{*this, "lblCallingCard"};

    // Starts the adding of a location.
    void btnAdd_Click();
    // Asked before the pullout closes; false keeps it open.
    void OnHide(bool& ok);

    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

protected:
    void Form_Load() override;
    void Form_Unload(int& cancel) override;

private:
    Application& app_;
};

}  // namespace kw::dialer
