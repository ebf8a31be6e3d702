#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/dial_list.h"
#include "dravlink/store.h"
#include "platform/forms/platform.h"

namespace dravlink {

using kw::automation::Variant;

inline constexpr const char* kSimulatorName = "dravlink.sim";

struct Options {
    std::filesystem::path dataDir;    // empty: $XDG_DATA_HOME/Ostvarra/Dravlink
    std::filesystem::path sampleDir;  // empty: the sample data installed with the program
    std::string scenario;             // when set, every call goes this way
};

std::filesystem::path DefaultDataDir();
std::filesystem::path DefaultSampleDir();

// Scenario names, as engine.ini and the phone book spell them.
namespace scenario {
inline constexpr const char* kNormal = "normal";
inline constexpr const char* kBusy = "busy";
inline constexpr const char* kIspPassword = "isp-password";
inline constexpr const char* kTunnelUnreachable = "tunnel-unreachable";
inline constexpr const char* kNoNumbers = "no-numbers";
inline constexpr const char* kInvalidNumber = "invalid-number";
inline constexpr const char* kMotd = "motd";
inline constexpr const char* kQuestion = "question";
inline constexpr const char* kChoice = "choice";
inline constexpr const char* kInput = "input";
inline constexpr const char* kNewCredentials = "new-credentials";
inline constexpr const char* kCallHome = "call-home";
}  // namespace scenario
bool IsScenario(const std::string& name);

// The connection engine simulator. Its data lives in files of its own; a call runs on the
// platform's timers, and every event reaches the sink from a timer tick on the user interface's
// thread. Handlers may call back into the engine, or answer a prompt from inside a modal loop
// while the other timers go on: each step of a call checks, after every event it raises, that
// the call it belongs to is still the current one.
class Simulator : public kw::dialer::Dravlink {
  public:
    static constexpr std::int32_t kGetCountryListId = 60;

    // Seeds the data directory from the sample on first start and reads it; a malformed file
    // fails with a Failure naming the file and the line, and no engine is made.
    Simulator(kw::forms::Platform& platform, Options options = {});
    ~Simulator() override;
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    Variant GetPhoneList(Variant& list) override;
    Variant GetEntryList(Variant& list) override;
    Variant GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override;
    Variant GetLocationList(Variant& list) override;
    Variant GetLocationProperty(const std::string& location, const std::string& key,
                                std::string& value) override;
    Variant SetLocationProperty(const std::string& location, const std::string& key,
                                const std::string& value) override;
    Variant SavePOPList(const std::string& location, const std::string& destination,
                        Variant& list) override;
    Variant RefreshPOPList(const std::string& destination, const std::string& location) override;
    Variant BuildDialList(const std::string& location, const std::string& destination) override;
    Variant Disconnect(std::int32_t& handle) override;
    Variant Connect(const std::string& destination, bool option) override;
    Variant Logon(std::string& user, std::string& password, const std::string& third) override;
    Variant GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override;
    Variant GetEntryType(const std::string& entryName, std::string& entryType) override;
    Variant Logoff() override;
    Variant GetLinkSpeed(const std::string& deviceName) override;
    Variant LocationExists(const std::string& location) override;
    Variant CreateLocation(const std::string& location) override;
    Variant SaveLocation(const std::string& location) override;
    Variant GetConnectionNames(std::string& destination, std::string& deviceName) override;
    Variant DeleteLocation(const std::string& location) override;
    Variant SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                        const std::string& ispPassword) override;
    Variant GetISPLogin(std::string& user, std::string& ispName, Variant& login) override;
    Variant SaveUser(std::string& user, std::string& password, const std::string& third) override;
    Variant GetUser(std::string& user, std::string& password, std::string& third) override;
    Variant GetCallingCardList(Variant& list) override;
    Variant SetCallingCardNumber(std::string& cardId, const std::string& number) override;
    Variant GetISPList(const std::string& destination, Variant& list) override;
    Variant SaveISPList(const std::string& destination, Variant& list) override;
    Variant RefreshISPList(const std::string& destination) override;
    Variant GetPolicySetting(std::string& user, const std::string& key,
                             std::string& value) override;
    Variant CancelFileTransfer() override;
    Variant GetCountryList(Variant& list);

    std::int32_t GetIDsOfNames(const std::string& name) override;
    Variant Invoke(std::int32_t id, std::span<Variant> args) override;

    const Store& Data() const { return store_; }
    // How a call to this destination goes.
    std::string ScenarioFor(const std::string& destination);
    bool InCall() const { return call_ != nullptr; }

  private:
    // What outlives a step: a step's code checks it after each event it raises.
    struct Life {
        int serial = 0;
    };
    struct Call {
        std::int32_t handle = 0;
        std::string destination;
        std::string type;  // ISP, VPN or Both
        std::string scenario;
        std::string tunnelServer;
        std::string device;
        bool overLan = false;
        std::vector<PopRow> numbers;  // enabled rows of the dial list, in dialling order
        std::size_t current = 0;
        bool modemUp = false;
        bool ispUp = false;
        bool tunnelStarted = false;
        bool tunnelUp = false;
        bool goingDown = false;
        int linkBps = 0;
        // Cumulative counters of the statistics.
        double ispRx = 0, ispTx = 0, vpnRx = 0, vpnTx = 0;
        std::int32_t crc = 0, framing = 0, hwOverrun = 0, bufOverrun = 0, alignment = 0,
                     timeouts = 0;
        std::int32_t ispFramesIn = 0, ispFramesOut = 0, vpnFramesIn = 0, vpnFramesOut = 0;
    };
    struct Step {
        int delayMs;
        std::function<void()> run;
    };
    struct Transfer {
        std::string path;
        std::int32_t size;
        std::int32_t copied = 0;
    };

    void RequireLogon() const;
    std::string User() const { return loggedOnUser_.value_or(""); }
    Location* AnyLocation(const std::string& name);
    const Destination* DestinationOrFail(const std::string& name);

    // Events, each a no-op without a sink.
    void Progress(std::int16_t code, std::string text);
    void Status(std::string text);
    void Error(std::string code);

    // The call.
    static bool Current(const std::weak_ptr<Life>& life, int serial);
    void Enqueue(int delayMs, std::function<void()> run);
    void EnqueueFront(int delayMs, std::function<void()> run);
    void ScheduleNextStep();
    void OnStepTimer();
    void PlanCall();
    void StepModem(int serial);
    void StepDial(int serial);
    void StepConnectIsp(int serial);
    void StepAuthenticateIsp(int serial);
    void StepIspUp(int serial);
    void StepChooseServer(int serial);
    void StepCreateTunnel(int serial);
    void StepAuthenticateTunnel(int serial);
    void StepConnected(int serial);
    void BeginTeardown(int delayMs);
    void EndCall();
    void AbortCall();
    void StartStatistics();
    void OnStatisticsTimer();
    void StartTransfers();
    void OnTransferTimer();
    void KillTimer(kw::forms::TimerId& id);

    void DeliverDialList(std::string location, std::string destination);

    kw::forms::Platform& platform_;
    Options options_;
    Store store_;
    std::optional<std::string> loggedOnUser_;
    std::map<std::string, Location> pendingLocations_;
    std::string selectedEntry_;
    // The last dial list built, by destination, for Connect.
    std::string builtLocation_;
    std::string builtDestination_;

    std::shared_ptr<Life> life_ = std::make_shared<Life>();
    std::unique_ptr<Call> call_;
    std::int32_t nextHandle_ = 1;
    std::deque<Step> steps_;
    kw::forms::TimerId stepTimer_ = 0;
    kw::forms::TimerId statsTimer_ = 0;
    kw::forms::TimerId transferTimer_ = 0;
    kw::forms::TimerId dialListTimer_ = 0;
    std::deque<Transfer> transfers_;
    int transferFiles_ = 0;
    int transferNumber_ = 0;
    bool callHomeRefused_ = false;
    std::mt19937 random_{20011};
};

// Registers the simulator with the engine factory under kSimulatorName.
void RegisterSimulator();

}  // namespace dravlink
