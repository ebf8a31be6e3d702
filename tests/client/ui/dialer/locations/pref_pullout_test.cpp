// The preferences pullout: the card chosen for the calls, its number, and the confirmation of
// the dial string kept with the location.
#include <gtest/gtest.h>

#include <limits>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "location_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::check::kChecked;
using forms::mb::kResultNo;
using forms::mb::kResultOk;
using forms::mb::kResultYes;

class PrefPulloutTest : public LocationTest {
  protected:
    void SetUp() override {
        LocationTest::SetUp();
        cards = {{0, 7, "111", "Bluewave"}, {1, 9, "222", "Meridian"}};
        AnswerBoxes(kResultOk);
    }
    void OpenPref() {
        Win().btnMorePullout.UserClick();
        app->Form<MorePullout>().btnPref.UserClick();
    }
    void StartWithPref() {
        StartWithPullout();
        OpenPref();
    }
    std::int32_t StoredCard() {
        return UserSetting(settings::kCallingCard, automation::Variant(std::int32_t{0})).ToLong();
    }
};

TEST_F(PrefPulloutTest, WithoutACardListAStoredCardIsToldAfterAMoment) {
    cards.clear();
    SetUserDword(settings::kCallingCard, 7);
    StartWithPref();
    EXPECT_TRUE(platform.Boxes().empty());
    platform.Advance(100);
    ASSERT_EQ(BoxTexts(),
              std::vector<std::string>{LoadResString(ResConst::kLocationNotConfigured)});
    EXPECT_EQ(platform.Boxes()[0].flags & forms::mb::kExclamation, forms::mb::kExclamation);
    platform.Advance(1000);
    EXPECT_EQ(platform.Boxes().size(), 1U);
}

TEST_F(PrefPulloutTest, WithoutACardListAndNoStoredCardNothingIsTold) {
    cards.clear();
    StartWithPref();
    platform.Advance(1000);
    EXPECT_TRUE(platform.Boxes().empty());
    EXPECT_FALSE(Pref().cmboCallingCards.Enabled());
}

TEST_F(PrefPulloutTest, OpeningShowsTheStoredCardAndItsNumber) {
    SetUserDword(settings::kCallingCard, 7);
    StartWithPref();
    EXPECT_EQ(Pref().cmboCallingCards.Text(), "Bluewave");
    EXPECT_EQ(Pref().txtCardNumber.Text(), "111");
    EXPECT_FALSE(Pref().btnSave.Enabled());
}

TEST_F(PrefPulloutTest, CardRowsEndingAtTheTopOfTheIndexRangeAreEachReadOnce) {
    firstCardRow = std::numeric_limits<std::int32_t>::max() - 1;
    StartWithPref();
    EXPECT_EQ(Pref().cmboCallingCards.ListCount(), 2);
}

TEST_F(PrefPulloutTest, ChoosingACardRemembersItForTheUser) {
    StartWithPref();
    Pref().cmboCallingCards.UserSelect(0);
    EXPECT_EQ(StoredCard(), 7);
    EXPECT_EQ(app->CallingCardId, 7);
    EXPECT_EQ(Pref().txtCardNumber.Text(), "111");
    EXPECT_FALSE(Pref().btnSave.Enabled()) << "the number shown is the card's own";
}

TEST_F(PrefPulloutTest, ChoosingACardShowsItOnTheLocationWhenItUsesOne) {
    stored["Home"]["CallingCard"] = "9";
    StartWithPullout();
    ASSERT_EQ(From().lblCallingCardName.Caption(), "Meridian");
    OpenPref();
    Pref().cmboCallingCards.UserSelect(0);
    EXPECT_EQ(From().lblCallingCardName.Caption(), "Bluewave");
}

TEST_F(PrefPulloutTest, SavingTheNumberSendsItForTheCardsPosition) {
    StartWithPref();
    Pref().cmboCallingCards.UserSelect(1);
    Pref().txtCardNumber.UserSetText("4242");
    ASSERT_TRUE(Pref().btnSave.Enabled());
    Pref().btnSave.UserClick();
    const auto calls = engine->CallsTo("SetCallingCardNumber");
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].args[0].ToString(), "1");
    EXPECT_EQ(calls[0].args[1].ToString(), "4242");
    EXPECT_FALSE(Pref().btnSave.Enabled());
    EXPECT_EQ(app->CurrentCallingCard->number, "4242");
}

TEST_F(PrefPulloutTest, ARefusedNumberStaysWithSaveEnabled) {
    engine->Default("SetCallingCardNumber", automation::Variant(false));
    StartWithPref();
    Pref().cmboCallingCards.UserSelect(1);
    Pref().txtCardNumber.UserSetText("4242");
    Pref().btnSave.UserClick();
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Error saving the calling card number."});
    EXPECT_TRUE(Pref().btnSave.Enabled());
    EXPECT_TRUE(Pref().m_CardSaveFailed);
}

using CardQuestionTest = Cases<PrefPulloutTest, int, int, std::string>;

TEST_P(CardQuestionTest, AnotherCardWithAnUnsavedNumberAsksAndTheChoiceGoesAhead) {
    const auto& [answer, saves, numberOfFirstCard] = GetParam();
    StartWithPref();
    Pref().cmboCallingCards.UserSelect(0);
    Pref().txtCardNumber.UserSetText("4242");
    platform.AnswerNextBox(answer);
    Pref().cmboCallingCards.UserSelect(1);
    EXPECT_EQ(BoxTexts().front(),
              "The calling card number for the currently selected carrier has been modified, "
              "do you wish to save the changes?");
    EXPECT_EQ(engine->CountOf("SetCallingCardNumber"), saves);
    EXPECT_EQ(Pref().cmboCallingCards.Text(), "Meridian");
    EXPECT_EQ(Pref().txtCardNumber.Text(), "222");
    EXPECT_EQ(app->CallingCards->item(1)->number, numberOfFirstCard);
}

INSTANTIATE_TEST_SUITE_P(Answers, CardQuestionTest,
                         ::testing::Values(std::tuple{kResultYes, 1, "4242"},
                                           std::tuple{kResultNo, 0, "111"}));

TEST_F(PrefPulloutTest, ConnectWithAnUnsavedNumberAsksAndYesStopsTheConnect) {
    StartWithPref();
    Pref().txtCardNumber.UserSetText("4242");
    platform.AnswerNextBox(kResultYes);
    Win().btnConnect.UserClick();
    EXPECT_EQ(engine->CountOf("SetCallingCardNumber"), 1);
    EXPECT_EQ(engine->CountOf("Connect"), 0);
}

TEST_F(PrefPulloutTest, ConfirmDialIsWrittenToTheSelectedLocationAtOnce) {
    StartWithPref();
    ASSERT_TRUE(Pref().chkConfirmDial.Enabled());
    Pref().chkConfirmDial.UserClick();
    EXPECT_EQ(stored["Home"]["ConfirmDialString"], "1");
    EXPECT_EQ(engine->CountOf("SaveLocation"), 1);
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(Pref().chkConfirmDial.Value(), forms::check::kUnchecked) << "Hotel's own value";
}

using EditingPolicyTest = Cases<PrefPulloutTest, std::string, bool, bool>;

TEST_P(EditingPolicyTest, TheDialStringEditingPolicyDecidesConfirmDial) {
    const auto& [value, works, enabled] = GetParam();
    policy["DialStringEditing"] = {value, works};
    StartWithPullout();
    EXPECT_EQ(Pref().chkConfirmDial.Enabled(), enabled);
}

INSTANTIATE_TEST_SUITE_P(Values, EditingPolicyTest,
                         ::testing::Values(std::tuple{"1", true, true},
                                           std::tuple{"0", true, false},
                                           std::tuple{"1", false, false},
                                           std::tuple{"2", true, false}));

}  // namespace
}  // namespace kw::dialer::testing
