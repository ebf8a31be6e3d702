#include "client/ui/dialer/core/main_win.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/core/user_info.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/engine/frm_get_user_info.h"
#include "client/ui/dialer/engine/frm_get_user_input.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/faces.h"
#include "client/ui/dialer/shell/message_hook.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/shell/window_family.h"
#include "client/ui/dialer/side/call_logs.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/frm_file_xfer.h"
#include "client/ui/dialer/side/frm_splash.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer {

using automation::Failure;
using automation::SafeArray;
using automation::Variant;

namespace {

void SetTabsEnabled(MainWin& win, bool enabled) {
    for (forms::Image* tab :
         {&win.btnRxPullout, &win.btnFromPullout, &win.btnToPullout, &win.btnMorePullout}) {
        tab->SetEnabled(enabled);
    }
}

// The window's outer frame as the platform reports it; the window opens in the middle of the
// screen, a little above centre.
void PlaceOnScreen(MainWin& win, Application& app) {
    forms::Platform& platform = app.Platform();
    app.frameWidth = platform.SystemMetric(forms::metric::kCxDlgFrame);
    app.frameHeight = platform.SystemMetric(forms::metric::kCyCaption) + app.frameWidth;
    win.SetFrameInset(app.frameWidth, app.frameHeight);
    // The outer size is part of the design; the window is centred by the size it has once
    // ScaleForm has brought it back to the artwork's pixels.
    const int width = layout::mainwin::kWidth + 2 * app.frameWidth;
    const int height = layout::mainwin::kHeight + app.frameHeight + app.frameWidth;
    win.Move((platform.SystemMetric(forms::metric::kCxScreen) - width) / 2,
             (platform.SystemMetric(forms::metric::kCyScreen) - height) / 3,
             face::AtDensity(platform, width), face::AtDensity(platform, height));
    ScaleForm(win, platform);
}

// Logs on until the engine accepts; a user who cancels the login ends the process.
void RunLogonLoop(Application& app) {
    forms::Platform& platform = app.Platform();
    bool loggedOn = false;
    while (!loggedOn) {
        if (!app.UserName.empty()) {
            platform.SetCursor(forms::cursor::kHourglass);
            platform.DoEvents();
            loggedOn = app.EngineObject->Logon(app.UserName, app.Password, "").ToBoolean();
            if (!loggedOn) {
                // However the dialog ends, the loop asks again until the engine accepts.
                app.Form<frmLogin>().Show(forms::kModal);
            }
            platform.SetCursor(forms::cursor::kDefault);
            continue;
        }
        platform.SetCursor(forms::cursor::kDefault);
        frmLogin& login = app.Form<frmLogin>();
        login.txtUserName.SetText(platform.LoggedOnUserName().value_or(""));
        login.txtPassword.SetText(app.Password);
        login.Show(forms::kModal);
        if (!app.Form<frmLogin>().LoginAccepted) {
            platform.EndProcess(0);
        }
        platform.SetCursor(forms::cursor::kHourglass);
        platform.DoEvents();
        SaveUserInfo(app);
        LoadUserInfo(app);
        loggedOn = app.EngineObject->Logon(app.UserName, app.Password, "").ToBoolean();
        platform.SetCursor(forms::cursor::kDefault);
    }
}

// The calling cards into the preferences, or the card controls off when the user has none.
void ReadCallingCards(Application& app) {
    Variant list;
    PrefPullout& pref = app.Form<PrefPullout>();
    if (!app.EngineObject->GetCallingCardList(list).ToBoolean()) {
        pref.cmboCallingCards.SetEnabled(false);
        pref.txtCardNumber.SetEnabled(false);
        pref.btnSave.SetEnabled(false);
        FromPullout& from = app.Form<FromPullout>();
        from.chkCallingCard.SetVisible(false);
        from.lblCallingCard.SetVisible(false);
        return;
    }
    app.CallingCards = std::make_shared<CallingCardList>();
    if (!list.IsArray()) {
        return;
    }
    const SafeArray& rows = list.ToArray();
    // Counted in 64 bits, so that an upper bound at the 32-bit limit ends the walk.
    for (std::int64_t at = rows.LBound(1); at <= rows.UBound(1); ++at) {
        const auto row = static_cast<std::int32_t>(at);
        pref.cmboCallingCards.AddItem(rows.Get(row, 3).ToString());
        app.CurrentCallingCard = app.CallingCards->Add(
            rows.Get(row, 3).ToString(), rows.Get(row, 2).ToString(), rows.Get(row, 4).ToString(),
            rows.Get(row, 5).ToString(), rows.Get(row, 1).ToInteger(), rows.Get(row, 0).ToInteger(),
            rows.Get(row, 1).ToString());
    }
}

}  // namespace

MainWin::MainWin(Application& app)
    : Form(app.Platform(), "MainWin"),
      app_(app),
      family_(std::make_unique<WindowFamily>(app, *this)),
      logs_(std::make_unique<CallLogs>(app, ConnectHistoryFile, PrescriberLogFile)) {
    SetCaption(app.Title);
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    lblConnect.SetCaption("Connect");
    lblFrom.SetCaption("From");
    lblTo.SetCaption("To");
    Label4.SetCaption("More ");
    btnCloseWin.SetToolTipText("Close the window");
    lblCloseButton.SetToolTipText("Close the window");
    btnMinimize.SetToolTipText("Minimize the window");
    lblMinButton.SetToolTipText("Minimize the window");
    btnHelp.SetToolTipText("Press for help");
    lblHelpButton.SetToolTipText("Press for help");
    cmboFrom.SetStyle(forms::combo::kDropdownCombo);
    // Sorted as the location pullout's list is, so that one index names the same location in both
    // whatever order the engine lists them in and wherever a new name falls.
    cmboFrom.SetSorted(true);
    cmboTo.SetStyle(forms::combo::kDropdownCombo);
    for (forms::Image* light :
         {&imgModemDetected, &imgPhoneDialing, &imgConnectingISP, &imgAuthorizingISP,
          &imgCreatingTunnel, &imgAuthorizingTunnel, &imgLogoOn}) {
        light->SetVisible(false);
    }
    // Pictures held only to be copied onto other images are never seen themselves.
    for (forms::Image* spare :
         {&imgConnectLightOn, &imgConnectLightOff, &imgYellowLightOn, &imgYellowLightOff, &btnLeft,
          &btnRight, &btnReg, &imgMoreBtnPressed, &Image5, &Image6, &imgPushedButton}) {
        spare->SetVisible(false);
    }
    // No key preview: the form's own key press runs only when the form itself has the keys, so
    // Enter in a combo runs Connect once, from the combo's handler.
    PlaceControls();
}

MainWin::~MainWin() = default;

// ---- load, close, unload ------------------------------------------------------------------

void MainWin::Form_Load() {
    if (IsLoading || app_.StartedOnce) {
        return;
    }
    app_.StartedOnce = true;
    // The minimise box of the window style is the platform's own here: nothing to add.
    app_.EventManagerObject.registerForEvent(event::kGettingDialList, this);
    app_.EventManagerObject.registerForEvent(event::kDialListDone, this);
    IsGettingDialList = false;
    EnableOnReset = true;
    SetTabsEnabled(*this, false);
    app_.HelpFile = "Kestrelway.hlp";
    GetPlatform().SetHelpFile(app_.HelpFile);
    PlaceOnScreen(*this, app_);
    forms::Platform& platform = GetPlatform();
    IsLoading = true;
    cmboFrom.SetText("<Loading...>");
    cmboTo.SetText("<Loading...>");
    WireEvents();
    app_.Shape(*this, true);

    PerfPulldown& perf = app_.Form<PerfPulldown>();
    perf.Move(Left() + app_.frameWidth, Top() + PerfPulldown::kRetracted);
    perf.ZOrder(1);
    perf.Show();
    perfShown = true;

    DisableConnections();
    Show();
    platform.SetCursor(forms::cursor::kHourglass);
    platform.DoEvents();
    ReportUnusableSettings(app_);
    LoadUserInfo(app_);
    try {
        app_.EngineObject = CreateEngine(EngineContext{platform});
        app_.EngineObject->Advise(&l_DravlinkObj);
        RunLogonLoop(app_);
        ReadCallingCards(app_);
        HavePhoneList = app_.EngineObject->GetPhoneList(PhoneList).ToBoolean();
        HaveLocationList = app_.EngineObject->GetLocationList(LocationList).ToBoolean();
        app_.CountryListObject = std::make_shared<CountryList>(*app_.EngineObject);
        app_.CountryListObject->SetupCountries();
        // Without calling cards the location pullout was loaded before the table existed.
        if (app_.Forms().IsLoaded<FromPullout>()) {
            app_.Form<FromPullout>().FillCountries();
        }
        IsConnecting = false;
        IsConnected = false;
        fromShown = toShown = rxShown = moreShown = false;
        displayShown = logShown = prefShown = false;
        app_.Form<RxPullout>().txtStatus.SetText("");
        Image5.SetPicture(btnHelp.Picture());
        Image6.SetPicture(imgPushedButton.Picture());
        FillCombosAfterLogon();
        platform.SetCursor(forms::cursor::kDefault);
        SetTabsEnabled(*this, true);
        RestoreLastLocation();
        TimerProfileChange.SetTimerEnabled(false);
        TimerProfileChange.SetInterval(2);
        tmrRxNowNever.SetTimerEnabled(false);
        tmrRxNowNever.SetInterval(10);
        InstallMessageHook(app_, *this);
        IsLoading = false;
    } catch (const Failure& failure) {
        // IsLoading stays true on purpose: the close paths then say the program is still loading.
        COMErrHandler(failure);
        platform.SetCursor(forms::cursor::kDefault);
        SetTabsEnabled(*this, true);
    }
}

void MainWin::WireEvents() {
    btnConnect.Click = [this] { btnConnect_Click(); };
    btnConnect.DblClick = [this] { btnConnect_Click(); };
    lblConnect.Click = [this] { btnConnect_Click(); };
    btnCloseWin.Click = [this] { btnCloseWin_Click(); };
    btnCloseWin.DblClick = [this] { btnCloseWin_Click(); };
    lblCloseButton.Click = [this] { btnCloseWin_Click(); };
    family_->Wire();
    cmboFrom.Click = [this] { cmboFrom_Click(); };
    cmboTo.Click = [this] { cmboTo_Click(); };
    // The combos cannot be typed in; Enter connects from them as from the window.
    auto swallow = [this](int& key) {
        if (key == forms::key::kReturn && !IsConnecting && !IsConnected) {
            btnConnect_Click();
        }
        key = 0;
    };
    cmboFrom.KeyPress = swallow;
    cmboTo.KeyPress = swallow;
    TimerProfileChange.Tick = [this] { TimerProfileChange_Timer(); };
    tmrRxNowNever.Tick = [this] { tmrRxNowNever_Timer(); };
}

void MainWin::Form_KeyPress(int& keyAscii) {
    if (keyAscii == forms::key::kReturn && !IsConnecting && !IsConnected) {
        btnConnect_Click();
    }
}

void MainWin::FillCombosAfterLogon() {
    cmboTo.SetText("");
    if (HavePhoneList) {
        FillPhoneList(PhoneList);
        cmboTo.SetListIndex(0);
    } else {
        Box("ERROR: Kestrelway was unable to get the phone list from Dravlink", forms::mb::kOkOnly,
            "");
    }
    cmboFrom.SetText("");
    if (HaveLocationList) {
        FillLocationList(LocationList);
        if (cmboFrom.Enabled()) {
            cmboFrom.SetFocus();
        }
    } else {
        GetPlatform().SetCursor(forms::cursor::kDefault);
        AppBox("Please enter information about the location from which you are calling.",
               forms::mb::kOkOnly | forms::mb::kSetForeground);
        FromPullout& from = app_.Form<FromPullout>();
        from.cmboLocations.Clear();
        from.cmboLocations.SetText("");
        btnFromPullout_Click();
    }
}

void MainWin::Form_QueryUnload(int& cancel, int reason) {
    if (IsGettingDialList) {
        cancel = 1;
        return;
    }
    if (IsLoading) {
        cancel = 1;
        AppBox(
            "The Kestrelway is still in the process of loading. Please wait a few moments and "
            "try to exit again",
            forms::mb::kOkOnly | forms::mb::kSetForeground);
        return;
    }
    if (reason != forms::unload::kFormControlMenu) {
        return;
    }
    if (IsConnected) {
        const int answer = AppBox("There is an open connection, do you wish to terminate it?",
                                  forms::mb::kYesNo | forms::mb::kSetForeground);
        if (answer == forms::mb::kResultYes) {
            btnConnect_Click();
            cancel = 0;
        } else {
            cancel = 1;
        }
    } else if (IsConnecting) {
        btnConnect_Click();
        cancel = (!IsConnecting && !IsConnected) ? 0 : 1;
    }
}

void MainWin::btnCloseWin_Click() {
    if (IsLoading) {
        AppBox(
            "The Kestrelway is still in the process of loading. Please wait a few moments and "
            "try to exit again",
            forms::mb::kOkOnly | forms::mb::kSetForeground);
        return;
    }
    if (IsConnecting) {
        btnConnect_Click();
        if (IsConnecting || IsConnected) {
            return;
        }
    }
    if (IsConnected) {
        if (AppBox("There is an open connection, do you wish to terminate it?",
                   forms::mb::kYesNo | forms::mb::kSetForeground) != forms::mb::kResultYes) {
            return;
        }
        btnConnect_Click();
    }
    btnCloseWin.SetPicture(Image6.Picture());
    btnCloseWin.SetPicture(Image5.Picture());
    forms::Platform& platform = GetPlatform();
    try {
        if (app_.EngineObject) {
            // A Logoff that keeps failing delays the close by ten seconds at most.
            for (int attempts = 0; attempts < 10; ++attempts) {
                if (app_.EngineObject->Logoff().ToBoolean()) {
                    break;
                }
                platform.Sleep(1000);
            }
        }
        SaveLastLocation();
        Unload();
    } catch (const Failure& failure) {
        if (failure.Number() != 365 && failure.Number() != 1010) {
            COMErrHandler(failure);
        }
    }
    platform.EndProcess(0);
}

void MainWin::Form_Unload(int& cancel) {
    (void)cancel;
    app_.EventManagerObject.deregisterForEvent(event::kGettingDialList, this);
    app_.EventManagerObject.deregisterForEvent(event::kDialListDone, this);
    RemoveMessageHook(app_);
    app_.CountryListObject.reset();
    if (app_.EngineObject) {
        app_.EngineObject->Unadvise();
    }
    app_.EngineObject.reset();
    forms::FormSet& set = app_.Forms();
    auto unloadIfLoaded = [](forms::Form* form) {
        if (form != nullptr && form->IsLoaded()) {
            form->Unload();
        }
    };
    unloadIfLoaded(set.Peek<PerfPulldown>());
    unloadIfLoaded(set.Peek<FromPullout>());
    unloadIfLoaded(set.Peek<ToPullout>());
    unloadIfLoaded(set.Peek<RxPullout>());
    unloadIfLoaded(set.Peek<MorePullout>());
    unloadIfLoaded(set.Peek<PrefPullout>());
    unloadIfLoaded(set.Peek<LogPullout>());
    unloadIfLoaded(set.Peek<DisplayPullout>());
    unloadIfLoaded(set.Peek<frmISPLogin>());
    unloadIfLoaded(set.Peek<frmLogin>());
    unloadIfLoaded(set.Peek<frmGetUserInfo>());
    unloadIfLoaded(set.Peek<frmSplash>());
}

// ---- help ---------------------------------------------------------------------------------

void MainWin::btnHelp_Click() {
    btnHelp.SetPicture(Image6.Picture());
    btnHelp.SetPicture(Image5.Picture());
    GetPlatform().ShowHelp(app_.HelpFile, 0);
}

// ---- helpers ------------------------------------------------------------------------------

int MainWin::Box(const std::string& text, int flags, const std::string& caption) {
    return GetPlatform().MsgBox(text, flags, caption);
}

int MainWin::AppBox(const std::string& text, int flags) {
    return Box(text, flags, LoadResString(ResConst::kAppName));
}

}  // namespace kw::dialer
