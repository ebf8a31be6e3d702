#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "dravlink/link_statistics.h"
#include "dravlink/simulator_fixture.h"
#include "platform/automation/failure.h"

namespace dravlink::testing {
namespace {

using kw::automation::CDbl;
using kw::automation::CLng;
using kw::automation::Failure;

// The figures of one second as the client reads them.
struct Figures {
    double rx, tx, vpnRx, vpnTx, rttMs;
    int loss, crc, framing;
    Variant ispReceived, vpnReceived;
};

std::vector<Figures> Seconds(LinkProfile line, int seconds, bool tunnelUp = true) {
    std::mt19937 random(20011);
    LinkStatistics statistics;
    statistics.SetLink(line);
    std::vector<Figures> run;
    for (int i = 0; i < seconds; ++i) {
        const auto [isp, vpn] = statistics.Tick(random, tunnelUp);
        const SafeArray& a = isp.ToArray();
        const SafeArray& b = vpn.ToArray();
        run.push_back({CDbl(a.Get(3)), CDbl(a.Get(5)), CDbl(b.Get(1)), CDbl(b.Get(3)),
                       CDbl(b.Get(5)), CLng(b.Get(4)), CLng(a.Get(6)), CLng(a.Get(7)), a.Get(2),
                       b.Get(0)});
    }
    return run;
}

const LinkProfile kModem{28800, true, Traffic::Ordinary};
const LinkProfile kLan{10000000, false, Traffic::Ordinary};

template <class F>
std::vector<double> Each(const std::vector<Figures>& run, F f) {
    std::vector<double> v;
    for (const Figures& s : run) {
        v.push_back(f(s));
    }
    return v;
}

TEST(LinkStatisticsTest, TheReceiveRateFollowsTheLineWithBurstsAndIdleMoments) {
    for (const LinkProfile& line : {kModem, kLan}) {
        const double capacity = line.bitsPerSecond / (line.modem ? 10.0 : 8.0);
        const auto rx = Each(Seconds(line, 300), [](const Figures& s) { return s.rx; });
        const auto [low, high] = std::minmax_element(rx.begin(), rx.end());
        EXPECT_LE(*high, capacity) << line.bitsPerSecond;
        EXPECT_GT(*high, 0.8 * capacity) << "bursts near the line's speed";
        EXPECT_LT(*low, 0.05 * capacity) << "idle moments";
        const auto busy =
            std::count_if(rx.begin(), rx.end(), [&](double r) { return r > 0.2 * capacity; });
        EXPECT_GT(busy, 100) << "mostly in use";
    }
}

TEST(LinkStatisticsTest, TransmitComesNegativeAndSmallerThanReceive) {
    for (const Figures& s : Seconds(kModem, 120)) {
        EXPECT_LT(s.tx, 0);
        EXPECT_LT(s.vpnTx, 0);
        EXPECT_LT(-s.tx, s.rx + 50);
    }
}

TEST(LinkStatisticsTest, TheTunnelCarriesTheLinkLessItsHeaders) {
    const struct {
        LinkProfile line;
        double payload;
    } cases[] = {{kModem, (576 - 58) / 576.0}, {kLan, (1500 - 58) / 1500.0}};
    for (const auto& c : cases) {
        for (const Figures& s : Seconds(c.line, 60)) {
            EXPECT_NEAR(s.vpnRx, s.rx * c.payload, 1.0) << c.line.bitsPerSecond;
        }
    }
    for (const Figures& s : Seconds(kModem, 10, false)) {
        EXPECT_EQ(s.vpnRx, 0) << "no tunnel, nothing through it";
    }
}

TEST(LinkStatisticsTest, TheRoundTripJittersAroundTheLinesDelay) {
    const struct {
        LinkProfile line;
        double low, typicalHigh;
    } cases[] = {{kModem, 100, 400}, {kLan, 5, 40}};
    for (const auto& c : cases) {
        const auto rtt = Each(Seconds(c.line, 300), [](const Figures& s) { return s.rttMs; });
        std::vector<double> sorted = rtt;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_GE(sorted.front(), c.low) << c.line.bitsPerSecond;
        EXPECT_LT(sorted[sorted.size() / 2], c.typicalHigh) << c.line.bitsPerSecond;
        EXPECT_GT(sorted.back(), sorted[sorted.size() / 2] * 1.5) << "now and then a stall";
        EXPECT_GT(sorted[sorted.size() * 9 / 10] - sorted[sorted.size() / 10], 0.1 * c.low)
            << "jitter";
    }
}

TEST(LinkStatisticsTest, AModemLineLosesTheOddPacketAndCountsLineErrors) {
    const auto run = Seconds(kModem, 300);
    const auto lossy =
        std::count_if(run.begin(), run.end(), [](const Figures& s) { return s.loss > 0; });
    EXPECT_GT(lossy, 3);
    EXPECT_LT(lossy, 150) << "occasional, not constant";
    EXPECT_GT(run.back().crc, 5);
    EXPECT_GT(run.back().framing, 1);
    EXPECT_GE(run.back().crc, run[150].crc) << "counters only grow";

    const auto lan = Seconds(kLan, 300);
    EXPECT_EQ(lan.back().crc, 0);
    EXPECT_EQ(lan.back().framing, 0);
}

// The client's chart goes to Mb/s when a rate passes 100000 bytes a second.
TEST(LinkStatisticsTest, AFastLineSwellsPastAMegabitAndFallsBack) {
    const auto rx = Each(Seconds({4000000, false, Traffic::Swells}, 120),
                         [](const Figures& s) { return s.rx; });
    for (int t = 0; t < 120; ++t) {
        const bool high = t % 60 >= 10 && t % 60 < 30;
        if (high) {
            EXPECT_GT(rx[static_cast<std::size_t>(t)], 100000) << "second " << t;
        } else {
            EXPECT_LT(rx[static_cast<std::size_t>(t)], 100000) << "second " << t;
        }
    }
}

TEST(LinkStatisticsTest, ALongCallsCountersOutgrowALong) {
    const auto run = Seconds({28800, true, Traffic::LongRun}, 120);
    EXPECT_TRUE(run.front().ispReceived.IsNumeric() &&
                run.front().ispReceived.ToLong() > 2147483647 - 10000);
    const auto passed = std::find_if(run.begin(), run.end(), [](const Figures& s) {
        return CDbl(s.ispReceived) > 2147483647.0;
    });
    ASSERT_NE(passed, run.end()) << "the counter passes 2^31 within two minutes";
    EXPECT_THROW(passed->ispReceived.ToLong(), Failure) << "the client's conversion fails";
    EXPECT_GT(CDbl(run.back().vpnReceived), 2147483647.0);
}

// ---- through the engine --------------------------------------------------------------------

const std::string kLab = "Engineering Lab";

// The fast line's scenario gives the call its speed and the traffic that swells past a megabit.
TEST_F(SimulatorTest, AFastLinkCallRunsAtItsSpeedAndItsRatesCrossIntoMegabitsAndBack) {
    Start("fast-link");
    Call(kLab, 70000);
    std::string destination, device;
    ASSERT_TRUE(kw::automation::CBool(engine_->GetConnectionNames(destination, device)));
    EXPECT_EQ(CLng(engine_->GetLinkSpeed(device)), 4000000);
    std::vector<bool> fast;
    for (const auto& [isp, vpn] : sink_.stats) fast.push_back(CDbl(isp.ToArray().Get(3)) > 100000);
    EXPECT_NE(std::find(std::find(fast.begin(), fast.end(), true), fast.end(), false), fast.end());
}

}  // namespace
}  // namespace dravlink::testing
