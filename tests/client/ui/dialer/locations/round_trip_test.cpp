// A location made with the simulated engine survives the program: added in Germany with a
// calling card, it changes the dial list to Germany's numbers and reads back whole next time.
#include <gtest/gtest.h>

#include "../spine/program_fixture.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"

namespace kw::dialer::testing {
namespace {

class RoundTripTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        UseSimulator();
        StoreUser("anna", "secret");
        platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultOk; });
    }
    bool DialListArrives() {
        return RunUntil([this] { return !Win().IsGettingDialList; });
    }
    std::vector<std::string> DialNumbers() {
        std::vector<std::string> numbers;
        const forms::ListView& view = app->Form<ToPullout>().lstvDialList;
        for (int i = 1; i <= view.ItemCount(); ++i) {
            numbers.push_back(view.Item(i).text);
        }
        return numbers;
    }
};

TEST_F(RoundTripTest, ALocationInGermanyWithACardIsKeptWholeAcrossARestart) {
    ASSERT_TRUE(Start());
    ASSERT_TRUE(DialListArrives());
    const std::vector<std::string> before = DialNumbers();
    Win().btnMorePullout.UserClick();
    app->Form<MorePullout>().btnPref.UserClick();
    app->Form<PrefPullout>().cmboCallingCards.UserSelect(1);
    Win().btnFromPullout.UserClick();
    FromPullout& from = app->Form<FromPullout>();
    from.btnAdd.UserClick();
    from.cmboLocations.UserSetText("Berlin Office");
    Choose(from.cmboCountries, "GERMANY (49)");
    from.txtPhoneNumber.UserSetText("30 1234567");
    from.txtOutsideAccess.UserSetText("0,");
    from.chkCallingCard.UserClick();
    const std::string card = from.lblCallingCardName.Caption();
    ASSERT_EQ(card, "Meridian Prepaid");
    from.btnAdd.UserClick();
    ASSERT_EQ(Win().cmboFrom.Text(), "Berlin Office");
    ASSERT_TRUE(DialListArrives());
    const std::vector<std::string> german = DialNumbers();
    EXPECT_NE(german, before);
    EXPECT_EQ(german, (std::vector<std::string>{"69 9999 0110", "89 9999 0220"}));

    // The user closes the program, and starts it again.
    EXPECT_THROW(Win().btnCloseWin.UserClick(), headless::ProcessEnded);
    EXPECT_EQ(platform.EndedWith(), 0);
    app = std::make_unique<Application>(platform);
    ASSERT_TRUE(Start());
    ASSERT_TRUE(DialListArrives());
    Choose(Win().cmboFrom, "Berlin Office");
    ASSERT_TRUE(DialListArrives());
    FromPullout& again = app->Form<FromPullout>();
    EXPECT_EQ(again.cmboCountries.Text(), "GERMANY (49)");
    EXPECT_EQ(again.txtPhoneNumber.Text(), "30 1234567");
    EXPECT_EQ(again.txtOutsideAccess.Text(), "0,");
    EXPECT_EQ(again.txtLongDistance.Text(), "");
    EXPECT_EQ(again.chkCallingCard.Value(), forms::check::kChecked);
    EXPECT_EQ(again.lblCallingCardName.Caption(), card);
    EXPECT_EQ(again.chkUseExisting.Value(), forms::check::kUnchecked);
    EXPECT_EQ(DialNumbers(), german);
}

}  // namespace
}  // namespace kw::dialer::testing
