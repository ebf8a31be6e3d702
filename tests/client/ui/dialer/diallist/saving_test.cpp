// Saving, refreshing and discarding the dial list, and the questions about unsaved edits.
#include <gtest/gtest.h>

#include "dial_list_fixture.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer::testing {
namespace {

using automation::SafeArray;
using automation::Variant;

constexpr const char* kSaveQuestion =
    "ToPullout's data has changed.  Do you wish to save the changes?";

class SavingTest : public DialListTest {
  protected:
    // The user makes an edit the policy accepts: the second row ticked.
    void Edit() {
        Tick(1, true);
        ASSERT_TRUE(To().btnSaveList.Enabled());
        engine->ClearCalls();
        platform.ClearBoxes();
    }
    // The first list came without POP rows, which left Refresh disabled; ISP mode enables it.
    void VisitIspMode() {
        To().rbISP.UserClick();
        To().rbPOP.UserClick();
    }
    // Every element of a saved array, row by row.
    static std::vector<std::vector<std::string>> Elements(const Variant& list) {
        const SafeArray& rows = list.ToArray();
        std::vector<std::vector<std::string>> out;
        for (std::int32_t r = rows.LBound(1); r <= rows.UBound(1); ++r) {
            out.emplace_back();
            for (std::int32_t f = rows.LBound(2); f <= rows.UBound(2); ++f) {
                EXPECT_EQ(rows.Get(r, f).Type(), automation::VarType::String);
                out.back().push_back(rows.Get(r, f).ToString());
            }
        }
        return out;
    }
};

TEST_F(SavingTest, ASavedPopArrayHasNineStringFieldsPerRowInListOrderWithTheLocationFirst) {
    View().UserSelectItem(1);
    To().btnDown.UserClick();
    Tick(0, true);  // the first row now: 555-0102, which the engine sent unticked
    Tick(0, false);
    engine->ClearCalls();
    To().btnSaveList.UserClick();
    ASSERT_EQ(engine->CountOf("SavePOPList"), 1);
    const auto args = engine->CallsTo("SavePOPList")[0].args;
    EXPECT_EQ(args[0].ToString(), "Home");
    EXPECT_EQ(args[1].ToString(), "Corporate");
    EXPECT_EQ(args[2].ToArray().Element(), SafeArray::ElementType::String);
    using R = std::vector<std::string>;
    EXPECT_EQ(Elements(args[2]),
              (std::vector<R>{{"555-0102", "Acme", "1", "0", "", "", "", "", ""},
                              {"555-0101", "Acme", "2", "1", "", "", "", "", ""},
                              {"555-0201", "Globex", "3", "1", "", "", "", "", ""}}));
    EXPECT_FALSE(To().popListChanged());
    EXPECT_FALSE(To().btnSaveList.Enabled());
    EXPECT_TRUE(Win().cmboFrom.Enabled());
}

TEST_F(SavingTest, ASavedIspArrayHasSevenFieldsWithTheNameThenTheFlagThenThePosition) {
    To().rbISP.UserClick();
    Edit();
    To().btnSaveList.UserClick();
    ASSERT_EQ(engine->CountOf("SaveISPList"), 1);
    EXPECT_EQ(engine->CountOf("SavePOPList"), 0);
    const auto args = engine->CallsTo("SaveISPList")[0].args;
    EXPECT_EQ(args[0].ToString(), "Corporate");
    using R = std::vector<std::string>;
    EXPECT_EQ(Elements(args[1]), (std::vector<R>{{"Acme", "1", "1", "", "", "", ""},
                                                 {"Globex", "1", "2", "", "", "", ""}}));
    EXPECT_FALSE(To().ispListChanged());
}

struct RefreshCase {
    int answer;
    int refreshes;
    bool saveEnabled;
};

// No leaves rows, flags and Save as they were; Yes refreshes and rebuilds, keeping the flags.
TEST_F(SavingTest, ARefreshIsAskedAndTheAnswerDecides) {
    const RefreshCase cases[] = {{forms::mb::kResultNo, 0, true},
                                 {forms::mb::kResultYes, 1, false}};
    VisitIspMode();
    for (const RefreshCase& c : cases) {
        SCOPED_TRACE(c.answer);
        Edit();
        AnswerBoxes(c.answer);
        To().btnRefresh.UserClick();
        ASSERT_EQ(platform.Boxes().size(), 1u);
        EXPECT_EQ(
            platform.Boxes()[0].text,
            "Refreshing your POP list will discard your saved list, do you wish to continue?");
        EXPECT_EQ(engine->CountOf("RefreshPOPList"), c.refreshes);
        EXPECT_EQ(engine->CountOf("BuildDialList"), c.refreshes);
        EXPECT_EQ(To().btnSaveList.Enabled(), c.saveEnabled);
        EXPECT_TRUE(To().popListChanged());
    }
    const auto args = engine->CallsTo("RefreshPOPList").at(0).args;
    EXPECT_EQ(args[0].ToString() + "|" + args[1].ToString(), "Corporate|Home");
}

TEST_F(SavingTest, AnIspRefreshAsksItsOwnQuestionAndReadsTheIspRowsAgain) {
    To().rbISP.UserClick();
    engine->ClearCalls();
    AnswerBoxes(forms::mb::kResultYes);
    To().btnRefresh.UserClick();
    EXPECT_EQ(platform.Boxes().back().text,
              "Refreshing your ISP list will discard your saved list, do you wish to continue?");
    EXPECT_EQ(engine->CallNames().front(), "RefreshISPList");
    EXPECT_EQ(engine->CallsTo("RefreshISPList")[0].args[0].ToString(), "Corporate");
    EXPECT_GE(engine->CountOf("GetISPList"), 1);
}

TEST_F(SavingTest, ARefreshWhileConnectingAsksNothing) {
    Win().IsConnecting = true;
    To().btnRefresh.UserClick();
    EXPECT_TRUE(platform.Boxes().empty());
    EXPECT_EQ(engine->CountOf("RefreshPOPList"), 0);
}

TEST_F(SavingTest, RefreshNeedsAPopRowAndIspModeEnablesItForGood) {
    VisitIspMode();
    Deliver({});
    EXPECT_FALSE(To().btnRefresh.Enabled());
    To().btnRefresh.UserClick();
    EXPECT_TRUE(platform.Boxes().empty());
    Deliver(pops);
    EXPECT_FALSE(To().btnRefresh.Enabled()) << "rows alone don't enable it";
    To().rbISP.UserClick();
    EXPECT_TRUE(To().btnRefresh.Enabled());
    To().rbPOP.UserClick();
    EXPECT_TRUE(To().btnRefresh.Enabled());
}

struct HideCase {
    int answer;
    bool closes;
    int saves;
};

TEST_F(SavingTest, HidingWithEditsAsksYesSavesAndStaysOpenNoDiscardsAndCloses) {
    const HideCase cases[] = {{forms::mb::kResultYes, false, 1}, {forms::mb::kResultNo, true, 0}};
    for (const HideCase& c : cases) {
        SCOPED_TRACE(c.answer);
        Edit();
        AnswerBoxes(c.answer);
        bool ok = !c.closes;
        To().OnHide(ok);
        EXPECT_EQ(ok, c.closes);
        EXPECT_EQ(platform.Boxes().at(0).text, kSaveQuestion);
        EXPECT_EQ(engine->CountOf("SavePOPList"), c.saves);
        EXPECT_FALSE(To().btnSaveList.Enabled() || To().popListChanged());
        EXPECT_FALSE(Ticked(1)) << "the engine's list is read again";
    }
}

TEST_F(SavingTest, ConnectWithEditsAsksAndStartsNoCallWhateverTheAnswer) {
    for (const int answer : {forms::mb::kResultNo, forms::mb::kResultYes}) {
        Edit();
        AnswerBoxes(answer);
        Win().btnConnect.UserClick();
        EXPECT_EQ(platform.Boxes().at(0).text, kSaveQuestion) << answer;
        EXPECT_EQ(engine->CountOf("Connect"), 0) << answer;
        EXPECT_FALSE(To().btnSaveList.Enabled()) << answer;
        EXPECT_EQ(engine->CountOf("SavePOPList"), answer == forms::mb::kResultYes ? 1 : 0);
    }
}

struct LocationCase {
    int answer;
    int saves;
    bool stillMarked;
};

TEST_F(SavingTest, ALocationChangeWithEditsAsksAndNoOnlyDisablesSave) {
    const LocationCase cases[] = {{forms::mb::kResultNo, 0, true},
                                  {forms::mb::kResultYes, 1, false}};
    for (const LocationCase& c : cases) {
        Edit();
        AnswerBoxes(c.answer);
        Win().cmboFrom.SetListIndex(Win().cmboFrom.ListIndex() == 0 ? 1 : 0);
        EXPECT_EQ(platform.Boxes().at(0).text, kSaveQuestion) << c.answer;
        EXPECT_EQ(platform.Boxes().at(0).flags, 52) << c.answer;
        EXPECT_EQ(engine->CountOf("SavePOPList"), c.saves) << c.answer;
        EXPECT_FALSE(To().btnSaveList.Enabled()) << c.answer;
        EXPECT_EQ(To().popListChanged(), c.stillMarked) << c.answer;
        EXPECT_EQ(Texts().size(), 3u) << "the new location's list is read";
    }
}

}  // namespace
}  // namespace kw::dialer::testing
