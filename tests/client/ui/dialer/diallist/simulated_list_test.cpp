// The dial list kept by the engine simulator across runs of the program: what the user saves
// comes back in a fresh program on the same data, and a refresh drops it.
#include <gtest/gtest.h>

#include <fstream>
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

    // Moves the second row above the first, clears the third's tick and saves.
    void ReorderUntickAndSave() {
        View().UserSelectItem(2);
        To().btnUp.UserClick();
        View().UserCheck(3, false);
        View().UserMouseUp(forms::mouse::kLeft, 0, 12, 30);
        ASSERT_TRUE(To().btnSaveList.Enabled());
        To().btnSaveList.UserClick();
    }
};

TEST_F(SimulatedDialListTest, ASavedOrderAndTickComeBackInTheNextProgram) {
    StartWithList();
    const std::vector<std::string> computed = Rows();
    ReorderUntickAndSave();
    std::vector<std::string> expected = computed;
    std::swap(expected[0], expected[1]);
    expected[2].replace(expected[2].rfind('|'), std::string::npos, "|off");
    ASSERT_EQ(Rows(), expected) << "the pullout shows the edit before it is saved";

    Restart();
    EXPECT_EQ(Rows(), expected);
}

TEST_F(SimulatedDialListTest, RefreshingDropsTheSavedOrder) {
    StartWithList();
    const std::vector<std::string> computed = Rows();
    ReorderUntickAndSave();
    // The first list of the start came empty and left Refresh off; the ISP view turns it on.
    To().rbISP.UserClick();
    To().rbPOP.UserClick();
    ASSERT_TRUE(RunUntil([this] { return !Win().IsGettingDialList; }));
    ASSERT_TRUE(To().btnRefresh.Enabled());
    platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultYes; });
    To().btnRefresh.UserClick();
    ASSERT_TRUE(RunUntil([this] { return !Win().IsGettingDialList; }));
    EXPECT_EQ(Rows(), computed);

    Restart();
    EXPECT_EQ(Rows(), computed);
}

// The most rows the program counts: the 21 shipped for the home office and the corporate
// network, and as many generated as make 32,767.
TEST_F(SimulatedDialListTest, AVeryLargePhoneBookArrivesWhole) {
    std::filesystem::create_directories(dir / "dravlink");
    std::ofstream(dir / "dravlink" / "engine.ini")
        << "[Engine]\nDialListDelay = 10\nGeneratedPOPs = Bluewave Online | 1 | 512 | 32746\n";
    StartWithList();
    EXPECT_EQ(View().ItemCount(), 32767);
}

}  // namespace
}  // namespace kw::dialer::testing
