// A settings hive of the benchmark's own, in a fresh folder, with a user on record so that the
// program's start asks for no login.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

#include "client/ui/dialer/core/settings.h"
#include "platform/registry/registry.h"

namespace kw::bench {

inline std::filesystem::path HomeWithUserOnRecord(const std::string& user = "anna") {
    namespace reg = kw::registry;
    const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("kw-bench-rx-" + std::to_string(::getpid()));
    std::filesystem::create_directories(home);
    reg::Configure({(home / "user.reg").string(), (home / "system.reg").string()});
    reg::HKEY key = nullptr;
    reg::RegCreateKeyExA(reg::HKEY_CURRENT_USER, kw::dialer::settings::kUserKey, 0, nullptr, 0,
                         reg::KEY_ALL_ACCESS, nullptr, &key, nullptr);
    reg::RegSetValueExA(key, kw::dialer::settings::kUserName, 0, reg::REG_SZ,
                        reinterpret_cast<const reg::BYTE*>(user.c_str()),
                        static_cast<reg::DWORD>(user.size() + 1));
    reg::RegCloseKey(key);
    return home;
}

}  // namespace kw::bench
