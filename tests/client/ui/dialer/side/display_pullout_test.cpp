// The login information pullout: the address boxes, Modify, Save and Cancel, and the bus.
#include <gtest/gtest.h>

#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/spine/program_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;

class DisplayTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        engine->Default("GetUser", Variant(true),
                        {{0, Variant(std::string("anna"))}, {1, Variant(std::string("secret"))}});
        StartIdle();
        Display().Show();
    }
    DisplayPullout& Display() { return app->Form<DisplayPullout>(); }
    void SetBoxes(const std::array<std::string, 4>& texts) {
        const IPBoxes boxes = Display().AltTunnelServerBoxes();
        for (std::size_t i = 0; i < 4; ++i) {
            boxes[i]->SetText(texts[i]);
        }
    }
    std::array<std::string, 4> Boxes() {
        const IPBoxes boxes = Display().AltTunnelServerBoxes();
        return {boxes[0]->Text(), boxes[1]->Text(), boxes[2]->Text(), boxes[3]->Text()};
    }
    // Modify, the boxes as given, Save, with the two boxes of the Save answered.
    void SaveAddress(const std::array<std::string, 4>& texts) {
        Display().btnModify.UserClick();
        SetBoxes(texts);
        platform.AnswerNextBox(forms::mb::kResultOk);
        Display().btnModify.UserClick();
        // The new user's dial list arrives, and with it the form is free again.
        engine->RaiseGetGenericISPList("", Variant());
    }
};

using Address = std::pair<std::array<std::string, 4>, std::string>;  // the boxes, the text

TEST_F(DisplayTest, TheBoxesAreStoredAsOneDottedAddress) {
    for (const auto& [boxes, stored] :
         {Address{{"", "", "", ""}, ""}, Address{{"0", "0", "0", "0"}, ""},
          Address{{"0", "0", "0", "1"}, "0.0.0.1"}, Address{{"1", "", "2", "3"}, "1..2.3"},
          Address{{"999", "1", "2", "3"}, "999.1.2.3"}}) {
        SaveAddress(boxes);
        EXPECT_EQ(app->AlternateTunnelServer, stored) << stored;
    }
}

TEST_F(DisplayTest, AnAddressFillsTheBoxesUpToItsLastPoint) {
    for (const auto& [boxes, address] :
         {Address{{"10", "1", "2", "3"}, "10.1.2.3"}, Address{{"10", "20", "y", "z"}, "10.20.30"},
          Address{{"w", "x", "y", "z"}, "10"}, Address{{"", "", "", ""}, ""}}) {
        SetBoxes({"w", "x", "y", "z"});
        WriteIPFields(address, Display().AltTunnelServerBoxes());
        EXPECT_EQ(Boxes(), boxes) << address;
    }
}

TEST_F(DisplayTest, APointMovesToTheNextBoxAndIsNeverTyped) {
    Display().btnModify.UserClick();
    SetBoxes({"", "", "", ""});
    Display().txtAltTunnelServer0.SetFocus();
    for (int key : {'1', '.', '2'}) {
        Display().ActiveControl()->UserKeyPress(key);
    }
    EXPECT_EQ(Display().txtAltTunnelServer0.Text(), "1");
    EXPECT_EQ(Display().txtAltTunnelServer1.Text(), "2");
    EXPECT_EQ(platform.Beeps(), 0);
}

TEST_F(DisplayTest, LettersBeepAndAPointInTheLastBoxIsDroppedQuietly) {
    Display().btnModify.UserClick();
    SetBoxes({"", "", "", "7"});
    Display().txtAltTunnelServer3.SetFocus();
    Display().txtAltTunnelServer3.UserKeyPress('.');
    EXPECT_EQ(platform.Beeps(), 0);
    Display().txtAltTunnelServer3.UserKeyPress('a');
    EXPECT_EQ(platform.Beeps(), 1);
    EXPECT_EQ(Display().txtAltTunnelServer3.Text(), "7");
    EXPECT_TRUE(Display().txtAltTunnelServer3.HasFocus());
}

TEST_F(DisplayTest, TheBoxesShowWhatTheEngineHoldsForTheUser) {
    EXPECT_EQ(Display().txtUserName.Text(), "anna");
    EXPECT_EQ(Display().txtPassword.Text(), "secret");
    EXPECT_FALSE(Display().txtUserName.Enabled());
    EXPECT_EQ(Display().btnModify.Caption(), "Modify");
}

TEST_F(DisplayTest, SavingWithNoChangeRunsTheWholePath) {
    engine->ClearCalls();
    Display().btnModify.UserClick();
    EXPECT_EQ(Display().btnModify.Caption(), "Save");
    EXPECT_TRUE(Display().btnCancel.Enabled());
    platform.AnswerNextBox(forms::mb::kResultOk);
    Display().btnModify.UserClick();
    EXPECT_EQ(platform.Boxes().back().text, "Your changes have been saved.");
    EXPECT_EQ(platform.Boxes().back().flags, 0x10000);
    for (const char* op : {"Logoff", "SaveUser", "Logon", "GetPhoneList", "GetLocationList"}) {
        EXPECT_GE(engine->CountOf(op), 1) << op;
    }
    EXPECT_EQ(Display().btnModify.Caption(), "Modify");
    EXPECT_FALSE(Display().txtUserName.Enabled());
    EXPECT_FALSE(Display().LoginChanged);
}

TEST_F(DisplayTest, SavingDuringACallLeavesTheLogOnAgainForItsEnd) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(1, "Connected");
    // A dial list that finishes during the call frees the form for editing.
    app->EventManagerObject.postEvent(event::kDialListDone, Variant());
    engine->ClearCalls();
    Display().btnModify.UserClick();
    Display().txtUserName.UserSetText("bert");
    platform.AnswerNextBox(forms::mb::kResultOk);
    Display().btnModify.UserClick();
    EXPECT_EQ(engine->CountOf("Logoff"), 0);
    EXPECT_EQ(engine->CountOf("Logon"), 0);
    EXPECT_TRUE(Display().LoginChanged) << "the log on again waits for the line to go down";
}

TEST_F(DisplayTest, AnEmptyUserNameIsRefusedAndEditingGoesOn) {
    Display().btnModify.UserClick();
    Display().txtUserName.UserSetText("");
    platform.AnswerNextBox(forms::mb::kResultOk);
    Display().btnModify.UserClick();
    EXPECT_EQ(platform.Boxes().back().text, "Invalid User Name, try again!");
    EXPECT_EQ(platform.Boxes().back().caption, "Login Information");
    EXPECT_EQ(Display().btnModify.Caption(), "Save");
    EXPECT_TRUE(Display().txtUserName.HasFocus());
}

TEST_F(DisplayTest, CancelPutsBackTheGlobalsNotWhatTheEngineGave) {
    app->UserName = "global";
    app->Password = "gpw";
    app->AlternateTunnelServer = "10.0.0.9";
    Display().btnModify.UserClick();
    Display().txtUserName.UserSetText("typed");
    Display().btnCancel.UserClick();
    EXPECT_EQ(Display().txtUserName.Text(), "global");
    EXPECT_EQ(Display().txtPassword.Text(), "gpw");
    EXPECT_EQ(Boxes(), (std::array<std::string, 4>{"10", "0", "0", "9"}));
    EXPECT_EQ(Display().btnModify.Caption(), "Modify");
    EXPECT_FALSE(Display().btnCancel.Enabled());
    EXPECT_FALSE(Display().txtAltTunnelServer0.Enabled());
}

TEST_F(DisplayTest, AConnectWhileEditingAsksAndOnlyYesStopsIt) {
    const struct {
        const char* what;
        int answer;  // 0: not editing, nothing asked
        std::int32_t veto;
    } cases[] = {
        {"yes", forms::mb::kResultYes, 1}, {"no", forms::mb::kResultNo, 0}, {"not editing", 0, 0}};
    for (const auto& c : cases) {
        if (c.answer != 0) {
            Display().btnModify.UserClick();
            platform.AnswerNextBox(c.answer);
            if (c.answer == forms::mb::kResultYes) {
                platform.AnswerNextBox(forms::mb::kResultOk);  // the save's word
            }
        }
        EXPECT_EQ(app->EventManagerObject.postEventVetoable(event::kConnectRequested, Variant()),
                  c.veto)
            << c.what;
        EXPECT_EQ(Display().btnModify.Caption(), "Modify") << c.what;
    }
}

TEST_F(DisplayTest, TheBusLocksTheFormFromConnectToTheListAndFreesIt) {
    const std::vector<std::pair<std::int32_t, bool>> steps = {{event::kConnectStarted, false},
                                                              {32, true},
                                                              {event::kGettingDialList, false},
                                                              {event::kDialListDone, true}};
    for (const auto& [id, enabled] : steps) {
        app->EventManagerObject.postEvent(id, Variant());
        EXPECT_EQ(Display().Enabled(), enabled) << id;
    }
}

}  // namespace
}  // namespace kw::dialer::testing
