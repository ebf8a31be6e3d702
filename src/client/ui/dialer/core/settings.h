#pragma once

// What the program remembers for its user, in the registry, and the helpers that read and write
// it. Their semantics are not the ordinary ones and the program builds on them: a missing value
// reads as success and leaves the caller's default in place, a string with a pair of percent
// signs is stored as an expandable string, and expandable and big-endian values cannot be read.

#include <cstdint>
#include <string>

#include "platform/automation/failure.h"  // QueryValueEx fails for types it cannot read
#include "platform/automation/variant.h"
#include "platform/registry/registry.h"

namespace kw::forms {
class Platform;
}

namespace kw::dialer {

namespace settings {
// HKEY_LOCAL_MACHINE: written by the installer, read at start-up.
inline constexpr const char* kMachineKey = "Software\\Ostvarra";
inline constexpr const char* kInstallDir = "installDir";

// HKEY_CURRENT_USER: the program's own key, created on first use.
inline constexpr const char* kUserKey = "Software\\Ostvarra\\Kestrelway";
inline constexpr const char* kUserName = "UserName";
inline constexpr const char* kPassword = "Password";
inline constexpr const char* kCallingCard = "CallingCard";
inline constexpr const char* kAlternateTunnelServer = "AlternateTunnelServer";
inline constexpr const char* kLastSelectedLocation = "LastSelectedLocation";
inline constexpr const char* kConnectHistorySetting = "ConnectHistorySetting";
inline constexpr const char* kPrescriberLogSetting = "PrescriberLogSetting";
inline constexpr const char* kConnectHistoryFileName = "ConnectHistoryFileName";
inline constexpr const char* kPrescriberLogFileName = "PrescriberLogFileName";

// The box shown when the user key can be neither opened nor created.
inline constexpr const char* kErrorCreatingKeys = "Error creating registry keys";
}  // namespace settings

// Opens the user key with full access, creating it when missing; the caller closes it with
// RegCloseKey. When neither works the user is told, and the handle comes back as it stands (null):
// the registry calls made with it then just fail.
registry::HKEY OpenSettingsKey(forms::Platform& platform);

// Reads one value of `key` into `value` and gives the status of the read.
// - A value that cannot be found (or any failure of the size query) gives 0 and leaves `value`
//   as it was: callers set their default beforehand.
// - Strings (1) and multi-strings (7) come back without their last character, the terminator;
//   a multi-string keeps its inner terminators. A double word (4) comes back as a Long.
// - An expandable string (2) or a big-endian double word (5) fails with 91: the program never
//   expands environment strings and cannot read those types.
// - Anything else comes back as an array of bytes (as Integers) with indexes 0 to the size.
std::int32_t QueryValueEx(registry::HKEY key, const std::string& name, automation::Variant& value);

// Writes `value` under `name` and gives the status of the write.
// - Text is stored as a string (1), or as an expandable string (2) when it holds a "%" and another
//   "%" at least two characters after the first one.
// - Integer and Long are stored as a double word (4).
// - A one-dimensional array of numbers 0 to 255 is stored as binary (3).
// - Anything else writes nothing and gives 13.
std::int32_t SetValueEx(const automation::Variant& value, registry::HKEY key,
                        const std::string& name);

// Reads a value of `subkey` under `root` as text, opening and closing the key itself; "" when the
// key or the value is missing. The type is not looked at.
std::string GetRegistryString(const std::string& name, const std::string& subkey,
                              registry::HKEY root);

}  // namespace kw::dialer
