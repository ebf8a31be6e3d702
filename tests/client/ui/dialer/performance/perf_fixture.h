#pragma once

#include <cstdint>
#include <map>

#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/spine/program_fixture.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer::testing {

// A list of statistics from 0, each element zero unless set.
inline automation::Variant StatList(int count, const std::map<int, automation::Variant>& set) {
    automation::SafeArray list = automation::SafeArray::OneDim(0, count - 1);
    for (int i = 0; i < count; ++i) {
        auto it = set.find(i);
        list.Set(i, it == set.end() ? automation::Variant(std::int32_t{0}) : it->second);
    }
    return automation::Variant::FromArray(std::move(list));
}

// The engine's two lists: the ISP link's 12 figures and the tunnel's 10.
inline automation::Variant Isp(const std::map<int, automation::Variant>& set = {}) {
    return StatList(12, set);
}
inline automation::Variant Vpn(const std::map<int, automation::Variant>& set = {}) {
    return StatList(10, set);
}

// The program started and idle, the engine knowing the modem of every connection and its speed.
class PerfTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        engine->Default("GetConnectionNames", automation::Variant(true),
                        {{1, automation::Variant("modem0")}});
        engine->Default("GetLinkSpeed", automation::Variant(std::int32_t{28800}));
        StartIdle();
    }

    PerfPulldown& Perf() { return app->Form<PerfPulldown>(); }
    void Begin() { Perf().BeginPerf("Corporate"); }
    // A sample through the engine's event, as the main window hands it on.
    void Send(const automation::Variant& isp, const automation::Variant& vpn) {
        engine->RaiseGetConnectionStatistics(isp, vpn);
    }
    // One sample whose ISP receive rate the engine gives as engineRate.
    void SendRate(double engineRate, double engineTransmit = 0) {
        Send(Isp({{3, automation::Variant(engineRate)}, {5, automation::Variant(engineTransmit)}}),
             Vpn());
    }
    void SendRoundTrip(double milliseconds) {
        Send(Isp(), Vpn({{5, automation::Variant(milliseconds)}}));
    }
    const CstatInfo& Stats() { return *Perf().Statistics(); }
};

}  // namespace kw::dialer::testing
