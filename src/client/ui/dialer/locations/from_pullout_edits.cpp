// FromPullout: what each edit of the form sets off.
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

// ---- edits ---------------------------------------------------------------------------------

void FromPullout::NumberField_Change() {
    if (LocationName().empty()) {
        btnCancel.SetEnabled(true);
    } else if (!m_Loading && !m_Adding && !m_Removing) {
        SetFormModified();
    }
}

void FromPullout::NoteEdit() {
    if (!m_Loading && !m_Adding && !m_Removing) {
        SetFormModified();
    }
}

void FromPullout::chkDisableCallWaiting_Click() {
    if (!m_Loading && !m_Adding) {
        SetFormModified();
    }
    if (chkDisableCallWaiting.Value() == forms::check::kChecked) {
        cmboCallWaiting.SetEnabled(true);
        if (!m_Loading) {
            btnCancel.SetEnabled(true);
            cmboCallWaiting.SetListIndex(0);
        }
    } else {
        cmboCallWaiting.SetEnabled(false);
    }
}

void FromPullout::chkCallingCard_Click() {
    if (!cmboLocations.Text().empty() && !m_Loading && !m_Adding) {
        SetFormModified();
    }
    if (chkCallingCard.Value() != forms::check::kChecked) {
        lblCallingCardName.SetCaption("");
        return;
    }
    if (!app_.CurrentCallingCard) {
        return;
    }
    const forms::ComboBox& cards = app_.Form<PrefPullout>().cmboCallingCards;
    if (cards.ListCount() > 0) {
        lblCallingCardName.SetCaption(cards.List(std::max(cards.ListIndex(), 0)));
    }
}

void FromPullout::chkUseExisting_Click() {
    if (!m_Loading && !m_Adding) {
        SetFormModified();
    }
    if (chkUseExisting.Value() == forms::check::kChecked) {
        setTunnelOverLAN();
    } else {
        unsetTunnelOverLAN();
    }
}

void FromPullout::ToggleFromLabel(forms::CheckBox& box) {
    if (!cmboLocations.Text().empty() && !m_Loading && !m_Adding) {
        SetFormModified();
    }
    box.SetValue(box.Value() == forms::check::kChecked ? forms::check::kUnchecked
                                                       : forms::check::kChecked);
}

void FromPullout::cmboCountries_Click() {
    if (!app_.CountryListObject) {
        return;
    }
    const std::string text = cmboCountries.Text();
    std::shared_ptr<CountryInfo> country;
    try {
        country = app_.CountryListObject->item(CountryNameFromText(text));
    } catch (const Failure&) {
        // A country without a name has no key: it is found by its text alone.
        for (int i = 1; i <= app_.CountryListObject->Count() && !country; ++i) {
            if (app_.CountryListObject->item(i)->DisplayText() == text) {
                country = app_.CountryListObject->item(i);
            }
        }
    }
    if (!country) {
        return;
    }
    app_.CurrentCountry = country;
    ApplyCountryLayout(automation::CStr(Variant(country->code())));
}

void FromPullout::ReturnToLocation(int index) {
    if (index >= 0 && index == cmboLocations.ListIndex()) {
        // The box kept its selection under the name typed over it: show and read it again.
        cmboLocations.SetText(cmboLocations.List(index));
        cmboLocations_Click();
        return;
    }
    cmboLocations.SetListIndex(index);
}

void FromPullout::cmboLocations_Click() {
    app_.Form<MainWin>().cmboFrom.SetListIndex(cmboLocations.ListIndex());
    LoadLocationFields();
}

void FromPullout::setTunnelOverLAN() {
    chkCallingCard.SetEnabled(false);
    chkCallingCard.SetValue(forms::check::kUnchecked);
    chkCallingCard_Click();
    for (forms::Control* c : {static_cast<forms::Control*>(&lblCallingCard),
                              static_cast<forms::Control*>(&lblCallingCardName),
                              static_cast<forms::Control*>(&chkDisableCallWaiting),
                              static_cast<forms::Control*>(&lblDisableCallWaiting)}) {
        c->SetEnabled(false);
    }
    chkManualDial.SetEnabled(false);
    chkManualDial.SetValue(forms::check::kUnchecked);
    for (forms::Control* c : {static_cast<forms::Control*>(&lblManualDial),
                              static_cast<forms::Control*>(&txtLongDistance),
                              static_cast<forms::Control*>(&txtOutsideAccess),
                              static_cast<forms::Control*>(&lblOutsideLine),
                              static_cast<forms::Control*>(&lblLongDistance)}) {
        c->SetEnabled(false);
    }
}

void FromPullout::unsetTunnelOverLAN() {
    std::string value;
    const bool cards = Policy("CCdialing", value) && value != "0";
    chkCallingCard.SetEnabled(cards);
    lblCallingCard.SetEnabled(cards);
    lblCallingCardName.SetEnabled(cards);
    chkDisableCallWaiting.SetEnabled(true);
    lblDisableCallWaiting.SetEnabled(true);
    const bool manual = Policy("ManualDialing", value) && value != "0";
    chkManualDial.SetEnabled(manual);
    lblManualDial.SetEnabled(manual);
    for (forms::Control* c : {static_cast<forms::Control*>(&txtLongDistance),
                              static_cast<forms::Control*>(&txtOutsideAccess),
                              static_cast<forms::Control*>(&lblOutsideLine),
                              static_cast<forms::Control*>(&lblLongDistance)}) {
        c->SetEnabled(true);
    }
}

}  // namespace kw::dialer
