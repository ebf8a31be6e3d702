#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "dravlink/link_statistics.h"
#include "dravlink/simulator_fixture.h"
#include "platform/automation/failure.h"

namespace dravlink::testing {
namespace {

using kw::automation::CDbl;
using kw::automation::Failure;

// The figures of one second as the client reads them.
struct Figures {
    double rx, tx, vpnTx;
    Variant ispReceived, vpnReceived;
};

std::vector<Figures> Seconds(LinkProfile line, int seconds) {
    std::mt19937 random(20011);
    LinkStatistics statistics;
    statistics.SetLink(line);
    std::vector<Figures> run;
    for (int i = 0; i < seconds; ++i) {
        const auto [isp, vpn] = statistics.Tick(random, true);
        const SafeArray& a = isp.ToArray();
        const SafeArray& b = vpn.ToArray();
        run.push_back({CDbl(a.Get(3)), CDbl(a.Get(5)), CDbl(b.Get(3)), a.Get(2), b.Get(0)});
    }
    return run;
}

std::vector<double> Each(const std::vector<Figures>& run, double Figures::*figure) {
    std::vector<double> v;
    for (const Figures& s : run) v.push_back(s.*figure);
    return v;
}

// Each kind of line with its bytes a second at most: ten bits a byte over a modem.
const struct Line {
    const char* name;
    LinkProfile profile;
    double capacity;
} kLines[] = {{"modem", {28800, true, Traffic::Ordinary}, 2880},
              {"LAN", {10000000, false, Traffic::Ordinary}, 1250000}};
const LinkProfile kModem = kLines[0].profile;

TEST(LinkStatisticsTest, TheReceiveRateStaysWithinTheLineWithBurstsAndIdleMoments) {
    for (const Line& line : kLines) {
        SCOPED_TRACE(line.name);
        const auto rx = Each(Seconds(line.profile, 300), &Figures::rx);
        const auto [low, high] = std::minmax_element(rx.begin(), rx.end());
        EXPECT_LE(*high, line.capacity);
        EXPECT_GT(*high, 0.8 * line.capacity) << "bursts near the line's speed";
        EXPECT_LT(*low, 0.05 * line.capacity) << "idle moments";
    }
}

TEST(LinkStatisticsTest, TransmitComesNegativeAndSmallerThanReceive) {
    for (const Figures& s : Seconds(kModem, 120)) {
        EXPECT_LT(s.tx, 0);
        EXPECT_LT(s.vpnTx, 0);
        EXPECT_LT(-s.tx, s.rx + 50);
    }
}

// The client's chart goes to Mb/s when a rate passes 100000 bytes a second.
TEST(LinkStatisticsTest, AFastLineSwellsPastAMegabitAndFallsBack) {
    const auto rx = Each(Seconds({4000000, false, Traffic::Swells}, 120), &Figures::rx);
    for (std::size_t t = 0; t < rx.size(); ++t) {
        const bool high = t % 60 >= 10 && t % 60 < 30;
        EXPECT_EQ(rx[t] > 100000, high) << "second " << t << ": " << rx[t];
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

}  // namespace
}  // namespace dravlink::testing
