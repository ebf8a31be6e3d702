// The bus and the settings helpers on the paths the program takes most often: a progress code
// posted to every pullout, and one value read or written through the user key.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/core/settings.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"

namespace {

using kw::automation::Variant;
using namespace kw::dialer;
namespace reg = kw::registry;

class Counter : public EventSubscriber {
  public:
    void KestrelwayEventSub(std::int32_t& eventId, Variant& data) override {
        calls += eventId;
        benchmark::DoNotOptimize(data);
    }
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t&, Variant&) override { return 0; }
    long calls = 0;
};

void BM_PostEventToEight(benchmark::State& state) {
    CEventManager bus;
    std::vector<Counter> subscribers(8);
    for (Counter& s : subscribers) {
        bus.registerForEvent(32, &s);
    }
    for (auto _ : state) {
        bus.postEvent(32, Variant("Disconnected"));
    }
    benchmark::DoNotOptimize(subscribers[7].calls);
}
BENCHMARK(BM_PostEventToEight);

void BM_VetoablePostToEight(benchmark::State& state) {
    CEventManager bus;
    std::vector<Counter> subscribers(8);
    for (Counter& s : subscribers) {
        bus.registerForEvent(event::kConnectRequested, &s);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(bus.postEventVetoable(event::kConnectRequested, Variant()));
    }
}
BENCHMARK(BM_VetoablePostToEight);

// A hive of its own in a temporary folder, removed afterwards.
class TempHive {
  public:
    TempHive() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kw-bench-core-XXXXXX").string();
        dir_ = mkdtemp(pattern.data());
        reg::Configure({dir_ + "/user.reg", dir_ + "/system.reg"});
    }
    ~TempHive() { std::filesystem::remove_all(dir_); }

  private:
    std::string dir_;
};

void BM_SettingsRead(benchmark::State& state) {
    TempHive hive;
    kw::headless::HeadlessPlatform platform;
    reg::HKEY key = OpenSettingsKey(platform);
    SetValueEx(Variant("/home/user/.local/share/Kestrelway/history.log"), key,
               settings::kConnectHistoryFileName);
    for (auto _ : state) {
        Variant value("");
        QueryValueEx(key, settings::kConnectHistoryFileName, value);
        benchmark::DoNotOptimize(value);
    }
    reg::RegCloseKey(key);
}
BENCHMARK(BM_SettingsRead);

void BM_SettingsOpenReadClose(benchmark::State& state) {
    TempHive hive;
    kw::headless::HeadlessPlatform platform;
    reg::HKEY key = OpenSettingsKey(platform);
    SetValueEx(Variant(std::int32_t{3}), key, settings::kLastSelectedLocation);
    reg::RegCloseKey(key);
    for (auto _ : state) {
        reg::HKEY k = OpenSettingsKey(platform);
        Variant value(std::int32_t{0});
        QueryValueEx(k, settings::kLastSelectedLocation, value);
        reg::RegCloseKey(k);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(BM_SettingsOpenReadClose);

void BM_SettingsWrite(benchmark::State& state) {
    TempHive hive;
    kw::headless::HeadlessPlatform platform;
    reg::HKEY key = OpenSettingsKey(platform);
    std::int32_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            SetValueEx(Variant(index++ % 7), key, settings::kLastSelectedLocation));
    }
    reg::RegCloseKey(key);
}
BENCHMARK(BM_SettingsWrite);

}  // namespace

BENCHMARK_MAIN();
