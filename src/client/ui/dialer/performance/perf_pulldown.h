#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/performance/cstat_info.h"
#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The live monitor of the connection, below the main window: byte counters and the connection
// clock, the rate chart, the round-trip chart and the device errors, one panel at a time.
class PerfPulldown : public forms::Form {
  public:
    explicit PerfPulldown(Application& app);
    ~PerfPulldown() override;

    forms::Image Image1{*this, "Image1"};
    forms::Timer dTimer{*this, "dTimer"};

    forms::Panel CMPanel0{*this, "CMPanel", 0};
    forms::Panel CMPanel1{*this, "CMPanel", 1};
    forms::Panel CMPanel2{*this, "CMPanel", 2};
    forms::Panel CMPanel3{*this, "CMPanel", 3};
    forms::Panel CMPanel4{*this, "CMPanel", 4};
    forms::Panel& CMPanel(int index);

    // Panel 0: bytes and the clock.
    forms::Image imgLocation{*this, "imgLocation"};
    forms::Image VpnBytes{*this, "VpnBytes"};
    forms::Image ISPBytes{*this, "ISPBytes"};
    forms::Label Duration{*this, "Duration"};
    forms::Label VpnRcv{*this, "VpnRcv"};
    forms::Label VpnSent{*this, "VpnSent"};
    forms::Label IspRcv{*this, "IspRcv"};
    forms::Label IspSent{*this, "IspSent"};

    // Panels 1, 2 and 4.
    forms::Chart RateChart{*this, "RateChart"};
    forms::Chart iNetHealth{*this, "iNetHealth"};
    forms::Chart PktLoss{*this, "PktLoss"};

    // Panel 3: device errors.
    forms::Label CRC{*this, "CRC"};
    forms::Label Framing{*this, "Framing"};
    forms::Label Alignment{*this, "Alignment"};
    forms::Label HWOverrun{*this, "HWOverrun"};
    forms::Label BufOverrun{*this, "BufOverrun"};
    forms::Label CRCCnt{*this, "CRCCnt"};
    forms::Label FrameCnt{*this, "FrameCnt"};
    forms::Label AlignCnt{*this, "AlignCnt"};
    forms::Label HwCnt{*this, "HwCnt"};
    forms::Label BufCnt{*this, "BufCnt"};

    forms::Image LeftBtn{*this, "LeftBtn"};
    forms::Image RightBtn{*this, "RightBtn"};
    forms::Image downBtn{*this, "downBtn"};
    forms::Image detachBtn{*this, "detachBtn"};

    // The divisor of the chart rates: 100 while the rate chart shows Kb/s, 10000 in Mb/s.
    std::int16_t rateDivisor = 100;

    // ---- place below the main window, and the jump between its two places ----
    // Its two places, below the main window's top: retracted, the handle showing through the
    // notch, and pulled down.
    static constexpr std::int32_t kRetracted = 176;
    static constexpr std::int32_t kPulledDown = 300;
    // Moves the window to yOffset below the main window's top.
    void PositionWindow(std::int32_t yOffset);
    // Pulls the panel down to 300 below the main window's top, or back up to 176.
    void downBtn_Click();

    // ---- the monitor ----
    // Starts monitoring the connection to the destination; a second call keeps the clock.
    void BeginPerf(const std::string& connectionName);
    void EndPerf();
    // One statistics sample: the record, the counters, the charts. A failure abandons the rest of
    // the sample; the caller passes it over.
    void DisplayStat(const automation::Variant& vpnStats, const automation::Variant& ispStats);

    void LeftBtn_Click();
    void RightBtn_Click();
    void dTimer_Timer();

    bool Monitoring() const { return stats_ != nullptr; }
    const std::string& Destination() const;
    // The statistics record, nullptr while idle.
    const CstatInfo* Statistics() const { return stats_.get(); }
    // Samples shown since load.
    int Samples() const { return samplesShown_; }
    int CurrentPanel() const { return currentPanel; }
    bool MegabitScale() const { return megabitScale; }
    double PeakRate() const { return peakRate; }
    double PeakRoundTrip() const { return peakRoundTrip; }
    std::int16_t SampleCount() const { return sampleCount; }

  protected:
    void Form_Load() override;
    void Form_Activate() override;

  private:
    void Design();
    void DesignPanels();
    void DesignCounters();
    void DesignCharts();
    void WireEvents();
    // What loading gives the monitor: panel 0 on show, captions, tool tips, counters, charts.
    void LoadView();
    void InitPerfView();
    void ResetCounters();
    void UpdateByteCounters();
    void UpdateErrorCounters();
    std::string ClockText() const;
    void ShowPanel(int next);

    // ---- the charts ----
    void ResetCharts();
    void ResetChart(forms::Chart& chart, int firstTitle);
    void ClearSeries(forms::Chart& chart);
    void AddSamples(forms::Chart& chart, const std::vector<double>& values);
    void ChartSteps();
    void TrackPeakRate();
    void GrowRateChart();
    void GrowRoundTrip();
    void FitAxes();
    // The latest figures of each chart in words, for a screen reader: rates in the unit they were
    // sampled in.
    void DescribeCharts(bool megabits);
    void Chart_MouseMove(forms::Chart& chart, float x, float y);

    Application& app_;
    bool regionCut = false;  // the pulled-down shape has been made

    std::unique_ptr<CstatInfo> stats_;
    int currentPanel = 0;
    bool megabitScale = false;
    std::int16_t hours = 0;
    std::int16_t minutes = 0;
    std::int16_t seconds = 0;
    std::int32_t linkSpeed = 0;
    double peakRate = 0;
    double peakRoundTrip = 0;
    std::int16_t sampleCount = 0;
    int samplesShown_ = 0;
};

}  // namespace kw::dialer
