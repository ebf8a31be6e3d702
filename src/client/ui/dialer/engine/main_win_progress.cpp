// The six lights, the status line and the logs as the engine's progress codes arrive.
#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/user_info.h"
#include "client/ui/dialer/engine/progress_codes.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/side/call_logs.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "platform/automation/strings.h"

namespace kw::dialer {

using automation::Variant;

void MainWin::ShowLightTip(forms::Image& light, const std::string& text) {
    light.SetToolTipText(text);
}

void MainWin::l_DravlinkObj_ProgressUpdate(std::int16_t progressCode, std::string& text) {
    logs_->WriteHistoryLine(progressCode, text);
    auto post = [&] {
        Variant data(text);
        app_.EventManagerObject.postEvent(progressCode, data);
    };
    switch (progressCode) {
        case code::kConnected:
            post();
            imgAuthorizingTunnel.SetVisible(true);
            imgLogoOn.SetVisible(true);
            lblStatus.SetCaption(text);
            ShowLightTip(imgAuthorizingTunnel, text);
            IsConnected = true;
            IsConnecting = false;
            GetPlatform().SetCursor(forms::cursor::kDefault);
            break;
        case code::kLogoOff:
        case code::kTunnelLogoOff:
            post();
            imgLogoOn.SetVisible(false);
            lblStatus.SetCaption(text);
            break;
        case code::kLineDown:
            EnableOnReset = true;
            post();
            ResetConnectionDisplay();
            logs_->CloseCallLogs();
            app_.Form<PerfPulldown>().EndPerf();
            if (app_.Form<DisplayPullout>().LoginChanged) {
                TimerProfileChange.SetTimerEnabled(true);
            }
            break;
        case code::kMonitorStart:
            post();
            app_.Form<PerfPulldown>().BeginPerf(cmboTo.Text());
            break;
        case code::kModemDetected:
        case code::kDialing:
        case code::kConnectingIsp:
        case code::kAuthorizingIsp: {
            post();
            forms::Image& light = progressCode == code::kModemDetected   ? imgModemDetected
                                  : progressCode == code::kDialing       ? imgPhoneDialing
                                  : progressCode == code::kConnectingIsp ? imgConnectingISP
                                                                         : imgAuthorizingISP;
            light.SetVisible(true);
            lblStatus.SetCaption(text);
            ShowLightTip(light, text);
            if (progressCode == code::kAuthorizingIsp) {
                imgConnectLight.SetPicture(imgConnectLightOn.Picture());
            }
            break;
        }
        case code::kIspNote:
        case code::kTunnelNote:
        case code::kTunnelNote2:
        case code::kEngineNote:
            post();
            lblStatus.SetCaption(text);
            break;
        case code::kIspDown:
            post();
            for (forms::Image* light :
                 {&imgModemDetected, &imgPhoneDialing, &imgConnectingISP, &imgAuthorizingISP}) {
                light->SetVisible(false);
                ShowLightTip(*light, text);
            }
            app_.Form<PerfPulldown>().EndPerf();
            break;
        case code::kTunnelUp:
            post();
            imgCreatingTunnel.SetVisible(true);
            imgAuthorizingTunnel.SetVisible(true);
            break;
        case code::kCreatingTunnel:
            post();
            imgCreatingTunnel.SetVisible(true);
            lblStatus.SetCaption(text);
            ShowLightTip(imgCreatingTunnel, text);
            break;
        case code::kNewCredentials:
            post();
            TakeNewCredentials(text);
            break;
        case code::kTunnelDown:
            post();
            imgCreatingTunnel.SetVisible(false);
            imgAuthorizingTunnel.SetVisible(false);
            lblStatus.SetCaption(text);
            ShowLightTip(imgCreatingTunnel, text);
            ShowLightTip(imgAuthorizingTunnel, text);
            break;
        default:
            lblStatus.SetCaption("Invalid Progress Update. [" + std::to_string(progressCode) + "]");
            break;
    }
}

void MainWin::TakeNewCredentials(const std::string& text) {
    // user^password; a text without "^" has no left part and fails as the old code did.
    const long caret = automation::InStr(text, "^");
    const std::string user = automation::Left(text, caret - 1);
    const std::string password = automation::Mid(text, caret + 1);
    DisplayPullout& display = app_.Form<DisplayPullout>();
    display.txtUserName.SetText(user);
    display.txtPassword.SetText(password);
    if (user != app_.UserName) {
        display.LoginChanged = true;
    }
    app_.UserName = user;
    app_.Password = password;
    SaveUserInfo(app_);
    LoadUserInfo(app_);
}

void MainWin::l_DravlinkObj_StatusUpdate(std::string& text) {
    logs_->WritePrescriberLine(text);
    forms::RichTextBox& status = app_.Form<RxPullout>().txtStatus;
    status.SetSelStart(static_cast<int>(status.Text().size()));
    status.SetSelText(text + "\r\n");
}

}  // namespace kw::dialer
