#pragma once

#include <cstdint>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The user preferences pullout: calling cards and the confirm-dial preference.
class PrefPullout : public forms::Form, public EventSubscriber, public Pullout {
  public:
    explicit PrefPullout(Application& app);

    forms::Label Label1{*this, "Label1"};
    // Holds the five below it.
    forms::Frame frCallingCard{*this, "frCallingCard"};
    forms::Label Label3{*this, "Label3"};
    forms::ComboBox cmboCallingCards{*this, "cmboCallingCards"};
    forms::Label Label2{*this, "Label2"};
    forms::TextBox txtCardNumber{*this, "txtCardNumber"};
    forms::CommandButton btnSave{*this, "btnSave"};
    forms::CheckBox chkConfirmDial{*this, "chkConfirmDial"};
    // Autologout: hidden, and nothing acts on them.
    forms::CheckBox chkAutoDial{*this, "chkAutoDial"};
    forms::TextBox Text2{*this, "Text2"};
    forms::Label Label4{*this, "Label4"};
    forms::Image Image1{*this, "Image1"};
    forms::Timer tmrCCardMsg{*this, "tmrCCardMsg"};

    void OnHide(bool& ok) override;
    // Run each time the pullout opens: shows the card chosen for the calls.
    void OnShow() override;

    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

    void btnSave_Click();
    void cmboCallingCards_Click();
    // True when the last save of a card number failed.
    bool m_CardSaveFailed = false;

  protected:
    void Form_Load() override;
    void Form_Unload(int& cancel) override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();
    // Yes saves the number (true); No puts the card's own number back (false).
    bool AskSaveCardNumber();
    bool IsCardNumberModified() const { return btnSave.Enabled(); }
    void tmrCCardMsg_Timer();
    void chkConfirmDial_Click();

    Application& app_;
};

}  // namespace kw::dialer
