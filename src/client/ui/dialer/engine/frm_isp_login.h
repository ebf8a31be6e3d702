#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Asks for the login of one ISP.
class frmISPLogin : public forms::Form {
public:
    explicit frmISPLogin(Application& app);

    forms::Label txtTitle{*this, "txtTitle"};
    forms::Label lblLabels0{*this, "lblLabels", 0};
    forms::Label lblLabels1{*this, "lblLabels", 1};
    forms::TextBox txtUserName{*this, "txtUserName"};
    forms::TextBox txtPassword{*this, "txtPassword"};
    forms::CommandButton cmdOK{*this, "cmdOK"};
    forms::CommandButton cmdCancel{*this, "cmdCancel"};

    bool LoginAccepted = false;

protected:
    void Form_Load() override;

private:
    Application& app_;
};

}  // namespace kw::dialer
