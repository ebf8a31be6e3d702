#include "platform/registry/registry.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/registry/hive_file.h"

namespace kw::registry {
namespace {

constexpr int kUser = 0;
constexpr int kMachine = 1;
constexpr std::uintptr_t kFirstHandle = 0x1000;

struct OpenKey {
    int hive = kUser;
    std::string path;
    REGSAM access = 0;
};

std::string HomeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home)
        return home;
    if (const passwd* pw = ::getpwuid(::getuid()); pw && pw->pw_dir)
        return pw->pw_dir;
    return "/tmp";
}

// An XDG base folder: the variable when it holds an absolute path, otherwise the default.
std::string XdgFolder(const char* variable, const char* fallbackUnderHome) {
    if (const char* v = std::getenv(variable); v && v[0] == '/')
        return v;
    return HomeFolder() + "/" + fallbackUnderHome;
}

REGSAM EffectiveAccess(REGSAM requested) {
    REGSAM access = requested & ~(KEY_WOW64_64KEY | KEY_WOW64_32KEY);
    if (requested & (GENERIC_ALL | MAXIMUM_ALLOWED))
        access |= KEY_ALL_ACCESS;
    if (requested & GENERIC_READ)
        access |= KEY_READ;
    if (requested & GENERIC_WRITE)
        access |= KEY_WRITE;
    return access;
}

bool IsUtf8(std::string_view s) {
    return text::EscapeString(s, "").has_value();
}

// Splits and checks a sub-key path: no leading separator, no empty component; one trailing
// separator is tolerated, as the system does.
std::optional<std::string> NormalizeSubKey(const char* subKey, LONG& status) {
    std::string_view s = subKey ? subKey : "";
    if (!s.empty() && s.back() == '\\')
        s.remove_suffix(1);
    if (!s.empty() && (s.front() == '\\' || s.find("\\\\") != std::string_view::npos)) {
        status = ERROR_BAD_PATHNAME;
        return std::nullopt;
    }
    if (!IsUtf8(s)) {
        status = ERROR_INVALID_PARAMETER;
        return std::nullopt;
    }
    return std::string(s);
}

std::string Join(const std::string& base, const std::string& sub) {
    if (base.empty())
        return sub;
    if (sub.empty())
        return base;
    return base + "\\" + sub;
}

std::int64_t Now() {
    return WallClock();
}

class Registry {
  public:
    static Registry& Instance() {
        static Registry registry;
        return registry;
    }

    std::mutex mutex;

    void Configure(const RegistryConfig& config) {
        config_ = config;
        hives_[kUser].reset();
        hives_[kMachine].reset();
    }

    std::string PathOf(int hive) {
        const RegistryConfig defaults = DefaultConfig();
        if (hive == kUser)
            return config_.userHive.empty() ? defaults.userHive : config_.userHive;
        return config_.machineHive.empty() ? defaults.machineHive : config_.machineHive;
    }

    HiveFile& Hive(int hive) {
        auto& slot = hives_[hive];
        if (!slot) {
            slot = std::make_unique<HiveFile>(
                PathOf(hive), hive == kUser ? "\\\\User\\\\S-1-5-21-0-0-0-1000" : "\\\\Machine");
        }
        return *slot;
    }

    // The key a handle stands for; the predefined roots are always open with every right.
    std::optional<OpenKey> Resolve(HKEY key) const {
        if (key == HKEY_CURRENT_USER)
            return OpenKey{kUser, "", KEY_ALL_ACCESS};
        if (key == HKEY_LOCAL_MACHINE)
            return OpenKey{kMachine, "", KEY_ALL_ACCESS};
        const auto it = handles_.find(reinterpret_cast<std::uintptr_t>(key));
        if (it == handles_.end())
            return std::nullopt;
        return it->second;
    }

    HKEY NewHandle(OpenKey key) {
        std::uintptr_t value = next_;
        next_ += 4;
        handles_.emplace(value, std::move(key));
        return reinterpret_cast<HKEY>(value);
    }

    bool Close(HKEY key) { return handles_.erase(reinterpret_cast<std::uintptr_t>(key)) == 1; }

  private:
    RegistryConfig config_;
    std::unique_ptr<HiveFile> hives_[2];
    std::unordered_map<std::uintptr_t, OpenKey> handles_;
    std::uintptr_t next_ = kFirstHandle;
};

std::vector<std::uint8_t> Bytes(const BYTE* data, DWORD size) {
    if (!data)
        return {};
    return std::vector<std::uint8_t>(data, data + size);
}

}  // namespace

RegistryConfig DefaultConfig() {
    return RegistryConfig{
        XdgFolder("XDG_CONFIG_HOME", ".config") + "/Ostvarra/user.reg",
        XdgFolder("XDG_DATA_HOME", ".local/share") + "/Ostvarra/Kestrelway/system.reg"};
}

void Configure(const RegistryConfig& config) {
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    r.Configure(config);
}

namespace {
std::mutex& ClockMutex() {
    static std::mutex mutex;
    return mutex;
}
std::function<std::int64_t()>& ClockFunction() {
    static std::function<std::int64_t()> clock;
    return clock;
}
}  // namespace

namespace {
// The value is already stored under this name with this type and these bytes.
bool SameAsStored(const text::Document& doc, const std::string& path, const std::string& name,
                  const text::Value& value) {
    const text::Key* section = text::FindKey(doc, path);
    const text::Entry* entry = section ? text::FindValue(*section, name) : nullptr;
    const std::optional<text::Value> stored = entry ? text::ReadValue(*entry) : std::nullopt;
    return stored && stored->type == value.type && stored->data == value.data;
}
}  // namespace

void SetWallClock(std::function<std::int64_t()> clock) {
    std::lock_guard lock(ClockMutex());
    ClockFunction() = std::move(clock);
}

std::int64_t WallClock() {
    std::function<std::int64_t()> clock;
    {
        std::lock_guard lock(ClockMutex());
        clock = ClockFunction();
    }
    return clock ? clock() : static_cast<std::int64_t>(std::time(nullptr));
}

std::string HivePath(HKEY root) {
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    if (root == HKEY_CURRENT_USER)
        return r.PathOf(kUser);
    if (root == HKEY_LOCAL_MACHINE)
        return r.PathOf(kMachine);
    return "";
}

LONG RegOpenKeyExA(HKEY root, const char* subKey, DWORD /*options*/, REGSAM access, HKEY* result) {
    if (!result)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    const auto parent = r.Resolve(root);
    if (!parent)
        return ERROR_INVALID_HANDLE;
    LONG status = ERROR_SUCCESS;
    const auto sub = NormalizeSubKey(subKey, status);
    if (!sub)
        return status;
    std::string path = Join(parent->path, *sub);
    if (!text::KeyExists(r.Hive(parent->hive).Current(), path))
        return ERROR_FILE_NOT_FOUND;
    *result = r.NewHandle(OpenKey{parent->hive, std::move(path), EffectiveAccess(access)});
    return ERROR_SUCCESS;
}

LONG RegCreateKeyExA(HKEY root, const char* subKey, DWORD reserved, const char* /*keyClass*/,
                     DWORD /*options*/, REGSAM access, const SECURITY_ATTRIBUTES* /*security*/,
                     HKEY* result, DWORD* disposition) {
    if (!result || reserved != 0)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    const auto parent = r.Resolve(root);
    if (!parent)
        return ERROR_INVALID_HANDLE;
    LONG status = ERROR_SUCCESS;
    const auto sub = NormalizeSubKey(subKey, status);
    if (!sub)
        return status;
    std::string path = Join(parent->path, *sub);
    HiveFile& hive = r.Hive(parent->hive);

    bool created = false;
    if (!text::KeyExists(hive.Current(), path)) {
        if (!(parent->access & KEY_CREATE_SUB_KEY))
            return ERROR_ACCESS_DENIED;
        status = hive.Modify([&](text::Document& doc, bool& changed) -> std::int32_t {
            if (!text::KeyExists(doc, path)) {  // another process may have created it meanwhile
                text::EnsureKey(doc, path, Now(), &created);
                changed = created;
            }
            return ERROR_SUCCESS;
        });
        if (status != ERROR_SUCCESS)
            return status;
    }
    if (disposition)
        *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    *result = r.NewHandle(OpenKey{parent->hive, std::move(path), EffectiveAccess(access)});
    return ERROR_SUCCESS;
}

LONG RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                      DWORD* size) {
    if (reserved)
        return ERROR_INVALID_PARAMETER;
    if (data && !size)
        return ERROR_INVALID_PARAMETER;
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    const auto open = r.Resolve(key);
    if (!open)
        return ERROR_INVALID_HANDLE;
    if (!(open->access & KEY_QUERY_VALUE))
        return ERROR_ACCESS_DENIED;
    const text::Document& doc = r.Hive(open->hive).Current();
    if (!text::KeyExists(doc, open->path))
        return ERROR_KEY_DELETED;
    const text::Key* section = text::FindKey(doc, open->path);
    const text::Entry* entry = section ? text::FindValue(*section, name ? name : "") : nullptr;
    const std::optional<text::Value> value = entry ? text::ReadValue(*entry) : std::nullopt;
    if (!value)
        return ERROR_FILE_NOT_FOUND;

    const auto needed = static_cast<DWORD>(value->data.size());
    if (type)
        *type = value->type;
    if (!data) {
        if (size)
            *size = needed;
        return ERROR_SUCCESS;
    }
    if (*size < needed) {
        *size = needed;
        return ERROR_MORE_DATA;
    }
    std::copy(value->data.begin(), value->data.end(), data);
    *size = needed;
    return ERROR_SUCCESS;
}

LONG RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                    DWORD size) {
    if (reserved != 0 || (!data && size != 0))
        return ERROR_INVALID_PARAMETER;
    const std::string valueName = name ? name : "";
    if (!IsUtf8(valueName))
        return ERROR_INVALID_PARAMETER;
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    const auto open = r.Resolve(key);
    if (!open)
        return ERROR_INVALID_HANDLE;
    if (!(open->access & KEY_SET_VALUE))
        return ERROR_ACCESS_DENIED;
    return r.Hive(open->hive).Modify([&](text::Document& doc, bool& changed) -> std::int32_t {
        if (!text::KeyExists(doc, open->path))
            return ERROR_KEY_DELETED;
        text::Value value{type, Bytes(data, size)};
        if (SameAsStored(doc, open->path, valueName, value)) {
            return ERROR_SUCCESS;  // nothing to write: the file and its fsyncs are spared
        }
        const std::int64_t now = Now();
        text::SetValue(text::EnsureKey(doc, open->path, now), valueName, value, now);
        changed = true;
        return ERROR_SUCCESS;
    });
}

LONG RegDeleteValueA(HKEY key, const char* name) {
    const std::string valueName = name ? name : "";
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    const auto open = r.Resolve(key);
    if (!open)
        return ERROR_INVALID_HANDLE;
    if (!(open->access & KEY_SET_VALUE))
        return ERROR_ACCESS_DENIED;
    return r.Hive(open->hive).Modify([&](text::Document& doc, bool& changed) -> std::int32_t {
        if (!text::KeyExists(doc, open->path))
            return ERROR_KEY_DELETED;
        text::Key* section = text::FindKey(doc, open->path);
        if (!section || !text::DeleteValue(*section, valueName, Now())) {
            return ERROR_FILE_NOT_FOUND;
        }
        changed = true;
        return ERROR_SUCCESS;
    });
}

LONG RegDeleteKeyA(HKEY root, const char* subKey) {
    if (!subKey)
        return ERROR_INVALID_PARAMETER;
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    const auto parent = r.Resolve(root);
    if (!parent)
        return ERROR_INVALID_HANDLE;
    LONG status = ERROR_SUCCESS;
    const auto sub = NormalizeSubKey(subKey, status);
    if (!sub)
        return status;
    const std::string path = Join(parent->path, *sub);
    if (path.empty())
        return ERROR_ACCESS_DENIED;  // a hive's root stays
    return r.Hive(parent->hive).Modify([&](text::Document& doc, bool& changed) -> std::int32_t {
        if (!text::KeyExists(doc, path))
            return ERROR_FILE_NOT_FOUND;
        if (text::HasSubkeys(doc, path))
            return ERROR_ACCESS_DENIED;
        text::DeleteKey(doc, path, Now());
        changed = true;
        return ERROR_SUCCESS;
    });
}

LONG RegCloseKey(HKEY key) {
    if (key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE)
        return ERROR_SUCCESS;
    auto& r = Registry::Instance();
    std::lock_guard lock(r.mutex);
    return r.Close(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

}  // namespace kw::registry
