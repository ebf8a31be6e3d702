#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"

namespace kw::forms {
class Platform;
}

namespace kw::dialer {

// What an engine may need from the process that creates it.
struct EngineContext {
    forms::Platform& platform;
};

// The engines this executable links, by name: the analogue of a class registration. The program
// asks for an engine by name and never sees the class behind it.
class EngineFactory {
  public:
    using Creator = std::function<std::shared_ptr<Dravlink>(const EngineContext&)>;

    static void Register(const std::string& name, Creator creator);
    static void Unregister(const std::string& name);
    static bool IsRegistered(const std::string& name);
    static std::vector<std::string> Names();

    // Fails with 429, as a missing server does, when nothing is registered under name; a failure
    // of the creator itself goes to the caller as it is.
    static std::shared_ptr<Dravlink> Create(const std::string& name, const EngineContext& context);

  private:
    static std::map<std::string, Creator>& Creators();
};

// The engine the machine is set up for, and where that is kept.
inline constexpr const char* kEngineSettingKey = "Software\\Ostvarra";
inline constexpr const char* kEngineSettingValue = "Engine";
inline constexpr const char* kDefaultEngineName = "dravlink.sim";

// The engine name from the machine setting, or the default when the setting is absent or empty.
std::string ConfiguredEngineName();

// Creates the engine named by the machine setting.
std::shared_ptr<Dravlink> CreateEngine(const EngineContext& context);

}  // namespace kw::dialer
