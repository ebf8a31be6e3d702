#include <QAccessible>
#include <QImage>

#include "binding_fixture.h"
#include "platform/forms/chart.h"
#include "platform/qt/accessible.h"
#include "platform/qt/binding_chart.h"

namespace kw::qt::testing {
namespace {

constexpr long Rgb(int r, int g, int b) {
    return r + 256L * g + 65536L * b;
}

constexpr long kNavy = Rgb(0, 64, 128);
constexpr long kOrange = Rgb(255, 128, 0);
constexpr long kAqua = Rgb(0, 255, 255);
constexpr long kPaleYellow = Rgb(255, 255, 128);
const QColor kBar(0, 64, 128), kTunnel(255, 128, 0), kWall(255, 255, 128);

// A rate chart at its size in the panel: receive and transmit of one link, eight gaps and then
// the samples, as the performance window fills it.
class ChartBindingTest : public BindingTest {
  protected:
    ChartBindingTest() {
        chart.Move(10, 10, 91, 82);
        chart.SetBackColor(kAqua);
        chart.SetWallColours(Rgb(255, 255, 255), kPaleYellow);
        chart.SetMargins(10, 0, 0, 10);
        chart.SetView3D(false);
        chart.SetAxisAutomatic(false, false, false);
        chart.SetAxisMaximum(10);
        chart.SetAxisMinimum(-10);
        chart.SetAxisIncrement(10);
        chart.SetAxisLabelFormat("R###;T###;Kb/s");
        for (const auto side :
             {forms::AxisSide::Bottom, forms::AxisSide::Top, forms::AxisSide::Right}) {
            chart.SetAxisVisible(side, false);
        }
        chart.AddSeries("receive", kNavy);
        chart.AddSeries("transmit", kNavy);
        for (int i = 0; i < 16; ++i) chart.AddNull(i % 2);
    }

    void SetUp() override {
        BindingTest::SetUp();
        widget = Bind<ChartWidget>(chart);
        ASSERT_NE(widget, nullptr);
    }

    void Sample(double receive, double transmit) {
        chart.AddXY(0, chart.LastX(0) + 1, receive);
        chart.AddXY(1, chart.LastX(1) + 1, transmit);
    }

    static QColor PixelAt(QWidget* of, double x, double y) {
        return of->grab().toImage().pixelColor(static_cast<int>(x), static_cast<int>(y));
    }
    // The middle of a point's place, `dy` below the zero line.
    QColor ColumnAt(int point, double dy) const {
        const forms::ChartRect slot = chart.PointRect(0, 8);
        const double slotWidth = slot.width / 0.8;
        return PixelAt(widget, slot.left + slot.width / 2 - (8 - point) * slotWidth, ZeroY() + dy);
    }
    double ZeroY() const {
        const forms::ChartRect plot = chart.PlotArea();
        return plot.top + plot.height / 2;
    }

    forms::Chart chart{form, "RateChart"};
    ChartWidget* widget = nullptr;
};

TEST_F(ChartBindingTest, ReceiveStandsAboveTheZeroLineAndTransmitHangsBelow) {
    const struct {
        double receive, transmit;
        QColor above, below;
    } cases[] = {{6, -6, kBar, kBar}, {0, -6, kWall, kBar}, {6, 0, kBar, kWall}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.receive) + " " + std::to_string(c.transmit));
        Sample(c.receive, c.transmit);
        EXPECT_EQ(ColumnAt(8, -10), c.above);
        EXPECT_EQ(ColumnAt(8, 10), c.below);
        chart.DeletePoint(0, 0);
        chart.DeletePoint(1, 0);
    }
}

TEST_F(ChartBindingTest, TheLaterSeriesIsDrawnOverTheEarlierAtTheSamePlace) {
    chart.AddSeries("tunnel receive", kOrange);
    for (int i = 0; i < 8; ++i) chart.AddNull(2);
    Sample(8, -2);
    chart.AddXY(2, chart.LastX(2) + 1, 4);
    EXPECT_EQ(ColumnAt(8, -5), kTunnel);                                    // the tunnel, in front
    EXPECT_EQ(ColumnAt(8, chart.PointRect(0, 8).top + 2 - ZeroY()), kBar);  // the link, above it
}

TEST_F(ChartBindingTest, AnAreaIsFilledUnderItsPointsAndNotUnderGaps) {
    forms::Chart health{form, "iNetHealth"};
    health.Move(10, 100, 91, 82);
    health.SetWallColours(Rgb(255, 255, 255), kPaleYellow);
    health.SetMargins(10, 0, 0, 5);
    health.SetAxisAutomatic(false, false, false);
    health.SetAxisMaximum(1);
    health.SetAxisMinimum(0);
    health.AddSeries("delay", kOrange, forms::SeriesKind::Area);
    for (int i = 0; i < 8; ++i) health.AddNull(0);
    auto* area = Bind<ChartWidget>(health);
    ASSERT_NE(area, nullptr);
    health.AddXY(0, health.LastX(0) + 1, 0.5);
    health.DeletePoint(0, 0);
    health.AddXY(0, health.LastX(0) + 1, 0.5);
    const forms::ChartRect last = health.PointRect(0, 8), first = health.PointRect(0, 7);
    const forms::ChartRect plot = health.PlotArea();
    const double low = plot.top + plot.height - 4;
    EXPECT_EQ(PixelAt(area, last.left + last.width / 2, low), kTunnel);
    EXPECT_EQ(PixelAt(area, first.left + first.width / 2, low), kTunnel);
    // Just left of the first point: a gap treated as a zero would slope up into it.
    EXPECT_EQ(PixelAt(area, first.left - 2, low), kWall);
    EXPECT_EQ(PixelAt(area, last.left + last.width / 2, plot.top + 3), kWall);
}

// A reader finds a chart, and its figures in the description the program gives it; a chart the
// program says nothing about is described by its tool tip.
TEST_F(ChartBindingTest, AReaderFindsAChartDescribedByTheProgramsWordsElseItsToolTip) {
    InstallAccessibility();
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->role(), QAccessible::Chart);
    chart.SetToolTipText(" 6");
    EXPECT_EQ(spoken->text(QAccessible::Description), " 6");
    chart.SetAccessibleDescription("receive: 6 Kb/s");
    chart.SetToolTipText(" 7");
    EXPECT_EQ(spoken->text(QAccessible::Description), "receive: 6 Kb/s");
    chart.SetAccessibleDescription("");
    EXPECT_EQ(spoken->text(QAccessible::Description), " 7");
}

}  // namespace
}  // namespace kw::qt::testing
