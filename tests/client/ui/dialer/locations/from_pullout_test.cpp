// The location pullout as its user meets it: adding, saving, cancelling, removing and changing
// locations, what each edit does to the form's state, and the question before it lets go.
#include <gtest/gtest.h>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "location_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::check::kChecked;
using forms::check::kUnchecked;
using forms::mb::kResultNo;
using forms::mb::kResultOk;
using forms::mb::kResultYes;

class FromPulloutTest : public LocationTest {
  protected:
    // Adds "Office" in the United States as a user types it, up to the press of Save.
    void TypeNewOffice(const std::string& name = "Office") {
        BeginNew(name);
        Type(From().txtAreaCode, "617");
        Type(From().txtPhoneNumber, "555-0123");
        Type(From().txtOutsideAccess, "9");
    }
    std::vector<std::string> FromList() {
        std::vector<std::string> items;
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

// ---- the state held in the caption ----------------------------------------------------------

TEST_F(FromPulloutTest, WithNoLocationsAtAllTheProgramOpensTheFormOnANewLocation) {
    order.clear();
    AnswerBoxes(kResultOk);
    StartIdle();
    EXPECT_EQ(BoxTexts().front(),
              "Please enter information about the location from which you are calling.");
    EXPECT_TRUE(Win().fromShown);
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_TRUE(From().cmboLocations.Enabled());
    EXPECT_TRUE(From().cmboLocations.HasFocus());
}

TEST_F(FromPulloutTest, AddWhileTheDialListIsBeingBuiltDoesNothing) {
    ASSERT_TRUE(Start());
    ASSERT_TRUE(Win().IsGettingDialList);
    platform.ClearBoxes();
    From().btnAdd_Click();
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
    EXPECT_FALSE(From().m_Adding);
    EXPECT_TRUE(platform.Boxes().empty());
}

TEST_F(FromPulloutTest, AddEmptiesTheFormAndStartsOnTheUnitedStates) {
    stored["Hotel"]["CountryName"] = "GERMANY";
    stored["Hotel"]["CountryCode"] = "49";
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    DeliverDialList();
    ASSERT_EQ(From().cmboCountries.Text(), "GERMANY (49)");
    From().btnAdd.UserClick();
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_EQ(From().txtOutsideAccess.Text(), "");
    EXPECT_EQ(From().txtLongDistance.Text(), "");
    EXPECT_EQ(From().cmboCountries.Text(), "UNITED STATES (1)");
    EXPECT_FALSE(Win().cmboFrom.Enabled());
    EXPECT_FALSE(From().btnRemove.Enabled());
    EXPECT_TRUE(From().btnCancel.Enabled());
}

TEST_F(FromPulloutTest, SavingANewLocationWritesItsFieldsThenCreatesItAndSelectsItInBothLists) {
    StartWithPullout();
    AnswerBoxes(kResultOk);
    TypeNewOffice();
    From().btnAdd.UserClick();
    const std::vector<std::string> calls = engine->CallNames();
    ASSERT_GE(calls.size(), 13U);
    EXPECT_EQ(calls[0], "LocationExists");
    EXPECT_EQ(KeysWritten(), (std::vector<std::string>{
                                 "CountryName", "CountryCode", "AreaCode", "Exchange", "Number",
                                 "DisableCallWaiting", "LongDistanceAccess", "OutSideAccess",
                                 "CallingCard", "ManualDial", "TunnelOverLAN"}));
    EXPECT_EQ(calls[12], "CreateLocation");
    EXPECT_EQ(stored["Office"]["Exchange"], "555");
    EXPECT_EQ(stored["Office"]["Number"], "0123");
    EXPECT_EQ(stored["Office"]["OutSideAccess"], "9");
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Saved Office"});
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
    ExpectSameSelection("Office");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "555-0123");
}

TEST_F(FromPulloutTest, ANewNameThatSortsFirstIsSelectedInBothLists) {
    StartWithPullout();
    AnswerBoxes(kResultOk);
    TypeNewOffice("Airport");
    From().btnAdd.UserClick();
    EXPECT_EQ(FromList(), (std::vector<std::string>{"Airport", "Home", "Hotel"}));
    ExpectSameSelection("Airport");
}

TEST_F(FromPulloutTest, NamesListedOutOfOrderKeepOneIndexForBothLists) {
    order = {"Zurich", "Athens"};
    stored["Zurich"] = UsFields("303", "555", "0001");
    stored["Athens"] = UsFields("404", "555", "0002");
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    ExpectSameSelection("Zurich");
    EXPECT_EQ(From().txtAreaCode.Text(), "303");
}

TEST_F(FromPulloutTest, ADuplicateNameKeepsTheNewLocationWithEverythingTyped) {
    StartWithPullout();
    AnswerBoxes(kResultOk);
    TypeNewOffice("Home");
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(),
              std::vector<std::string>{"The location you specified already exists, please try a "
                                       "different name!"});
    EXPECT_TRUE(KeysWritten().empty());
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_EQ(From().txtAreaCode.Text(), "617");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "555-0123");
    EXPECT_EQ(From().txtOutsideAccess.Text(), "9");
}

TEST_F(FromPulloutTest, ARefusedCreateStaysOnTheNewLocation) {
    createWorks = false;
    StartWithPullout();
    AnswerBoxes(kResultOk);
    TypeNewOffice();
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Error saving Office"});
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
    EXPECT_EQ(FromList(), (std::vector<std::string>{"Home", "Hotel"}));
}

TEST_F(FromPulloutTest, CancellingANewLocationReturnsToTheOneSelectedBefore) {
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    DeliverDialList();
    TypeNewOffice();
    From().btnCancel.UserClick();
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
    ExpectSameSelection("Hotel");
    EXPECT_EQ(From().txtAreaCode.Text(), "212");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "555-0175");
    EXPECT_FALSE(From().cmboLocations.Enabled());
    EXPECT_TRUE(Win().cmboFrom.Enabled());
}

TEST_F(FromPulloutTest, SwitchingCountryDuringANewLocationEmptiesTheNumberAndKeepsTheState) {
    StartWithPullout();
    TypeNewOffice();
    SelectCountry("GERMANY (49)");
    EXPECT_EQ(From().txtAreaCode.Text(), "");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "");
    EXPECT_FALSE(From().txtAreaCode.Visible());
    EXPECT_EQ(From().txtPhoneNumber.Left(), From().txtAreaCode.Left());
    EXPECT_EQ(From().btnAdd.Caption(), "Save");
}

TEST_F(FromPulloutTest, ALocationAbroadStoresItsWholeNumberWithoutExchange) {
    StartWithPullout();
    AnswerBoxes(kResultOk);
    BeginNew("Berlin");
    SelectCountry("GERMANY (49)");
    Type(From().txtPhoneNumber, "03012345678901");
    From().btnAdd.UserClick();
    EXPECT_EQ(stored["Berlin"]["CountryName"], "GERMANY");
    EXPECT_EQ(stored["Berlin"]["CountryCode"], "49");
    EXPECT_EQ(stored["Berlin"]["Exchange"], "");
    EXPECT_EQ(stored["Berlin"]["Number"], "03012345678901");
}

// ---- removing ----------------------------------------------------------------------------------

struct RemoveCase {
    int removed;
    std::vector<std::string> left;
    std::string selected;
};

class RemoveTest : public FromPulloutTest, public ::testing::WithParamInterface<RemoveCase> {};

TEST_P(RemoveTest, RemovingSelectsTheOneBeforeOrTheNewFirst) {
    order = {"Alpha", "Beta", "Gamma"};
    for (const auto& name : order) {
        stored[name] = UsFields("512", "555", "0100");
    }
    StartWithPullout();
    Win().cmboFrom.UserSelect(GetParam().removed);
    DeliverDialList();
    AnswerBoxes(kResultYes);
    From().btnRemove.UserClick();
    EXPECT_EQ(FromList(), GetParam().left);
    ExpectSameSelection(GetParam().selected);
    EXPECT_EQ(stored.count("Beta") + stored.count("Alpha"), GetParam().removed == 0 ? 1U : 2U);
    EXPECT_TRUE(From().btnRemove.Enabled());
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
}

INSTANTIATE_TEST_SUITE_P(FirstAndLater, RemoveTest,
                         ::testing::Values(RemoveCase{0, {"Beta", "Gamma"}, "Beta"},
                                           RemoveCase{2, {"Alpha", "Beta"}, "Beta"}));

TEST_F(FromPulloutTest, RemovingIsAskedFirstAndNoKeepsTheLocation) {
    StartWithPullout();
    AnswerBoxes(kResultNo);
    From().btnRemove.UserClick();
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Are you sure you wish to delete Home ?"});
    EXPECT_EQ(engine->CountOf("DeleteLocation"), 0);
    EXPECT_EQ(FromList().size(), 2U);
}

// ---- changing ----------------------------------------------------------------------------------

TEST_F(FromPulloutTest, AChangedLocationIsUpdatedAndItsDialListAskedAgain) {
    StartWithPullout();
    AnswerBoxes(kResultOk);
    Type(From().txtPhoneNumber, "555-0199");
    EXPECT_EQ(From().btnAdd.Caption(), "Modify");
    EXPECT_FALSE(Win().cmboFrom.Enabled());
    From().btnAdd.UserClick();
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{"Update of Home successful."});
    EXPECT_EQ(stored["Home"]["Number"], "0199");
    EXPECT_EQ(engine->CountOf("SaveLocation"), 1);
    EXPECT_TRUE(Win().IsGettingDialList);
    EXPECT_EQ(From().btnAdd.Caption(), "Add");
}

TEST_F(FromPulloutTest, AFailedUpdateWarnsAndStaysChanged) {
    updateWorks = false;
    StartWithPullout();
    AnswerBoxes(kResultOk);
    Type(From().txtLongDistance, "1");
    From().btnAdd.UserClick();
    ASSERT_EQ(platform.Boxes().size(), 1U);
    EXPECT_EQ(platform.Boxes()[0].text, "Update of Home failed.");
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
        EditCase{"call waiting label", [](FromPullout& f) { f.lblDisableCallWaiting.UserClick(); },
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
    From().chkUseExisting.UserClick();
    EXPECT_FALSE(From().chkManualDial.Enabled());
    EXPECT_FALSE(From().txtOutsideAccess.Enabled());
    EXPECT_FALSE(From().chkDisableCallWaiting.Enabled());
    EXPECT_TRUE(From().txtPhoneNumber.Enabled());
    From().chkUseExisting.UserClick();
    EXPECT_TRUE(From().chkManualDial.Enabled());
    EXPECT_TRUE(From().txtOutsideAccess.Enabled());
    EXPECT_TRUE(From().chkCallingCard.Enabled());
}

// ---- the existing connection and the United States placeholders ---------------------------

TEST_F(FromPulloutTest, AnExistingConnectionStoresThePlaceholdersAndShowsEmptyNumbers) {
    StartWithPullout();
    AnswerBoxes(kResultOk);
    BeginNew("Lobby");
    Type(From().txtAreaCode, "12");
    Type(From().txtPhoneNumber, "1");
    From().chkUseExisting.UserClick();
    From().btnAdd.UserClick();
    EXPECT_EQ(stored["Lobby"]["AreaCode"], "999");
    EXPECT_EQ(stored["Lobby"]["Exchange"], "123");
    EXPECT_EQ(stored["Lobby"]["Number"], "4567");
    EXPECT_EQ(stored["Lobby"]["TunnelOverLAN"], "1");
    ExpectSameSelection("Lobby");
    EXPECT_EQ(From().txtAreaCode.Text(), "");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "");
    EXPECT_EQ(From().chkUseExisting.Value(), kChecked);
}

TEST_F(FromPulloutTest, AnExistingConnectionAbroadShowsTheStoredNumber) {
    stored["Hotel"] = UsFields("999", "123", "4567");
    stored["Hotel"]["CountryName"] = "GERMANY";
    stored["Hotel"]["CountryCode"] = "49";
    stored["Hotel"]["TunnelOverLAN"] = "1";
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(From().cmboCountries.Text(), "GERMANY (49)");
    EXPECT_EQ(From().txtPhoneNumber.Text(), "4567");
}

// ---- calling cards on the form -----------------------------------------------------------

TEST_F(FromPulloutTest, AStoredCardIsIgnoredWhenTheCardControlsAreHidden) {
    stored["Hotel"]["CallingCard"] = "7";
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    EXPECT_FALSE(From().chkCallingCard.Visible());
    EXPECT_EQ(From().chkCallingCard.Value(), kUnchecked);
    EXPECT_EQ(From().lblCallingCardName.Caption(), "");
}

struct StoredCardCase {
    std::string stored;
    std::string shown;
};

class StoredCardTest : public FromPulloutTest,
                       public ::testing::WithParamInterface<StoredCardCase> {};

TEST_P(StoredCardTest, AStoredCardShowsByNameOrTheLocationHasNone) {
    cards = {{0, 7, "111", "Bluewave"}, {1, 9, "222", "Meridian"}};
    stored["Hotel"]["CallingCard"] = GetParam().stored;
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(From().chkCallingCard.Value(), GetParam().shown.empty() ? kUnchecked : kChecked);
    EXPECT_EQ(From().lblCallingCardName.Caption(), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Identifiers, StoredCardTest,
                         ::testing::Values(StoredCardCase{"7", "Bluewave"},
                                           StoredCardCase{"9", "Meridian"}, StoredCardCase{"0", ""},
                                           StoredCardCase{"5", ""}, StoredCardCase{"", ""},
                                           StoredCardCase{"x", ""}));

TEST_F(FromPulloutTest, ANewLocationStoresTheCurrentCardWhenItsBoxIsSet) {
    cards = {{0, 7, "111", "Bluewave"}, {1, 9, "222", "Meridian"}};
    StartWithPullout();
    AnswerBoxes(kResultOk);
    TypeNewOffice();
    From().chkCallingCard.UserClick();
    EXPECT_EQ(From().lblCallingCardName.Caption(), "Bluewave");
    From().btnAdd.UserClick();
    EXPECT_EQ(stored["Office"]["CallingCard"], "9") << "the last card listed is current";
}

// ---- policies ----------------------------------------------------------------------------------

struct ManualPolicyCase {
    std::string value;
    bool works;
    bool enabled;
    int shown;
};

class ManualPolicyTest : public FromPulloutTest,
                         public ::testing::WithParamInterface<ManualPolicyCase> {};

TEST_P(ManualPolicyTest, TheManualDialingPolicyDecidesTheBox) {
    policy["ManualDialing"] = {GetParam().value, GetParam().works};
    stored["Hotel"]["ManualDial"] = "1";
    StartWithPullout();
    Win().cmboFrom.UserSelect(1);
    EXPECT_EQ(From().chkManualDial.Enabled(), GetParam().enabled);
    EXPECT_EQ(From().lblManualDial.Enabled(), GetParam().enabled);
    EXPECT_EQ(From().chkManualDial.Value(), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Values, ManualPolicyTest,
                         ::testing::Values(ManualPolicyCase{"1", true, true, kChecked},
                                           ManualPolicyCase{"0", true, false, kUnchecked},
                                           ManualPolicyCase{"", false, false, kUnchecked},
                                           ManualPolicyCase{"7", true, true, kUnchecked}));

struct CardPolicyCase {
    std::string value;
    bool works;
    bool enabled;
};

class CardPolicyTest : public FromPulloutTest,
                       public ::testing::WithParamInterface<CardPolicyCase> {};

TEST_P(CardPolicyTest, TheCardPolicyDecidesTheCardBoxOnceTheConnectionIsDialledAgain) {
    policy["CCdialing"] = {GetParam().value, GetParam().works};
    cards = {{0, 7, "111", "Bluewave"}};
    StartWithPullout();
    From().chkUseExisting.UserClick();
    From().chkUseExisting.UserClick();
    EXPECT_EQ(From().chkCallingCard.Enabled(), GetParam().enabled);
    EXPECT_EQ(From().lblCallingCardName.Enabled(), GetParam().enabled);
}

INSTANTIATE_TEST_SUITE_P(Values, CardPolicyTest,
                         ::testing::Values(CardPolicyCase{"1", true, true},
                                           CardPolicyCase{"0", true, false},
                                           CardPolicyCase{"", false, false}));

TEST_F(FromPulloutTest, CardsForbiddenAtLoadDisableTheCardBox) {
    policy["CCdialing"] = {"0", true};
    cards = {{0, 7, "111", "Bluewave"}};
    StartWithPullout();
    EXPECT_FALSE(From().chkCallingCard.Enabled());
    EXPECT_FALSE(From().lblCallingCard.Enabled());
}

// ---- a write refused in the middle -------------------------------------------------------------

struct RefusedCase {
    std::string key;
    std::string country;
    std::vector<std::string> messages;
};

class RefusedWriteTest : public FromPulloutTest,
                         public ::testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedWriteTest, ARefusedWriteIsToldAndTheOthersStillRun) {
    refusedKeys = {GetParam().key};
    StartWithPullout();
    AnswerBoxes(kResultOk);
    BeginNew("Office");
    SelectCountry(GetParam().country);
    Type(From().txtAreaCode, "617");
    Type(From().txtPhoneNumber, "5550123");
    From().btnAdd.UserClick();
    EXPECT_EQ(KeysWritten().size(), 11U);
    EXPECT_EQ(engine->CountOf("CreateLocation"), 1);
    std::vector<std::string> messages = BoxTexts();
    messages.pop_back();  // "Saved Office"
    EXPECT_EQ(messages, GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, RefusedWriteTest,
    ::testing::Values(
        RefusedCase{
            "CountryName", "UNITED STATES (1)", {"Error setting the country name for Office"}},
        RefusedCase{"Exchange", "UNITED STATES (1)", {"Error setting the exchange for Office"}},
        RefusedCase{"Exchange", "GERMANY (49)", {}},
        RefusedCase{"Number", "GERMANY (49)", {"Error setting the number for Office"}},
        RefusedCase{
            "OutSideAccess", "UNITED STATES (1)", {"Error setting outside access for Office"}},
        RefusedCase{"CallingCard", "UNITED STATES (1)", {}},
        RefusedCase{
            "TunnelOverLAN", "UNITED STATES (1)", {"Error setting the prefered calling card."}}));

// ---- closing and connecting --------------------------------------------------------------------

TEST_F(FromPulloutTest, ConnectWithAChangedFormAsksAndYesStopsTheConnectAfterSaving) {
    StartWithPullout();
    Type(From().txtLongDistance, "1");
    platform.AnswerNextBox(kResultYes);
    AnswerBoxes(kResultOk);
    Win().btnConnect.UserClick();
    EXPECT_EQ(BoxTexts().front(),
              "The From Location form has been modified, do you wish to save the changes?");
    EXPECT_EQ(stored["Home"]["LongDistanceAccess"], "1");
    EXPECT_EQ(engine->CountOf("Connect"), 0);
}

TEST_F(FromPulloutTest, ConnectWithAChangedFormAndNoDropsTheEditAndConnects) {
    StartWithPullout();
    Type(From().txtLongDistance, "1");
    platform.AnswerNextBox(kResultNo);
    Win().btnConnect.UserClick();
    EXPECT_EQ(stored["Home"]["LongDistanceAccess"], "8");
    EXPECT_EQ(From().txtLongDistance.Text(), "8");
    EXPECT_EQ(engine->CountOf("Connect"), 1);
}

TEST_F(FromPulloutTest, ClosingAChangedFormWithYesKeepsItOpen) {
    StartWithPullout();
    Type(From().txtLongDistance, "1");
    platform.AnswerNextBox(kResultYes);
    AnswerBoxes(kResultOk);
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

TEST_F(FromPulloutTest, TheFormHearsTheBusInItsOrder) {
    StartWithPullout();
    for (std::int32_t id : {1005, 1002, 32, 1003, 1004}) {
        const auto& subjects = app->EventManagerObject.subjects();
        ASSERT_TRUE(subjects.count(std::to_string(id))) << id;
        EXPECT_TRUE(subjects.at(std::to_string(id))->doesSubjectExistInList(&From())) << id;
    }
    app->EventManagerObject.postEvent(1002, automation::Variant());
    EXPECT_FALSE(From().Enabled());
    app->EventManagerObject.postEvent(32, automation::Variant());
    EXPECT_TRUE(From().Enabled());
}

}  // namespace
}  // namespace kw::dialer::testing
