#include "support/scripted_engine.h"

#include <stdexcept>

namespace kw::test {

using automation::Failure;

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
        return Call(std::string(dialer::kGetCountryList), args[0]);
    }
    return Dravlink::Invoke(id, args);
}

}  // namespace kw::test
