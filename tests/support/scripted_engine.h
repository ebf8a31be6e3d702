#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
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
    ScriptedEngine& Then(const std::string& op, Variant result, std::map<int, Variant> outs = {}) {
        queued_[op].push_back(EngineReply{std::move(result), std::move(outs), std::nullopt});
        return *this;
    }
    ScriptedEngine& ThenFail(const std::string& op, automation::Failure failure) {
        queued_[op].push_back(EngineReply{Variant(), {}, std::move(failure)});
        return *this;
    }
    // What op answers when nothing is queued for it. Without one: true, or 0 for the operations
    // whose result is a long (BuildDialList, GetISPList, GetLinkSpeed), and handle 1 for Connect.
    ScriptedEngine& Default(const std::string& op, Variant result,
                            std::map<int, Variant> outs = {}) {
        defaults_[op] = EngineReply{std::move(result), std::move(outs), std::nullopt};
        return *this;
    }
    ScriptedEngine& AlwaysFail(const std::string& op, automation::Failure failure) {
        defaults_[op] = EngineReply{Variant(), {}, std::move(failure)};
        return *this;
    }
    // Runs inside every call of op, after it is recorded and before it answers: the place to
    // raise events from within a call, as the engine does.
    ScriptedEngine& OnCall(const std::string& op, std::function<void()> action) {
        hooks_[op] = std::move(action);
        return *this;
    }
    // Whether the name GetCountryList resolves (an older engine does not know it).
    ScriptedEngine& SetCountryListAvailable(bool available) {
        countryListAvailable_ = available;
        return *this;
    }

    const std::vector<RecordedCall>& Calls() const { return calls_; }
    std::vector<RecordedCall> CallsTo(const std::string& op) const;
    int CountOf(const std::string& op) const { return static_cast<int>(CallsTo(op).size()); }
    std::vector<std::string> CallNames() const;
    void ClearCalls() { calls_.clear(); }

    // Events. Each raises into the advised sink and gives back the by-reference arguments as the
    // handler left them. Raising with no sink advised is a mistake of the test and throws.
    void RaiseProgressUpdate(std::int16_t code, std::string text) {
        Sink().ProgressUpdate(code, text);
    }
    void RaiseStatusUpdate(std::string text) { Sink().StatusUpdate(text); }
    void RaiseErrorEvent(std::string message) { Sink().ErrorEvent(message); }
    void RaiseDravDebug(std::string text) { Sink().DravDebug(text); }
    void RaiseGetUserOk(std::string message) { Sink().GetUserOk(message); }
    bool RaiseGetUserYesNo(std::string question, bool answer = false) {
        Sink().GetUserYesNo(question, answer);
        return answer;
    }
    std::string RaiseGetUserNowLaterNever(std::string question, std::string answer = "") {
        Sink().GetUserNowLaterNever(question, answer);
        return answer;
    }
    std::string RaiseGetUsernamePassword(std::string prompt, std::string user) {
        Sink().GetUsernamePassword(prompt, user);
        return user;
    }
    std::string RaiseGetUserInfo(std::string prompt, Variant choices, std::string answer = "") {
        Sink().GetUserInfo(prompt, choices, answer);
        return answer;
    }
    std::string RaiseGetUserInput(std::string prompt, std::string defaultText,
                                  std::string answer = "") {
        Sink().GetUserInput(prompt, defaultText, answer);
        return answer;
    }
    void RaiseGetGenericISPList(std::string message, Variant list) {
        Sink().GetGenericISPList(message, list);
    }
    void RaiseGetConnectionStatistics(Variant ispStats, Variant vpnStats) {
        Sink().GetConnectionStatistics(ispStats, vpnStats);
    }
    void RaiseCHXferUpdate(Variant transfer, Variant first = Variant()) {
        Sink().CHXferUpdate(first, transfer);
    }

    // Operations.
    Variant GetPhoneList(Variant& list) override { return Call("GetPhoneList", list); }
    Variant GetEntryList(Variant& list) override { return Call("GetEntryList", list); }
    Variant GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override {
        return Call("GetISPEntryProperty", entryName, key, value);
    }
    Variant GetLocationList(Variant& list) override { return Call("GetLocationList", list); }
    Variant GetLocationProperty(const std::string& location, const std::string& key,
                                std::string& value) override {
        return Call("GetLocationProperty", location, key, value);
    }
    Variant SetLocationProperty(const std::string& location, const std::string& key,
                                const std::string& value) override {
        return Call("SetLocationProperty", location, key, value);
    }
    Variant SavePOPList(const std::string& location, const std::string& destination,
                        Variant& list) override {
        return Call("SavePOPList", location, destination, list);
    }
    Variant RefreshPOPList(const std::string& destination, const std::string& location) override {
        return Call("RefreshPOPList", destination, location);
    }
    Variant BuildDialList(const std::string& location, const std::string& destination) override {
        return Call("BuildDialList", location, destination);
    }
    Variant Disconnect(std::int32_t& handle) override { return Call("Disconnect", handle); }
    Variant Connect(const std::string& destination, bool option) override {
        return Call("Connect", destination, option);
    }
    Variant Logon(std::string& user, std::string& password, const std::string& third) override {
        return Call("Logon", user, password, third);
    }
    Variant GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override {
        return Call("GetVPNEntryProperty", entryName, key, value);
    }
    Variant GetEntryType(const std::string& entryName, std::string& entryType) override {
        return Call("GetEntryType", entryName, entryType);
    }
    Variant Logoff() override { return Call("Logoff"); }
    Variant GetLinkSpeed(const std::string& deviceName) override {
        return Call("GetLinkSpeed", deviceName);
    }
    Variant LocationExists(const std::string& location) override {
        return Call("LocationExists", location);
    }
    Variant CreateLocation(const std::string& location) override {
        return Call("CreateLocation", location);
    }
    Variant SaveLocation(const std::string& location) override {
        return Call("SaveLocation", location);
    }
    Variant GetConnectionNames(std::string& destination, std::string& deviceName) override {
        return Call("GetConnectionNames", destination, deviceName);
    }
    Variant DeleteLocation(const std::string& location) override {
        return Call("DeleteLocation", location);
    }
    Variant SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                        const std::string& ispPassword) override {
        return Call("SetISPLogin", user, ispName, ispUser, ispPassword);
    }
    Variant GetISPLogin(std::string& user, std::string& ispName, Variant& login) override {
        return Call("GetISPLogin", user, ispName, login);
    }
    Variant SaveUser(std::string& user, std::string& password, const std::string& third) override {
        return Call("SaveUser", user, password, third);
    }
    Variant GetUser(std::string& user, std::string& password, std::string& third) override {
        return Call("GetUser", user, password, third);
    }
    Variant GetCallingCardList(Variant& list) override { return Call("GetCallingCardList", list); }
    Variant SetCallingCardNumber(std::string& cardId, const std::string& number) override {
        return Call("SetCallingCardNumber", cardId, number);
    }
    Variant GetISPList(const std::string& destination, Variant& list) override {
        return Call("GetISPList", destination, list);
    }
    Variant SaveISPList(const std::string& destination, Variant& list) override {
        return Call("SaveISPList", destination, list);
    }
    Variant RefreshISPList(const std::string& destination) override {
        return Call("RefreshISPList", destination);
    }
    Variant GetPolicySetting(std::string& user, const std::string& key,
                             std::string& value) override {
        return Call("GetPolicySetting", user, key, value);
    }
    Variant CancelFileTransfer() override { return Call("CancelFileTransfer"); }

    std::int32_t GetIDsOfNames(const std::string& name) override;
    Variant Invoke(std::int32_t id, std::span<Variant> args) override;

  private:
    // Records the call, runs its hook and picks its reply; throws the reply's failure.
    EngineReply Answer(const std::string& op, std::vector<Variant> args);
    // Answers op with args recorded, and writes the reply's outs into the arguments taken by
    // non-const reference.
    template <class... A>
    Variant Call(const std::string& op, A&... args) {
        const EngineReply reply = Answer(op, {Variant(args)...});
        int pos = 0;
        (Out(reply, pos++, args), ...);
        return reply.result;
    }
    template <class T>
    static void Out(const EngineReply& reply, int pos, T& arg) {
        const auto it = reply.outs.find(pos);
        if (it == reply.outs.end())
            return;
        if constexpr (std::is_same_v<T, std::string>) {
            arg = automation::CStr(it->second);
        } else if constexpr (std::is_same_v<T, std::int32_t>) {
            arg = automation::CLng(it->second);
        } else if constexpr (std::is_same_v<T, Variant>) {
            arg = it->second;
        }
    }
    dialer::DravlinkEvents& Sink() const;

    std::vector<RecordedCall> calls_;
    std::map<std::string, std::deque<EngineReply>> queued_;
    std::map<std::string, EngineReply> defaults_;
    std::map<std::string, std::function<void()>> hooks_;
    bool countryListAvailable_ = true;
};

}  // namespace kw::test
