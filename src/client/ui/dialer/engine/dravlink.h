#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/automation/variant.h"

namespace kw::dialer {

using automation::Variant;

// Dispatch identifiers of the engine's operations. GetCountryList has none of its own here: the
// program reaches it by name, and the engine decides which id that name resolves to.
namespace dispid {
inline constexpr std::int32_t kGetPhoneList = 1;
inline constexpr std::int32_t kGetEntryList = 2;
inline constexpr std::int32_t kGetISPEntryProperty = 4;
inline constexpr std::int32_t kGetLocationList = 5;
inline constexpr std::int32_t kGetLocationProperty = 7;
inline constexpr std::int32_t kSetLocationProperty = 8;
inline constexpr std::int32_t kSavePOPList = 9;
inline constexpr std::int32_t kRefreshPOPList = 10;
inline constexpr std::int32_t kBuildDialList = 14;
inline constexpr std::int32_t kDisconnect = 17;
inline constexpr std::int32_t kConnect = 18;
inline constexpr std::int32_t kLogon = 20;
inline constexpr std::int32_t kGetVPNEntryProperty = 22;
inline constexpr std::int32_t kGetEntryType = 24;
inline constexpr std::int32_t kLogoff = 25;
inline constexpr std::int32_t kGetLinkSpeed = 27;
inline constexpr std::int32_t kLocationExists = 37;
inline constexpr std::int32_t kCreateLocation = 38;
inline constexpr std::int32_t kSaveLocation = 39;
inline constexpr std::int32_t kGetConnectionNames = 40;
inline constexpr std::int32_t kDeleteLocation = 41;
inline constexpr std::int32_t kSetISPLogin = 42;
inline constexpr std::int32_t kGetISPLogin = 43;
inline constexpr std::int32_t kSaveUser = 44;
inline constexpr std::int32_t kGetUser = 45;
inline constexpr std::int32_t kGetCallingCardList = 46;
inline constexpr std::int32_t kSetCallingCardNumber = 47;
inline constexpr std::int32_t kGetISPList = 48;
inline constexpr std::int32_t kSaveISPList = 49;
inline constexpr std::int32_t kRefreshISPList = 51;
inline constexpr std::int32_t kGetPolicySetting = 52;
inline constexpr std::int32_t kCancelFileTransfer = 55;
}  // namespace dispid

struct DispatchEntry {
    std::int32_t id;
    std::string_view name;
    int argumentCount;
};

// Every operation that has a fixed dispatch id, with the number of arguments it takes.
inline constexpr std::array<DispatchEntry, 32> kDispatchTable = {{
    {dispid::kGetPhoneList, "GetPhoneList", 1},
    {dispid::kGetEntryList, "GetEntryList", 1},
    {dispid::kGetISPEntryProperty, "GetISPEntryProperty", 3},
    {dispid::kGetLocationList, "GetLocationList", 1},
    {dispid::kGetLocationProperty, "GetLocationProperty", 3},
    {dispid::kSetLocationProperty, "SetLocationProperty", 3},
    {dispid::kSavePOPList, "SavePOPList", 3},
    {dispid::kRefreshPOPList, "RefreshPOPList", 2},
    {dispid::kBuildDialList, "BuildDialList", 2},
    {dispid::kDisconnect, "Disconnect", 1},
    {dispid::kConnect, "Connect", 2},
    {dispid::kLogon, "Logon", 3},
    {dispid::kGetVPNEntryProperty, "GetVPNEntryProperty", 3},
    {dispid::kGetEntryType, "GetEntryType", 2},
    {dispid::kLogoff, "Logoff", 0},
    {dispid::kGetLinkSpeed, "GetLinkSpeed", 1},
    {dispid::kLocationExists, "LocationExists", 1},
    {dispid::kCreateLocation, "CreateLocation", 1},
    {dispid::kSaveLocation, "SaveLocation", 1},
    {dispid::kGetConnectionNames, "GetConnectionNames", 2},
    {dispid::kDeleteLocation, "DeleteLocation", 1},
    {dispid::kSetISPLogin, "SetISPLogin", 4},
    {dispid::kGetISPLogin, "GetISPLogin", 3},
    {dispid::kSaveUser, "SaveUser", 3},
    {dispid::kGetUser, "GetUser", 3},
    {dispid::kGetCallingCardList, "GetCallingCardList", 1},
    {dispid::kSetCallingCardNumber, "SetCallingCardNumber", 2},
    {dispid::kGetISPList, "GetISPList", 2},
    {dispid::kSaveISPList, "SaveISPList", 2},
    {dispid::kRefreshISPList, "RefreshISPList", 1},
    {dispid::kGetPolicySetting, "GetPolicySetting", 3},
    {dispid::kCancelFileTransfer, "CancelFileTransfer", 0},
}};

// The entry of the table for an id or a name (names compare without regard to case, as
// automation resolves them); nullopt when the table has none.
std::optional<DispatchEntry> FindDispatchEntry(std::int32_t id);
std::optional<DispatchEntry> FindDispatchEntry(std::string_view name);

// The engine's event interface. The engine calls these on the user interface's thread and reads
// the by-reference arguments back when the handler returns, so a handler that asks the user holds
// the engine's caller until the answer is there.
class DravlinkEvents {
  public:
    virtual ~DravlinkEvents() = default;

    virtual void CHXferUpdate(Variant& first, Variant& transfer) = 0;
    virtual void ErrorEvent(std::string& message) = 0;
    virtual void GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) = 0;
    virtual void GetGenericISPList(std::string& message, Variant& list) = 0;
    virtual void GetUserInfo(std::string& prompt, Variant& choices, std::string& answer) = 0;
    virtual void GetUserInput(std::string& prompt, std::string& defaultText,
                              std::string& answer) = 0;
    virtual void GetUsernamePassword(std::string& prompt, std::string& user) = 0;
    virtual void GetUserOk(std::string& message) = 0;
    virtual void GetUserYesNo(std::string& question, bool& answer) = 0;
    virtual void GetUserNowLaterNever(std::string& question, std::string& answer) = 0;
    virtual void DravDebug(std::string& text) = 0;
    virtual void ProgressUpdate(std::int16_t code, std::string& text) = 0;
    virtual void StatusUpdate(std::string& text) = 0;
};

// The connection engine as the program sees it. Results are variants that the caller turns into
// a boolean or a long; out and in/out arguments are references the engine writes. Any operation
// may also fail with an automation::Failure carrying the engine's number.
class Dravlink : public automation::Object {
  public:
    ~Dravlink() override = default;

    virtual Variant GetPhoneList(Variant& list) = 0;
    virtual Variant GetEntryList(Variant& list) = 0;
    virtual Variant GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                        std::string& value) = 0;
    virtual Variant GetLocationList(Variant& list) = 0;
    virtual Variant GetLocationProperty(const std::string& location, const std::string& key,
                                        std::string& value) = 0;
    virtual Variant SetLocationProperty(const std::string& location, const std::string& key,
                                        const std::string& value) = 0;
    virtual Variant SavePOPList(const std::string& location, const std::string& destination,
                                Variant& list) = 0;
    // Destination first: the reverse of SavePOPList, as the engine takes it.
    virtual Variant RefreshPOPList(const std::string& destination, const std::string& location) = 0;
    virtual Variant BuildDialList(const std::string& location, const std::string& destination) = 0;
    virtual Variant Disconnect(std::int32_t& handle) = 0;
    virtual Variant Connect(const std::string& destination, bool option) = 0;
    virtual Variant Logon(std::string& user, std::string& password, const std::string& third) = 0;
    virtual Variant GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                        std::string& value) = 0;
    virtual Variant GetEntryType(const std::string& entryName, std::string& entryType) = 0;
    virtual Variant Logoff() = 0;
    virtual Variant GetLinkSpeed(const std::string& deviceName) = 0;
    // True when the name is still free: the opposite of what the name says.
    virtual Variant LocationExists(const std::string& location) = 0;
    virtual Variant CreateLocation(const std::string& location) = 0;
    virtual Variant SaveLocation(const std::string& location) = 0;
    virtual Variant GetConnectionNames(std::string& destination, std::string& deviceName) = 0;
    virtual Variant DeleteLocation(const std::string& location) = 0;
    virtual Variant SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                                const std::string& ispPassword) = 0;
    virtual Variant GetISPLogin(std::string& user, std::string& ispName, Variant& login) = 0;
    virtual Variant SaveUser(std::string& user, std::string& password,
                             const std::string& third) = 0;
    virtual Variant GetUser(std::string& user, std::string& password, std::string& third) = 0;
    virtual Variant GetCallingCardList(Variant& list) = 0;
    virtual Variant SetCallingCardNumber(std::string& cardId, const std::string& number) = 0;
    virtual Variant GetISPList(const std::string& destination, Variant& list) = 0;
    virtual Variant SaveISPList(const std::string& destination, Variant& list) = 0;
    virtual Variant RefreshISPList(const std::string& destination) = 0;
    virtual Variant GetPolicySetting(std::string& user, const std::string& key,
                                     std::string& value) = 0;
    virtual Variant CancelFileTransfer() = 0;

    // Late binding, as an automation client reaches a member by name. The names of the dispatch
    // table resolve to their ids; an engine adds its own names (GetCountryList) by overriding.
    // An unknown name fails with 438.
    virtual std::int32_t GetIDsOfNames(const std::string& name);
    // Calls a member by id with its arguments in declared order, each a variant by reference:
    // the engine writes out-arguments back into them. Ids of the table reach the operations
    // above; an unknown id fails with 438 and a wrong argument count with 450.
    virtual Variant Invoke(std::int32_t id, std::span<Variant> args);

    // The event sink; the engine holds a plain pointer, and the sink unadvises before it goes.
    virtual void Advise(DravlinkEvents* sink) { sink_ = sink; }
    virtual void Unadvise() { sink_ = nullptr; }
    DravlinkEvents* EventSink() const { return sink_; }

  private:
    DravlinkEvents* sink_ = nullptr;
};

// Resolves name on the engine and calls it: the way the program reaches GetCountryList.
Variant CallByName(Dravlink& engine, const std::string& name, std::span<Variant> args);

inline constexpr std::string_view kGetCountryList = "GetCountryList";
// GetCountryList(list: out variant), by name.
Variant GetCountryList(Dravlink& engine, Variant& list);

}  // namespace kw::dialer
