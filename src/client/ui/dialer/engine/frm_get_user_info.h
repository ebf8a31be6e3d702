#pragma once

#include <cstdint>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Offers the user a list to choose from on behalf of the engine.
class frmGetUserInfo : public forms::Form {
  public:
    explicit frmGetUserInfo(Application& app);

    forms::Label lblPrompt{*this, "lblPrompt"};
    forms::ListBox lbChoices{*this, "lbChoices"};
    forms::CommandButton btnOK{*this, "btnOK"};
    forms::CommandButton btnCancel{*this, "btnCancel"};

    std::int16_t SelectedIndex = 0;
    bool Cancelled = false;

  protected:
    void Form_Load() override;

  private:
    Application& app_;
};

}  // namespace kw::dialer
