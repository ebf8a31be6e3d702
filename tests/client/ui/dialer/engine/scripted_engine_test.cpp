#include <gtest/gtest.h>

#include "platform/automation/failure.h"
#include "support/scripted_engine.h"

namespace kw::test {
namespace {

using automation::CBool;
using automation::CLng;
using automation::Failure;

// A double that answered out of turn would let the program's tests pass on the wrong path.
TEST(ScriptedEngine, AnswersFromTheScriptInTurnThenTheDefaultAndRecordsEveryCall) {
    ScriptedEngine engine;
    engine.Then("Logon", Variant(false));
    engine.Default("GetPolicySetting", Variant(true), {{2, Variant("0")}});
    engine.Then("GetPolicySetting", Variant(true), {{2, Variant("1")}});
    engine.ThenFail("Connect", Failure(1019, "no device"));
    std::string user = "ana", password = "pw", value;
    EXPECT_FALSE(CBool(engine.Logon(user, password, "")));
    EXPECT_TRUE(CBool(engine.Logon(user, password, ""))) << "unscripted: true";
    engine.GetPolicySetting(user, "POPordering", value);
    EXPECT_EQ(value, "1");
    engine.GetPolicySetting(user, "ISPordering", value);
    EXPECT_EQ(value, "0");
    EXPECT_THROW(engine.Connect("Office", false), Failure);
    EXPECT_EQ(CLng(engine.Connect("Office", false)), 1) << "then a handle";
    EXPECT_EQ(engine.CallNames(),
              (std::vector<std::string>{"Logon", "Logon", "GetPolicySetting", "GetPolicySetting",
                                        "Connect", "Connect"}));
    EXPECT_EQ(engine.CallsTo("GetPolicySetting")[1].args,
              (std::vector<Variant>{Variant("ana"), Variant("ISPordering"), Variant("1")}));
}

TEST(ScriptedEngine, RaisingWithNobodyListeningIsAMistakeOfTheTest) {
    ScriptedEngine engine;
    EXPECT_THROW(engine.RaiseStatusUpdate("nobody listens"), std::logic_error);
}

}  // namespace
}  // namespace kw::test
