#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "../spine/program_fixture.h"
#include "client/ui/dialer/diallist/to_pullout.h"

namespace kw::dialer::testing {

// A POP row as the engine sends it: index, number, ISP, city, state, modem, enabled, cost.
using PopRow = std::vector<std::string>;
// An ISP row: name, help number, web site, enabled, position, sorted index.
using IspRow = std::vector<std::string>;

automation::Variant Rows(const std::vector<std::vector<std::string>>& rows, int fields);

// The program started and idle, the dial list pullout shown, and an engine that answers the
// policies, the ISP rows and the dial list as each test sets them.
class DialListTest : public ProgramTest {
  protected:
    void SetUp() override;

    ToPullout& To() { return app->Form<ToPullout>(); }
    forms::ListView& View() { return To().lstvDialList; }
    // The engine delivers these POP rows, as after a dial list request.
    void Deliver(const std::vector<PopRow>& pops);
    // What each later dial list request brings.
    void OnEachRequest(const std::vector<PopRow>& pops);
    // The user ticks or clears a row's box (row from 0) and lets the button go.
    void Tick(int row, bool ticked, int button = forms::mouse::kLeft);
    void AnswerBoxes(int result);
    std::vector<std::string> Texts() const;
    bool Ticked(int row) { return (View().ItemState(row, -4096) & forms::lvis::kChecked) != 0; }

    // Value and whether the query works, per policy key.
    std::map<std::string, std::pair<std::string, bool>> policy = {{"POPordering", {"1", true}},
                                                                  {"ISPordering", {"1", true}}};
    std::vector<IspRow> isps = {{"Acme", "555-1000", "acme.example", "1", "1", "2"},
                                {"Globex", "555-2000", "globex.example", "0", "2", "7"}};
    std::vector<PopRow> pops = {{"1", "555-0101", "Acme", "Boston", "MA", "V.90", "1", "5"},
                                {"2", "555-0102", "Acme", "Salem", "MA", "V.90", "0", "6"},
                                {"3", "555-0201", "Globex", "Lowell", "MA", "ISDN", "1", "9"}};
};

}  // namespace kw::dialer::testing
