// The chart model: the left axis, and the point under the mouse as the drawing places it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../automation/failure_number.h"
#include "platform/forms/chart.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::forms {
namespace {

class Window : public Form {
  public:
    explicit Window(Platform& p) : Form(p, "Window") {}
    Chart chart{*this, "chart"};
};

class ChartTest : public ::testing::Test {
  protected:
    void SetUp() override {
        // 100 by 100 with no margins: one pixel per percent.
        chart.Move(0, 0, 100, 100);
        chart.SetAxisAutomatic(false, false, false);
        chart.SetAxisMinimum(-10);
        chart.SetAxisMaximum(10);
        bars = chart.AddSeries("rx", 0x804000, SeriesKind::Bar);
    }
    headless::HeadlessPlatform platform;
    Window window{platform};
    Chart& chart = window.chart;
    int bars = 0;
};

TEST_F(ChartTest, PointsAndSeriesOutsideTheChartFailAsSubscripts) {
    chart.AddXY(bars, 0, 1);
    EXPECT_EQ(FailureNumber([&] { chart.DeletePoint(bars, 1); }), 9);
    EXPECT_EQ(FailureNumber([&] { chart.YValue(bars, -1); }), 9);
    EXPECT_EQ(FailureNumber([&] { chart.AddNull(3); }), 9);
}

TEST_F(ChartTest, AnAutomaticAxisFollowsTheDataAndAFixedOneStays) {
    chart.AddXY(bars, 0, 7);
    chart.AddXY(bars, 1, -3);
    chart.AddNull(bars);
    EXPECT_EQ(chart.AxisMin(), -10);
    EXPECT_EQ(chart.AxisMax(), 10);
    chart.SetAxisAutomatic(true, true, true);
    EXPECT_EQ(chart.AxisMin(), -3);
    EXPECT_EQ(chart.AxisMax(), 7);
    chart.SetAxisAutomatic(false, true, false);
    EXPECT_EQ(chart.AxisMin(), -10);
    EXPECT_EQ(chart.AxisMax(), 7);
}

TEST_F(ChartTest, LabelsStandAtEveryIncrementInTheAxisFormat) {
    chart.SetAxisIncrement(10);
    chart.SetAxisLabelFormat("R###;T###;Kb/s");
    std::vector<std::string> texts;
    for (const AxisLabel& label : chart.LeftLabels()) {
        texts.push_back(label.text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"T10", "Kb/s", "R10"}));
}

// Two X places, 50 pixels each; bars 80 percent wide stand on the zero line at y 50.
TEST_F(ChartTest, ThePointUnderTheMouseIsTheBarDrawnThere) {
    const int down = chart.AddSeries("tx", 0x0080FF, SeriesKind::Bar);
    chart.AddXY(bars, 0, 5);
    chart.AddXY(bars, 1, 10);
    chart.AddNull(down);
    chart.AddXY(down, 1, -5);
    struct Case {
        int series;
        double x, y;
        int expected;
    };
    const Case cases[] = {
        {bars, 25, 40, 0},   // inside the first bar, from 50 up to 25
        {bars, 25, 20, -1},  // above it
        {bars, 3, 40, -1},   // in the gap beside it
        {bars, 75, 5, 1},    // the second, up to the top
        {down, 25, 60, -1},  // a null point draws nothing
        {down, 75, 60, 1},   // below the zero line
        {down, 75, 40, -1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(chart.PointAt(c.series, c.x, c.y), c.expected)
            << "series " << c.series << " at " << c.x << "," << c.y;
    }
}

TEST_F(ChartTest, MarginsTakeTheirPercentOfThePlot) {
    chart.Move(0, 0, 200, 100);
    chart.SetMargins(10, 5, 0, 20);
    const ChartRect plot = chart.PlotArea();
    EXPECT_EQ(plot.left, 10);
    EXPECT_EQ(plot.top, 20);
    EXPECT_EQ(plot.width, 190);
    EXPECT_EQ(plot.height, 70);
}

}  // namespace
}  // namespace kw::forms
