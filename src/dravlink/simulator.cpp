#include "dravlink/simulator.h"

#include <algorithm>
#include <charconv>

#include "client/ui/dialer/engine/engine_factory.h"
#include "dravlink/credentials.h"
#include "dravlink/engine_arrays.h"
#include "dravlink/secrets.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::Failure;
using kw::automation::SafeArray;

namespace {

constexpr int kNotLoggedOn = 1010;
constexpr int kCallInProgress = 1011;
constexpr int kStillDisconnecting = 1012;
constexpr int kBadFromNumber = 1020;
// The user's own data file cannot be used: damaged by hand, or a folder in its place.
constexpr int kDataUnusable = 1030;

// BuildDialList's own failure codes.
constexpr std::int32_t kUnknownLocation = 3;
constexpr std::int32_t kUnknownDestination = 4;

bool IsKnownLocationKey(const std::string& key) {
    return std::any_of(std::begin(kLocationKeys), std::end(kLocationKeys),
                       [&](const char* k) { return key == k; });
}

bool AllDigits(const std::string& s) {
    return !s.empty() &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

Simulator::Simulator(kw::forms::Platform& platform, Options options)
    : platform_(platform), options_(Resolved(std::move(options))), store_(OpenStore(options_)) {}

Simulator::~Simulator() {
    call_.reset();
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
    if (account->password != "*" &&
        store_.secrets->Reveal(password) != store_.secrets->Reveal(account->password)) {
        return Variant(false);
    }
    try {
        store_.UseLocationsOf(TrimBlanks(user));
    } catch (const DataError& e) {
        throw Failure(kDataUnusable,
                      std::string("Dravlink cannot read your locations: ") + e.what());
    } catch (const std::filesystem::filesystem_error& e) {
        throw Failure(kDataUnusable,
                      std::string("Dravlink cannot read your locations: ") + e.what());
    }
    loggedOnUser_ = TrimBlanks(user);
    pendingLocations_.clear();
    return Variant(true);
}

Variant Simulator::Logoff() {
    call_.reset();
    loggedOnUser_.reset();
    return Variant(true);
}

Variant Simulator::SaveUser(std::string& user, std::string& password, const std::string&) {
    if (TrimBlanks(user).empty()) {
        return Variant(false);
    }
    return Variant(WriteCredentials(*store_.secrets, user, store_.secrets->Reveal(password)));
}

Variant Simulator::GetUser(std::string& user, std::string& password, std::string& third) {
    auto stored = ReadCredentials(*store_.secrets);
    if (!stored) {
        return Variant(false);
    }
    user = stored->first;
    password = stored->second;
    third.clear();
    return Variant(true);
}

bool Simulator::Allowed(const std::string& key) const {
    const Account* account = store_.FindAccount(User());
    if (account == nullptr) {
        return false;
    }
    auto it = account->policies.find(key);
    if (it == account->policies.end()) {
        const Account* everyone = store_.FindAccount("*");
        return everyone == nullptr || everyone->policies.count(key) == 0 ||
               everyone->policies.at(key) != "0";
    }
    return it->second != "0";
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
        for (const auto& row : ComputeIspList(store_, User(), *d)) {
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
        for (const auto& row : ComputeDialList(store_, User(), *l, *d).rows) {
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
    if (l == nullptr || !IsKnownLocationKey(key) || !store_.LocationsWritable()) {
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
    if (!store_.SaveLocations()) {
        store_.locations.pop_back();  // not committed: the name stays free
        return Variant(false);
    }
    return Variant(true);
}

Variant Simulator::SaveLocation(const std::string& location) {
    RequireLogon();
    if (store_.FindLocation(location) == nullptr) {
        return Variant(false);
    }
    return Variant(store_.SaveLocations());
}

Variant Simulator::DeleteLocation(const std::string& location) {
    RequireLogon();
    const std::string name = TrimBlanks(location);
    auto it = std::find_if(store_.locations.begin(), store_.locations.end(),
                           [&](const Location& l) { return SameText(l.name, name); });
    if (it == store_.locations.end()) {
        return Variant(false);
    }
    const std::string gone = it->name;
    store_.locations.erase(it);
    // Every user's orderings from that place go with it.
    std::erase_if(store_.savedPops,
                  [&](const auto& saved) { return LocationOfKey(saved.first) == gone; });
    store_.SaveLocations();
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::GetCountryList(Variant& list) {
    RequireLogon();
    if (store_.countries.empty()) {
        return Variant(false);
    }
    list = CountryArray(store_.countries);
    return Variant(true);
}

// ---- calling cards -----------------------------------------------------------------------------

Variant Simulator::GetCallingCardList(Variant& list) {
    RequireLogon();
    if (store_.cards.empty()) {
        return Variant(false);
    }
    list = CardArray(store_.cards);
    return Variant(true);
}

Variant Simulator::SetCallingCardNumber(std::string& cardId, const std::string& number) {
    RequireLogon();
    std::string policy;
    std::string user = User();
    if (kw::automation::CBool(GetPolicySetting(user, "CCdialing", policy)) && policy == "0") {
        return Variant(false);
    }
    const std::string id = TrimBlanks(cardId);
    std::size_t position = 0;
    // Any run of digits may come: one too long for a number names no card.
    const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), position);
    if (!AllDigits(id) || error != std::errc() || end != id.data() + id.size() ||
        position >= store_.cards.size()) {
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
    dialListTimer_ = platform_.SetTimer(store_.settings.dialListDelayMs, [this, loc, dest] {
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
        DialList list = ComputeDialList(store_, User(), *l, *d);
        message = list.message;
        rows = DialListArray(list.rows);
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
    if (l == nullptr || d == nullptr || rows.empty() || !Allowed("POPordering")) {
        return Variant(false);
    }
    auto& saved = store_.savedPops[PopKey(User(), l->name, d->name)];
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
    store_.savedPops.erase(PopKey(User(), l->name, d->name));
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::GetISPList(const std::string& destination, Variant& list) {
    RequireLogon();
    const Destination* d = store_.FindDestination(destination);
    if (d == nullptr) {
        return Variant(std::int32_t{0});
    }
    const auto rows = ComputeIspList(store_, User(), *d);
    if (rows.empty()) {
        list = Variant();
        return Variant(std::int32_t{0});
    }
    list = IspListArray(rows);
    return Variant(static_cast<std::int32_t>(rows.size()));
}

Variant Simulator::SaveISPList(const std::string& destination, Variant& list) {
    RequireLogon();
    const Destination* d = store_.FindDestination(destination);
    const auto rows = Rows(list, 2);
    if (d == nullptr || rows.empty() || !Allowed("ISPordering")) {
        return Variant(false);
    }
    auto& saved = store_.savedIsps[IspKey(User(), d->name)];
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
    store_.savedIsps.erase(IspKey(User(), d->name));
    store_.SaveOrderings();
    return Variant(true);
}

Variant Simulator::SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                               const std::string& ispPassword) {
    RequireLogon();
    const Isp* isp = store_.FindIsp(ispName);
    if (isp == nullptr || !Allowed(kIspLoginPolicy)) {
        return Variant(false);
    }
    const std::string key = user + "|" + isp->name;
    const auto old = store_.ispLogins.find(key);
    try {
        const std::string reference =
            store_.secrets->Keep(store_.secrets->Reveal(ispPassword),
                                 old != store_.ispLogins.end() ? old->second.second : "");
        store_.ispLogins[key] = {ispUser, reference};
        store_.SaveIspLogins();
    } catch (const DataError&) {
        return Variant(false);
    }
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
    a.Set(1,
          Variant(it != store_.ispLogins.end() ? store_.secrets->Reveal(it->second.second) : ""));
    login = Variant(std::move(a));
    return Variant(true);
}

// ---- the call ---------------------------------------------------------------------------------

Variant Simulator::Connect(const std::string& destination, bool) {
    RequireLogon();
    if (call_ && call_->GoingDown()) {
        throw Failure(kStillDisconnecting, "The previous call is still being brought down.");
    }
    if (call_) {
        throw Failure(kCallInProgress, "A call is already in progress.");
    }
    const Destination* d = store_.FindDestination(destination);
    if (d == nullptr) {
        throw Failure(kw::automation::err::kInvalidCall,
                      "There is no destination called \"" + destination + "\".");
    }
    Location* l = store_.FindLocation(builtLocation_);
    if (l == nullptr && !store_.locations.empty()) {
        l = &store_.locations.front();
    }
    if (l == nullptr) {
        throw Failure(kBadFromNumber, "There is no location to dial from.");
    }
    CallPlan plan = PlanCall(store_, User(), *d, *l);
    plan.handle = nextHandle_++;
    plan.scenario = ScenarioFor(d->name);
    CallHost& host = *this;
    call_ = std::make_unique<CallRun>(host, std::move(plan));
    const std::int32_t handle = call_->Handle();
    call_->Start();
    return Variant(handle);
}

Variant Simulator::Disconnect(std::int32_t& handle) {
    if (!call_ || call_->Handle() != handle) {
        return Variant(false);
    }
    call_->HangUp();
    return Variant(true);
}

Variant Simulator::GetConnectionNames(std::string& destination, std::string& deviceName) {
    RequireLogon();
    if (!call_ || !call_->LinkUp()) {
        return Variant(false);
    }
    destination = call_->DestinationName();
    deviceName = call_->Device();
    return Variant(true);
}

Variant Simulator::GetLinkSpeed(const std::string& deviceName) {
    RequireLogon();
    if (call_ && SameText(deviceName, call_->Device()) && call_->LinkBps() > 0) {
        return Variant(static_cast<std::int32_t>(call_->LinkBps()));
    }
    if (SameText(deviceName, store_.settings.modem)) {
        return Variant(std::int32_t{33600});
    }
    if (SameText(deviceName, store_.settings.vpnDevice)) {
        return Variant(std::int32_t{kLanBps});
    }
    return Variant(std::int32_t{0});
}

Variant Simulator::CancelFileTransfer() {
    return Variant(call_ != nullptr && call_->CancelTransfer());
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
