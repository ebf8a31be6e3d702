#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "dravlink/recording_sink.h"
#include "link/bus_dravlink.h"
#include "link/private_bus.h"

namespace kw::link::testing {

using automation::Variant;
using ::dravlink::testing::RecordingSink;
using ::dravlink::testing::Seen;

// A private bus per test, its engine started by the first call, a client logged on and advised.
class EngineProcessTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;
    // Starts the bus (with the engine going the scenario's way) and a client logged on as ana.
    void Start(PrivateBus::Setup setup = {});
    // Builds the dial list from Home Office and connects to the lab; gives the handle.
    std::int32_t Dial();
    // Waits until the call's last light so far is `code`.
    bool UntilLastCode(int code);

    std::filesystem::path dir;
    std::unique_ptr<PrivateBus> bus;
    RecordingSink sink;
    std::shared_ptr<BusDravlink> engine;
};

}  // namespace kw::link::testing
