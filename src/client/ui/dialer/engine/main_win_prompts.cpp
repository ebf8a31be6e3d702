// The engine's questions to the user during a call, and its notes and debug text.
#include <limits>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/frm_get_user_info.h"
#include "client/ui/dialer/engine/frm_get_user_input.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/res_const.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/strings.h"

namespace kw::dialer {

using automation::Variant;

namespace {
constexpr const char* kPrescriberCaption = "Ostvarra Prescriber";
constexpr const char* kMessageOfTheDay = "Message of the Day";

// A dialog of the window stands open: a message box, or a modal form other than the window.
bool DialogOfWindowIsOpen(Application& app, const forms::Form& window) {
    if (app.Platform().OpenMessageBoxes() > 0) {
        return true;  // every box of the program stands above the main window, as a dialog does
    }
    for (forms::Form* form : app.Forms().LoadedForms()) {
        if (form != &window && form->IsModal()) {
            return true;
        }
    }
    return false;
}

}  // namespace

void MainWin::l_DravlinkObj_GetUserInfo(std::string& prompt, Variant& choices,
                                        std::string& answer) {
    const automation::SafeArray& list = choices.ToArray();
    // The dialog hands the choice back as a 16-bit index: a longer list could only be answered
    // wrongly, so it is refused before the user is asked.
    if (list.UBound() > std::numeric_limits<std::int16_t>::max()) {
        throw automation::Failure(automation::err::kOverflow,
                                  "The engine offered " +
                                      std::to_string(std::int64_t{list.UBound()} + 1) +
                                      " choices; at most 32768 can be offered.");
    }
    frmGetUserInfo& dialog = app_.Form<frmGetUserInfo>();
    dialog.lblPrompt.SetCaption(prompt);
    for (std::int32_t i = 0; i <= list.UBound(); ++i) {
        dialog.lbChoices.AddItem(list.Get(i).ToString());
    }
    dialog.lbChoices.SetListIndex(0);
    dialog.Show(forms::kModal);
    // The dialog unloads itself; its fields stay readable on the instance that ran.
    if (!dialog.Cancelled) {
        answer = list.Get(dialog.SelectedIndex).ToString();
    } else {
        answer = "";
    }
}

void MainWin::l_DravlinkObj_GetUserInput(std::string& prompt, std::string& defaultText,
                                         std::string& answer) {
    frmGetUserInput& dialog = app_.Form<frmGetUserInput>();
    dialog.lblPrompt.SetCaption(prompt);
    dialog.txtInput.SetText(defaultText);
    dialog.Show(forms::kModal);
    answer = dialog.Cancelled ? "" : dialog.txtInput.Text();
}

void MainWin::l_DravlinkObj_GetUsernamePassword(std::string& prompt, std::string& user) {
    if (DialogOfWindowIsOpen(app_, *this)) {
        // No second dialog is stacked: the engine gets its name back with a placeholder.
        user += "^qqq";
        return;
    }
    frmISPLogin& dialog = app_.Form<frmISPLogin>();
    dialog.txtTitle.SetCaption(prompt);
    dialog.txtTitle.SetToolTipText(prompt);  // a long prompt is cut to the title's line
    dialog.txtUserName.SetText(user);
    dialog.txtPassword.SetText("");
    dialog.Show(forms::kModal);
    if (dialog.LoginAccepted) {
        user = dialog.txtUserName.Text() + "^" + dialog.txtPassword.Text();
    } else {
        user = "";
    }
    dialog.txtPassword.SetText("");
    dialog.txtUserName.SetText("");
    // Unloaded by its opener: the next prompt loads it afresh, centred where the window is then.
    dialog.Unload();
}

void MainWin::l_DravlinkObj_GetUserOk(std::string& message) {
    int timeout = 60000;
    std::string text = message;
    if (automation::Left(message, 3) == "***") {
        app_.MessageBoxCaption = kMessageOfTheDay;
        timeout = 30000;
        text = automation::Mid(message, 4);
    } else {
        app_.MessageBoxCaption = kPrescriberCaption;
    }
    TimedMessageBox(text, app_.MessageBoxCaption, forms::mb::kSetForeground, timeout);
}

int MainWin::TimedMessageBox(const std::string& text, const std::string& caption, int flags,
                             int timeoutMs) {
    forms::Platform& platform = GetPlatform();
    const forms::TimerId timer = platform.SetTimer(timeoutMs, [this] { CloseTimedMessageBox(); });
    struct KillOnExit {
        forms::Platform& platform;
        forms::TimerId id;
        ~KillOnExit() { platform.KillTimer(id); }
    } kill{platform, timer};
    return platform.MsgBox(text, flags, caption);
}

void MainWin::CloseTimedMessageBox() {
    // By caption alone: a second timed box has overwritten it, the first is no longer found.
    GetPlatform().CloseMessageBox(app_.MessageBoxCaption, forms::mb::kResultOk);
}

void MainWin::l_DravlinkObj_GetUserYesNo(std::string& question, bool& answer) {
    const int result =
        Box(question, forms::mb::kYesNo | forms::mb::kSetForeground, kPrescriberCaption);
    answer = result == forms::mb::kResultYes;
}

void MainWin::l_DravlinkObj_GetUserNowLaterNever(std::string& question, std::string& answer) {
    const std::string refusal =
        "The call home feature is currently only available when dialing from"
        " within the United States. Please select either Later or Never.";
    tmrRxNowNever.SetTimerEnabled(true);
    bool firstBox = true;
    while (true) {
        forms::MessageBoxRequest request;
        request.text = question;
        request.flags = forms::mb::kYesNoCancel | forms::mb::kSetForeground;
        request.caption = LoadResString(ResConst::kAppName);
        if (firstBox) {
            // Only the first box is renamed; one shown again keeps the standard labels.
            request.buttonLabels = {"N&ow", "&Later", "&Never"};
            firstBox = false;
        }
        const int result = GetPlatform().MessageBox(request);
        if (result == forms::mb::kResultYes) {
            if (!app_.CurrentCountry || app_.CurrentCountry->code() != 1) {
                AppBox(refusal, forms::mb::kOkOnly);
                continue;
            }
            answer = "y";
        } else if (result == forms::mb::kResultNo) {
            answer = "l";
        } else {
            answer = "n";
        }
        return;
    }
}

void MainWin::tmrRxNowNever_Timer() {
    // The box took its labels when it was made; nothing is left to rename.
    tmrRxNowNever.SetTimerEnabled(false);
}

void MainWin::l_DravlinkObj_DravDebug(std::string& text) {
    AppBox(text, forms::mb::kOkOnly | forms::mb::kInformation | forms::mb::kSetForeground);
}

}  // namespace kw::dialer
