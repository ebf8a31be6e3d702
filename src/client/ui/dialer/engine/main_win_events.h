#pragma once

#include <cstdint>
#include <string>

#include "client/ui/dialer/engine/dravlink.h"

namespace kw::dialer {

class MainWin;

// The member of MainWin that receives the engine's events and hands each to its routine,
// l_DravlinkObj_<event>.
class MainWinEvents : public DravlinkEvents {
  public:
    explicit MainWinEvents(MainWin& win) : win_(win) {}
    void CHXferUpdate(automation::Variant& first, automation::Variant& transfer) override;
    void ErrorEvent(std::string& message) override;
    void GetConnectionStatistics(automation::Variant& ispStats,
                                 automation::Variant& vpnStats) override;
    void GetGenericISPList(std::string& message, automation::Variant& list) override;
    void GetUserInfo(std::string& prompt, automation::Variant& choices,
                     std::string& answer) override;
    void GetUserInput(std::string& prompt, std::string& defaultText, std::string& answer) override;
    void GetUsernamePassword(std::string& prompt, std::string& user) override;
    void GetUserOk(std::string& message) override;
    void GetUserYesNo(std::string& question, bool& answer) override;
    void GetUserNowLaterNever(std::string& question, std::string& answer) override;
    void DravDebug(std::string& text) override;
    void ProgressUpdate(std::int16_t code, std::string& text) override;
    void StatusUpdate(std::string& text) override;

  private:
    MainWin& win_;
};

}  // namespace kw::dialer
