#include "dravlink/store_loaders.h"

#include <algorithm>
#include <charconv>

namespace dravlink {

namespace fs = std::filesystem;

namespace {

int ParseInt(const fs::path& file, int line, const std::string& text, const std::string& what) {
    int value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end) {
        throw DataError(file, line,
                        what + " must be a whole number, found \"" + Excerpt(text) + "\"");
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
    throw DataError(file, line, what + " must be 1 or 0, found \"" + Excerpt(text) + "\"");
}

bool HasIsp(const std::vector<Isp>& isps, const std::string& name) {
    return std::any_of(isps.begin(), isps.end(),
                       [&](const Isp& isp) { return SameText(isp.name, name); });
}

// The policy key an accounts.ini entry names, as the engine spells it; nullptr for none.
const char* PolicyKey(const std::string& key) {
    for (const char* known : kPolicyKeys) {
        if (SameText(key, known)) {
            return known;
        }
    }
    return SameText(key, kIspLoginPolicy) ? kIspLoginPolicy : nullptr;
}

Account ReadAccount(const IniFile& file, const IniSection& section) {
    Account a{section.name, section.Get("Password", "*"), {}};
    for (const auto& entry : section.entries) {
        if (SameText(entry.key, "Password")) {
            continue;
        }
        const char* key = PolicyKey(entry.key);
        if (key == nullptr) {
            throw DataError(file.path, entry.line,
                            "\"" + entry.key + "\" is neither Password nor a policy key");
        }
        // Every spelling of a key counts; the last one written wins.
        a.policies[key] = entry.value;
    }
    return a;
}

Pop ReadPop(const TableFile& file, const TableRow& row, const std::vector<Isp>& isps, int index) {
    const auto& f = row.fields;
    if (!HasIsp(isps, f[0])) {
        throw DataError(file.path, row.line, "the ISP \"" + f[0] + "\" is not in isps.txt");
    }
    Pop p;
    p.index = index;
    p.isp = f[0];
    p.countryCode = ParseInt(file.path, row.line, f[1], "the country code");
    p.areaCode = f[2];
    p.number = f[3];
    p.city = f[4];
    p.state = f[5];
    p.modem = f[6];
    p.cost = ParseInt(file.path, row.line, f[7], "the cost");
    p.enabled = ParseFlag(file.path, row.line, f[8], "enabled");
    if (p.number.empty()) {
        throw DataError(file.path, row.line, "a POP needs a telephone number");
    }
    return p;
}

Destination ReadDestination(const IniFile& file, const IniSection& section,
                            const std::vector<Isp>& isps, const std::string& defaultDevice) {
    Destination d;
    d.name = section.name;
    d.type = section.Get("Type", "Both");
    if (d.type != "ISP" && d.type != "VPN" && d.type != "Both") {
        throw DataError(
            file.path, section.line,
            "Type of [" + d.name + "] must be ISP, VPN or Both, found \"" + Excerpt(d.type) + "\"");
    }
    for (const auto& isp : SplitList(section.Get("ISPs"), ',')) {
        if (isp.empty()) {
            continue;
        }
        if (!HasIsp(isps, isp)) {
            throw DataError(
                file.path, section.line,
                "[" + d.name + "] names the ISP \"" + isp + "\", which is not in isps.txt");
        }
        d.isps.push_back(isp);
    }
    d.tunnelServer = section.Get("TunnelServer");
    d.deviceName = section.Get("DeviceName", defaultDevice);
    d.localPhoneNumber = section.Get("LocalPhoneNumber");
    d.scenario = section.Get("Scenario");
    return d;
}

Location ReadLocation(const IniFile& file, const IniSection& section) {
    Location l{section.name, {}};
    for (const auto& entry : section.entries) {
        const auto known = std::find_if(std::begin(kLocationKeys), std::end(kLocationKeys),
                                        [&](const char* key) { return entry.key == key; });
        if (known == std::end(kLocationKeys)) {
            throw DataError(file.path, entry.line,
                            "\"" + entry.key + "\" is not a key of a location");
        }
        l.properties[*known] = entry.value;
    }
    if (!l.Get("CountryCode").empty()) {
        ParseInt(file.path, section.line, l.Get("CountryCode"), "CountryCode");
    }
    return l;
}

void ReadOrdering(const IniFile& file, const IniSection& section, Orderings& orderings) {
    const bool pop = section.name.rfind("POP ", 0) == 0;
    const bool isp = section.name.rfind("ISP ", 0) == 0;
    if (!pop && !isp) {
        throw DataError(file.path, section.line, "an ordering section starts with POP or ISP");
    }
    const std::string key = section.name.substr(4);
    for (const auto& entry : section.entries) {
        auto f = SplitList(entry.value, '|');
        if (pop && f.size() == 3) {
            orderings.pops[key].push_back(
                SavedPop{f[0], f[1], ParseFlag(file.path, entry.line, f[2], "enabled")});
        } else if (isp && f.size() == 2) {
            orderings.isps[key].push_back(
                SavedIsp{f[0], ParseFlag(file.path, entry.line, f[1], "enabled")});
        } else {
            throw DataError(file.path, entry.line,
                            pop ? "a POP row is \"number | ISP | enabled\""
                                : "an ISP row is \"name | enabled\"");
        }
    }
}

}  // namespace

void ReadDialListDelay(const fs::path& file, const IniSection& section, EngineSettings& settings) {
    for (const auto& entry : section.entries) {
        if (SameText(entry.key, "DialListDelay")) {
            settings.dialListDelayMs = ParseInt(file, entry.line, entry.value, "DialListDelay");
            if (settings.dialListDelayMs < 0) {
                throw DataError(file, entry.line, "DialListDelay must not be negative");
            }
        }
    }
}

namespace {

void ReadGeneratedPops(const fs::path& file, const IniSection& section, EngineSettings& settings) {
    for (const auto& entry : section.entries) {
        if (!SameText(entry.key, "GeneratedPOPs") || TrimBlanks(entry.value).empty()) {
            continue;
        }
        const auto f = SplitList(entry.value, '|');
        if (f.size() != 4) {
            throw DataError(file, entry.line,
                            "GeneratedPOPs is \"ISP | country code | area code | count\"");
        }
        auto& g = settings.generatedPops;
        g.isp = f[0];
        g.countryCode = ParseInt(file, entry.line, f[1], "the country code");
        g.areaCode = f[2];
        g.count = ParseInt(file, entry.line, f[3], "the count");
        if (g.count < 0) {
            throw DataError(file, entry.line, "GeneratedPOPs must not count below 0");
        }
    }
}

}  // namespace

EngineSettings LoadEngineSettings(const fs::path& file) {
    EngineSettings settings;
    for (const auto& section : ReadIni(file).sections) {
        if (SameText(section.name, "Engine")) {
            settings.scenario = section.Get("Scenario");
            settings.modem = section.Get("Modem", settings.modem);
            settings.vpnDevice = section.Get("VpnDevice", settings.vpnDevice);
            ReadDialListDelay(file, section, settings);
            ReadGeneratedPops(file, section, settings);
        }
    }
    return settings;
}

std::vector<Account> LoadAccounts(const fs::path& file) {
    const IniFile ini = ReadIni(file);
    std::vector<Account> accounts;
    for (const auto& section : ini.sections) {
        accounts.push_back(ReadAccount(ini, section));
    }
    return accounts;
}

std::vector<Isp> LoadIsps(const fs::path& file) {
    const TableFile table = ReadTable(file, 5);
    std::vector<Isp> isps;
    for (const auto& row : table.rows) {
        const auto& f = row.fields;
        isps.push_back(Isp{f[0], f[1], f[2], ParseFlag(table.path, row.line, f[3], "enabled"),
                           ParseInt(table.path, row.line, f[4], "the weight")});
    }
    return isps;
}

std::vector<Pop> LoadPops(const fs::path& file, const std::vector<Isp>& isps) {
    const TableFile table = ReadTable(file, 9);
    std::vector<Pop> pops;
    for (const auto& row : table.rows) {
        pops.push_back(ReadPop(table, row, isps, static_cast<int>(pops.size())));
    }
    return pops;
}

std::vector<Destination> LoadPhoneBook(const fs::path& file, const std::vector<Isp>& isps,
                                       const std::string& defaultDevice) {
    const IniFile ini = ReadIni(file);
    std::vector<Destination> destinations;
    for (const auto& section : ini.sections) {
        destinations.push_back(ReadDestination(ini, section, isps, defaultDevice));
    }
    return destinations;
}

std::vector<Location> LoadLocations(const fs::path& file) {
    const IniFile ini = ReadIni(file);
    std::vector<Location> locations;
    for (const auto& section : ini.sections) {
        locations.push_back(ReadLocation(ini, section));
    }
    return locations;
}

std::vector<Country> LoadCountries(const fs::path& file) {
    const TableFile table = ReadTable(file, 5);
    std::vector<Country> countries;
    for (const auto& row : table.rows) {
        const auto& f = row.fields;
        countries.push_back(
            Country{f[0], ParseInt(table.path, row.line, f[1], "the code"), f[2], f[3], f[4]});
    }
    // Without a country no location can be dialled from: the client would offer an empty list.
    if (countries.empty()) {
        throw DataError(file, table.lastLine, "the country table has no country in it");
    }
    return countries;
}

std::vector<CallingCard> LoadCallingCards(const fs::path& file) {
    const TableFile table = ReadTable(file, 5);
    std::vector<CallingCard> cards;
    for (const auto& row : table.rows) {
        const auto& f = row.fields;
        cards.push_back(CallingCard{ParseInt(table.path, row.line, f[0], "the card id"), f[1], f[2],
                                    f[3], f[4]});
    }
    return cards;
}

Orderings LoadOrderings(const fs::path& file) {
    Orderings orderings;
    if (!fs::exists(file)) {
        return orderings;
    }
    const IniFile ini = ReadIni(file);
    for (const auto& section : ini.sections) {
        ReadOrdering(ini, section, orderings);
    }
    return orderings;
}

std::map<std::string, std::pair<std::string, std::string>> LoadIspLogins(const fs::path& file) {
    std::map<std::string, std::pair<std::string, std::string>> logins;
    if (!fs::exists(file)) {
        return logins;
    }
    for (const auto& section : ReadIni(file).sections) {
        logins[section.name] = {section.Get("User"), section.Get("Password")};
    }
    return logins;
}

}  // namespace dravlink
