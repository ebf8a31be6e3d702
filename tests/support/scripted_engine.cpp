#include "support/scripted_engine.h"

#include <stdexcept>

namespace kw::test {

using automation::CLng;
using automation::CStr;
using automation::Failure;

namespace {

// Writes the scripted value of position pos, if any, into an out argument.
void Out(const EngineReply& reply, int pos, Variant& arg) {
    if (auto it = reply.outs.find(pos); it != reply.outs.end()) {
        arg = it->second;
    }
}
void Out(const EngineReply& reply, int pos, std::string& arg) {
    if (auto it = reply.outs.find(pos); it != reply.outs.end()) {
        arg = CStr(it->second);
    }
}
void Out(const EngineReply& reply, int pos, std::int32_t& arg) {
    if (auto it = reply.outs.find(pos); it != reply.outs.end()) {
        arg = CLng(it->second);
    }
}

}  // namespace

ScriptedEngine::ScriptedEngine() {
    defaults_["BuildDialList"].result = Variant(std::int32_t{0});
    defaults_["GetISPList"].result = Variant(std::int32_t{0});
    defaults_["GetLinkSpeed"].result = Variant(std::int32_t{0});
    defaults_["Connect"].result = Variant(std::int32_t{1});
}

ScriptedEngine& ScriptedEngine::Then(const std::string& op, Variant result,
                                     std::map<int, Variant> outs) {
    queued_[op].push_back(EngineReply{std::move(result), std::move(outs), std::nullopt});
    return *this;
}

ScriptedEngine& ScriptedEngine::ThenFail(const std::string& op, Failure failure) {
    queued_[op].push_back(EngineReply{Variant(), {}, std::move(failure)});
    return *this;
}

ScriptedEngine& ScriptedEngine::Default(const std::string& op, Variant result,
                                        std::map<int, Variant> outs) {
    defaults_[op] = EngineReply{std::move(result), std::move(outs), std::nullopt};
    return *this;
}

ScriptedEngine& ScriptedEngine::AlwaysFail(const std::string& op, Failure failure) {
    defaults_[op] = EngineReply{Variant(), {}, std::move(failure)};
    return *this;
}

ScriptedEngine& ScriptedEngine::OnCall(const std::string& op, std::function<void()> action) {
    hooks_[op] = std::move(action);
    return *this;
}

ScriptedEngine& ScriptedEngine::SetCountryListAvailable(bool available) {
    countryListAvailable_ = available;
    return *this;
}

std::vector<RecordedCall> ScriptedEngine::CallsTo(const std::string& op) const {
    std::vector<RecordedCall> found;
    for (const auto& call : calls_) {
        if (call.name == op) {
            found.push_back(call);
        }
    }
    return found;
}

int ScriptedEngine::CountOf(const std::string& op) const {
    return static_cast<int>(CallsTo(op).size());
}

std::vector<std::string> ScriptedEngine::CallNames() const {
    std::vector<std::string> names;
    for (const auto& call : calls_) {
        names.push_back(call.name);
    }
    return names;
}

std::size_t ScriptedEngine::PendingReplies() const {
    std::size_t n = 0;
    for (const auto& [op, queue] : queued_) {
        n += queue.size();
    }
    return n;
}

EngineReply ScriptedEngine::Answer(const std::string& op, std::vector<Variant> args) {
    calls_.push_back(RecordedCall{op, std::move(args)});
    if (auto hook = hooks_.find(op); hook != hooks_.end() && hook->second) {
        // Copied: the hook may install another hook for the same operation.
        auto action = hook->second;
        action();
    }
    EngineReply reply;
    if (auto q = queued_.find(op); q != queued_.end() && !q->second.empty()) {
        reply = std::move(q->second.front());
        q->second.pop_front();
    } else if (auto d = defaults_.find(op); d != defaults_.end()) {
        reply = d->second;
    } else {
        reply.result = Variant(true);
    }
    if (reply.failure) {
        throw *reply.failure;
    }
    return reply;
}

dialer::DravlinkEvents& ScriptedEngine::Sink() const {
    auto* sink = EventSink();
    if (sink == nullptr) {
        throw std::logic_error("ScriptedEngine: an event was raised with no sink advised");
    }
    return *sink;
}

// Events --------------------------------------------------------------------------------------

void ScriptedEngine::RaiseProgressUpdate(std::int16_t code, std::string text) {
    Sink().ProgressUpdate(code, text);
}
void ScriptedEngine::RaiseStatusUpdate(std::string text) {
    Sink().StatusUpdate(text);
}
void ScriptedEngine::RaiseErrorEvent(std::string message) {
    Sink().ErrorEvent(message);
}
void ScriptedEngine::RaiseDravDebug(std::string text) {
    Sink().DravDebug(text);
}
void ScriptedEngine::RaiseGetUserOk(std::string message) {
    Sink().GetUserOk(message);
}

bool ScriptedEngine::RaiseGetUserYesNo(std::string question, bool answer) {
    Sink().GetUserYesNo(question, answer);
    return answer;
}

std::string ScriptedEngine::RaiseGetUserNowLaterNever(std::string question, std::string answer) {
    Sink().GetUserNowLaterNever(question, answer);
    return answer;
}

std::string ScriptedEngine::RaiseGetUsernamePassword(std::string prompt, std::string user) {
    Sink().GetUsernamePassword(prompt, user);
    return user;
}

std::string ScriptedEngine::RaiseGetUserInfo(std::string prompt, Variant choices,
                                             std::string answer) {
    Sink().GetUserInfo(prompt, choices, answer);
    return answer;
}

std::string ScriptedEngine::RaiseGetUserInput(std::string prompt, std::string defaultText,
                                              std::string answer) {
    Sink().GetUserInput(prompt, defaultText, answer);
    return answer;
}

void ScriptedEngine::RaiseGetGenericISPList(std::string message, Variant list) {
    Sink().GetGenericISPList(message, list);
}

void ScriptedEngine::RaiseGetConnectionStatistics(Variant ispStats, Variant vpnStats) {
    Sink().GetConnectionStatistics(ispStats, vpnStats);
}

void ScriptedEngine::RaiseCHXferUpdate(Variant transfer, Variant first) {
    Sink().CHXferUpdate(first, transfer);
}

// Operations ----------------------------------------------------------------------------------

Variant ScriptedEngine::GetPhoneList(Variant& list) {
    auto r = Answer("GetPhoneList", {list});
    Out(r, 0, list);
    return r.result;
}

Variant ScriptedEngine::GetEntryList(Variant& list) {
    auto r = Answer("GetEntryList", {list});
    Out(r, 0, list);
    return r.result;
}

Variant ScriptedEngine::GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                            std::string& value) {
    auto r = Answer("GetISPEntryProperty", {entryName, key, value});
    Out(r, 2, value);
    return r.result;
}

Variant ScriptedEngine::GetLocationList(Variant& list) {
    auto r = Answer("GetLocationList", {list});
    Out(r, 0, list);
    return r.result;
}

Variant ScriptedEngine::GetLocationProperty(const std::string& location, const std::string& key,
                                            std::string& value) {
    auto r = Answer("GetLocationProperty", {location, key, value});
    Out(r, 2, value);
    return r.result;
}

Variant ScriptedEngine::SetLocationProperty(const std::string& location, const std::string& key,
                                            const std::string& value) {
    return Answer("SetLocationProperty", {location, key, value}).result;
}

Variant ScriptedEngine::SavePOPList(const std::string& location, const std::string& destination,
                                    Variant& list) {
    auto r = Answer("SavePOPList", {location, destination, list});
    Out(r, 2, list);
    return r.result;
}

Variant ScriptedEngine::RefreshPOPList(const std::string& destination,
                                       const std::string& location) {
    return Answer("RefreshPOPList", {destination, location}).result;
}

Variant ScriptedEngine::BuildDialList(const std::string& location, const std::string& destination) {
    return Answer("BuildDialList", {location, destination}).result;
}

Variant ScriptedEngine::Disconnect(std::int32_t& handle) {
    auto r = Answer("Disconnect", {handle});
    Out(r, 0, handle);
    return r.result;
}

Variant ScriptedEngine::Connect(const std::string& destination, bool option) {
    return Answer("Connect", {destination, option}).result;
}

Variant ScriptedEngine::Logon(std::string& user, std::string& password, const std::string& third) {
    auto r = Answer("Logon", {user, password, third});
    Out(r, 0, user);
    Out(r, 1, password);
    return r.result;
}

Variant ScriptedEngine::GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                            std::string& value) {
    auto r = Answer("GetVPNEntryProperty", {entryName, key, value});
    Out(r, 2, value);
    return r.result;
}

Variant ScriptedEngine::GetEntryType(const std::string& entryName, std::string& entryType) {
    auto r = Answer("GetEntryType", {entryName, entryType});
    Out(r, 1, entryType);
    return r.result;
}

Variant ScriptedEngine::Logoff() {
    return Answer("Logoff", {}).result;
}

Variant ScriptedEngine::GetLinkSpeed(const std::string& deviceName) {
    return Answer("GetLinkSpeed", {deviceName}).result;
}

Variant ScriptedEngine::LocationExists(const std::string& location) {
    return Answer("LocationExists", {location}).result;
}

Variant ScriptedEngine::CreateLocation(const std::string& location) {
    return Answer("CreateLocation", {location}).result;
}

Variant ScriptedEngine::SaveLocation(const std::string& location) {
    return Answer("SaveLocation", {location}).result;
}

Variant ScriptedEngine::GetConnectionNames(std::string& destination, std::string& deviceName) {
    auto r = Answer("GetConnectionNames", {destination, deviceName});
    Out(r, 0, destination);
    Out(r, 1, deviceName);
    return r.result;
}

Variant ScriptedEngine::DeleteLocation(const std::string& location) {
    return Answer("DeleteLocation", {location}).result;
}

Variant ScriptedEngine::SetISPLogin(std::string& user, std::string& ispName,
                                    const std::string& ispUser, const std::string& ispPassword) {
    auto r = Answer("SetISPLogin", {user, ispName, ispUser, ispPassword});
    Out(r, 0, user);
    Out(r, 1, ispName);
    return r.result;
}

Variant ScriptedEngine::GetISPLogin(std::string& user, std::string& ispName, Variant& login) {
    auto r = Answer("GetISPLogin", {user, ispName, login});
    Out(r, 0, user);
    Out(r, 1, ispName);
    Out(r, 2, login);
    return r.result;
}

Variant ScriptedEngine::SaveUser(std::string& user, std::string& password,
                                 const std::string& third) {
    auto r = Answer("SaveUser", {user, password, third});
    Out(r, 0, user);
    Out(r, 1, password);
    return r.result;
}

Variant ScriptedEngine::GetUser(std::string& user, std::string& password, std::string& third) {
    auto r = Answer("GetUser", {user, password, third});
    Out(r, 0, user);
    Out(r, 1, password);
    Out(r, 2, third);
    return r.result;
}

Variant ScriptedEngine::GetCallingCardList(Variant& list) {
    auto r = Answer("GetCallingCardList", {list});
    Out(r, 0, list);
    return r.result;
}

Variant ScriptedEngine::SetCallingCardNumber(std::string& cardId, const std::string& number) {
    auto r = Answer("SetCallingCardNumber", {cardId, number});
    Out(r, 0, cardId);
    return r.result;
}

Variant ScriptedEngine::GetISPList(const std::string& destination, Variant& list) {
    auto r = Answer("GetISPList", {destination, list});
    Out(r, 1, list);
    return r.result;
}

Variant ScriptedEngine::SaveISPList(const std::string& destination, Variant& list) {
    auto r = Answer("SaveISPList", {destination, list});
    Out(r, 1, list);
    return r.result;
}

Variant ScriptedEngine::RefreshISPList(const std::string& destination) {
    return Answer("RefreshISPList", {destination}).result;
}

Variant ScriptedEngine::GetPolicySetting(std::string& user, const std::string& key,
                                         std::string& value) {
    auto r = Answer("GetPolicySetting", {user, key, value});
    Out(r, 0, user);
    Out(r, 2, value);
    return r.result;
}

Variant ScriptedEngine::CancelFileTransfer() {
    return Answer("CancelFileTransfer", {}).result;
}

std::int32_t ScriptedEngine::GetIDsOfNames(const std::string& name) {
    if (countryListAvailable_ && name == dialer::kGetCountryList) {
        return kCountryListId;
    }
    return Dravlink::GetIDsOfNames(name);
}

Variant ScriptedEngine::Invoke(std::int32_t id, std::span<Variant> args) {
    if (countryListAvailable_ && id == kCountryListId) {
        if (args.size() != 1) {
            throw Failure(450);
        }
        auto r = Answer(std::string(dialer::kGetCountryList), {args[0]});
        Out(r, 0, args[0]);
        return r.result;
    }
    return Dravlink::Invoke(id, args);
}

}  // namespace kw::test
