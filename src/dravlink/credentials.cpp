#include "dravlink/credentials.h"

#include "dravlink/secrets.h"
#include "dravlink/text_files.h"
#include "platform/registry/registry.h"

namespace dravlink {

namespace reg = kw::registry;

namespace {

constexpr const char* kPrefix = "dv1:";
constexpr const char kKey[] = "Dravlink-Ostvarra";

int HexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

bool SetString(reg::HKEY key, const char* name, const std::string& value) {
    return reg::RegSetValueExA(key, name, 0, reg::REG_SZ,
                               reinterpret_cast<const reg::BYTE*>(value.c_str()),
                               static_cast<reg::DWORD>(value.size() + 1)) == reg::ERROR_SUCCESS;
}

std::optional<std::string> GetString(reg::HKEY key, const char* name) {
    reg::DWORD type = 0;
    reg::DWORD size = 0;
    if (reg::RegQueryValueExA(key, name, nullptr, &type, nullptr, &size) != reg::ERROR_SUCCESS ||
        type != reg::REG_SZ) {
        return std::nullopt;
    }
    std::string buffer(size, '\0');
    if (size > 0 && reg::RegQueryValueExA(key, name, nullptr, &type,
                                          reinterpret_cast<reg::BYTE*>(buffer.data()),
                                          &size) != reg::ERROR_SUCCESS) {
        return std::nullopt;
    }
    return std::string(buffer.c_str());
}

}  // namespace

namespace {

// What older engines wrote: the password XOR a key of the engine's, as hex.
bool IsOldPassword(const std::string& stored) {
    if (stored.rfind(kPrefix, 0) != 0 || (stored.size() - 4) % 2 != 0) {
        return false;
    }
    for (std::size_t i = 4; i < stored.size(); ++i) {
        if (HexDigit(stored[i]) < 0) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string DecodeOldPassword(const std::string& stored) {
    if (!IsOldPassword(stored)) {
        return stored;
    }
    std::string plain;
    for (std::size_t i = 4, n = 0; i + 1 < stored.size(); i += 2, ++n) {
        const int byte = HexDigit(stored[i]) * 16 + HexDigit(stored[i + 1]);
        plain += static_cast<char>(byte ^ kKey[n % (sizeof kKey - 1)]);
    }
    return plain;
}

bool WriteCredentials(Secrets& secrets, const std::string& user, const std::string& plainPassword) {
    reg::HKEY key = nullptr;
    if (reg::RegCreateKeyExA(reg::HKEY_CURRENT_USER, kCredentialsKey, 0, nullptr, 0,
                             reg::KEY_ALL_ACCESS, nullptr, &key, nullptr) != reg::ERROR_SUCCESS) {
        return false;
    }
    bool ok = false;
    try {
        // The same reference again: the client may hold it from an earlier read.
        const std::string reference =
            secrets.Keep(plainPassword, GetString(key, "Password").value_or(""));
        ok = SetString(key, "UserName", user) && SetString(key, "Password", reference);
    } catch (const DataError&) {
        ok = false;
    }
    reg::RegCloseKey(key);
    return ok;
}

std::optional<std::pair<std::string, std::string>> ReadCredentials(Secrets& secrets) {
    reg::HKEY key = nullptr;
    if (reg::RegOpenKeyExA(reg::HKEY_CURRENT_USER, kCredentialsKey, 0, reg::KEY_QUERY_VALUE,
                           &key) != reg::ERROR_SUCCESS) {
        return std::nullopt;
    }
    auto user = GetString(key, "UserName");
    auto password = GetString(key, "Password");
    reg::RegCloseKey(key);
    if (!user || user->empty()) {
        return std::nullopt;
    }
    const std::string plain = secrets.Reveal(password.value_or(""));
    if (Secrets::NeedsSealing(password.value_or(""))) {
        WriteCredentials(secrets, *user, plain);
    }
    return std::make_pair(*user, plain);
}

std::string ReadAlternateTunnelServer() {
    reg::HKEY key = nullptr;
    if (reg::RegOpenKeyExA(reg::HKEY_CURRENT_USER, kCredentialsKey, 0, reg::KEY_QUERY_VALUE,
                           &key) != reg::ERROR_SUCCESS) {
        return {};
    }
    auto server = GetString(key, "AlternateTunnelServer");
    reg::RegCloseKey(key);
    return server.value_or("");
}

}  // namespace dravlink
