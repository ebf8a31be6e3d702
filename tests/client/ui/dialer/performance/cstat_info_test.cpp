// The statistics record: the two lists of the engine's event unpacked into counters and the next
// point of each chart, what a bad element keeps, and the divisor of the rates.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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
        std::map<int, Variant> vpn;
        for (int i = 0; i < 12; ++i) {
            isp[i] = Variant(std::int32_t{100 + i});
            vpn[i] = Variant(std::int32_t{200 + i});
        }
        Send(Isp(isp), Vpn(vpn));
    }
};

TEST_F(StatisticsRecordTest, EveryElementLandsInItsField) {
    SendEarlier();
    const CstatInfo& s = Stats();
    EXPECT_EQ(
        (std::vector<std::int32_t>{s.Alignment(), s.Buffovrun(), s.IspByteRcv(), s.IspByteSent(),
                                   s.CRC(), s.Framing(), s.HWOverrun(), s.Timeout()}),
        (std::vector<std::int32_t>{100, 101, 102, 104, 106, 107, 108, 109}));
    // The tunnel's crossed frame pair comes last and stands.
    EXPECT_EQ((std::vector<std::int32_t>{s.VpnByteRcv(), s.VpnByteSent(), s.Packets()[0],
                                         s.FrameOut(), s.FrameIn()}),
              (std::vector<std::int32_t>{200, 202, 204, 206, 207}));
    EXPECT_EQ(
        (std::vector<double>{s.Rates()[0], s.Rates()[1], s.Rates()[2], s.Rates()[3], s.Net()[0]}),
        (std::vector<double>{1.03, 1.05, 2.01, 2.03, 0.205}));
}

// After SendEarlier, a sample of zeros: which fields it changes when a list is short or bad.
TEST_F(StatisticsRecordTest, ABadElementKeepsTheLaterOnesOfItsListAndTheOtherListStillCounts) {
    const struct {
        const char* behaviour;
        Variant isp;
        Variant vpn;
        bool ispFrom4To6Changed;
        bool ispFrom7Changed;
        bool tunnelFrom0To1Changed;
        bool tunnelFrom2Changed;
    } cases[] = {
        {"both complete", Isp(), Vpn(), true, true, true, true},
        {"an empty ISP list", Variant(), Vpn(), false, false, true, true},
        {"an ISP list of 7", StatList(7, {}), Vpn(), true, false, true, true},
        {"14 ISP elements, the last two junk",
         StatList(14, {{12, Variant("x")}, {13, Variant(9e99)}}), Vpn(), true, true, true, true},
        {"element 7 not a number", Isp({{7, Variant("n/a")}}), Vpn(), true, false, true, true},
        {"a byte count past 32 bits ends the ISP walk", Isp({{2, Variant(3.0e9)}}), Vpn(), false,
         false, true, true},
        {"an ISP value that is no list", Variant("stats"), Vpn(), false, false, true, true},
        {"an empty tunnel list", Isp(), Variant(), true, true, false, false},
        {"tunnel element 2 not a number", Isp(), Vpn({{2, Variant("?")}}), true, true, true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.behaviour);
        SendEarlier();
        Send(c.isp, c.vpn);
        const CstatInfo& s = Stats();
        EXPECT_EQ(s.IspByteSent() == 0, c.ispFrom4To6Changed);
        EXPECT_EQ(s.CRC() == 0, c.ispFrom4To6Changed);
        EXPECT_EQ(s.Framing() == 0, c.ispFrom7Changed);
        EXPECT_EQ(s.Timeout() == 0, c.ispFrom7Changed);
        EXPECT_EQ(s.VpnByteRcv() == 0, c.tunnelFrom0To1Changed);
        EXPECT_EQ(s.VpnByteSent() == 0, c.tunnelFrom2Changed);
        EXPECT_EQ(s.Packets()[0] == 0, c.tunnelFrom2Changed);
        EXPECT_EQ(s.FrameIn() == 0, c.tunnelFrom2Changed || c.ispFrom7Changed);
    }
}

}  // namespace
}  // namespace kw::dialer::testing
