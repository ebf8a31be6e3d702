#include <algorithm>
#include <set>

#include "dravlink/simulator_fixture.h"

namespace dravlink::testing {
namespace {

using kw::automation::CBool;
using kw::automation::CDbl;
using kw::automation::CLng;
using Codes = std::vector<int>;

const std::string kLab = "Engineering Lab";  // a plain call: no scenario of its own
const Codes kUp{102, 103, 104, 105, 101, 202, 201, 1};
const Codes kUpAndDown{102, 103, 104, 105, 101, 202, 201, 1, 232, 231, 132, 31, 32};

// A hook that answers the prompts of one kind.
std::function<std::string(const Seen&)> Answer(std::string what, std::string answer) {
    return [=](const Seen& s) { return s.what == what ? answer : std::string(); };
}

TEST_F(SimulatorTest, ACallGoesUpStepByStepAfterConnectReturns) {
    Start();
    EXPECT_GT(Call(kLab, 0), 0);
    EXPECT_TRUE(sink_.Codes().empty()) << "Connect returns before any progress";
    platform_.Advance(15000);
    EXPECT_EQ(sink_.Codes(), kUp);
    EXPECT_EQ(sink_.Of("P103")[0].rfind("Dialing 512-555-0134", 0), 0u)
        << "the first number of an Austin location is an Austin POP: " << sink_.Of("P103")[0];
    EXPECT_EQ(sink_.Of("P1")[0], "Connected to Engineering Lab");
    EXPECT_GE(sink_.Of("S").size(), 5u) << "the Prescriber explains each step";
}

TEST_F(SimulatorTest, ConnectFailsWhileACallIsUpAndWhileItGoesDown) {
    Start();
    std::int32_t handle = Call(kLab);
    const auto number = [&] { return FailureOf([&] { engine_->Connect(kLab, false); }).Number(); };
    EXPECT_EQ(number(), 1011);
    engine_->Disconnect(handle);
    EXPECT_EQ(number(), 1012);
}

TEST_F(SimulatorTest, TheStatisticsStopWithTheLine) {
    Start();
    Hangup(Call(kLab));
    EXPECT_FALSE(engine_->InCall());
    const auto stats = sink_.stats.size();
    platform_.Advance(5000);
    EXPECT_EQ(sink_.stats.size(), stats);
}

TEST_F(SimulatorTest, AnOldHandleIsRefusedAndTheNextCallHasANewOne) {
    Start();
    const std::int32_t handle = Call(kLab);
    Hangup(handle);
    std::int32_t stale = handle;
    EXPECT_FALSE(CBool(engine_->Disconnect(stale)));
    platform_.Advance(2000);
    EXPECT_EQ(sink_.Of("P32").size(), 1u);
    EXPECT_GT(CLng(engine_->Connect(kLab, false)), handle);
}

// Names, speed, tunnel traffic and the way down of each kind of call once it is up.
TEST_F(SimulatorTest, EachKindOfCallGoesUpItsOwnWay) {
    const Codes modemOnly{102, 103, 104, 105, 101, 1, 132, 31, 32};
    const Codes overLan{202, 201, 1, 232, 231, 31, 32};
    const struct {
        const char* scenario;
        const char* destination;
        const char* device;
        int bps;
        bool tunnelTraffic;
        const Codes& codes;
    } cases[] = {{"", kLab.c_str(), "Ostvarra VPN Adapter", 28800, true, kUpAndDown},
                 {"fast-link", kLab.c_str(), "Ostvarra VPN Adapter", 4000000, true, kUpAndDown},
                 {"", "Internet Only", "Standard 33600 bps Modem", 28800, false, modemOnly},
                 {"", "Branch Office over LAN", "Ostvarra VPN Adapter", 10000000, true, overLan}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.destination) + " " + c.scenario);
        Start(c.scenario);
        const std::int32_t handle = Call(c.destination);
        std::string destination, device;
        ASSERT_TRUE(CBool(engine_->GetConnectionNames(destination, device)));
        EXPECT_EQ(destination, c.destination);
        EXPECT_EQ(device, c.device);
        EXPECT_EQ(CLng(engine_->GetLinkSpeed(device)), c.bps);
        EXPECT_EQ(CDbl(sink_.stats.back().second.ToArray().Get(0)) > 0, c.tunnelTraffic);
        Hangup(handle);
        EXPECT_EQ(sink_.Codes(), c.codes);
    }
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
        {"new-credentials", 15000, {102, 103, 104, 105, 101, 202, 201, 207, 1}, {}},
    };
    for (const auto& c : cases) {
        Start(c.scenario);
        Call(kLab, c.ms);
        EXPECT_EQ(sink_.Codes(), c.codes) << c.scenario;
        EXPECT_EQ(sink_.Of("E"), c.errors) << c.scenario;
    }
    ASSERT_EQ(sink_.Of("P207").size(), 1u);
    EXPECT_EQ(sink_.Of("P207")[0].substr(0, 4), "ana^") << "the new password follows the name";
}

TEST_F(SimulatorTest, ABusyLineMovesOnToTheNextNumber) {
    Start("busy");
    Call(kLab);
    const auto dialled = sink_.Of("P103");
    ASSERT_EQ(dialled.size(), 2u);
    EXPECT_NE(dialled[0], dialled[1]);
    EXPECT_TRUE(Has(sink_.Of("S"), "is busy"));
    EXPECT_EQ(sink_.Codes().back(), 1);
}

// The alternate tunnel server the user stored takes the place of the destination's own.
TEST_F(SimulatorTest, TheAlternateTunnelServerIsUsedAndAnUnreachableOneFailsTheTunnel) {
    const struct {
        const char* server;
        int last;
    } cases[] = {{"10.20.30.40", 1}, {"999.1.2.3", 32}, {"192.0.2.7", 32}};
    for (const auto& c : cases) {
        Start();
        const std::string server = c.server;
        StoreSetting("AlternateTunnelServer", server);
        Call(kLab);
        EXPECT_EQ(sink_.Of("P202"), std::vector<std::string>{"Creating tunnel to " + server});
        EXPECT_TRUE(Has(sink_.Of("S"), "alternate server " + server)) << c.server;
        EXPECT_EQ(sink_.Codes().back(), c.last) << c.server;
        EXPECT_EQ(sink_.Of("E") == std::vector<std::string>{"2010"}, c.last == 32) << c.server;
    }
}

// The refused login offers the name on record; cancelled, or answered with a placeholder password
// by a client that cannot show its dialog, the call hangs up and nothing is stored.
TEST_F(SimulatorTest, ARefusedIspLoginKeepsANewPairAndHangsUpWithoutOne) {
    const struct {
        const char* answer;
        Codes codes;
        const char* user;
        const char* password;
    } cases[] = {{"", {102, 103, 104, 105, 132, 31, 32}, "ana", ""},
                 {"ana^qqq", {102, 103, 104, 105, 132, 31, 32}, "ana", ""},
                 {"ana.isp^n3w-pass", kUp, "ana.isp", "n3w-pass"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.answer);
        Start("isp-password");
        sink_.on = Answer("LOGIN", c.answer);
        Call(kLab);
        EXPECT_EQ(sink_.Of("LOGIN"), std::vector<std::string>{"ana"});
        EXPECT_EQ(sink_.Codes(), c.codes);
        EXPECT_EQ(IspLogin("ana", "Bluewave Online"), (Login{c.user, c.password}));
    }
}

// The login the user gave cannot be stored: the client hears why as an error event, and the call,
// which holds the login in memory, goes on up.
TEST_F(SimulatorTest, ALoginThatCannotBeStoredIsReportedAndTheCallGoesOn) {
    Start("isp-password");
    std::filesystem::create_directories(dataDir_ / "isplogins.ini");
    sink_.on = Answer("LOGIN", "ana.isp^n3w-pass");
    Call(kLab);
    ASSERT_EQ(sink_.Of("E").size(), 1u);
    EXPECT_NE(sink_.Of("E")[0].find("cannot save isplogins.ini"), std::string::npos);
    EXPECT_EQ(sink_.Codes().back(), 1);
}

// A report: path, file n of m, bytes of the file and of its size, time left, percent, rate.
TEST_F(SimulatorTest, ACallHomeFetchesEveryFileToTheEnd) {
    Start("call-home");
    sink_.on = Answer("NLN", "y");
    Call(kLab, 200000);
    ASSERT_GE(sink_.transfers.size(), 4u);
    const SafeArray& first = sink_.transfers.front().ToArray();
    const SafeArray& last = sink_.transfers.back().ToArray();
    ASSERT_EQ(last.UBound(), 8);
    EXPECT_EQ(std::pair(CLng(first.Get(1)), CLng(first.Get(2))), std::pair(1, 3));
    EXPECT_EQ(std::pair(CLng(last.Get(1)), CLng(last.Get(3))), std::pair(3, CLng(last.Get(4))));
    EXPECT_EQ(CDbl(last.Get(7)), 100.0);
}

TEST_F(SimulatorTest, ACancelledTransferReportsNoMore) {
    Start("call-home");
    sink_.on = Answer("NLN", "y");
    Call(kLab, 11000);
    ASSERT_FALSE(sink_.transfers.empty());
    EXPECT_TRUE(CBool(engine_->CancelFileTransfer()));
    const auto reports = sink_.transfers.size();
    platform_.Advance(10000);
    EXPECT_EQ(sink_.transfers.size(), reports);
    EXPECT_FALSE(CBool(engine_->CancelFileTransfer()));
}

TEST_F(SimulatorTest, LaterAsksAgainAtTheNextCallNeverDoesNot) {
    for (const auto& [answer, offers] : {std::pair{"", 2u}, std::pair{"n", 1u}}) {
        Start("call-home");
        sink_.on = Answer("NLN", answer);
        Hangup(Call(kLab));
        Call(kLab);
        EXPECT_EQ(sink_.Of("NLN").size(), offers) << answer;
    }
}

// As the client does on an error or a cancelled prompt: after the Disconnect inside the handler,
// nothing more of the set-up comes, only the way down.
TEST_F(SimulatorTest, DisconnectInsideAHandlerStopsTheSetUpCleanly) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "P103"},       {"invalid-number", "E"},   {"question", "YESNO"},
        {"input", "INPUT"}, {"isp-password", "LOGIN"}, {"call-home", "NLN"}};
    for (const auto& [scenario, event] : cases) {
        SCOPED_TRACE(event);
        Start(scenario);
        std::int32_t handle = 0;
        std::size_t at = 0;
        sink_.on = [&, event = event](const Seen& s) {
            if (s.what == event && at == 0) {
                at = sink_.seen.size();
                engine_->Disconnect(handle);
            }
            return std::string();
        };
        handle = Call(kLab, 0);
        platform_.Advance(15000);
        ASSERT_GT(at, 0u);
        const std::set<std::string> down{"P232", "P231", "P132", "P31", "P32"};
        for (auto s = sink_.seen.begin() + static_cast<long>(at); s != sink_.seen.end(); ++s)
            EXPECT_EQ(down.count(s->what), 1u) << s->what;
        EXPECT_EQ(sink_.seen.back().what, "P32");
        EXPECT_FALSE(engine_->InCall());
    }
}

// Wherever a handler lets go of the engine or logs off, nothing more comes and no timer is left.
TEST_F(SimulatorTest, EndingEverythingInsideAHandlerIsHarmless) {
    const struct {
        const char* scenario;
        const char* event;
        bool logoff;  // else the engine is released
    } cases[] = {
        {"", "P104", false},          {"", "STATS", false}, {"question", "YESNO", false},
        {"call-home", "XFER", false}, {"", "P231", false},  {"", "P32", false},
        {"question", "YESNO", true},  {"", "STATS", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.event) + (c.logoff ? " logoff" : " release"));
        Start(c.scenario);
        int ended = 0;
        sink_.on = [&](const Seen& s) {
            if (s.what == c.event && ended++ == 0)
                c.logoff ? static_cast<void>(engine_->Logoff()) : Stop();
            return s.what == "NLN" ? std::string("y") : std::string();
        };
        const std::int32_t handle = Call(kLab, 20000);
        if (engine_)
            Hangup(handle);
        ASSERT_EQ(ended, 1);
        const auto seen = sink_.seen.size();
        platform_.Advance(10000);
        EXPECT_EQ(sink_.seen.size(), seen);
        EXPECT_EQ(sink_.seen.back().what, c.event) << "nothing after the handler";
        EXPECT_EQ(platform_.LiveTimerCount(), 0);
    }
}

}  // namespace
}  // namespace dravlink::testing
