#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "client/ui/dialer/engine/dravlink.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "platform/automation/failure_number.h"
#include "platform/automation/safe_array.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"

namespace kw::dialer {
namespace {

using automation::Failure;
using test::ScriptedEngine;

// An engine that predates the country list cannot resolve its name: the program gets 438.
TEST(EngineContract, CountryListOfAnEngineWithoutItFailsWith438BeforeAnyCall) {
    ScriptedEngine older;
    older.SetCountryListAvailable(false);
    Variant list;
    try {
        GetCountryList(older, list);
        FAIL() << "an unresolvable name must fail";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), 438);
        EXPECT_EQ(failure.Description(), "Object doesn't support this property or method");
    }
    EXPECT_TRUE(older.Calls().empty());
    EXPECT_EQ(FailureNumber([&] { older.Invoke(4242, {}); }), 438);
    EXPECT_EQ(older.GetIDsOfNames("getpolicysetting"), 52) << "names resolve in any case";
}

TEST(EngineContract, ACallByNameWithTooFewArgumentsFailsWith450) {
    ScriptedEngine engine;
    std::vector<Variant> tooFew{Variant("Home")};
    EXPECT_EQ(FailureNumber([&] { CallByName(engine, "GetLocationProperty", tooFew); }), 450);
}

class NamedEngines : public ::testing::Test {
  protected:
    void SetUp() override {
        saved = registry::DefaultConfig();
        std::filesystem::create_directories(dir);
        registry::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
        EngineFactory::Register("test.scripted", [](const EngineContext&) {
            return std::make_shared<ScriptedEngine>();
        });
    }
    void TearDown() override {
        EngineFactory::Unregister("test.scripted");
        registry::Configure(saved);
        std::filesystem::remove_all(dir);
    }
    void SetMachineEngine(const std::string& name) {
        namespace reg = registry;
        reg::HKEY key = nullptr;
        ASSERT_EQ(reg::RegCreateKeyExA(reg::HKEY_LOCAL_MACHINE, "Software\\Ostvarra", 0, nullptr, 0,
                                       reg::KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  reg::ERROR_SUCCESS);
        reg::RegSetValueExA(key, "Engine", 0, reg::REG_SZ,
                            reinterpret_cast<const reg::BYTE*>(name.c_str()),
                            static_cast<reg::DWORD>(name.size() + 1));
        reg::RegCloseKey(key);
    }

    const std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                      ("kw-engine-setting-" + std::to_string(::getpid()));
    registry::RegistryConfig saved;
    headless::HeadlessPlatform platform;
    EngineContext context{platform};
};

TEST_F(NamedEngines, ARegisteredEngineIsCreatedAfreshEachTimeAMissingOneFails429) {
    auto first = EngineFactory::Create("test.scripted", context);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, EngineFactory::Create("test.scripted", context));
    try {
        EngineFactory::Create("dravlink.nowhere", context);
        FAIL() << "creating an unregistered engine must fail";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), 429);
        EXPECT_EQ(failure.Description(), "ActiveX component can't create object");
    }
}

TEST_F(NamedEngines, TheMachineSettingChoosesTheEngineAndTheSimulatorIsTheDefault) {
    EXPECT_EQ(ConfiguredEngineName(), "dravlink.sim");
    SetMachineEngine("test.scripted");
    EXPECT_NE(std::dynamic_pointer_cast<ScriptedEngine>(CreateEngine(context)), nullptr);
    SetMachineEngine("dravlink.retired");
    EXPECT_EQ(FailureNumber([&] { CreateEngine(context); }), 429);
}

}  // namespace
}  // namespace kw::dialer
