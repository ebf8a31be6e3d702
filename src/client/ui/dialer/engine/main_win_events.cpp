#include "client/ui/dialer/engine/main_win_events.h"

#include "client/ui/dialer/core/main_win.h"

namespace kw::dialer {

using automation::Variant;

void MainWinEvents::CHXferUpdate(Variant& first, Variant& transfer) {
    win_.l_DravlinkObj_CHXferUpdate(first, transfer);
}
void MainWinEvents::ErrorEvent(std::string& message) {
    win_.l_DravlinkObj_ErrorEvent(message);
}
void MainWinEvents::GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) {
    win_.l_DravlinkObj_GetConnectionStatistics(ispStats, vpnStats);
}
void MainWinEvents::GetGenericISPList(std::string& message, Variant& list) {
    win_.l_DravlinkObj_GetGenericISPList(message, list);
}
void MainWinEvents::GetUserInfo(std::string& prompt, Variant& choices, std::string& answer) {
    win_.l_DravlinkObj_GetUserInfo(prompt, choices, answer);
}
void MainWinEvents::GetUserInput(std::string& prompt, std::string& defaultText,
                                 std::string& answer) {
    win_.l_DravlinkObj_GetUserInput(prompt, defaultText, answer);
}
void MainWinEvents::GetUsernamePassword(std::string& prompt, std::string& user) {
    win_.l_DravlinkObj_GetUsernamePassword(prompt, user);
}
void MainWinEvents::GetUserOk(std::string& message) {
    win_.l_DravlinkObj_GetUserOk(message);
}
void MainWinEvents::GetUserYesNo(std::string& question, bool& answer) {
    win_.l_DravlinkObj_GetUserYesNo(question, answer);
}
void MainWinEvents::GetUserNowLaterNever(std::string& question, std::string& answer) {
    win_.l_DravlinkObj_GetUserNowLaterNever(question, answer);
}
void MainWinEvents::DravDebug(std::string& text) {
    win_.l_DravlinkObj_DravDebug(text);
}
void MainWinEvents::ProgressUpdate(std::int16_t code, std::string& text) {
    win_.l_DravlinkObj_ProgressUpdate(code, text);
}
void MainWinEvents::StatusUpdate(std::string& text) {
    win_.l_DravlinkObj_StatusUpdate(text);
}

}  // namespace kw::dialer
