#pragma once

#include "client/ui/dialer/engine/login_dialog.h"
#include "client/ui/dialer/shell/caption_drag.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Asks for the login of one ISP, centred on the main window.
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

    void cmdOK_Click();
    void cmdCancel_Click();

  protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, int shift, float x, float y) override;
    void Form_MouseMove(int button, int shift, float x, float y) override;

  private:
    LoginView View();

    Application& app_;
    CaptionDrag drag_;
};

}  // namespace kw::dialer
