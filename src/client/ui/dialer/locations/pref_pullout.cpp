#include "client/ui/dialer/locations/pref_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/failure.h"

namespace kw::dialer {

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
    face::BlendFrame(frCallingCard, app_.Art().Bitmap(layout::prefpullout::kPicture));
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, false);
}

void PrefPullout::OnHide(bool& ok) {
    ok = !btnSave.Enabled();
}

void PrefPullout::OnShow() {
    btnSave.SetEnabled(false);
    if (app_.CallingCardId == 0 || !app_.CallingCards) {
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
    } catch (const automation::Failure&) {
        // A card the box cannot show ends the showing quietly.
    }
}

}  // namespace kw::dialer
