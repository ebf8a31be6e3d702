// Failures reach the user in one way: a box in the program's own words.
#include <map>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/res_const.h"

namespace kw::dialer {

using automation::Failure;

namespace {

constexpr int kWarning = forms::mb::kOkOnly | forms::mb::kExclamation | forms::mb::kSetForeground;
constexpr int kStop = forms::mb::kOkOnly | forms::mb::kCritical | forms::mb::kSetForeground;
constexpr int kSystemStop = forms::mb::kOkOnly | forms::mb::kCritical | forms::mb::kSystemModal;

// The link to the engine's process failed: nothing can work any more.
constexpr int kServerFailedToStart = static_cast<int>(0x800706BFu);
constexpr int kDisconnectedFromServer = static_cast<int>(0x80010108u);
constexpr int kServerUnavailable = static_cast<int>(0x800706BAu);

constexpr const char* kSeriousError =
    "A serious application error has occurred.  Please call Technical Support for assistance.";

}  // namespace

void MainWin::l_DravlinkObj_ErrorEvent(std::string& message) {
    static const std::map<std::string, int> kResources = {
        {"2000", ResConst::kErr2000}, {"2001", ResConst::kErr2001}, {"2002", ResConst::kErr2002},
        {"2003", ResConst::kErr2003}, {"2004", ResConst::kErr2004}, {"2005", ResConst::kErr2005},
        {"2006", ResConst::kErr2006}, {"2007", ResConst::kErr2007}, {"2008", ResConst::kErr2008},
        {"2009", ResConst::kErr2009}, {"2010", ResConst::kErr2010}, {"2011", ResConst::kErr2011},
    };
    auto known = kResources.find(message);
    AppBox(known != kResources.end() ? LoadResString(known->second) : message, kWarning);
    if (message == "2008") {
        // An invalid number: the call in set-up is torn down by the disconnect branch.
        IsConnecting = false;
        IsConnected = true;
        GetPlatform().SetCursor(forms::cursor::kDefault);
        btnConnect_Click();
    }
}

void MainWin::COMErrHandler(const Failure& failure) {
    const int number = failure.Number();
    forms::Platform& platform = GetPlatform();
    switch (number) {
        case 1010:
            platform.MsgBox("Please log in", kWarning, "");
            return;
        case 1012:
            platform.MsgBox("Kestrelway is still disconnecting\r\nPlease wait, then try again.",
                            kWarning, "");
            return;
        case 1019:
            platform.MsgBox(
                "Unable to connect\r\nPlease check to see if you have either a modem or "
                "VPN device install.\r\nPlease See release notes.",
                kWarning, "");
            return;
        case 1020:
            platform.MsgBox(
                "Please enter a valid from phone number on the from pullout.\r\ni.e., "
                "area code, exchange, and number.",
                kWarning, "");
            if (!fromShown) {
                btnFromPullout_Click();
            }
            return;
        case 1021:
            platform.MsgBox(failure.Description(), kStop, "");
            platform.EndProcess(1);
            return;
        case 2002:
            platform.MsgBox("Error On Connect", kWarning, "");
            return;
        case kServerFailedToStart:
            platform.MsgBox(
                "Error starting Kestrelway.  Please call Technical Support for assistance.",
                kSystemStop, LoadResString(ResConst::kAppName));
            platform.EndProcess(1);
            return;
        case kDisconnectedFromServer:
        case kServerUnavailable:
            platform.MsgBox(kSeriousError, kSystemStop, LoadResString(ResConst::kAppName));
            platform.EndProcess(1);
            return;
        default:
            platform.MsgBox(" Error [" + std::to_string(number) + "] " + failure.Description(),
                            kWarning, "");
            return;
    }
}

}  // namespace kw::dialer
