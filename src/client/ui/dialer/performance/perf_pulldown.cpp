#include "client/ui/dialer/performance/perf_pulldown.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

PerfPulldown::PerfPulldown(Application& app) : Form(app.Platform(), "PerfPulldown") {
    SetCaption("PerfPulldown");
    Move(0, 0, 115, 181);
    dTimer.SetInterval(1000);
    dTimer.SetTimerEnabled(false);
}

void PerfPulldown::BeginPerf(const std::string& destination) {
    monitoring_ = true;
    destination_ = destination;
    samples_ = 0;
}

void PerfPulldown::EndPerf() { monitoring_ = false; }

void PerfPulldown::DisplayStat(const automation::Variant& ispStats,
                               const automation::Variant& vpnStats) {
    (void)ispStats;
    (void)vpnStats;
    if (monitoring_) {
        ++samples_;
    }
}

}  // namespace kw::dialer
