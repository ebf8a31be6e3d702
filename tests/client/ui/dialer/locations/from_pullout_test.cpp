// The location pullout as its user meets it: adding, saving, cancelling, removing and changing
// locations, what each edit does to the form's state, and the question before it lets go.
#include <gtest/gtest.h>

#include "location_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::check::kChecked;
using forms::check::kUnchecked;
using forms::mb::kResultNo;
using forms::mb::kResultOk;
using forms::mb::kResultYes;
using Names = std::vector<std::string>;

class FromPulloutTest : public LocationTest {
  protected:
    void SetUp() override {
        LocationTest::SetUp();
        AnswerBoxes(kResultOk);
    }
    // Adds "Office" in the United States as a user types it, up to the press of Save.
    void TypeNewOffice(const std::string& name = "Office") {
        BeginNew(name);
        Type(From().txtAreaCode, "617");
        Type(From().txtPhoneNumber, "555-0123");
        Type(From().txtOutsideAccess, "9");
    }
    // The program started with Hotel, the second location, shown.
    void StartOnHotel() {
        StartWithPullout();
        Win().cmboFrom.UserSelect(1);
        DeliverDialList();
    }
    Names FromList() {
        Names items;
        for (int i = 0; i < Win().cmboFrom.ListCount(); ++i) {
            items.push_back(Win().cmboFrom.List(i));
        }
        return items;
    }
    // Both lists show the same location selected.
    void ExpectSameSelection(const std::string& name) {
        EXPECT_EQ(Win().cmboFrom.Text(), name);
        EXPECT_EQ(From().cmboLocations.Text(), name);
        EXPECT_EQ(Win().cmboFrom.ListIndex(), From().cmboLocations.ListIndex());
    }
};

// ---- adding ------------------------------------------------------------------------------------

TEST_F(FromPulloutTest, WithNoLocationsAtAllTheProgramOpensTheFormOnANewLocation) {
    order.clear();
    StartIdle();
    EXPECT_EQ(BoxTexts().front(),
              "Please enter information about the location from which you are calling.");
    EXPECT_TRUE(Win().fromShown);
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_TRUE(From().cmboLocations.HasFocus());
}

TEST_F(FromPulloutTest, AddEmptiesTheFormAndStartsOnTheUnitedStates) {
    stored["Hotel"]["CountryName"] = "GERMANY";
    StartOnHotel();
    ASSERT_EQ(From().cmboCountries.Text(), "GERMANY (49)");
    From().btnAdd.UserClick();
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_EQ(From().txtOutsideAccess.Text() + From().txtLongDistance.Text(), "");
    EXPECT_EQ(From().cmboCountries.Text(), "UNITED STATES (1)");
    EXPECT_FALSE(Win().cmboFrom.Enabled() || From().btnRemove.Enabled());
    EXPECT_TRUE(From().btnCancel.Enabled());
}

TEST_F(FromPulloutTest, ASavedNewLocationTakesItsPlaceInTheListAndIsSelectedInBoth) {
    StartWithPullout();
    TypeNewOffice("Airport");
    From().btnAdd.UserClick();
    EXPECT_EQ(stored["Airport"]["OutSideAccess"], "9");
    EXPECT_EQ(FromList(), (Names{"Airport", "Home", "Hotel"}));
    ExpectSameSelection("Airport");
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
}

// A new location the engine will not take stays on the form with everything typed.
using RefusedNewTest = Cases<FromPulloutTest, std::string, bool, std::string>;

TEST_P(RefusedNewTest, ARefusedNewLocationKeepsEverythingTyped) {
    const auto& [name, creates, message] = GetParam();
    createWorks = creates;
    StartWithPullout();
    TypeNewOffice(name);
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), Names{message});
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_EQ(From().txtAreaCode.Text() + From().txtPhoneNumber.Text(), "617555-0123");
    EXPECT_EQ(FromList(), (Names{"Home", "Hotel"}));
    EXPECT_EQ(stored["Home"], UsFields("512", "555", "0100")) << "the location of that name";
}

INSTANTIATE_TEST_SUITE_P(
    Causes, RefusedNewTest,
    ::testing::Values(
        std::tuple{"Home", true,
                   "The location you specified already exists, please try a different name!"},
        std::tuple{"Office", false, "Error saving Office"}));

TEST_F(FromPulloutTest, CancellingANewLocationReturnsToTheOneSelectedBefore) {
    StartOnHotel();
    TypeNewOffice();
    From().btnCancel.UserClick();
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
    ExpectSameSelection("Hotel");
    EXPECT_EQ(From().txtAreaCode.Text() + From().txtPhoneNumber.Text(), "212555-0175");
    EXPECT_FALSE(From().cmboLocations.Enabled());
    EXPECT_TRUE(Win().cmboFrom.Enabled());
}

TEST_F(FromPulloutTest, SwitchingCountryDuringANewLocationEmptiesTheNumberAndKeepsTheState) {
    StartWithPullout();
    TypeNewOffice();
    SelectCountry("GERMANY (49)");
    EXPECT_EQ(From().txtAreaCode.Text() + From().txtPhoneNumber.Text(), "");
    EXPECT_FALSE(From().txtAreaCode.Visible());
    EXPECT_EQ(From().txtPhoneNumber.Left(), From().txtAreaCode.Left());
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
}

// ---- removing ----------------------------------------------------------------------------------

using RemoveTest = Cases<FromPulloutTest, int, Names, std::string>;

TEST_P(RemoveTest, RemovingSelectsTheOneBeforeOrTheNewFirst) {
    const auto& [removed, left, selected] = GetParam();
    order = {"Alpha", "Beta", "Gamma"};
    for (const auto& name : order) {
        stored[name] = UsFields("512", "555", "0100");
    }
    StartWithPullout();
    Win().cmboFrom.UserSelect(removed);
    DeliverDialList();
    platform.AnswerNextBox(kResultYes);
    From().btnRemove.UserClick();
    EXPECT_EQ(FromList(), left);
    EXPECT_EQ(order, left) << "and gone from the engine";
    ExpectSameSelection(selected);
    EXPECT_TRUE(From().btnRemove.Enabled());
}

INSTANTIATE_TEST_SUITE_P(FirstAndLater, RemoveTest,
                         ::testing::Values(std::tuple{0, Names{"Beta", "Gamma"}, "Beta"},
                                           std::tuple{2, Names{"Alpha", "Beta"}, "Beta"}));

TEST_F(FromPulloutTest, RemovingIsAskedFirstAndNoKeepsTheLocation) {
    StartWithPullout();
    platform.AnswerNextBox(kResultNo);
    From().btnRemove.UserClick();
    EXPECT_EQ(BoxTexts(), Names{"Are you sure you wish to delete Home ?"});
    EXPECT_EQ(engine->CountOf("DeleteLocation"), 0);
    EXPECT_EQ(FromList().size(), 2U);
}

// ---- changing ----------------------------------------------------------------------------------

TEST_F(FromPulloutTest, AChangedLocationIsUpdatedAndItsDialListAskedAgain) {
    StartWithPullout();
    Type(From().txtPhoneNumber, "555-0199");
    EXPECT_EQ(From().btnAdd.Caption(), "Modify");
    EXPECT_FALSE(Win().cmboFrom.Enabled());
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), Names{"Update of Home successful."});
    EXPECT_EQ(stored["Home"]["Number"], "0199");
    EXPECT_EQ(engine->CountOf("SaveLocation"), 1);
    EXPECT_TRUE(Win().IsGettingDialList);
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
}

TEST_F(FromPulloutTest, AFailedUpdateWarnsAndStaysChanged) {
    updateWorks = false;
    StartWithPullout();
    Type(From().txtLongDistance, "1");
    From().btnAdd.UserClick();
    ASSERT_EQ(BoxTexts(), Names{"Update of Home failed."});
    EXPECT_EQ(platform.Boxes()[0].flags & forms::mb::kExclamation, forms::mb::kExclamation);
    EXPECT_EQ(From().btnAdd.Caption(), "Modify");
}

TEST_F(FromPulloutTest, CancellingAChangeReadsTheLocationAgain) {
    StartWithPullout();
    Type(From().txtAreaCode, "999");
    From().btnCancel.UserClick();
    EXPECT_EQ(From().txtAreaCode.Text(), "512");
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
    EXPECT_TRUE(Win().cmboFrom.Enabled());
}

// Which edits of a shown location count as a change.
struct EditCase {
    const char* what;
    std::function<void(FromPullout&)> edit;
    bool changes;
};

class EditTest : public FromPulloutTest, public ::testing::WithParamInterface<EditCase> {};

TEST_P(EditTest, AnEditOfAShownLocationChangesTheStateOrNot) {
    StartWithPullout();
    GetParam().edit(From());
    EXPECT_EQ(From().btnAdd.Caption(), GetParam().changes ? "Modify" : "Add") << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Controls, EditTest,
    ::testing::Values(
        EditCase{"area code", [](FromPullout& f) { LocationTest::Type(f.txtAreaCode, "1"); }, true},
        EditCase{"prefix", [](FromPullout& f) { LocationTest::Type(f.txtOutsideAccess, ","); },
                 true},
        EditCase{"call waiting box", [](FromPullout& f) { f.chkDisableCallWaiting.UserClick(); },
                 true},
        EditCase{"manual dial", [](FromPullout& f) { f.chkManualDial.UserClick(); }, true},
        EditCase{"manual dial label", [](FromPullout& f) { f.lblManualDial.UserClick(); }, true},
        EditCase{"existing connection", [](FromPullout& f) { f.chkUseExisting.UserClick(); }, true},
        EditCase{"country", [](FromPullout& f) { f.cmboCountries.UserSelect(0); }, true},
        EditCase{"a refused key", [](FromPullout& f) { LocationTest::Type(f.txtAreaCode, "x"); },
                 false}));

TEST_F(FromPulloutTest, DisableCallWaitingByHandOffersTheFirstChoice) {
    StartWithPullout();
    From().lblDisableCallWaiting.UserClick();
    EXPECT_EQ(From().chkDisableCallWaiting.Value(), kChecked);
    EXPECT_TRUE(From().cmboCallWaiting.Enabled());
    EXPECT_EQ(From().cmboCallWaiting.Text(), "*70,");
    From().chkDisableCallWaiting.UserClick();
    EXPECT_FALSE(From().cmboCallWaiting.Enabled());
}

TEST_F(FromPulloutTest, TheExistingConnectionTurnsTheDialingControlsOffAndBackOn) {
    StartWithPullout();
    for (const bool existing : {true, false}) {
        From().chkUseExisting.UserClick();
        EXPECT_EQ(From().chkManualDial.Enabled(), !existing) << existing;
        EXPECT_EQ(From().txtOutsideAccess.Enabled(), !existing) << existing;
        EXPECT_EQ(From().chkDisableCallWaiting.Enabled(), !existing) << existing;
        EXPECT_EQ(From().chkCallingCard.Enabled(), !existing) << existing;
        EXPECT_TRUE(From().txtPhoneNumber.Enabled());
    }
}

// ---- the existing connection and the United States placeholders ---------------------------

TEST_F(FromPulloutTest, AnExistingConnectionStoresThePlaceholdersAndShowsEmptyNumbers) {
    StartWithPullout();
    BeginNew("Lobby");
    Type(From().txtAreaCode, "12");
    Type(From().txtPhoneNumber, "1");
    From().chkUseExisting.UserClick();
    From().btnAdd.UserClick();
    Fields& lobby = stored["Lobby"];
    EXPECT_EQ(lobby["AreaCode"] + "|" + lobby["Exchange"] + "|" + lobby["Number"], "999|123|4567");
    EXPECT_EQ(lobby["TunnelOverLAN"], "1");
    ExpectSameSelection("Lobby");
    EXPECT_EQ(From().txtAreaCode.Text() + From().txtPhoneNumber.Text(), "");
    EXPECT_EQ(From().chkUseExisting.Value(), kChecked);
}

// ---- calling cards on the form -----------------------------------------------------------

using StoredCardTest = Cases<FromPulloutTest, std::string, std::string>;

TEST_P(StoredCardTest, AStoredCardShowsByNameOrTheLocationHasNone) {
    const auto& [card, shown] = GetParam();
    cards = {{0, 7, "111", "Bluewave"}, {1, 9, "222", "Meridian"}};
    stored["Hotel"]["CallingCard"] = card;
    StartOnHotel();
    EXPECT_EQ(From().chkCallingCard.Value(), shown.empty() ? kUnchecked : kChecked);
    EXPECT_EQ(From().lblCallingCardName.Caption(), shown);
}

INSTANTIATE_TEST_SUITE_P(Identifiers, StoredCardTest,
                         ::testing::Values(std::tuple{"7", "Bluewave"}, std::tuple{"9", "Meridian"},
                                           std::tuple{"0", ""}, std::tuple{"5", ""},
                                           std::tuple{"x", ""}));

TEST_F(FromPulloutTest, AStoredCardIsIgnoredWhenTheCardControlsAreHidden) {
    stored["Hotel"]["CallingCard"] = "7";
    StartOnHotel();
    EXPECT_FALSE(From().chkCallingCard.Visible());
    EXPECT_EQ(From().chkCallingCard.Value(), kUnchecked);
    EXPECT_EQ(From().lblCallingCardName.Caption(), "");
}

// ---- policies ----------------------------------------------------------------------------------

using ManualPolicyTest = Cases<FromPulloutTest, std::string, bool, bool, int>;

TEST_P(ManualPolicyTest, TheManualDialingPolicyDecidesTheBox) {
    // `shown`: the stored manual dial, as the box shows it.
    const auto& [value, works, enabled, shown] = GetParam();
    policy["ManualDialing"] = {value, works};
    stored["Hotel"]["ManualDial"] = "1";
    StartOnHotel();
    EXPECT_EQ(From().chkManualDial.Enabled(), enabled);
    EXPECT_EQ(From().lblManualDial.Enabled(), enabled);
    EXPECT_EQ(From().chkManualDial.Value(), shown);
}

INSTANTIATE_TEST_SUITE_P(Values, ManualPolicyTest,
                         ::testing::Values(std::tuple{"1", true, true, kChecked},
                                           std::tuple{"0", true, false, kUnchecked},
                                           std::tuple{"", false, false, kUnchecked},
                                           std::tuple{"7", true, true, kUnchecked}));

// The card policy is read at load, where only a "0" forbids, and again when the connection is
// dialled once more, where anything but a readable non-"0" forbids.
using CardPolicyTest = Cases<FromPulloutTest, std::string, bool, bool, bool>;

TEST_P(CardPolicyTest, TheCardPolicyDecidesTheCardBox) {
    const auto& [value, works, atLoad, afterRedial] = GetParam();
    policy["CCdialing"] = {value, works};
    cards = {{0, 7, "111", "Bluewave"}};
    StartWithPullout();
    EXPECT_EQ(From().chkCallingCard.Enabled(), atLoad);
    EXPECT_EQ(From().lblCallingCard.Enabled(), atLoad);
    From().chkUseExisting.UserClick();
    From().chkUseExisting.UserClick();
    EXPECT_EQ(From().chkCallingCard.Enabled(), afterRedial);
    EXPECT_EQ(From().lblCallingCardName.Enabled(), afterRedial);
}

INSTANTIATE_TEST_SUITE_P(Values, CardPolicyTest,
                         ::testing::Values(std::tuple{"1", true, true, true},
                                           std::tuple{"0", true, false, false},
                                           std::tuple{"", false, true, false}));

// ---- a write refused in the middle -------------------------------------------------------------

using RefusedWriteTest = Cases<FromPulloutTest, std::string, std::string, Names>;

TEST_P(RefusedWriteTest, ARefusedWriteIsToldAndTheOthersStillRun) {
    const auto& [key, country, told] = GetParam();
    refusedKeys = {key};
    StartWithPullout();
    BeginNew("Office");
    SelectCountry(country);
    Type(From().txtAreaCode, "617");
    Type(From().txtPhoneNumber, "5550123");
    From().btnAdd.UserClick();
    EXPECT_EQ(engine->CountOf("SetLocationProperty"), 11);
    EXPECT_EQ(engine->CountOf("CreateLocation"), 1);
    Names messages = BoxTexts();
    messages.pop_back();  // "Saved Office"
    EXPECT_EQ(messages, told);
}

const char* const kUs = "UNITED STATES (1)";

INSTANTIATE_TEST_SUITE_P(
    Keys, RefusedWriteTest,
    ::testing::Values(
        std::tuple{"CountryName", kUs, Names{"Error setting the country name for Office"}},
        std::tuple{"Exchange", kUs, Names{"Error setting the exchange for Office"}},
        std::tuple{"Exchange", "GERMANY (49)", Names{}},
        std::tuple{"Number", "GERMANY (49)", Names{"Error setting the number for Office"}},
        std::tuple{"CallingCard", kUs, Names{}},
        std::tuple{"TunnelOverLAN", kUs, Names{"Error setting the prefered calling card."}}));

// ---- closing and connecting --------------------------------------------------------------------

using ConnectTest = Cases<FromPulloutTest, int, std::string, int>;

TEST_P(ConnectTest, ConnectWithAChangedFormAsksYesSavesAndStopsNoDropsTheEditAndConnects) {
    // `prefix`: the long distance prefix afterwards, typed "1" over "8".
    const auto& [answer, prefix, connects] = GetParam();
    StartWithPullout();
    Type(From().txtLongDistance, "1");
    platform.AnswerNextBox(answer);
    Win().btnConnect.UserClick();
    EXPECT_EQ(BoxTexts().front(),
              "The From Location form has been modified, do you wish to save the changes?");
    EXPECT_EQ(stored["Home"]["LongDistanceAccess"], prefix);
    EXPECT_EQ(From().txtLongDistance.Text(), prefix);
    EXPECT_EQ(engine->CountOf("Connect"), connects);
}

INSTANTIATE_TEST_SUITE_P(Answers, ConnectTest,
                         ::testing::Values(std::tuple{kResultYes, "1", 0},
                                           std::tuple{kResultNo, "8", 1}));

TEST_F(FromPulloutTest, ClosingAChangedFormWithYesKeepsItOpen) {
    StartWithPullout();
    Type(From().txtLongDistance, "1");
    platform.AnswerNextBox(kResultYes);
    bool ok = true;
    From().OnHide(ok);
    EXPECT_FALSE(ok);
    platform.AnswerNextBox(kResultNo);
    Type(From().txtLongDistance, "2");
    From().OnHide(ok);
    EXPECT_TRUE(ok);
}

TEST_F(FromPulloutTest, WhileTheDialListIsBuiltTheFormTakesNoInput) {
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    ASSERT_TRUE(Win().IsGettingDialList);
    Type(From().txtAreaCode, "1");
    From().chkManualDial.UserClick();
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
    EXPECT_EQ(From().chkManualDial.Value(), kUnchecked);
    DeliverDialList();
    EXPECT_TRUE(From().Enabled());
}

}  // namespace
}  // namespace kw::dialer::testing
