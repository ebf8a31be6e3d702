#include "client/ui/dialer/performance/perf_pulldown.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/artwork_layout.h"

namespace kw::dialer {

PerfPulldown::PerfPulldown(Application& app) : Form(app.Platform(), "PerfPulldown"), app_(app) {
    SetCaption("PerfPulldown");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    Move(0, 0, layout::perfpulldown::kWidth, layout::perfpulldown::kHeight);
    const layout::LayoutRect& image = layout::perfpulldown::Image1;
    Image1.Move(image.x, image.y, image.w, image.h);
    Image1.SetPicture(layout::perfpulldown::kPicture);
    const layout::LayoutRect& down = layout::perfpulldown::downBtn;
    downBtn.Move(down.x, down.y, down.w, down.h);
    downBtn.SetPicture(layout::perfpulldown::kDownBtn);
    dTimer.SetInterval(1000);
    dTimer.SetTimerEnabled(false);
}

void PerfPulldown::BeginPerf(const std::string& destination) {
    monitoring_ = true;
    destination_ = destination;
    samples_ = 0;
}

void PerfPulldown::EndPerf() {
    monitoring_ = false;
}

void PerfPulldown::DisplayStat(const automation::Variant& ispStats,
                               const automation::Variant& vpnStats) {
    (void)ispStats;
    (void)vpnStats;
    if (monitoring_) {
        ++samples_;
    }
}

}  // namespace kw::dialer
