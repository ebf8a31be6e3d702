#include "client/ui/dialer/core/settings.h"

#include <algorithm>
#include <vector>

#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"
#include "platform/forms/platform.h"

namespace kw::dialer {

using automation::Failure;
using automation::SafeArray;
using automation::Variant;
using automation::VarType;
namespace err = automation::err;
using namespace registry;

namespace {

// A string value read the way the program always has: a buffer of one character less than the
// size, so the terminator is dropped. A size of 0 leaves no room for even that, and fails.
std::string ReadText(HKEY key, const std::string& name, DWORD size, LONG& status) {
    if (size == 0) {
        throw Failure(err::kInvalidCall);
    }
    std::vector<BYTE> buffer(size, 0);
    DWORD read = size;
    status = RegQueryValueExA(key, name.c_str(), nullptr, nullptr, buffer.data(), &read);
    return std::string(buffer.begin(), buffer.end() - 1);
}

std::int32_t ReadDword(HKEY key, const std::string& name, DWORD size, LONG& status) {
    std::vector<BYTE> buffer(std::max<DWORD>(size, 4), 0);
    DWORD read = size;
    status = RegQueryValueExA(key, name.c_str(), nullptr, nullptr, buffer.data(), &read);
    const std::uint32_t bits =
        static_cast<std::uint32_t>(buffer[0]) | static_cast<std::uint32_t>(buffer[1]) << 8 |
        static_cast<std::uint32_t>(buffer[2]) << 16 | static_cast<std::uint32_t>(buffer[3]) << 24;
    return static_cast<std::int32_t>(bits);
}

// A "%" with another one at least two characters further on: something that looks like an
// environment variable, which the store then marks as expandable.
bool HasPercentPair(const std::string& text) {
    const auto first = text.find('%');
    return first != std::string::npos && text.find('%', first + 2) != std::string::npos;
}

// Bytes from an array of whole numbers 0 to 255; false for anything else.
bool ArrayBytes(const SafeArray& array, std::vector<BYTE>& bytes) {
    if (array.Dims() != 1) {
        return false;
    }
    for (const Variant& element : array.Storage()) {
        if (element.Type() != VarType::Integer && element.Type() != VarType::Long) {
            return false;
        }
        const std::int32_t number = element.ToLong();
        if (number < 0 || number > 255) {
            return false;
        }
        bytes.push_back(static_cast<BYTE>(number));
    }
    return true;
}

}  // namespace

HKEY OpenSettingsKey(forms::Platform& platform) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, settings::kUserKey, 0, KEY_ALL_ACCESS, &key) ==
        ERROR_SUCCESS) {
        return key;
    }
    DWORD disposition = 0;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, settings::kUserKey, 0, "0", REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &key, &disposition) != ERROR_SUCCESS) {
        platform.MsgBox(settings::kErrorCreatingKeys,
                        forms::mb::kOkOnly | forms::mb::kCritical | forms::mb::kSetForeground);
    }
    return key;
}

std::int32_t QueryValueEx(HKEY key, const std::string& name, Variant& value) {
    DWORD type = REG_NONE;
    DWORD size = 0;
    LONG status = RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size);
    if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) {
        // Missing is not an error here: the caller's default stands.
        return ERROR_SUCCESS;
    }
    switch (type) {
        case REG_SZ:
        case REG_MULTI_SZ:
            value = ReadText(key, name, size, status);
            break;
        case REG_DWORD:
            value = ReadDword(key, name, size, status);
            break;
        case REG_EXPAND_SZ:
            // No environment expansion exists in this program: such a value cannot be read.
            ReadText(key, name, size, status);
            throw Failure(err::kObjectNotSet);
        case REG_DWORD_BIG_ENDIAN:
            ReadDword(key, name, size, status);
            throw Failure(err::kObjectNotSet);
        default: {
            std::vector<BYTE> buffer(static_cast<std::size_t>(size) + 1, 0);
            DWORD read = size;
            status = RegQueryValueExA(key, name.c_str(), nullptr, nullptr, buffer.data(), &read);
            SafeArray bytes = SafeArray::OneDim(0, static_cast<std::int32_t>(size));
            for (std::int32_t i = 0; i <= static_cast<std::int32_t>(size); ++i) {
                bytes.Set(i,
                          Variant(static_cast<std::int16_t>(buffer[static_cast<std::size_t>(i)])));
            }
            value = Variant(std::move(bytes));
            break;
        }
    }
    return status;
}

std::int32_t SetValueEx(const Variant& value, HKEY key, const std::string& name) {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    switch (value.Type()) {
        case VarType::String: {
            const std::string text = value.ToString();
            type = HasPercentPair(text) ? REG_EXPAND_SZ : REG_SZ;
            data.assign(text.begin(), text.end());
            data.push_back(0);
            break;
        }
        case VarType::Integer:
        case VarType::Long: {
            const auto bits = static_cast<std::uint32_t>(value.ToLong());
            type = REG_DWORD;
            data = {static_cast<BYTE>(bits), static_cast<BYTE>(bits >> 8),
                    static_cast<BYTE>(bits >> 16), static_cast<BYTE>(bits >> 24)};
            break;
        }
        case VarType::Array:
            if (!ArrayBytes(value.ToArray(), data)) {
                return err::kTypeMismatch;
            }
            type = REG_BINARY;
            break;
        default:
            return err::kTypeMismatch;
    }
    return RegSetValueExA(key, name.c_str(), 0, type, data.data(), static_cast<DWORD>(data.size()));
}

std::string GetRegistryString(const std::string& name, const std::string& subkey, HKEY root) {
    // Nothing here is checked: a missing key or value leaves the size at 0 and gives "".
    HKEY key = nullptr;
    RegOpenKeyExA(root, subkey.c_str(), 0, KEY_QUERY_VALUE, &key);
    DWORD size = 0;
    RegQueryValueExA(key, name.c_str(), nullptr, nullptr, nullptr, &size);
    std::string text;
    if (size != 0) {
        std::vector<BYTE> buffer(size, 0);
        DWORD read = size;
        RegQueryValueExA(key, name.c_str(), nullptr, nullptr, buffer.data(), &read);
        text.assign(buffer.begin(), buffer.end() - 1);
    }
    RegCloseKey(key);
    return text;
}

}  // namespace kw::dialer
