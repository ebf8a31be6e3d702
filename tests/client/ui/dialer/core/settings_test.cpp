// The settings helpers on hives in a temporary folder: the types values are stored with, the
// percent rule, and values that other programs wrote.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "client/ui/dialer/core/settings.h"
#include "platform/automation/failure_number.h"
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
    reg::HKEY key = nullptr;

    void SetUp() override {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kw-settings-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        dir = pattern;
        reg::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
        key = OpenSettingsKey(platform);
    }
    void TearDown() override {
        reg::RegCloseKey(key);
        std::filesystem::remove_all(dir);
    }

    // The type of a value as the registry holds it; REG_NONE when absent.
    reg::DWORD TypeOf(const char* name) const {
        reg::DWORD type = reg::REG_NONE;
        reg::RegQueryValueExA(key, name, nullptr, &type, nullptr, nullptr);
        return type;
    }
    static void PutRaw(reg::HKEY to, const char* name, reg::DWORD type, const std::string& bytes) {
        ASSERT_EQ(
            reg::RegSetValueExA(to, name, 0, type, reinterpret_cast<const reg::BYTE*>(bytes.data()),
                                static_cast<reg::DWORD>(bytes.size())),
            reg::ERROR_SUCCESS);
    }
    // "<failure>:<text>" of a read of `name` whose default is "x".
    std::string Read(const char* name) const {
        Variant v("x");
        const int failure = FailureNumber([&] { QueryValueEx(key, name, v); });
        return std::to_string(failure) + ":" + v.ToString();
    }
};

TEST_F(SettingsTest, ShortsAndLongsAreDoubleWordsAndOtherKindsAreNotWritten) {
    // A calling card id written as a short is a double word, read back as a Long.
    ASSERT_EQ(SetValueEx(Variant(std::int16_t{-2}), key, settings::kCallingCard), 0);
    EXPECT_EQ(TypeOf(settings::kCallingCard), reg::REG_DWORD);
    Variant card(std::int32_t{0});
    EXPECT_EQ(QueryValueEx(key, settings::kCallingCard, card), 0);
    EXPECT_EQ(card.Type(), VarType::Long);
    EXPECT_EQ(card.ToLong(), -2);

    // Other kinds of values are not written at all.
    const std::pair<const char*, Variant> others[] = {{"Ratio", Variant(1.5)},
                                                      {"Flag", Variant(true)},
                                                      {"Nothing", Variant()},
                                                      {"Object", Variant(automation::ObjectRef{})}};
    for (const auto& [name, value] : others) {
        EXPECT_EQ(SetValueEx(value, key, name), 13) << name;
        EXPECT_EQ(TypeOf(name), reg::REG_NONE) << name;
    }
}

// A "%" with another at least two further on makes an expandable string, which reads fail with 91.
TEST_F(SettingsTest, PercentPairMakesAnExpandableStringThatCannotBeReadBack) {
    for (const char* text : {"50% of C:\\logs\\history.log", "C:\\100%%\\rx.log", "%%", "ab%"}) {
        ASSERT_EQ(SetValueEx(Variant(text), key, settings::kConnectHistoryFileName), 0) << text;
        EXPECT_EQ(TypeOf(settings::kConnectHistoryFileName), reg::REG_SZ) << text;
        EXPECT_EQ(Read(settings::kConnectHistoryFileName), "0:" + std::string(text));
    }
    for (const char* text : {"%a%", "%%a%", "%%%", "%APPDATA%\\Kestrelway\\history.log"}) {
        ASSERT_EQ(SetValueEx(Variant(text), key, settings::kConnectHistoryFileName), 0) << text;
        EXPECT_EQ(TypeOf(settings::kConnectHistoryFileName), reg::REG_EXPAND_SZ) << text;
        EXPECT_EQ(Read(settings::kConnectHistoryFileName), "91:x") << text;
    }
    // The reader that does not look at the type still sees the text, unexpanded.
    EXPECT_EQ(GetRegistryString(settings::kConnectHistoryFileName, settings::kUserKey,
                                reg::HKEY_CURRENT_USER),
              "%APPDATA%\\Kestrelway\\history.log");
}

TEST_F(SettingsTest, TextWrittenByOthersLosesItsLastCharacterWhateverItIs) {
    using namespace std::string_literals;
    for (const auto& [name, type, bytes, read] :
         {std::tuple{"Multi", reg::REG_MULTI_SZ, "one\0two\0\0"s, "0:one\0two\0"s},
          {"Bare", reg::REG_SZ, "abc"s, "0:ab"s},
          {"Empty", reg::REG_SZ, ""s, "5:x"s},  // no room at all for the buffer
          {"Big", reg::REG_DWORD_BIG_ENDIAN, "\0\0\0\x2a"s, "91:x"s}}) {
        PutRaw(key, name, type, bytes);
        EXPECT_EQ(Read(name), read) << name;
    }
    EXPECT_EQ(GetRegistryString("Bare", settings::kUserKey, reg::HKEY_CURRENT_USER), "ab");
    EXPECT_EQ(GetRegistryString("Bare", settings::kMachineKey, reg::HKEY_LOCAL_MACHINE), "")
        << "no such key";
}

}  // namespace
}  // namespace kw::dialer
