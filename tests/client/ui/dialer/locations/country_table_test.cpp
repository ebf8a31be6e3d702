// The client's copy of the country table: lookups by name, code, key and position, and what the
// location form shows from it.
#include <gtest/gtest.h>

#include <limits>

#include "client/ui/dialer/locations/country_list.h"
#include "location_fixture.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"
#include "support/scripted_engine.h"

namespace kw::dialer::testing {
namespace {

using automation::SafeArray;
using automation::Variant;

// A table read from an engine that lists these countries.
CountryList TableOf(test::ScriptedEngine& engine, const std::vector<CountryRow>& rows) {
    SafeArray flat = SafeArray::OneDim(0, static_cast<std::int32_t>(rows.size()) * 5 - 1);
    std::int32_t i = 0;
    for (const CountryRow& c : rows) {
        for (const Variant& v : {Variant(c.name), Variant(c.code), Variant(std::string("XX")),
                                 Variant(std::string("20")), Variant(std::string("1"))}) {
            flat.Set(i++, v);
        }
    }
    engine.Then("GetCountryList", Variant(true), {{0, Variant(std::move(flat))}});
    CountryList table(engine);
    table.SetupCountries();
    return table;
}

class CountryTableTest : public ::testing::Test {
  protected:
    test::ScriptedEngine engine;
};

TEST_F(CountryTableTest, FindByNameMatchesExactlyAndFallsBackToTheUnitedStates) {
    CountryList table = TableOf(engine, {{"GERMANY", 49}, {"UNITED STATES", 1}});
    EXPECT_EQ(table.FindByName("GERMANY")->code(), 49);
    EXPECT_EQ(table.FindByName("Germany")->name(), "UNITED STATES") << "case matters";
    EXPECT_EQ(table.FindByName("ATLANTIS")->name(), "UNITED STATES");
}

TEST_F(CountryTableTest, WithoutTheUnitedStatesAnUnknownNameFindsNothing) {
    CountryList table = TableOf(engine, {{"GERMANY", 49}});
    EXPECT_EQ(table.FindByName("ATLANTIS"), nullptr);
}

TEST_F(CountryTableTest, FindByCodeGivesAnEmptyRecordForAnUnknownCode) {
    CountryList table = TableOf(engine, {{"GERMANY", 49}, {"UNITED KINGDOM", 44}});
    EXPECT_EQ(table.FindByCode("44")->name(), "UNITED KINGDOM");
    const auto none = table.FindByCode("999");
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->name(), "");
    EXPECT_EQ(none->code(), 0);
}

TEST_F(CountryTableTest, ACountryWithoutANameIsReachedByPositionOnly) {
    CountryList table = TableOf(engine, {{"", 7}, {"GERMANY", 49}});
    ASSERT_EQ(table.Count(), 2);
    EXPECT_EQ(table.item(1)->DisplayText(), " (7)");
    EXPECT_EQ(table.item("GERMANY")->code(), 49);
    EXPECT_THROW(table.item(""), automation::Failure);
}

TEST_F(CountryTableTest, ATableEndingAtTheTopOfTheIndexRangeIsReadOnce) {
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

TEST_F(CountryTableTest, ARefusedListLeavesTheTableAsItWas) {
    CountryList table = TableOf(engine, {{"GERMANY", 49}});
    engine.Then("GetCountryList", Variant(false));
    table.SetupCountries();
    EXPECT_EQ(table.Count(), 1);
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
    stored["Hotel"]["CountryName"] = "ATLANTIS";
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
