#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "../spine/program_fixture.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"

namespace kw::dialer::testing {

// The fields of one stored location, by key.
using Fields = std::map<std::string, std::string>;

// A country row as the engine lists it: name, code, letter code, local radius, enabled.
struct CountryRow {
    std::string name;
    float code;
};

// The country table in the engine's flat layout, five fields a country.
automation::Variant CountryRows(const std::vector<CountryRow>& rows);

// A card row: position, identifier, number, name, long distance rule, same area rule.
struct CardRow {
    int index;
    int id;
    std::string number;
    std::string name;
};

// A United States location as the form stores it.
Fields UsFields(const std::string& area, const std::string& exchange, const std::string& number);

// The program with an engine that keeps its locations, policies, countries and cards as the test
// sets them, answering each call as a real store would.
class LocationTest : public ProgramTest {
  public:
    // Types text key by key into a control that has the focus, as a user would.
    static void Type(forms::Control& control, const std::string& text);

  protected:
    void SetUp() override;

    // Starts the program, lets the first dial list arrive and opens the location pullout.
    void StartWithPullout();
    FromPullout& From() { return app->Form<FromPullout>(); }
    PrefPullout& Pref() { return app->Form<PrefPullout>(); }
    // Presses Add, names the location and types the number parts.
    void BeginNew(const std::string& name);
    void SelectCountry(const std::string& text) { Choose(From().cmboCountries, text); }
    // The dial list that a location change asks for arrives.
    void DeliverDialList();
    // Every box answered with result from now on.
    void AnswerBoxes(int result);
    std::vector<std::string> BoxTexts() const;

    // What the engine holds: names in its own order, and the fields of each.
    std::vector<std::string> order = {"Home", "Hotel"};
    std::map<std::string, Fields> stored;
    // Value and whether the query works, per policy key; absent keys fail.
    std::map<std::string, std::pair<std::string, bool>> policy = {
        {"CCdialing", {"1", true}},
        {"ManualDialing", {"1", true}},
        {"DialStringEditing", {"1", true}}};
    std::vector<CountryRow> countries = {
        {"GERMANY", 49}, {"UNITED KINGDOM", 44}, {"UNITED STATES", 1}};
    std::vector<CardRow> cards;
    std::int32_t firstCardRow = 0;  // the lower bound of the card rows the engine hands over
    // Keys whose writes the engine refuses.
    std::set<std::string> refusedKeys;
    bool createWorks = true;
    bool updateWorks = true;

  private:
    std::map<std::string, Fields> pending_;
};

}  // namespace kw::dialer::testing
