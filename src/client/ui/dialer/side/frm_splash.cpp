#include "client/ui/dialer/side/frm_splash.h"

#include <string>

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

frmSplash::frmSplash(Application& app) : Form(app.Platform(), "frmSplash"), app_(app) {
    SetCaption("");
    lblCompanyProduct.SetCaption("Fenwarden");
    lblProductName.SetCaption("Product");
    lblVersion.SetCaption("Version  1.0 (Alpha)");
    lblPlatform.SetCaption("Windows 95");
    lblCompany.SetCaption("Ostvarra, Inc.");
    lblCopyright.SetCaption("Copyright (C) Ostvarra, Inc. All rights reserved.");
    lblWarning.SetCaption("");
    Frame1.Click = [this] { Unload(); };
}

void frmSplash::Form_Load() {
    lblVersion.SetCaption("Version " + std::to_string(app_.Major) + "." +
                          std::to_string(app_.Minor) + "." + std::to_string(app_.Revision));
    lblProductName.SetCaption(app_.Title);
}

void frmSplash::Form_KeyPress(int& keyAscii) {
    (void)keyAscii;
    Unload();
}

}  // namespace kw::dialer
