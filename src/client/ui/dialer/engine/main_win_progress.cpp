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

namespace {

// The light that each step of the call's set-up turns on, its text as the tip.
forms::Image* StepLight(MainWin& win, std::int16_t progressCode) {
    switch (progressCode) {
        case code::kModemDetected:
            return &win.imgModemDetected;
        case code::kDialing:
            return &win.imgPhoneDialing;
        case code::kConnectingIsp:
            return &win.imgConnectingISP;
        case code::kAuthorizingIsp:
            return &win.imgAuthorizingISP;
        case code::kCreatingTunnel:
            return &win.imgCreatingTunnel;
        default:
            return nullptr;
    }
}

void ShowConnected(MainWin& win, const std::string& text) {
    win.imgAuthorizingTunnel.SetVisible(true);
    win.imgLogoOn.SetVisible(true);
    win.lblStatus.SetCaption(text);
    win.imgAuthorizingTunnel.SetToolTipText(text);
    win.IsConnected = true;
    win.IsConnecting = false;
    win.GetPlatform().SetCursor(forms::cursor::kDefault);
}

void ShowIspDown(MainWin& win, const std::string& text) {
    for (forms::Image* light : {&win.imgModemDetected, &win.imgPhoneDialing, &win.imgConnectingISP,
                                &win.imgAuthorizingISP}) {
        light->SetVisible(false);
        light->SetToolTipText(text);
    }
}

void ShowTunnelDown(MainWin& win, const std::string& text) {
    win.imgCreatingTunnel.SetVisible(false);
    win.imgAuthorizingTunnel.SetVisible(false);
    win.lblStatus.SetCaption(text);
    win.imgCreatingTunnel.SetToolTipText(text);
    win.imgAuthorizingTunnel.SetToolTipText(text);
}

// user^password; a text without "^" has no left part and fails as the old code did.
void TakeNewCredentials(Application& app, const std::string& text) {
    const long caret = automation::InStr(text, "^");
    const std::string user = automation::Left(text, caret - 1);
    const std::string password = automation::Mid(text, caret + 1);
    DisplayPullout& display = app.Form<DisplayPullout>();
    display.txtUserName.SetText(user);
    display.txtPassword.SetText(password);
    if (user != app.UserName) {
        display.LoginChanged = true;
    }
    app.UserName = user;
    app.Password = password;
    SaveUserInfo(app);
    LoadUserInfo(app);
}

}  // namespace

void MainWin::l_DravlinkObj_ProgressUpdate(std::int16_t progressCode, std::string& text) {
    logs_->WriteHistoryLine(progressCode, text);
    auto post = [&] {
        Variant data(text);
        app_.EventManagerObject.postEvent(progressCode, data);
    };
    if (forms::Image* light = StepLight(*this, progressCode)) {
        post();
        light->SetVisible(true);
        lblStatus.SetCaption(text);
        light->SetToolTipText(text);
        if (progressCode == code::kAuthorizingIsp) {
            imgConnectLight.SetPicture(imgConnectLightOn.Picture());
        }
        return;
    }
    switch (progressCode) {
        case code::kConnected:
            post();
            ShowConnected(*this, text);
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
        case code::kIspNote:
        case code::kTunnelNote:
        case code::kTunnelNote2:
        case code::kEngineNote:
            post();
            lblStatus.SetCaption(text);
            break;
        case code::kIspDown:
            post();
            ShowIspDown(*this, text);
            app_.Form<PerfPulldown>().EndPerf();
            break;
        case code::kTunnelUp:
            post();
            imgCreatingTunnel.SetVisible(true);
            imgAuthorizingTunnel.SetVisible(true);
            break;
        case code::kNewCredentials:
            post();
            TakeNewCredentials(app_, text);
            break;
        case code::kTunnelDown:
            post();
            ShowTunnelDown(*this, text);
            break;
        default:
            lblStatus.SetCaption("Invalid Progress Update. [" + std::to_string(progressCode) + "]");
            break;
    }
}

void MainWin::l_DravlinkObj_StatusUpdate(std::string& text) {
    logs_->WritePrescriberLine(text);
    forms::RichTextBox& status = app_.Form<RxPullout>().txtStatus;
    status.SetSelStart(static_cast<int>(status.Text().size()));
    status.SetSelText(text + "\r\n");
}

}  // namespace kw::dialer
