// The dial list kept by the engine simulator across runs of the program: what the user saves
// comes back in a fresh program on the same data.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../spine/program_fixture.h"
#include "client/ui/dialer/diallist/to_pullout.h"

namespace kw::dialer::testing {
namespace {

class SimulatedDialListTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        UseSimulator();
        StoreUser("anna", "secret");
    }

    // Starts the program and waits for its first dial list, shown in the pullout.
    void StartWithList() {
        ASSERT_TRUE(Start());
        ASSERT_TRUE(RunUntil([this] { return !Win().IsGettingDialList; }));
        To().Show();
        ASSERT_GE(View().ItemCount(), 3) << "the home location has POPs of its own";
    }
    // Ends the program and starts another on the same engine data.
    void Restart() {
        app.reset();
        app = std::make_unique<Application>(platform);
        StartWithList();
    }

    ToPullout& To() { return app->Form<ToPullout>(); }
    forms::ListView& View() { return To().lstvDialList; }

    // Each row as "number|ISP|ticked".
    std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        for (int i = 1; i <= View().ItemCount(); ++i) {
            const auto& item = View().Item(i);
            rows.push_back(item.text + "|" + View().SubItem(i, 1) +
                           (item.checked ? "|on" : "|off"));
        }
        return rows;
    }
};

TEST_F(SimulatedDialListTest, ASavedOrderAndTickComeBackInTheNextProgram) {
    StartWithList();
    std::vector<std::string> expected = Rows();
    // The second row above the first, the third's tick cleared, and saved.
    View().UserSelectItem(2);
    To().btnUp.UserClick();
    View().UserCheck(3, false);
    View().UserMouseUp(forms::mouse::kLeft, 0, 12, 30);
    ASSERT_TRUE(To().btnSaveList.Enabled());
    To().btnSaveList.UserClick();
    std::swap(expected[0], expected[1]);
    expected[2].replace(expected[2].rfind('|'), std::string::npos, "|off");
    ASSERT_EQ(Rows(), expected) << "the list read back after the save";

    Restart();
    EXPECT_EQ(Rows(), expected);
}

}  // namespace
}  // namespace kw::dialer::testing
