// The Win32 call shapes as the program's helpers use them.

#include <cstring>

#include "platform/registry/registry_fixture.h"

namespace kw::registry::testing {
namespace {

constexpr const char* kUserKey = "Software\\Ostvarra\\Kestrelway";

using SizeFirstProtocol = RegistryTest;

TEST_F(SizeFirstProtocol, AskingWithoutBufferGivesSizeAndTypeThenTooSmallGives234) {
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

    BYTE exact[6] = {};
    size = sizeof exact;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, exact, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(std::memcmp(exact, "hello", 6), 0);

    BYTE roomy[32];
    std::memset(roomy, 0x7e, sizeof roomy);
    size = sizeof roomy;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, nullptr, roomy, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6u) << "size comes back as the value's, not the buffer's";
    EXPECT_EQ(roomy[6], 0x7e);

    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, nullptr, nullptr), ERROR_SUCCESS)
        << "type only";
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, &type, exact, nullptr),
              ERROR_INVALID_PARAMETER);
    RegCloseKey(key);
}

TEST_F(SizeFirstProtocol, MissingValueIsNotFoundAndLeavesOutputsAlone) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    DWORD type = 99;
    DWORD size = 77;
    EXPECT_EQ(RegQueryValueExA(key, "Password", nullptr, &type, nullptr, &size),
              ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(type, 99u);
    EXPECT_EQ(size, 77u);
    RegCloseKey(key);
}

TEST_F(SizeFirstProtocol, EmptyAndDefaultValues) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "", "the default"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, nullptr), "the default") << "null and \"\" name the same value";
    ASSERT_EQ(SetBytes(key, "Nothing", REG_BINARY, {}), ERROR_SUCCESS);
    Restart();
    auto v = Query(key, "Nothing");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->type, REG_BINARY);
    EXPECT_TRUE(v->bytes.empty());
    EXPECT_EQ(QueryString(key, ""), "the default");
    RegCloseKey(key);
}

// Each type keeps its bytes as given, and is written in the form the file format gives it.
using TypeLayouts = RegistryTest;

TEST_F(TypeLayouts, EachTypeSurvivesTheFileWithItsBytesAndItsNotation) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "Str", "plain"), ERROR_SUCCESS);
    ASSERT_EQ(SetString(key, "Expand", "%TEMP%\\x", REG_EXPAND_SZ), ERROR_SUCCESS);
    const std::string multi("one\0two\0", 8);
    ASSERT_EQ(RegSetValueExA(key, "Multi", 0, REG_MULTI_SZ,
                             reinterpret_cast<const BYTE*>(multi.c_str()), 9),
              ERROR_SUCCESS);
    ASSERT_EQ(SetDword(key, "Dw", 42), ERROR_SUCCESS);
    ASSERT_EQ(SetBytes(key, "Big", REG_DWORD_BIG_ENDIAN, Bytes({0x12, 0x34, 0x56, 0x78})),
              ERROR_SUCCESS);
    ASSERT_EQ(SetBytes(key, "Bin", REG_BINARY, Bytes({0xde, 0xad, 0x00, 0xff})), ERROR_SUCCESS);
    ASSERT_EQ(SetBytes(key, "NoNul", REG_SZ, Bytes({'a', 'b'})), ERROR_SUCCESS);
    ASSERT_EQ(SetBytes(key, "ShortDw", REG_DWORD, Bytes({1, 2, 3})), ERROR_SUCCESS);
    ASSERT_EQ(SetBytes(key, "Qword", 11, Bytes({1, 2, 3, 4, 5, 6, 7, 8})), ERROR_SUCCESS);

    const std::string file = ReadFile(userHive_);
    EXPECT_NE(file.find("\n\"Str\"=\"plain\"\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"Expand\"=str(2):\"%TEMP%\\\\x\"\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"Multi\"=str(7):\"one\\0two\\0\"\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"Dw\"=dword:0000002a\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"Big\"=hex(5):12,34,56,78\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"Bin\"=hex:de,ad,00,ff\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"NoNul\"=hex(1):61,62\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"ShortDw\"=hex(4):01,02,03\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\n\"Qword\"=hex(b):01,02,03,04,05,06,07,08\n"), std::string::npos)
        << file;

    Restart();
    auto expect = [&](const char* name, DWORD type, std::vector<BYTE> bytes) {
        auto v = Query(key, name);
        ASSERT_TRUE(v) << name;
        EXPECT_EQ(v->type, type) << name;
        EXPECT_EQ(v->bytes, bytes) << name;
    };
    expect("Str", REG_SZ, Bytes({'p', 'l', 'a', 'i', 'n', 0}));
    expect("Multi", REG_MULTI_SZ, Bytes({'o', 'n', 'e', 0, 't', 'w', 'o', 0, 0}));
    expect("Dw", REG_DWORD, Bytes({42, 0, 0, 0}));
    expect("Big", REG_DWORD_BIG_ENDIAN, Bytes({0x12, 0x34, 0x56, 0x78}));
    expect("Bin", REG_BINARY, Bytes({0xde, 0xad, 0x00, 0xff}));
    expect("NoNul", REG_SZ, Bytes({'a', 'b'}));
    expect("ShortDw", REG_DWORD, Bytes({1, 2, 3}));
    expect("Qword", 11, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(QueryString(key, "Expand"), "%TEMP%\\x");
    RegCloseKey(key);
}

TEST_F(TypeLayouts, OverwritingChangesTypeAndKeepsOneLine) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "CallingCard", "7"), ERROR_SUCCESS);
    ASSERT_EQ(SetDword(key, "CallingCard", 7), ERROR_SUCCESS);
    const std::string file = ReadFile(userHive_);
    EXPECT_EQ(file.find("\"CallingCard\"="), file.rfind("\"CallingCard\"=")) << file;
    auto v = Query(key, "CallingCard");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->type, REG_DWORD);
    RegCloseKey(key);
}

using AccessMasks = RegistryTest;

TEST_F(AccessMasks, ReadOnlyKeyRefusesWritesAndWriteOnlyKeyRefusesReads) {
    HKEY full = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(full, "UserName", "ann"), ERROR_SUCCESS);
    const std::string before = ReadFile(userHive_);

    HKEY reader = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_READ, &reader), ERROR_SUCCESS);
    EXPECT_EQ(SetString(reader, "UserName", "bob"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteValueA(reader, "UserName"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(QueryString(reader, "UserName"), "ann");
    EXPECT_EQ(ReadFile(userHive_), before) << "a refused write must not touch the file";

    HKEY query = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_QUERY_VALUE, &query),
              ERROR_SUCCESS);
    EXPECT_EQ(QueryString(query, "UserName"), "ann");
    EXPECT_EQ(SetString(query, "UserName", "bob"), ERROR_ACCESS_DENIED);

    HKEY writer = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_WRITE, &writer), ERROR_SUCCESS);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(writer, "UserName", nullptr, nullptr, nullptr, &size),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetString(writer, "UserName", "bob"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(full, "UserName"), "bob");

    HKEY generic = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, GENERIC_READ, &generic),
              ERROR_SUCCESS);
    EXPECT_EQ(QueryString(generic, "UserName"), "bob");
    EXPECT_EQ(SetString(generic, "UserName", "cy"), ERROR_ACCESS_DENIED);

    for (HKEY k : {full, reader, query, writer, generic}) EXPECT_EQ(RegCloseKey(k), 0);
}

TEST_F(AccessMasks, CreatingUnderAKeyWithoutCreateRightIsRefused) {
    HKEY parent = Create(HKEY_CURRENT_USER, "Software\\Ostvarra");
    HKEY reader = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Ostvarra", 0, KEY_READ, &reader),
              ERROR_SUCCESS);
    HKEY child = nullptr;
    EXPECT_EQ(RegCreateKeyExA(reader, "Kestrelway", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &child, nullptr),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegCreateKeyExA(parent, "Kestrelway", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &child, nullptr),
              ERROR_SUCCESS);
    HKEY again = nullptr;
    EXPECT_EQ(RegCreateKeyExA(reader, "Kestrelway", 0, nullptr, 0, KEY_READ, nullptr, &again,
                              nullptr),
              ERROR_SUCCESS)
        << "opening an existing key needs no right to create";
    for (HKEY k : {parent, reader, child, again}) RegCloseKey(k);
}

using Handles = RegistryTest;

TEST_F(Handles, ClosedOrForeignHandlesAreInvalid) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(SetString(key, "UserName", "x"), ERROR_INVALID_HANDLE);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, nullptr, nullptr, &size),
              ERROR_INVALID_HANDLE);
    EXPECT_EQ(SetString(nullptr, "UserName", "x"), ERROR_INVALID_HANDLE);
    HKEY out = nullptr;
    EXPECT_EQ(RegOpenKeyExA(key, "Sub", 0, KEY_READ, &out), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS) << "roots are never closed";
}

TEST_F(Handles, OpeningAMissingKeyFailsAndCreatingReportsDisposition) {
    HKEY key = reinterpret_cast<HKEY>(std::uintptr_t{0x1234});
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_ALL_ACCESS, &key),
              ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(key, nullptr);

    DWORD disposition = 0;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kUserKey, 0, "0", 0, KEY_ALL_ACCESS, nullptr,
                              &key, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    RegCloseKey(key);
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kUserKey, 0, "0", 0, KEY_ALL_ACCESS, nullptr,
                              &key, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
    RegCloseKey(key);

    HKEY parent = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Ostvarra", 0, KEY_READ, &parent),
              ERROR_SUCCESS)
        << "creating a key creates its parents";
    HKEY child = nullptr;
    EXPECT_EQ(RegOpenKeyExA(parent, "Kestrelway", 0, KEY_READ, &child), ERROR_SUCCESS);
    RegCloseKey(child);
    RegCloseKey(parent);

    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "\\Software", 0, KEY_READ, &key),
              ERROR_BAD_PATHNAME);
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\\\Ostvarra", 0, KEY_READ, &key),
              ERROR_BAD_PATHNAME);
}

TEST_F(Handles, KeyDeletedBehindAnOpenHandle) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
    HKEY parent = Create(HKEY_CURRENT_USER, "Software\\Ostvarra");
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software"), ERROR_ACCESS_DENIED)
        << "a key with subkeys stays";
    EXPECT_EQ(RegDeleteKeyA(parent, "kestrelway"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyA(parent, "Kestrelway"), ERROR_FILE_NOT_FOUND);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "UserName", nullptr, nullptr, nullptr, &size),
              ERROR_KEY_DELETED);
    EXPECT_EQ(SetString(key, "UserName", "bob"), ERROR_KEY_DELETED);

    Restart();
    HKEY check = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Ostvarra", 0, KEY_READ, &check),
              ERROR_SUCCESS)
        << "the parent of a deleted key remains";
    RegCloseKey(check);
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_READ, &check),
              ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);
    RegCloseKey(parent);
}

TEST_F(Handles, DeletingValues) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "A", "1"), ERROR_SUCCESS);
    ASSERT_EQ(SetString(key, "B", "2"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key, "a"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key, "A"), ERROR_FILE_NOT_FOUND);
    Restart();
    EXPECT_FALSE(Query(key, "A"));
    EXPECT_EQ(QueryString(key, "B"), "2");
    RegCloseKey(key);
}

using CaseInsensitiveNames = RegistryTest;

TEST_F(CaseInsensitiveNames, KeysAndValuesMatchInAnyCaseAndKeepTheirFirstSpelling) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);

    HKEY shouted = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "SOFTWARE\\ostvarra\\KESTRELWAY", 0,
                            KEY_ALL_ACCESS, &shouted),
              ERROR_SUCCESS);
    EXPECT_EQ(QueryString(shouted, "USERNAME"), "ann");
    ASSERT_EQ(SetString(shouted, "username", "bob"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, "UserName"), "bob");

    DWORD disposition = 0;
    HKEY again = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "software\\OSTVARRA\\kestrelway", 0, "0", 0,
                              KEY_ALL_ACCESS, nullptr, &again, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);

    const std::string file = ReadFile(userHive_);
    EXPECT_NE(file.find("[Software\\\\Ostvarra\\\\Kestrelway]"), std::string::npos) << file;
    EXPECT_NE(file.find("\"UserName\"=\"bob\""), std::string::npos) << file;
    EXPECT_EQ(file.find("username"), std::string::npos) << file;
    EXPECT_EQ(file.find("OSTVARRA"), std::string::npos) << file;
    for (HKEY k : {key, shouted, again}) RegCloseKey(k);
}

using Hives = RegistryTest;

TEST_F(Hives, MachineAndUserKeysLiveInTheirOwnPrivateFiles) {
    HKEY machine = Create(HKEY_LOCAL_MACHINE, "Software\\Ostvarra");
    ASSERT_EQ(SetString(machine, "installDir", "/opt/kestrelway"), ERROR_SUCCESS);
    HKEY user = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetDword(user, "LastSelectedLocation", 3), ERROR_SUCCESS);

    EXPECT_EQ(HivePath(HKEY_LOCAL_MACHINE), machineHive_);
    EXPECT_EQ(HivePath(HKEY_CURRENT_USER), userHive_);
    const std::string machineFile = ReadFile(machineHive_);
    const std::string userFile = ReadFile(userHive_);
    EXPECT_EQ(machineFile.rfind("WINE REGISTRY Version 2\n", 0), 0u) << machineFile;
    EXPECT_NE(machineFile.find("\"installDir\"=\"/opt/kestrelway\""), std::string::npos);
    EXPECT_EQ(userFile.find("installDir"), std::string::npos);
    EXPECT_NE(userFile.find("\"LastSelectedLocation\"=dword:00000003"), std::string::npos);

    EXPECT_EQ(Mode(machineHive_), 0600u);
    EXPECT_EQ(Mode(userHive_), 0600u);
    EXPECT_EQ(Mode(dir_ + "/install"), 0700u) << "the folder the store created";

    HKEY wrong = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Ostvarra", 0, KEY_READ, &wrong), 0);
    EXPECT_FALSE(QueryString(wrong, "installDir")) << "a user key does not see machine values";
    for (HKEY k : {machine, user, wrong}) RegCloseKey(k);
}

TEST(RegistryDefaults, FilesFollowTheXdgFolders) {
    const char* oldConfig = std::getenv("XDG_CONFIG_HOME");
    const char* oldData = std::getenv("XDG_DATA_HOME");
    const std::string savedConfig = oldConfig ? oldConfig : "";
    const std::string savedData = oldData ? oldData : "";

    ::setenv("XDG_CONFIG_HOME", "/x/config", 1);
    ::setenv("XDG_DATA_HOME", "/x/data", 1);
    RegistryConfig c = DefaultConfig();
    EXPECT_EQ(c.userHive, "/x/config/Ostvarra/user.reg");
    EXPECT_EQ(c.machineHive, "/x/data/Ostvarra/Kestrelway/system.reg");

    ::setenv("XDG_CONFIG_HOME", "relative/ignored", 1);
    ::unsetenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    ASSERT_NE(home, nullptr);
    c = DefaultConfig();
    EXPECT_EQ(c.userHive, std::string(home) + "/.config/Ostvarra/user.reg");
    EXPECT_EQ(c.machineHive, std::string(home) + "/.local/share/Ostvarra/Kestrelway/system.reg");

    if (oldConfig) {
        ::setenv("XDG_CONFIG_HOME", savedConfig.c_str(), 1);
    } else {
        ::unsetenv("XDG_CONFIG_HOME");
    }
    if (oldData) {
        ::setenv("XDG_DATA_HOME", savedData.c_str(), 1);
    } else {
        ::unsetenv("XDG_DATA_HOME");
    }
}

}  // namespace
}  // namespace kw::registry::testing
