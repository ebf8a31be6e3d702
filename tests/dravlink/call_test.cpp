#include <algorithm>

#include "dravlink/simulator_fixture.h"
#include "platform/automation/failure.h"

namespace dravlink::testing {
namespace {

using kw::automation::CBool;
using kw::automation::CDbl;
using kw::automation::CLng;
using kw::automation::Failure;
using Codes = std::vector<int>;

const std::string kLab = "Engineering Lab";  // a plain call: no scenario of its own

// A hook that answers the prompts of one kind.
std::function<std::string(const Seen&)> Answer(std::string what, std::string answer) {
    return [=](const Seen& s) { return s.what == what ? answer : std::string(); };
}

bool Has(const std::vector<std::string>& texts, const std::string& part) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& t) { return t.find(part) != std::string::npos; });
}

TEST_F(SimulatorTest, AWholeCallGoesUpStepByStepReportsOnceASecondAndComesDownOnDisconnect) {
    Start();
    const std::int32_t handle = Call(kLab, 0);
    EXPECT_GT(handle, 0);
    EXPECT_TRUE(sink_.Codes().empty()) << "Connect returns before any progress";

    platform_.Advance(15000);
    EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 104, 105, 101, 202, 201, 1}));
    EXPECT_EQ(sink_.Of("P102")[0], "Modem detected: Standard 33600 bps Modem");
    EXPECT_EQ(sink_.Of("P103")[0].rfind("Dialing 512-555-0134", 0), 0u)
        << "the first number of an Austin location is an Austin POP: " << sink_.Of("P103")[0];
    EXPECT_EQ(sink_.Of("P1")[0], "Connected to Engineering Lab");
    EXPECT_GE(sink_.Of("S").size(), 5u) << "the Prescriber explains each step";

    // Statistics from the moment the modem has carrier, once a virtual second.
    const std::int64_t up = sink_.TimeOf("P104");
    ASSERT_GE(up, 0);
    EXPECT_GT(sink_.TimeOf("STATS"), up);
    const auto n = static_cast<std::int64_t>(sink_.stats.size());
    const auto seconds = (platform_.Now() - up) / 1000;
    EXPECT_GE(n, seconds - 1);
    EXPECT_LE(n, seconds + 1);

    // The arrays a client unpacks: 12 ISP figures, 10 tunnel figures.
    const auto& [isp, vpn] = sink_.stats.back();
    ASSERT_EQ(isp.ToArray().UBound(), 11);
    ASSERT_EQ(vpn.ToArray().UBound(), 9);
    const auto& [ispBefore, vpnBefore] = sink_.stats[sink_.stats.size() - 3];
    EXPECT_GT(CLng(isp.ToArray().Get(2)), CLng(ispBefore.ToArray().Get(2)))
        << "bytes received are cumulative";
    EXPECT_GT(CLng(vpn.ToArray().Get(0)), CLng(vpnBefore.ToArray().Get(0)));
    const double rxRate = CDbl(isp.ToArray().Get(3));
    EXPECT_GT(rxRate, 1000);
    EXPECT_LT(rxRate, 4000) << "a 28.8k modem link";
    EXPECT_LT(CDbl(isp.ToArray().Get(5)), 0) << "transmit rates fall below the zero line";
    EXPECT_GT(CDbl(vpn.ToArray().Get(5)), 100) << "round trip in milliseconds over a modem";

    std::string destination = kLab;
    std::string device;
    EXPECT_TRUE(CBool(engine_->GetConnectionNames(destination, device)));
    EXPECT_EQ(device, "Ostvarra VPN Adapter");
    EXPECT_EQ(CLng(engine_->GetLinkSpeed(device)), 28800);

    // A second Connect fails while the call is up, and while it is going down.
    EXPECT_THROW(engine_->Connect(kLab, false), Failure);
    const auto statsBefore = sink_.stats.size();
    std::int32_t h = handle;
    engine_->Disconnect(h);
    try {
        engine_->Connect(kLab, false);
        FAIL();
    } catch (const Failure& f) {
        EXPECT_EQ(f.Number(), 1012);
    }
    platform_.Advance(3000);
    EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 104, 105, 101, 202, 201, 1, 232, 231, 132, 31, 32}));
    platform_.Advance(5000);
    EXPECT_LE(sink_.stats.size(), statsBefore + 1) << "no statistics once the line is down";
    EXPECT_FALSE(engine_->InCall());

    // A stale handle is refused and brings nothing.
    std::int32_t stale = handle;
    EXPECT_FALSE(CBool(engine_->Disconnect(stale)));
    platform_.Advance(2000);
    EXPECT_EQ(sink_.Of("P32").size(), 1u);
    EXPECT_GT(CLng(engine_->Connect(kLab, false)), handle) << "a new call, a new handle";
}

TEST_F(SimulatorTest, AnInternetOnlyCallStopsAtTheIspAndATunnelOnlyCallDialsNothing) {
    Start();
    const std::int32_t internet = Call("Internet Only");
    std::string destination, device;
    ASSERT_TRUE(CBool(engine_->GetConnectionNames(destination, device)));
    EXPECT_EQ(destination, "Internet Only");
    EXPECT_EQ(device, "Standard 33600 bps Modem");
    Hangup(internet);
    EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 104, 105, 101, 1, 132, 31, 32}));
    const auto& [isp, vpn] = sink_.stats.back();
    EXPECT_GT(CLng(isp.ToArray().Get(2)), 0);
    EXPECT_EQ(CLng(vpn.ToArray().Get(0)), 0) << "no tunnel, no tunnel traffic";

    sink_.seen.clear();
    Hangup(Call("Branch Office over LAN"));
    EXPECT_EQ(sink_.Codes(), (Codes{202, 201, 1, 232, 231, 31, 32}));
}

// Scenarios that end on their own, each from a fresh engine, with what the client was told.
TEST_F(SimulatorTest, ScenariosRunToTheirEnd) {
    const struct {
        const char* scenario;
        int ms;
        Codes codes;
        std::vector<std::string> errors;
    } cases[] = {
        {"tunnel-unreachable", 15000, {102, 103, 104, 105, 101, 202, 232, 132, 31, 32}, {"2010"}},
        {"no-numbers", 15000, {102, 132, 31, 32}, {"2002"}},
        {"invalid-number", 4000, {102, 103}, {"2008"}},  // waits for the client to hang up ...
        {"invalid-number", 12000, {102, 103, 132, 31, 32}, {"2008"}},  // ... and then does
        {"input", 15000, {102, 103, 104, 105, 101, 202, 201, 232, 132, 31, 32}, {}},  // cancelled
        {"new-credentials", 15000, {102, 103, 104, 105, 101, 202, 201, 207, 1}, {}},
    };
    for (const auto& c : cases) {
        sink_.seen.clear();
        Start(c.scenario);
        Call(kLab, c.ms);
        EXPECT_EQ(sink_.Codes(), c.codes) << c.scenario;
        EXPECT_EQ(sink_.Of("E"), c.errors) << c.scenario;
    }
    ASSERT_EQ(sink_.Of("P207").size(), 1u);
    EXPECT_EQ(sink_.Of("P207")[0].substr(0, 4), "ana^") << "the new password follows the name";
}

// Scenarios that ask the user, each answered, and the answer acted on.
TEST_F(SimulatorTest, PromptsAreAnsweredAndTheCallGoesOnWithTheAnswer) {
    Start("busy");
    Call(kLab);
    const auto dialled = sink_.Of("P103");
    ASSERT_EQ(dialled.size(), 2u);
    EXPECT_NE(dialled[0], dialled[1]) << "a busy line moves on to the next number";
    EXPECT_TRUE(Has(sink_.Of("S"), "is busy"));
    EXPECT_EQ(sink_.Codes().back(), 1);

    Start("question");
    sink_.seen.clear();
    sink_.on = Answer("YESNO", "y");
    Call(kLab);
    ASSERT_EQ(sink_.Of("YESNO").size(), 1u);
    EXPECT_TRUE(Has(sink_.Of("YESNO"), "compression"));
    EXPECT_TRUE(Has(sink_.Of("S"), "Compression is on for this call."));
    EXPECT_EQ(sink_.Codes().back(), 1);

    Start("choice");
    sink_.seen.clear();
    sink_.on = [&](const Seen& s) { return s.what == "INFO" ? sink_.choicesOffered.at(2) : ""; };
    Call(kLab);
    ASSERT_EQ(sink_.choicesOffered.size(), 3u);
    EXPECT_EQ(sink_.Of("P202")[0], "Creating tunnel to " + sink_.choicesOffered[2]);
    EXPECT_EQ(sink_.Codes().back(), 1);

    Start();  // the sample gives the corporate destination its message of the day
    sink_.seen.clear();
    Call("Ostvarra Corporate");
    ASSERT_EQ(sink_.Of("OK").size(), 1u);
    EXPECT_EQ(sink_.Of("OK")[0].substr(0, 3), "***");
    EXPECT_GE(sink_.TimeOf("OK"), sink_.TimeOf("P1"));
}

TEST_F(SimulatorTest, ARefusedIspLoginAsksForAnotherAndRemembersItACancelledOneHangsUp) {
    Start("isp-password");
    // Cancelled, or answered with a placeholder password by a client that cannot show its dialog.
    for (const char* answer : {"", "ana^qqq"}) {
        sink_.seen.clear();
        sink_.on = Answer("LOGIN", answer);
        Call(kLab);
        EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 104, 105, 132, 31, 32})) << answer;
    }
    std::string user = "ana";
    std::string isp = "Bluewave Online";
    Variant login;
    engine_->GetISPLogin(user, isp, login);
    EXPECT_EQ(CStr(login.ToArray().Get(1)), "") << "the placeholder is not stored as a password";

    Start("isp-password");
    sink_.seen.clear();
    sink_.on = Answer("LOGIN", "ana.isp^n3w-pass");
    Call(kLab);
    EXPECT_EQ(sink_.Of("LOGIN"), std::vector<std::string>{"ana"}) << "offered the name on record";
    EXPECT_EQ(sink_.Codes().back(), 1);
    ASSERT_TRUE(CBool(engine_->GetISPLogin(user, isp, login)));
    EXPECT_EQ(CStr(login.ToArray().Get(0)), "ana.isp");
    EXPECT_EQ(CStr(login.ToArray().Get(1)), "n3w-pass");
}

TEST_F(SimulatorTest, APromptWaitsForItsAnswerWhileStatisticsKeepArriving) {
    Start("input");
    std::size_t statsDuringPrompt = 0;
    Codes codesDuringPrompt;
    sink_.on = [&](const Seen& s) {
        if (s.what != "INPUT")
            return std::string();
        // The user takes five seconds to type: the dialog's loop runs the engine's timers.
        const auto stats = sink_.stats.size();
        const auto codes = sink_.Codes();
        platform_.Advance(5000);
        statsDuringPrompt = sink_.stats.size() - stats;
        const auto now = sink_.Codes();
        codesDuringPrompt.assign(now.begin() + static_cast<long>(codes.size()), now.end());
        return std::string("042917");
    };
    Call(kLab, 20000);
    EXPECT_GE(statsDuringPrompt, 4u);
    EXPECT_TRUE(codesDuringPrompt.empty()) << "the call itself waits for the answer";
    EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 104, 105, 101, 202, 201, 1}));
}

TEST_F(SimulatorTest, ACallHomeFetchesTheFilesToTheEndCanBeCancelledAndNeverMeansNever) {
    Start("call-home");
    sink_.on = Answer("NLN", "y");
    Hangup(Call(kLab, 30000));
    ASSERT_GE(sink_.transfers.size(), 4u);
    const SafeArray& last = sink_.transfers.back().ToArray();
    ASSERT_EQ(last.UBound(), 8);
    EXPECT_EQ(CDbl(last.Get(7)), 100.0);
    EXPECT_EQ(CLng(last.Get(1)), CLng(last.Get(2))) << "the last report is of the last file";
    EXPECT_EQ(CLng(last.Get(3)), CLng(last.Get(4)));
    const SafeArray& first = sink_.transfers.front().ToArray();
    EXPECT_EQ(CLng(first.Get(1)), 1);
    EXPECT_LT(CDbl(first.Get(7)), 100.0);
    EXPECT_NE(CStr(first.Get(0)).find('\\'), std::string::npos) << "a path with backslashes";
    EXPECT_FALSE(CStr(first.Get(5)).empty());
    EXPECT_FALSE(CStr(first.Get(8)).empty());

    sink_.transfers.clear();
    const std::int32_t handle = Call(kLab, 11000);
    ASSERT_FALSE(sink_.transfers.empty());
    EXPECT_TRUE(CBool(engine_->CancelFileTransfer()));
    const auto reports = sink_.transfers.size();
    platform_.Advance(10000);
    EXPECT_EQ(sink_.transfers.size(), reports);
    EXPECT_FALSE(CBool(engine_->CancelFileTransfer()));
    Hangup(handle);

    sink_.on = Answer("NLN", "n");
    Hangup(Call(kLab));
    Call(kLab);
    EXPECT_EQ(sink_.Of("NLN").size(), 3u) << "after Never the offer does not come again";
}

// ---- handlers that call back into the engine ---------------------------------------------------

TEST_F(SimulatorTest, DisconnectInsideAProgressOrErrorHandlerStopsTheSetUpCleanly) {
    for (const char* scenario : {"", "invalid-number"}) {
        SCOPED_TRACE(scenario);
        Start(scenario);
        sink_.seen.clear();
        std::int32_t handle = 0;
        // As the client does on an error: the error box, then its disconnect branch.
        sink_.on = [&](const Seen& s) {
            if (s.what == (*scenario ? "E" : "P103"))
                engine_->Disconnect(handle);
            return std::string();
        };
        DialList("Home Office", kLab);
        handle = CLng(engine_->Connect(kLab, false));
        platform_.Advance(10000);
        EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 132, 31, 32}));
        EXPECT_FALSE(engine_->InCall());
    }
}

TEST_F(SimulatorTest, DisconnectWhileAQuestionIsOpenBringsTheLineDownInsideTheDialog) {
    Start("question");
    std::int32_t handle = 0;
    Codes codesInside;
    sink_.on = [&](const Seen& s) {
        if (s.what != "YESNO")
            return std::string();
        engine_->Disconnect(handle);
        platform_.Advance(3000);  // the box is still up; the line comes down meanwhile
        codesInside = sink_.Codes();
        return std::string("y");
    };
    DialList("Home Office", kLab);
    handle = CLng(engine_->Connect(kLab, false));
    platform_.Advance(15000);
    EXPECT_EQ(codesInside.back(), 32);
    EXPECT_EQ(sink_.Codes(), codesInside) << "nothing of the old call after the answer";
    EXPECT_FALSE(Has(sink_.Of("S"), "Compression is on for this call."));
}

TEST_F(SimulatorTest, ANewCallStartedFromTheLineDownHandlerRunsNormally) {
    Start();
    int calls = 0;
    sink_.on = [&](const Seen& s) {
        if (s.what == "P32" && calls++ == 0)
            engine_->Connect(kLab, false);
        return std::string();
    };
    Hangup(Call(kLab), 15000);
    const auto codes = sink_.Codes();
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 1), 2);
    EXPECT_TRUE(engine_->InCall());
}

TEST_F(SimulatorTest, ReleasingTheEngineInsideAHandlerEndsEverythingWithoutHarm) {
    Start();
    sink_.on = [&](const Seen& s) {
        if (s.what == "P104")
            Stop();
        return std::string();
    };
    Call(kLab);
    EXPECT_EQ(sink_.Codes(), (Codes{102, 103, 104}));
    EXPECT_EQ(platform_.LiveTimerCount(), 0) << "the engine's timers went with it";
}

TEST_F(SimulatorTest, LogoffDuringACallDropsItAtOnce) {
    Start();
    Call(kLab, 4000);
    EXPECT_TRUE(CBool(engine_->Logoff()));
    EXPECT_FALSE(engine_->InCall());
    const auto seen = sink_.seen.size();
    platform_.Advance(10000);
    EXPECT_EQ(sink_.seen.size(), seen);
    Variant list;
    EXPECT_THROW(engine_->GetPhoneList(list), Failure);
}

}  // namespace
}  // namespace dravlink::testing
