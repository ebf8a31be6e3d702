// The engine over the session bus against the engine in the process: the round trip of a small
// call, and what one statistics event costs on its way to the client's handler. Each run starts a
// session bus of its own.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <filesystem>
#include <memory>

#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/simulator.h"
#include "link/bus_dravlink.h"
#include "link/engine_fixture.h"
#include "link/engine_service.h"
#include "link/loop_platform.h"
#include "link/private_bus.h"
#include "link/wire.h"
#include "platform/automation/safe_array.h"
#include "platform/registry/registry.h"

namespace {

namespace fs = std::filesystem;
using kw::automation::SafeArray;
using kw::automation::Variant;
using kw::link::testing::PrivateBus;

fs::path Folder(const char* what) {
    const fs::path dir = fs::temp_directory_path() /
                         (std::string("kw-bench-link-") + what + "-" + std::to_string(::getpid()));
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

// One statistics event, as the engine raises it each second, from the engine's connection to the
// client's handler; both ends in this process, each on a connection of its own to the bus.
void BM_StatisticsEventOverTheBus(benchmark::State& state) {
    const fs::path dir = Folder("event");
    {
        PrivateBus bus(dir, {.engineInstalled = false, .idleMs = 1000, .scenario = {}});
        const auto saved = kw::registry::DefaultConfig();
        kw::registry::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
        kw::link::LoopPlatform platform;
        auto simulator = std::make_shared<dravlink::Simulator>(
            platform, dravlink::Options{dir / "data", {}, {}});
        QDBusConnection side = bus.Connect(QStringLiteral("bench-engine"));
        kw::link::EngineService service(side, simulator, 60000, {});
        side.registerVirtualObject(QLatin1String(kw::link::kObjectPath), &service);
        side.registerService(QLatin1String(kw::link::kServiceName));

        kw::link::BusDravlink client(nullptr, bus.Address());
        kw::link::testing::Listener listener;
        client.Advise(&listener);
        Variant isp(SafeArray::OneDim(0, 11));
        Variant vpn(SafeArray::OneDim(0, 9));
        for (std::int32_t i = 0; i <= 11; ++i) {
            isp.ToArray().Set(i, Variant(1000.5 * i));
        }
        for (std::int32_t i = 0; i <= 9; ++i) {
            vpn.ToArray().Set(i, Variant(std::int32_t{i * 77}));
        }
        for (auto _ : state) {
            const auto before = listener.Count("STATS");
            simulator->EventSink()->GetConnectionStatistics(isp, vpn);
            while (listener.Count("STATS") == before) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
        }
        client.Unadvise();
        kw::registry::Configure(saved);
    }
    fs::remove_all(dir);
}
BENCHMARK(BM_StatisticsEventOverTheBus)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

}  // namespace

BENCHMARK_MAIN();
