#include <gtest/gtest.h>

#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"
#include "support/scripted_engine.h"

namespace kw::test {
namespace {

using automation::CBool;
using automation::CLng;
using automation::Failure;

// A sink that answers like a user would and remembers what it was told.
class AnsweringSink : public dialer::DravlinkEvents {
  public:
    std::vector<std::string> seen;
    std::string credentials = "isp-user^secret";
    bool yes = true;
    std::function<void()> insideProgress;

    void CHXferUpdate(Variant&, Variant& transfer) override {
        seen.push_back("xfer " + automation::CStr(transfer.ToArray().Get(0)));
    }
    void ErrorEvent(std::string& m) override { seen.push_back("error " + m); }
    void GetConnectionStatistics(Variant&, Variant&) override { seen.push_back("stats"); }
    void GetGenericISPList(std::string& m, Variant&) override { seen.push_back("list " + m); }
    void GetUserInfo(std::string&, Variant& choices, std::string& answer) override {
        answer = automation::CStr(choices.ToArray().Get(1));
    }
    void GetUserInput(std::string&, std::string& def, std::string& answer) override {
        answer = def + "-typed";
    }
    void GetUsernamePassword(std::string&, std::string& user) override { user = credentials; }
    void GetUserOk(std::string& m) override { seen.push_back("ok " + m); }
    void GetUserYesNo(std::string&, bool& answer) override { answer = yes; }
    void GetUserNowLaterNever(std::string&, std::string& answer) override { answer = "l"; }
    void DravDebug(std::string& t) override { seen.push_back("debug " + t); }
    void ProgressUpdate(std::int16_t code, std::string& text) override {
        seen.push_back(std::to_string(code) + " " + text);
        if (insideProgress) {
            insideProgress();
        }
    }
    void StatusUpdate(std::string& t) override { seen.push_back("status " + t); }
};

TEST(ScriptedEngine, AnswersFromTheScriptThenTheDefaultRecordsCallsAndFails) {
    ScriptedEngine engine;
    engine.Then("Logon", Variant(false));
    engine.Default("GetPolicySetting", Variant(true), {{2, Variant("0")}});
    engine.Then("GetPolicySetting", Variant(true), {{2, Variant("1")}});
    std::string user = "ana";
    std::string password = "pw";
    EXPECT_FALSE(CBool(engine.Logon(user, password, "")));
    EXPECT_TRUE(CBool(engine.Logon(user, password, ""))) << "unscripted: true";
    std::string value = "before";
    engine.GetPolicySetting(user, "POPordering", value);
    EXPECT_EQ(value, "1");
    engine.GetPolicySetting(user, "ISPordering", value);
    EXPECT_EQ(value, "0");
    EXPECT_EQ(engine.PendingReplies(), 0u);
    EXPECT_EQ(CLng(engine.BuildDialList("Home", "Office")), 0) << "long results default to 0";

    EXPECT_EQ(engine.CallNames(), (std::vector<std::string>{"Logon", "Logon", "GetPolicySetting",
                                                            "GetPolicySetting", "BuildDialList"}));
    EXPECT_EQ(engine.CallsTo("GetPolicySetting")[1].args,
              (std::vector<Variant>{Variant("ana"), Variant("ISPordering"), Variant("1")}))
        << "arguments as they arrived";
    engine.ClearCalls();
    EXPECT_TRUE(engine.Calls().empty());

    engine.ThenFail("Connect", Failure(1019, "no device"));
    try {
        engine.Connect("Office", false);
        FAIL();
    } catch (const Failure& f) {
        EXPECT_EQ(f.Number(), 1019);
        EXPECT_EQ(f.Description(), "no device");
    }
    EXPECT_EQ(CLng(engine.Connect("Office", false)), 1) << "then a handle";
    EXPECT_EQ(engine.CountOf("Connect"), 2) << "a failed call is recorded too";
    engine.AlwaysFail("Logoff", Failure(0x800706BA));
    EXPECT_THROW(engine.Logoff(), Failure);
    EXPECT_THROW(engine.Logoff(), Failure) << "and again";
}

TEST(ScriptedEngine, RaisesEventsAndHandsBackTheHandlersAnswers) {
    ScriptedEngine engine;
    AnsweringSink sink;
    EXPECT_THROW(engine.RaiseStatusUpdate("nobody listens"), std::logic_error);
    engine.Advise(&sink);

    EXPECT_EQ(engine.RaiseGetUsernamePassword("ISP login", "ana"), "isp-user^secret");
    sink.yes = false;
    EXPECT_FALSE(engine.RaiseGetUserYesNo("Proceed?", true));
    EXPECT_EQ(engine.RaiseGetUserNowLaterNever("Call home now?"), "l");

    auto choices = automation::SafeArray::OneDim(0, 1);
    choices.Set(0, Variant("east"));
    choices.Set(1, Variant("west"));
    EXPECT_EQ(engine.RaiseGetUserInfo("Which server?", Variant(choices)), "west");
    EXPECT_EQ(engine.RaiseGetUserInput("Passcode", "12"), "12-typed");

    engine.RaiseProgressUpdate(102, "Modem detected");
    engine.RaiseErrorEvent("2010");
    auto transfer = automation::SafeArray::OneDim(0, 8);
    transfer.Set(0, Variant("C:\\home\\update.cab"));
    engine.RaiseCHXferUpdate(Variant(transfer));
    EXPECT_EQ(sink.seen, (std::vector<std::string>{"102 Modem detected", "error 2010",
                                                   "xfer C:\\home\\update.cab"}));
    engine.Unadvise();
    EXPECT_THROW(engine.RaiseProgressUpdate(1, "Connected"), std::logic_error);
}

TEST(ScriptedEngine, EventsRaisedInsideACallReachTheSinkBeforeTheCallReturns) {
    ScriptedEngine engine;
    AnsweringSink sink;
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
