#include "dravlink/store.h"

#include <cctype>
#include <cstdio>
#include <system_error>
#include <utility>

#include "dravlink/secrets.h"
#include "dravlink/store_loaders.h"
#include "platform/registry/private_files.h"

namespace dravlink {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSampleFiles[] = {"engine.ini",    "accounts.ini",  "phonebook.ini",
                                        "locations.ini", "countries.txt", "callingcards.txt",
                                        "isps.txt",      "pops.txt"};

}  // namespace

std::string Location::Get(const std::string& key) const {
    auto it = properties.find(key);
    return it == properties.end() ? "" : it->second;
}

std::string PopKey(const std::string& user, const std::string& location,
                   const std::string& destination) {
    return user + "|" + location + "|" + destination;
}

std::string IspKey(const std::string& user, const std::string& destination) {
    return user + "|" + destination;
}

std::string LocationOfKey(const std::string& key) {
    const auto first = key.find('|');
    const auto second = key.find('|', first + 1);
    if (first == std::string::npos || second == std::string::npos) {
        return {};
    }
    return key.substr(first + 1, second - first - 1);
}

namespace {

void AddGeneratedPops(Store& s) {
    const auto& g = s.settings.generatedPops;
    if (g.count == 0) {
        return;
    }
    const Isp* isp = s.FindIsp(g.isp);
    if (isp == nullptr) {
        throw DataError(s.dir / "engine.ini", 0, "GeneratedPOPs names an ISP not in isps.txt");
    }
    s.pops.reserve(s.pops.size() + static_cast<std::size_t>(g.count));
    for (int i = 0; i < g.count; ++i) {
        Pop p;
        p.index = static_cast<int>(s.pops.size());
        p.isp = isp->name;
        p.countryCode = g.countryCode;
        p.areaCode = g.areaCode;
        char number[32];
        std::snprintf(number, sizeof number, "%s-%03d-%04d", g.areaCode.c_str(), 200 + i / 10000,
                      i % 10000);
        p.number = number;
        p.city = "Exchange " + std::to_string(200 + i / 10000);
        p.modem = "V.90";
        p.cost = 1 + i % 3;
        s.pops.push_back(std::move(p));
    }
}

}  // namespace

void Store::Seed(const fs::path& dir, const fs::path& sampleDir) {
    std::string why;
    if (!kw::registry::MakePrivateFolder(dir.string(), &why)) {
        throw DataError(why);
    }
    for (const char* name : kSampleFiles) {
        const fs::path target = dir / name;
        if (fs::exists(target)) {
            // A copy made by an older engine, under a looser umask, becomes the user's alone.
            kw::registry::MakePrivateFile(target.string());
        } else {
            const fs::path source = sampleDir / name;
            if (!fs::exists(source)) {
                throw DataError("the sample file " + source.string() + " is missing");
            }
            fs::copy_file(source, target);
            // The user's copy, whatever the mode of the installed sample.
            fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
        }
    }
}

Store Store::Load(const fs::path& dir) {
    Store s;
    s.dir = dir;
    // In this order: the POPs and the phone book refer to the ISPs, and the phone book's devices
    // default to the engine's.
    s.settings = LoadEngineSettings(dir / "engine.ini");
    s.accounts = LoadAccounts(dir / "accounts.ini");
    s.isps = LoadIsps(dir / "isps.txt");
    s.pops = LoadPops(dir / "pops.txt", s.isps);
    AddGeneratedPops(s);
    s.destinations = LoadPhoneBook(dir / "phonebook.ini", s.isps, s.settings.vpnDevice);
    s.locations = LoadLocations(dir / "locations.ini");
    s.countries = LoadCountries(dir / "countries.txt");
    s.cards = LoadCallingCards(dir / "callingcards.txt");
    Orderings orderings = LoadOrderings(dir / "orderings.ini");
    s.savedPops = std::move(orderings.pops);
    s.savedIsps = std::move(orderings.isps);
    s.ispLogins = LoadIspLogins(dir / "isplogins.ini");
    return s;
}

const Account* Store::FindAccount(const std::string& user) const {
    const Account* any = nullptr;
    for (const auto& a : accounts) {
        if (SameText(a.user, user)) {
            return &a;
        }
        if (a.user == "*") {
            any = &a;
        }
    }
    return any;
}

Destination* Store::FindDestination(const std::string& name) {
    for (auto& d : destinations) {
        if (SameText(d.name, TrimBlanks(name))) {
            return &d;
        }
    }
    return nullptr;
}

Location* Store::FindLocation(const std::string& name) {
    for (auto& l : locations) {
        if (SameText(l.name, TrimBlanks(name))) {
            return &l;
        }
    }
    return nullptr;
}

const Country* Store::FindCountry(int code) const {
    for (const auto& c : countries) {
        if (c.code == code) {
            return &c;
        }
    }
    return nullptr;
}

Isp* Store::FindIsp(const std::string& name) {
    for (auto& i : isps) {
        if (SameText(i.name, name)) {
            return &i;
        }
    }
    return nullptr;
}

fs::path Store::LocationsFile() const {
    if (locationsOwner.empty()) {
        return dir / "locations.ini";
    }
    // One file per user, named so that any user name makes a plain file name.
    std::string name;
    for (const char c : locationsOwner) {
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_';
        name += plain ? static_cast<char>(std::tolower(static_cast<unsigned char>(c))) : '_';
    }
    return dir / ("locations-" + name + ".ini");
}

void Store::UseLocationsOf(const std::string& user) {
    // All or nothing: a file that cannot be read leaves the owner and the locations as they were,
    // so that no later save writes one user's locations into another's file.
    const std::string previous = std::exchange(locationsOwner, user);
    const fs::path own = LocationsFile();
    try {
        locations = LoadLocations(fs::exists(own) ? own : dir / "locations.ini");
    } catch (...) {
        locationsOwner = previous;
        throw;
    }
}

bool Store::LocationsWritable() const {
    // The permission bits, not access(): they hold for every user, the superuser included.
    std::error_code error;
    const fs::path file = LocationsFile();
    const fs::path probe = fs::exists(file, error) ? file : dir;
    const fs::perms perms = fs::status(probe, error).permissions();
    return !error && (perms & fs::perms::owner_write) != fs::perms::none;
}

bool Store::SaveLocations() const {
    if (!LocationsWritable()) {
        return false;
    }
    std::vector<IniSection> sections;
    for (const auto& l : locations) {
        IniSection section{l.name, 0, {}};
        for (const char* key : kLocationKeys) {
            if (auto it = l.properties.find(key); it != l.properties.end()) {
                section.entries.push_back(IniEntry{key, it->second, 0});
            }
        }
        sections.push_back(std::move(section));
    }
    try {
        WriteIni(LocationsFile(), "# Dialing locations, kept by the engine.\n", sections);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

void Store::SaveAccounts() const {
    std::vector<IniSection> sections;
    for (const auto& a : accounts) {
        IniSection section{a.user, 0, {{"Password", a.password, 0}}};
        for (const auto& [key, value] : a.policies) {
            section.entries.push_back(IniEntry{key, value, 0});
        }
        sections.push_back(std::move(section));
    }
    WriteIni(dir / "accounts.ini",
             "# Accounts: [user] with Password (\"*\" accepts any) and policy keys.\n"
             "# [*] is everyone without an account of their own.\n",
             sections);
}

void Store::SaveCards() const {
    std::vector<std::vector<std::string>> rows;
    for (const auto& c : cards) {
        rows.push_back(
            {std::to_string(c.id), c.name, c.number, c.longDistanceRule, c.sameAreaRule});
    }
    WriteTable(dir / "callingcards.txt",
               "# id | name | card number | long distance rule | same area rule\n", rows);
}

void Store::SaveOrderings() const {
    std::vector<IniSection> sections;
    for (const auto& [key, rows] : savedPops) {
        IniSection section{"POP " + key, 0, {}};
        for (const auto& r : rows) {
            section.entries.push_back(
                IniEntry{"Row", r.number + " | " + r.isp + " | " + (r.enabled ? "1" : "0"), 0});
        }
        sections.push_back(std::move(section));
    }
    for (const auto& [key, rows] : savedIsps) {
        IniSection section{"ISP " + key, 0, {}};
        for (const auto& r : rows) {
            section.entries.push_back(IniEntry{"Row", r.name + " | " + (r.enabled ? "1" : "0"), 0});
        }
        sections.push_back(std::move(section));
    }
    WriteIni(dir / "orderings.ini",
             "# The users' saved dial list orderings: [POP user|location|destination], [ISP "
             "user|destination].\n",
             sections);
}

void Store::SealPasswords() {
    bool accountsChanged = false;
    for (auto& a : accounts) {
        if (Secrets::NeedsSealing(a.password)) {
            a.password = secrets->Keep(secrets->Reveal(a.password));
            accountsChanged = true;
        }
    }
    bool loginsChanged = false;
    for (auto& [key, login] : ispLogins) {
        if (Secrets::NeedsSealing(login.second)) {
            login.second = secrets->Keep(secrets->Reveal(login.second));
            loginsChanged = true;
        }
    }
    if (accountsChanged) {
        SaveAccounts();
    }
    if (loginsChanged) {
        SaveIspLogins();
    }
}

void Store::SaveIspLogins() const {
    std::vector<IniSection> sections;
    for (const auto& [key, login] : ispLogins) {
        sections.push_back(
            IniSection{key, 0, {{"User", login.first, 0}, {"Password", login.second, 0}}});
    }
    WriteIni(dir / "isplogins.ini", "# ISP logins per user: [user|ISP].\n", sections);
}

}  // namespace dravlink
