// The dial list at its largest: 32,767 POP rows read into the cells, shown, and ticked from their
// cells, and one mouse-up pass over them; each against the same pass with searches that walk
// from the head, as a list without an index searches.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "platform/automation/safe_array.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"

namespace {

using kw::automation::SafeArray;
using kw::automation::Variant;
using namespace kw::dialer;
namespace reg = kw::registry;

constexpr std::int32_t kRows = 32767;

void SetUserString(const char* name, const std::string& value) {
    reg::HKEY key = nullptr;
    reg::RegCreateKeyExA(reg::HKEY_CURRENT_USER, settings::kUserKey, 0, nullptr, 0,
                         reg::KEY_ALL_ACCESS, nullptr, &key, nullptr);
    reg::RegSetValueExA(key, name, 0, reg::REG_SZ,
                        reinterpret_cast<const reg::BYTE*>(value.c_str()),
                        static_cast<reg::DWORD>(value.size() + 1));
    reg::RegCloseKey(key);
}

Variant PopRows() {
    SafeArray rows = SafeArray::TwoDim(0, kRows - 1, 0, 7);
    for (std::int32_t r = 0; r < kRows; ++r) {
        const std::string n = std::to_string(r);
        const std::string fields[] = {n,    "555-" + n, "ISP" + std::to_string(r % 40), "City",
                                      "ST", "V.90",     r % 3 == 0 ? "0" : "1",         "5"};
        for (std::int32_t f = 0; f < 8; ++f) {
            rows.Set(r, f, Variant(fields[f]));
        }
    }
    return Variant(std::move(rows));
}

// A program started on the headless platform with a scripted engine, its settings in a
// temporary folder, and the dial list pullout shown.
class Program {
  public:
    Program() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kw-bench-diallist-XXXXXX").string();
        dir_ = mkdtemp(pattern.data());
        reg::Configure({dir_ + "/user.reg", dir_ + "/system.reg"});
        SetUserString(settings::kUserName, "anna");
        SetUserString(settings::kPassword, "secret");
        engine_->Default("GetPolicySetting", Variant(true), {{2, Variant("1")}});
        EngineFactory::Register(kDefaultEngineName,
                                [this](const EngineContext&) { return engine_; });
        platform_.AnswerBoxes(
            [](const kw::headless::BoxRecord&) { return kw::forms::mb::kResultOk; });
        app_ = std::make_unique<Application>(platform_);
        Main(*app_);
        To().Show();
    }
    ~Program() {
        app_.reset();
        EngineFactory::Unregister(kDefaultEngineName);
        std::filesystem::remove_all(dir_);
    }
    ToPullout& To() { return app_->Form<ToPullout>(); }
    kw::test::ScriptedEngine& Engine() { return *engine_; }

  private:
    std::string dir_;
    kw::headless::HeadlessPlatform platform_;
    std::shared_ptr<kw::test::ScriptedEngine> engine_ =
        std::make_shared<kw::test::ScriptedEngine>();
    std::unique_ptr<Application> app_;
};

// UpdateDialList: the rows into the cells, ShowPOPList, ApplyCheckBoxes.
void ShowRows(benchmark::State& state, bool indexed) {
    Program program;
    const Variant rows = PopRows();
    program.To().popCells().SetIndexed(indexed);
    for (auto _ : state) {
        program.To().UpdateDialList(rows);
        program.Engine().ClearCalls();
    }
    state.counters["rows"] = program.To().lstvDialList.ItemCount();
}

// The pass at mouse up: every row's box against its cell.
void MouseUpPass(benchmark::State& state, bool indexed) {
    Program program;
    program.To().UpdateDialList(PopRows());
    program.To().popCells().SetIndexed(indexed);
    for (auto _ : state) {
        program.To().lstvDialList.UserMouseUp(1, 0, 10, 10);
        program.Engine().ClearCalls();
    }
    state.counters["rows"] = program.To().lstvDialList.ItemCount();
}

void BM_ShowPopRows(benchmark::State& state) {
    ShowRows(state, true);
}
void BM_ShowPopRowsWalking(benchmark::State& state) {
    ShowRows(state, false);
}
void BM_MouseUpPass(benchmark::State& state) {
    MouseUpPass(state, true);
}
void BM_MouseUpPassWalking(benchmark::State& state) {
    MouseUpPass(state, false);
}

BENCHMARK(BM_ShowPopRows)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ShowPopRowsWalking)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_MouseUpPass)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MouseUpPassWalking)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
