// Opening and closing the pullouts as the user clicks the tabs: one open at a time, each asked
// before it goes, each at its place and in its shape beside the main window.
#include <gtest/gtest.h>

#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::FormProperty;

class PulloutTest : public WindowFamilyTest {
  protected:
    std::string Left() { return Win().btnLeft.Picture(); }
    std::string Reg() { return Win().btnReg.Picture(); }
    bool Open(forms::Form& pullout, bool flag) { return pullout.Visible() && flag; }
    // The main window's artwork inside its frame, as its own shape.
    void ShapeMainWindow() {
        SetWindowRegion(Win(), Region::FromRect(FrameWidth(), FrameHeight(), FrameWidth() + 128,
                                                FrameHeight() + 320));
    }
};

TEST_F(PulloutTest, EachTabOpensItsPulloutAtItsPlaceInItsOwnSize) {
    MainWin& win = Win();
    const struct {
        forms::Image& tab;
        forms::Form& pullout;
        std::pair<int, int> place;
    } tabs[] = {{win.btnFromPullout, Get<FromPullout>(), {90, 80}},
                {win.btnToPullout, Get<ToPullout>(), {90, 80}},
                {win.btnRxPullout, Get<RxPullout>(), {90, 80}},
                {win.btnMorePullout, Get<MorePullout>(), {114, 227}}};
    for (const auto& t : tabs) {
        SCOPED_TRACE(t.tab.Name());
        t.tab.UserClick();
        EXPECT_TRUE(t.pullout.Visible());
        EXPECT_EQ(Beside(t.pullout), t.place);
        EXPECT_EQ(t.pullout.Width(), t.pullout.ScaleWidth());
        EXPECT_EQ(t.pullout.Height(), t.pullout.ScaleHeight());
    }
}

TEST_F(PulloutTest, ATabShowsItIsOpenAndTheOneThatClosedShowsItIsClosed) {
    MainWin& win = Win();
    ASSERT_NE(Left(), Reg());
    win.btnFromPullout.UserClick();
    EXPECT_EQ(win.btnFromPullout.Picture(), Left());
    win.btnMorePullout.UserClick();
    EXPECT_EQ(win.btnFromPullout.Picture(), Reg());
    EXPECT_EQ(win.btnMorePullout.Picture(), Left());
}

TEST_F(PulloutTest, ThePrescriberTabKeepsItsFace) {
    const std::string face = Win().btnRxPullout.Picture();
    Win().btnRxPullout.UserClick();
    ASSERT_TRUE(Win().rxShown);
    EXPECT_EQ(Win().btnRxPullout.Picture(), face);
}

TEST_F(PulloutTest, ASecondClickOnTheTabClosesItsPullout) {
    Win().btnToPullout.UserClick();
    Win().btnToPullout.UserClick();
    EXPECT_FALSE(Get<ToPullout>().Visible() || Win().toShown);
    EXPECT_EQ(Win().btnToPullout.Picture(), Reg());
}

TEST_F(PulloutTest, ADirtyPulloutTheUserKeepsStaysOpenWhenAnotherTabIsClicked) {
    Win().btnToPullout.UserClick();
    MakeToDirty();
    UserKeepsChanges();
    Win().btnFromPullout.UserClick();
    EXPECT_TRUE(Open(Get<ToPullout>(), Win().toShown));
    EXPECT_EQ(Win().btnToPullout.Picture(), Left());
    EXPECT_FALSE(Get<FromPullout>().Visible() || Win().fromShown);
    EXPECT_EQ(Win().btnFromPullout.Picture(), Reg());
}

TEST_F(PulloutTest, WithNothingOpenNoPulloutIsAskedToClose) {
    // A closed ToPullout with changes would refuse if it were asked.
    MakeToDirty();
    UserKeepsChanges();
    Win().btnFromPullout.UserClick();
    EXPECT_TRUE(Open(Get<FromPullout>(), Win().fromShown));
    EXPECT_TRUE(platform.Boxes().empty());
}

TEST_F(PulloutTest, WithOneOpenAllThreeOthersAreAskedInOrderAndARefusalKeepsWhatClosedClosed) {
    Win().btnFromPullout.UserClick();
    // PrefPullout is closed, but MorePullout asks it all the same, and it refuses.
    MakePrefDirty();
    UserKeepsChanges();
    Win().btnToPullout.UserClick();
    EXPECT_FALSE(Win().fromShown || Get<FromPullout>().Visible()) << "closed first, stays closed";
    EXPECT_EQ(Win().btnFromPullout.Picture(), Reg());
    EXPECT_FALSE(Win().toShown || Get<ToPullout>().Visible())
        << "MorePullout's refusal opens nothing";
}

TEST_F(PulloutTest, TheFirstOpeningCutsAwayWhatTheMainWindowCovers) {
    ShapeMainWindow();
    Win().btnToPullout.UserClick();
    const Region shape = WindowRegion(Get<ToPullout>());
    // Main window x 100 is pullout x 10; main window x 140 lies beyond the artwork.
    EXPECT_FALSE(shape.Contains(10, 20));
    EXPECT_TRUE(shape.Contains(50, 20));
    EXPECT_TRUE(shape.Contains(380, 200));
    EXPECT_FALSE(shape.Contains(400, 100)) << "nothing beyond the pullout's own rectangle";
}

TEST_F(PulloutTest, OpeningAgainSkipsTheShape) {
    ToPullout& to = Get<ToPullout>();
    FormChanges changes(to);
    Win().btnToPullout.UserClick();
    const Region shape = WindowRegion(to);
    Win().btnToPullout.UserClick();
    Win().btnToPullout.UserClick();
    EXPECT_TRUE(to.Visible());
    EXPECT_EQ(changes.Of(FormProperty::Region), 1);
    EXPECT_EQ(WindowRegion(to), shape);
}

// MorePullout open, and one of its panels above it.
class MorePulloutTest : public PulloutTest {
  protected:
    void SetUp() override {
        PulloutTest::SetUp();
        Win().btnMorePullout.UserClick();
        ASSERT_TRUE(Get<MorePullout>().Visible());
    }
    void OpenPreferences() {
        Get<MorePullout>().btnPref.UserClick();
        ASSERT_TRUE(Open(Get<PrefPullout>(), Win().prefShown));
    }
    bool MoreOpen() { return Open(Get<MorePullout>(), Win().moreShown); }
};

TEST_F(MorePulloutTest, ARefusalOfThePreferencesKeepsMorePulloutOpen) {
    OpenPreferences();
    MakePrefDirty();
    UserKeepsChanges();
    Win().btnToPullout.UserClick();
    EXPECT_TRUE(MoreOpen());
    EXPECT_TRUE(Open(Get<PrefPullout>(), Win().prefShown));
    EXPECT_FALSE(Win().toShown);
}

TEST_F(MorePulloutTest, WhenItsPanelsLetGoMorePulloutClosesForAnotherTab) {
    OpenPreferences();
    Win().btnToPullout.UserClick();
    EXPECT_FALSE(MoreOpen() || Get<PrefPullout>().Visible());
    EXPECT_EQ(Win().btnMorePullout.Picture(), Reg());
    EXPECT_TRUE(Win().toShown);
}

TEST_F(MorePulloutTest, EachButtonOpensItsPanelAboveIt) {
    MorePullout& more = Get<MorePullout>();
    const std::pair<forms::CommandButton*, forms::Form*> buttons[] = {
        {&more.btnLog, &Get<LogPullout>()},
        {&more.btnDisplay, &Get<DisplayPullout>()},
        {&more.btnPref, &Get<PrefPullout>()}};
    for (auto [button, panel] : buttons) {
        SCOPED_TRACE(button->Name());
        button->UserClick();
        EXPECT_TRUE(panel->Visible());
        EXPECT_EQ(Beside(*panel), (std::pair{114, 127}));
        EXPECT_EQ(panel->Width(), 320);
    }
}

TEST_F(MorePulloutTest, OpeningAPanelClosesTheOpenOne) {
    Get<MorePullout>().btnLog.UserClick();
    Get<MorePullout>().btnDisplay.UserClick();
    EXPECT_FALSE(Get<LogPullout>().Visible() || Win().logShown);
    EXPECT_TRUE(Open(Get<DisplayPullout>(), Win().displayShown));
}

TEST_F(MorePulloutTest, ADirtyPanelTheUserKeepsStaysAndTheOtherDoesNotOpen) {
    Get<MorePullout>().btnDisplay.UserClick();
    MakeDisplayDirty();
    UserKeepsChanges();
    Get<MorePullout>().btnLog.UserClick();
    EXPECT_TRUE(Open(Get<DisplayPullout>(), Win().displayShown));
    EXPECT_FALSE(Get<LogPullout>().Visible() || Win().logShown);
}

TEST_F(MorePulloutTest, PreferencesOpenWithoutTheChangesTheyWereLeftWith) {
    MakePrefDirty();
    Get<MorePullout>().btnPref.UserClick();
    EXPECT_FALSE(Get<PrefPullout>().btnSave.Enabled());
}

TEST_F(MorePulloutTest, ClickingTheOpenPanelsButtonNeitherClosesNorRecutsButPlacesItAgain) {
    DisplayPullout& display = Get<DisplayPullout>();
    FormChanges changes(display);
    Get<MorePullout>().btnDisplay.UserClick();
    ASSERT_EQ(changes.Of(FormProperty::Region), 1);
    const Region shape = WindowRegion(display);
    Win().Move(Win().Left() + 30, Win().Top() + 12);
    Get<MorePullout>().btnDisplay.UserClick();
    EXPECT_TRUE(Open(display, Win().displayShown));
    EXPECT_EQ(changes.Of(FormProperty::Region), 1);
    EXPECT_EQ(WindowRegion(display), shape);
    EXPECT_EQ(Beside(display), (std::pair{114, 127}));
}

TEST_F(MorePulloutTest, APanelsShapeTakesTheMainWindowAndMorePulloutByExclusiveOr) {
    ShapeMainWindow();
    Get<MorePullout>().btnLog.UserClick();
    const Region shape = WindowRegion(Get<LogPullout>());
    // Main window x 120 is panel x 6; MorePullout (68 by 72) stands 100 rows below the panel.
    EXPECT_FALSE(shape.Contains(5, 50)) << "under the main window";
    EXPECT_FALSE(shape.Contains(40, 130)) << "under MorePullout";
    EXPECT_TRUE(shape.Contains(40, 90));
    EXPECT_TRUE(shape.Contains(200, 130));
    // Where the main window reaches beyond the panel, exclusive or adds it.
    EXPECT_TRUE(shape.Contains(5, 210));
}

}  // namespace
}  // namespace kw::dialer::testing
