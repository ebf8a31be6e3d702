// Opening and closing the pullouts as the user clicks the tabs: one open at a time, each asked
// before it goes, each at its place and in its shape beside the main window.
#include <gtest/gtest.h>

#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::FormProperty;

class PulloutTest : public WindowFamilyTest {
  protected:
    struct Tab {
        forms::Image& tab;
        forms::Form& pullout;
        std::pair<int, int> place;
    };
    // The main window's four tabs, their pullouts and where those stand.
    std::vector<Tab> Tabs() {
        MainWin& win = Win();
        return {{win.btnFromPullout, Get<FromPullout>(), {90, 80}},
                {win.btnToPullout, Get<ToPullout>(), {90, 80}},
                {win.btnRxPullout, Get<RxPullout>(), {90, 80}},
                {win.btnMorePullout, Get<MorePullout>(), {114, 227}}};
    }
    std::string Left() { return Win().btnLeft.Picture(); }
    std::string Reg() { return Win().btnReg.Picture(); }
};

TEST_F(PulloutTest, EachTabOpensItsPulloutAtItsPlaceInItsOwnSize) {
    for (Tab& t : Tabs()) {
        SCOPED_TRACE(t.tab.Name());
        t.tab.UserClick();
        EXPECT_TRUE(t.pullout.Visible());
        EXPECT_EQ(Beside(t.pullout), t.place);
        EXPECT_EQ(t.pullout.Width(), t.pullout.ScaleWidth());
        EXPECT_EQ(t.pullout.Height(), t.pullout.ScaleHeight());
    }
    EXPECT_EQ(Get<ToPullout>().Width(), 400);
    EXPECT_EQ(Get<ToPullout>().Height(), 232);
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
    MainWin& win = Win();
    const std::string face = win.btnRxPullout.Picture();
    win.btnRxPullout.UserClick();
    ASSERT_TRUE(win.rxShown);
    EXPECT_EQ(win.btnRxPullout.Picture(), face);
}

TEST_F(PulloutTest, ASecondClickOnTheTabClosesItsPullout) {
    MainWin& win = Win();
    win.btnToPullout.UserClick();
    win.btnToPullout.UserClick();
    EXPECT_FALSE(Get<ToPullout>().Visible() || win.toShown);
    EXPECT_EQ(win.btnToPullout.Picture(), Reg());
}

TEST_F(PulloutTest, OpeningOnePulloutClosesTheOpenOne) {
    MainWin& win = Win();
    win.btnFromPullout.UserClick();
    win.btnRxPullout.UserClick();
    EXPECT_FALSE(Get<FromPullout>().Visible() || win.fromShown);
    EXPECT_TRUE(Get<RxPullout>().Visible() && win.rxShown);
}

TEST_F(PulloutTest, ADirtyPulloutTheUserKeepsStaysOpenWhenAnotherTabIsClicked) {
    MainWin& win = Win();
    win.btnToPullout.UserClick();
    MakeToDirty();
    UserKeepsChanges();
    win.btnFromPullout.UserClick();
    EXPECT_TRUE(Get<ToPullout>().Visible() && win.toShown);
    EXPECT_EQ(win.btnToPullout.Picture(), Left());
    EXPECT_FALSE(Get<FromPullout>().Visible() || win.fromShown);
    EXPECT_EQ(win.btnFromPullout.Picture(), Reg());
}

TEST_F(PulloutTest, ADirtyPulloutTheUserKeepsStaysOpenWhenItsOwnTabIsClicked) {
    MainWin& win = Win();
    win.btnToPullout.UserClick();
    MakeToDirty();
    UserKeepsChanges();
    win.btnToPullout.UserClick();
    EXPECT_TRUE(Get<ToPullout>().Visible() && win.toShown);
    EXPECT_EQ(win.btnToPullout.Picture(), Left());
}

TEST_F(PulloutTest, WithNothingOpenNoPulloutIsAskedToClose) {
    // A closed ToPullout with changes would refuse if it were asked.
    MakeToDirty();
    UserKeepsChanges();
    Win().btnFromPullout.UserClick();
    EXPECT_TRUE(Win().fromShown && Get<FromPullout>().Visible());
    EXPECT_TRUE(platform.Boxes().empty());
}

TEST_F(PulloutTest, WithOneOpenAllThreeOthersAreAskedInOrderAndARefusalKeepsWhatClosedClosed) {
    MainWin& win = Win();
    win.btnFromPullout.UserClick();
    // PrefPullout is closed, but MorePullout asks it all the same, and it refuses.
    MakePrefDirty();
    UserKeepsChanges();
    win.btnToPullout.UserClick();
    EXPECT_FALSE(win.fromShown || Get<FromPullout>().Visible()) << "closed first, stays closed";
    EXPECT_EQ(win.btnFromPullout.Picture(), Reg());
    EXPECT_FALSE(win.toShown || Get<ToPullout>().Visible())
        << "MorePullout's refusal opens nothing";
}

TEST_F(PulloutTest, TheFirstOpeningCutsAwayWhatTheMainWindowCovers) {
    MainWin& win = Win();
    // The main window's artwork, inside its frame.
    SetWindowRegion(win, Region::FromRect(FrameWidth(), FrameHeight(), FrameWidth() + 128,
                                          FrameHeight() + 320));
    win.btnToPullout.UserClick();
    const Region shape = WindowRegion(Get<ToPullout>());
    // Main window x 100 is pullout x 10; main window x 140 lies beyond the artwork.
    EXPECT_FALSE(shape.Contains(10, 20));
    EXPECT_TRUE(shape.Contains(50, 20));
    EXPECT_TRUE(shape.Contains(380, 200));
    EXPECT_FALSE(shape.Contains(400, 100)) << "nothing beyond the pullout's own rectangle";
}

TEST_F(PulloutTest, OpeningAgainSkipsTheShape) {
    MainWin& win = Win();
    ToPullout& to = Get<ToPullout>();
    FormChanges changes;
    to.AddObserver(&changes);
    win.btnToPullout.UserClick();
    const Region shape = WindowRegion(to);
    win.btnToPullout.UserClick();
    win.btnToPullout.UserClick();
    EXPECT_TRUE(to.Visible());
    EXPECT_EQ(changes.Of(FormProperty::Region), 1);
    EXPECT_EQ(WindowRegion(to), shape);
    to.RemoveObserver(&changes);
}

TEST_F(PulloutTest, RepaintsFollowEachPulloutsOwnFlags) {
    MainWin& win = Win();
    FormChanges from;
    FormChanges to;
    Get<FromPullout>().AddObserver(&from);
    Get<ToPullout>().AddObserver(&to);
    win.btnFromPullout.UserClick();
    win.btnToPullout.UserClick();
    // FromPullout repaints for its shape only, ToPullout for its move only.
    EXPECT_EQ(from.Of(FormProperty::Repaint), 1);
    EXPECT_EQ(to.Of(FormProperty::Repaint), 1);
    Get<FromPullout>().RemoveObserver(&from);
    Get<ToPullout>().RemoveObserver(&to);
}

// MorePullout open, and one of its panels above it.
class MorePulloutTest : public WindowFamilyTest {
  protected:
    void SetUp() override {
        WindowFamilyTest::SetUp();
        Win().btnMorePullout.UserClick();
        ASSERT_TRUE(Get<MorePullout>().Visible());
    }
    void OpenPreferences() {
        Get<MorePullout>().btnPref.UserClick();
        ASSERT_TRUE(Get<PrefPullout>().Visible() && Win().prefShown);
    }
    bool MoreOpen() { return Get<MorePullout>().Visible() && Win().moreShown; }
};

TEST_F(MorePulloutTest, ARefusalOfThePreferencesKeepsMorePulloutOpen) {
    OpenPreferences();
    MakePrefDirty();
    UserKeepsChanges();
    Win().btnToPullout.UserClick();
    EXPECT_TRUE(MoreOpen());
    EXPECT_TRUE(Get<PrefPullout>().Visible() && Win().prefShown);
    EXPECT_FALSE(Win().toShown);
}

TEST_F(MorePulloutTest, ARefusalOfTheLoginInformationLeavesThePreferencesClosed) {
    OpenPreferences();
    MakeDisplayDirty();
    UserKeepsChanges();
    Win().btnToPullout.UserClick();
    EXPECT_FALSE(Get<PrefPullout>().Visible() || Win().prefShown);
    EXPECT_TRUE(MoreOpen());
    EXPECT_EQ(Win().btnMorePullout.Picture(), Win().btnLeft.Picture());
    EXPECT_FALSE(Win().toShown);
}

TEST_F(MorePulloutTest, WhenItsPanelsLetGoMorePulloutClosesForAnotherTab) {
    OpenPreferences();
    Win().btnToPullout.UserClick();
    EXPECT_FALSE(MoreOpen() || Get<PrefPullout>().Visible());
    EXPECT_EQ(Win().btnMorePullout.Picture(), Win().btnReg.Picture());
    EXPECT_TRUE(Win().toShown);
}

TEST_F(MorePulloutTest, EachButtonOpensItsPanelAboveIt) {
    MorePullout& more = Get<MorePullout>();
    const std::vector<std::pair<forms::CommandButton*, forms::Form*>> buttons = {
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
    MorePullout& more = Get<MorePullout>();
    more.btnLog.UserClick();
    more.btnDisplay.UserClick();
    EXPECT_FALSE(Get<LogPullout>().Visible() || Win().logShown);
    EXPECT_TRUE(Get<DisplayPullout>().Visible() && Win().displayShown);
}

TEST_F(MorePulloutTest, ADirtyPanelTheUserKeepsStaysAndTheOtherDoesNotOpen) {
    MorePullout& more = Get<MorePullout>();
    more.btnDisplay.UserClick();
    MakeDisplayDirty();
    UserKeepsChanges();
    more.btnLog.UserClick();
    EXPECT_TRUE(Get<DisplayPullout>().Visible() && Win().displayShown);
    EXPECT_FALSE(Get<LogPullout>().Visible() || Win().logShown);
}

TEST_F(MorePulloutTest, PreferencesOpenWithoutTheChangesTheyWereLeftWith) {
    MakePrefDirty();
    Get<MorePullout>().btnPref.UserClick();
    EXPECT_FALSE(Get<PrefPullout>().btnSave.Enabled());
}

TEST_F(MorePulloutTest, ClickingTheOpenPanelsButtonNeitherClosesNorRecutsButPlacesItAgain) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    DisplayPullout& display = Get<DisplayPullout>();
    FormChanges changes;
    display.AddObserver(&changes);
    more.btnDisplay.UserClick();
    ASSERT_EQ(changes.Of(FormProperty::Region), 1);
    const Region shape = WindowRegion(display);

    win.Move(win.Left() + 30, win.Top() + 12);
    more.btnDisplay.UserClick();
    EXPECT_TRUE(display.Visible() && win.displayShown);
    EXPECT_EQ(changes.Of(FormProperty::Region), 1);
    EXPECT_EQ(WindowRegion(display), shape);
    EXPECT_EQ(Beside(display), (std::pair{114, 127}));
    display.RemoveObserver(&changes);
}

TEST_F(MorePulloutTest, APanelsShapeTakesTheMainWindowAndMorePulloutByExclusiveOr) {
    MainWin& win = Win();
    SetWindowRegion(win, Region::FromRect(FrameWidth(), FrameHeight(), FrameWidth() + 128,
                                          FrameHeight() + 320));
    LogPullout& log = Get<LogPullout>();
    Get<MorePullout>().btnLog.UserClick();
    const Region shape = WindowRegion(log);
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
