#include "client/ui/dialer/side/call_logs.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/progress_codes.h"
#include "client/ui/dialer/side/log_pullout.h"

namespace kw::dialer {

namespace {
constexpr const char* kBanner =
    "**********************************************************************";
}

CallLogs::CallLogs(Application& app, std::int16_t& connectHistoryFile,
                   std::int16_t& prescriberLogFile)
    : app_(app), connectHistoryFile_(connectHistoryFile), prescriberLogFile_(prescriberLogFile) {}

void CallLogs::OpenLogsForCall() {
    LogPullout& logs = app_.Form<LogPullout>();
    if (logs.ConnectLogCheck.Value() == forms::check::kChecked) {
        OpenLog(settings::kConnectHistoryFileName, connectHistoryFile_);
    }
    if (logs.PrescriberLogCheck.Value() == forms::check::kChecked) {
        OpenLog(settings::kPrescriberLogFileName, prescriberLogFile_);
    }
}

void CallLogs::OpenLog(const char* fileNameValue, std::int16_t& fileNumber) {
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    automation::Variant path(std::string{});
    QueryValueEx(key, fileNameValue, path);
    registry::RegCloseKey(key);
    FileTable& files = app_.Files();
    const int number = files.FreeFile();
    files.OpenForAppend(number, path.ToString());
    fileNumber = static_cast<std::int16_t>(number);
    files.PrintLine(number, LineTime() + kBanner);
}

void CallLogs::CloseCallLogs() {
    for (std::int16_t* file : {&connectHistoryFile_, &prescriberLogFile_}) {
        if (*file > 0) {
            app_.Files().Close(*file);
        }
        *file = 0;
    }
}

void CallLogs::WriteHistoryLine(std::int16_t progressCode, const std::string& text) {
    // The text of 207 holds the password: it never reaches a file.
    if (progressCode != code::kNewCredentials && connectHistoryFile_ != 0) {
        app_.Files().PrintLine(connectHistoryFile_, LineTime() + ": " + text);
    }
}

void CallLogs::WritePrescriberLine(const std::string& text) {
    if (prescriberLogFile_ != 0) {
        app_.Files().PrintLine(prescriberLogFile_, text);
    }
}

std::string CallLogs::LineTime() const {
    return LogDateText(app_.Platform().LocalNow());
}

}  // namespace kw::dialer
