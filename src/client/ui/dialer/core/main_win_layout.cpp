// Where MainWin's controls stand on its artwork, and the pictures they show.
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

using face::Place;

void MainWin::PlaceControls() {
    namespace at = layout::mainwin;
    namespace pic = layout::pictures;
    face::PlaceForm(*this, at::kWidth, at::kHeight);
    SetPicture(at::kPicture);
    Place(imgLogoOn, at::imgLogoOn);
    Place(btnMinimize, at::btnMinimize);
    Place(lblMinButton, at::lblMinButton);
    Place(btnHelp, at::btnHelp);
    Place(lblHelpButton, at::lblHelpButton);
    Place(btnCloseWin, at::btnCloseWin);
    Place(lblCloseButton, at::lblCloseButton);
    lblMinButton.SetCaption(at::kMinButtonGlyph);
    lblHelpButton.SetCaption(at::kHelpButtonGlyph);
    lblCloseButton.SetCaption(at::kCloseButtonGlyph);
    for (forms::Label* glyph : {&lblMinButton, &lblHelpButton, &lblCloseButton}) {
        glyph->SetAlignment(forms::align::kCenter);
        glyph->SetFontBold(true);
        glyph->SetForeColor(0xE8E8E8);
    }
    Place(lblFrom, at::lblFrom);
    Place(cmboFrom, at::cmboFrom);
    Place(btnFromPullout, at::btnFromPullout);
    Place(lblTo, at::lblTo);
    Place(cmboTo, at::cmboTo);
    Place(btnToPullout, at::btnToPullout);
    Place(imgModemDetected, at::imgModemDetected);
    Place(imgPhoneDialing, at::imgPhoneDialing);
    Place(imgConnectingISP, at::imgConnectingISP);
    Place(imgAuthorizingISP, at::imgAuthorizingISP);
    Place(imgCreatingTunnel, at::imgCreatingTunnel);
    Place(imgAuthorizingTunnel, at::imgAuthorizingTunnel);
    Place(btnRxPullout, at::btnRxPullout);
    Place(btnConnect, at::btnConnect);
    Place(lblConnect, at::lblConnect);
    Place(imgConnectLight, at::imgConnectLight);
    Place(Label4, at::Label4);
    Label4.SetAlignment(forms::align::kRight);
    Place(btnMorePullout, at::btnMorePullout);
    Place(lblStatus, at::lblStatus);
    Place(Image5, at::Image5);
    Place(Image6, at::Image6);
    Place(imgPushedButton, at::imgPushedButton);
    for (forms::Label* text : {&lblFrom, &lblTo, &Label4, &lblConnect, &lblStatus}) {
        text->SetForeColor(0xE0E0E0);
    }
    for (forms::ComboBox* combo : {&cmboFrom, &cmboTo}) {
        combo->SetBackColor(0x29221D);  // the dark well of the skin, red lowest
        combo->SetForeColor(0xEBE8E6);
    }
    lblConnect.SetFontBold(true);
    lblConnect.SetFontSize(8.25);
    lblStatus.SetForeColor(0x2AA8F0);  // amber, in the red-lowest layout

    imgModemDetected.SetPicture(pic::kModemDetected);
    imgPhoneDialing.SetPicture(pic::kPhoneDialing);
    imgConnectingISP.SetPicture(pic::kConnectingISP);
    imgAuthorizingISP.SetPicture(pic::kAuthorizingISP);
    imgCreatingTunnel.SetPicture(pic::kCreatingTunnel);
    imgAuthorizingTunnel.SetPicture(pic::kAuthorizingTunnel);
    imgLogoOn.SetPicture(pic::kLogoOn);
    imgConnectLight.SetPicture(pic::kConnectLightOff);
    imgConnectLightOn.SetPicture(pic::kConnectLightOn);
    imgConnectLightOff.SetPicture(pic::kConnectLightOff);
    imgYellowLightOn.SetPicture(pic::kYellowLightOn);
    imgYellowLightOff.SetPicture(pic::kYellowLightOff);
    btnHelp.SetPicture(pic::kBtnHelp);
    btnMinimize.SetPicture(pic::kBtnMinimize);
    btnCloseWin.SetPicture(pic::kBtnCloseWin);
    btnConnect.SetPicture(pic::kBtnConnect);
    imgPushedButton.SetPicture(pic::kPushedButton);
    Image5.SetPicture(pic::kImage5);
    Image6.SetPicture(pic::kImage6);
    btnFromPullout.SetPicture(pic::kBtnReg);
    btnToPullout.SetPicture(pic::kBtnReg);
    btnMorePullout.SetPicture(pic::kBtnReg);
    btnRxPullout.SetPicture(pic::kBtnRxPullout);
    btnReg.SetPicture(pic::kBtnReg);
    btnLeft.SetPicture(pic::kBtnLeft);
    btnRight.SetPicture(pic::kBtnRight);
    imgMoreBtnPressed.SetPicture(pic::kMoreBtnPressed);
    imgMoreLabels.SetPicture(pic::kMoreLabels);
    Image3.SetPicture(pic::kImage3);
}

}  // namespace kw::dialer
