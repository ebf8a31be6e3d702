// A phone book longer than the row count can hold: the user is told in the program's own box,
// and the program goes on.
#include <gtest/gtest.h>

#include "dial_list_fixture.h"

namespace kw::dialer::testing {
namespace {

TEST_F(DialListTest, APhoneBookPastTheLongestCountIsReportedAndTheProgramGoesOn) {
    std::vector<PopRow> many;
    for (int i = 0; i < 32768; ++i) {
        many.push_back({std::to_string(i), "555-" + std::to_string(i), "Acme", "Boston", "MA",
                        "V.90", "1", "5"});
    }
    AnswerBoxes(forms::mb::kResultOk);
    Deliver(many);
    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text, " Error [6] Overflow");
    EXPECT_EQ(platform.Boxes()[0].flags, 0x10030);
    EXPECT_TRUE(Texts().empty()) << "the rows read are not shown";

    Deliver(pops);
    EXPECT_EQ(Texts().size(), pops.size()) << "the next list shows as usual";
    EXPECT_TRUE(app->Form<MainWin>().Visible());
}

}  // namespace
}  // namespace kw::dialer::testing
