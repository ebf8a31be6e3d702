#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/simulator.h"
#include "platform/automation/safe_array.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"

namespace dravlink::testing {

using kw::automation::CStr;
using kw::automation::SafeArray;
using kw::automation::Variant;

// What a client saw, in order, with the virtual time it arrived.
struct Seen {
    std::string what;  // "P102", "S", "E", "STATS", "LIST", "OK", "YESNO", "INFO", "INPUT",
                       // "LOGIN", "NLN", "XFER", "DEBUG"
    std::string text;
    std::int64_t at = 0;
};

// A sink that records everything and answers prompts through hooks the test sets.
class RecordingSink : public kw::dialer::DravlinkEvents {
  public:
    explicit RecordingSink(kw::headless::HeadlessPlatform& platform) : platform_(platform) {}

    std::vector<Seen> seen;
    std::vector<Variant> lists;  // GetGenericISPList
    std::vector<std::pair<Variant, Variant>> stats;
    std::vector<Variant> transfers;
    std::vector<std::string> choicesOffered;

    std::function<void(std::int16_t, const std::string&)> onProgress;
    std::function<void(const std::string&)> onError;
    std::function<std::string(const std::string&, const std::string&)> answerLogin;
    std::function<bool(const std::string&)> answerYesNo;
    std::function<std::string(const std::vector<std::string>&)> answerChoice;
    std::function<std::string(const std::string&)> answerInput;
    std::function<std::string(const std::string&)> answerNowLaterNever;
    std::function<void(const std::string&)> onOk;

    std::vector<int> Codes() const;
    std::vector<std::string> Of(const std::string& what) const;
    int CountOf(const std::string& what) const;

    void CHXferUpdate(Variant& first, Variant& transfer) override;
    void ErrorEvent(std::string& message) override;
    void GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) override;
    void GetGenericISPList(std::string& message, Variant& list) override;
    void GetUserInfo(std::string& prompt, Variant& choices, std::string& answer) override;
    void GetUserInput(std::string& prompt, std::string& defaultText, std::string& answer) override;
    void GetUsernamePassword(std::string& prompt, std::string& user) override;
    void GetUserOk(std::string& message) override;
    void GetUserYesNo(std::string& question, bool& answer) override;
    void GetUserNowLaterNever(std::string& question, std::string& answer) override;
    void DravDebug(std::string& text) override;
    void ProgressUpdate(std::int16_t code, std::string& text) override;
    void StatusUpdate(std::string& text) override;

  private:
    void Add(std::string what, std::string text);
    kw::headless::HeadlessPlatform& platform_;
};

// A fresh data directory seeded from the shipped sample, and a settings hive of its own.
class SimulatorTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // Makes the engine (again), logged on as user, with the sink advised.
    std::shared_ptr<Simulator> Start(const std::string& scenario = "",
                                     const std::string& user = "ana",
                                     const std::string& password = "secret");
    // Builds the dial list and waits for it to arrive; gives the rows.
    Variant DialList(const std::string& location, const std::string& destination);
    // Connects and lets the call run for ms of virtual time.
    std::int32_t Call(const std::string& destination, int ms = 15000,
                      const std::string& location = "Home Office");
    void Hangup(std::int32_t handle, int ms = 3000);

    std::filesystem::path dir_;
    std::filesystem::path dataDir_;
    kw::headless::HeadlessPlatform platform_;
    std::unique_ptr<RecordingSink> sink_;
    std::shared_ptr<Simulator> engine_;

  private:
    kw::registry::RegistryConfig savedRegistry_;
};

std::vector<std::string> Column(const Variant& rows, int field);

}  // namespace dravlink::testing
