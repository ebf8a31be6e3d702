// The monitor's charts: nine points a series, the peaks, the growth and the fit of the left
// axes, the switch between Kb/s and Mb/s, and the tool tip under the mouse.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "perf_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;

class PerfChartsTest : public PerfTest {
  protected:
    void SetUp() override {
        PerfTest::SetUp();
        Begin();
    }
    const forms::ChartAxis& RateAxis() { return Perf().RateChart.LeftAxis(); }
    const forms::ChartAxis& TripAxis() { return Perf().iNetHealth.LeftAxis(); }
    // The rate axis as the user reads it: its labels and the two ends of its range.
    std::tuple<std::string, double, double> RateScale() {
        return {RateAxis().labelFormat, RateAxis().minimum, RateAxis().maximum};
    }
    static std::tuple<std::string, double, double> Scale(const char* unit, double top) {
        return {std::string("R###;T###;") + unit, -top, top};
    }
    // The last point drawn in a series of the rate chart.
    double LastRate(int series) {
        const forms::Chart& chart = Perf().RateChart;
        return chart.YValue(series, chart.PointCount(series) - 1);
    }
};

TEST_F(PerfChartsTest, EverySeriesHoldsNinePointsFilledFromTheRight) {
    forms::Chart& chart = Perf().RateChart;
    for (int s = 0; s < 4; ++s) {
        EXPECT_EQ(chart.PointCount(s), 8);
        EXPECT_TRUE(chart.IsNull(s, 0) && chart.IsNull(s, 7));
    }
    for (int sample = 1; sample <= 10; ++sample) {
        SendRate(sample * 100.0);
        EXPECT_EQ(chart.PointCount(0), 9) << "after sample " << sample;
        EXPECT_EQ(Perf().PktLoss.PointCount(0), 9);
        EXPECT_EQ(Perf().iNetHealth.PointCount(0), 9);
    }
    // Ten samples: the nulls and the first sample are gone, samples 2 to 10 remain.
    EXPECT_FALSE(chart.IsNull(0, 0));
    EXPECT_EQ(chart.YValue(0, 0), 2);
    EXPECT_EQ(LastRate(0), 10);
    EXPECT_EQ(chart.LastX(0), chart.LastX(3));
}

TEST_F(PerfChartsTest, TheFifteenthSampleOfZerosFitsBothAxes) {
    for (int sample = 1; sample < 15; ++sample) {
        Send(Isp(), Vpn());
    }
    EXPECT_EQ(Perf().SampleCount(), 14);
    Send(Isp(), Vpn());
    EXPECT_EQ(RateScale(), Scale("Kb/s", 1));
    EXPECT_EQ(RateAxis().increment, 1);
    EXPECT_EQ(TripAxis().maximum, 0);
    EXPECT_EQ(TripAxis().increment, 0.1);
    EXPECT_EQ(Perf().SampleCount(), 0);
    EXPECT_EQ(Perf().PeakRate(), 0);
}

struct RoundTripCase {
    double milliseconds;
    double maxAfterTwo;
    double incrementAfterTwo;
    double maxAtFit;
    double incrementAtFit;
};

class RoundTripAxisTest : public PerfChartsTest,
                          public ::testing::WithParamInterface<RoundTripCase> {};

// The axis grows one sample after the peak, and the fit gives the peak a fifth more room.
TEST_P(RoundTripAxisTest, GrowsAfterThePeakAndFitsAtTheFifteenth) {
    const RoundTripCase& c = GetParam();
    SendRoundTrip(c.milliseconds);
    EXPECT_EQ(TripAxis().maximum, 1) << "no growth on the sample of the peak";
    SendRoundTrip(0);
    EXPECT_EQ(TripAxis().maximum, c.maxAfterTwo);
    EXPECT_EQ(TripAxis().increment, c.incrementAfterTwo);
    for (int sample = 3; sample <= 15; ++sample) {
        SendRoundTrip(0);
    }
    EXPECT_DOUBLE_EQ(TripAxis().maximum, c.maxAtFit);
    EXPECT_EQ(TripAxis().increment, c.incrementAtFit);
}

INSTANTIATE_TEST_SUITE_P(Peaks, RoundTripAxisTest,
                         ::testing::Values(RoundTripCase{500, 1, 0.1, 0.6, 0.1},
                                           RoundTripCase{2500, 2, 2, 3.0, 2}));

TEST_F(PerfChartsTest, PastAThousandKilobitsTheChartTurnsToMegabits) {
    SendRate(250000);  // 2500 at divisor 100
    EXPECT_DOUBLE_EQ(Perf().PeakRate(), 2.5);
    EXPECT_EQ(Perf().rateDivisor, 10000);
    EXPECT_EQ(RateScale(), Scale("Mb/s", 2));
    EXPECT_EQ(LastRate(0), 2500) << "the sample of the switch is drawn as it came";

    SendRate(250000);
    EXPECT_DOUBLE_EQ(Stats().Rates()[0], 25);
    EXPECT_DOUBLE_EQ(Perf().PeakRate(), 25);
    EXPECT_EQ(RateScale(), Scale("Mb/s", 25));
}

TEST_F(PerfChartsTest, ExactlyAThousandStaysInKilobits) {
    SendRate(100000);
    EXPECT_EQ(Perf().rateDivisor, 100);
    EXPECT_EQ(RateScale(), Scale("Kb/s", 1000));
    EXPECT_EQ(RateAxis().increment, 1000);
}

TEST_F(PerfChartsTest, TheFitReturnsToKilobitsWhenThePeakInMegabitsIsSmall) {
    SendRate(250000);
    ASSERT_TRUE(Perf().MegabitScale());
    for (int sample = 2; sample <= 15; ++sample) {
        SendRate(0);
    }
    EXPECT_EQ(Perf().rateDivisor, 100);
    EXPECT_EQ(RateScale(), Scale("Kb/s", 3));  // Int(2.5 * 1.2)
}

// A second switch while in Mb/s overflows the 16-bit divisor: the sample is dropped silently.
TEST_F(PerfChartsTest, ASecondSwitchOverflowsAndAbandonsTheSample) {
    SendRate(250000);
    const double lastX = Perf().RateChart.LastX(0);
    SendRate(2.0e7);  // 2000 in Mb/s
    EXPECT_EQ(Perf().rateDivisor, 10000);
    EXPECT_DOUBLE_EQ(Perf().PeakRate(), 2.0);
    EXPECT_EQ(RateScale(), Scale("Mb/s", 2));
    EXPECT_EQ(Perf().RateChart.LastX(0), lastX) << "no point for the abandoned sample";
    EXPECT_TRUE(platform.Boxes().empty());

    SendRate(50000);  // 5 in Mb/s: the next sample goes on
    EXPECT_EQ(Perf().RateChart.LastX(0), lastX + 1);
    EXPECT_EQ(RateScale(), Scale("Mb/s", 5));
}

TEST_F(PerfChartsTest, ThePeakTakesTheFirstRateThatPassesItNotTheLargest) {
    SendRate(3000, -4000);  // receive 30, transmit -40
    EXPECT_EQ(Perf().PeakRate(), 30);
    EXPECT_EQ(RateScale(), Scale("Kb/s", 30));
    EXPECT_EQ(LastRate(1), -40) << "transmit is drawn below the line";
    SendRate(3000, -4000);
    EXPECT_EQ(Perf().PeakRate(), 40);
    EXPECT_EQ(RateScale(), Scale("Kb/s", 40));
}

// What a screen reader hears of each chart: the series' titles and their latest figures.
class ChartWordsTest : public PerfChartsTest {
  protected:
    std::string RateWords() { return Perf().RateChart.AccessibleDescription(); }
};

TEST_F(ChartWordsTest, EachChartSaysItsLatestFiguresInItsUnits) {
    SendRate(1000, -200);
    Send(Isp({{3, Variant(2500.0)}, {5, Variant(-300.0)}}), Vpn({{1, Variant(2000.0)},
                                                                 {3, Variant(-150.0)},
                                                                 {4, Variant(std::int32_t{2})},
                                                                 {5, Variant(123.0)}}));
    EXPECT_EQ(RateWords(),
              "ISP Bytes Receive/second: 25 Kb/s, ISP Bytes Transmit/second: 3 Kb/s, "
              "VPN Bytes Receive/second: 20 Kb/s, VPN Bytes Transmit/second: 1.5 Kb/s");
    EXPECT_EQ(Perf().iNetHealth.AccessibleDescription(), "Round Trip Delay: 0.123 sec");
    EXPECT_EQ(Perf().PktLoss.AccessibleDescription(), "Packet Loss: 2");
}

TEST_F(ChartWordsTest, ChartsWithoutASampleSayNothing) {
    for (const forms::Chart* chart : {&Perf().RateChart, &Perf().iNetHealth, &Perf().PktLoss}) {
        EXPECT_EQ(chart->AccessibleDescription(), "") << chart->Name() << " before a sample";
    }
    SendRate(5000);
    Perf().EndPerf();
    for (const forms::Chart* chart : {&Perf().RateChart, &Perf().iNetHealth, &Perf().PktLoss}) {
        EXPECT_EQ(chart->AccessibleDescription(), "") << chart->Name() << " after the call";
    }
}

// A reader is told the charts whose figures changed, and only those.
TEST_F(ChartWordsTest, OnlyChangedFiguresAreTold) {
    struct Told : forms::FormObserver {
        void ControlChanged(forms::Control& control, forms::Property what) override {
            if (what == forms::Property::Description) {
                charts.push_back(control.Name());
            }
        }
        void FormChanged(forms::Form&, forms::FormProperty) override {}
        std::vector<std::string> charts;
    } told;
    Perf().AddObserver(&told);
    SendRoundTrip(200);
    SendRoundTrip(200);
    SendRoundTrip(300);
    Perf().RemoveObserver(&told);
    EXPECT_EQ(told.charts,
              (std::vector<std::string>{"RateChart", "iNetHealth", "PktLoss", "iNetHealth"}));
}

// The receive rate of the ISP link is said in the unit the sample was divided by, which is not
// always the unit the axis turns to on that sample.
TEST_F(ChartWordsTest, TheRateIsSaidInTheUnitItWasSampledIn) {
    const struct {
        double engineRate;
        const char* said;
    } cases[] = {
        {80, "0.8 Kb/s"},       {99999, "1,000 Kb/s"},
        {250000, "2,500 Kb/s"},  // the switch to Mb/s: this point is drawn as it came
        {250000, "25 Mb/s"},    {12345, "1.23 Mb/s"},
        {2.0e7, "1.23 Mb/s"},  // overflow: the sample is abandoned, its figures unsaid
        {50000, "5 Mb/s"},
    };
    for (const auto& c : cases) {
        SendRate(c.engineRate);
        const std::string first = RateWords().substr(0, RateWords().find(", "));
        EXPECT_EQ(first, std::string("ISP Bytes Receive/second: ") + c.said) << c.engineRate;
    }
}

// The mouse over a chart: every series answers in turn, so the last one has the last word.
class ToolTipTest : public PerfChartsTest {
  protected:
    void MoveOver(forms::Chart& chart, int series) {
        const forms::ChartRect bar = chart.PointRect(series, chart.PointCount(series) - 1);
        chart.UserMouseMove(0, 0, static_cast<float>(bar.left + bar.width / 2),
                            static_cast<float>(bar.top + bar.height / 2));
    }
};

TEST_F(ToolTipTest, OnlyAPointOfTheLastSeriesLeavesATip) {
    forms::Chart& chart = Perf().RateChart;
    Send(Isp({{3, Variant(80.0)}}), Vpn({{3, Variant(-50.0)}}));  // receive 0.8, tunnel tx -0.5
    MoveOver(chart, 3);
    EXPECT_EQ(chart.ToolTipText(), "-.5");
    MoveOver(chart, 0);
    EXPECT_EQ(chart.ToolTipText(), "") << "series 3 has no point above the line";
}

}  // namespace
}  // namespace kw::dialer::testing
