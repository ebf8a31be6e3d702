#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The login information pullout: the VPN credentials and the alternate tunnel server.
class DisplayPullout : public forms::Form {
public:
    explicit DisplayPullout(Application& app);

    forms::TextBox txtUserName{*this, "txtUserName"};
    forms::TextBox txtPassword{*this, "txtPassword"};
    forms::CommandButton btnModify{*this, "btnModify"};

    // The credentials changed: the lists are read afresh once no call stands.
    bool LoginChanged = false;

    void OnHide(bool& ok);
};

}  // namespace kw::dialer
