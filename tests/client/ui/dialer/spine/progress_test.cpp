// The six lights, the status line, the bus and the two logs as progress codes arrive.
#include <gtest/gtest.h>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

// The codes of a call that comes up, in the order the engine sends them, with each one's light.
const std::vector<std::tuple<std::int16_t, std::string, std::string>> kCallUp = {
    {102, "Modem found", "imgModemDetected"},
    {103, "Dialing 555-0100", "imgPhoneDialing"},
    {104, "Connecting to ISP", "imgConnectingISP"},
    {105, "Logging on to ISP", "imgAuthorizingISP"},
    {202, "Creating tunnel", "imgCreatingTunnel"},
    {201, "Tunnel created", "imgAuthorizingTunnel"},
    {1, "Connected", "imgLogoOn"},
};

class ProgressTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
    }
    void Listen(std::initializer_list<std::int32_t> codes) {
        for (const std::int32_t code : codes) {
            app->EventManagerObject.registerForEvent(code, &bus);
        }
    }
    void RaiseCallUp() {
        for (const auto& [code, text, light] : kCallUp) {
            engine->RaiseProgressUpdate(code, text);
        }
    }
    BusListener bus;  // outlives the program: never deregisters
};

// A call just started.
class CallUpTest : public ProgressTest {
  protected:
    void SetUp() override {
        ProgressTest::SetUp();
        StartIdle();
        Win().btnConnect.UserClick();
    }
};

TEST_F(CallUpTest, TheLightsComeOnInTheOrderOfTheirCodes) {
    DisplayRecorder recorder;
    Win().AddObserver(&recorder);
    RaiseCallUp();
    Win().RemoveObserver(&recorder);
    std::vector<std::string> expected;
    for (const auto& [code, text, light] : kCallUp) {
        expected.push_back("+" + light);
    }
    EXPECT_EQ(recorder.lights, expected);
}

TEST_F(CallUpTest, TheBusHearsEachCode) {
    Listen({1, 102, 103, 104, 105, 201, 202});
    RaiseCallUp();
    EXPECT_EQ(bus.heard, (std::vector<std::int32_t>{102, 103, 104, 105, 202, 201, 1}));
}

TEST_F(CallUpTest, EachLightsTipAndTheStatusLineTellTheCodesText) {
    RaiseCallUp();
    EXPECT_EQ(Win().lblStatus.Caption(), "Connected");
    EXPECT_EQ(Win().imgPhoneDialing.ToolTipText(), "Dialing 555-0100");
    EXPECT_EQ(Win().imgAuthorizingTunnel.ToolTipText(), "Connected");
}

TEST_F(ProgressTest, InvalidCodesShowTheirNumberAndTheBusHearsNothing) {
    StartIdle();
    Listen({0, 200});
    for (std::int16_t code : {0, 200}) {
        engine->RaiseProgressUpdate(code, "invalid");
        EXPECT_EQ(Win().lblStatus.Caption(),
                  "Invalid Progress Update. [" + std::to_string(code) + "]");
    }
    EXPECT_TRUE(bus.heard.empty());
}

TEST_F(CallUpTest, Code132DarkensTheModemLightsEndsTheMonitorAndKeepsTheTunnelLights) {
    engine->RaiseProgressUpdate(101, "Monitoring");
    EXPECT_TRUE(app->Form<PerfPulldown>().Monitoring());
    EXPECT_EQ(app->Form<PerfPulldown>().Destination(), "Corporate");
    engine->RaiseProgressUpdate(102, "Modem");
    engine->RaiseProgressUpdate(202, "Tunnel");
    engine->RaiseProgressUpdate(132, "ISP link down");
    EXPECT_FALSE(Win().imgModemDetected.Visible());
    EXPECT_EQ(Win().imgModemDetected.ToolTipText(), "ISP link down");
    EXPECT_TRUE(Win().imgCreatingTunnel.Visible());
    EXPECT_FALSE(app->Form<PerfPulldown>().Monitoring());
}

// 105 is what turns the connect light on.
TEST_F(ProgressTest, Code32InIdleResetsHarmlesslyAndTheConnectLightStaysOn) {
    StartIdle();
    engine->RaiseProgressUpdate(105, "ISP auth");
    engine->RaiseProgressUpdate(32, "Line down");
    EXPECT_FALSE(Win().imgAuthorizingISP.Visible());
    EXPECT_EQ(Win().imgAuthorizingISP.ToolTipText(), "");
    EXPECT_TRUE(Win().btnConnect.Enabled());
    EXPECT_EQ(Win().imgConnectLight.Picture(), Win().imgConnectLightOn.Picture());
}

TEST_F(ProgressTest, NewCredentialsWithTheSameUserUpdateThePairWithoutARelogin) {
    StartIdle();
    engine->RaiseProgressUpdate(207, "anna^renewed");
    ASSERT_EQ(engine->CountOf("SaveUser"), 1);
    EXPECT_EQ(engine->CallsTo("SaveUser")[0].args[1].ToString(), "renewed");
    EXPECT_EQ(app->Form<DisplayPullout>().txtPassword.Text(), "renewed");
}

TEST_F(CallUpTest, AnotherUsersCredentialsLogThemOnOnlyOnceTheLineIsDown) {
    engine->RaiseProgressUpdate(1, "Connected");
    engine->RaiseProgressUpdate(207, "carl^pw");
    platform.Advance(100);
    EXPECT_EQ(engine->CountOf("Logon"), 0) << "not while the call stands";
    engine->RaiseProgressUpdate(32, "Line down");
    platform.Advance(10);
    EXPECT_EQ(engine->CountOf("Logoff"), 1);
    ASSERT_EQ(engine->CountOf("Logon"), 1);
    EXPECT_EQ(engine->CallsTo("Logon")[0].args[0].ToString(), "carl");
}

// Both logs switched on, and one call from connect to line down.
class CallLogTest : public ProgressTest {
  protected:
    void SetUp() override {
        ProgressTest::SetUp();
        LogBothTo();
        StartIdle();
        // The call starts at 2026-03-14 09:26:53 on the platform's clock, a second a step.
        platform.SetWallClockStart(1773480413 - platform.Now() / 1000);
        Win().btnConnect.UserClick();
        platform.Advance(1000);
        engine->RaiseProgressUpdate(102, "Modem found");
        platform.Advance(1000);
        engine->RaiseProgressUpdate(207, "anna^topsecret");
        engine->RaiseProgressUpdate(1, "Connected");
        platform.Advance(1000);
        Win().btnConnect.UserClick();
        engine->RaiseProgressUpdate(32, "Line down");
    }
};

TEST_F(CallLogTest, TheHistoryHasADatedLinePerCodeUpToTheLineGoingDown) {
    EXPECT_EQ(LogLines("history.log"),
              (std::vector<std::string>{
                  "2026-03-14 09:26:53" + std::string(70, '*'), "2026-03-14 09:26:54: Modem found",
                  "2026-03-14 09:26:55: Connected", "2026-03-14 09:26:56: Line down"}))
        << "32 is written before the file closes";
}

TEST_F(CallLogTest, NewCredentialsNeverReachTheHistory) {
    EXPECT_EQ(ReadFile(dir / "history.log").find("topsecret"), std::string::npos);
}

TEST_F(ProgressTest, TwoCallsAppendASecondBanner) {
    LogBothTo();
    StartIdle();
    for (int call = 0; call < 2; ++call) {
        Win().btnConnect.UserClick();
        engine->RaiseProgressUpdate(1, "Connected");
        Win().btnConnect.UserClick();
        engine->RaiseProgressUpdate(32, "Line down");
    }
    const auto history = LogLines("history.log");
    ASSERT_EQ(history.size(), 6u);
    EXPECT_EQ(history[3].substr(19), std::string(70, '*'));
}

TEST_F(ProgressTest, ALogThatCannotBeOpenedFailsUnguarded) {
    SetUserDword(settings::kConnectHistorySetting, 1);
    SetUserString(settings::kConnectHistoryFileName, (dir / "missing" / "history.log").string());
    StartIdle();
    platform.AnswerNextBox(forms::mb::kResultOk);
    EXPECT_THROW(Win().btnConnect.UserClick(), headless::ProcessEnded);
    EXPECT_EQ(platform.Boxes().back().text.rfind("Run-time error '76'", 0), 0u);
    EXPECT_EQ(engine->CountOf("Connect"), 0);
}

}  // namespace
}  // namespace kw::dialer::testing
