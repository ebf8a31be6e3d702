// Writes what an installer writes: where Kestrelway is installed (a folder the user can write,
// since the logs go there), which engine it uses, and the session bus's entry that starts the
// engine's process on first use.
//
//   kestrelway-install [--engine NAME]
// NAME is dravlink.dbus (the engine's own process, the default) or dravlink.sim (in process).
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "link/bus_dravlink.h"
#include "link/wire.h"
#include "platform/registry/private_files.h"
#include "platform/registry/registry.h"

namespace {

namespace fs = std::filesystem;

fs::path DataHome() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') {
        return data;
    }
    const char* home = std::getenv("HOME");
    return fs::path(home != nullptr ? home : ".") / ".local" / "share";
}

bool SetMachineString(const char* name, const std::string& value) {
    namespace reg = kw::registry;
    reg::HKEY key = nullptr;
    if (reg::RegCreateKeyExA(reg::HKEY_LOCAL_MACHINE, kw::dialer::settings::kMachineKey, 0, nullptr,
                             0, reg::KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0) {
        std::fprintf(stderr, "kestrelway-install: cannot write the machine settings in %s\n",
                     reg::HivePath(reg::HKEY_LOCAL_MACHINE).c_str());
        return false;
    }
    const reg::LONG status = reg::RegSetValueExA(key, name, 0, reg::REG_SZ,
                                                 reinterpret_cast<const reg::BYTE*>(value.c_str()),
                                                 static_cast<reg::DWORD>(value.size() + 1));
    reg::RegCloseKey(key);
    if (status != 0) {
        std::fprintf(stderr, "kestrelway-install: cannot store %s (status %d)\n", name, status);
        return false;
    }
    return true;
}

// The engine's program lies beside this one.
fs::path EngineProgram() {
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return (ec ? fs::current_path() : self.parent_path()) / "dravlinkd";
}

// The session bus reads its services from $XDG_DATA_HOME/dbus-1/services.
bool WriteServiceFile(const fs::path& engine) {
    const fs::path folder = DataHome() / "dbus-1" / "services";
    std::error_code ec;
    fs::create_directories(folder, ec);
    const fs::path file = folder / (std::string(kw::link::kServiceName) + ".service");
    std::ofstream out(file, std::ios::trunc);
    out << "[D-BUS Service]\nName=" << kw::link::kServiceName << "\nExec=" << engine.string()
        << "\n";
    out.close();
    if (!out) {
        std::fprintf(stderr, "kestrelway-install: cannot write %s\n", file.c_str());
        return false;
    }
    std::printf("The session bus starts the engine from %s\n", file.c_str());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::string engine = kw::link::kBusEngineName;
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::string(argv[i]) == "--engine") {
            engine = argv[++i];
        }
    }
    const fs::path folder = DataHome() / "Ostvarra" / "Kestrelway";
    // The logs of the user's calls go here: the folder is the user's alone.
    std::string why;
    if (!kw::registry::MakePrivateFolder(folder.string(), &why)) {
        std::fprintf(stderr, "kestrelway-install: cannot make %s: %s\n", folder.c_str(),
                     why.c_str());
        return 1;
    }
    if (!SetMachineString(kw::dialer::settings::kInstallDir, folder.string()) ||
        !SetMachineString(kw::dialer::kEngineSettingValue, engine) ||
        !WriteServiceFile(EngineProgram())) {
        return 1;
    }
    std::printf("Kestrelway is installed in %s, with the engine %s\n", folder.c_str(),
                engine.c_str());
    return 0;
}
