#include <gtest/gtest.h>

#include "platform/automation/failure.h"
#include "support/scripted_engine.h"

namespace kw::test {
namespace {

using automation::CBool;
using automation::CLng;
using automation::Failure;

// Hears progress and the list; a handler may call back into the engine.
class ProgressSink : public dialer::DravlinkEvents {
  public:
    std::vector<std::string> seen;
    std::function<void()> insideProgress;

    void CHXferUpdate(Variant&, Variant&) override {}
    void ErrorEvent(std::string&) override {}
    void GetConnectionStatistics(Variant&, Variant&) override {}
    void GetGenericISPList(std::string& m, Variant&) override { seen.push_back("list " + m); }
    void GetUserInfo(std::string&, Variant&, std::string&) override {}
    void GetUserInput(std::string&, std::string&, std::string&) override {}
    void GetUsernamePassword(std::string&, std::string&) override {}
    void GetUserOk(std::string&) override {}
    void GetUserYesNo(std::string&, bool&) override {}
    void GetUserNowLaterNever(std::string&, std::string&) override {}
    void DravDebug(std::string&) override {}
    void ProgressUpdate(std::int16_t code, std::string& text) override {
        seen.push_back(std::to_string(code) + " " + text);
        if (insideProgress)
            insideProgress();
    }
    void StatusUpdate(std::string&) override {}
};

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

TEST(ScriptedEngine, EventsRaisedInsideACallReachTheSinkBeforeTheCallReturns) {
    ScriptedEngine engine;
    ProgressSink sink;
    EXPECT_THROW(engine.RaiseStatusUpdate("nobody listens"), std::logic_error);
    engine.Advise(&sink);
    engine.OnCall("BuildDialList", [&] { engine.RaiseGetGenericISPList("", Variant()); });
    // A handler calling back into the engine is recorded in the order it happened.
    sink.insideProgress = [&] {
        std::int32_t handle = 3;
        engine.Disconnect(handle);
    };
    engine.OnCall("Connect", [&] { engine.RaiseProgressUpdate(102, "Modem"); });
    engine.BuildDialList("Home", "Office");
    engine.Connect("Office", false);
    EXPECT_EQ(sink.seen, (std::vector<std::string>{"list ", "102 Modem"}));
    EXPECT_EQ(engine.CallNames(),
              (std::vector<std::string>{"BuildDialList", "Connect", "Disconnect"}));
}

}  // namespace
}  // namespace kw::test
