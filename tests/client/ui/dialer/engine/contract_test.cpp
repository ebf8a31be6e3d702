#include <gtest/gtest.h>

#include "client/ui/dialer/engine/dravlink.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "platform/automation/failure_number.h"
#include "platform/headless/headless_platform.h"
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

TEST(EngineFactory, ARegisteredEngineIsCreatedAfreshEachTimeAMissingOneFails429) {
    headless::HeadlessPlatform platform;
    EngineContext context{platform};
    EngineFactory::Register(
        "test.scripted", [](const EngineContext&) { return std::make_shared<ScriptedEngine>(); });
    auto first = EngineFactory::Create("test.scripted", context);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, EngineFactory::Create("test.scripted", context));
    EngineFactory::Unregister("test.scripted");
    try {
        EngineFactory::Create("test.scripted", context);
        FAIL() << "creating an unregistered engine must fail";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), 429);
        EXPECT_EQ(failure.Description(), "ActiveX component can't create object");
    }
}

}  // namespace
}  // namespace kw::dialer
