// Writes the machine settings an installer writes: where Kestrelway is installed, in a folder the
// user can write, since the logs go there.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "client/ui/dialer/core/settings.h"
#include "platform/registry/private_files.h"
#include "platform/registry/registry.h"

namespace {

std::filesystem::path InstallFolder() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data != '\0') {
        return std::filesystem::path(data) / "Ostvarra" / "Kestrelway";
    }
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home != nullptr ? home : ".") / ".local" / "share" / "Ostvarra" /
           "Kestrelway";
}

}  // namespace

int main() {
    namespace reg = kw::registry;
    const std::filesystem::path folder = InstallFolder();
    // The logs of the user's calls go here: the folder is the user's alone.
    std::string why;
    if (!kw::registry::MakePrivateFolder(folder.string(), &why)) {
        std::fprintf(stderr, "kestrelway-install: cannot make %s: %s\n", folder.c_str(),
                     why.c_str());
        return 1;
    }
    reg::HKEY key = nullptr;
    if (reg::RegCreateKeyExA(reg::HKEY_LOCAL_MACHINE, kw::dialer::settings::kMachineKey, 0, nullptr,
                             0, reg::KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0) {
        std::fprintf(stderr, "kestrelway-install: cannot write the machine settings in %s\n",
                     reg::HivePath(reg::HKEY_LOCAL_MACHINE).c_str());
        return 1;
    }
    const std::string value = folder.string();
    const reg::LONG status =
        reg::RegSetValueExA(key, kw::dialer::settings::kInstallDir, 0, reg::REG_SZ,
                            reinterpret_cast<const reg::BYTE*>(value.c_str()),
                            static_cast<reg::DWORD>(value.size() + 1));
    reg::RegCloseKey(key);
    if (status != 0) {
        std::fprintf(stderr, "kestrelway-install: cannot store installDir (status %d)\n", status);
        return 1;
    }
    std::printf("Kestrelway is installed in %s\n", value.c_str());
    return 0;
}
