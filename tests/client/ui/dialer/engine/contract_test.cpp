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
using automation::SafeArray;
using test::ScriptedEngine;

TEST(EngineContract, CountryListIsReachedByNameOrFailsWith438) {
    ScriptedEngine engine;
    auto countries = SafeArray::OneDim(0, 1);
    countries.Set(0, Variant("UNITED STATES"));
    engine.Then("GetCountryList", Variant(true), {{0, Variant(countries)}});
    Variant list;
    EXPECT_TRUE(automation::CBool(GetCountryList(engine, list)));
    ASSERT_TRUE(list.IsArray());
    EXPECT_EQ(automation::CStr(list.ToArray().Get(0)), "UNITED STATES");
    ASSERT_EQ(engine.CallNames(), std::vector<std::string>{"GetCountryList"});
    EXPECT_EQ(engine.GetIDsOfNames("getpolicysetting"), 52) << "names resolve in any case";

    ScriptedEngine older;
    older.SetCountryListAvailable(false);
    try {
        GetCountryList(older, list);
        FAIL() << "an unresolvable name must fail";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), 438);
        EXPECT_EQ(failure.Description(), "Object doesn't support this property or method");
    }
    EXPECT_TRUE(older.Calls().empty());
    EXPECT_EQ(FailureNumber([&] { older.Invoke(4242, {}); }), 438);
}

TEST(EngineContract, CallsByNameCarryOutArgumentsBackIntoTheCallersVariants) {
    ScriptedEngine engine;
    engine.Then("GetLocationProperty", Variant(true), {{2, Variant("512")}});
    engine.Then("Disconnect", Variant(true), {{0, Variant(std::int32_t{0})}});

    std::vector<Variant> args{Variant("Home"), Variant("AreaCode"), Variant("")};
    EXPECT_TRUE(automation::CBool(CallByName(engine, "GetLocationProperty", args)));
    EXPECT_EQ(automation::CStr(args[2]), "512");
    ASSERT_EQ(engine.CallsTo("GetLocationProperty").size(), 1u);
    EXPECT_EQ(engine.CallsTo("GetLocationProperty")[0].args[1], Variant("AreaCode"));

    std::vector<Variant> handle{Variant(std::int32_t{7})};
    CallByName(engine, "Disconnect", handle);
    EXPECT_EQ(engine.CallsTo("Disconnect")[0].args[0], Variant(std::int32_t{7}));
    EXPECT_EQ(automation::CLng(handle[0]), 0);

    std::vector<Variant> tooFew{Variant("Home")};
    EXPECT_EQ(FailureNumber([&] { CallByName(engine, "GetLocationProperty", tooFew); }), 450);
}

class NamedEngines : public ::testing::Test {
  protected:
    void TearDown() override { EngineFactory::Unregister("test.scripted"); }
};

TEST_F(NamedEngines, ARegisteredEngineIsCreatedByItsNameEachTimeAfreshAMissingOneFails429) {
    headless::HeadlessPlatform platform;
    EngineContext context{platform};
    try {
        EngineFactory::Create("dravlink.nowhere", context);
        FAIL() << "creating an unregistered engine must fail";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), 429);
        EXPECT_EQ(failure.Description(), "ActiveX component can't create object");
    }
    EngineFactory::Register(
        "test.scripted", [&](const EngineContext&) { return std::make_shared<ScriptedEngine>(); });
    auto first = EngineFactory::Create("test.scripted", context);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, EngineFactory::Create("test.scripted", context));
    EngineFactory::Unregister("test.scripted");
    EXPECT_EQ(FailureNumber([&] { EngineFactory::Create("test.scripted", context); }), 429);
}

TEST_F(NamedEngines, TheMachineSettingChoosesTheEngineAndTheSimulatorIsTheDefault) {
    namespace reg = registry;
    const auto dir = std::filesystem::temp_directory_path() /
                     ("kw-engine-setting-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const auto saved = reg::DefaultConfig();
    reg::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});

    EXPECT_EQ(ConfiguredEngineName(), "dravlink.sim");
    headless::HeadlessPlatform platform;
    EngineContext context{platform};
    if (!EngineFactory::IsRegistered("dravlink.sim")) {
        // This program links no simulator: the default is then a missing server.
        EXPECT_EQ(FailureNumber([&] { CreateEngine(context); }), 429);
    }

    EngineFactory::Register(
        "test.scripted", [](const EngineContext&) { return std::make_shared<ScriptedEngine>(); });
    reg::HKEY key = nullptr;
    ASSERT_EQ(reg::RegCreateKeyExA(reg::HKEY_LOCAL_MACHINE, "Software\\Ostvarra", 0, nullptr, 0,
                                   reg::KEY_ALL_ACCESS, nullptr, &key, nullptr),
              reg::ERROR_SUCCESS);
    auto setEngine = [&](const std::string& name) {
        return reg::RegSetValueExA(key, "Engine", 0, reg::REG_SZ,
                                   reinterpret_cast<const reg::BYTE*>(name.c_str()),
                                   static_cast<reg::DWORD>(name.size() + 1));
    };
    ASSERT_EQ(setEngine("test.scripted"), reg::ERROR_SUCCESS);
    EXPECT_EQ(ConfiguredEngineName(), "test.scripted");
    EXPECT_NE(std::dynamic_pointer_cast<ScriptedEngine>(CreateEngine(context)), nullptr);
    setEngine("dravlink.retired");
    reg::RegCloseKey(key);
    EXPECT_EQ(FailureNumber([&] { CreateEngine(context); }), 429);

    reg::Configure(saved);
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace kw::dialer
