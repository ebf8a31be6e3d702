#pragma once

#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The user preferences pullout: calling cards and the confirm-dial preference.
class PrefPullout : public forms::Form, public Pullout {
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

  protected:
    void Form_Load() override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();

    Application& app_;
};

}  // namespace kw::dialer
