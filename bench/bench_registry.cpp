// A read and a write of one value on a hive of the size the program keeps (about 50 values).

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "platform/registry/registry.h"

namespace {

using namespace kw::registry;

class Hive {
  public:
    Hive() {
        char templ[] = "/tmp/kw-registry-bench-XXXXXX";
        dir_ = ::mkdtemp(templ);
        Configure(RegistryConfig{dir_ + "/user.reg", dir_ + "/system.reg"});
        RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Ostvarra\\Kestrelway", 0, "0", 0,
                        KEY_ALL_ACCESS, nullptr, &key_, nullptr);
        for (int i = 0; i < 50; ++i) {
            const std::string name = "Setting" + std::to_string(i);
            if (i % 2 == 0) {
                const std::string text =
                    "C:\\Program Files\\Ostvarra\\value number " + std::to_string(i);
                RegSetValueExA(key_, name.c_str(), 0, REG_SZ,
                               reinterpret_cast<const BYTE*>(text.c_str()),
                               static_cast<DWORD>(text.size() + 1));
            } else {
                const DWORD v = static_cast<DWORD>(i);
                RegSetValueExA(key_, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&v),
                               sizeof v);
            }
        }
    }
    ~Hive() {
        RegCloseKey(key_);
        std::filesystem::remove_all(dir_);
    }
    HKEY Key() const { return key_; }

  private:
    std::string dir_;
    HKEY key_ = nullptr;
};

void BM_QueryString(benchmark::State& state) {
    Hive hive;
    BYTE buffer[256];
    for (auto _ : state) {
        DWORD type = 0;
        DWORD size = 0;
        RegQueryValueExA(hive.Key(), "Setting24", nullptr, &type, nullptr, &size);
        size = sizeof buffer;
        const LONG status =
            RegQueryValueExA(hive.Key(), "Setting24", nullptr, &type, buffer, &size);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(buffer);
    }
}
BENCHMARK(BM_QueryString);

void BM_SetDword(benchmark::State& state) {
    Hive hive;
    DWORD v = 0;
    for (auto _ : state) {
        ++v;
        const LONG status = RegSetValueExA(hive.Key(), "Setting25", 0, REG_DWORD,
                                           reinterpret_cast<const BYTE*>(&v), sizeof v);
        benchmark::DoNotOptimize(status);
    }
}
BENCHMARK(BM_SetDword)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
