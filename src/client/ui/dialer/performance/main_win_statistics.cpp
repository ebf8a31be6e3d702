// The engine's statistics, once a second during a call, reach the performance panel.
#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/performance/perf_pulldown.h"

namespace kw::dialer {

using automation::Failure;
using automation::Variant;

void MainWin::l_DravlinkObj_GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) {
    try {
        // The panel takes the tunnel's figures first.
        app_.Form<PerfPulldown>().DisplayStat(vpnStats, ispStats);
    } catch (const Failure&) {
        // A bad sample is passed over; the next one comes in a second.
    }
}

}  // namespace kw::dialer
