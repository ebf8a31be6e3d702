#include "client/ui/dialer/side/frm_splash.h"

#include <string>
#include <utility>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/faces.h"

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
    PlaceControls();
    Frame1.Click = [this] { Unload(); };
}

void frmSplash::PlaceControls() {
    namespace at = layout::splash;
    // A rectangle in the skin's colours, with the main window's logo: there is no artwork for it.
    face::PlaceForm(*this, at::kWidth, at::kHeight);
    SetBackColor(face::kWellBack);
    SetForeColor(face::kKeyColour);  // the logo's green is the key, as on the main window
    face::Place(Frame1, at::Frame1);
    Frame1.SetBackColor(face::kWellBack);
    face::PlaceIn(imgLogo, Frame1, at::imgLogo, at::Frame1);
    imgLogo.SetPicture(layout::pictures::kLogoOn);
    for (auto [label, place] : {std::pair{&lblCompanyProduct, at::lblCompanyProduct},
                                {&lblProductName, at::lblProductName},
                                {&lblVersion, at::lblVersion},
                                {&lblPlatform, at::lblPlatform},
                                {&lblCompany, at::lblCompany},
                                {&lblCopyright, at::lblCopyright},
                                {&lblWarning, at::lblWarning}}) {
        face::PlaceIn(*label, Frame1, place, at::Frame1);
        label->SetForeColor(face::kSkinText);
    }
    lblProductName.SetFontSize(14);
    lblProductName.SetFontBold(true);
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
