// The settings helpers on hives in a temporary folder: first start, the missing value that reads
// as success, the type a string is stored with, the types that cannot be read, and the box when
// the user key cannot be made.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "client/ui/dialer/core/settings.h"
#include "platform/automation/failure_number.h"
#include "platform/automation/safe_array.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"

namespace kw::dialer {
namespace {

using automation::Variant;
using automation::VarType;
namespace reg = registry;

class SettingsTest : public ::testing::Test {
  protected:
    std::filesystem::path dir;
    headless::HeadlessPlatform platform;

    void SetUp() override {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kw-settings-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        dir = pattern;
        reg::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    // The type and size of a value as the registry holds it; type REG_NONE and size 0 when absent.
    struct Stored {
        reg::DWORD type = reg::REG_NONE;
        reg::DWORD size = 0;
        reg::LONG status = 0;
    };
    static Stored Inspect(reg::HKEY key, const char* name) {
        Stored s;
        s.status = reg::RegQueryValueExA(key, name, nullptr, &s.type, nullptr, &s.size);
        return s;
    }
    static void PutRaw(reg::HKEY key, const char* name, reg::DWORD type, const std::string& bytes) {
        ASSERT_EQ(reg::RegSetValueExA(key, name, 0, type,
                                      reinterpret_cast<const reg::BYTE*>(bytes.data()),
                                      static_cast<reg::DWORD>(bytes.size())),
                  reg::ERROR_SUCCESS);
    }
};

// ---- first start ----

TEST_F(SettingsTest, FirstStartCreatesTheUserKeyAndTheEmptyCredentials) {
    reg::HKEY probe = nullptr;
    ASSERT_NE(reg::RegOpenKeyExA(reg::HKEY_CURRENT_USER, settings::kUserKey, 0,
                                 reg::KEY_QUERY_VALUE, &probe),
              reg::ERROR_SUCCESS);

    reg::HKEY key = OpenSettingsKey(platform);
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(platform.Boxes().empty());

    // What the start-up does with the user name and the password: read with "" as the default,
    // and write "" when it stayed so, so that the values exist.
    for (const char* name : {settings::kUserName, settings::kPassword}) {
        Variant value("");
        EXPECT_EQ(QueryValueEx(key, name, value), 0) << name;
        EXPECT_EQ(SetValueEx(value, key, name), reg::ERROR_SUCCESS) << name;
        const Stored s = Inspect(key, name);
        EXPECT_EQ(s.type, reg::REG_SZ) << name;
        EXPECT_EQ(s.size, 1u) << name;
    }
    EXPECT_EQ(reg::RegCloseKey(key), reg::ERROR_SUCCESS);

    // A second start opens what the first one made.
    reg::HKEY again = OpenSettingsKey(platform);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(Inspect(again, settings::kPassword).type, reg::REG_SZ);
    reg::RegCloseKey(again);
    EXPECT_TRUE(platform.Boxes().empty());
}

TEST_F(SettingsTest, KeyThatCannotBeMadeIsToldOnceAndReadsAsDefaults) {
    // A plain file where the hive's folder should be: nothing can be created below it.
    { std::ofstream(dir / "blocker") << "not a folder"; }
    reg::Configure({(dir / "blocker" / "user.reg").string(), (dir / "system.reg").string()});

    platform.AnswerNextBox(forms::mb::kResultOk);
    reg::HKEY key = OpenSettingsKey(platform);
    ASSERT_EQ(platform.Boxes().size(), 1u);
    const headless::BoxRecord& box = platform.Boxes()[0];
    EXPECT_EQ(box.text, "Error creating registry keys");
    EXPECT_EQ(box.flags, forms::mb::kOkOnly | forms::mb::kCritical | forms::mb::kSetForeground);
    EXPECT_EQ(box.caption, "");
    EXPECT_EQ(key, nullptr);

    // Callers go on with the handle as it is; every read keeps its default and says nothing.
    Variant location(std::int32_t{0});
    EXPECT_EQ(QueryValueEx(key, settings::kLastSelectedLocation, location), 0);
    EXPECT_EQ(location.ToLong(), 0);
    EXPECT_NE(SetValueEx(Variant(std::int32_t{2}), key, settings::kLastSelectedLocation), 0);
    EXPECT_EQ(platform.Boxes().size(), 1u);
}

TEST_F(SettingsTest, MissingValuesKeepTheDefaultAndWrittenOnesComeBackWithTheirTypes) {
    reg::HKEY key = OpenSettingsKey(platform);
    Variant location(std::int32_t{3});
    EXPECT_EQ(QueryValueEx(key, settings::kLastSelectedLocation, location), 0);
    EXPECT_EQ(location.Type(), VarType::Long);
    EXPECT_EQ(location.ToLong(), 3);

    // A calling card id written as a short is a double word, read back as a Long.
    ASSERT_EQ(SetValueEx(Variant(std::int16_t{-2}), key, settings::kCallingCard), 0);
    EXPECT_EQ(Inspect(key, settings::kCallingCard).type, reg::REG_DWORD);
    EXPECT_EQ(Inspect(key, settings::kCallingCard).size, 4u);
    Variant card(std::int32_t{0});
    EXPECT_EQ(QueryValueEx(key, settings::kCallingCard, card), 0);
    EXPECT_EQ(card.Type(), VarType::Long);
    EXPECT_EQ(card.ToLong(), -2);

    const std::string path = "/home/ana/.local/share/Kestrelway/history.log";
    ASSERT_EQ(SetValueEx(Variant(path), key, settings::kConnectHistoryFileName), 0);
    EXPECT_EQ(Inspect(key, settings::kConnectHistoryFileName).size, path.size() + 1);
    Variant read("");
    EXPECT_EQ(QueryValueEx(key, settings::kConnectHistoryFileName, read), 0);
    EXPECT_EQ(read.ToString(), path);

    // Other kinds of values are not written at all.
    const std::pair<const char*, Variant> others[] = {{"Ratio", Variant(1.5)},
                                                      {"Flag", Variant(true)},
                                                      {"Nothing", Variant()},
                                                      {"Object", Variant(automation::ObjectRef{})}};
    for (const auto& [name, value] : others) {
        EXPECT_EQ(SetValueEx(value, key, name), 13) << name;
        EXPECT_EQ(Inspect(key, name).status, reg::ERROR_FILE_NOT_FOUND) << name;
    }
    reg::RegCloseKey(key);
}

// ---- the percent rule ----

TEST_F(SettingsTest, PercentPairMakesAnExpandableStringThatCannotBeReadBack) {
    reg::HKEY key = OpenSettingsKey(platform);
    struct Case {
        const char* text;
        reg::DWORD type;
    };
    const Case cases[] = {
        {"50% of C:\\logs\\history.log", reg::REG_SZ},  // one sign
        {"C:\\100%%\\rx.log", reg::REG_SZ},             // two adjacent
        {"%%", reg::REG_SZ},
        {"ab%", reg::REG_SZ},
        {"%a%", reg::REG_EXPAND_SZ},   // a pair two apart
        {"%%a%", reg::REG_EXPAND_SZ},  // adjacent, then a third further on
        {"%%%", reg::REG_EXPAND_SZ},
        {"%APPDATA%\\Kestrelway\\history.log", reg::REG_EXPAND_SZ},
    };
    for (const Case& c : cases) {
        ASSERT_EQ(SetValueEx(Variant(c.text), key, settings::kConnectHistoryFileName), 0) << c.text;
        EXPECT_EQ(Inspect(key, settings::kConnectHistoryFileName).type, c.type) << c.text;

        Variant read("before");
        const int failure =
            FailureNumber([&] { QueryValueEx(key, settings::kConnectHistoryFileName, read); });
        if (c.type == reg::REG_SZ) {
            EXPECT_EQ(failure, 0) << c.text;
            EXPECT_EQ(read.ToString(), c.text);
        } else {
            EXPECT_EQ(failure, 91) << c.text;
            EXPECT_EQ(read.ToString(), "before") << c.text;
        }
    }
    // The reader that does not look at the type still sees the text, unexpanded.
    EXPECT_EQ(GetRegistryString(settings::kConnectHistoryFileName, settings::kUserKey,
                                reg::HKEY_CURRENT_USER),
              "%APPDATA%\\Kestrelway\\history.log");
    reg::RegCloseKey(key);
}

TEST_F(SettingsTest, ValuesWrittenByOthers) {
    reg::HKEY key = OpenSettingsKey(platform);
    auto text = [&](const char* name) {
        Variant v("x");
        const int failure = FailureNumber([&] { QueryValueEx(key, name, v); });
        return std::to_string(failure) + ":" + v.ToString();
    };
    // Reads drop the last character of the size, whatever it is.
    PutRaw(key, "Multi", reg::REG_MULTI_SZ, std::string("one\0two\0\0", 9));
    EXPECT_EQ(text("Multi"), std::string("0:one\0two\0", 10));
    PutRaw(key, "Bare", reg::REG_SZ, "abc");
    EXPECT_EQ(text("Bare"), "0:ab");
    EXPECT_EQ(GetRegistryString("Bare", settings::kUserKey, reg::HKEY_CURRENT_USER), "ab");
    PutRaw(key, "Empty", reg::REG_SZ, "");
    EXPECT_EQ(text("Empty"), "5:x") << "no room at all for the buffer";
    EXPECT_EQ(GetRegistryString("Empty", settings::kUserKey, reg::HKEY_CURRENT_USER), "");
    PutRaw(key, "Big", reg::REG_DWORD_BIG_ENDIAN, std::string("\0\0\0\x2a", 4));
    EXPECT_EQ(text("Big"), "91:x");

    // Other types come back as bytes, one more than the data, and write back as binary.
    PutRaw(key, "Bin", reg::REG_BINARY, std::string("\x01\xff\x00", 3));
    Variant bin;
    EXPECT_EQ(QueryValueEx(key, "Bin", bin), 0);
    ASSERT_TRUE(bin.IsArray());
    std::vector<std::int32_t> bytes;
    for (const Variant& b : bin.ToArray().Storage()) bytes.push_back(b.ToLong());
    EXPECT_EQ(bin.ToArray().LBound(), 0);
    EXPECT_EQ(bytes, (std::vector<std::int32_t>{1, 255, 0, 0}));
    ASSERT_EQ(SetValueEx(bin, key, "Copy"), 0);
    EXPECT_EQ(Inspect(key, "Copy").type, reg::REG_BINARY);
    EXPECT_EQ(Inspect(key, "Copy").size, 4u);
    automation::SafeArray words = automation::SafeArray::OneDim(0, 0);
    words.Set(0, Variant(std::int32_t{256}));
    EXPECT_EQ(SetValueEx(Variant(words), key, "NotBytes"), 13);
    reg::RegCloseKey(key);
}

// ---- the machine key ----

TEST_F(SettingsTest, InstallDirComesFromTheMachineKeyOrIsEmpty) {
    auto installDir = [](const char* path, reg::HKEY root) {
        return GetRegistryString(settings::kInstallDir, path, root);
    };
    EXPECT_EQ(installDir(settings::kMachineKey, reg::HKEY_LOCAL_MACHINE), "");
    reg::HKEY machine = nullptr;
    ASSERT_EQ(reg::RegCreateKeyExA(reg::HKEY_LOCAL_MACHINE, settings::kMachineKey, 0, nullptr, 0,
                                   reg::KEY_ALL_ACCESS, nullptr, &machine, nullptr),
              reg::ERROR_SUCCESS);
    EXPECT_EQ(installDir(settings::kMachineKey, reg::HKEY_LOCAL_MACHINE), "");
    PutRaw(machine, settings::kInstallDir, reg::REG_SZ, std::string("/opt/Kestrelway\0", 16));
    reg::RegCloseKey(machine);
    EXPECT_EQ(installDir(settings::kMachineKey, reg::HKEY_LOCAL_MACHINE), "/opt/Kestrelway");
    EXPECT_EQ(installDir(settings::kUserKey, reg::HKEY_CURRENT_USER), "") << "another value";
}

}  // namespace
}  // namespace kw::dialer
