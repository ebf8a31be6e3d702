#include "client/ui/dialer/side/log_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/core/utilities.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

using automation::Variant;

LogPullout::LogPullout(Application& app) : Form(app.Platform(), "LogPullout"), app_(app) {
    SetCaption("LogPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("Log Options");
    ConnectLogCheck.SetCaption("Log Connection History");
    PrescriberLogCheck.SetCaption("Log Prescriber window output");
    btnConnectHist.SetCaption("...");
    btnPrescriberLog.SetCaption("...");
    btnConnectHist.Click = [this] { btnConnectHist_Click(); };
    btnPrescriberLog.Click = [this] { btnPrescriberLog_Click(); };
    PlaceControls();
}

void LogPullout::PlaceControls() {
    namespace at = layout::logpullout;
    SetPicture(at::kPicture);
    face::PlaceForm(*this, layout::panel::kWidth, layout::panel::kHeight);
    Image1.SetPicture(at::kIcon);
    face::Place(Image1, at::Image1);
    face::Place(Label1, at::Label1);
    face::Place(ConnectLogCheck, at::ConnectLogCheck);
    face::Place(txtHistoryLog, at::txtHistoryLog);
    face::Place(btnConnectHist, at::btnConnectHist);
    face::Place(PrescriberLogCheck, at::PrescriberLogCheck);
    face::Place(txtRxLog, at::txtRxLog);
    face::Place(btnPrescriberLog, at::btnPrescriberLog);
    face::OnSkin({&Label1, &ConnectLogCheck, &PrescriberLogCheck});
    face::InWell({&txtHistoryLog, &txtRxLog});
}

void LogPullout::Form_Load() {
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, false);
    // The check boxes are set from the settings here; their clicks must not write them back.
    loading_ = true;
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    Variant history(std::int32_t{0});
    QueryValueEx(key, settings::kConnectHistorySetting, history);
    const bool logHistory = history.ToLong() == 1;
    ConnectLogCheck.SetValue(logHistory ? forms::check::kChecked : forms::check::kUnchecked);
    SetLogControlsEnabled(txtHistoryLog, btnConnectHist, logHistory);

    Variant prescriber(std::int32_t{0});
    QueryValueEx(key, settings::kPrescriberLogSetting, prescriber);
    const bool logPrescriber = prescriber.ToLong() == 1;
    PrescriberLogCheck.SetValue(logPrescriber ? forms::check::kChecked : forms::check::kUnchecked);
    SetLogControlsEnabled(txtRxLog, btnPrescriberLog, logPrescriber);
    registry::RegCloseKey(key);

    ShowLogName(settings::kPrescriberLogFileName, "rx.log", txtRxLog);
    ShowLogName(settings::kConnectHistoryFileName, "history.log", txtHistoryLog);
    loading_ = false;

    ConnectLogCheck.Click = [this] {
        if (!loading_) {
            ConnectLogCheck_Click();
        }
    };
    PrescriberLogCheck.Click = [this] {
        if (!loading_) {
            PrescriberLogCheck_Click();
        }
    };
}

void LogPullout::ShowLogName(const char* valueName, const char* defaultFile, forms::TextBox& box) {
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    Variant path(std::string{});
    QueryValueEx(key, valueName, path);
    if (!path.ToString().empty()) {
        box.SetText(FileNameFromPath(path.ToString()));
    } else {
        SetValueEx(Variant(app_.InstallDir + "/" + defaultFile), key, valueName);
        box.SetText(defaultFile);
    }
    registry::RegCloseKey(key);
}

void LogPullout::SetLogControlsEnabled(forms::TextBox& box, forms::CommandButton& button,
                                       bool enabled) {
    box.SetEnabled(enabled);
    button.SetEnabled(enabled);
}

void LogPullout::ConnectLogCheck_Click() {
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    const bool checked = ConnectLogCheck.Value() == forms::check::kChecked;
    SetLogControlsEnabled(txtHistoryLog, btnConnectHist, checked);
    Variant current;
    if (QueryValueEx(key, settings::kConnectHistorySetting, current) != 0 || current.IsEmpty()) {
        SetValueEx(Variant(static_cast<std::int16_t>(ConnectLogCheck.Value())), key,
                   settings::kConnectHistorySetting);
    } else {
        const std::uint32_t value = static_cast<std::uint32_t>(ConnectLogCheck.Value());
        registry::RegSetValueExA(key, settings::kConnectHistorySetting, 0, registry::REG_DWORD,
                                 reinterpret_cast<const registry::BYTE*>(&value), 4);
    }
    registry::RegCloseKey(key);
}

void LogPullout::PrescriberLogCheck_Click() {
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    const bool checked = PrescriberLogCheck.Value() == forms::check::kChecked;
    SetLogControlsEnabled(txtRxLog, btnPrescriberLog, checked);
    Variant current;
    if (QueryValueEx(key, settings::kPrescriberLogSetting, current) != 0 || current.IsEmpty()) {
        // A missing Prescriber setting rewrites the history setting instead, as it always has.
        SetValueEx(Variant(static_cast<std::int16_t>(ConnectLogCheck.Value())), key,
                   settings::kConnectHistorySetting);
    } else {
        const std::uint32_t value = static_cast<std::uint32_t>(PrescriberLogCheck.Value());
        registry::RegSetValueExA(key, settings::kPrescriberLogSetting, 0, registry::REG_DWORD,
                                 reinterpret_cast<const registry::BYTE*>(&value), 4);
    }
    registry::RegCloseKey(key);
}

void LogPullout::btnConnectHist_Click() {
    ChooseLogFile(settings::kConnectHistoryFileName, txtHistoryLog);
}

void LogPullout::btnPrescriberLog_Click() {
    ChooseLogFile(settings::kPrescriberLogFileName, txtRxLog);
}

void LogPullout::ChooseLogFile(const char* valueName, forms::TextBox& box) {
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    Variant stored(std::string{});
    QueryValueEx(key, valueName, stored);
    const std::string current = stored.ToString();
    forms::FileDialogRequest request;
    request.initialDir = current.empty() ? app_.InstallDir : DirectoryFromPath(current);
    request.filter = "Log files (*.log)|*.log|All files (*.*)|*.*";
    // A log may be named before it exists: the first call creates it.
    request.flags = forms::ofn::kCreatePrompt | forms::ofn::kExplorer | forms::ofn::kLongNames;
    // A cancel leaves everything as it was, without a word.
    const std::optional<std::string> chosen = app_.Platform().OpenFileDialog(request);
    if (chosen && !chosen->empty()) {
        box.SetText(FileNameFromPath(*chosen));
        if (!current.empty()) {
            // The terminator goes with the text, as a string argument always carried it.
            registry::RegSetValueExA(key, valueName, 0, registry::REG_SZ,
                                     reinterpret_cast<const registry::BYTE*>(chosen->c_str()),
                                     static_cast<registry::DWORD>(chosen->size() + 1));
        } else {
            SetValueEx(Variant(*chosen), key, valueName);
        }
    }
    registry::RegCloseKey(key);
}

}  // namespace kw::dialer
