#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "link/bus_dravlink.h"
#include "link/private_bus.h"

namespace kw::link::testing {

using automation::Variant;

// What a client heard from the engine, in order, with the real time it arrived (ms).
struct Heard {
    std::string what;  // "P<code>", "S", "STATS", "LIST", "XFER", "E", or the prompt's name
    std::string text;
    std::int64_t at = 0;
};

// A sink that records every event; a prompt is answered by the test's hook (empty: cancel).
class Listener : public dialer::DravlinkEvents {
  public:
    Listener() { clock_.start(); }
    std::vector<Heard> heard;
    std::function<std::string(const Heard&)> answerWith;

    std::vector<int> Codes() const;
    std::vector<std::string> Of(const std::string& what) const;
    std::size_t Count(const std::string& what) const { return Of(what).size(); }

    void CHXferUpdate(Variant&, Variant&) override { Add("XFER", ""); }
    void ErrorEvent(std::string& message) override { Add("E", message); }
    void GetConnectionStatistics(Variant&, Variant&) override { Add("STATS", ""); }
    void GetGenericISPList(std::string& message, Variant&) override { Add("LIST", message); }
    void GetUserInfo(std::string& prompt, Variant&, std::string& answer) override {
        answer = Add("GetUserInfo", prompt);
    }
    void GetUserInput(std::string& prompt, std::string&, std::string& answer) override {
        answer = Add("GetUserInput", prompt);
    }
    void GetUsernamePassword(std::string& prompt, std::string& user) override {
        user = Add("GetUsernamePassword", prompt);
    }
    void GetUserOk(std::string& message) override { Add("GetUserOk", message); }
    void GetUserYesNo(std::string& question, bool& answer) override {
        answer = Add("GetUserYesNo", question) == "yes";
    }
    void GetUserNowLaterNever(std::string& question, std::string& answer) override {
        answer = Add("GetUserNowLaterNever", question);
    }
    void DravDebug(std::string&) override {}
    void ProgressUpdate(std::int16_t code, std::string& text) override {
        std::string what = "P";
        what += std::to_string(code);
        Add(std::move(what), text);
    }
    void StatusUpdate(std::string& text) override { Add("S", text); }

  private:
    std::string Add(std::string what, std::string text);
    QElapsedTimer clock_;
};

// A private bus per test, its engine started by the first call, a client logged on and advised.
class EngineProcessTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;
    // Starts the bus (with the engine going the scenario's way) and a client logged on as ana.
    void Start(PrivateBus::Setup setup = {});
    // Builds the dial list from Home Office and connects; gives the handle.
    std::int32_t Dial(dialer::Dravlink& engine, Listener& listener,
                      const std::string& destination = "Engineering Lab");

    std::filesystem::path dir;
    std::unique_ptr<PrivateBus> bus;
    Listener listener;
    std::shared_ptr<BusDravlink> engine;
};

}  // namespace kw::link::testing
