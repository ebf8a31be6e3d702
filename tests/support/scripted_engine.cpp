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

std::vector<RecordedCall> ScriptedEngine::CallsTo(const std::string& op) const {
    std::vector<RecordedCall> found;
    for (const auto& call : calls_) {
        if (call.name == op) {
            found.push_back(call);
        }
    }
    return found;
}

std::vector<std::string> ScriptedEngine::CallNames() const {
    std::vector<std::string> names;
    for (const auto& call : calls_) {
        names.push_back(call.name);
    }
    return names;
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
