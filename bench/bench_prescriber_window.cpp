// The Prescriber in its real window: one status line into the open pullout, drawn, when the text
// already holds hundreds of kilobytes or megabytes. Run it under an X server (xvfb-run) to
// measure a window that is really drawn; without one it uses Qt's offscreen platform.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"
#include "platform/qt/qt_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"
#include "user_on_record.h"

namespace {

namespace fs = std::filesystem;
using namespace kw::dialer;
using kw::automation::SafeArray;
using kw::automation::Variant;

Variant Names(std::initializer_list<const char*> names) {
    SafeArray list = SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    std::int32_t i = 0;
    for (const char* n : names) {
        list.Set(i++, Variant(std::string(n)));
    }
    return Variant(std::move(list));
}

void BM_StatusLineInTheWindowAtKilobytes(benchmark::State& state) {
    const fs::path home = kw::bench::HomeWithUserOnRecord();
    // An engine with destinations, so that the start asks nothing.
    auto engine = std::make_shared<kw::test::ScriptedEngine>();
    engine->Default("GetPhoneList", Variant(true), {{0, Names({"Corporate", "Lab"})}});
    engine->Default("GetLocationList", Variant(true), {{0, Names({"Home", "Hotel"})}});
    engine->Default("GetCallingCardList", Variant(false));
    EngineFactory::Register(kDefaultEngineName, [engine](const EngineContext&) { return engine; });
    {
        kw::qt::QtPlatform platform(KW_SOURCE_DIR "/assets", "kestrelway-bench");
        Application app(platform, KW_SOURCE_DIR "/assets");
        Main(app);
        MainWin& win = app.Form<MainWin>();
        win.btnRxPullout_Click();
        QApplication::processEvents();
        const std::string line =
            "Negotiating PPP options with the ISP's access server, please wait";
        const auto bytes = static_cast<std::size_t>(state.range(0)) << 10;
        std::string text;
        while (app.Form<RxPullout>().txtStatus.Text().size() < bytes) {
            text = line;
            win.l_DravlinkObj_StatusUpdate(text);
        }
        QApplication::processEvents();
        for (auto _ : state) {
            text = line;
            win.l_DravlinkObj_StatusUpdate(text);
            QApplication::processEvents();  // the line is drawn before the next one comes
        }
        state.counters["text KB"] =
            static_cast<double>(app.Form<RxPullout>().txtStatus.Text().size()) / 1024;
        state.SetItemsProcessed(state.iterations());
    }
    EngineFactory::Unregister(kDefaultEngineName);
    fs::remove_all(home);
}
BENCHMARK(BM_StatusLineInTheWindowAtKilobytes)
    ->Arg(330)
    ->Arg(10 << 10)
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(2000);

}  // namespace

int main(int argc, char** argv) {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    QApplication qt(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
