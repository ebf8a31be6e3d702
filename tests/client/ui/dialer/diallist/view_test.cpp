// The dial list view: its rows, ticks at mouse up under the policies, moves, modes, the
// ISP login, the destination list and the bus.
#include <gtest/gtest.h>

#include "client/ui/dialer/engine/frm_isp_login.h"
#include "dial_list_fixture.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;

TEST_F(DialListTest, ThePopRowsShowWithTheEnginesTicksAndArrows) {
    EXPECT_EQ(Texts(), (std::vector<std::string>{"555-0101", "555-0102", "555-0201"}));
    EXPECT_EQ(View().Item(3).subItems,
              (std::vector<std::string>{"Globex", "9", "Lowell", "MA", "ISDN"}));
    EXPECT_EQ(std::vector<bool>({Ticked(0), Ticked(1), Ticked(2)}),
              std::vector<bool>({true, false, true}));
    EXPECT_TRUE(To().btnUp.Visible() && To().btnDown.Visible());
}

TEST_F(DialListTest, TheIspRowsShowWithTheirTicksAndNoArrows) {
    To().rbISP.UserClick();
    EXPECT_EQ(Texts(), (std::vector<std::string>{"Acme", "Globex"}));
    EXPECT_EQ(View().Item(2).subItems,
              (std::vector<std::string>{"7", "555-2000", "globex.example"}));
    EXPECT_TRUE(Ticked(0));
    EXPECT_FALSE(Ticked(1));
    EXPECT_FALSE(To().btnUp.Visible() || To().btnDown.Visible());
}

TEST_F(DialListTest, ARightButtonMouseUpChangesNothing) {
    View().UserCheck(2, true);
    Tick(1, true, forms::mouse::kRight);
    EXPECT_FALSE(To().btnSaveList.Enabled());
    EXPECT_FALSE(To().popListChanged());
}

struct TickCase {
    const char* what;
    std::string value;
    bool works;
    bool boxAfter;
    bool accepted;
};

TEST_F(DialListTest, ATickAtMouseUpFollowsThePopPolicy) {
    const TickCase cases[] = {
        {"\"1\" accepts", "1", true, true, true},
        {"\"0\" puts the box back", "0", true, false, false},
        {"another value leaves the box and not the cell", "2", true, true, false},
        {"a failed query accepts", "0", false, true, true},
    };
    for (const TickCase& c : cases) {
        policy["POPordering"] = {c.value, c.works};
        Deliver(pops);
        To().btnSaveList_Click();  // clean state, flags cleared
        Deliver(pops);
        Tick(1, true);
        EXPECT_EQ(Ticked(1), c.boxAfter) << c.what;
        EXPECT_EQ(To().btnSaveList.Enabled(), c.accepted) << c.what;
        EXPECT_EQ(To().popListChanged(), c.accepted) << c.what;
        EXPECT_EQ(Win().cmboFrom.Enabled(), !c.accepted) << c.what;
        To().rbPOP.UserClick();  // shows the cells again
        EXPECT_EQ(Ticked(1), c.accepted) << c.what << ": the cell's value";
    }
}

TEST_F(DialListTest, ATickInIspModeFollowsTheIspPolicyAndMarksTheIspList) {
    policy["POPordering"] = {"0", true};
    To().rbISP.UserClick();
    Tick(1, true);
    EXPECT_TRUE(Ticked(1));
    EXPECT_TRUE(To().ispListChanged());
    EXPECT_FALSE(To().popListChanged());
    EXPECT_TRUE(To().btnSaveList.Enabled());
}

TEST_F(DialListTest, UpAndDownMoveTheSelectedRowAndTheSelectionFollows) {
    View().UserSelectItem(1);
    To().btnDown.UserClick();
    EXPECT_EQ(Texts(), (std::vector<std::string>{"555-0102", "555-0101", "555-0201"}));
    EXPECT_EQ(View().SelectedItem(), 2);
    EXPECT_TRUE(Ticked(1)) << "the tick goes with its row";
    EXPECT_TRUE(To().btnSaveList.Enabled());
    To().btnUp.UserClick();
    EXPECT_EQ(Texts(), (std::vector<std::string>{"555-0101", "555-0102", "555-0201"}));
    EXPECT_EQ(View().SelectedItem(), 1);
}

TEST_F(DialListTest, AMovePastEitherEndLeavesTheRowThereAndStillEnablesSave) {
    for (const auto& [row, arrow] : {std::pair{3, &To().btnDown}, std::pair{1, &To().btnUp}}) {
        View().UserSelectItem(row);
        arrow->UserClick();
        EXPECT_EQ(Texts(), (std::vector<std::string>{"555-0101", "555-0102", "555-0201"})) << row;
        EXPECT_EQ(View().SelectedItem(), row);
        EXPECT_TRUE(To().btnSaveList.Enabled()) << row;
        To().btnSaveList_Click();  // clean state, flags cleared
    }
}

TEST_F(DialListTest, ArrowsAreHiddenWhenThePolicyForbidsOrderingOrNoRowsCame) {
    policy["POPordering"] = {"0", true};
    Deliver(pops);
    EXPECT_FALSE(To().btnUp.Visible() || To().btnDown.Visible());
    policy["POPordering"] = {"1", true};
    Deliver({});
    EXPECT_FALSE(To().btnUp.Visible() || To().btnDown.Visible());
    EXPECT_FALSE(To().btnRefresh.Enabled());
}

TEST_F(DialListTest, WhileConnectingArrowsAndTicksAreDeadButTheLoginDoubleClickIsNot) {
    Win().IsConnecting = true;
    View().UserSelectItem(1);
    To().btnDown.UserClick();
    Tick(1, true);
    EXPECT_EQ(Texts().front(), "555-0101");
    EXPECT_EQ(engine->CountOf("GetPolicySetting"), 0);
    EXPECT_FALSE(To().btnSaveList.Enabled());
    To().rbISP.UserClick();
    View().UserSelectItem(1);
    engine->Then("GetISPLogin", Variant(false));
    View().UserDblClick();
    EXPECT_EQ(engine->CountOf("GetISPLogin"), 1);
}

struct ModeCase {
    const char* what;
    int answer;
    int popSaves;
};

TEST_F(DialListTest, LeavingPopModeWithEditsAsksAndClearsTheFlagEitherWay) {
    const ModeCase cases[] = {{"Yes saves", forms::mb::kResultYes, 1},
                              {"No discards", forms::mb::kResultNo, 0}};
    for (const ModeCase& c : cases) {
        To().rbPOP.UserClick();
        Deliver(pops);
        Tick(1, true);
        ASSERT_TRUE(To().popListChanged());
        engine->ClearCalls();
        platform.ClearBoxes();
        AnswerBoxes(c.answer);
        To().rbISP.UserClick();
        ASSERT_EQ(platform.Boxes().size(), 1u) << c.what;
        EXPECT_EQ(platform.Boxes()[0].text,
                  "ToPullout's data has changed.  Do you wish to save the changes?");
        EXPECT_FALSE(To().btnSaveList.Enabled()) << c.what;
        EXPECT_EQ(engine->CountOf("SavePOPList"), c.popSaves) << c.what;
        EXPECT_EQ(engine->CountOf("BuildDialList"), 1) << c.what;
        EXPECT_EQ(Texts(), (std::vector<std::string>{"Acme", "Globex"})) << c.what;
    }
}

TEST_F(DialListTest, TheLoginDoubleClickShowsTheIspsLoginAndStoresWhatTheUserAccepts) {
    To().rbISP.UserClick();
    View().UserSelectItem(2);
    engine->Then("GetISPLogin", Variant(true), {{2, NameList({"gx-user", "gx-pass"})}});
    std::string title;
    platform.AnswerNextModal("frmISPLogin", [&title](forms::Form& form) {
        auto& dialog = static_cast<frmISPLogin&>(form);
        title = dialog.txtTitle.Caption();
        EXPECT_EQ(dialog.txtUserName.Text(), "gx-user");
        EXPECT_EQ(dialog.txtPassword.Text(), "gx-pass");
        dialog.txtPassword.SetText("new-pass");
        dialog.cmdOK.UserClick();
    });
    engine->ClearCalls();
    View().UserDblClick();
    EXPECT_EQ(title, "Login Info for\nGlobex");
    ASSERT_EQ(engine->CountOf("SetISPLogin"), 1);
    const auto args = engine->CallsTo("SetISPLogin")[0].args;
    EXPECT_EQ(args[0].ToString() + "|" + args[1].ToString() + "|" + args[2].ToString() + "|" +
                  args[3].ToString(),
              "anna|Globex|gx-user|new-pass");
    EXPECT_EQ(engine->CountOf("BuildDialList"), 1);
}

TEST_F(DialListTest, ARefusedLoginChangeSaysSoAndAPopModeDoubleClickDoesNothing) {
    View().UserSelectItem(1);
    View().UserDblClick();
    EXPECT_EQ(engine->CountOf("GetISPLogin"), 0);
    To().rbISP.UserClick();
    View().UserSelectItem(1);
    engine->Then("GetISPLogin", Variant(true), {{2, NameList({"u", "p"})}});
    engine->Then("SetISPLogin", Variant(false));
    AnswerBoxes(forms::mb::kResultOk);
    platform.AnswerNextModal("frmISPLogin", [](forms::Form& form) {
        static_cast<frmISPLogin&>(form).cmdOK.UserClick();
    });
    View().UserDblClick();
    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text,
              "Failed to change ISP login information, please consult your administrator for "
              "your policy rights.");
}

TEST_F(DialListTest, ADestinationChosenInThePulloutIsChosenInTheWindowWithoutANewList) {
    engine->Then("GetEntryType", Variant(true), {{1, Variant(std::string("Both"))}});
    To().lbDestinations.UserSelect(1);
    EXPECT_EQ(Win().cmboTo.ListIndex(), 1);
    EXPECT_EQ(engine->CountOf("GetEntryList"), 1);
    EXPECT_EQ(engine->CountOf("BuildDialList"), 0);
}

TEST_F(DialListTest, TheBusDisablesThePulloutWhileAListOrACallIsUnderWay) {
    const std::pair<std::int32_t, bool> cases[] = {
        {1002, false}, {32, true}, {1003, false}, {1004, true}, {1001, true}};
    for (const auto& [id, enabled] : cases) {
        app->EventManagerObject.postEvent(id, Variant());
        EXPECT_EQ(To().Enabled(), enabled) << id;
    }
}

TEST_F(DialListTest, ARowLabelCannotBeEdited) {
    EXPECT_FALSE(View().UserBeginLabelEdit(1));
}

TEST_F(DialListTest, AFailedRowReadIsReportedAndTheRowsReadStayUnshown) {
    Variant bad = Rows(pops, 8);
    bad.ToArray().Set(1, 0, Variant::Null());
    AnswerBoxes(forms::mb::kResultOk);
    engine->RaiseGetGenericISPList("", bad);
    EXPECT_EQ(To().popCells().numOfItems(), 1);
    EXPECT_TRUE(Texts().empty());
    EXPECT_EQ(platform.Boxes().size(), 1u);
}

}  // namespace
}  // namespace kw::dialer::testing
