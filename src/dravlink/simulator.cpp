#include "dravlink/simulator.h"

#include <algorithm>
#include <cstdlib>

#include "client/ui/dialer/engine/engine_factory.h"
#include "dravlink/credentials.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

#ifndef KW_DRAVLINK_SAMPLE_DIR
#define KW_DRAVLINK_SAMPLE_DIR "assets/dravlink"
#endif

namespace dravlink {

namespace fs = std::filesystem;
using kw::automation::CStr;
using kw::automation::Failure;
using kw::automation::SafeArray;

namespace {

constexpr int kNotLoggedOn = 1010;
constexpr int kBadFromNumber = 1020;

// BuildDialList's own failure codes.
constexpr std::int32_t kUnknownLocation = 3;
constexpr std::int32_t kUnknownDestination = 4;

constexpr const char* kAllScenarios[] = {scenario::kNormal,         scenario::kBusy,
                                         scenario::kIspPassword,    scenario::kTunnelUnreachable,
                                         scenario::kNoNumbers,      scenario::kInvalidNumber,
                                         scenario::kMotd,           scenario::kQuestion,
                                         scenario::kChoice,         scenario::kInput,
                                         scenario::kNewCredentials, scenario::kCallHome};

Variant NameList(const std::vector<std::string>& names) {
    if (names.empty()) {
        return Variant();
    }
    auto a = SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        a.Set(static_cast<std::int32_t>(i), Variant(names[i]));
    }
    return Variant(std::move(a));
}

bool IsKnownLocationKey(const std::string& key) {
    return std::any_of(std::begin(kLocationKeys), std::end(kLocationKeys),
                       [&](const char* k) { return key == k; });
}

bool AllDigits(const std::string& s) {
    return !s.empty() &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Reads the rows of a two-dimensional array the client sends back; empty when it holds none.
std::vector<std::vector<std::string>> Rows(const Variant& list, int fields) {
    std::vector<std::vector<std::string>> rows;
    if (!list.IsArray() || list.ToArray().Dims() != 2) {
        return rows;
    }
    const SafeArray& a = list.ToArray();
    if (a.UBound(2) - a.LBound(2) + 1 < fields) {
        return rows;
    }
    for (std::int32_t r = a.LBound(1); r <= a.UBound(1); ++r) {
        std::vector<std::string> row;
        for (int f = 0; f < fields; ++f) {
            row.push_back(CStr(a.Get(r, a.LBound(2) + f)));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace

bool IsScenario(const std::string& name) {
    return std::any_of(std::begin(kAllScenarios), std::end(kAllScenarios),
                       [&](const char* s) { return name == s; });
}

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

Simulator::Simulator(kw::forms::Platform& platform, Options options)
    : platform_(platform), options_(std::move(options)) {
    if (options_.dataDir.empty()) {
        options_.dataDir = DefaultDataDir();
    }
    if (options_.sampleDir.empty()) {
        options_.sampleDir = DefaultSampleDir();
    }
    if (!options_.scenario.empty() && !IsScenario(options_.scenario)) {
        throw Failure(kw::automation::err::kInvalidPropertyValue,
                      "Dravlink: there is no scenario called \"" + options_.scenario + "\"");
    }
    try {
        Store::Seed(options_.dataDir, options_.sampleDir);
        store_ = Store::Load(options_.dataDir);
    } catch (const DataError& e) {
        throw Failure(kw::automation::err::kCantCreateObject,
                      std::string("Dravlink cannot start: ") + e.what());
    } catch (const fs::filesystem_error& e) {
        throw Failure(kw::automation::err::kCantCreateObject,
                      std::string("Dravlink cannot start: ") + e.what());
    }
    if (!store_.settings.scenario.empty() && !IsScenario(store_.settings.scenario)) {
        throw Failure(kw::automation::err::kCantCreateObject,
                      "Dravlink cannot start: engine.ini names the unknown scenario \"" +
                          store_.settings.scenario + "\"");
    }
    for (const auto& d : store_.destinations) {
        if (!d.scenario.empty() && !IsScenario(d.scenario)) {
            throw Failure(kw::automation::err::kCantCreateObject,
                          "Dravlink cannot start: phonebook.ini gives [" + d.name +
                              "] the unknown scenario \"" + d.scenario + "\"");
        }
    }
}

Simulator::~Simulator() {
    ++life_->serial;
    KillTimer(stepTimer_);
    KillTimer(statsTimer_);
    KillTimer(transferTimer_);
    KillTimer(dialListTimer_);
}

void Simulator::KillTimer(kw::forms::TimerId& id) {
    if (id != 0) {
        platform_.KillTimer(id);
        id = 0;
    }
}

void Simulator::RequireLogon() const {
    if (!loggedOnUser_) {
        throw Failure(kNotLoggedOn, "Please log in");
    }
}

std::string Simulator::ScenarioFor(const std::string& destination) {
    if (!options_.scenario.empty()) {
        return options_.scenario;
    }
    if (!store_.settings.scenario.empty()) {
        return store_.settings.scenario;
    }
    if (const Destination* d = store_.FindDestination(destination); d && !d->scenario.empty()) {
        return d->scenario;
    }
    return scenario::kNormal;
}

Location* Simulator::AnyLocation(const std::string& name) {
    if (Location* l = store_.FindLocation(name)) {
        return l;
    }
    for (auto& [key, l] : pendingLocations_) {
        if (SameText(key, TrimBlanks(name))) {
            return &l;
        }
    }
    return nullptr;
}

// ---- users ----------------------------------------------------------------------------------

Variant Simulator::Logon(std::string& user, std::string& password, const std::string&) {
    const Account* account = store_.FindAccount(TrimBlanks(user));
    if (account == nullptr || TrimBlanks(user).empty()) {
        return Variant(false);
    }
    if (account->password != "*" && DecodePassword(password) != DecodePassword(account->password)) {
        return Variant(false);
    }
    loggedOnUser_ = TrimBlanks(user);
    return Variant(true);
}

Variant Simulator::Logoff() {
    AbortCall();
    loggedOnUser_.reset();
    return Variant(true);
}

Variant Simulator::SaveUser(std::string& user, std::string& password, const std::string&) {
    if (TrimBlanks(user).empty()) {
        return Variant(false);
    }
    return Variant(WriteCredentials(user, DecodePassword(password)));
}

Variant Simulator::GetUser(std::string& user, std::string& password, std::string& third) {
    auto stored = ReadCredentials();
    if (!stored) {
        return Variant(false);
    }
    user = stored->first;
    password = stored->second;
    third.clear();
    return Variant(true);
}

Variant Simulator::GetPolicySetting(std::string& user, const std::string& key, std::string& value) {
    RequireLogon();
    if (std::none_of(std::begin(kPolicyKeys), std::end(kPolicyKeys),
                     [&](const char* k) { return key == k; })) {
        return Variant(false);
    }
    const Account* account = store_.FindAccount(user);
    if (account == nullptr) {
        return Variant(false);
    }
    auto it = account->policies.find(key);
    if (it == account->policies.end()) {
        const Account* everyone = store_.FindAccount("*");
        value = everyone && everyone->policies.count(key) ? everyone->policies.at(key) : "1";
    } else {
        value = it->second;
    }
    return Variant(true);
}

// ---- phone book ------------------------------------------------------------------------------

Variant Simulator::GetPhoneList(Variant& list) {
    RequireLogon();
    std::vector<std::string> names;
    for (const auto& d : store_.destinations) {
        names.push_back(d.name);
    }
    list = NameList(names);
    return Variant(!names.empty());
}

Variant Simulator::GetEntryType(const std::string& entryName, std::string& entryType) {
    RequireLogon();
    const Destination* d = store_.FindDestination(entryName);
    if (d == nullptr) {
        return Variant(false);
    }
    selectedEntry_ = d->name;
    entryType = d->type;
    return Variant(true);
}

Variant Simulator::GetEntryList(Variant& list) {
    RequireLogon();
    const Destination* d = store_.FindDestination(selectedEntry_);
    if (d == nullptr) {
        return Variant(false);
    }
    std::vector<std::string> entries;
    if (d->type != "VPN") {
        for (const auto& row : ComputeIspList(store_, *d)) {
            entries.push_back(row.isp->name);
        }
    }
    if (d->type != "ISP") {
        entries.push_back(d->tunnelServer);
    }
    list = NameList(entries);
    return Variant(true);
}

Variant Simulator::GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                       std::string& value) {
    RequireLogon();
    const Destination* d = store_.FindDestination(entryName);
    if (d == nullptr || d->type == "VPN" || key != "LocalPhoneNumber") {
        return Variant(false);
    }
    value = d->localPhoneNumber;
    if (Location* l = store_.FindLocation(builtLocation_)) {
        for (const auto& row : ComputeDialList(store_, *l, *d).rows) {
            if (row.enabled) {
                value = row.pop->number;
                break;
            }
        }
    }
    return Variant(true);
}

Variant Simulator::GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                       std::string& value) {
    RequireLogon();
    const Destination* d = store_.FindDestination(entryName);
    if (d == nullptr || d->type == "ISP" || key != "DeviceName") {
        return Variant(false);
    }
    value = d->deviceName;
    return Variant(true);
}

// ---- locations -------------------------------------------------------------------------------

Variant Simulator::GetLocationList(Variant& list) {
    RequireLogon();
    std::vector<std::string> names;
    for (const auto& l : store_.locations) {
        names.push_back(l.name);
    }
    list = NameList(names);
    return Variant(!names.empty());
}

Variant Simulator::GetLocationProperty(const std::string& location, const std::string& key,
                                       std::string& value) {
    RequireLogon();
    const Location* l = AnyLocation(location);
    if (l == nullptr || !IsKnownLocationKey(key)) {
        return Variant(false);
    }
    value = l->Get(key);
    return Variant(true);
}

Variant Simulator::SetLocationProperty(const std::string& location, const std::string& key,
                                       const std::string& value) {
    RequireLogon();
    Location* l = AnyLocation(location);
    if (l == nullptr || !IsKnownLocationKey(key)) {
        return Variant(false);
    }
    if (key == "CountryCode" && !AllDigits(value)) {
        return Variant(false);
    }
    if ((key == "ManualDial" || key == "TunnelOverLAN" || key == "ConfirmDialString") &&
        value != "0" && value != "1") {
        return Variant(false);
    }
    l->properties[key] = value;
    return Variant(true);
}

Variant Simulator::LocationExists(const std::string& location) {
    RequireLogon();
    const std::string name = TrimBlanks(location);
    if (name.empty() || store_.FindLocation(name) != nullptr) {
        return Variant(false);
    }
    // Accepted: the name is held until CreateLocation commits it.
    pendingLocations_[name] = Location{name, {}};
    return Variant(true);
}

Variant Simulator::CreateLocation(const std::string& location) {
    RequireLogon();
    const std::string name = TrimBlanks(location);
    auto it = std::find_if(pendingLocations_.begin(), pendingLocations_.end(),
                           [&](const auto& p) { return SameText(p.first, name); });
    if (it == pendingLocations_.end() || store_.FindLocation(name) != nullptr) {
        return Variant(false);
    }
    store_.locations.push_back(std::move(it->second));
    pendingLocations_.erase(it);
    store_.SaveLocations();
    return Variant(true);
}

Variant Simulator::SaveLocation(const std::string& location) {
    RequireLogon();
    if (store_.FindLocation(location) == nullptr) {
        return Variant(false);
    }
    store_.SaveLocations();
    return Variant(true);
}

Variant Simulator::DeleteLocation(const std::string& location) {
    RequireLogon();
    const std::string name = TrimBlanks(location);
    auto it = std::find_if(store_.locations.begin(), store_.locations.end(),
                           [&](const Location& l) { return SameText(l.name, name); });
    if (it == store_.locations.end()) {
        return Variant(false);
    }
    const std::string prefix = it->name + "|";
    store_.locations.erase(it);
    for (auto saved = store_.savedPops.begin(); saved != store_.savedPops.end();) {
        saved =
            saved->first.rfind(prefix, 0) == 0 ? store_.savedPops.erase(saved) : std::next(saved);
    }
    store_.SaveLocations();
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::GetCountryList(Variant& list) {
    RequireLogon();
    if (store_.countries.empty()) {
        return Variant(false);
    }
    auto a = SafeArray::OneDim(0, static_cast<std::int32_t>(store_.countries.size() * 5) - 1);
    std::int32_t i = 0;
    for (const auto& c : store_.countries) {
        a.Set(i++, Variant(c.name));
        a.Set(i++, Variant(static_cast<float>(c.code)));
        a.Set(i++, Variant(c.letterCode));
        a.Set(i++, Variant(c.localRadius));
        a.Set(i++, Variant(c.enable));
    }
    list = Variant(std::move(a));
    return Variant(true);
}

// ---- calling cards -----------------------------------------------------------------------------

Variant Simulator::GetCallingCardList(Variant& list) {
    RequireLogon();
    if (store_.cards.empty()) {
        return Variant(false);
    }
    const auto n = static_cast<std::int32_t>(store_.cards.size());
    auto a = SafeArray::TwoDim(0, n - 1, 0, 5);
    for (std::int32_t r = 0; r < n; ++r) {
        const auto& c = store_.cards[static_cast<std::size_t>(r)];
        a.Set(r, 0, Variant(static_cast<std::int16_t>(r)));
        a.Set(r, 1, Variant(static_cast<std::int16_t>(c.id)));
        a.Set(r, 2, Variant(c.number));
        a.Set(r, 3, Variant(c.name));
        a.Set(r, 4, Variant(c.longDistanceRule));
        a.Set(r, 5, Variant(c.sameAreaRule));
    }
    list = Variant(std::move(a));
    return Variant(true);
}

Variant Simulator::SetCallingCardNumber(std::string& cardId, const std::string& number) {
    RequireLogon();
    std::string policy;
    std::string user = User();
    if (kw::automation::CBool(GetPolicySetting(user, "CCdialing", policy)) && policy == "0") {
        return Variant(false);
    }
    if (!AllDigits(TrimBlanks(cardId))) {
        return Variant(false);
    }
    const auto position = static_cast<std::size_t>(std::stoul(TrimBlanks(cardId)));
    if (position >= store_.cards.size()) {
        return Variant(false);
    }
    store_.cards[position].number = number;
    store_.SaveCards();
    return Variant(true);
}

// ---- dial lists --------------------------------------------------------------------------------

Variant Simulator::BuildDialList(const std::string& location, const std::string& destination) {
    RequireLogon();
    Location* l = store_.FindLocation(location);
    if (l == nullptr) {
        return Variant(kUnknownLocation);
    }
    const Destination* d = store_.FindDestination(destination);
    if (d == nullptr) {
        return Variant(kUnknownDestination);
    }
    if (l->Get("TunnelOverLAN") != "1" && l->Get("CountryCode") == "1" &&
        (l->Get("AreaCode").size() != 3 || !AllDigits(l->Get("AreaCode")))) {
        throw Failure(kBadFromNumber,
                      "The location \"" + l->name + "\" has no valid area code to dial from.");
    }
    builtLocation_ = l->name;
    builtDestination_ = d->name;
    // The answer comes as an event, a moment later, as the engine computes it.
    KillTimer(dialListTimer_);
    const std::string loc = l->name;
    const std::string dest = d->name;
    dialListTimer_ = platform_.SetTimer(250, [this, loc, dest] {
        KillTimer(dialListTimer_);
        DeliverDialList(loc, dest);
    });
    return Variant(std::int32_t{0});
}

void Simulator::DeliverDialList(std::string location, std::string destination) {
    Location* l = store_.FindLocation(location);
    const Destination* d = store_.FindDestination(destination);
    Variant rows;
    std::string message;
    if (l != nullptr && d != nullptr) {
        DialList list = ComputeDialList(store_, *l, *d);
        message = list.message;
        if (!list.rows.empty()) {
            const auto n = static_cast<std::int32_t>(list.rows.size());
            auto a = SafeArray::TwoDim(0, n - 1, 0, 7);
            for (std::int32_t r = 0; r < n; ++r) {
                const PopRow& row = list.rows[static_cast<std::size_t>(r)];
                a.Set(r, 0, Variant(std::to_string(row.pop->index)));
                a.Set(r, 1, Variant(row.pop->number));
                a.Set(r, 2, Variant(row.pop->isp));
                a.Set(r, 3, Variant(row.pop->city));
                a.Set(r, 4, Variant(row.pop->state));
                a.Set(r, 5, Variant(row.pop->modem));
                a.Set(r, 6, Variant(row.enabled ? "1" : "0"));
                a.Set(r, 7, Variant(std::to_string(row.weight)));
            }
            rows = Variant(std::move(a));
        }
    }
    if (auto* sink = EventSink()) {
        sink->GetGenericISPList(message, rows);
    }
}

Variant Simulator::SavePOPList(const std::string& location, const std::string& destination,
                               Variant& list) {
    RequireLogon();
    Location* l = store_.FindLocation(location);
    const Destination* d = store_.FindDestination(destination);
    const auto rows = Rows(list, 4);
    if (l == nullptr || d == nullptr || rows.empty()) {
        return Variant(false);
    }
    auto& saved = store_.savedPops[PopKey(l->name, d->name)];
    saved.clear();
    for (const auto& r : rows) {
        saved.push_back(SavedPop{r[0], r[1], r[3] == "1"});
    }
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::RefreshPOPList(const std::string& destination, const std::string& location) {
    RequireLogon();
    Location* l = store_.FindLocation(location);
    const Destination* d = store_.FindDestination(destination);
    if (l == nullptr || d == nullptr) {
        return Variant(false);
    }
    store_.savedPops.erase(PopKey(l->name, d->name));
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::GetISPList(const std::string& destination, Variant& list) {
    RequireLogon();
    const Destination* d = store_.FindDestination(destination);
    if (d == nullptr) {
        return Variant(std::int32_t{0});
    }
    const auto rows = ComputeIspList(store_, *d);
    if (rows.empty()) {
        list = Variant();
        return Variant(std::int32_t{0});
    }
    const auto n = static_cast<std::int32_t>(rows.size());
    auto a = SafeArray::TwoDim(0, n - 1, 0, 5);
    for (std::int32_t r = 0; r < n; ++r) {
        const IspRow& row = rows[static_cast<std::size_t>(r)];
        a.Set(r, 0, Variant(row.isp->name));
        a.Set(r, 1, Variant(row.isp->helpNumber));
        a.Set(r, 2, Variant(row.isp->website));
        a.Set(r, 3, Variant(row.enabled ? "1" : "0"));
        a.Set(r, 4, Variant(std::to_string(row.position)));
        a.Set(r, 5, Variant(static_cast<std::int16_t>(row.isp->weight)));
    }
    list = Variant(std::move(a));
    return Variant(n);
}

Variant Simulator::SaveISPList(const std::string& destination, Variant& list) {
    RequireLogon();
    const Destination* d = store_.FindDestination(destination);
    const auto rows = Rows(list, 2);
    if (d == nullptr || rows.empty()) {
        return Variant(false);
    }
    auto& saved = store_.savedIsps[d->name];
    saved.clear();
    for (const auto& r : rows) {
        saved.push_back(SavedIsp{r[0], r[1] == "1"});
    }
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::RefreshISPList(const std::string& destination) {
    RequireLogon();
    const Destination* d = store_.FindDestination(destination);
    if (d == nullptr) {
        return Variant(false);
    }
    store_.savedIsps.erase(d->name);
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                               const std::string& ispPassword) {
    RequireLogon();
    const Isp* isp = store_.FindIsp(ispName);
    if (isp == nullptr) {
        return Variant(false);
    }
    store_.ispLogins[user + "|" + isp->name] = {ispUser, EncodePassword(ispPassword)};
    store_.SaveIspLogins();
    return Variant(true);
}

Variant Simulator::GetISPLogin(std::string& user, std::string& ispName, Variant& login) {
    RequireLogon();
    const Isp* isp = store_.FindIsp(ispName);
    if (isp == nullptr) {
        return Variant(false);
    }
    auto a = SafeArray::OneDim(0, 1);
    auto it = store_.ispLogins.find(user + "|" + isp->name);
    a.Set(0, Variant(it != store_.ispLogins.end() ? it->second.first : user));
    a.Set(1, Variant(it != store_.ispLogins.end() ? DecodePassword(it->second.second) : ""));
    login = Variant(std::move(a));
    return Variant(true);
}

// ---- late binding ------------------------------------------------------------------------------

std::int32_t Simulator::GetIDsOfNames(const std::string& name) {
    if (SameText(name, std::string(kw::dialer::kGetCountryList))) {
        return kGetCountryListId;
    }
    return Dravlink::GetIDsOfNames(name);
}

Variant Simulator::Invoke(std::int32_t id, std::span<Variant> args) {
    if (id == kGetCountryListId) {
        if (args.size() != 1) {
            throw Failure(450);
        }
        return GetCountryList(args[0]);
    }
    return Dravlink::Invoke(id, args);
}

void RegisterSimulator() {
    kw::dialer::EngineFactory::Register(kSimulatorName,
                                        [](const kw::dialer::EngineContext& context) {
                                            return std::make_shared<Simulator>(context.platform);
                                        });
}

}  // namespace dravlink
