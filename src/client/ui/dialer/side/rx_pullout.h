#pragma once

#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The Prescriber pullout: the running text of what the engine diagnoses.
class RxPullout : public forms::Form, public Pullout {
  public:
    explicit RxPullout(Application& app);

    forms::Image Image1{*this, "Image1"};
    forms::Label Label1{*this, "Label1"};
    forms::RichTextBox txtStatus{*this, "txtStatus"};
    forms::CommandButton Command2{*this, "Command2"};

    void Command2_Click();
    // Opens or closes the pullout as its button on the main window does.
    void ToggleRxPullout();

    // The Prescriber holds nothing to lose.
    void OnHide(bool& ok) override { ok = true; }

  protected:
    void Form_Load() override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();

    Application& app_;
};

}  // namespace kw::dialer
