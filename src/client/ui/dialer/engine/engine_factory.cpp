#include "client/ui/dialer/engine/engine_factory.h"

#include "platform/automation/failure.h"

namespace kw::dialer {

std::map<std::string, EngineFactory::Creator>& EngineFactory::Creators() {
    static std::map<std::string, Creator> creators;
    return creators;
}

void EngineFactory::Register(const std::string& name, Creator creator) {
    Creators()[name] = std::move(creator);
}

void EngineFactory::Unregister(const std::string& name) { Creators().erase(name); }

bool EngineFactory::IsRegistered(const std::string& name) {
    return Creators().count(name) != 0;
}

std::vector<std::string> EngineFactory::Names() {
    std::vector<std::string> names;
    for (const auto& [name, creator] : Creators()) {
        names.push_back(name);
    }
    return names;
}

std::shared_ptr<Dravlink> EngineFactory::Create(const std::string& name,
                                                const EngineContext& context) {
    auto it = Creators().find(name);
    if (it == Creators().end() || !it->second) {
        throw automation::Failure(automation::err::kCantCreateObject);
    }
    // Copied: a creator may register or unregister engines while it runs.
    Creator creator = it->second;
    auto engine = creator(context);
    if (!engine) {
        throw automation::Failure(automation::err::kCantCreateObject);
    }
    return engine;
}

std::shared_ptr<Dravlink> CreateEngine(const EngineContext& context) {
    return EngineFactory::Create(ConfiguredEngineName(), context);
}

}  // namespace kw::dialer
