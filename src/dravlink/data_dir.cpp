#include "dravlink/data_dir.h"

#include <cstdlib>

#include "dravlink/credentials.h"
#include "dravlink/scenario.h"
#include "platform/automation/failure.h"

#ifndef KW_DRAVLINK_SAMPLE_DIR
#define KW_DRAVLINK_SAMPLE_DIR "assets/dravlink"
#endif

namespace dravlink {

namespace fs = std::filesystem;
using kw::automation::Failure;

namespace {

[[noreturn]] void CannotStart(const std::string& why) {
    throw Failure(kw::automation::err::kCantCreateObject, "Dravlink cannot start: " + why);
}

void CheckScenarios(const Store& store) {
    if (!store.settings.scenario.empty() && !IsScenario(store.settings.scenario)) {
        CannotStart("engine.ini names the unknown scenario \"" + store.settings.scenario + "\"");
    }
    for (const auto& d : store.destinations) {
        if (!d.scenario.empty() && !IsScenario(d.scenario)) {
            CannotStart("phonebook.ini gives [" + d.name + "] the unknown scenario \"" +
                        d.scenario + "\"");
        }
    }
}

}  // namespace

fs::path DefaultDataDir() {
    const char* xdg = std::getenv("XDG_DATA_HOME");
    fs::path base;
    if (xdg != nullptr && *xdg == '/') {
        base = xdg;
    } else {
        const char* home = std::getenv("HOME");
        base = fs::path(home != nullptr ? home : "/tmp") / ".local" / "share";
    }
    return base / "Ostvarra" / "Dravlink";
}

fs::path DefaultSampleDir() {
    // Installed beside the program first; in a build tree, the source's own copy.
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        const fs::path installed =
            exe.parent_path().parent_path() / "share" / "kestrelway" / "dravlink";
        if (fs::exists(installed / "engine.ini")) {
            return installed;
        }
    }
    return KW_DRAVLINK_SAMPLE_DIR;
}

Options Resolved(Options options) {
    if (options.dataDir.empty()) {
        options.dataDir = DefaultDataDir();
    }
    if (options.sampleDir.empty()) {
        options.sampleDir = DefaultSampleDir();
    }
    if (!options.scenario.empty() && !IsScenario(options.scenario)) {
        throw Failure(kw::automation::err::kInvalidPropertyValue,
                      "Dravlink: there is no scenario called \"" + options.scenario + "\"");
    }
    return options;
}

Store OpenStore(const Options& options) {
    Store store;
    try {
        Store::Seed(options.dataDir, options.sampleDir);
        store = Store::Load(options.dataDir);
        store.secrets =
            options.secrets ? options.secrets : DefaultSecrets(options.dataDir / "secrets");
    } catch (const DataError& e) {
        CannotStart(e.what());
    } catch (const fs::filesystem_error& e) {
        CannotStart(e.what());
    }
    CheckScenarios(store);
    try {
        // Passwords as typed, or as an older engine kept them, become references now.
        store.SealPasswords();
        ReadCredentials(*store.secrets);
    } catch (const std::exception&) {
        // A read-only folder keeps them as they are; they still read, and are sealed when written.
    }
    return store;
}

}  // namespace dravlink
