// One status line into the Prescriber when it already holds megabytes: the engine may talk for
// hours, and each line must cost the same however long the text has grown.

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"
#include "user_on_record.h"

namespace {

namespace fs = std::filesystem;
using namespace kw::dialer;

void BM_StatusLineAtMegabytes(benchmark::State& state) {
    const fs::path home = kw::bench::HomeWithUserOnRecord();
    kw::headless::HeadlessPlatform platform;
    platform.AnswerBoxes([](const kw::headless::BoxRecord&) { return kw::forms::mb::kResultOk; });
    auto engine = std::make_shared<kw::test::ScriptedEngine>();
    EngineFactory::Register(kDefaultEngineName, [engine](const EngineContext&) { return engine; });
    Application app(platform);
    app.EngineObject = engine;
    MainWin& win = app.Form<MainWin>();
    const std::string line = "Negotiating PPP options with the ISP's access server, please wait";
    const auto megabytes = static_cast<std::size_t>(state.range(0));
    std::string text = line;
    while (app.Form<RxPullout>().txtStatus.Text().size() < megabytes << 20) {
        win.l_DravlinkObj_StatusUpdate(text);
        text = line;
    }
    for (auto _ : state) {
        text = line;
        win.l_DravlinkObj_StatusUpdate(text);
    }
    state.counters["text MB"] =
        static_cast<double>(app.Form<RxPullout>().txtStatus.Text().size()) / (1 << 20);
    state.SetItemsProcessed(state.iterations());
    EngineFactory::Unregister(kDefaultEngineName);
    fs::remove_all(home);
}
BENCHMARK(BM_StatusLineAtMegabytes)
    ->Arg(1)
    ->Arg(10)
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(20000);

}  // namespace

BENCHMARK_MAIN();
