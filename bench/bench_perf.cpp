// One statistics sample through the performance window: the record, the counters and the three
// charts, on the headless platform. The engine sends one a second; a sample should cost
// microseconds.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "platform/automation/safe_array.h"
#include "platform/headless/headless_platform.h"
#include "support/scripted_engine.h"

namespace {

using kw::automation::SafeArray;
using kw::automation::Variant;
using namespace kw::dialer;

Variant Figures(int count, double base) {
    SafeArray list = SafeArray::OneDim(0, count - 1);
    for (int i = 0; i < count; ++i) {
        list.Set(i, Variant(base + i * 37.0));
    }
    return Variant::FromArray(std::move(list));
}

void BM_DisplayStatOneSample(benchmark::State& state) {
    kw::headless::HeadlessPlatform platform;
    Application app(platform);
    app.EngineObject = std::make_shared<kw::test::ScriptedEngine>();
    PerfPulldown perf(app);
    perf.BeginPerf("Corporate");
    const Variant isp = Figures(12, 4200);
    const Variant vpn = Figures(10, 3100);
    for (auto _ : state) {
        perf.DisplayStat(vpn, isp);
    }
    benchmark::DoNotOptimize(perf.RateChart.LastX(0));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DisplayStatOneSample);

}  // namespace

BENCHMARK_MAIN();
