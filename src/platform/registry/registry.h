#pragma once

// The settings store, with the call shapes of the Win32 registry (the A calls).
//
// Where the hives live
//   HKEY_CURRENT_USER   $XDG_CONFIG_HOME/Ostvarra/user.reg (XDG_CONFIG_HOME defaults to ~/.config)
//   HKEY_LOCAL_MACHINE  beside the installation, set by the program through Configure();
//                       by default $XDG_DATA_HOME/Ostvarra/Kestrelway/system.reg
//                       (XDG_DATA_HOME defaults to ~/.local/share)
//   Configure() points either hive at another file (tests use temporary files). There is no
//   environment variable for it. Missing folders are created with mode 0700, files get 0600.
//
// File format
//   Wine's text hive ("WINE REGISTRY Version 2"). Strings are stored as UTF-8 with their
//   terminating NUL and written with Wine's escapes; string data that is not UTF-8 or lacks its
//   NUL is written as hex(N). Lines the store does not understand (options such as #time=,
//   comments, value types it cannot read) are written back unchanged.
//
// Writes and other processes
//   The client and the engine write the same hives. Every write takes an exclusive flock() on a
//   side file (user.reg.lock), re-reads the hive as it is on disk at that moment, applies its one
//   change, writes the whole hive to user.reg.tmp, fsyncs it, renames it over user.reg, fsyncs the
//   folder and only then unlocks and returns. A write that returned is therefore on disk, and no
//   process overwrites a value another one wrote. Reads take no lock: every call stats the file
//   and re-reads it when it was replaced, so it sees every write completed before it.
//
// Damaged files
//   A hive that cannot be read as a whole is renamed to <name>.corrupt-<UTC time>, one line on
//   standard error says where it went, and the store carries on with an empty hive.
//
// Names
//   Key paths use backslashes; key and value names compare case-insensitively (ASCII letters).
//   Handles are process-local; all calls may be made from any thread.

#include <cstdint>
#include <functional>
#include <string>

namespace kw::registry {

using BYTE = std::uint8_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using REGSAM = DWORD;
struct HKEY__;
using HKEY = HKEY__*;

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    void* lpSecurityDescriptor;
    int bInheritHandle;
};

inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002});

// Status codes.
inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_BAD_PATHNAME = 161;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_REGISTRY_IO_FAILED = 1016;  // the hive could not be written
inline constexpr LONG ERROR_KEY_DELETED = 1018;         // the open key was deleted meanwhile

// Access rights.
inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr REGSAM KEY_NOTIFY = 0x0010;
inline constexpr REGSAM KEY_CREATE_LINK = 0x0020;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x0100;
inline constexpr REGSAM KEY_WOW64_32KEY = 0x0200;
inline constexpr REGSAM DELETE = 0x00010000;
inline constexpr REGSAM READ_CONTROL = 0x00020000;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_EXECUTE = 0x20019;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;
inline constexpr REGSAM MAXIMUM_ALLOWED = 0x02000000;
inline constexpr REGSAM GENERIC_ALL = 0x10000000;
inline constexpr REGSAM GENERIC_WRITE = 0x40000000;
inline constexpr REGSAM GENERIC_READ = 0x80000000;

// Value types.
inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_DWORD_BIG_ENDIAN = 5;
inline constexpr DWORD REG_MULTI_SZ = 7;

// Options and dispositions of RegCreateKeyExA (volatile keys are kept like the others).
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_OPTION_VOLATILE = 1;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

// Opens an existing key. `subKey` null or "" opens `root` itself again.
LONG RegOpenKeyExA(HKEY root, const char* subKey, DWORD options, REGSAM access, HKEY* result);

// Opens a key, creating it and any missing parents first. `keyClass` and `security` are ignored.
LONG RegCreateKeyExA(HKEY root, const char* subKey, DWORD reserved, const char* keyClass,
                     DWORD options, REGSAM access, const SECURITY_ATTRIBUTES* security,
                     HKEY* result, DWORD* disposition);

// Size-first protocol: with `data` null, `*size` receives the value's size and the call gives 0;
// with a buffer smaller than the value, `*size` receives the size needed and the call gives
// ERROR_MORE_DATA (234) without touching the buffer. `name` null or "" is the default value.
LONG RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                      DWORD* size);

// Stores `size` bytes as given; strings are expected with their terminating NUL.
LONG RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                    DWORD size);

LONG RegDeleteValueA(HKEY key, const char* name);

// Deletes a key that has no subkeys (ERROR_ACCESS_DENIED otherwise).
LONG RegDeleteKeyA(HKEY root, const char* subKey);

LONG RegCloseKey(HKEY key);

struct RegistryConfig {
    std::string userHive;     // file of HKEY_CURRENT_USER; "" for the default
    std::string machineHive;  // file of HKEY_LOCAL_MACHINE; "" for the default
};

// The default files from the XDG variables, as described above.
RegistryConfig DefaultConfig();

// Points the hives at other files. Open handles stay valid and now refer to the new files.
void Configure(const RegistryConfig& config);

// The clock that stamps keys and names damaged files aside, in seconds since the Unix epoch.
// The program hands in its platform's clock so that a test's virtual time reaches the hives;
// an empty function restores the system clock.
void SetWallClock(std::function<std::int64_t()> clock);
std::int64_t WallClock();

// The file that holds `root` (HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE), "" for another handle.
std::string HivePath(HKEY root);

}  // namespace kw::registry
