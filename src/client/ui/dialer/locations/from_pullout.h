#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;
class Dravlink;

// The dialing locations pullout: where the user calls from.
class FromPullout : public forms::Form, public EventSubscriber, public Pullout {
  public:
    explicit FromPullout(Application& app);

    // The picture that gives the pullout its outline; first, so that everything stands on it.
    forms::Image Image2{*this, "Image2"};
    forms::Image Image1{*this, "Image1"};
    forms::Label Label3{*this, "Label3"};
    forms::ComboBox cmboLocations{*this, "cmboLocations"};
    forms::Label lbCountry{*this, "lbCountry"};
    forms::ComboBox cmboCountries{*this, "cmboCountries"};
    forms::Label lblPhoneNumber{*this, "lblPhoneNumber"};
    forms::Label Label7{*this, "Label7"};
    forms::TextBox txtAreaCode{*this, "txtAreaCode"};
    forms::Label Label8{*this, "Label8"};
    forms::TextBox txtPhoneNumber{*this, "txtPhoneNumber"};
    forms::Label Label6{*this, "Label6"};
    forms::Label lblOutsideLine{*this, "lblOutsideLine"};
    forms::TextBox txtOutsideAccess{*this, "txtOutsideAccess"};
    forms::Label lblLongDistance{*this, "lblLongDistance"};
    forms::TextBox txtLongDistance{*this, "txtLongDistance"};
    forms::CheckBox chkDisableCallWaiting{*this, "chkDisableCallWaiting"};
    forms::Label lblDisableCallWaiting{*this, "lblDisableCallWaiting"};
    forms::ComboBox cmboCallWaiting{*this, "cmboCallWaiting"};
    forms::CheckBox chkCallingCard{*this, "chkCallingCard"};
    forms::Label lblCallingCard{*this, "lblCallingCard"};
    forms::Label lblCallingCardName{*this, "lblCallingCardName"};
    forms::CheckBox chkManualDial{*this, "chkManualDial"};
    forms::Label lblManualDial{*this, "lblManualDial"};
    forms::CheckBox chkUseExisting{*this, "chkUseExisting"};
    forms::Label lblUseExisting{*this, "lblUseExisting"};
    forms::CommandButton btnAdd{*this, "btnAdd"};
    forms::CommandButton btnRemove{*this, "btnRemove"};
    forms::CommandButton btnCancel{*this, "btnCancel"};

    // Acts on the form's state, held in the caption: "Add" starts a new location, "Save" creates
    // it, "Modify" updates the one on view.
    void btnAdd_Click();
    // Writes every field of the form to the location named in cmboLocations; a failed write is
    // reported and the next one runs. The result is that of the last write.
    bool SaveFields();
    // Asked before the pullout closes; false keeps it open.
    void OnHide(bool& ok) override;
    // Splits a United States number into m_Exchange and m_Number; false after telling the user
    // what is wrong with it.
    bool ParsePhoneNumber();
    // "Use Existing Internet connection": the dialing controls are of no use then.
    void setTunnelOverLAN();
    void unsetTunnelOverLAN();

    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

    void btnCancel_Click();
    void btnRemove_Click();
    // Reads the location named in cmboLocations into the form.
    void LoadLocationFields();
    // "1" shows the area code box and the number beside it; any other code, the number alone.
    void ApplyCountryLayout(const std::string& code);
    bool IsFormModified() const;
    // Fills the country box from the country table once there is one, and selects the United
    // States; a box already filled stays as it is.
    void FillCountries();

    std::string m_Exchange;
    std::string m_Number;
    bool m_Loading = false;
    bool m_Adding = false;
    bool m_Removing = false;
    std::int16_t m_AddFromIndex = 0;

  protected:
    void Form_Load() override;
    void Form_Unload(int& cancel) override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();
    void WireEvents();
    void SetFormModified();
    void ClearFormModified();
    // Yes saves (true, whatever the save's outcome), No drops the edit (false).
    bool AskSaveForm();
    void NoteEdit();
    void NumberField_Change();
    void chkDisableCallWaiting_Click();
    void chkCallingCard_Click();
    void chkUseExisting_Click();
    void cmboCountries_Click();
    void cmboLocations_Click();
    // Selects the location at index in both lists and reads it, even when the box still holds it.
    void ReturnToLocation(int index);
    // The label beside a check box toggles it, counting as an edit of a named location.
    void ToggleFromLabel(forms::CheckBox& box);
    // The checks before any save, in their order; false after telling the user.
    bool CheckRequiredFields();
    // Fills m_Exchange and m_Number from the form as the country asks; false when the number
    // is refused.
    bool FormNumberParts();
    // Selects the refused part of the number in its field.
    void ShowWrongPart(std::size_t start, std::size_t length);
    bool SaveNew(const std::string& name);
    void SaveChanged(const std::string& name);
    // The engine, or failure 91 when none could be made.
    Dravlink& Engine() const;
    bool Policy(const std::string& key, std::string& value);
    // The dialing code of the country on view; 0 while no country was ever selected.
    float CountryCode() const;
    std::string LocationName() const;
    // An OK box of the program, in the foreground.
    void Tell(const std::string& text);
    // Digits and backspace pass; anything else beeps and is dropped, unless extra lets it by.
    void FilterKey(int& key, const std::string& extra);

    Application& app_;
    // The two places of the number box: beside the area code, and in its place.
    int numberLeftUS_ = 0;
    int numberLeftAbroad_ = 0;
};

}  // namespace kw::dialer
