#pragma once

// MainWin, section by section:
//   start-up, close, unload, help     core/main_win.cpp
//   controls on the artwork           core/main_win_layout.cpp
//   connect, dial list, combos        engine/main_win_connect.cpp
//   progress lights, status line      engine/main_win_progress.cpp
//   engine prompts, notes, debug      engine/main_win_prompts.cpp
//   error reporting                   engine/main_win_errors.cpp
//   engine events to routines         engine/main_win_events.{h,cpp}
//   statistics                        performance/main_win_statistics.cpp
//   call-home transfer                side/main_win_transfer.cpp
//   call logs                         side/call_logs.{h,cpp}
//   tabs, drag, minimise, messages    shell/main_win_window.cpp, carried out by
//                                     shell/window_family.{h,cpp} on shell/pullout_table.{h,cpp}

#include <cstdint>
#include <memory>
#include <string>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/engine/main_win_events.h"
#include "platform/automation/failure.h"
#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;
class CallLogs;
class WindowFamily;

// The main window: the two combos, the connect button, the six lights and the status line. It owns
// the engine's events and keeps the connection state.
class MainWin : public forms::Form, public EventSubscriber {
  public:
    explicit MainWin(Application& app);
    ~MainWin() override;

    // ---- controls ----
    forms::Timer tmrRxNowNever{*this, "tmrRxNowNever"};
    forms::Timer TimerProfileChange{*this, "TimerProfileChange"};
    forms::ComboBox cmboFrom{*this, "cmboFrom"};
    forms::ComboBox cmboTo{*this, "cmboTo"};
    forms::Image imgModemDetected{*this, "imgModemDetected"};
    forms::Image imgPhoneDialing{*this, "imgPhoneDialing"};
    forms::Image imgConnectingISP{*this, "imgConnectingISP"};
    forms::Image imgAuthorizingISP{*this, "imgAuthorizingISP"};
    forms::Image imgCreatingTunnel{*this, "imgCreatingTunnel"};
    forms::Image imgAuthorizingTunnel{*this, "imgAuthorizingTunnel"};
    forms::Image imgLogoOn{*this, "imgLogoOn"};
    forms::Image imgConnectLight{*this, "imgConnectLight"};
    forms::Image imgConnectLightOn{*this, "imgConnectLightOn"};
    forms::Image imgConnectLightOff{*this, "imgConnectLightOff"};
    forms::Image imgYellowLightOn{*this, "imgYellowLightOn"};
    forms::Image imgYellowLightOff{*this, "imgYellowLightOff"};
    forms::Image btnConnect{*this, "btnConnect"};
    forms::Label lblConnect{*this, "lblConnect"};
    forms::Label lblStatus{*this, "lblStatus"};
    forms::Image btnFromPullout{*this, "btnFromPullout"};
    forms::Image btnToPullout{*this, "btnToPullout"};
    forms::Image btnMorePullout{*this, "btnMorePullout"};
    forms::Image btnRxPullout{*this, "btnRxPullout"};
    forms::Image btnLeft{*this, "btnLeft"};
    forms::Image btnRight{*this, "btnRight"};
    forms::Image btnReg{*this, "btnReg"};
    forms::Image imgMoreBtnPressed{*this, "imgMoreBtnPressed"};
    forms::Image imgMoreLabels{*this, "imgMoreLabels"};
    forms::Image Image3{*this, "Image3"};
    forms::Label lblFrom{*this, "lblFrom"};
    forms::Label lblTo{*this, "lblTo"};
    forms::Label Label4{*this, "Label4"};
    forms::Image btnCloseWin{*this, "btnCloseWin"};
    forms::Label lblCloseButton{*this, "lblCloseButton"};
    forms::Image btnMinimize{*this, "btnMinimize"};
    forms::Label lblMinButton{*this, "lblMinButton"};
    forms::Image btnHelp{*this, "btnHelp"};
    forms::Label lblHelpButton{*this, "lblHelpButton"};
    forms::Image Image5{*this, "Image5"};
    forms::Image Image6{*this, "Image6"};
    forms::Image imgPushedButton{*this, "imgPushedButton"};

    // ---- fields ----
    bool IsConnecting = false;
    bool IsConnected = false;
    bool IsLoading = false;
    bool IsGettingDialList = false;
    bool EnableOnReset = true;
    bool HavePhoneList = false;
    bool HaveLocationList = false;
    automation::Variant PhoneList;
    automation::Variant LocationList;
    automation::Variant DialListData;
    std::int32_t ConnectionHandle = 0;
    std::int16_t ConnectHistoryFile = 0;
    std::int16_t PrescriberLogFile = 0;
    // The window flags of the pullout family: what is open, and what minimise and restore
    // bring back.
    bool fromShown = false;
    bool toShown = false;
    bool rxShown = false;
    bool moreShown = false;
    bool displayShown = false;
    bool logShown = false;
    bool prefShown = false;
    bool perfDown = false;
    bool perfShown = false;

    // ---- start-up and shut-down ----
    void btnCloseWin_Click();

    // ---- connect and disconnect ----
    void btnConnect_Click();
    void GetDialList();
    void FillPhoneList(const automation::Variant& list);
    void FillLocationList(const automation::Variant& list);
    void EnableConnections();
    void DisableConnections();
    void EnableFromSelection();
    void DisableFromSelection();
    void ResetConnectionDisplay();
    void SaveLastLocation();
    void RestoreLastLocation();
    void PromptSaveDialList();
    void ReloginAfterProfileChange();
    void cmboFrom_Click();
    void cmboTo_Click();

    // ---- help ----
    void btnHelp_Click();

    // ---- error reporting: the failure being handled ----
    void COMErrHandler(const automation::Failure& failure);

    // ---- bus ----
    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

    // ---- engine events ----
    void l_DravlinkObj_ProgressUpdate(std::int16_t code, std::string& text);
    void l_DravlinkObj_StatusUpdate(std::string& text);
    void l_DravlinkObj_ErrorEvent(std::string& message);
    void l_DravlinkObj_GetGenericISPList(std::string& message, automation::Variant& list);
    void l_DravlinkObj_GetConnectionStatistics(automation::Variant& ispStats,
                                               automation::Variant& vpnStats);
    void l_DravlinkObj_GetUserInfo(std::string& prompt, automation::Variant& choices,
                                   std::string& answer);
    void l_DravlinkObj_GetUserInput(std::string& prompt, std::string& defaultText,
                                    std::string& answer);
    void l_DravlinkObj_GetUsernamePassword(std::string& prompt, std::string& user);
    void l_DravlinkObj_GetUserOk(std::string& message);
    void l_DravlinkObj_GetUserYesNo(std::string& question, bool& answer);
    void l_DravlinkObj_GetUserNowLaterNever(std::string& question, std::string& answer);
    void l_DravlinkObj_DravDebug(std::string& text);
    void l_DravlinkObj_CHXferUpdate(automation::Variant& first, automation::Variant& transfer);

    MainWinEvents l_DravlinkObj{*this};

  protected:
    void Form_Load() override;
    void Form_QueryUnload(int& cancel, int reason) override;
    void Form_Unload(int& cancel) override;
    void Form_KeyPress(int& keyAscii) override;

  private:
    void PlaceControls();
    void WireEvents();
    void FillCombosAfterLogon();
    void ConnectFailed(const automation::Failure& failure);
    void TimerProfileChange_Timer();
    void tmrRxNowNever_Timer();
    int TimedMessageBox(const std::string& text, const std::string& caption, int flags,
                        int timeoutMs);
    void CloseTimedMessageBox();
    int Box(const std::string& text, int flags, const std::string& caption);

  public:
    // A box under the program's title; the pullouts speak through it too.
    int AppBox(const std::string& text, int flags);

    // ---- the window family: pullouts, drag, minimise, message hook (shell/) ----
  public:
    void btnFromPullout_Click();
    void btnToPullout_Click();
    void btnRxPullout_Click();
    void btnMorePullout_Click();
    void btnMinimize_Click();
    // Sees each message of the window while the message hook stands.
    void ProcMsg(forms::WindowHandle window, int message, std::intptr_t wParam,
                 std::intptr_t lParam, std::intptr_t& result);
    void Form_Resize() override;
    // The windows that go with this one; MorePullout opens and closes its panels through it.
    WindowFamily& Family() { return *family_; }

  protected:
    void Form_MouseDown(int button, int shift, float x, float y) override;
    void Form_MouseMove(int button, int shift, float x, float y) override;
    void Form_MouseUp(int button, int shift, float x, float y) override;

  private:
    Application& app_;
    std::unique_ptr<WindowFamily> family_;
    std::unique_ptr<CallLogs> logs_;
};

}  // namespace kw::dialer
