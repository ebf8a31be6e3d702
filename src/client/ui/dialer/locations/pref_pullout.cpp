#include "client/ui/dialer/locations/pref_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/failure.h"
#include "platform/automation/strings.h"

namespace kw::dialer {

using automation::CBool;
using automation::Failure;
using automation::Variant;

namespace {
// The events the pullout hears, in the order it registers for them.
constexpr std::int32_t kHeardEvents[] = {event::kConnectRequested, event::kConnectStarted, 32,
                                         event::kGettingDialList, event::kDialListDone};

// The engine, or failure 91 when none could be made at start.
Dravlink& EngineOf(const Application& app) {
    if (!app.EngineObject) {
        throw Failure(automation::err::kObjectNotSet);
    }
    return *app.EngineObject;
}
}  // namespace

PrefPullout::PrefPullout(Application& app) : Form(app.Platform(), "PrefPullout"), app_(app) {
    SetCaption("PrefPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("User Preferences");
    Label1.SetFontBold(true);
    frCallingCard.SetCaption("Calling Card Information");
    Label3.SetCaption("Carrier:");
    cmboCallingCards.SetStyle(forms::combo::kDropdownList);
    Label2.SetCaption("Card #:");
    btnSave.SetCaption("Save");
    btnSave.SetEnabled(false);
    chkConfirmDial.SetCaption("Confirm Dial Information before dialing");
    chkAutoDial.SetCaption("Autologout After");
    chkAutoDial.SetVisible(false);
    Text2.SetText("10");
    Text2.SetMaxLength(3);
    Text2.SetVisible(false);
    Label4.SetCaption("min.");
    Label4.SetVisible(false);
    tmrCCardMsg.SetTimerEnabled(false);
    tmrCCardMsg.SetInterval(100);
    PlaceControls();
}

void PrefPullout::PlaceControls() {
    namespace at = layout::prefpullout;
    SetPicture(at::kPicture);
    face::PlaceForm(*this, layout::panel::kWidth, layout::panel::kHeight);
    Image1.SetPicture(at::kIcon);
    face::Place(Image1, at::Image1);
    face::Place(Label1, at::Label1);
    face::Place(frCallingCard, at::frCallingCard);
    face::PlaceIn(Label3, frCallingCard, at::Label3, at::frCallingCard);
    face::PlaceIn(cmboCallingCards, frCallingCard, at::cmboCallingCards, at::frCallingCard);
    face::PlaceIn(Label2, frCallingCard, at::Label2, at::frCallingCard);
    face::PlaceIn(txtCardNumber, frCallingCard, at::txtCardNumber, at::frCallingCard);
    face::PlaceIn(btnSave, frCallingCard, at::btnSave, at::frCallingCard);
    face::Place(chkConfirmDial, at::chkConfirmDial);
    face::Place(chkAutoDial, at::chkAutoDial);
    face::Place(Text2, at::Text2);
    face::Place(Label4, at::Label4);
    face::OnSkin(
        {&Label1, &frCallingCard, &Label3, &Label2, &chkConfirmDial, &chkAutoDial, &Label4});
    face::InWell({&cmboCallingCards, &txtCardNumber, &Text2});
}

void PrefPullout::Form_Load() {
    try {
        for (const std::int32_t id : kHeardEvents) {
            app_.EventManagerObject.registerForEvent(id, this);
        }
        face::BlendFrame(frCallingCard, app_.Art().Bitmap(layout::prefpullout::kPicture));
        ScaleForm(*this, app_.Platform());
        app_.Shape(*this, false);
        std::string user = app_.UserName;
        std::string value;
        const bool read = CBool(EngineOf(app_).GetPolicySetting(user, "DialStringEditing", value));
        chkConfirmDial.SetEnabled(read && value == "1");
        tmrCCardMsg.SetTimerEnabled(false);
        tmrCCardMsg.SetInterval(100);
    } catch (const Failure& failure) {
        app_.Form<MainWin>().COMErrHandler(failure);
    }
    cmboCallingCards.Click = [this] { cmboCallingCards_Click(); };
    txtCardNumber.Change = [this] { btnSave.SetEnabled(true); };
    btnSave.Click = [this] { btnSave_Click(); };
    chkConfirmDial.Click = [this] { chkConfirmDial_Click(); };
    tmrCCardMsg.Tick = [this] { tmrCCardMsg_Timer(); };
}

void PrefPullout::Form_Unload(int& cancel) {
    (void)cancel;
    for (const std::int32_t id : kHeardEvents) {
        app_.EventManagerObject.deregisterForEvent(id, this);
    }
    app_.CallingCards.reset();
}

void PrefPullout::OnHide(bool& ok) {
    ok = !(IsCardNumberModified() && AskSaveCardNumber());
}

void PrefPullout::OnShow() {
    btnSave.SetEnabled(false);
    if (app_.CallingCardId == 0) {
        return;
    }
    if (!app_.CallingCards) {
        tmrCCardMsg.SetTimerEnabled(true);  // the user is told once the panel is on screen
        return;
    }
    std::shared_ptr<CallingCard> card = app_.CallingCards->findByID(app_.CallingCardId);
    if (!card) {
        return;  // a card that is no longer listed leaves the box as it stands
    }
    try {
        app_.CurrentCallingCard = card;
        cmboCallingCards.SetListIndex(card->index);
        txtCardNumber.SetText(card->number);
        FromPullout& from = app_.Form<FromPullout>();
        if (from.chkCallingCard.Value() == forms::check::kChecked) {
            from.lblCallingCardName.SetCaption(card->name);
        }
    } catch (const Failure&) {
        // A card the box cannot show ends the showing quietly.
    }
}

void PrefPullout::tmrCCardMsg_Timer() {
    tmrCCardMsg.SetTimerEnabled(false);
    app_.Form<MainWin>().AppBox(LoadResString(ResConst::kLocationNotConfigured),
                                forms::mb::kOkOnly | forms::mb::kExclamation);
}

void PrefPullout::cmboCallingCards_Click() {
    if (IsCardNumberModified()) {
        AskSaveCardNumber();
    }
    if (!app_.CallingCards) {
        return;
    }
    app_.CurrentCallingCard = app_.CallingCards->item(cmboCallingCards.ListIndex() + 1);
    app_.CallingCardId = app_.CurrentCallingCard->tapiIndex;
    txtCardNumber.SetText(app_.CurrentCallingCard->number);
    btnSave.SetEnabled(false);
    FromPullout& from = app_.Form<FromPullout>();
    if (from.chkCallingCard.Value() == forms::check::kChecked) {
        from.lblCallingCardName.SetCaption(app_.CurrentCallingCard->name);
    }
    registry::HKEY key = OpenSettingsKey(app_.Platform());
    const std::int16_t id = app_.CurrentCallingCard ? app_.CurrentCallingCard->tapiIndex : 0;
    SetValueEx(Variant(id), key, settings::kCallingCard);
    registry::RegCloseKey(key);
}

void PrefPullout::btnSave_Click() {
    if (!app_.CurrentCallingCard) {
        return;  // nothing to store the number on
    }
    std::string id = std::to_string(app_.CurrentCallingCard->index);
    if (CBool(EngineOf(app_).SetCallingCardNumber(id, txtCardNumber.Text()))) {
        m_CardSaveFailed = false;
        btnSave.SetEnabled(false);
        app_.CurrentCallingCard->number = txtCardNumber.Text();
    } else {
        app_.Form<MainWin>().AppBox("Error saving the calling card number.", forms::mb::kOkOnly);
        m_CardSaveFailed = true;
    }
}

bool PrefPullout::AskSaveCardNumber() {
    const int answer = app_.Form<MainWin>().AppBox(
        "The calling card number for the currently selected carrier has been modified, do you "
        "wish to save the changes?",
        forms::mb::kYesNo | forms::mb::kExclamation);
    if (answer == forms::mb::kResultYes) {
        btnSave_Click();
        return true;
    }
    if (app_.CurrentCallingCard) {
        txtCardNumber.SetText(app_.CurrentCallingCard->number);
    }
    btnSave.SetEnabled(false);
    return false;
}

void PrefPullout::chkConfirmDial_Click() {
    const std::string location = automation::Trim(app_.Form<MainWin>().cmboFrom.Text());
    const std::string value = chkConfirmDial.Value() == forms::check::kChecked ? "1" : "0";
    try {
        if (CBool(EngineOf(app_).SetLocationProperty(location, "ConfirmDialString", value))) {
            EngineOf(app_).SaveLocation(location);
        }
    } catch (const Failure&) {
        // Neither failure is the user's concern: the box shows what was asked for.
    }
}

void PrefPullout::KestrelwayEventSub(std::int32_t& eventId, Variant& data) {
    (void)data;
    if (eventId == event::kConnectStarted || eventId == event::kGettingDialList) {
        SetEnabled(false);
    } else if (eventId == 32 || eventId == event::kDialListDone) {
        SetEnabled(true);
    }
}

std::int32_t PrefPullout::KestrelwayVetoableEventFunction(std::int32_t& eventId, Variant& data) {
    (void)data;
    if (eventId == event::kConnectRequested && IsCardNumberModified() && AskSaveCardNumber()) {
        return kVeto;
    }
    return 0;
}

}  // namespace kw::dialer
