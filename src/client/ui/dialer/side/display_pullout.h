#pragma once

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/shell/pullout.h"
#include "client/ui/dialer/side/ip_utils.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The login information pullout: the VPN credentials and the alternate tunnel server.
class DisplayPullout : public forms::Form, public Pullout, public EventSubscriber {
  public:
    explicit DisplayPullout(Application& app);

    forms::Label Label1{*this, "Label1"};
    forms::Frame SSFrame1{*this, "SSFrame1"};
    // Stands in SSFrame1's caption, so it comes after the frame.
    forms::Image Image1{*this, "Image1"};
    forms::Label Label2{*this, "Label2"};
    forms::Label Label3{*this, "Label3"};
    forms::TextBox txtUserName{*this, "txtUserName"};
    forms::TextBox txtPassword{*this, "txtPassword"};
    forms::Frame SSFrame2{*this, "SSFrame2"};
    // The four octets of the alternate tunnel server, with the dots between them.
    forms::TextBox txtAltTunnelServer0{*this, "txtAltTunnelServer", 0};
    forms::Label Label4{*this, "Label4"};
    forms::TextBox txtAltTunnelServer1{*this, "txtAltTunnelServer", 1};
    forms::Label Label5{*this, "Label5"};
    forms::TextBox txtAltTunnelServer2{*this, "txtAltTunnelServer", 2};
    forms::Label Label6{*this, "Label6"};
    forms::TextBox txtAltTunnelServer3{*this, "txtAltTunnelServer", 3};
    forms::CommandButton btnModify{*this, "btnModify"};
    forms::CommandButton btnCancel{*this, "btnCancel"};

    // The credentials changed: the lists are read afresh once no call stands.
    bool LoginChanged = false;

    void OnHide(bool& ok) override;
    void btnModify_Click();
    void btnCancel_Click();
    // Asks whether the edits are to be saved, and saves or drops them; true when saved.
    bool ConfirmSaveLogin();
    // The form is editing while Modify reads Save.
    bool IsEditing() const { return btnModify.Caption() == "Save"; }
    IPBoxes AltTunnelServerBoxes() {
        return {&txtAltTunnelServer0, &txtAltTunnelServer1, &txtAltTunnelServer2,
                &txtAltTunnelServer3};
    }

    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

  protected:
    void Form_Load() override;
    void Form_Unload(int& cancel) override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();
    void SetFieldsEnabled(bool enabled);
    void Save();

    Application& app_;
};

}  // namespace kw::dialer
