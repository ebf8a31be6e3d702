#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/call_home.h"
#include "dravlink/dial_list.h"
#include "dravlink/link_statistics.h"
#include "dravlink/scenario.h"
#include "dravlink/store.h"
#include "platform/forms/platform.h"

namespace dravlink {

inline constexpr int kModemBps = 28800;
inline constexpr int kLanBps = 10000000;
inline constexpr int kFastLineBps = 4000000;

// What a call uses of the engine that runs it. The engine outlives each of its calls.
class CallHost {
  public:
    virtual kw::forms::Platform& Timers() = 0;
    virtual kw::dialer::DravlinkEvents* Sink() = 0;
    virtual Store& Records() = 0;
    virtual std::string User() const = 0;
    virtual std::mt19937& Random() = 0;
    // After Never, the files at home are not offered again for as long as the engine runs.
    virtual bool CallHomeRefused() const = 0;
    virtual void RefuseCallHome() = 0;
    // The line is down: the host drops the call, which ends the run.
    virtual void CallEnded() = 0;

  protected:
    ~CallHost() = default;
};

// Where a call goes, fixed when it is placed.
struct CallPlan {
    std::int32_t handle = 0;
    std::string destination;
    std::string type;  // ISP, VPN or Both
    std::string scenario;
    std::string tunnelServer;
    std::string device;
    bool overLan = false;
    std::vector<PopRow> numbers;  // enabled rows of the dial list, in dialling order
};

// The plan of a call to d from a location; the caller gives it its handle and scenario.
CallPlan PlanCall(const Store& store, const std::string& user, const Destination& d,
                  const Location& from);

// One call, from Connect until the line is down: its steps, timers, statistics and transfers.
// Every event handler may call back into the engine, end this call, start another or release the
// engine; so each event is raised through Raise, which says whether the call is still going
// up, and the run is never touched again once it says no.
class CallRun {
  public:
    CallRun(CallHost& host, CallPlan plan);
    ~CallRun();
    CallRun(const CallRun&) = delete;
    CallRun& operator=(const CallRun&) = delete;

    void Start();
    // Brings the line down unless it is going down already.
    void HangUp();
    bool CancelTransfer();

    std::int32_t Handle() const { return plan_.handle; }
    bool GoingDown() const { return goingDown_; }
    bool LinkUp() const { return ispUp_ || tunnelUp_ || plan_.overLan; }
    const std::string& DestinationName() const { return plan_.destination; }
    const std::string& Device() const { return plan_.device; }
    int LinkBps() const { return linkBps_; }

  private:
    struct Step {
        int delayMs;
        std::function<void()> run;
    };

    template <typename Event>
    bool Raise(Event event) {
        const std::weak_ptr<const bool> alive = alive_;
        if (auto* sink = host_.Sink()) {
            event(*sink);
        }
        return !alive.expired() && !goingDown_;
    }
    bool Progress(std::int16_t code, std::string text);
    bool Status(std::string text);
    bool Error(std::string code);
    bool Stored(const std::function<void()>& write);
    void Fail(std::string why, std::string code);

    void Enqueue(int delayMs, std::function<void()> run);
    void ScheduleNextStep();
    void OnStepTimer();
    const Pop& Dialled() const { return *plan_.numbers[current_].pop; }

    void StepModem();
    void StepDial();
    void StepBusy();
    void StepConnectIsp();
    void StepAuthenticateIsp();
    bool AskIspLogin(const std::string& isp);
    void StepIspUp();
    void StepChooseServer();
    bool AskServer();
    void StepCreateTunnel();
    bool AskCompression();
    void StepAuthenticateTunnel();
    bool AskPasscode();
    bool IssueNewPassword();
    void StepConnected();
    void OfferCallHome();

    void BeginTeardown(int delayMs);
    std::vector<std::pair<std::int16_t, std::string>> TeardownCodes() const;
    void LineDown();
    void StartStatistics();
    void OnStatisticsTimer();
    void StartTransfer();
    void OnTransferTimer();
    void KillTimer(kw::forms::TimerId& id);

    CallHost& host_;
    CallPlan plan_;
    // Expires with the run: what Raise checks after the handler returns.
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    std::size_t current_ = 0;  // the number being dialled
    bool modemUp_ = false;
    bool ispUp_ = false;
    bool tunnelStarted_ = false;
    bool tunnelUp_ = false;
    bool goingDown_ = false;
    int linkBps_ = 0;
    std::deque<Step> steps_;
    kw::forms::TimerId stepTimer_ = 0;
    kw::forms::TimerId statsTimer_ = 0;
    kw::forms::TimerId transferTimer_ = 0;
    LinkStatistics statistics_;
    CallHomeTransfer transfer_;
};

}  // namespace dravlink
