// How the typed number becomes the stored area code, exchange and number, and which keys each
// field lets through.
#include <gtest/gtest.h>

#include "location_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::mb::kResultOk;

class PhoneRulesTest : public LocationTest {
  protected:
    void SetUp() override {
        LocationTest::SetUp();
        StartWithPullout();
        AnswerBoxes(kResultOk);
        BeginNew("Office");
    }
};

// The number typed; the message that refuses it, empty when it is accepted; the exchange and
// number stored; and the part selected for correction, none when the field loses the focus.
using UsNumberTest =
    Cases<PhoneRulesTest, std::string, std::string, std::string, std::string, int, int>;

TEST_P(UsNumberTest, AUnitedStatesNumberIsSplitOrRefusedWithItsMessage) {
    const auto& [phone, message, exchange, number, selStart, selLength] = GetParam();
    From().txtAreaCode.UserSetText("617");
    From().txtPhoneNumber.UserSetText(phone);
    From().btnAdd.UserClick();
    if (message.empty()) {
        ASSERT_EQ(BoxTexts(), std::vector<std::string>{"Saved Office"});
        EXPECT_EQ(stored["Office"]["Exchange"], exchange);
        EXPECT_EQ(stored["Office"]["Number"], number);
        EXPECT_EQ(From().txtPhoneNumber.Text(), exchange + "-" + number);
        return;
    }
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{message});
    EXPECT_EQ(engine->CountOf("LocationExists"), 0) << "nothing is written";
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    if (selStart >= 0) {
        EXPECT_TRUE(From().txtPhoneNumber.HasFocus());
        EXPECT_EQ(From().txtPhoneNumber.SelStart(), selStart);
        EXPECT_EQ(From().txtPhoneNumber.SelLength(), selLength);
    } else {
        EXPECT_FALSE(From().txtPhoneNumber.HasFocus());
    }
}

const char* const kFormat = "Invalid phone number. Please use the format XXX-XXXX.";

INSTANTIATE_TEST_SUITE_P(
    Numbers, UsNumberTest,
    ::testing::Values(
        std::tuple{"5550123", "", "555", "0123", -1, 0},
        std::tuple{"555-0123", "", "555", "0123", -1, 0},
        std::tuple{"-5550123", "Invalid phone number.  Too few numbers before the dash (-).", "",
                   "", 0, 0},
        std::tuple{"555-12-12", "Invalid phone number.  Too many numbers after the dash (-).", "",
                   "", 4, 5},
        std::tuple{"555-123", "Invalid phone number.  Too few numbers after the dash (-).", "", "",
                   4, 3},
        std::tuple{"55-1212", "Invalid phone number.  Too few numbers before the dash (-).", "", "",
                   0, 2},
        std::tuple{"5555-1212", "Invalid phone number.  Too many numbers before the dash (-).", "",
                   "", 0, 4},
        std::tuple{"555012", kFormat, "", "", -1, 0},
        std::tuple{"55501234", kFormat, "", "", -1, 0}));

TEST_F(PhoneRulesTest, ATwoDigitAreaCodeIsRefusedBeforeTheNumberIsLookedAt) {
    From().txtAreaCode.UserSetText("61");
    From().txtPhoneNumber.UserSetText("55");
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Invalid area code."});
}

TEST_F(PhoneRulesTest, EmptyFieldsAreAskedForInTheirOrder) {
    From().cmboLocations.UserSetText("");
    From().btnAdd.UserClick();
    From().cmboLocations.UserSetText("   ");
    From().btnAdd.UserClick();
    From().cmboLocations.UserSetText("Office");
    From().btnAdd.UserClick();
    From().txtAreaCode.UserSetText("617");
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), (std::vector<std::string>{
                              "Please specify a location name.", "Please specify a location name.",
                              "Please specify an area code. (Required in the U.S.)",
                              "Please enter your telephone number."}));
}

TEST_F(PhoneRulesTest, OutsideTheUnitedStatesAnyDigitsAreANumberAndTheDashIsRefused) {
    SelectCountry("UNITED KINGDOM (44)");
    Type(From().txtPhoneNumber, "20-79");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "2079");
    EXPECT_EQ(platform.Beeps(), 1);
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Saved Office"});
    EXPECT_EQ(stored["Office"]["Number"], "2079");
}

using KeyFilterTest = Cases<PhoneRulesTest, std::string, std::string, std::string, int>;

TEST_P(KeyFilterTest, EachFieldLetsItsOwnKeysThrough) {
    const auto& [field, typed, kept, beeps] = GetParam();
    forms::Control* c = From().FindControl(field);
    ASSERT_NE(c, nullptr);
    Type(*c, typed);
    EXPECT_EQ(static_cast<forms::TextBox*>(c)->Text(), kept);
    EXPECT_EQ(platform.Beeps(), beeps);
}

INSTANTIATE_TEST_SUITE_P(Fields, KeyFilterTest,
                         ::testing::Values(std::tuple{"txtAreaCode", "6a1-7x", "617", 3},
                                           std::tuple{"txtPhoneNumber", "555-01 2", "555-012", 1},
                                           std::tuple{"txtOutsideAccess", "9,,", "9,,", 0},
                                           std::tuple{"txtLongDistance", "8,#1", "8,1", 1},
                                           std::tuple{"txtOutsideAccess", "9-", "9", 1}));

TEST_F(PhoneRulesTest, EnteringAFieldSelectsAllOfIt) {
    From().txtOutsideAccess.UserSetText("9,,");
    From().txtAreaCode.UserFocus();
    From().txtOutsideAccess.UserFocus();
    EXPECT_EQ(From().txtOutsideAccess.SelStart(), 0);
    EXPECT_EQ(From().txtOutsideAccess.SelLength(), 3);
}

}  // namespace
}  // namespace kw::dialer::testing
