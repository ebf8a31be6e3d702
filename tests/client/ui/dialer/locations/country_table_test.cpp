// The client's copy of the country table, and what the location form shows from it.
#include <gtest/gtest.h>

#include <limits>

#include "client/ui/dialer/locations/country_list.h"
#include "location_fixture.h"
#include "platform/automation/safe_array.h"
#include "support/scripted_engine.h"

namespace kw::dialer::testing {
namespace {

using automation::SafeArray;
using automation::Variant;

TEST(CountryTableTest, ATableEndingAtTheTopOfTheIndexRangeIsReadOnce) {
    test::ScriptedEngine engine;
    const std::int32_t top = std::numeric_limits<std::int32_t>::max();
    SafeArray flat = SafeArray::OneDim(top - 9, top);
    for (std::int32_t k = 0; k < 10; ++k) {
        flat.Set(top - 9 + k,
                 k % 5 == 1 ? Variant(std::int32_t{40 + k}) : Variant("C" + std::to_string(k)));
    }
    engine.Then("GetCountryList", Variant(true), {{0, Variant(std::move(flat))}});
    CountryList table(engine);
    table.SetupCountries();
    ASSERT_EQ(table.Count(), 2);
    EXPECT_EQ(table.item(2)->code(), 46);
}

// ---- what the form shows of the table -------------------------------------------------------

TEST_F(LocationTest, TheFormOpensOnTheUnitedStatesWithTheCountriesSortedByText) {
    countries = {{"UNITED STATES", 1}, {"GERMANY", 49}, {"", 7}};
    StartWithPullout();
    const forms::ComboBox& box = From().cmboCountries;
    ASSERT_EQ(box.ListCount(), 3);
    EXPECT_EQ(box.List(0), " (7)");
    EXPECT_EQ(box.List(1), "GERMANY (49)");
    EXPECT_EQ(box.Text(), "UNITED STATES (1)");
}

TEST_F(LocationTest, ATableWithoutTheUnitedStatesSelectsItsFirstCountry) {
    countries = {{"GERMANY", 49}, {"AUSTRIA", 43}};
    stored["Home"]["CountryName"] = "SWITZERLAND";
    StartWithPullout();
    EXPECT_EQ(From().cmboCountries.Text(), "AUSTRIA (43)");
}

TEST_F(LocationTest, AStoredCountryTheTableLacksShowsTheUnitedStates) {
    stored["Hotel"]["CountryName"] = "Germany";  // names match in their case only
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(From().cmboCountries.Text(), "UNITED STATES (1)");
}

TEST_F(LocationTest, ChoosingTheNamelessCountryMakesItCurrent) {
    countries = {{"UNITED STATES", 1}, {"", 7}};
    StartWithPullout();
    SelectCountry(" (7)");
    ASSERT_NE(app->CurrentCountry, nullptr);
    EXPECT_EQ(app->CurrentCountry->code(), 7);
}

}  // namespace
}  // namespace kw::dialer::testing
