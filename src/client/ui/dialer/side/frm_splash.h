#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The title form: logo, product, version and platform. It goes at any key or a click on its
// frame.
class frmSplash : public forms::Form {
  public:
    explicit frmSplash(Application& app);

    forms::Frame Frame1{*this, "Frame1"};
    forms::Image imgLogo{*this, "imgLogo"};
    forms::Label lblCompanyProduct{*this, "lblCompanyProduct"};
    forms::Label lblProductName{*this, "lblProductName"};
    forms::Label lblVersion{*this, "lblVersion"};
    forms::Label lblPlatform{*this, "lblPlatform"};
    forms::Label lblCompany{*this, "lblCompany"};
    forms::Label lblCopyright{*this, "lblCopyright"};
    forms::Label lblWarning{*this, "lblWarning"};

  protected:
    void Form_Load() override;
    void Form_KeyPress(int& keyAscii) override;

  private:
    void PlaceControls();

    Application& app_;
};

}  // namespace kw::dialer
