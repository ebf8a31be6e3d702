#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "platform/automation/failure.h"

namespace kw::test {

using automation::Variant;

// One call the program made, with its arguments as they arrived (before the engine wrote any).
struct RecordedCall {
    std::string name;
    std::vector<Variant> args;
};

// How the engine answers one call: a result and the values it writes into out arguments, keyed
// by argument position (0 = first); or a failure instead.
struct EngineReply {
    Variant result;
    std::map<int, Variant> outs;
    std::optional<automation::Failure> failure;
};

// A Dravlink whose answers come from the test. It records every call, answers each operation
// from a queue of scripted replies and then from that operation's default, and raises any event
// into the advised sink, handing back what the handler left in the by-reference arguments.
class ScriptedEngine : public dialer::Dravlink {
  public:
    // The dispatch id GetCountryList resolves to while it is available.
    static constexpr std::int32_t kCountryListId = 1000;

    ScriptedEngine();

    // The next unanswered call of op answers with this.
    ScriptedEngine& Then(const std::string& op, Variant result, std::map<int, Variant> outs = {});
    ScriptedEngine& ThenFail(const std::string& op, automation::Failure failure);
    // What op answers when nothing is queued for it. Without one: true, or 0 for the operations
    // whose result is a long (BuildDialList, GetISPList, GetLinkSpeed), and handle 1 for Connect.
    ScriptedEngine& Default(const std::string& op, Variant result,
                            std::map<int, Variant> outs = {});
    ScriptedEngine& AlwaysFail(const std::string& op, automation::Failure failure);
    // Runs inside every call of op, after it is recorded and before it answers: the place to
    // raise events from within a call, as the engine does.
    ScriptedEngine& OnCall(const std::string& op, std::function<void()> action);
    // Whether the name GetCountryList resolves (an older engine does not know it).
    ScriptedEngine& SetCountryListAvailable(bool available);

    const std::vector<RecordedCall>& Calls() const { return calls_; }
    std::vector<RecordedCall> CallsTo(const std::string& op) const;
    int CountOf(const std::string& op) const;
    std::vector<std::string> CallNames() const;
    void ClearCalls() { calls_.clear(); }
    // Replies queued and not used yet, over all operations.
    std::size_t PendingReplies() const;

    // Events. Each raises into the advised sink and gives back the by-reference arguments as the
    // handler left them. Raising with no sink advised is a mistake of the test and throws.
    void RaiseProgressUpdate(std::int16_t code, std::string text);
    void RaiseStatusUpdate(std::string text);
    void RaiseErrorEvent(std::string message);
    void RaiseDravDebug(std::string text);
    void RaiseGetUserOk(std::string message);
    bool RaiseGetUserYesNo(std::string question, bool answer = false);
    std::string RaiseGetUserNowLaterNever(std::string question, std::string answer = "");
    std::string RaiseGetUsernamePassword(std::string prompt, std::string user);
    std::string RaiseGetUserInfo(std::string prompt, Variant choices, std::string answer = "");
    std::string RaiseGetUserInput(std::string prompt, std::string defaultText,
                                  std::string answer = "");
    void RaiseGetGenericISPList(std::string message, Variant list);
    void RaiseGetConnectionStatistics(Variant ispStats, Variant vpnStats);
    void RaiseCHXferUpdate(Variant transfer, Variant first = Variant());

    // Operations.
    Variant GetPhoneList(Variant& list) override;
    Variant GetEntryList(Variant& list) override;
    Variant GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override;
    Variant GetLocationList(Variant& list) override;
    Variant GetLocationProperty(const std::string& location, const std::string& key,
                                std::string& value) override;
    Variant SetLocationProperty(const std::string& location, const std::string& key,
                                const std::string& value) override;
    Variant SavePOPList(const std::string& location, const std::string& destination,
                        Variant& list) override;
    Variant RefreshPOPList(const std::string& destination, const std::string& location) override;
    Variant BuildDialList(const std::string& location, const std::string& destination) override;
    Variant Disconnect(std::int32_t& handle) override;
    Variant Connect(const std::string& destination, bool option) override;
    Variant Logon(std::string& user, std::string& password, const std::string& third) override;
    Variant GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override;
    Variant GetEntryType(const std::string& entryName, std::string& entryType) override;
    Variant Logoff() override;
    Variant GetLinkSpeed(const std::string& deviceName) override;
    Variant LocationExists(const std::string& location) override;
    Variant CreateLocation(const std::string& location) override;
    Variant SaveLocation(const std::string& location) override;
    Variant GetConnectionNames(std::string& destination, std::string& deviceName) override;
    Variant DeleteLocation(const std::string& location) override;
    Variant SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                        const std::string& ispPassword) override;
    Variant GetISPLogin(std::string& user, std::string& ispName, Variant& login) override;
    Variant SaveUser(std::string& user, std::string& password, const std::string& third) override;
    Variant GetUser(std::string& user, std::string& password, std::string& third) override;
    Variant GetCallingCardList(Variant& list) override;
    Variant SetCallingCardNumber(std::string& cardId, const std::string& number) override;
    Variant GetISPList(const std::string& destination, Variant& list) override;
    Variant SaveISPList(const std::string& destination, Variant& list) override;
    Variant RefreshISPList(const std::string& destination) override;
    Variant GetPolicySetting(std::string& user, const std::string& key,
                             std::string& value) override;
    Variant CancelFileTransfer() override;

    std::int32_t GetIDsOfNames(const std::string& name) override;
    Variant Invoke(std::int32_t id, std::span<Variant> args) override;

  private:
    // Records the call, runs its hook and picks its reply; throws the reply's failure.
    EngineReply Answer(const std::string& op, std::vector<Variant> args);
    dialer::DravlinkEvents& Sink() const;

    std::vector<RecordedCall> calls_;
    std::map<std::string, std::deque<EngineReply>> queued_;
    std::map<std::string, EngineReply> defaults_;
    std::map<std::string, std::function<void()>> hooks_;
    bool countryListAvailable_ = true;
};

}  // namespace kw::test
