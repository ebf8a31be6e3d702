// The connect button in its states, the dial list request, the Enter key, and failures in the
// program's own words: the engine's error events and the numbers of caught failures, with their
// boxes and what follows them.
#include <gtest/gtest.h>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Failure;
using automation::Variant;
using headless::ProcessEnded;

constexpr int kWarning = 0x10030;
constexpr int kStop = 0x10010;
constexpr int kSystemStop = 4112;
const std::string kSerious =
    "A serious application error has occurred.  Please call Technical Support for assistance.";

// What a box says, under which caption and with which flags.
using Box = std::tuple<std::string, std::string, int>;

class ConnectTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        engine->Default("Connect", Variant(std::int32_t{7}));
        StartIdle();
        Win().Image5.SetPicture("art/face_rest.bmp");
        Win().Image6.SetPicture("art/face_pressed.bmp");
        Win().btnConnect.SetPicture("art/face_rest.bmp");
        platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultOk; });
    }
    // The bus hears every request to connect, and vetoes it when told to. The listener outlives
    // the program, so it never deregisters.
    void ListenToConnectRequests(std::int32_t answer) {
        bus.vetoAnswer = answer;
        app->EventManagerObject.registerForEvent(event::kConnectRequested, &bus);
    }
    void CallUp() {
        Win().btnConnect.UserClick();
        engine->RaiseProgressUpdate(201, "Tunnel up");
        engine->RaiseProgressUpdate(1, "Connected");
    }
    void ExpectIdle() {
        EXPECT_FALSE(Win().IsConnecting || Win().IsConnected);
        EXPECT_EQ(Win().btnConnect.Picture(), "art/face_rest.bmp");
        EXPECT_EQ(Win().lblConnect.Caption(), "Connect");
    }
    Box LastBox() const {
        const auto& last = platform.Boxes().back();
        return {last.text, last.caption, last.flags};
    }
    std::string LastText() const { return platform.Boxes().back().text; }
    BusListener bus;
};

TEST_F(ConnectTest, ConnectAsksTheEngineForTheChosenDestinationAndKeepsTheHandle) {
    Win().btnConnect.UserClick();
    ASSERT_EQ(engine->CountOf("Connect"), 1);
    EXPECT_EQ(engine->CallsTo("Connect")[0].args,
              (std::vector<Variant>{Variant("Corporate"), Variant(false)}));
    EXPECT_EQ(Win().ConnectionHandle, 7);
}

TEST_F(ConnectTest, ConnectTurnsTheButtonToDisconnectAndLocksTheLocationAndTheDialList) {
    ToPullout& dialList = app->Form<ToPullout>();
    Win().btnConnect.UserClick();
    EXPECT_FALSE(dialList.Enabled()) << "the bus tells the pullouts the call started";
    EXPECT_EQ(Win().lblConnect.Caption(), "Disconnect");
    EXPECT_EQ(Win().btnConnect.Picture(), "art/face_pressed.bmp");
    EXPECT_FALSE(Win().cmboFrom.Enabled());
    EXPECT_EQ(platform.Cursor(), forms::cursor::kArrowHourglass);
}

TEST_F(ConnectTest, VetoOfTheConnectLeavesTheStateIdleAndTheFaceAtRest) {
    ListenToConnectRequests(kVeto);
    Win().btnConnect.UserClick();
    EXPECT_EQ(engine->CountOf("Connect"), 0);
    ExpectIdle();
}

TEST_F(ConnectTest, ASecondClickDuringSetUpAsksWhetherToTerminateAndNoKeepsTheCallGoing) {
    Win().btnConnect.UserClick();
    platform.AnswerNextBox(forms::mb::kResultNo);
    Win().btnConnect.UserClick();
    EXPECT_EQ(LastBox(), Box("There is a connection still in progress do you wish to terminate it?",
                             "Ostvarra - Disconnect", 0x10104))
        << "Yes/No, no icon, No by default, to the foreground";
    EXPECT_EQ(engine->CountOf("Disconnect"), 0);
    EXPECT_TRUE(Win().IsConnecting);
}

// The ISP lights on and the tunnel not yet.
TEST_F(ConnectTest, YesDuringSetUpDisconnectsItsHandleAndWithoutTheTunnelTheWindowResetsAtOnce) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(102, "Modem found");
    engine->RaiseProgressUpdate(105, "Authenticating");
    platform.AnswerNextBox(forms::mb::kResultYes);
    Win().btnConnect.UserClick();
    ASSERT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_EQ(engine->CallsTo("Disconnect")[0].args[0].ToLong(), 7);
    ExpectIdle();
    EXPECT_FALSE(Win().imgModemDetected.Visible());
    EXPECT_FALSE(Win().imgAuthorizingISP.Visible());
    EXPECT_TRUE(Win().btnConnect.Enabled());
}

TEST_F(ConnectTest, DisconnectWithTheTunnelUpWaitsForCode32) {
    CallUp();
    Win().btnConnect.UserClick();
    EXPECT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_TRUE(Win().IsConnected) << "the line is not down until code 32";
    EXPECT_EQ(Win().lblConnect.Caption(), "Disconnect");
    engine->RaiseProgressUpdate(32, "Line down");
    ExpectIdle();
    EXPECT_TRUE(Win().btnConnect.Enabled()) << "32 turns EnableOnReset on";
}

TEST_F(ConnectTest, AFailingConnectGoesThroughTheHandlerAndBackToIdleWithTheCaptionAsItWas) {
    engine->ThenFail("Connect", Failure(1012, "busy disconnecting"));
    Win().btnConnect.UserClick();
    EXPECT_EQ(platform.Boxes().size(), 1u) << "the handler's box";
    ExpectIdle();
    EXPECT_EQ(platform.Cursor(), forms::cursor::kDefault);
}

TEST_F(ConnectTest, EnterInACombConnectsWhenIdleAndOtherKeysAreSwallowed) {
    Win().cmboTo.UserKeyPress('x');
    EXPECT_EQ(Win().cmboTo.Text(), "Corporate") << "the combos cannot be typed in";
    EXPECT_EQ(engine->CountOf("Connect"), 0);
    Win().cmboTo.UserKeyPress(forms::key::kReturn);
    EXPECT_EQ(engine->CountOf("Connect"), 1);
    Win().cmboTo.UserKeyPress(forms::key::kReturn);
    EXPECT_EQ(engine->CountOf("Connect"), 1) << "not while connecting";
    EXPECT_TRUE(platform.Boxes().empty());
}

// One press of Enter in either combo is one request to connect, also when the state stays Idle.
TEST_F(ConnectTest, OneEnterInACombIsOneRequestWhenTheConnectIsVetoedOrFailsAtOnce) {
    engine->AlwaysFail("Connect", Failure(1012, "busy disconnecting"));
    for (const std::int32_t answer : {kVeto, 0}) {
        ListenToConnectRequests(answer);
        for (forms::ComboBox* combo : {&Win().cmboFrom, &Win().cmboTo}) {
            SCOPED_TRACE(combo->Name() + (answer == kVeto ? " vetoed" : " failing"));
            bus.heard.clear();
            combo->UserKeyPress(forms::key::kReturn);
            EXPECT_EQ(bus.heard, (std::vector<std::int32_t>{event::kConnectRequested}));
        }
    }
    EXPECT_EQ(engine->CountOf("Connect"), 2) << "the two that were not vetoed";
}

TEST_F(ConnectTest, DialListFailingThreeTimesTellsTheNumberAndBringsTheControlsBack) {
    engine->Default("BuildDialList", Variant(std::int32_t{5}));
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(engine->CountOf("BuildDialList"), 3);
    EXPECT_EQ(platform.SleptMs(), 800) << "two pauses of 400 ms between three tries";
    EXPECT_EQ(CountBoxesWithText("Error getting dial list: 5"), 1) << "one box, after the tries";
    EXPECT_TRUE(Win().btnConnect.Enabled());
    EXPECT_TRUE(Win().cmboFrom.Enabled());
}

TEST_F(ConnectTest, DialListRequestWithAnEngineMessageShowsItWhenIdle) {
    Win().cmboFrom.UserSelect(1);
    engine->RaiseGetGenericISPList("Prices changed", Variant());
    EXPECT_EQ(LastBox(), Box("Prices changed", "Kestrelway", forms::mb::kInformation));
}

TEST_F(ConnectTest, SystemCloseDuringACallAsksAndDisconnectsOnYes) {
    CallUp();
    platform.AnswerNextBox(forms::mb::kResultYes);
    EXPECT_TRUE(Win().UserClose());
    EXPECT_EQ(LastText(), "There is an open connection, do you wish to terminate it?");
    EXPECT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_EQ(engine->CountOf("Logoff"), 0) << "the system close goes without Logoff";
}

TEST_F(ConnectTest, EndOfTheDesktopSessionAsksNothingAboutTheCall) {
    CallUp();
    EXPECT_TRUE(Win().Unload(forms::unload::kAppWindows));
    EXPECT_TRUE(platform.Boxes().empty());
}

class ErrorsTest : public ConnectTest {};  // failures in the program's own words

TEST_F(ErrorsTest, EngineErrorCodesShowTheirTextsInAWarningBox) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"2000", "Unable to get entry type (ISP/Tunnel) from dial list."},
        {"2002", "There are no available ISP/POP phone numbers to dial."},
        {"2006", "There are no more ISP/POP phone numbers to dial."},
        {"2010",
         "Unable to create a tunnel to the destination network; the\nTunnel Server at the "
         "destination is unreachable.  Ask your\n network administrator to check the Tunnel Server "
         "and retry the connection later."},
        {"2011", "There is no Tunnel Server to connect to."},
        {"2012", "2012"},
        {"The modem is not answering", "The modem is not answering"},
    };
    for (const auto& [code, text] : cases) {
        engine->RaiseErrorEvent(code);
        EXPECT_EQ(LastBox(), Box(text, "Kestrelway", kWarning)) << code;
    }
    EXPECT_EQ(engine->CountOf("Disconnect"), 0) << "only 2008 changes any state";
}

TEST_F(ErrorsTest, InvalidNumberTearsTheCallDownThroughTheDisconnectBranch) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(103, "Dialing");
    engine->RaiseErrorEvent("2008");
    EXPECT_EQ(LastText(), "Attempted to dial an invalid number.");
    ASSERT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_EQ(engine->CallsTo("Disconnect")[0].args[0].ToLong(), 7);
    EXPECT_FALSE(Win().IsConnected);
    EXPECT_FALSE(Win().imgPhoneDialing.Visible());
}

TEST_F(ErrorsTest, CaughtFailureNumbersGiveTheirOwnWordsWithoutACaption) {
    const std::vector<std::pair<int, std::string>> cases = {
        {1010, "Please log in"},
        {1012, "Kestrelway is still disconnecting\r\nPlease wait, then try again."},
        {1019,
         "Unable to connect\r\nPlease check to see if you have either a modem or VPN device "
         "install.\r\nPlease See release notes."},
        {2002, "Error On Connect"},
        {1013, " Error [1013] engine busy"},
    };
    for (const auto& [number, text] : cases) {
        Win().COMErrHandler(Failure(number, "engine busy"));
        EXPECT_EQ(LastBox(), Box(text, "", kWarning)) << number;
    }
}

TEST_F(ErrorsTest, BadFromNumberOpensTheFromPulloutUnlessItIsOpen) {
    Win().COMErrHandler(Failure(1020, "bad number"));
    EXPECT_EQ(LastText(),
              "Please enter a valid from phone number on the from pullout.\r\ni.e., area code, "
              "exchange, and number.");
    EXPECT_TRUE(app->Form<FromPullout>().Visible());
    app->Form<FromPullout>().Move(10, 10);
    Win().COMErrHandler(Failure(1020, "bad number"));
    EXPECT_TRUE(app->Form<FromPullout>().Visible());
    EXPECT_EQ(app->Form<FromPullout>().Left(), 10) << "an open pullout is left alone";
}

// These end the process at once: no Logoff, no unload, no second engine.
TEST_F(ErrorsTest, FatalFailuresEndTheProcessWithTheirBox) {
    const std::vector<std::pair<std::uint32_t, Box>> cases = {
        {1021, {"Licence expired", "", kStop}},
        {0x800706BFu,
         {"Error starting Kestrelway.  Please call Technical Support for assistance.", "Kestrelway",
          kSystemStop}},
        {0x800706BAu, {kSerious, "Kestrelway", kSystemStop}},
    };
    for (const auto& [number, box] : cases) {
        EXPECT_THROW(Win().COMErrHandler(Failure(static_cast<int>(number), "Licence expired")),
                     ProcessEnded);
        EXPECT_EQ(LastBox(), box) << number;
    }
    EXPECT_EQ(engine->CountOf("Logoff"), 0);
    EXPECT_TRUE(Win().IsLoaded());
    EXPECT_EQ(enginesMade, 1);
}

}  // namespace
}  // namespace kw::dialer::testing
