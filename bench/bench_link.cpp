// The engine over the session bus against the engine in the process: the round trip of a small
// call. Each run over the bus starts a session bus of its own, and the bus starts dravlinkd.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/simulator.h"
#include "link/bus_dravlink.h"
#include "link/loop_platform.h"
#include "link/private_bus.h"
#include "platform/registry/registry.h"

namespace {

namespace fs = std::filesystem;

using kw::link::testing::PrivateBus;

fs::path Folder(const char* what) {
    std::string name = "kw-bench-link-";
    name += what;
    name += '-';
    name += std::to_string(::getpid());
    const fs::path dir = fs::temp_directory_path() / name;
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

void LogOn(kw::dialer::Dravlink& engine) {
    std::string user = "ana";
    std::string password = "secret";
    engine.Logon(user, password, "");
}

// GetLinkSpeed of the modem: one string in, a long out, nothing else happens in the engine.
void SmallCall(benchmark::State& state, kw::dialer::Dravlink& engine) {
    const std::string modem = "Standard 33600 bps Modem";
    for (auto _ : state) {
        benchmark::DoNotOptimize(engine.GetLinkSpeed(modem));
    }
}

void BM_SmallCallOverTheBus(benchmark::State& state) {
    const fs::path dir = Folder("bus");
    {
        PrivateBus bus(dir, {.engineInstalled = true, .idleMs = 1000, .scenario = {}});
        kw::link::BusDravlink engine(nullptr, bus.Address());
        LogOn(engine);
        SmallCall(state, engine);
    }
    fs::remove_all(dir);
}
BENCHMARK(BM_SmallCallOverTheBus)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

void BM_SmallCallInTheProcess(benchmark::State& state) {
    kw::link::testing::EnsureEventLoop();
    const fs::path dir = Folder("process");
    const auto saved = kw::registry::DefaultConfig();
    kw::registry::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
    {
        kw::link::LoopPlatform platform;
        dravlink::Simulator engine(platform, dravlink::Options{dir / "data", {}, {}});
        LogOn(engine);
        SmallCall(state, engine);
    }
    kw::registry::Configure(saved);
    fs::remove_all(dir);
}
BENCHMARK(BM_SmallCallInTheProcess)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

}  // namespace

BENCHMARK_MAIN();
