#include "client/ui/dialer/performance/perf_pulldown.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer {

PerfPulldown::PerfPulldown(Application& app) : Form(app.Platform(), "PerfPulldown"), app_(app) {
    namespace at = layout::perfpulldown;
    SetCaption("PerfPulldown");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    Move(0, 0, at::kWidth, at::kHeight);
    Image1.Move(at::Image1.x, at::Image1.y, at::Image1.w, at::Image1.h);
    Image1.SetPicture(at::kPicture);
    dTimer.SetInterval(1000);
    dTimer.SetTimerEnabled(false);
}

void PerfPulldown::Form_Load() {
    ScaleForm(*this, app_.Platform());
    app_.Shape(*this, false, &Image1);
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
