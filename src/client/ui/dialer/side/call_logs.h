#pragma once

#include <cstdint>
#include <string>

namespace kw::dialer {

class Application;

// The two logs of a call, the connection history and the Prescriber output: opened as the call
// starts when the log pullout asks for them, written as the engine reports, closed as the call
// ends. The file numbers are MainWin's; this writes through them.
class CallLogs {
  public:
    CallLogs(Application& app, std::int16_t& connectHistoryFile, std::int16_t& prescriberLogFile);

    // Opens each log that is switched on and writes its banner; a log that cannot be opened
    // fails to the caller.
    void OpenLogsForCall();
    void CloseCallLogs();
    // A progress line of the history, stamped with the time.
    void WriteHistoryLine(std::int16_t progressCode, const std::string& text);
    // A line of the Prescriber's output, as the engine sent it.
    void WritePrescriberLine(const std::string& text);

  private:
    void OpenLog(const char* fileNameValue, std::int16_t& fileNumber);
    // The date and time each stamped line begins with.
    std::string LineTime() const;

    Application& app_;
    std::int16_t& connectHistoryFile_;
    std::int16_t& prescriberLogFile_;
};

}  // namespace kw::dialer
