#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The user preferences pullout: calling cards and the confirm-dial preference.
class PrefPullout : public forms::Form {
public:
    explicit PrefPullout(Application& app);

    forms::Label Label1{*this, "Label1"};
    forms::ComboBox cmboCallingCards{*this, "cmboCallingCards"};
    forms::TextBox txtCardNumber{*this, "txtCardNumber"};
    forms::CommandButton btnSave{*this, "btnSave"};

    void OnHide(bool& ok);
    // Run each time the pullout opens: shows the card chosen for the calls.
    void OnShow();

private:
    Application& app_;
};

}  // namespace kw::dialer
