#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The Prescriber pullout: the running text of what the engine diagnoses.
class RxPullout : public forms::Form {
public:
    explicit RxPullout(Application& app);

    forms::RichTextBox txtStatus{*this, "txtStatus"};
};

}  // namespace kw::dialer
