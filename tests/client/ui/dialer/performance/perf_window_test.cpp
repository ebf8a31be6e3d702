// The performance window: what it shows at rest, while monitoring and after; its clock, its
// counters and the rotation of its panels.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "perf_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;

class PerfWindowTest : public PerfTest {
  protected:
    // Every counter at zero, no speed, and the clock stopped at zero.
    void ExpectAtRest() {
        PerfPulldown& p = Perf();
        for (forms::Label* counter : {&p.IspSent, &p.IspRcv, &p.VpnSent, &p.VpnRcv, &p.CRCCnt,
                                      &p.FrameCnt, &p.AlignCnt, &p.HwCnt, &p.BufCnt}) {
            EXPECT_EQ(counter->Caption(), "0") << counter->Name();
        }
        EXPECT_EQ(p.CMPanel1.Caption(), "Speed: ");
        EXPECT_EQ(p.Duration.Caption(), "000:00:00");
        platform.Advance(2000);
        EXPECT_EQ(p.Duration.Caption(), "000:00:00") << "the clock stays stopped";
    }
};

TEST_F(PerfWindowTest, AtRestTheCountersStandAtZeroAndTheClockIsStopped) {
    ExpectAtRest();
}

TEST_F(PerfWindowTest, TheSpeedCaptionShowsNoDigitForZero) {
    const std::pair<std::int32_t, const char*> cases[] = {
        {28800, "Speed: 28,800 bps"}, {0, "Speed:  bps"}, {1544000, "Speed: 1,544,000 bps"}};
    for (const auto& [speed, caption] : cases) {
        engine->Then("GetLinkSpeed", Variant(speed));
        Begin();
        EXPECT_EQ(Perf().CMPanel1.Caption(), caption);
    }
    EXPECT_EQ(engine->CallsTo("GetLinkSpeed").back().args.at(0).ToString(), "modem0");
}

TEST_F(PerfWindowTest, CountersShowTheSampleInTheirFormats) {
    Begin();
    Send(Isp({{4, Variant(std::int32_t{1234567})},
              {2, Variant(std::int32_t{999})},
              {6, Variant(std::int32_t{12345})}}),
         Vpn({{0, Variant(std::int32_t{2147483647})}}));
    PerfPulldown& p = Perf();
    EXPECT_EQ(p.IspSent.Caption(), "1,234,567");
    EXPECT_EQ(p.IspRcv.Caption(), "999");
    EXPECT_EQ(p.VpnRcv.Caption(), "2,147,483,647");
    EXPECT_EQ(p.VpnSent.Caption(), "0");
    EXPECT_EQ(p.CRCCnt.Caption(), "12,345");
    EXPECT_EQ(p.BufCnt.Caption(), "0");
}

TEST_F(PerfWindowTest, EndPerfReturnsToRestAndALateSampleChangesNothing) {
    Begin();
    platform.Advance(3000);
    SendRate(250000);  // the chart turns to Mb/s
    Perf().EndPerf();
    EXPECT_EQ(Perf().Statistics(), nullptr);
    const forms::ChartAxis& axis = Perf().RateChart.LeftAxis();
    EXPECT_EQ(std::tuple(axis.maximum, axis.minimum, axis.labelFormat),
              std::tuple(1.0, -1.0, std::string("R###;T###;Kb/s")));

    Send(Isp({{4, Variant(std::int32_t{7000})}}), Vpn({{5, Variant(900.0)}}));
    ExpectAtRest();
    EXPECT_EQ(Perf().RateChart.PointCount(0), 8);
    EXPECT_TRUE(Perf().RateChart.IsNull(0, 7)) << "the charts stay as reset";
}

TEST_F(PerfWindowTest, ASecondBeginPerfKeepsTheClockAndTheNamesAndResetsTheScale) {
    Begin();
    platform.Advance(5000);
    SendRate(250000);  // 2500 Kb/s: the chart turns to Mb/s
    ASSERT_EQ(Perf().rateDivisor, 10000);
    Perf().BeginPerf("Lab");
    EXPECT_EQ(Perf().rateDivisor, 100);
    EXPECT_FALSE(Perf().MegabitScale());
    EXPECT_EQ(Perf().PeakRate(), 0);
    EXPECT_EQ(Perf().Destination(), "Corporate");
    EXPECT_EQ(engine->CountOf("GetConnectionNames"), 1);
    platform.Advance(1000);
    EXPECT_EQ(Perf().Duration.Caption(), "000:00:06");
}

TEST_F(PerfWindowTest, TheClockCarriesSecondsAndMinutes) {
    struct Case {
        int ticks;
        const char* text;
    };
    Begin();
    int done = 0;
    for (const Case c :
         {Case{1, "000:00:01"}, Case{59, "000:00:59"}, Case{60, "000:01:00"},
          Case{3599, "000:59:59"}, Case{3600, "001:00:00"}, Case{3661, "001:01:01"}}) {
        platform.Advance((c.ticks - done) * 1000);
        done = c.ticks;
        EXPECT_EQ(Perf().Duration.Caption(), c.text) << c.ticks << " ticks";
    }
}

struct RotationCase {
    bool left;
    std::vector<int> shown;
};

class RotationTest : public PerfWindowTest, public ::testing::WithParamInterface<RotationCase> {};

TEST_P(RotationTest, TheArrowsTurnThroughPanelsZeroToThreeOnly) {
    PerfPulldown& p = Perf();
    forms::Image& arrow = GetParam().left ? p.LeftBtn : p.RightBtn;
    for (const int expected : GetParam().shown) {
        const int before = p.CurrentPanel();
        arrow.UserClick();
        EXPECT_EQ(p.CurrentPanel(), expected);
        EXPECT_TRUE(p.CMPanel(expected).Visible());
        EXPECT_FALSE(p.CMPanel(before).Visible());
        EXPECT_EQ((std::pair{p.CMPanel(expected).Left(), p.CMPanel(expected).Top()}),
                  (std::pair{11, 42}));
    }
    EXPECT_EQ(p.CMPanel4.Left(), 216) << "packet loss never comes on show";
}

INSTANTIATE_TEST_SUITE_P(BothWays, RotationTest,
                         ::testing::Values(RotationCase{true, {1, 2, 3, 0, 1}},
                                           RotationCase{false, {3, 2, 1, 0, 3}}));

}  // namespace
}  // namespace kw::dialer::testing
