#include "client/ui/dialer/engine/engine_factory.h"

#include "platform/automation/failure.h"
#include "platform/registry/registry.h"

namespace kw::dialer {

std::map<std::string, EngineFactory::Creator>& EngineFactory::Creators() {
    static std::map<std::string, Creator> creators;
    return creators;
}

void EngineFactory::Register(const std::string& name, Creator creator) {
    Creators()[name] = std::move(creator);
}

void EngineFactory::Unregister(const std::string& name) {
    Creators().erase(name);
}

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

std::string ConfiguredEngineName() {
    namespace reg = registry;
    reg::HKEY key = nullptr;
    if (reg::RegOpenKeyExA(reg::HKEY_LOCAL_MACHINE, kEngineSettingKey, 0, reg::KEY_QUERY_VALUE,
                           &key) != reg::ERROR_SUCCESS) {
        return kDefaultEngineName;
    }
    std::string name;
    reg::DWORD type = 0;
    reg::DWORD size = 0;
    if (reg::RegQueryValueExA(key, kEngineSettingValue, nullptr, &type, nullptr, &size) ==
            reg::ERROR_SUCCESS &&
        type == reg::REG_SZ && size > 1) {
        std::string buffer(size, '\0');
        if (reg::RegQueryValueExA(key, kEngineSettingValue, nullptr, &type,
                                  reinterpret_cast<reg::BYTE*>(buffer.data()),
                                  &size) == reg::ERROR_SUCCESS) {
            name.assign(buffer.c_str());
        }
    }
    reg::RegCloseKey(key);
    return name.empty() ? kDefaultEngineName : name;
}

std::shared_ptr<Dravlink> CreateEngine(const EngineContext& context) {
    return EngineFactory::Create(ConfiguredEngineName(), context);
}

}  // namespace kw::dialer
