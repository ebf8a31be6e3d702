// The Win32 call shapes as the program's helpers use them.

#include <cstring>

#include "platform/registry/registry_fixture.h"

namespace kw::registry::testing {
namespace {

using SizeFirstProtocol = RegistryTest;

TEST_F(SizeFirstProtocol, SizeAndTypeFirstThenTooSmallGives234MissingAndDefaultValues) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "UserName", "hello"), ERROR_SUCCESS);

    DWORD type = 0;
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(size, 6u);  // the terminating NUL counts

    BYTE small[3] = {'x', 'x', 'x'};
    size = sizeof small;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(std::memcmp(small, "xxx", 3), 0) << "a refused read must leave the buffer alone";

    BYTE roomy[32];
    std::memset(roomy, 0x7e, sizeof roomy);
    size = sizeof roomy;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, nullptr, roomy, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6u) << "size comes back as the value's, not the buffer's";
    EXPECT_EQ(roomy[6], 0x7e);

    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, nullptr, nullptr), ERROR_SUCCESS)
        << "type only";
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, roomy, nullptr),
              ERROR_INVALID_PARAMETER);

    // A missing value leaves the outputs alone; null and "" name the default value.
    type = 99;
    size = 77;
    EXPECT_EQ(RegQueryValueExA(key, "Password", nullptr, &type, nullptr, &size),
              ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(type + size, 99u + 77u);
    ASSERT_EQ(SetString(key, "", "the default"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, nullptr), "the default");
    RegCloseKey(key);
}

using AccessMasks = RegistryTest;

TEST_F(AccessMasks, ReadKeysRefuseWritesAndWriteKeysRefuseReads) {
    HKEY full = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(full, "UserName", "ann"), ERROR_SUCCESS);
    const std::string before = ReadFile(userHive_);
    auto open = [](const char* path, REGSAM access) {
        HKEY k = nullptr;
        EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, access, &k), ERROR_SUCCESS);
        return k;
    };
    for (REGSAM access : {KEY_READ, KEY_QUERY_VALUE, GENERIC_READ}) {
        HKEY reader = open(kUserKey, access);
        EXPECT_EQ(SetString(reader, "UserName", "bob"), ERROR_ACCESS_DENIED) << access;
        EXPECT_EQ(RegDeleteValueA(reader, "UserName"), ERROR_ACCESS_DENIED) << access;
        EXPECT_EQ(QueryString(reader, "UserName"), "ann") << access;
        RegCloseKey(reader);
    }
    EXPECT_EQ(ReadFile(userHive_), before) << "a refused write must not touch the file";

    HKEY writer = open(kUserKey, KEY_WRITE);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(writer, "UserName", nullptr, nullptr, nullptr, &size),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetString(writer, "UserName", "bob"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(full, "UserName"), "bob");
    for (HKEY k : {full, writer}) EXPECT_EQ(RegCloseKey(k), 0);
}

using Handles = RegistryTest;

TEST_F(Handles, ClosedHandlesMissingKeysDispositionAndBadPaths) {
    HKEY key = reinterpret_cast<HKEY>(std::uintptr_t{0x1234});
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_ALL_ACCESS, &key),
              ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(key, nullptr);
    for (DWORD expected : {REG_CREATED_NEW_KEY, REG_OPENED_EXISTING_KEY}) {
        DWORD disposition = 0;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kUserKey, 0, "0", 0, KEY_ALL_ACCESS, nullptr,
                                  &key, &disposition),
                  ERROR_SUCCESS);
        EXPECT_EQ(disposition, expected);
        ASSERT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    }
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(SetString(key, "UserName", "x"), ERROR_INVALID_HANDLE);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, nullptr, nullptr, &size),
              ERROR_INVALID_HANDLE);
    EXPECT_EQ(SetString(nullptr, "UserName", "x"), ERROR_INVALID_HANDLE);
    HKEY out = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key, "Sub", 0, KEY_READ, &out), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS) << "roots are never closed";
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "\\Software", 0, KEY_READ, &out),
              ERROR_BAD_PATHNAME);
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\\\Ostvarra", 0, KEY_READ, &out),
              ERROR_BAD_PATHNAME);
}

// Value names match in any case and keep their first spelling in the file.
TEST_F(Handles, ValueNamesMatchInAnyCaseAndKeepTheirFirstSpelling) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, "USERNAME"), "ann");
    ASSERT_EQ(SetString(key, "username", "bob"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, "UserName"), "bob");
    const std::string file = ReadFile(userHive_);
    EXPECT_NE(file.find("\"UserName\"=\"bob\""), std::string::npos) << file;
    EXPECT_EQ(file.find("username"), std::string::npos) << file;
    RegCloseKey(key);
}

// A deleted value or key is gone from the file; handles open on a deleted key fail from then on.
TEST_F(Handles, DeletingValuesAndAKeyBehindAnOpenHandle) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "Gone", "1"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key, "gone"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key, "Gone"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(ReadFile(userHive_).find("Gone"), std::string::npos);

    HKEY parent = Create(HKEY_CURRENT_USER, "Software\\Ostvarra");
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software"), ERROR_ACCESS_DENIED)
        << "a key with subkeys stays";
    EXPECT_EQ(RegDeleteKeyA(parent, "kestrelway"), ERROR_SUCCESS);
    EXPECT_EQ(SetString(key, "B", "3"), ERROR_KEY_DELETED);
    Restart();
    HKEY check = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_READ, &check),
              ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Ostvarra", 0, KEY_READ, &check), 0)
        << "the parent of a deleted key remains";
    for (HKEY k : {key, parent, check}) RegCloseKey(k);
}

using Hives = RegistryTest;

TEST_F(Hives, MachineAndUserKeysLiveInTheirOwnPrivateFiles) {
    HKEY machine = Create(HKEY_LOCAL_MACHINE, "Software\\Ostvarra");
    ASSERT_EQ(SetString(machine, "installDir", "/opt/kestrelway"), ERROR_SUCCESS);
    HKEY user = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetDword(user, "LastSelectedLocation", 3), ERROR_SUCCESS);
    EXPECT_EQ(HivePath(HKEY_LOCAL_MACHINE), machineHive_);
    EXPECT_EQ(HivePath(HKEY_CURRENT_USER), userHive_);
    EXPECT_NE(ReadFile(machineHive_).find("\"installDir\"=\"/opt/kestrelway\""), std::string::npos);
    EXPECT_EQ(ReadFile(userHive_).find("installDir"), std::string::npos);
    EXPECT_EQ(Mode(machineHive_), 0600u);
    EXPECT_EQ(Mode(userHive_), 0600u);
    EXPECT_EQ(Mode(dir_ + "/install"), 0700u) << "the folder the store created";
    for (HKEY k : {machine, user}) RegCloseKey(k);
}

TEST(RegistryDefaults, FilesFollowTheXdgFolders) {
    const char* oldConfig = std::getenv("XDG_CONFIG_HOME");
    const char* oldData = std::getenv("XDG_DATA_HOME");
    const std::string saved[] = {oldConfig ? oldConfig : "", oldData ? oldData : ""};
    ::setenv("XDG_CONFIG_HOME", "/x/config", 1);
    ::setenv("XDG_DATA_HOME", "/x/data", 1);
    RegistryConfig c = DefaultConfig();
    EXPECT_EQ(c.userHive, "/x/config/Ostvarra/user.reg");
    EXPECT_EQ(c.machineHive, "/x/data/Ostvarra/Kestrelway/system.reg");

    ::setenv("XDG_CONFIG_HOME", "relative/ignored", 1);
    ::unsetenv("XDG_DATA_HOME");
    const std::string home = std::getenv("HOME");
    c = DefaultConfig();
    EXPECT_EQ(c.userHive, home + "/.config/Ostvarra/user.reg");
    EXPECT_EQ(c.machineHive, home + "/.local/share/Ostvarra/Kestrelway/system.reg");

    oldConfig ? ::setenv("XDG_CONFIG_HOME", saved[0].c_str(), 1) : ::unsetenv("XDG_CONFIG_HOME");
    oldData ? ::setenv("XDG_DATA_HOME", saved[1].c_str(), 1) : ::unsetenv("XDG_DATA_HOME");
}

}  // namespace
}  // namespace kw::registry::testing
