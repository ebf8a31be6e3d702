#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"

namespace kw::link {

using automation::Variant;

// Whether the engine waits for the user interface's answer to an event: the prompts do, every
// other event is told and the engine goes on.
bool IsPrompt(const std::string& event);

// Calls the handler of the named event with its arguments in declared order, and writes back
// into them what the handler left in its by-reference arguments. An unknown event or a wrong
// argument count fails with 13.
void RaiseOnSink(dialer::DravlinkEvents& sink, const std::string& event,
                 std::vector<Variant>& args);

// A prompt that nobody answered (the user interface went away): the arguments as a cancel leaves
// them, so that the engine goes on as if the user had said no.
void CancelPrompt(const std::string& event, std::vector<Variant>& args);

// The engine's side: each event becomes its name and its arguments, handed to deliver, which
// writes the answers of a prompt back into them.
class ForwardingSink : public dialer::DravlinkEvents {
  public:
    using Deliver = std::function<void(const std::string& event, std::vector<Variant>& args)>;
    explicit ForwardingSink(Deliver deliver) : deliver_(std::move(deliver)) {}

    void CHXferUpdate(Variant& first, Variant& transfer) override;
    void ErrorEvent(std::string& message) override;
    void GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) override;
    void GetGenericISPList(std::string& message, Variant& list) override;
    void GetUserInfo(std::string& prompt, Variant& choices, std::string& answer) override;
    void GetUserInput(std::string& prompt, std::string& defaultText, std::string& answer) override;
    void GetUsernamePassword(std::string& prompt, std::string& user) override;
    void GetUserOk(std::string& message) override;
    void GetUserYesNo(std::string& question, bool& answer) override;
    void GetUserNowLaterNever(std::string& question, std::string& answer) override;
    void DravDebug(std::string& text) override;
    void ProgressUpdate(std::int16_t code, std::string& text) override;
    void StatusUpdate(std::string& text) override;

  private:
    Deliver deliver_;
};

}  // namespace kw::link
