// The three charts of the monitor: the last nine samples, and the left axes that follow them.
#include <cmath>
#include <functional>
#include <string>
#include <string_view>

#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/number_format.h"

namespace kw::dialer {

using forms::AxisSide;
using forms::Chart;
using forms::SeriesKind;

namespace {

constexpr long Rgb(int red, int green, int blue) {
    return red | (green << 8) | (blue << 16);
}

constexpr long kIspColour = Rgb(0, 64, 128);
constexpr long kVpnColour = Rgb(255, 128, 0);
constexpr int kNullPoints = 8;
constexpr int kFitEvery = 15;
constexpr double kHeadroom = 1.2;
const char* const kKilobits = "R###;T###;Kb/s";
const char* const kMegabits = "R###;T###;Mb/s";

double Int(double value) {
    return std::floor(value);
}

// The classic assignment of a number to a 16-bit variable: rounded, failing past the range.
std::int16_t ToInteger(double value) {
    return automation::CInt(automation::Variant(value));
}

// A figure as it is said: the format's digits without a bare trailing point.
std::string Figure(double value, std::string_view format) {
    std::string text = automation::Format(value, format);
    if (!text.empty() && text.back() == '.') {
        text.pop_back();
    }
    return text;
}

// "title: figure" for the latest point of every series that has one, empty before the first.
std::string Describe(const Chart& chart, const std::function<std::string(double)>& say) {
    std::string words;
    for (int s = 0; s < chart.SeriesCount(); ++s) {
        const int last = chart.PointCount(s) - 1;
        if (last < 0 || chart.IsNull(s, last)) {
            continue;
        }
        words +=
            (words.empty() ? "" : ", ") + chart.Series(s).title + ": " + say(chart.YValue(s, last));
    }
    return words;
}

void DesignLooks(Chart& chart) {
    chart.SetTitle("");
    chart.SetLegendVisible(false);
    chart.SetView3D(false);
    chart.SetBackColor(Rgb(0, 255, 255));
    chart.SetWallColours(Rgb(255, 255, 255), Rgb(255, 255, 128));
    for (AxisSide side : {AxisSide::Bottom, AxisSide::Top, AxisSide::Right}) {
        chart.SetAxisVisible(side, false);
    }
}

}  // namespace

void PerfPulldown::DesignCharts() {
    RateChart.SetContainer(&CMPanel1);
    face::Place(RateChart, {0, 15, 91, 82});
    RateChart.SetMargins(10, 0, 0, 10);
    iNetHealth.SetContainer(&CMPanel2);
    face::Place(iNetHealth, {0, 16, 91, 82});
    iNetHealth.SetMargins(10, 0, 0, 5);
    PktLoss.SetContainer(&CMPanel4);
    face::Place(PktLoss, {0, 12, 91, 85});
    PktLoss.SetMargins(0, 0, 0, 0);
    for (Chart* chart : {&RateChart, &iNetHealth, &PktLoss}) {
        DesignLooks(*chart);
    }
    const long rateColours[] = {kIspColour, kIspColour, kVpnColour, kVpnColour};
    for (const long colour : rateColours) {
        const int s = RateChart.AddSeries("", colour, SeriesKind::Bar);
        RateChart.SetBarStyle(s, 80, false, false);
    }
    RateChart.SetAxisTicks(5, 1, 1);
    iNetHealth.AddSeries("", kVpnColour, SeriesKind::Area);
    iNetHealth.SetAxisLabelFormat("0.#");
    iNetHealth.SetAxisTicks(1, 1, 1);
    PktLoss.SetBarStyle(PktLoss.AddSeries("", kVpnColour, SeriesKind::Bar), 80, false, true);
    PktLoss.SetAxisVisible(AxisSide::Left, false);
}

// ---- reset ----------------------------------------------------------------------------------

void PerfPulldown::ClearSeries(Chart& chart) {
    for (int s = 0; s < chart.SeriesCount(); ++s) {
        const int n = chart.PointCount(s);
        for (int k = 0; k < n; ++k) {
            chart.DeletePoint(s, 0);
        }
    }
}

// Titles from the string table, and the gaps from which a fresh chart fills.
void PerfPulldown::ResetChart(Chart& chart, int firstTitle) {
    for (int s = 0; s < chart.SeriesCount(); ++s) {
        chart.SetSeriesTitle(s, LoadResString(firstTitle + s));
        for (int k = 0; k < kNullPoints; ++k) {
            chart.AddNull(s);
        }
    }
}

void PerfPulldown::ResetCharts() {
    ClearSeries(RateChart);
    RateChart.SetView3D(false);
    RateChart.SetAxisAutomatic(false, false, false);
    RateChart.SetAxisIncrement(1);
    RateChart.SetAxisLabelSize(20);
    RateChart.SetAxisMaximum(1);
    RateChart.SetAxisMinimum(-1);
    RateChart.SetAxisLabelFormat(kKilobits);
    ResetChart(RateChart, ResConst::kIspBytesReceivePerSecond);

    ClearSeries(PktLoss);
    PktLoss.SetView3D(false);
    PktLoss.SetAxisAutomatic(true, true, true);
    ResetChart(PktLoss, ResConst::kPacketLoss);

    ClearSeries(iNetHealth);
    iNetHealth.SetView3D(false);
    iNetHealth.SetAxisAutomatic(false, false, false);
    iNetHealth.SetAxisIncrement(0.1);
    iNetHealth.SetAxisMaximum(1);
    iNetHealth.SetAxisMinimum(0);
    iNetHealth.SetAxisLabelSize(10);
    ResetChart(iNetHealth, ResConst::kRoundTripDelay);
    DescribeCharts(false);
}

// ---- one sample -----------------------------------------------------------------------------

void PerfPulldown::AddSamples(Chart& chart, const std::vector<double>& values) {
    for (int s = 0; s < chart.SeriesCount(); ++s) {
        const double y = values.at(static_cast<std::size_t>(s));
        if (chart.PointCount(s) > kNullPoints) {
            chart.DeletePoint(s, 0);
        }
        chart.AddXY(s, chart.LastX(s) + 1, y);
    }
}

void PerfPulldown::ChartSteps() {
    // The rates were divided before a switch of unit below: they are said in the unit they came in.
    const bool sampledInMegabits = megabitScale;
    ++sampleCount;
    TrackPeakRate();
    GrowRateChart();
    GrowRoundTrip();
    if (stats_->Net()[0] > peakRoundTrip) {
        peakRoundTrip = stats_->Net()[0];
    }
    if (sampleCount >= kFitEvery) {
        FitAxes();
    }
    AddSamples(RateChart, stats_->Rates());
    AddSamples(iNetHealth, stats_->Net());
    const std::vector<std::int32_t>& packets = stats_->Packets();
    AddSamples(PktLoss, std::vector<double>(packets.begin(), packets.end()));
    DescribeCharts(sampledInMegabits);
}

// The first rate past the peak raises it, not the largest: transmit rates count negated.
void PerfPulldown::TrackPeakRate() {
    const std::vector<double>& r = stats_->Rates();
    if (r[0] > peakRate) {
        peakRate = r[0];
    } else if (-r[1] > peakRate) {
        peakRate = -r[1];
    } else if (r[2] > peakRate) {
        peakRate = r[2];
    } else if (-r[3] > peakRate) {
        peakRate = -r[3];
    }
}

// Past 1000 the chart turns to Mb/s: the peak is divided by 1000 while the divisor grows by 100,
// and the sample that made the switch is drawn as it came. A divisor already at 10000 overflows
// here and the rest of the sample is abandoned.
void PerfPulldown::GrowRateChart() {
    if (Int(peakRate) <= RateChart.LeftAxis().maximum) {
        return;
    }
    if (Int(peakRate) > 1000) {
        peakRate = peakRate / 1000;
        megabitScale = true;
        rateDivisor = ToInteger(rateDivisor * 100.0);
        RateChart.SetAxisLabelFormat(kMegabits);
    }
    const double top = Int(peakRate);
    RateChart.SetAxisMaximum(top);
    RateChart.SetAxisMinimum(-top);
    RateChart.SetAxisIncrement(top);
}

void PerfPulldown::GrowRoundTrip() {
    const double top = Int(peakRoundTrip);
    if (top > iNetHealth.LeftAxis().maximum) {
        iNetHealth.SetAxisMaximum(top);
        iNetHealth.SetAxisIncrement(top == 0 ? 0.1 : top);
    }
}

void PerfPulldown::FitAxes() {
    if (Int(peakRate) == 0) {
        peakRate = 1.0;
    }
    if (Int(peakRate) < 1000 && megabitScale) {
        rateDivisor = ToInteger(rateDivisor / 100.0);
        RateChart.SetAxisLabelFormat(kKilobits);
        megabitScale = false;
    }
    const double top = Int(peakRate * kHeadroom);
    RateChart.SetAxisMaximum(top);
    RateChart.SetAxisMinimum(-top);
    RateChart.SetAxisIncrement(top);
    sampleCount = 0;
    peakRate = 0;
    iNetHealth.SetAxisMaximum(peakRoundTrip * kHeadroom);
    iNetHealth.SetAxisIncrement(Int(peakRoundTrip) == 0 ? 0.1 : Int(peakRoundTrip));
    peakRoundTrip = 0;
}

// ---- the figures in words ------------------------------------------------------------------

// The chart draws transmit rates below the line, without a sign on its labels: said the same way.
void PerfPulldown::DescribeCharts(bool megabits) {
    const std::string unit = megabits ? " Mb/s" : " Kb/s";
    const char* const rateFormat = megabits ? "#,##0.##" : "#,##0.#";
    RateChart.SetAccessibleDescription(Describe(
        RateChart, [&](double rate) { return Figure(std::fabs(rate), rateFormat) + unit; }));
    iNetHealth.SetAccessibleDescription(
        Describe(iNetHealth, [](double delay) { return Figure(delay, "#,##0.###") + " sec"; }));
    PktLoss.SetAccessibleDescription(
        Describe(PktLoss, [](double lost) { return Figure(lost, "#,##0"); }));
}

// ---- the tool tip ---------------------------------------------------------------------------

// Every series answers in turn, so the last one has the last word.
void PerfPulldown::Chart_MouseMove(Chart& chart, float x, float y) {
    for (int s = 0; s < chart.SeriesCount(); ++s) {
        const int point = chart.PointAt(s, x, y);
        chart.SetToolTipText(point < 0 ? std::string() : automation::Str(chart.YValue(s, point)));
    }
}

}  // namespace kw::dialer
