// The statistics record: the two lists of the engine's event unpacked into counters and the next
// point of each chart, what a bad element keeps, and the divisor of the rates.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "perf_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;

class StatisticsRecordTest : public PerfTest {
  protected:
    void SetUp() override {
        PerfTest::SetUp();
        Begin();
    }
    // Every field set to a value of its own, so that a later sample shows what it changed.
    void SendEarlier() {
        std::map<int, Variant> isp;
        for (int i = 0; i < 12; ++i) {
            isp[i] = Variant(std::int32_t{100 + i});
        }
        std::map<int, Variant> vpn;
        for (int i = 0; i < 10; ++i) {
            vpn[i] = Variant(std::int32_t{200 + i});
        }
        Send(Isp(isp), Vpn(vpn));
    }
};

TEST_F(StatisticsRecordTest, TheArraysHaveOneElementMoreThanTheirChartHasSeries) {
    EXPECT_EQ(Stats().rateData().ToArray().UBound(), 4);
    EXPECT_EQ(Stats().netData().ToArray().UBound(), 1);
    EXPECT_EQ(Stats().pktData().ToArray().UBound(), 1);
    EXPECT_EQ(Stats().pktData().ToArray().Get(0).Type(), automation::VarType::Long);
}

TEST_F(StatisticsRecordTest, EveryElementLandsInItsField) {
    SendEarlier();
    const CstatInfo& s = Stats();
    EXPECT_EQ(s.Alignment(), 100);
    EXPECT_EQ(s.Buffovrun(), 101);
    EXPECT_EQ(s.IspByteRcv(), 102);
    EXPECT_DOUBLE_EQ(s.Rates()[0], 1.03);
    EXPECT_EQ(s.IspByteSent(), 104);
    EXPECT_DOUBLE_EQ(s.Rates()[1], 1.05);
    EXPECT_EQ(s.CRC(), 106);
    EXPECT_EQ(s.Framing(), 107);
    EXPECT_EQ(s.HWOverrun(), 108);
    EXPECT_EQ(s.Timeout(), 109);
    EXPECT_EQ(s.VpnByteRcv(), 200);
    EXPECT_DOUBLE_EQ(s.Rates()[2], 2.01);
    EXPECT_EQ(s.VpnByteSent(), 202);
    EXPECT_DOUBLE_EQ(s.Rates()[3], 2.03);
    EXPECT_EQ(s.Packets()[0], 204);
    EXPECT_DOUBLE_EQ(s.Net()[0], 0.205);
    // The tunnel's crossed frame pair comes last and stands.
    EXPECT_EQ(s.FrameOut(), 206);
    EXPECT_EQ(s.FrameIn(), 207);
}

// Which fields a sample of zeros changes after SendEarlier: ISP elements 4 to 6, 7 and after,
// the tunnel's.
struct WalkCase {
    const char* behaviour;
    std::function<Variant()> isp;
    std::function<Variant()> vpn;
    bool ispFrom4To6Changed;
    bool ispFrom7Changed;
    bool tunnelChanged;
};

class FailureWalkTest : public StatisticsRecordTest,
                        public ::testing::WithParamInterface<WalkCase> {};

TEST_P(FailureWalkTest, EarlierElementsStayAndTheTunnelListStillCounts) {
    SendEarlier();
    const WalkCase& c = GetParam();
    Send(c.isp(), c.vpn());
    const CstatInfo& s = Stats();
    EXPECT_EQ(s.IspByteSent() == 0, c.ispFrom4To6Changed) << c.behaviour;
    EXPECT_EQ(s.CRC() == 0, c.ispFrom4To6Changed) << c.behaviour;
    EXPECT_EQ(s.Framing() == 0, c.ispFrom7Changed) << c.behaviour;
    EXPECT_EQ(s.Timeout() == 0, c.ispFrom7Changed) << c.behaviour;
    EXPECT_EQ(s.VpnByteRcv() == 0, c.tunnelChanged) << c.behaviour;
    EXPECT_EQ(s.Packets()[0] == 0, c.tunnelChanged) << c.behaviour;
    EXPECT_EQ(s.FrameIn() == 0, c.tunnelChanged || c.ispFrom7Changed) << c.behaviour;
}

INSTANTIATE_TEST_SUITE_P(
    Lists, FailureWalkTest,
    ::testing::Values(WalkCase{"both complete", [] { return Isp(); }, [] { return Vpn(); }, true,
                               true, true},
                      WalkCase{"an empty ISP list", [] { return Variant(); }, [] { return Vpn(); },
                               false, false, true},
                      WalkCase{"an ISP list of 7", [] { return StatList(7, {}); },
                               [] { return Vpn(); }, true, false, true},
                      WalkCase{"14 ISP elements, the last two junk",
                               [] {
                                   return StatList(14, {{12, Variant("x")}, {13, Variant(9e99)}});
                               },
                               [] { return Vpn(); }, true, true, true},
                      WalkCase{"element 7 not a number",
                               [] {
                                   return Isp({{7, Variant("n/a")}});
                               },
                               [] { return Vpn(); }, true, false, true},
                      WalkCase{"a byte count past 32 bits ends the ISP walk",
                               [] {
                                   return Isp({{2, Variant(3.0e9)}});
                               },
                               [] { return Vpn(); }, false, false, true},
                      WalkCase{"an ISP value that is no list", [] { return Variant("stats"); },
                               [] { return Vpn(); }, false, false, true},
                      WalkCase{"an empty tunnel list", [] { return Isp(); },
                               [] { return Variant(); }, true, true, false}));

TEST_F(StatisticsRecordTest, ABadTunnelElementKeepsTheEarlierTunnelFields) {
    SendEarlier();
    Send(Isp(), Vpn({{2, Variant("?")}}));
    EXPECT_EQ(Stats().VpnByteRcv(), 0);
    EXPECT_EQ(Stats().VpnByteSent(), 202);
    EXPECT_EQ(Stats().Packets()[0], 204);
}

TEST_F(StatisticsRecordTest, RatesAreDividedByTheDivisorOfTheMoment) {
    struct Case {
        std::int16_t divisor;
        double expected;
    };
    for (const Case c : {Case{100, 25}, Case{10000, 0.25}}) {
        Perf().rateDivisor = c.divisor;
        Send(Isp({{3, Variant(2500.0)}}), Vpn({{1, Variant(2500.0)}}));
        EXPECT_DOUBLE_EQ(Stats().Rates()[0], c.expected) << c.divisor;
        EXPECT_DOUBLE_EQ(Stats().Rates()[2], c.expected) << c.divisor;
    }
}

TEST_F(StatisticsRecordTest, TransmitRatesKeepTheEnginesSign) {
    Send(Isp({{5, Variant(-4000.0)}}), Vpn({{3, Variant(700.0)}}));
    EXPECT_DOUBLE_EQ(Stats().Rates()[1], -40);
    EXPECT_DOUBLE_EQ(Stats().Rates()[3], 7);
}

}  // namespace
}  // namespace kw::dialer::testing
