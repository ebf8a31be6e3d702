#pragma once

// Where the artwork leaves room for each control, in pixels relative to the form's client area
// (for PerfPulldown and FromPullout: relative to the form, with the shaping image at 0, 0), and
// the pictures' names as forms refer to them (relative to the assets directory). The artwork
// generator draws from these same numbers, so the forms and the pictures cannot drift apart.
// Standard library only.

namespace kw::dialer::layout {

struct LayoutRect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;

    constexpr int Right() const { return x + w; }
    constexpr int Bottom() const { return y + h; }
};

// The outer frame the main window's geometry formulas expect around its client area: the
// platform reports these as the dialog frame width and the caption height. Pullout places,
// PerfPulldown's 176 and 300 and its panel at 42 all fit these numbers.
inline constexpr int kFrameWidth = 3;
inline constexpr int kCaptionHeight = 19;
inline constexpr int kFrameHeight = kCaptionHeight + kFrameWidth;

// Pure green, the outside colour of every shaped picture (each form's ForeColor).
inline constexpr int kKeyRed = 0;
inline constexpr int kKeyGreen = 255;
inline constexpr int kKeyBlue = 0;

// Sizes of the shared faces.
inline constexpr int kRoundButtonSize = 18;  // Image5, Image6, the round buttons of MainWin
inline constexpr int kLightSize = 12;        // progress lights
inline constexpr int kTabWidth = 14;         // pullout button faces
inline constexpr int kTabHeight = 24;

namespace mainwin {
inline constexpr int kWidth = 128;
inline constexpr int kHeight = 320;
inline constexpr const char* kPicture = "art/MainWin.bmp";

// Title row: the three round buttons, each with its transparent label on top; below them
// the logo (lit when connected) beside the name.
inline constexpr LayoutRect imgLogoOn{8, 26, 18, 18};
inline constexpr LayoutRect btnMinimize{51, 5, 18, 18};
inline constexpr LayoutRect lblMinButton = btnMinimize;
inline constexpr LayoutRect btnHelp{72, 5, 18, 18};
inline constexpr LayoutRect lblHelpButton = btnHelp;
inline constexpr LayoutRect btnCloseWin{93, 5, 18, 18};
inline constexpr LayoutRect lblCloseButton = btnCloseWin;
// Glyphs that the transparent labels carry over the plain round faces.
inline constexpr const char* kMinButtonGlyph = "\u2013";
inline constexpr const char* kHelpButtonGlyph = "?";
inline constexpr const char* kCloseButtonGlyph = "\u00d7";

inline constexpr LayoutRect kWordmark{30, 27, 80, 17};

// Where the two combos go; the pullout tabs stick out of the right edge beside them.
inline constexpr LayoutRect lblFrom{10, 48, 60, 12};
inline constexpr LayoutRect cmboFrom{8, 60, 102, 21};
inline constexpr LayoutRect btnFromPullout{114, 58, kTabWidth, kTabHeight};
inline constexpr LayoutRect lblTo{10, 86, 60, 12};
inline constexpr LayoutRect cmboTo{8, 98, 102, 21};
inline constexpr LayoutRect btnToPullout{114, 96, kTabWidth, kTabHeight};

// The lights column, a lamp and its caption (drawn in the picture) per step of a call.
inline constexpr LayoutRect kLightsWell{6, 126, 104, 88};
inline constexpr LayoutRect imgModemDetected{13, 131, kLightSize, kLightSize};
inline constexpr LayoutRect imgPhoneDialing{13, 145, kLightSize, kLightSize};
inline constexpr LayoutRect imgConnectingISP{13, 159, kLightSize, kLightSize};
inline constexpr LayoutRect imgAuthorizingISP{13, 173, kLightSize, kLightSize};
inline constexpr LayoutRect imgCreatingTunnel{13, 187, kLightSize, kLightSize};
inline constexpr LayoutRect imgAuthorizingTunnel{13, 201, kLightSize, kLightSize};
inline constexpr const char* kLightCaptions[6] = {"Modem",     "Dialing", "ISP",
                                                  "ISP login", "Tunnel",  "Tunnel login"};
inline constexpr LayoutRect btnRxPullout{114, 158, kTabWidth, kTabHeight};

// Connect row: the round button, its caption, and the light that comes on with the ISP.
inline constexpr LayoutRect kConnectWell{6, 220, 104, 26};
inline constexpr LayoutRect btnConnect{10, 224, 18, 18};
inline constexpr LayoutRect lblConnect{31, 226, 62, 14};
inline constexpr LayoutRect imgConnectLight{96, 228, 10, 10};

inline constexpr LayoutRect Label4{60, 254, 50, 12};  // "More ", right-aligned
inline constexpr LayoutRect btnMorePullout{114, 248, kTabWidth, kTabHeight};

inline constexpr LayoutRect kStatusWell{6, 270, 104, 28};
inline constexpr LayoutRect lblStatus{9, 272, 98, 24};

// Hidden pictures: placed off the drawn area, only their pictures are used.
inline constexpr LayoutRect Image5{0, 0, 18, 18};
inline constexpr LayoutRect Image6{0, 0, 18, 18};
inline constexpr LayoutRect imgPushedButton{0, 0, 18, 18};

// The notch in the bottom edge through which PerfPulldown's handle shows.
inline constexpr int kNotchLeft = 32;
inline constexpr int kNotchRight = 86;
inline constexpr int kNotchDepth = 15;
}  // namespace mainwin

// frmLogin and frmISPLogin share one layout; txtTitle stands where Label1 stands.
namespace login {
inline constexpr int kWidth = 200;
inline constexpr int kHeight = 150;
inline constexpr const char* kLoginPicture = "art/frmLogin.bmp";
inline constexpr const char* kIspLoginPicture = "art/frmISPLogin.bmp";

inline constexpr LayoutRect Label1{40, 12, 150, 16};
inline constexpr LayoutRect txtTitle = Label1;
inline constexpr LayoutRect lblLabels0{14, 50, 72, 14};
inline constexpr LayoutRect txtUserName{88, 47, 98, 20};
inline constexpr LayoutRect lblLabels1{14, 78, 72, 14};
inline constexpr LayoutRect txtPassword{88, 75, 98, 20};
inline constexpr LayoutRect cmdOK{48, 112, 66, 24};
inline constexpr LayoutRect cmdCancel{120, 112, 66, 24};
}  // namespace login

namespace perfpulldown {
inline constexpr int kWidth = 115;
inline constexpr int kHeight = 181;
inline constexpr LayoutRect Image1{0, 0, kWidth, kHeight};
inline constexpr const char* kPicture = "art/PerfPulldown_Image1.bmp";

// The panels all take this place when on show.
inline constexpr LayoutRect CMPanel{11, 42, 93, 95};
// The strip between the rotate arrows where the panel on show names itself.
inline constexpr LayoutRect kPanelCaption{20, 142, 75, 16};
inline constexpr LayoutRect LeftBtn{3, 142, 16, 16};
inline constexpr LayoutRect RightBtn{96, 142, 16, 16};
inline constexpr LayoutRect downBtn{37, 153, 21, 27};
inline constexpr LayoutRect detachBtn{64, 158, 18, 19};
// The handle below the body that shows under the main window when retracted.
inline constexpr LayoutRect kHandle{30, 150, 58, 31};
inline constexpr int kBodyBottom = 162;

// Panel 0, relative to the panel.
inline constexpr LayoutRect VpnBytes{1, 1, 34, 37};
inline constexpr LayoutRect VpnRcv{38, 6, 54, 12};
inline constexpr LayoutRect VpnSent{38, 20, 54, 12};
inline constexpr LayoutRect ISPBytes{0, 39, 36, 28};
inline constexpr LayoutRect IspRcv{38, 41, 54, 12};
inline constexpr LayoutRect IspSent{38, 55, 54, 12};
inline constexpr LayoutRect imgLocation{2, 63, 32, 32};
inline constexpr LayoutRect Duration{38, 72, 54, 14};
// Panel 3, relative to the panel: captions left, counters right.
inline constexpr int kErrorRowTop = 6;
inline constexpr int kErrorRowStep = 17;
inline constexpr LayoutRect kErrorCaption{4, 0, 52, 13};
inline constexpr LayoutRect kErrorCount{56, 0, 34, 13};
// Panels 1, 2 and 4: the chart fills the panel.
inline constexpr LayoutRect kChart{2, 2, 89, 91};

inline constexpr const char* kImgLocation = "art/imgLocation.bmp";
inline constexpr const char* kVpnBytes = "art/VpnBytes.bmp";
inline constexpr const char* kISPBytes = "art/ISPBytes.bmp";
inline constexpr const char* kLeftBtn = "art/LeftBtn.bmp";
inline constexpr const char* kRightBtn = "art/RightBtn.bmp";
inline constexpr const char* kDownBtn = "art/downBtn.bmp";
inline constexpr const char* kDetachBtn = "art/detachBtn.bmp";
}  // namespace perfpulldown

// The three wide drawers open at main window client (87, 58): their left 29 pixels lie under
// the main window and 41 under its pullout tabs, so controls start at x 48.
namespace drawer {
inline constexpr int kWidth = 400;
inline constexpr int kHeight = 232;
inline constexpr int kContentLeft = 48;
inline constexpr LayoutRect Image1{48, 9, 16, 16};
inline constexpr LayoutRect Label1{70, 9, 240, 16};
}  // namespace drawer

namespace frompullout {
inline constexpr LayoutRect Image2{0, 0, drawer::kWidth, drawer::kHeight};
inline constexpr const char* kPicture = "art/FromPullout_Image2.bmp";
inline constexpr LayoutRect Image1 = drawer::Image1;
inline constexpr const char* kIcon = "art/FromPullout_Image1.bmp";

inline constexpr LayoutRect Label3{70, 12, 60, 14};  // "Location:"
inline constexpr LayoutRect cmboLocations{132, 8, 200, 21};
inline constexpr LayoutRect lbCountry{48, 40, 90, 14};
inline constexpr LayoutRect cmboCountries{140, 36, 192, 21};
inline constexpr LayoutRect lblPhoneNumber{48, 66, 110, 14};
// Outside the US the number box moves to where the area code box stands.
inline constexpr LayoutRect Label7{182, 66, 8, 14};
inline constexpr LayoutRect txtAreaCode{190, 63, 28, 20};
inline constexpr LayoutRect Label8{218, 66, 16, 14};
inline constexpr LayoutRect txtPhoneNumber{234, 63, 98, 20};
inline constexpr LayoutRect Label6{48, 92, 140, 14};  // "Dialing properties"
inline constexpr int kDividerY = 99;
inline constexpr LayoutRect lblOutsideLine{56, 113, 36, 14};
inline constexpr LayoutRect txtOutsideAccess{94, 110, 40, 20};
inline constexpr LayoutRect lblLongDistance{150, 113, 78, 14};
inline constexpr LayoutRect txtLongDistance{230, 110, 40, 20};
inline constexpr LayoutRect chkDisableCallWaiting{54, 137, 16, 16};
inline constexpr LayoutRect lblDisableCallWaiting{72, 138, 120, 14};
inline constexpr LayoutRect cmboCallWaiting{196, 135, 74, 21};
inline constexpr LayoutRect chkCallingCard{54, 161, 16, 16};
inline constexpr LayoutRect lblCallingCard{72, 162, 100, 14};
inline constexpr LayoutRect lblCallingCardName{174, 162, 150, 14};
inline constexpr LayoutRect chkManualDial{54, 185, 16, 16};
inline constexpr LayoutRect lblManualDial{72, 186, 80, 14};
inline constexpr LayoutRect chkUseExisting{54, 207, 16, 16};
inline constexpr LayoutRect lblUseExisting{72, 208, 190, 14};
inline constexpr LayoutRect btnAdd{296, 134, 76, 24};
inline constexpr LayoutRect btnRemove{296, 164, 76, 24};
inline constexpr LayoutRect btnCancel{296, 194, 76, 24};
}  // namespace frompullout

namespace topullout {
inline constexpr const char* kPicture = "art/ToPullout.bmp";
inline constexpr LayoutRect Label1{48, 10, 120, 14};  // "Destination:"
inline constexpr LayoutRect lbDestinations{48, 27, 120, 162};
inline constexpr LayoutRect rbPOP{180, 8, 60, 18};
inline constexpr LayoutRect rbISP{244, 8, 60, 18};
inline constexpr LayoutRect lstvDialList{180, 29, 178, 160};
inline constexpr LayoutRect btnUp{364, 70, 22, 22};
inline constexpr LayoutRect btnDown{364, 98, 22, 22};
inline constexpr LayoutRect btnRefresh{218, 198, 76, 24};
inline constexpr LayoutRect btnSaveList{302, 198, 76, 24};
inline constexpr const char* kBtnUp = "art/ToPullout_btnUp.bmp";
inline constexpr const char* kBtnDown = "art/ToPullout_btnDown.bmp";
}  // namespace topullout

namespace rxpullout {
inline constexpr const char* kPicture = "art/RxPullout.bmp";
inline constexpr LayoutRect Image1 = drawer::Image1;
inline constexpr const char* kIcon = "art/RxPullout_Image1.bmp";
inline constexpr LayoutRect Label1 = drawer::Label1;      // "Prescriber Output"
inline constexpr LayoutRect txtStatus{48, 35, 338, 157};  // clear of the title's line
inline constexpr LayoutRect Command2{310, 198, 76, 24};
}  // namespace rxpullout

// MorePullout opens at main window client (111, 205); its left 17 pixels lie under the main
// window's tabs.
namespace morepullout {
inline constexpr int kWidth = 68;
inline constexpr int kHeight = 72;
inline constexpr const char* kPicture = "art/MorePullout.bmp";
inline constexpr LayoutRect btnDisplay{19, 6, 44, 18};
inline constexpr LayoutRect btnLog{19, 27, 44, 18};
inline constexpr LayoutRect btnPref{19, 48, 44, 18};
}  // namespace morepullout

// The three panels of MorePullout open at main window client (111, 105). MorePullout covers
// x < 68 for 100 <= y < 172 and the main window's tabs x < 17, so the controls keep clear.
namespace panel {
inline constexpr int kWidth = 320;
inline constexpr int kHeight = 204;
inline constexpr LayoutRect Image1{24, 8, 16, 16};
inline constexpr LayoutRect Label1{46, 8, 200, 16};
inline constexpr LayoutRect kUnderMore{0, 100, 68, 72};
}  // namespace panel

namespace logpullout {
inline constexpr const char* kPicture = "art/LogPullout.bmp";
inline constexpr const char* kIcon = "art/LogPullout_Image1.bmp";
inline constexpr LayoutRect Image1 = panel::Image1;
inline constexpr LayoutRect Label1 = panel::Label1;  // "Log Options"
inline constexpr LayoutRect ConnectLogCheck{24, 32, 220, 18};
inline constexpr LayoutRect txtHistoryLog{76, 53, 196, 20};
inline constexpr LayoutRect btnConnectHist{278, 53, 28, 20};
inline constexpr LayoutRect PrescriberLogCheck{24, 80, 220, 18};
inline constexpr LayoutRect txtRxLog{76, 101, 196, 20};
inline constexpr LayoutRect btnPrescriberLog{278, 101, 28, 20};
}  // namespace logpullout

namespace prefpullout {
inline constexpr const char* kPicture = "art/PrefPullout.bmp";
inline constexpr const char* kIcon = "art/PrefPullout_Image1.bmp";
inline constexpr LayoutRect Image1 = panel::Image1;
inline constexpr LayoutRect Label1 = panel::Label1;  // "User Preferences"
// The frame stands below the title's line; the five it holds, inside it.
inline constexpr LayoutRect frCallingCard{24, 34, 284, 66};
inline constexpr LayoutRect Label3{32, 53, 50, 14};
inline constexpr LayoutRect cmboCallingCards{84, 50, 150, 21};
inline constexpr LayoutRect btnSave{240, 50, 60, 22};
inline constexpr LayoutRect Label2{32, 78, 50, 14};
inline constexpr LayoutRect txtCardNumber{84, 75, 150, 20};
inline constexpr LayoutRect chkConfirmDial{76, 108, 232, 18};
inline constexpr LayoutRect chkAutoDial{76, 134, 110, 18};
inline constexpr LayoutRect Text2{190, 133, 30, 20};
inline constexpr LayoutRect Label4{224, 136, 30, 14};
}  // namespace prefpullout

namespace displaypullout {
inline constexpr const char* kPicture = "art/DisplayPullout.bmp";
inline constexpr LayoutRect Label1 = panel::Label1;  // "Display Options"
inline constexpr LayoutRect SSFrame1{24, 34, 284, 64};
// In the frame's caption, over the blanks that lead it.
inline constexpr LayoutRect Image1{29, 33, 16, 16};
inline constexpr const char* kIcon = "art/DisplayPullout_Image1.bmp";
inline constexpr LayoutRect Label2{32, 54, 62, 14};
inline constexpr LayoutRect txtUserName{96, 51, 200, 20};
inline constexpr LayoutRect Label3{32, 77, 62, 14};
inline constexpr LayoutRect txtPassword{96, 74, 200, 20};
inline constexpr LayoutRect SSFrame2{76, 104, 232, 48};
// The four octet boxes with the dots between them.
inline constexpr LayoutRect txtAltTunnelServer0{86, 122, 40, 20};
inline constexpr LayoutRect Label4{127, 125, 8, 14};
inline constexpr LayoutRect txtAltTunnelServer1{136, 122, 40, 20};
inline constexpr LayoutRect Label5{177, 125, 8, 14};
inline constexpr LayoutRect txtAltTunnelServer2{186, 122, 40, 20};
inline constexpr LayoutRect Label6{227, 125, 8, 14};
inline constexpr LayoutRect txtAltTunnelServer3{236, 122, 40, 20};
inline constexpr LayoutRect btnModify{158, 168, 72, 24};
inline constexpr LayoutRect btnCancel{236, 168, 72, 24};
}  // namespace displaypullout

// The call-home transfer window: a plain window of its own, not drawn on artwork.
namespace filexfer {
inline constexpr int kWidth = 360;
inline constexpr int kHeight = 176;
inline constexpr LayoutRect Label1{12, 12, 100, 16};  // "Retrieving File:"
inline constexpr LayoutRect lblOneOf{116, 12, 120, 16};
inline constexpr LayoutRect Label2{12, 34, 44, 16};  // "Name:"
inline constexpr LayoutRect lblFileName{60, 34, 288, 16};
inline constexpr LayoutRect Label5{12, 54, 44, 16};  // "Size:"
inline constexpr LayoutRect lblFileSize{60, 54, 288, 16};
inline constexpr LayoutRect pbXferProgress{12, 78, 290, 18};
inline constexpr LayoutRect lblPercent{306, 79, 46, 16};
inline constexpr LayoutRect lblBytesCopied{12, 102, 200, 16};
inline constexpr LayoutRect lblXferRate{216, 102, 132, 16};
inline constexpr LayoutRect Label3{12, 124, 130, 16};  // "Estimated Time Left:"
inline constexpr LayoutRect lblTimeLeft{146, 124, 202, 16};
inline constexpr LayoutRect btnCancel{268, 144, 80, 24};
}  // namespace filexfer

// The title form: a plain rectangle without artwork of its own; its frame holds the rest, the
// logo beside the product's lines. Places are on the form, as for the others.
namespace splash {
inline constexpr int kWidth = 380;
inline constexpr int kHeight = 170;
inline constexpr LayoutRect Frame1{6, 6, 368, 158};
inline constexpr LayoutRect imgLogo{20, 24, 18, 18};
inline constexpr LayoutRect lblCompanyProduct{48, 18, 300, 16};
inline constexpr LayoutRect lblProductName{48, 36, 300, 26};
inline constexpr LayoutRect lblVersion{48, 66, 300, 16};
inline constexpr LayoutRect lblPlatform{48, 84, 300, 16};
inline constexpr LayoutRect lblCompany{20, 112, 340, 16};
inline constexpr LayoutRect lblCopyright{20, 128, 340, 16};
inline constexpr LayoutRect lblWarning{20, 144, 340, 16};
}  // namespace splash

// Pictures of MainWin's image controls.
namespace pictures {
inline constexpr const char* kLightOff = "art/progress_light_off.bmp";
inline constexpr const char* kModemDetected = "art/imgModemDetected.bmp";
inline constexpr const char* kPhoneDialing = "art/imgPhoneDialing.bmp";
inline constexpr const char* kConnectingISP = "art/imgConnectingISP.bmp";
inline constexpr const char* kAuthorizingISP = "art/imgAuthorizingISP.bmp";
inline constexpr const char* kCreatingTunnel = "art/imgCreatingTunnel.bmp";
inline constexpr const char* kAuthorizingTunnel = "art/imgAuthorizingTunnel.bmp";
inline constexpr const char* kLogoOn = "art/imgLogoOn.bmp";
inline constexpr const char* kConnectLightOn = "art/imgConnectLightOn.bmp";
inline constexpr const char* kConnectLightOff = "art/imgConnectLightOff.bmp";
inline constexpr const char* kYellowLightOn = "art/imgYellowLightOn.bmp";
inline constexpr const char* kYellowLightOff = "art/imgYellowLightOff.bmp";
// The plain round face (at rest and pressed) that the round buttons and btnConnect share.
inline constexpr const char* kImage5 = "art/Image5.bmp";
inline constexpr const char* kImage6 = "art/Image6.bmp";
inline constexpr const char* kPushedButton = "art/imgPushedButton.bmp";
inline constexpr const char* kBtnHelp = "art/btnHelp.bmp";
inline constexpr const char* kBtnMinimize = "art/btnMinimize.bmp";
inline constexpr const char* kBtnCloseWin = "art/btnCloseWin.bmp";
inline constexpr const char* kBtnConnect = "art/btnConnect.bmp";
// Pullout tab faces: btnReg closed (points out), btnLeft open (points back).
inline constexpr const char* kBtnReg = "art/btnReg.bmp";
inline constexpr const char* kBtnLeft = "art/btnLeft.bmp";
inline constexpr const char* kBtnRight = "art/btnRight.bmp";
inline constexpr const char* kMoreBtnPressed = "art/imgMoreBtnPressed.bmp";
inline constexpr const char* kMoreLabels = "art/imgMoreLabels.bmp";
inline constexpr const char* kImage3 = "art/Image3.bmp";  // the Prescriber tab's face
inline constexpr const char* kBtnRxPullout = "art/btnRxPullout.bmp";
}  // namespace pictures

}  // namespace kw::dialer::layout
