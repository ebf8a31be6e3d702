#include "client/ui/dialer/locations/from_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/utilities.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/failure.h"
#include "platform/automation/strings.h"

namespace kw::dialer {

using automation::CBool;
using automation::Failure;
using automation::Trim;
using automation::Variant;

namespace {

// The events the pullout hears, in the order it registers for them.
constexpr std::int32_t kHeardEvents[] = {event::kConnectRequested, event::kConnectStarted, 32,
                                         event::kGettingDialList, event::kDialListDone};

constexpr const char* kUnitedStates = "UNITED STATES (1)";
// Stored for a location that goes out through an existing connection: no number is dialled.
constexpr const char* kTunnelAreaCode = "999";
constexpr const char* kTunnelExchange = "123";
constexpr const char* kTunnelNumber = "4567";

// Page up, page down, up, down: the locations box is not walked from the keyboard.
bool IsListWalkKey(int key) {
    return key == 33 || key == 34 || key == 38 || key == 40;
}

}  // namespace

FromPullout::FromPullout(Application& app) : Form(app.Platform(), "FromPullout"), app_(app) {
    SetCaption("FromPullout");
    SetForeColor(face::kKeyColour);
    Label3.SetCaption("Location:");
    cmboLocations.SetText("Combo1");
    cmboLocations.SetSorted(true);
    lbCountry.SetCaption("Country/Region:");
    cmboCountries.SetSorted(true);
    cmboCountries.SetStyle(forms::combo::kDropdownList);
    lblPhoneNumber.SetCaption("Your Phone Number:");
    Label7.SetCaption("(");
    txtAreaCode.SetMaxLength(3);
    Label8.SetCaption(") -");
    Label6.SetCaption("Dialing properties");
    Label6.SetFontBold(true);
    lblOutsideLine.SetCaption("Local");
    txtOutsideAccess.SetText("9");
    txtOutsideAccess.SetMaxLength(32);
    lblLongDistance.SetCaption("Long Distance");
    txtLongDistance.SetText("8");
    txtLongDistance.SetMaxLength(32);
    lblDisableCallWaiting.SetCaption("Disable Call Waiting");
    cmboCallWaiting.SetText("*70,");
    cmboCallWaiting.SetEnabled(false);
    lblCallingCard.SetCaption("Use Calling Card :");
    lblCallingCardName.SetFontBold(true);
    lblManualDial.SetCaption("Manual Dial");
    lblUseExisting.SetCaption("Use Existing Internet connection");
    btnAdd.SetCaption("Add");
    btnRemove.SetCaption("Remove");
    btnCancel.SetCaption("Cancel");
    PlaceControls();
}

void FromPullout::PlaceControls() {
    namespace at = layout::frompullout;
    face::PlaceForm(*this, layout::drawer::kWidth, layout::drawer::kHeight);
    Image2.SetPicture(at::kPicture);
    Image1.SetPicture(at::kIcon);
    face::Place(Image2, at::Image2);
    face::Place(Image1, at::Image1);
    face::Place(Label3, at::Label3);
    face::Place(cmboLocations, at::cmboLocations);
    face::Place(lbCountry, at::lbCountry);
    face::Place(cmboCountries, at::cmboCountries);
    face::Place(lblPhoneNumber, at::lblPhoneNumber);
    face::Place(Label7, at::Label7);
    face::Place(txtAreaCode, at::txtAreaCode);
    face::Place(Label8, at::Label8);
    face::Place(txtPhoneNumber, at::txtPhoneNumber);
    face::Place(Label6, at::Label6);
    face::Place(lblOutsideLine, at::lblOutsideLine);
    face::Place(txtOutsideAccess, at::txtOutsideAccess);
    face::Place(lblLongDistance, at::lblLongDistance);
    face::Place(txtLongDistance, at::txtLongDistance);
    face::Place(chkDisableCallWaiting, at::chkDisableCallWaiting);
    face::Place(lblDisableCallWaiting, at::lblDisableCallWaiting);
    face::Place(cmboCallWaiting, at::cmboCallWaiting);
    face::Place(chkCallingCard, at::chkCallingCard);
    face::Place(lblCallingCard, at::lblCallingCard);
    face::Place(lblCallingCardName, at::lblCallingCardName);
    face::Place(chkManualDial, at::chkManualDial);
    face::Place(lblManualDial, at::lblManualDial);
    face::Place(chkUseExisting, at::chkUseExisting);
    face::Place(lblUseExisting, at::lblUseExisting);
    face::Place(btnAdd, at::btnAdd);
    face::Place(btnRemove, at::btnRemove);
    face::Place(btnCancel, at::btnCancel);
    face::OnSkin({&Label3, &lbCountry, &lblPhoneNumber, &Label7, &Label8, &Label6, &lblOutsideLine,
                  &lblLongDistance, &chkDisableCallWaiting, &lblDisableCallWaiting, &chkCallingCard,
                  &lblCallingCard, &lblCallingCardName, &chkManualDial, &lblManualDial,
                  &chkUseExisting, &lblUseExisting});
    face::InWell({&cmboLocations, &cmboCountries, &txtAreaCode, &txtPhoneNumber, &txtOutsideAccess,
                  &txtLongDistance, &cmboCallWaiting});
}

void FromPullout::Form_Load() {
    for (const std::int32_t id : kHeardEvents) {
        app_.EventManagerObject.registerForEvent(id, this);
    }
    m_Exchange.clear();
    m_Number.clear();
    cmboLocations.Clear();
    cmboLocations.SetText("");
    m_Loading = m_Adding = m_Removing = false;
    ScaleForm(*this, app_.Platform());
    // The outline comes from Image2, at its place on the form.
    app_.Shape(*this, false, &Image2);
    // Outside the United States the number box takes the area code box's place.
    numberLeftUS_ = txtPhoneNumber.Left();
    numberLeftAbroad_ = txtAreaCode.Left();
    btnRemove.SetEnabled(false);
    cmboLocations.SetEnabled(false);
    for (const char* choice : {"*70,", "70#,", "1170,"}) {
        cmboCallWaiting.AddItem(choice);
    }
    txtOutsideAccess.SetText("9");
    txtLongDistance.SetText("8");
    WireEvents();
    // From here on a step that fails is passed over and the next one runs.
    try {
        std::string value;
        if (Policy("CCdialing", value) && value == "0") {
            chkCallingCard.SetEnabled(false);
            lblCallingCard.SetEnabled(false);
        }
    } catch (const Failure&) {
    }
    try {
        chkCallingCard.SetValue(forms::check::kUnchecked);
    } catch (const Failure&) {
    }
    try {
        FillCountries();
    } catch (const Failure&) {
    }
    btnAdd.SetCaption("Add");
    btnCancel.SetEnabled(false);
}

void FromPullout::WireEvents() {
    btnAdd.Click = [this] { btnAdd_Click(); };
    btnCancel.Click = [this] { btnCancel_Click(); };
    btnRemove.Click = [this] { btnRemove_Click(); };
    for (forms::TextBox* box :
         {&txtAreaCode, &txtPhoneNumber, &txtLongDistance, &txtOutsideAccess}) {
        box->Change = [this] { NumberField_Change(); };
        // Entering a field selects all of it, so typing replaces what was there.
        box->GotFocus = [box] {
            box->SetSelStart(0);
            box->SetSelLength(static_cast<int>(box->Text().size()));
        };
    }
    txtAreaCode.KeyPress = [this](int& key) { FilterKey(key, ""); };
    // The country is asked at every key: a change of country changes the rule at once.
    txtPhoneNumber.KeyPress = [this](int& key) { FilterKey(key, CountryCode() == 1 ? "-" : ""); };
    txtOutsideAccess.KeyPress = [this](int& key) { FilterKey(key, ","); };
    txtLongDistance.KeyPress = [this](int& key) { FilterKey(key, ","); };
    cmboCallWaiting.Change = [this] { NoteEdit(); };
    cmboCallWaiting.Click = [this] { NoteEdit(); };
    chkDisableCallWaiting.Click = [this] { chkDisableCallWaiting_Click(); };
    chkManualDial.Click = [this] {
        if (!m_Loading && !m_Adding) {
            SetFormModified();
        }
    };
    chkCallingCard.Click = [this] { chkCallingCard_Click(); };
    chkUseExisting.Click = [this] { chkUseExisting_Click(); };
    lblCallingCard.Click = [this] { ToggleFromLabel(chkCallingCard); };
    lblManualDial.Click = [this] { ToggleFromLabel(chkManualDial); };
    lblUseExisting.Click = [this] { ToggleFromLabel(chkUseExisting); };
    lblDisableCallWaiting.Click = [this] {
        chkDisableCallWaiting.SetValue(chkDisableCallWaiting.Value() == forms::check::kChecked
                                           ? forms::check::kUnchecked
                                           : forms::check::kChecked);
        chkDisableCallWaiting_Click();
    };
    cmboCountries.Click = [this] { cmboCountries_Click(); };
    cmboLocations.Click = [this] { cmboLocations_Click(); };
    cmboLocations.KeyDown = [](int& key, int) {
        if (IsListWalkKey(key)) {
            key = 0;
        }
    };
}

void FromPullout::Form_Unload(int& cancel) {
    (void)cancel;
    for (const std::int32_t id : kHeardEvents) {
        app_.EventManagerObject.deregisterForEvent(id, this);
    }
}

void FromPullout::FillCountries() {
    if (!app_.CountryListObject || cmboCountries.ListCount() > 0) {
        return;
    }
    const CountryList& countries = *app_.CountryListObject;
    for (int i = 1; i <= countries.Count(); ++i) {
        cmboCountries.AddItem(countries.item(i)->DisplayText());
    }
    if (cmboCountries.ListCount() > 0) {
        cmboCountries.SetListIndex(FindComboEntry(cmboCountries, kUnitedStates));
    }
}

// ---- helpers ---------------------------------------------------------------------------------

Dravlink& FromPullout::Engine() const {
    if (!app_.EngineObject) {
        throw Failure(automation::err::kObjectNotSet);  // the engine could not be made at start
    }
    return *app_.EngineObject;
}

bool FromPullout::Policy(const std::string& key, std::string& value) {
    try {
        std::string user = app_.UserName;
        return CBool(Engine().GetPolicySetting(user, key, value));
    } catch (const Failure&) {
        return false;
    }
}

float FromPullout::CountryCode() const {
    return app_.CurrentCountry ? app_.CurrentCountry->code() : 0.0F;
}

std::string FromPullout::LocationName() const {
    return Trim(cmboLocations.Text());
}

void FromPullout::Tell(const std::string& text) {
    app_.Form<MainWin>().AppBox(text, forms::mb::kOkOnly | forms::mb::kSetForeground);
}

void FromPullout::FilterKey(int& key, const std::string& extra) {
    const bool digit = key >= '0' && key <= '9';
    const bool allowed = extra.find(static_cast<char>(key)) != std::string::npos;
    if (!digit && key != forms::key::kBack && !(key > 0 && allowed)) {
        app_.Platform().Beep();
        key = 0;
    }
}

void FromPullout::SetFormModified() {
    btnAdd.SetCaption("Modify");
    btnCancel.SetEnabled(true);
    app_.Form<MainWin>().DisableFromSelection();
}

void FromPullout::ClearFormModified() {
    btnAdd.SetCaption("Add");
    btnCancel.SetEnabled(false);
    app_.Form<MainWin>().EnableFromSelection();
}

bool FromPullout::IsFormModified() const {
    return btnAdd.Caption() == "Save" || btnAdd.Caption() == "Modify";
}

// ---- adding, saving, cancelling, removing ------------------------------------------------------

void FromPullout::btnAdd_Click() {
    const std::string caption = btnAdd.Caption();
    if (caption == "Add") {
        MainWin& win = app_.Form<MainWin>();
        if (win.IsGettingDialList) {
            return;
        }
        m_Adding = true;
        win.DisableFromSelection();
        for (forms::TextBox* box :
             {&txtAreaCode, &txtPhoneNumber, &txtLongDistance, &txtOutsideAccess}) {
            box->SetText("");
        }
        for (forms::CheckBox* box :
             {&chkCallingCard, &chkManualDial, &chkUseExisting, &chkDisableCallWaiting}) {
            box->SetValue(forms::check::kUnchecked);
        }
        lblCallingCardName.SetCaption("");
        cmboCallWaiting.SetText("");
        btnAdd.SetCaption("Save");
        btnRemove.SetEnabled(false);
        btnCancel.SetEnabled(true);
        m_AddFromIndex = static_cast<std::int16_t>(cmboLocations.ListIndex());
        if (cmboCountries.ListCount() > 0) {
            cmboCountries.SetListIndex(FindComboEntry(cmboCountries, kUnitedStates));
        }
        cmboLocations.SetEnabled(true);
        cmboLocations.SetText("");
        cmboLocations.SetFocus();
        return;
    }
    if (caption == "Save") {
        const std::string name = LocationName();
        if (!CheckRequiredFields() || !FormNumberParts()) {
            return;
        }
        SaveNew(name);
        return;
    }
    if (caption == "Modify") {
        if (!CheckRequiredFields()) {
            return;
        }
        app_.Form<MainWin>().DisableFromSelection();
        if (!FormNumberParts()) {
            return;
        }
        SaveChanged(LocationName());
    }
}

bool FromPullout::CheckRequiredFields() {
    if (LocationName().empty()) {
        Tell("Please specify a location name.");
        return false;
    }
    if (chkUseExisting.Value() != forms::check::kChecked && CountryCode() == 1 &&
        txtAreaCode.Text().empty()) {
        Tell("Please specify an area code. (Required in the U.S.)");
        return false;
    }
    if (txtPhoneNumber.Text().empty()) {
        Tell("Please enter your telephone number.");
        return false;
    }
    return true;
}

bool FromPullout::FormNumberParts() {
    if (CountryCode() != 1) {
        m_Exchange.clear();
        m_Number = txtPhoneNumber.Text();
        return true;
    }
    if (chkUseExisting.Value() == forms::check::kChecked) {
        return true;  // the placeholders are stored in place of the number
    }
    return ParsePhoneNumber();
}

bool FromPullout::SaveNew(const std::string& name) {
    if (!CBool(Engine().LocationExists(name))) {
        Tell(LoadResString(ResConst::kLocationExists));
        return false;
    }
    SaveFields();
    if (!CBool(Engine().CreateLocation(name))) {
        Tell("Error saving " + name);
        btnRemove.SetEnabled(false);
        return false;
    }
    MainWin& win = app_.Form<MainWin>();
    cmboLocations.AddItem(name);
    win.cmboFrom.AddItem(name);
    const int added = win.cmboFrom.NewIndex();
    if (!name.empty()) {
        btnRemove.SetEnabled(true);
    }
    Tell("Saved " + name);
    cmboLocations.SetEnabled(false);
    win.cmboFrom.SetListIndex(added);
    m_Adding = false;
    ClearFormModified();
    return true;
}

void FromPullout::SaveChanged(const std::string& name) {
    SaveFields();
    if (CBool(Engine().SaveLocation(name))) {
        Tell("Update of " + name + " successful.");
        ClearFormModified();
        app_.Form<ToPullout>().lstvDialList.ClearItems();
        app_.Form<MainWin>().GetDialList();
    } else {
        app_.Form<MainWin>().AppBox(
            "Update of " + name + " failed.",
            forms::mb::kOkOnly | forms::mb::kExclamation | forms::mb::kSetForeground);
    }
    if (!name.empty()) {
        btnRemove.SetEnabled(true);
    }
}

bool FromPullout::SaveFields() {
    const std::string name = LocationName();
    Dravlink& engine = Engine();
    auto write = [&](const char* key, const std::string& value) {
        try {
            return CBool(engine.SetLocationProperty(name, key, value));
        } catch (const Failure&) {
            return false;  // a write the engine cannot take counts as refused
        }
    };
    auto report = [&](bool ok, const std::string& message) {
        if (!ok) {
            Tell(message);
        }
    };
    const bool us = CountryCode() == 1;
    report(write("CountryName", app_.CurrentCountry ? app_.CurrentCountry->name() : ""),
           "Error setting the country name for " + name);
    report(write("CountryCode", automation::CStr(Variant(CountryCode()))),
           "Error setting the country code for " + name);
    if (chkUseExisting.Value() == forms::check::kChecked) {
        report(write("AreaCode", kTunnelAreaCode), "Error setting the area code for " + name);
        report(write("Exchange", kTunnelExchange), "Error setting the exchange for " + name);
        report(write("Number", kTunnelNumber), "Error setting the number for " + name);
    } else {
        // Outside the United States there is no area code or exchange to lose.
        const bool area = write("AreaCode", txtAreaCode.Text());
        report(area || !us, "Error setting the area code for " + name);
        const bool exchange = write("Exchange", m_Exchange);
        report(exchange || !us, "Error setting the exchange for " + name);
        report(write("Number", m_Number), "Error setting the number for " + name);
    }
    const bool waiting = chkDisableCallWaiting.Value() == forms::check::kChecked;
    report(write("DisableCallWaiting", waiting ? cmboCallWaiting.Text() : ""),
           "Error disabling call waiting for " + name);
    report(write("LongDistanceAccess", txtLongDistance.Text()),
           "Error setting long distance access for " + name);
    report(write("OutSideAccess", txtOutsideAccess.Text()),
           "Error setting outside access for " + name);
    // A card box set with no card to name stores no card.
    const bool card = chkCallingCard.Value() == forms::check::kChecked && app_.CurrentCallingCard;
    write("CallingCard", card ? std::to_string(app_.CurrentCallingCard->tapiIndex) : "0");
    write("ManualDial", std::to_string(chkManualDial.Value()));
    const bool tunnel = write("TunnelOverLAN", std::to_string(chkUseExisting.Value()));
    report(tunnel, "Error setting the prefered calling card.");
    return tunnel;
}

void FromPullout::btnCancel_Click() {
    const std::string caption = btnAdd.Caption();
    if (caption == "Modify") {
        LoadLocationFields();
        ClearFormModified();
        if (!LocationName().empty()) {
            btnRemove.SetEnabled(true);
        }
        return;
    }
    if (caption == "Save") {
        ClearFormModified();
        btnAdd.SetFocus();
        cmboLocations.SetEnabled(false);
        if (app_.Form<MainWin>().cmboFrom.ListCount() > 0) {
            m_Adding = false;
            ReturnToLocation(m_AddFromIndex);
            cmboLocations.SetEnabled(false);
            if (!LocationName().empty()) {
                btnRemove.SetEnabled(true);
            }
        } else {
            // m_Adding stays set: with nothing stored, no edit counts as a change until a load.
            cmboLocations.SetText("");
            for (forms::TextBox* box :
                 {&txtAreaCode, &txtPhoneNumber, &txtLongDistance, &txtOutsideAccess}) {
                box->SetText("");
            }
            chkDisableCallWaiting.SetValue(forms::check::kUnchecked);
            cmboCallWaiting.SetEnabled(false);
            btnRemove.SetEnabled(false);
        }
        return;
    }
    if (caption == "Add" && LocationName().empty()) {
        for (forms::TextBox* box :
             {&txtAreaCode, &txtPhoneNumber, &txtLongDistance, &txtOutsideAccess}) {
            box->SetText("");
        }
        chkDisableCallWaiting.SetValue(forms::check::kUnchecked);
        cmboCallWaiting.SetEnabled(false);
        btnCancel.SetEnabled(false);
    }
}

void FromPullout::btnRemove_Click() {
    const std::string name = cmboLocations.Text();
    MainWin& win = app_.Form<MainWin>();
    if (win.AppBox("Are you sure you wish to delete " + name + " ?", forms::mb::kYesNo) !=
        forms::mb::kResultYes) {
        return;
    }
    btnRemove.SetEnabled(false);
    m_Removing = true;
    Engine().DeleteLocation(Trim(name));
    const int i = cmboLocations.ListIndex();
    if (i >= 0) {
        cmboLocations.RemoveItem(i);
        win.cmboFrom.RemoveItem(i);
    }
    for (forms::TextBox* box :
         {&txtAreaCode, &txtPhoneNumber, &txtOutsideAccess, &txtLongDistance}) {
        box->SetText("");
    }
    const bool remain = cmboLocations.ListCount() > 0;
    if (remain) {
        cmboLocations.SetListIndex(i > 0 ? i - 1 : 0);
    } else {
        win.GetDialList();
    }
    m_Removing = false;
    if (remain) {
        btnRemove.SetEnabled(true);
    }
    ClearFormModified();
}

// ---- closing and connecting ------------------------------------------------------------------

bool FromPullout::AskSaveForm() {
    const int answer = app_.Form<MainWin>().AppBox(
        "The From Location form has been modified, do you wish to save the changes?",
        forms::mb::kYesNo | forms::mb::kExclamation);
    if (answer == forms::mb::kResultYes) {
        btnAdd_Click();
        return true;
    }
    btnCancel_Click();
    return false;
}

void FromPullout::OnHide(bool& ok) {
    ok = !(IsFormModified() && AskSaveForm());
}

void FromPullout::KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) {
    (void)data;
    if (eventId == event::kConnectStarted || eventId == event::kGettingDialList) {
        SetEnabled(false);
    } else if (eventId == 32 || eventId == event::kDialListDone) {
        SetEnabled(true);
    }
}

std::int32_t FromPullout::KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                          automation::Variant& data) {
    (void)data;
    if (eventId == event::kConnectRequested && IsFormModified() && AskSaveForm()) {
        return kVeto;
    }
    return 0;
}

}  // namespace kw::dialer
