#include "dravlink/store.h"

#include <charconv>

namespace dravlink {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSampleFiles[] = {"engine.ini",    "accounts.ini",  "phonebook.ini",
                                        "locations.ini", "countries.txt", "callingcards.txt",
                                        "isps.txt",      "pops.txt"};

int ParseInt(const fs::path& file, int line, const std::string& text, const std::string& what) {
    int value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end) {
        throw DataError(file, line, what + " must be a whole number, found \"" + text + "\"");
    }
    return value;
}

bool ParseFlag(const fs::path& file, int line, const std::string& text, const std::string& what) {
    if (text == "1") {
        return true;
    }
    if (text == "0") {
        return false;
    }
    throw DataError(file, line, what + " must be 1 or 0, found \"" + text + "\"");
}

std::optional<IniFile> ReadOptionalIni(const fs::path& path) {
    if (!fs::exists(path)) {
        return std::nullopt;
    }
    return ReadIni(path);
}

}  // namespace

std::string Location::Get(const std::string& key) const {
    auto it = properties.find(key);
    return it == properties.end() ? "" : it->second;
}

std::string PopKey(const std::string& location, const std::string& destination) {
    return location + "|" + destination;
}

void Store::Seed(const fs::path& dir, const fs::path& sampleDir) {
    fs::create_directories(dir);
    for (const char* name : kSampleFiles) {
        const fs::path target = dir / name;
        if (!fs::exists(target)) {
            const fs::path source = sampleDir / name;
            if (!fs::exists(source)) {
                throw DataError("the sample file " + source.string() + " is missing");
            }
            fs::copy_file(source, target);
        }
    }
}

Store Store::Load(const fs::path& dir) {
    Store s;
    s.dir = dir;

    const IniFile engine = ReadIni(dir / "engine.ini");
    for (const auto& section : engine.sections) {
        if (SameText(section.name, "Engine")) {
            s.settings.scenario = section.Get("Scenario");
            s.settings.modem = section.Get("Modem", s.settings.modem);
            s.settings.vpnDevice = section.Get("VpnDevice", s.settings.vpnDevice);
        }
    }

    const IniFile accounts = ReadIni(dir / "accounts.ini");
    for (const auto& section : accounts.sections) {
        Account a{section.name, section.Get("Password", "*"), {}};
        for (const auto& entry : section.entries) {
            if (SameText(entry.key, "Password")) {
                continue;
            }
            bool known = false;
            for (const char* key : kPolicyKeys) {
                if (SameText(entry.key, key)) {
                    a.policies[key] = entry.value;
                    known = true;
                }
            }
            if (!known) {
                throw DataError(accounts.path, entry.line,
                                "\"" + entry.key + "\" is neither Password nor a policy key");
            }
        }
        s.accounts.push_back(std::move(a));
    }

    const TableFile isps = ReadTable(dir / "isps.txt", 5);
    for (const auto& row : isps.rows) {
        const auto& f = row.fields;
        s.isps.push_back(Isp{f[0], f[1], f[2], ParseFlag(isps.path, row.line, f[3], "enabled"),
                             ParseInt(isps.path, row.line, f[4], "the weight")});
    }

    const TableFile pops = ReadTable(dir / "pops.txt", 9);
    for (const auto& row : pops.rows) {
        const auto& f = row.fields;
        if (!s.FindIsp(f[0])) {
            throw DataError(pops.path, row.line, "the ISP \"" + f[0] + "\" is not in isps.txt");
        }
        Pop p;
        p.index = static_cast<int>(s.pops.size());
        p.isp = f[0];
        p.countryCode = ParseInt(pops.path, row.line, f[1], "the country code");
        p.areaCode = f[2];
        p.number = f[3];
        p.city = f[4];
        p.state = f[5];
        p.modem = f[6];
        p.cost = ParseInt(pops.path, row.line, f[7], "the cost");
        p.enabled = ParseFlag(pops.path, row.line, f[8], "enabled");
        if (p.number.empty()) {
            throw DataError(pops.path, row.line, "a POP needs a telephone number");
        }
        s.pops.push_back(std::move(p));
    }

    const IniFile phonebook = ReadIni(dir / "phonebook.ini");
    for (const auto& section : phonebook.sections) {
        Destination d;
        d.name = section.name;
        d.type = section.Get("Type", "Both");
        if (d.type != "ISP" && d.type != "VPN" && d.type != "Both") {
            throw DataError(
                phonebook.path, section.line,
                "Type of [" + d.name + "] must be ISP, VPN or Both, found \"" + d.type + "\"");
        }
        for (const auto& isp : SplitList(section.Get("ISPs"), ',')) {
            if (isp.empty()) {
                continue;
            }
            if (!s.FindIsp(isp)) {
                throw DataError(
                    phonebook.path, section.line,
                    "[" + d.name + "] names the ISP \"" + isp + "\", which is not in isps.txt");
            }
            d.isps.push_back(isp);
        }
        d.tunnelServer = section.Get("TunnelServer");
        d.deviceName = section.Get("DeviceName", s.settings.vpnDevice);
        d.localPhoneNumber = section.Get("LocalPhoneNumber");
        d.scenario = section.Get("Scenario");
        s.destinations.push_back(std::move(d));
    }

    const IniFile locations = ReadIni(dir / "locations.ini");
    for (const auto& section : locations.sections) {
        Location l{section.name, {}};
        for (const auto& entry : section.entries) {
            bool known = false;
            for (const char* key : kLocationKeys) {
                if (entry.key == key) {
                    l.properties[key] = entry.value;
                    known = true;
                }
            }
            if (!known) {
                throw DataError(locations.path, entry.line,
                                "\"" + entry.key + "\" is not a key of a location");
            }
        }
        if (!l.Get("CountryCode").empty()) {
            ParseInt(locations.path, section.line, l.Get("CountryCode"), "CountryCode");
        }
        s.locations.push_back(std::move(l));
    }

    const TableFile countries = ReadTable(dir / "countries.txt", 5);
    for (const auto& row : countries.rows) {
        const auto& f = row.fields;
        s.countries.push_back(
            Country{f[0], ParseInt(countries.path, row.line, f[1], "the code"), f[2], f[3], f[4]});
    }

    const TableFile cards = ReadTable(dir / "callingcards.txt", 5);
    for (const auto& row : cards.rows) {
        const auto& f = row.fields;
        s.cards.push_back(CallingCard{ParseInt(cards.path, row.line, f[0], "the card id"), f[1],
                                      f[2], f[3], f[4]});
    }

    if (auto orderings = ReadOptionalIni(dir / "orderings.ini")) {
        for (const auto& section : orderings->sections) {
            const bool pop = section.name.rfind("POP ", 0) == 0;
            const bool isp = section.name.rfind("ISP ", 0) == 0;
            if (!pop && !isp) {
                throw DataError(orderings->path, section.line,
                                "an ordering section starts with POP or ISP");
            }
            const std::string key = section.name.substr(4);
            for (const auto& entry : section.entries) {
                auto f = SplitList(entry.value, '|');
                if (pop && f.size() == 3) {
                    s.savedPops[key].push_back(SavedPop{
                        f[0], f[1], ParseFlag(orderings->path, entry.line, f[2], "enabled")});
                } else if (isp && f.size() == 2) {
                    s.savedIsps[key].push_back(
                        SavedIsp{f[0], ParseFlag(orderings->path, entry.line, f[1], "enabled")});
                } else {
                    throw DataError(orderings->path, entry.line,
                                    pop ? "a POP row is \"number | ISP | enabled\""
                                        : "an ISP row is \"name | enabled\"");
                }
            }
        }
    }

    if (auto logins = ReadOptionalIni(dir / "isplogins.ini")) {
        for (const auto& section : logins->sections) {
            s.ispLogins[section.name] = {section.Get("User"), section.Get("Password")};
        }
    }
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

void Store::SaveLocations() const {
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
    WriteIni(dir / "locations.ini", "# Dialing locations, kept by the engine.\n", sections);
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
             "# The user's saved dial list orderings: [POP location|destination], [ISP "
             "destination].\n",
             sections);
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
