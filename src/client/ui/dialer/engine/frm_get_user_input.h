#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Asks the user for one line of text on behalf of the engine.
class frmGetUserInput : public forms::Form {
  public:
    explicit frmGetUserInput(Application& app);

    forms::Label lblPrompt{*this, "lblPrompt"};
    forms::TextBox txtInput{*this, "txtInput"};
    forms::CommandButton btnOK{*this, "btnOK"};
    forms::CommandButton btnCancel{*this, "btnCancel"};

    bool Cancelled = false;

  protected:
    void Form_Load() override;

  private:
    Application& app_;
};

}  // namespace kw::dialer
