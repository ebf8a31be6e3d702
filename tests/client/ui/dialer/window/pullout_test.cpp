// Opening and closing the pullouts as the user clicks the tabs: one open at a time, each asked
// before it goes, each at its place and in its shape beside the main window.
#include <gtest/gtest.h>

#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::FormProperty;

class PulloutTest : public WindowFamilyTest {};

TEST_F(PulloutTest, ATabOpensItsPulloutBesideTheWindowClosingTheOpenOne) {
    MainWin& win = Win();
    const std::string rxFace = win.btnRxPullout.Picture();
    ToPullout& to = Get<ToPullout>();
    win.btnToPullout.UserClick();
    EXPECT_TRUE(to.Visible() && win.toShown);
    EXPECT_EQ(Beside(to), (std::pair{90, 80}));
    EXPECT_EQ(to.Width(), 400);
    EXPECT_EQ(to.Height(), 232);
    EXPECT_EQ(win.btnToPullout.Picture(), win.btnLeft.Picture());
    EXPECT_NE(win.btnLeft.Picture(), win.btnReg.Picture());
    win.btnToPullout.UserClick();
    EXPECT_FALSE(to.Visible() || win.toShown);
    EXPECT_EQ(win.btnToPullout.Picture(), win.btnReg.Picture());

    win.btnFromPullout.UserClick();
    win.btnRxPullout.UserClick();
    EXPECT_FALSE(Get<FromPullout>().Visible() || win.fromShown);
    EXPECT_EQ(win.btnFromPullout.Picture(), win.btnReg.Picture());
    EXPECT_TRUE(Get<RxPullout>().Visible() && win.rxShown);
    EXPECT_EQ(win.btnRxPullout.Picture(), rxFace) << "the Prescriber tab keeps its face";

    win.btnMorePullout.UserClick();
    MorePullout& more = Get<MorePullout>();
    EXPECT_FALSE(Get<RxPullout>().Visible());
    EXPECT_TRUE(more.Visible());
    EXPECT_EQ(Beside(more), (std::pair{114, 227}));
    EXPECT_EQ(win.btnMorePullout.Picture(), win.btnLeft.Picture());
}

TEST_F(PulloutTest, ADirtyPulloutThatTheUserKeepsLeavesEverythingAsItWasAndOpensNothing) {
    MainWin& win = Win();
    win.btnToPullout.UserClick();
    MakeToDirty();
    UserKeepsChanges();
    // Neither another tab nor its own closes it.
    for (forms::Image* tab : {&win.btnFromPullout, &win.btnToPullout}) {
        MakeToDirty();  // a Yes saves, so each press finds new edits
        tab->UserClick();
        EXPECT_TRUE(Get<ToPullout>().Visible() && win.toShown);
        EXPECT_EQ(win.btnToPullout.Picture(), win.btnLeft.Picture());
        EXPECT_FALSE(win.fromShown || Get<FromPullout>().Visible());
        EXPECT_EQ(win.btnFromPullout.Picture(), win.btnReg.Picture());
    }
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
    EXPECT_EQ(win.btnFromPullout.Picture(), win.btnReg.Picture());
    EXPECT_FALSE(win.toShown || Get<ToPullout>().Visible())
        << "MorePullout's refusal opens nothing";
}

TEST_F(PulloutTest, MorePulloutWithPreferencesOpenGoesThroughBothVetoes) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    PrefPullout& pref = Get<PrefPullout>();
    DisplayPullout& display = Get<DisplayPullout>();
    win.btnMorePullout.UserClick();
    more.btnPref.UserClick();
    ASSERT_TRUE(pref.Visible());
    ASSERT_TRUE(win.prefShown);

    MakePrefDirty();
    UserKeepsChanges();
    win.btnToPullout.UserClick();
    EXPECT_TRUE(more.Visible() && win.moreShown && pref.Visible() && win.prefShown);
    EXPECT_FALSE(win.toShown);

    // Preferences now let go, but the login information refuses: preferences stay closed.
    pref.btnSave.SetEnabled(false);
    MakeDisplayDirty();
    win.btnToPullout.UserClick();
    EXPECT_FALSE(pref.Visible() || win.prefShown);
    EXPECT_TRUE(more.Visible() && win.moreShown);
    EXPECT_EQ(win.btnMorePullout.Picture(), win.btnLeft.Picture());
    EXPECT_FALSE(win.toShown);

    display.btnModify.SetCaption("Modify");
    win.btnToPullout.UserClick();
    EXPECT_FALSE(more.Visible() || win.moreShown);
    EXPECT_EQ(win.btnMorePullout.Picture(), win.btnReg.Picture());
    EXPECT_TRUE(win.toShown);
}

TEST_F(PulloutTest, TheShapeIsCutOnceAtTheFirstOpeningLosingWhatTheMainWindowCovers) {
    MainWin& win = Win();
    // The main window's artwork, inside its frame.
    SetWindowRegion(win, Region::FromRect(FrameWidth(), FrameHeight(), FrameWidth() + 128,
                                          FrameHeight() + 320));
    ToPullout& to = Get<ToPullout>();
    FormChanges changes;
    to.AddObserver(&changes);
    win.btnToPullout.UserClick();
    ASSERT_EQ(changes.Of(FormProperty::Region), 1);
    const Region shape = WindowRegion(to);
    // Main window x 100 is pullout x 10; main window x 140 lies beyond the artwork.
    EXPECT_FALSE(shape.Contains(10, 20));
    EXPECT_TRUE(shape.Contains(50, 20));
    EXPECT_TRUE(shape.Contains(380, 200));
    EXPECT_FALSE(shape.Contains(400, 100)) << "nothing beyond the pullout's own rectangle";

    win.btnToPullout.UserClick();
    win.btnToPullout.UserClick();
    EXPECT_TRUE(to.Visible());
    EXPECT_EQ(changes.Of(FormProperty::Region), 1) << "a second opening skips the shape";
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

class MorePulloutTest : public WindowFamilyTest {
  protected:
    void SetUp() override {
        WindowFamilyTest::SetUp();
        Win().btnMorePullout.UserClick();
        ASSERT_TRUE(Get<MorePullout>().Visible());
    }
};

TEST_F(MorePulloutTest, ItsButtonsOpenOneAtATimeAboveItUnlessTheOpenOneRefuses) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    LogPullout& log = Get<LogPullout>();
    DisplayPullout& display = Get<DisplayPullout>();
    more.btnLog.UserClick();
    EXPECT_TRUE(log.Visible() && win.logShown);
    EXPECT_EQ(Beside(log), (std::pair{114, 127}));
    EXPECT_EQ(log.Width(), 320);

    more.btnDisplay.UserClick();
    EXPECT_FALSE(log.Visible() || win.logShown);
    EXPECT_TRUE(display.Visible() && win.displayShown);

    MakeDisplayDirty();
    UserKeepsChanges();
    more.btnLog.UserClick();
    EXPECT_TRUE(display.Visible() && win.displayShown);
    EXPECT_FALSE(log.Visible() || win.logShown);

    display.btnModify.SetCaption("Modify");
    MakePrefDirty();
    more.btnPref.UserClick();
    EXPECT_FALSE(display.Visible());
    EXPECT_TRUE(Get<PrefPullout>().Visible() && win.prefShown);
    EXPECT_FALSE(Get<PrefPullout>().btnSave.Enabled()) << "preferences open unchanged";
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
