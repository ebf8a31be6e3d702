#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/call_run.h"
#include "dravlink/data_dir.h"
#include "dravlink/dial_list.h"
#include "dravlink/scenario.h"
#include "dravlink/store.h"
#include "platform/forms/platform.h"

namespace dravlink {

using kw::automation::Variant;

inline constexpr const char* kSimulatorName = "dravlink.sim";

// The connection engine simulator. Its data lives in files of its own; a call runs on the
// platform's timers as a CallRun, and every event reaches the sink from a timer tick on the user
// interface's thread. Handlers may call back into the engine, or answer a prompt from inside a
// modal loop while the other timers go on.
class Simulator : public kw::dialer::Dravlink, private CallHost {
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
    // The logged-on user's right to change something of the engine's: granted unless "0".
    bool Allowed(const std::string& key) const;
    void RequireLogon() const;
    Location* AnyLocation(const std::string& name);
    void DeliverDialList(std::string location, std::string destination);
    void KillTimer(kw::forms::TimerId& id);

    // What a call uses of the engine.
    kw::forms::Platform& Timers() override { return platform_; }
    kw::dialer::DravlinkEvents* Sink() override { return EventSink(); }
    Store& Records() override { return store_; }
    std::string User() const override { return loggedOnUser_.value_or(""); }
    std::mt19937& Random() override { return random_; }
    bool CallHomeRefused() const override { return callHomeRefused_; }
    void RefuseCallHome() override { callHomeRefused_ = true; }
    void CallEnded() override { call_.reset(); }

    kw::forms::Platform& platform_;
    Options options_;
    Store store_;
    std::optional<std::string> loggedOnUser_;
    std::map<std::string, Location> pendingLocations_;
    std::string selectedEntry_;
    // The last dial list built, by destination, for Connect.
    std::string builtLocation_;
    std::string builtDestination_;
    kw::forms::TimerId dialListTimer_ = 0;

    std::unique_ptr<CallRun> call_;
    std::int32_t nextHandle_ = 1;
    bool callHomeRefused_ = false;
    std::mt19937 random_{20011};
};

// Registers the simulator with the engine factory under kSimulatorName.
void RegisterSimulator();

}  // namespace dravlink
