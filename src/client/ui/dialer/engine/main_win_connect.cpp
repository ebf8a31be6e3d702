// The connect button, the dial list request, the two combos and the profile change of MainWin.
#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/side/call_logs.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer {

using automation::Failure;
using automation::Variant;

void MainWin::btnConnect_Click() {
    if (IsLoading) {
        return;
    }
    forms::Platform& platform = GetPlatform();
    if (IsConnected) {
        try {
            app_.EventManagerObject.postEvent(event::kDisconnectRequested, Variant());
            btnConnect.SetPicture(Image5.Picture());
            app_.EngineObject->Disconnect(ConnectionHandle);
            if (!imgAuthorizingTunnel.Visible()) {
                // The tunnel never came up: no code 32 will come to end the call.
                ResetConnectionDisplay();
                logs_->CloseCallLogs();
            }
        } catch (const Failure& failure) {
            ConnectFailed(failure);
        }
        return;
    }
    if (IsConnecting) {
        const int answer =
            Box("There is a connection still in progress do you wish to terminate it?",
                forms::mb::kYesNo | forms::mb::kDefaultButton2 | forms::mb::kSetForeground,
                "Ostvarra - Disconnect");
        if (answer == forms::mb::kResultYes) {
            EnableOnReset = true;
            platform.SetCursor(forms::cursor::kDefault);
            IsConnected = true;
            IsConnecting = false;
            btnConnect_Click();
        }
        return;
    }
    if (app_.EventManagerObject.postEventVetoable(event::kConnectRequested, Variant()) == kVeto) {
        return;
    }
    btnConnect.SetPicture(Image6.Picture());
    IsConnecting = true;
    logs_->OpenLogsForCall();  // unguarded: a log that cannot be opened fails to the message loop
    try {
        platform.SetCursor(forms::cursor::kArrowHourglass);
        platform.DoEvents();
        EnableOnReset = false;
        ConnectionHandle = app_.EngineObject->Connect(cmboTo.Text(), false).ToLong();
        app_.EventManagerObject.postEvent(event::kConnectStarted, Variant());
        lblConnect.SetCaption("Disconnect");
        cmboFrom.SetEnabled(false);
    } catch (const Failure& failure) {
        ConnectFailed(failure);
    }
}

void MainWin::ConnectFailed(const Failure& failure) {
    COMErrHandler(failure);
    btnConnect.SetPicture(Image5.Picture());
    IsConnecting = false;
    IsConnected = false;
    EnableOnReset = true;
    GetPlatform().SetCursor(forms::cursor::kDefault);
    logs_->CloseCallLogs();
}

void MainWin::EnableConnections() {
    lblConnect.SetEnabled(true);
    btnConnect.SetEnabled(true);
}

void MainWin::DisableConnections() {
    lblConnect.SetEnabled(false);
    btnConnect.SetEnabled(false);
}

void MainWin::EnableFromSelection() {
    cmboFrom.SetEnabled(true);
}

void MainWin::DisableFromSelection() {
    cmboFrom.SetEnabled(false);
}

void MainWin::cmboFrom_Click() {
    app_.Form<FromPullout>().cmboLocations.SetListIndex(cmboFrom.ListIndex());
    PromptSaveDialList();
    forms::Platform& platform = GetPlatform();
    try {
        platform.SetCursor(forms::cursor::kHourglass);
        platform.DoEvents();
        app_.Form<ToPullout>().lstvDialList.ClearItems();
        GetDialList();
        platform.SetCursor(forms::cursor::kDefault);
    } catch (const Failure& failure) {
        if (failure.Number() == 1020) {
            platform.MsgBox("Error getting the dial list.", forms::mb::kOkOnly, "");
        } else {
            platform.MsgBox(failure.Description(), forms::mb::kOkOnly, "");
        }
        platform.SetCursor(forms::cursor::kDefault);
    }
}

void MainWin::cmboTo_Click() {
    app_.Form<ToPullout>().lbDestinations.SetListIndex(cmboTo.ListIndex());
}

void MainWin::PromptSaveDialList() {
    ToPullout& to = app_.Form<ToPullout>();
    if (!to.btnSaveList.Enabled()) {
        return;
    }
    const int answer = AppBox(LoadResString(ResConst::kSaveDialListQuestion),
                              forms::mb::kYesNo | forms::mb::kExclamation);
    if (answer == forms::mb::kResultYes) {
        to.btnSaveList_Click();
    } else {
        to.btnSaveList.SetEnabled(false);
    }
}

void MainWin::GetDialList() {
    IsGettingDialList = true;
    app_.EventManagerObject.postEvent(event::kGettingDialList, Variant());
    if (cmboFrom.ListCount() == 0) {
        DisableConnections();
        std::string message;
        Variant empty;
        l_DravlinkObj_GetGenericISPList(message, empty);
        return;
    }
    try {
        std::int16_t result = 0;
        for (int tries = 0; tries < 3;) {
            result = app_.EngineObject->BuildDialList(cmboFrom.Text(), cmboTo.Text()).ToInteger();
            if (result == 0) {
                return;  // the list comes with GetGenericISPList
            }
            ++tries;
            if (tries != 3) {
                GetPlatform().Sleep(400);
            }
        }
        app_.EventManagerObject.postEvent(event::kDialListDone, Variant(std::int16_t{0}));
        GetPlatform().MsgBox("Error getting dial list: " + std::to_string(result),
                             forms::mb::kOkOnly, "");
        IsGettingDialList = false;
    } catch (const Failure& failure) {
        app_.EventManagerObject.postEvent(event::kDialListDone, Variant());
        IsGettingDialList = false;
        COMErrHandler(failure);
    }
}

void MainWin::l_DravlinkObj_GetGenericISPList(std::string& message, Variant& list) {
    if (!message.empty() && !IsConnecting) {
        AppBox(message, forms::mb::kOkOnly | forms::mb::kInformation);
    }
    app_.Form<ToPullout>().UpdateDialList(list);
    DialListData = list;
    app_.EventManagerObject.postEvent(event::kDialListDone, Variant(std::int16_t{0}));
    IsGettingDialList = false;
}

void MainWin::KestrelwayEventSub(std::int32_t& eventId, Variant& data) {
    (void)data;
    if (eventId == event::kGettingDialList) {
        lblStatus.SetCaption("Getting dial list please wait..");
        DisableConnections();
        cmboFrom.SetEnabled(false);
    } else if (eventId == event::kDialListDone) {
        lblStatus.SetCaption("");
        if (cmboFrom.ListCount() > 0) {
            EnableConnections();
        }
        cmboFrom.SetEnabled(true);
    }
}

std::int32_t MainWin::KestrelwayVetoableEventFunction(std::int32_t& eventId, Variant& data) {
    (void)eventId;
    (void)data;
    return 0;
}

void MainWin::FillPhoneList(const Variant& list) {
    ToPullout& to = app_.Form<ToPullout>();
    if (to.lbDestinations.ListCount() > 0) {
        to.lbDestinations.Clear();
    }
    if (cmboTo.ListCount() > 0) {
        cmboTo.Clear();
    }
    if (!HavePhoneList) {
        return;
    }
    // A list that holds no array fails here with a type mismatch, as its bounds are read.
    const automation::SafeArray& names = list.ToArray();
    for (std::int32_t i = 0; i <= names.UBound(); ++i) {
        cmboTo.AddItem(names.Get(i).ToString());
        to.lbDestinations.AddItem(names.Get(i).ToString());
    }
}

void MainWin::FillLocationList(const Variant& list) {
    FromPullout& from = app_.Form<FromPullout>();
    if (from.cmboLocations.ListCount() > 0) {
        from.cmboLocations.Clear();
    }
    if (cmboFrom.ListCount() > 0) {
        cmboFrom.Clear();
    }
    if (HaveLocationList) {
        const automation::SafeArray& names = list.ToArray();  // no array: a type mismatch
        for (std::int32_t i = 0; i <= names.UBound(); ++i) {
            cmboFrom.AddItem(names.Get(i).ToString());
            from.cmboLocations.AddItem(names.Get(i).ToString());
        }
        if (!from.btnRemove.Enabled()) {
            from.btnRemove.SetEnabled(true);
        }
        return;
    }
    btnFromPullout_Click();
    from.btnAdd.SetCaption("Add");
    from.btnAdd_Click();
}

void MainWin::SaveLastLocation() {
    const std::int32_t index = std::max(cmboFrom.ListIndex(), 0);
    registry::HKEY key = OpenSettingsKey(GetPlatform());
    Variant current(std::int32_t{0});
    if (QueryValueEx(key, settings::kLastSelectedLocation, current) != 0) {
        SetValueEx(Variant(index), key, settings::kLastSelectedLocation);
    } else {
        const auto value = static_cast<std::uint32_t>(index);
        registry::RegSetValueExA(key, settings::kLastSelectedLocation, 0, registry::REG_DWORD,
                                 reinterpret_cast<const registry::BYTE*>(&value), 4);
    }
    registry::RegCloseKey(key);
}

void MainWin::RestoreLastLocation() {
    registry::HKEY key = OpenSettingsKey(GetPlatform());
    try {
        Variant index(std::int32_t{0});
        QueryValueEx(key, settings::kLastSelectedLocation, index);
        cmboFrom.SetListIndex(index.ToLong());
    } catch (const Failure&) {
        // An index beyond the list selects nothing.
    }
    registry::RegCloseKey(key);
}

void MainWin::ResetConnectionDisplay() {
    IsConnected = false;
    IsConnecting = false;
    GetPlatform().SetCursor(forms::cursor::kDefault);
    lblConnect.SetCaption("Connect");
    btnConnect.SetPicture(Image5.Picture());
    if (EnableOnReset) {
        EnableConnections();
    } else {
        DisableConnections();
    }
    lblStatus.SetCaption("");
    for (forms::Image* light : {&imgCreatingTunnel, &imgAuthorizingTunnel, &imgModemDetected,
                                &imgPhoneDialing, &imgConnectingISP, &imgAuthorizingISP}) {
        light->SetVisible(false);
        light->SetToolTipText("");
    }
    imgLogoOn.SetVisible(false);
    cmboFrom.SetEnabled(true);
}

void MainWin::TimerProfileChange_Timer() {
    if (IsConnected) {
        TimerProfileChange.SetInterval(2);
        return;
    }
    GetPlatform().DoEvents();
    ReloginAfterProfileChange();
    TimerProfileChange.SetTimerEnabled(false);
}

void MainWin::ReloginAfterProfileChange() {
    DisplayPullout& display = app_.Form<DisplayPullout>();
    if (!display.LoginChanged) {
        return;
    }
    Dravlink& engine = *app_.EngineObject;
    engine.Logoff();
    engine.Logon(app_.UserName, app_.Password, "");
    HavePhoneList = engine.GetPhoneList(PhoneList).ToBoolean();
    FillPhoneList(PhoneList);
    if (cmboTo.ListCount() >= 1) {
        cmboTo.SetListIndex(0);
    }
    HaveLocationList = engine.GetLocationList(LocationList).ToBoolean();
    FillLocationList(LocationList);
    if (cmboFrom.ListCount() >= 1) {
        cmboFrom.SetListIndex(0);
    }
    display.LoginChanged = false;
}

}  // namespace kw::dialer
