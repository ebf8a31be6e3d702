#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The small pullout with the three buttons that open the log, preference and login pullouts.
class MorePullout : public forms::Form {
public:
    explicit MorePullout(Application& app);

    forms::Image btnLog{*this, "btnLog"};
    forms::Image btnPref{*this, "btnPref"};
    forms::Image btnDisplay{*this, "btnDisplay"};

    void OnHide(bool& ok);

private:
    Application& app_;
};

}  // namespace kw::dialer
