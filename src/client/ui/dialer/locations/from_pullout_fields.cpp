// FromPullout: reading a location into the form, and the rules of its number.
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

// ---- reading a location ------------------------------------------------------------------------

void FromPullout::LoadLocationFields() {
    m_Loading = true;
    const std::string name = LocationName();
    Dravlink& engine = Engine();
    auto read = [&](const char* key, std::string& value) {
        value.clear();
        try {
            return CBool(engine.GetLocationProperty(name, key, value));
        } catch (const Failure&) {
            value.clear();
            return false;
        }
    };
    std::string tunnel;
    read("TunnelOverLAN", tunnel);
    const bool overLan = tunnel == "1";
    if (overLan) {
        chkUseExisting.SetValue(forms::check::kChecked);
        chkUseExisting_Click();
    } else {
        chkUseExisting.SetValue(forms::check::kUnchecked);
    }

    std::string countryName;
    std::string code;
    read("CountryName", countryName);
    read("CountryCode", code);
    ApplyCountryLayout(code);
    if (app_.CountryListObject) {
        std::shared_ptr<CountryInfo> country = app_.CountryListObject->FindByName(countryName);
        if (cmboCountries.ListCount() > 0 && country) {
            cmboCountries.SetListIndex(FindComboEntry(cmboCountries, country->DisplayText()));
        }
    }
    const bool us = code == "1";

    std::string value;
    if (read("AreaCode", value) && us) {
        txtAreaCode.SetText(overLan ? "" : value);
    }
    if (!read("Exchange", value) || !us) {
        m_Exchange.clear();
    } else if (!overLan) {
        txtPhoneNumber.SetText(value);
        m_Exchange = txtPhoneNumber.Text();
    }
    if (!read("Number", value) || !us) {
        txtPhoneNumber.SetText(value);
    } else if (!overLan) {
        txtPhoneNumber.SetText(txtPhoneNumber.Text() + "-" + value);
        m_Number = value;
    } else {
        txtPhoneNumber.SetText("");
    }
    read("CountryCode", value);

    read("OutSideAccess", value);
    txtOutsideAccess.SetText(value);
    read("LongDistanceAccess", value);
    txtLongDistance.SetText(value);

    read("DisableCallWaiting", value);
    cmboCallWaiting.SetText(value);
    chkDisableCallWaiting.SetValue(value.empty() ? forms::check::kUnchecked
                                                 : forms::check::kChecked);

    read("CallingCard", value);
    std::shared_ptr<CallingCard> card;
    if (value != "0" && chkCallingCard.Visible() && app_.CallingCards) {
        try {
            card = app_.CallingCards->findByID(automation::CInt(Variant(value)));
        } catch (const Failure&) {
            // No number: a location without a card.
        }
    }
    if (card) {
        chkCallingCard.SetValue(forms::check::kChecked);
        app_.CurrentCallingCard = card;
        lblCallingCardName.SetCaption(card->name);
    } else {
        chkCallingCard.SetValue(forms::check::kUnchecked);
        lblCallingCardName.SetCaption("");
    }

    read("ConfirmDialString", value);
    app_.Form<PrefPullout>().chkConfirmDial.SetValue(value == "1" ? forms::check::kChecked
                                                                  : forms::check::kUnchecked);

    std::string policy;
    const bool policyRead = Policy("ManualDialing", policy);
    read("ManualDial", value);
    if (policyRead && policy == "1") {
        chkManualDial.SetValue(value == "1" ? forms::check::kChecked : forms::check::kUnchecked);
    } else if (!policyRead || policy == "0") {
        chkManualDial.SetEnabled(false);
        lblManualDial.SetEnabled(false);
    }
    m_Adding = false;
    m_Loading = false;
}

void FromPullout::ApplyCountryLayout(const std::string& code) {
    const bool us = code == "1";
    Label7.SetVisible(us);
    Label8.SetVisible(us);
    txtAreaCode.SetVisible(us);
    txtPhoneNumber.SetLeft(us ? numberLeftUS_ : numberLeftAbroad_);
    txtAreaCode.SetText("");
    txtPhoneNumber.SetText("");
}

// ---- the number ------------------------------------------------------------------------------

bool FromPullout::ParsePhoneNumber() {
    if (txtAreaCode.Text().size() != 3) {
        Tell("Invalid area code.");
        return false;
    }
    const std::string text = txtPhoneNumber.Text();
    const std::size_t dash = text.find('-');
    if (dash == std::string::npos) {
        if (text.size() != 7) {
            Tell("Invalid phone number. Please use the format XXX-XXXX.");
            return false;
        }
        m_Exchange = text.substr(0, 3);
        m_Number = text.substr(3);
        return true;
    }
    m_Exchange = text.substr(0, dash);
    if (m_Exchange.size() != 3) {
        Tell(m_Exchange.size() < 3
                 ? "Invalid phone number.  Too few numbers before the dash (-)."
                 : "Invalid phone number.  Too many numbers before the dash (-).");
        ShowWrongPart(0, m_Exchange.size());
        return false;
    }
    m_Number = text.substr(dash + 1);
    if (m_Number.size() == 4) {
        return true;
    }
    Tell(m_Number.size() < 4 ? "Invalid phone number.  Too few numbers after the dash (-)."
                             : "Invalid phone number.  Too many numbers after the dash (-).");
    ShowWrongPart(dash + 1, m_Number.size());
    return false;
}

void FromPullout::ShowWrongPart(std::size_t start, std::size_t length) {
    // The focus first: entering the field selects all of it, and the wrong part is what the user
    // has to see selected.
    txtPhoneNumber.SetFocus();
    txtPhoneNumber.SetSelStart(static_cast<int>(start));
    txtPhoneNumber.SetSelLength(static_cast<int>(length));
}

}  // namespace kw::dialer
