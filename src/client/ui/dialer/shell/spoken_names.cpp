#include "client/ui/dialer/shell/spoken_names.h"

#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer::spoken {

namespace {

using forms::AccessRole;
constexpr AccessRole kAuto = AccessRole::Automatic;
constexpr AccessRole kButton = AccessRole::Button;
constexpr AccessRole kLight = AccessRole::Indicator;
constexpr AccessRole kStatus = AccessRole::StatusLine;
constexpr AccessRole kArt = AccessRole::Decorative;

// The lights' names are their captions on the artwork.
namespace lights = layout::mainwin;

constexpr SpokenControl kControls[] = {
    // The main window, in the order a person works it: the window's own buttons, where from,
    // where to, connect; then the other drawers; the lights and the status line take no focus.
    {"MainWin", "btnMinimize", -1, kButton, "Minimize", nullptr},
    {"MainWin", "btnHelp", -1, kButton, "Help", nullptr},
    {"MainWin", "btnCloseWin", -1, kButton, "Close", nullptr},
    {"MainWin", "cmboFrom", -1, kAuto, nullptr, "lblFrom"},
    {"MainWin", "btnFromPullout", -1, kButton, "Locations drawer", nullptr},
    {"MainWin", "cmboTo", -1, kAuto, nullptr, "lblTo"},
    {"MainWin", "btnToPullout", -1, kButton, "Dial list drawer", nullptr},
    {"MainWin", "btnConnect", -1, kButton, nullptr, "lblConnect"},
    {"MainWin", "btnRxPullout", -1, kButton, "Prescriber output drawer", nullptr},
    {"MainWin", "btnMorePullout", -1, kButton, "More settings drawer", nullptr},
    {"MainWin", "imgModemDetected", -1, kLight, lights::kLightCaptions[0], nullptr},
    {"MainWin", "imgPhoneDialing", -1, kLight, lights::kLightCaptions[1], nullptr},
    {"MainWin", "imgConnectingISP", -1, kLight, lights::kLightCaptions[2], nullptr},
    {"MainWin", "imgAuthorizingISP", -1, kLight, lights::kLightCaptions[3], nullptr},
    {"MainWin", "imgCreatingTunnel", -1, kLight, lights::kLightCaptions[4], nullptr},
    {"MainWin", "imgAuthorizingTunnel", -1, kLight, lights::kLightCaptions[5], nullptr},
    {"MainWin", "lblStatus", -1, kStatus, nullptr, nullptr},
    // Said by the buttons they draw on, or nothing to say.
    {"MainWin", "lblMinButton", -1, kArt, nullptr, nullptr},
    {"MainWin", "lblHelpButton", -1, kArt, nullptr, nullptr},
    {"MainWin", "lblCloseButton", -1, kArt, nullptr, nullptr},
    {"MainWin", "lblConnect", -1, kArt, nullptr, nullptr},
    {"MainWin", "Label4", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgLogoOn", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgConnectLight", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgConnectLightOn", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgConnectLightOff", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgYellowLightOn", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgYellowLightOff", -1, kArt, nullptr, nullptr},
    {"MainWin", "btnLeft", -1, kArt, nullptr, nullptr},
    {"MainWin", "btnRight", -1, kArt, nullptr, nullptr},
    {"MainWin", "btnReg", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgMoreBtnPressed", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgMoreLabels", -1, kArt, nullptr, nullptr},
    {"MainWin", "Image3", -1, kArt, nullptr, nullptr},
    {"MainWin", "Image5", -1, kArt, nullptr, nullptr},
    {"MainWin", "Image6", -1, kArt, nullptr, nullptr},
    {"MainWin", "imgPushedButton", -1, kArt, nullptr, nullptr},

    // The locations drawer.
    {"FromPullout", "cmboLocations", -1, kAuto, nullptr, "Label3"},
    {"FromPullout", "cmboCountries", -1, kAuto, nullptr, "lbCountry"},
    {"FromPullout", "txtAreaCode", -1, kAuto, "Area code", nullptr},
    {"FromPullout", "txtPhoneNumber", -1, kAuto, "Your phone number", nullptr},
    {"FromPullout", "txtOutsideAccess", -1, kAuto, "Outside line for local calls", nullptr},
    {"FromPullout", "txtLongDistance", -1, kAuto, "Outside line for long distance", nullptr},
    {"FromPullout", "chkDisableCallWaiting", -1, kAuto, nullptr, "lblDisableCallWaiting"},
    {"FromPullout", "cmboCallWaiting", -1, kAuto, "Code that disables call waiting", nullptr},
    {"FromPullout", "chkCallingCard", -1, kAuto, nullptr, "lblCallingCard"},
    {"FromPullout", "chkManualDial", -1, kAuto, nullptr, "lblManualDial"},
    {"FromPullout", "chkUseExisting", -1, kAuto, nullptr, "lblUseExisting"},
    {"FromPullout", "btnAdd", -1, kAuto, nullptr, nullptr},
    {"FromPullout", "btnRemove", -1, kAuto, nullptr, nullptr},
    {"FromPullout", "btnCancel", -1, kAuto, nullptr, nullptr},
    {"FromPullout", "Image1", -1, kArt, nullptr, nullptr},
    {"FromPullout", "Image2", -1, kArt, nullptr, nullptr},

    // The dial list drawer.
    {"ToPullout", "lbDestinations", -1, kAuto, "Destination", nullptr},
    {"ToPullout", "rbPOP", -1, kAuto, nullptr, nullptr},
    {"ToPullout", "rbISP", -1, kAuto, nullptr, nullptr},
    {"ToPullout", "lstvDialList", -1, kAuto, "Dial list", nullptr},
    {"ToPullout", "btnUp", -1, kButton, "Move up the dial list", nullptr},
    {"ToPullout", "btnDown", -1, kButton, "Move down the dial list", nullptr},

    {"RxPullout", "txtStatus", -1, kAuto, "Prescriber output", nullptr},
    {"RxPullout", "Image1", -1, kArt, nullptr, nullptr},

    {"PrefPullout", "cmboCallingCards", -1, kAuto, nullptr, "Label3"},
    {"PrefPullout", "txtCardNumber", -1, kAuto, "Calling card number", nullptr},
    {"PrefPullout", "Text2", -1, kAuto, "Minutes before logging out", nullptr},
    {"PrefPullout", "Image1", -1, kArt, nullptr, nullptr},

    {"LogPullout", "txtHistoryLog", -1, kAuto, "Connection log file", nullptr},
    {"LogPullout", "btnConnectHist", -1, kAuto, "Choose the connection log file", nullptr},
    {"LogPullout", "txtRxLog", -1, kAuto, "Prescriber log file", nullptr},
    {"LogPullout", "btnPrescriberLog", -1, kAuto, "Choose the Prescriber log file", nullptr},
    {"LogPullout", "Image1", -1, kArt, nullptr, nullptr},

    {"DisplayPullout", "txtUserName", -1, kAuto, "VPN user name", nullptr},
    {"DisplayPullout", "txtPassword", -1, kAuto, "VPN password", nullptr},
    {"DisplayPullout", "txtAltTunnelServer", 0, kAuto, "Tunnel server, first number", nullptr},
    {"DisplayPullout", "txtAltTunnelServer", 1, kAuto, "Tunnel server, second number", nullptr},
    {"DisplayPullout", "txtAltTunnelServer", 2, kAuto, "Tunnel server, third number", nullptr},
    {"DisplayPullout", "txtAltTunnelServer", 3, kAuto, "Tunnel server, fourth number", nullptr},
    {"DisplayPullout", "Image1", -1, kArt, nullptr, nullptr},

    // The performance panel below the main window.
    {"PerfPulldown", "downBtn", -1, kButton, "Pull the performance panel down or up", nullptr},
    {"PerfPulldown", "LeftBtn", -1, kButton, "Previous chart", nullptr},
    {"PerfPulldown", "RightBtn", -1, kButton, "Next chart", nullptr},
    {"PerfPulldown", "Image1", -1, kArt, nullptr, nullptr},
    {"PerfPulldown", "detachBtn", -1, kArt, nullptr, nullptr},  // drawn, but does nothing
    {"PerfPulldown", "imgLocation", -1, kArt, nullptr, nullptr},
    {"PerfPulldown", "VpnBytes", -1, kArt, nullptr, nullptr},
    {"PerfPulldown", "ISPBytes", -1, kArt, nullptr, nullptr},
    // Each chart by the caption of its panel; its latest figures are its description.
    {"PerfPulldown", "RateChart", -1, kAuto, nullptr, "CMPanel", 1},
    {"PerfPulldown", "iNetHealth", -1, kAuto, nullptr, "CMPanel", 2},
    {"PerfPulldown", "PktLoss", -1, kAuto, nullptr, "CMPanel", 4},

    // The two log-on dialogs.
    {"frmLogin", "txtUserName", -1, kAuto, "User name", nullptr},
    {"frmLogin", "txtPassword", -1, kAuto, "Password", nullptr},
    {"frmISPLogin", "txtUserName", -1, kAuto, "ISP user name", nullptr},
    {"frmISPLogin", "txtPassword", -1, kAuto, "ISP password", nullptr},
};

constexpr SpokenWindow kWindows[] = {
    // Enter connects from anywhere in the main window.
    {"MainWin", nullptr, true},
    {"FromPullout", "Locations", false},
    {"ToPullout", "Dial list", false},
    {"RxPullout", "Prescriber output", false},
    {"MorePullout", "More settings", false},
    {"PrefPullout", "User preferences", false},
    {"LogPullout", "Log options", false},
    {"DisplayPullout", "Display options", false},
    {"PerfPulldown", "Performance", false},
};

}  // namespace

std::span<const SpokenControl> SpokenControls() {
    return kControls;
}

std::span<const SpokenWindow> SpokenWindows() {
    return kWindows;
}

void Speak(forms::Form& form) {
    for (const SpokenWindow& window : kWindows) {
        if (form.Name() == window.form) {
            if (window.name != nullptr) {
                form.SetAccessibleName(window.name);
            }
            form.SetKeepsEnter(window.keepsEnter);
        }
    }
    int tabIndex = 0;
    for (const SpokenControl& row : kControls) {
        if (form.Name() != row.form) {
            continue;
        }
        forms::Control* control = form.FindControl(row.control, row.index);
        if (control == nullptr) {
            continue;
        }
        control->SetAccessibleRole(row.role);
        if (row.name != nullptr) {
            control->SetAccessibleName(row.name);
        }
        if (row.namedBy != nullptr) {
            control->SetNamedBy(form.FindControl(row.namedBy, row.namedByIndex));
        }
        if (row.role != AccessRole::Decorative && row.role != AccessRole::Indicator &&
            row.role != AccessRole::StatusLine) {
            control->SetTabIndex(tabIndex++);
        }
    }
}

}  // namespace kw::dialer::spoken
