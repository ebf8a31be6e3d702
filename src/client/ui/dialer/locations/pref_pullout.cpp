#include "client/ui/dialer/locations/pref_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "platform/automation/failure.h"

namespace kw::dialer {

PrefPullout::PrefPullout(Application& app) : Form(app.Platform(), "PrefPullout"), app_(app) {
    SetCaption("PrefPullout");
    Move(0, 0, 320, 204);
    Label1.SetCaption("User Preferences");
    Label1.SetFontBold(true);
    cmboCallingCards.SetStyle(forms::combo::kDropdownList);
    btnSave.SetCaption("Save");
    btnSave.SetEnabled(false);
}

void PrefPullout::OnHide(bool& ok) { ok = !btnSave.Enabled(); }

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
