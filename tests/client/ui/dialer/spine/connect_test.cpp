// The connect button in its states, the dial list request, and the Enter key.
#include <gtest/gtest.h>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Failure;
using automation::Variant;

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
    }
    void AnswerBoxesWith(int result) {
        platform.AnswerBoxes([result](const headless::BoxRecord&) { return result; });
    }
};

TEST_F(ConnectTest, ConnectAsksTheEngineForTheChosenDestinationAndKeepsTheHandle) {
    Win().btnConnect.UserClick();
    ASSERT_EQ(engine->CountOf("Connect"), 1);
    EXPECT_EQ(engine->CallsTo("Connect")[0].args[0].ToString(), "Corporate");
    EXPECT_FALSE(engine->CallsTo("Connect")[0].args[1].ToBoolean());
    EXPECT_TRUE(Win().IsConnecting);
    EXPECT_EQ(Win().ConnectionHandle, 7);
}

TEST_F(ConnectTest, ConnectTurnsTheButtonToDisconnectAndLocksTheLocation) {
    MainWin& win = Win();
    win.btnConnect.UserClick();
    EXPECT_EQ(win.lblConnect.Caption(), "Disconnect");
    EXPECT_EQ(win.btnConnect.Picture(), "art/face_pressed.bmp");
    EXPECT_FALSE(win.cmboFrom.Enabled());
    EXPECT_EQ(platform.Cursor(), forms::cursor::kArrowHourglass);
}

TEST_F(ConnectTest, ConnectTellsTheBusTheCallStarted) {
    BusListener listener;
    app->EventManagerObject.registerForEvent(event::kConnectStarted, &listener);
    Win().btnConnect.UserClick();
    EXPECT_EQ(listener.heard, (std::vector<std::int32_t>{event::kConnectStarted}));
    app->EventManagerObject.deregisterForEvent(event::kConnectStarted, &listener);
}

TEST_F(ConnectTest, VetoOfTheConnectLeavesTheStateIdleAndTheFaceAtRest) {
    BusListener objector;
    objector.vetoAnswer = kVeto;
    app->EventManagerObject.registerForEvent(event::kConnectRequested, &objector);
    Win().btnConnect.SetPicture("art/face_rest.bmp");
    Win().btnConnect.UserClick();
    EXPECT_EQ(engine->CountOf("Connect"), 0);
    EXPECT_FALSE(Win().IsConnecting);
    EXPECT_FALSE(Win().IsConnected);
    EXPECT_EQ(Win().btnConnect.Picture(), "art/face_rest.bmp");
    EXPECT_EQ(Win().lblConnect.Caption(), "Connect");
    app->EventManagerObject.deregisterForEvent(event::kConnectRequested, &objector);
}

// A call in set-up, its ISP lights on, the tunnel not yet.
class CallInSetUpTest : public ConnectTest {
  protected:
    void SetUp() override {
        ConnectTest::SetUp();
        Win().btnConnect.UserClick();
        engine->RaiseProgressUpdate(102, "Modem found");
        engine->RaiseProgressUpdate(105, "Authenticating");
        platform.AnswerNextBox(forms::mb::kResultYes);
        Win().btnConnect.UserClick();
    }
};

TEST_F(CallInSetUpTest, ASecondClickAsksWhetherToTerminateIt) {
    const auto& box = platform.Boxes().back();
    EXPECT_EQ(box.text, "There is a connection still in progress do you wish to terminate it?");
    EXPECT_EQ(box.caption, "Ostvarra - Disconnect");
    EXPECT_EQ(box.flags, 0x10104) << "Yes/No, no icon, No by default, to the foreground";
}

TEST_F(CallInSetUpTest, YesDisconnectsTheCallsHandle) {
    ASSERT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_EQ(engine->CallsTo("Disconnect")[0].args[0].ToLong(), 7);
}

TEST_F(CallInSetUpTest, WithoutTheTunnelLightTheWindowResetsAtOnce) {
    MainWin& win = Win();
    EXPECT_FALSE(win.IsConnected || win.IsConnecting);
    EXPECT_EQ(win.lblConnect.Caption(), "Connect");
    EXPECT_FALSE(win.imgModemDetected.Visible());
    EXPECT_FALSE(win.imgAuthorizingISP.Visible());
    EXPECT_TRUE(win.btnConnect.Enabled());
}

TEST_F(ConnectTest, AnsweringNoToTheTerminateQuestionKeepsTheCallGoing) {
    Win().btnConnect.UserClick();
    platform.AnswerNextBox(forms::mb::kResultNo);
    Win().btnConnect.UserClick();
    EXPECT_EQ(engine->CountOf("Disconnect"), 0);
    EXPECT_TRUE(Win().IsConnecting);
}

TEST_F(ConnectTest, DisconnectWithTheTunnelUpWaitsForCode32) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(201, "Tunnel up");
    engine->RaiseProgressUpdate(1, "Connected");
    EXPECT_TRUE(Win().IsConnected);
    Win().btnConnect.UserClick();
    EXPECT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_TRUE(Win().IsConnected) << "the line is not down until code 32";
    EXPECT_EQ(Win().lblConnect.Caption(), "Disconnect");
    engine->RaiseProgressUpdate(32, "Line down");
    EXPECT_FALSE(Win().IsConnected);
    EXPECT_EQ(Win().lblConnect.Caption(), "Connect");
    EXPECT_TRUE(Win().btnConnect.Enabled()) << "32 turns EnableOnReset on";
}

TEST_F(ConnectTest, AFailingConnectGoesThroughTheHandlerAndBackToIdleWithTheCaptionAsItWas) {
    engine->ThenFail("Connect", Failure(1012, "busy disconnecting"));
    AnswerBoxesWith(forms::mb::kResultOk);
    Win().btnConnect.UserClick();
    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text,
              "Kestrelway is still disconnecting\r\nPlease wait, then try again.");
    EXPECT_FALSE(Win().IsConnecting);
    EXPECT_EQ(Win().btnConnect.Picture(), "art/face_rest.bmp");
    EXPECT_EQ(Win().lblConnect.Caption(), "Connect");
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

// One press of Enter in either combo is one press of Connect, also when the state stays Idle.
TEST_F(ConnectTest, OneEnterInACombIsOneConnectWhenTheConnectIsVetoed) {
    BusListener objector;
    objector.vetoAnswer = kVeto;
    app->EventManagerObject.registerForEvent(event::kConnectRequested, &objector);
    for (forms::ComboBox* combo : {&Win().cmboFrom, &Win().cmboTo}) {
        SCOPED_TRACE(combo->Name());
        objector.heard.clear();
        combo->UserKeyPress(forms::key::kReturn);
        EXPECT_EQ(objector.heard, (std::vector<std::int32_t>{event::kConnectRequested}));
    }
    app->EventManagerObject.deregisterForEvent(event::kConnectRequested, &objector);
}

TEST_F(ConnectTest, OneEnterInACombIsOneConnectWhenTheConnectFailsAtOnce) {
    engine->AlwaysFail("Connect", Failure(1012, "busy disconnecting"));
    AnswerBoxesWith(forms::mb::kResultOk);
    for (forms::ComboBox* combo : {&Win().cmboFrom, &Win().cmboTo}) {
        SCOPED_TRACE(combo->Name());
        const int before = engine->CountOf("Connect");
        platform.ClearBoxes();
        combo->UserKeyPress(forms::key::kReturn);
        EXPECT_EQ(engine->CountOf("Connect"), before + 1);
        EXPECT_EQ(platform.Boxes().size(), 1u);
    }
}

TEST_F(ConnectTest, DialListFailingThreeTimesTellsTheNumberAndBringsTheControlsBack) {
    engine->Default("BuildDialList", Variant(std::int32_t{5}));
    AnswerBoxesWith(forms::mb::kResultOk);
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(engine->CountOf("BuildDialList"), 3);
    EXPECT_EQ(platform.SleptMs(), 800) << "two pauses of 400 ms between three tries";
    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text, "Error getting dial list: 5");
    EXPECT_EQ(platform.Boxes()[0].caption, "");
    EXPECT_FALSE(Win().IsGettingDialList);
    EXPECT_TRUE(Win().btnConnect.Enabled());
    EXPECT_TRUE(Win().cmboFrom.Enabled());
}

TEST_F(ConnectTest, DialListRequestWithAnEngineMessageShowsItWhenIdle) {
    AnswerBoxesWith(forms::mb::kResultOk);
    Win().cmboFrom.UserSelect(1);
    engine->RaiseGetGenericISPList("Prices changed", Variant());
    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text, "Prices changed");
    EXPECT_EQ(platform.Boxes()[0].flags, forms::mb::kOkOnly | forms::mb::kInformation);
}

TEST_F(ConnectTest, SystemCloseDuringACallAsksAndDisconnectsOnYes) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(201, "Tunnel up");
    engine->RaiseProgressUpdate(1, "Connected");
    platform.AnswerNextBox(forms::mb::kResultYes);
    EXPECT_TRUE(Win().UserClose());
    EXPECT_EQ(platform.Boxes().back().text,
              "There is an open connection, do you wish to terminate it?");
    EXPECT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_EQ(engine->CountOf("Logoff"), 0) << "the system close goes without Logoff";
}

TEST_F(ConnectTest, EndOfTheDesktopSessionAsksNothingAboutTheCall) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(1, "Connected");
    EXPECT_TRUE(Win().Unload(forms::unload::kAppWindows));
    EXPECT_TRUE(platform.Boxes().empty());
}

}  // namespace
}  // namespace kw::dialer::testing
