#pragma once

#include "client/ui/dialer/engine/login_dialog.h"
#include "client/ui/dialer/shell/caption_drag.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Asks for the VPN user name and password. OK stores them and saves them through the engine.
class frmLogin : public forms::Form {
  public:
    explicit frmLogin(Application& app);

    forms::Label Label1{*this, "Label1"};
    forms::Label lblLabels0{*this, "lblLabels", 0};
    forms::Label lblLabels1{*this, "lblLabels", 1};
    forms::TextBox txtUserName{*this, "txtUserName"};
    forms::TextBox txtPassword{*this, "txtPassword"};
    forms::CommandButton cmdOK{*this, "cmdOK"};
    forms::CommandButton cmdCancel{*this, "cmdCancel"};

    bool LoginAccepted = false;

    void cmdOK_Click();
    void cmdCancel_Click();
    // Builds the window's shape from its artwork.
    void Shape();

  protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_MouseDown(int button, int shift, float x, float y) override;
    void Form_MouseMove(int button, int shift, float x, float y) override;

  private:
    LoginView View();

    Application& app_;
    CaptionDrag drag_;
};

}  // namespace kw::dialer
