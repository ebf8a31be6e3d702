#include "client/ui/dialer/engine/dravlink.h"

#include <algorithm>
#include <cctype>

#include "platform/automation/failure.h"

namespace kw::dialer {

using automation::Failure;
namespace err = automation::err;

namespace {

constexpr int kWrongArgumentCount = 450;

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

// A by-reference string argument: converted on the way in, written back on the way out, so a
// caller holding a variant sees what the engine put there.
class StringArg {
  public:
    explicit StringArg(Variant& slot) : slot_(slot), value_(automation::CStr(slot)) {}
    ~StringArg() { slot_ = Variant(value_); }
    StringArg(const StringArg&) = delete;
    StringArg& operator=(const StringArg&) = delete;
    std::string& operator*() { return value_; }

  private:
    Variant& slot_;
    std::string value_;
};

}  // namespace

std::optional<DispatchEntry> FindDispatchEntry(std::int32_t id) {
    for (const auto& entry : kDispatchTable) {
        if (entry.id == id) {
            return entry;
        }
    }
    return std::nullopt;
}

std::optional<DispatchEntry> FindDispatchEntry(std::string_view name) {
    for (const auto& entry : kDispatchTable) {
        if (SameName(entry.name, name)) {
            return entry;
        }
    }
    return std::nullopt;
}

std::int32_t Dravlink::GetIDsOfNames(const std::string& name) {
    if (auto entry = FindDispatchEntry(name)) {
        return entry->id;
    }
    throw Failure(err::kObjectDoesNotSupport);
}

Variant Dravlink::Invoke(std::int32_t id, std::span<Variant> a) {
    auto entry = FindDispatchEntry(id);
    if (!entry) {
        throw Failure(err::kObjectDoesNotSupport);
    }
    if (static_cast<int>(a.size()) != entry->argumentCount) {
        throw Failure(kWrongArgumentCount);
    }
    using automation::CBool;
    using automation::CLng;
    using automation::CStr;
    switch (id) {
        case dispid::kGetPhoneList:
            return GetPhoneList(a[0]);
        case dispid::kGetEntryList:
            return GetEntryList(a[0]);
        case dispid::kGetISPEntryProperty: {
            StringArg value(a[2]);
            return GetISPEntryProperty(CStr(a[0]), CStr(a[1]), *value);
        }
        case dispid::kGetLocationList:
            return GetLocationList(a[0]);
        case dispid::kGetLocationProperty: {
            StringArg value(a[2]);
            return GetLocationProperty(CStr(a[0]), CStr(a[1]), *value);
        }
        case dispid::kSetLocationProperty:
            return SetLocationProperty(CStr(a[0]), CStr(a[1]), CStr(a[2]));
        case dispid::kSavePOPList:
            return SavePOPList(CStr(a[0]), CStr(a[1]), a[2]);
        case dispid::kRefreshPOPList:
            return RefreshPOPList(CStr(a[0]), CStr(a[1]));
        case dispid::kBuildDialList:
            return BuildDialList(CStr(a[0]), CStr(a[1]));
        case dispid::kDisconnect: {
            std::int32_t handle = CLng(a[0]);
            Variant result = Disconnect(handle);
            a[0] = Variant(handle);
            return result;
        }
        case dispid::kConnect:
            return Connect(CStr(a[0]), CBool(a[1]));
        case dispid::kLogon: {
            StringArg user(a[0]);
            StringArg password(a[1]);
            return Logon(*user, *password, CStr(a[2]));
        }
        case dispid::kGetVPNEntryProperty: {
            StringArg value(a[2]);
            return GetVPNEntryProperty(CStr(a[0]), CStr(a[1]), *value);
        }
        case dispid::kGetEntryType: {
            StringArg type(a[1]);
            return GetEntryType(CStr(a[0]), *type);
        }
        case dispid::kLogoff:
            return Logoff();
        case dispid::kGetLinkSpeed:
            return GetLinkSpeed(CStr(a[0]));
        case dispid::kLocationExists:
            return LocationExists(CStr(a[0]));
        case dispid::kCreateLocation:
            return CreateLocation(CStr(a[0]));
        case dispid::kSaveLocation:
            return SaveLocation(CStr(a[0]));
        case dispid::kGetConnectionNames: {
            StringArg destination(a[0]);
            StringArg device(a[1]);
            return GetConnectionNames(*destination, *device);
        }
        case dispid::kDeleteLocation:
            return DeleteLocation(CStr(a[0]));
        case dispid::kSetISPLogin: {
            StringArg user(a[0]);
            StringArg isp(a[1]);
            return SetISPLogin(*user, *isp, CStr(a[2]), CStr(a[3]));
        }
        case dispid::kGetISPLogin: {
            StringArg user(a[0]);
            StringArg isp(a[1]);
            return GetISPLogin(*user, *isp, a[2]);
        }
        case dispid::kSaveUser: {
            StringArg user(a[0]);
            StringArg password(a[1]);
            return SaveUser(*user, *password, CStr(a[2]));
        }
        case dispid::kGetUser: {
            StringArg user(a[0]);
            StringArg password(a[1]);
            StringArg third(a[2]);
            return GetUser(*user, *password, *third);
        }
        case dispid::kGetCallingCardList:
            return GetCallingCardList(a[0]);
        case dispid::kSetCallingCardNumber: {
            StringArg card(a[0]);
            return SetCallingCardNumber(*card, CStr(a[1]));
        }
        case dispid::kGetISPList:
            return GetISPList(CStr(a[0]), a[1]);
        case dispid::kSaveISPList:
            return SaveISPList(CStr(a[0]), a[1]);
        case dispid::kRefreshISPList:
            return RefreshISPList(CStr(a[0]));
        case dispid::kGetPolicySetting: {
            StringArg user(a[0]);
            StringArg value(a[2]);
            return GetPolicySetting(*user, CStr(a[1]), *value);
        }
        case dispid::kCancelFileTransfer:
            return CancelFileTransfer();
        default:
            throw Failure(err::kObjectDoesNotSupport);
    }
}

Variant CallByName(Dravlink& engine, const std::string& name, std::span<Variant> args) {
    const std::int32_t id = engine.GetIDsOfNames(name);
    return engine.Invoke(id, args);
}

Variant GetCountryList(Dravlink& engine, Variant& list) {
    return CallByName(engine, std::string(kGetCountryList), std::span<Variant>(&list, 1));
}

}  // namespace kw::dialer
