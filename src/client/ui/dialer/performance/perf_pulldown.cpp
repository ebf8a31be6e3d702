#include "client/ui/dialer/performance/perf_pulldown.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/failure.h"
#include "platform/automation/number_format.h"

namespace kw::dialer {

using automation::Format;
using automation::Variant;
namespace place = layout::perfpulldown;

namespace {

constexpr int kPanelCount = 5;
constexpr int kLastRotatedPanel = 3;  // the buttons never bring panel 4 on show
constexpr int kClockInterval = 1000;
const char* const kSpeedSuffix = " bps";

using face::Place;

void Put(forms::Control& control, forms::Control& panel, const layout::LayoutRect& r) {
    control.SetContainer(&panel);
    Place(control, r);
}

}  // namespace

PerfPulldown::PerfPulldown(Application& app) : Form(app.Platform(), "PerfPulldown"), app_(app) {
    SetCaption("PerfPulldown");
    SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    face::PlaceForm(*this, place::kWidth, place::kHeight);
    Design();
    WireEvents();
}

PerfPulldown::~PerfPulldown() = default;

forms::Panel& PerfPulldown::CMPanel(int index) {
    forms::Panel* const panels[kPanelCount] = {&CMPanel0, &CMPanel1, &CMPanel2, &CMPanel3,
                                               &CMPanel4};
    if (index < 0 || index >= kPanelCount) {
        throw automation::Failure(automation::err::kSubscriptOutOfRange);
    }
    return *panels[index];
}

// ---- design ---------------------------------------------------------------------------------

void PerfPulldown::Design() {
    Place(Image1, place::Image1);
    Image1.SetPicture(place::kPicture);
    Place(LeftBtn, place::LeftBtn);
    LeftBtn.SetPicture(place::kLeftBtn);
    Place(RightBtn, place::RightBtn);
    RightBtn.SetPicture(place::kRightBtn);
    Place(downBtn, place::downBtn);
    downBtn.SetPicture(place::kDownBtn);
    Place(detachBtn, place::detachBtn);
    detachBtn.SetPicture(place::kDetachBtn);
    dTimer.SetInterval(kClockInterval);
    dTimer.SetTimerEnabled(false);
    DesignPanels();
    DesignCounters();
    DesignCharts();
}

// Until its first turn a panel stands at its design place, outside the shape.
void PerfPulldown::DesignPanels() {
    Place(CMPanel0, place::CMPanel);
    Place(CMPanel1, {122, 4, 91, 95});
    Place(CMPanel2, {122, 102, 91, 95});
    Place(CMPanel3, {122, 200, 91, 95});
    Place(CMPanel4, {216, 3, 91, 95});
}

void PerfPulldown::DesignCounters() {
    Put(imgLocation, CMPanel0, place::imgLocation);
    imgLocation.SetPicture(place::kImgLocation);
    Put(VpnBytes, CMPanel0, place::VpnBytes);
    VpnBytes.SetPicture(place::kVpnBytes);
    Put(ISPBytes, CMPanel0, place::ISPBytes);
    ISPBytes.SetPicture(place::kISPBytes);
    Put(Duration, CMPanel0, place::Duration);
    Put(VpnRcv, CMPanel0, place::VpnRcv);
    Put(VpnSent, CMPanel0, place::VpnSent);
    Put(IspRcv, CMPanel0, place::IspRcv);
    Put(IspSent, CMPanel0, place::IspSent);

    forms::Label* const captions[] = {&CRC, &Framing, &Alignment, &HWOverrun, &BufOverrun};
    forms::Label* const counts[] = {&CRCCnt, &FrameCnt, &AlignCnt, &HwCnt, &BufCnt};
    const char* const texts[] = {"CRC:", "Framing:", "Alignment:", "HW Overrun:", "Buf Overrun:"};
    for (int row = 0; row < 5; ++row) {
        const int top = place::kErrorRowTop + row * place::kErrorRowStep;
        layout::LayoutRect caption = place::kErrorCaption;
        layout::LayoutRect count = place::kErrorCount;
        caption.y = count.y = top;
        Put(*captions[row], CMPanel3, caption);
        captions[row]->SetCaption(texts[row]);
        Put(*counts[row], CMPanel3, count);
        counts[row]->SetAlignment(forms::align::kRight);
    }
}

void PerfPulldown::WireEvents() {
    dTimer.Tick = [this] { dTimer_Timer(); };
    LeftBtn.Click = [this] { LeftBtn_Click(); };
    RightBtn.Click = [this] { RightBtn_Click(); };
    // detachBtn carries its tool tip and nothing else: there is nowhere to detach to.
    for (forms::Chart* chart : {&RateChart, &iNetHealth, &PktLoss}) {
        chart->MouseMove = [this, chart](int, int, float x, float y) {
            Chart_MouseMove(*chart, x, y);
        };
    }
}

// ---- load -----------------------------------------------------------------------------------

void PerfPulldown::LoadView() {
    ShowPanel(0);
    InitPerfView();
    hours = 0;
    minutes = 0;
    seconds = 0;
}

void PerfPulldown::InitPerfView() {
    CMPanel0.SetCaption(LoadResString(ResConst::kChartStatistics));
    CMPanel1.SetCaption(LoadResString(ResConst::kSpeed));
    CMPanel2.SetCaption(LoadResString(ResConst::kChartRoundTrip));
    CMPanel3.SetCaption(LoadResString(ResConst::kChartDeviceErrors));
    CMPanel4.SetCaption(LoadResString(ResConst::kChartPacketLoss));
    const std::pair<forms::Control*, int> tips[] = {
        {&imgLocation, ResConst::kDuration},
        {&VpnBytes, ResConst::kVpnBytesSentReceived},
        {&ISPBytes, ResConst::kIspBytesSentReceived},
        {&Duration, ResConst::kDuration},
        {&VpnRcv, ResConst::kVpnBytesReceived},
        {&VpnSent, ResConst::kVpnBytesSent},
        {&IspRcv, ResConst::kIspBytesReceived},
        {&IspSent, ResConst::kIspBytesSent},
        {&CRC, ResConst::kCrcErrors},
        {&CRCCnt, ResConst::kCrcErrors},
        {&Framing, ResConst::kFramingErrors},
        {&FrameCnt, ResConst::kFramingErrors},
        {&Alignment, ResConst::kAlignmentErrors},
        {&AlignCnt, ResConst::kAlignmentErrors},
        {&HWOverrun, ResConst::kHardwareOverruns},
        {&HwCnt, ResConst::kHardwareOverruns},
        {&BufOverrun, ResConst::kBufferOverruns},
        {&BufCnt, ResConst::kBufferOverruns},
        {&downBtn, ResConst::kOpenClosePerformance},
        {&detachBtn, ResConst::kDetachPerformance},
    };
    for (const auto& [control, id] : tips) {
        control->SetToolTipText(LoadResString(id));
    }
    LeftBtn.SetToolTipText("Rotate Performance Window left");
    RightBtn.SetToolTipText("Rotate Performance Window right");
    ResetCounters();
    ResetCharts();
}

void PerfPulldown::ResetCounters() {
    for (forms::Label* label :
         {&IspSent, &IspRcv, &VpnSent, &VpnRcv, &CRCCnt, &FrameCnt, &AlignCnt, &HwCnt, &BufCnt}) {
        label->SetCaption("0");
    }
    Duration.SetCaption(ClockText());
}

// ---- the monitor ----------------------------------------------------------------------------

const std::string& PerfPulldown::Destination() const {
    static const std::string kNone;
    return stats_ ? stats_->conName : kNone;
}

void PerfPulldown::BeginPerf(const std::string& connectionName) {
    if (!app_.EngineObject) {
        throw automation::Failure(automation::err::kObjectNotSet);
    }
    Dravlink& engine = *app_.EngineObject;
    if (!stats_) {
        stats_ = std::make_unique<CstatInfo>(*this);
        stats_->conName = connectionName;
        std::string destination = connectionName;
        std::string device;
        const bool known = engine.GetConnectionNames(destination, device).ToBoolean();
        stats_->devName = known ? device : std::string();
    }
    linkSpeed = engine.GetLinkSpeed(stats_->devName).ToLong();
    CMPanel1.SetCaption(LoadResString(ResConst::kSpeed) + Format(linkSpeed, "###,###") +
                        kSpeedSuffix);
    // A clock already running runs on: only load and EndPerf clear it.
    if (!dTimer.TimerEnabled()) {
        dTimer.SetTimerEnabled(true);
        dTimer.SetInterval(kClockInterval);
    }
    peakRate = 0;
    peakRoundTrip = 0;
    rateDivisor = 100;
    megabitScale = false;
}

void PerfPulldown::EndPerf() {
    dTimer.SetTimerEnabled(false);
    hours = 0;
    minutes = 0;
    seconds = 0;
    ResetCounters();
    ResetCharts();
    CMPanel1.SetCaption(LoadResString(ResConst::kSpeed));
    stats_.reset();
}

void PerfPulldown::DisplayStat(const Variant& vpnStats, const Variant& ispStats) {
    if (!stats_) {
        return;
    }
    ++samplesShown_;
    stats_->processStatistics(vpnStats, ispStats);
    UpdateByteCounters();
    UpdateErrorCounters();
    ChartSteps();
}

void PerfPulldown::UpdateByteCounters() {
    const char* const format = "#,###,###,##0";
    IspSent.SetCaption(Format(stats_->IspByteSent(), format));
    IspRcv.SetCaption(Format(stats_->IspByteRcv(), format));
    VpnSent.SetCaption(Format(stats_->VpnByteSent(), format));
    VpnRcv.SetCaption(Format(stats_->VpnByteRcv(), format));
}

void PerfPulldown::UpdateErrorCounters() {
    const char* const format = "#,##0";
    CRCCnt.SetCaption(Format(stats_->CRC(), format));
    FrameCnt.SetCaption(Format(stats_->Framing(), format));
    AlignCnt.SetCaption(Format(stats_->Alignment(), format));
    HwCnt.SetCaption(Format(stats_->HWOverrun(), format));
    BufCnt.SetCaption(Format(stats_->Buffovrun(), format));
}

// ---- the clock ------------------------------------------------------------------------------

std::string PerfPulldown::ClockText() const {
    return Format(hours, "000") + ":" + Format(minutes, "00") + ":" + Format(seconds, "00");
}

void PerfPulldown::dTimer_Timer() {
    ++seconds;
    if (seconds >= 60) {
        seconds = 0;
        ++minutes;
    }
    if (minutes >= 60) {
        minutes = 0;
        ++hours;
    }
    Duration.SetCaption(ClockText());
}

// ---- rotation -------------------------------------------------------------------------------

void PerfPulldown::LeftBtn_Click() {
    ShowPanel(currentPanel >= kLastRotatedPanel ? 0 : currentPanel + 1);
}

void PerfPulldown::RightBtn_Click() {
    ShowPanel(currentPanel <= 0 ? kLastRotatedPanel : currentPanel - 1);
}

void PerfPulldown::ShowPanel(int next) {
    forms::Panel& panel = CMPanel(next);
    panel.Move(place::CMPanel.x, place::CMPanel.y, place::CMPanel.w, place::CMPanel.h);
    CMPanel(currentPanel).SetVisible(false);
    panel.SetVisible(true);
    currentPanel = next;
}

}  // namespace kw::dialer
