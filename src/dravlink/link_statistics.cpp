#include "dravlink/link_statistics.h"

#include <algorithm>
#include <cmath>

#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::SafeArray;
using kw::automation::Variant;

namespace {

constexpr double kTop32 = 2147483647.0;
// The tunnel's own headers in every packet: outer IP, UDP and the encapsulation.
constexpr double kTunnelHeader = 58;
// A long-run call starts this far below the top of a 32-bit counter.
constexpr double kLongRunHeadroom = 6000;

double Mtu(const LinkProfile& line) {
    return line.modem ? 576 : 1500;
}

// Bytes a second the line can carry at most.
double Capacity(const LinkProfile& line) {
    return line.bitsPerSecond / (line.modem ? 10.0 : 8.0);
}

// A counter as the engine delivers it: a long while it fits, a double once it does not.
Variant Counter(double bytes) {
    if (bytes <= kTop32) {
        return Variant(static_cast<std::int32_t>(bytes));
    }
    return Variant(std::floor(bytes));
}

bool Chance(std::mt19937& random, double p) {
    return std::bernoulli_distribution(std::clamp(p, 0.0, 1.0))(random);
}

}  // namespace

void LinkStatistics::SetLink(const LinkProfile& profile) {
    profile_ = profile;
    if (profile.traffic == Traffic::LongRun && ispRx_ < kTop32 - kLongRunHeadroom) {
        ispRx_ = kTop32 - kLongRunHeadroom;
        ispTx_ = kTop32 - 40 * kLongRunHeadroom;
        vpnRx_ = kTop32 - 2 * kLongRunHeadroom;
        vpnTx_ = kTop32 - 50 * kLongRunHeadroom;
    }
}

LinkStatistics::Report LinkStatistics::Tick(std::mt19937& random, bool tunnelUp) {
    Second s;
    const double load = Load(random);
    AddLink(random, load, s);
    if (tunnelUp) {
        AddTunnel(random, load, s);
    }
    ++seconds_;
    return {LinkArray(s), TunnelArray(s)};
}

// The share of the line in use this second. Browsing goes in phases of a few seconds each; the
// swelling line rises past a megabit for twenty seconds of every minute, ten seconds in.
double LinkStatistics::Load(std::mt19937& random) {
    std::uniform_real_distribution<double> jitter(0.85, 1.12);
    if (profile_.traffic == Traffic::Swells) {
        const bool high = seconds_ % 60 >= 10 && seconds_ % 60 < 30;
        return (high ? 0.6 : 0.04) * jitter(random);
    }
    if (phaseLeft_ <= 0) {
        const int roll = std::uniform_int_distribution<int>(0, 99)(random);
        phase_ = roll < 25 ? Phase::Idle : roll < 75 ? Phase::Steady : Phase::Burst;
        phaseLeft_ = std::uniform_int_distribution<int>(2, phase_ == Phase::Steady ? 8 : 4)(random);
    }
    --phaseLeft_;
    switch (phase_) {
        case Phase::Idle:
            return std::uniform_real_distribution<double>(0.005, 0.04)(random);
        case Phase::Steady:
            return std::uniform_real_distribution<double>(0.25, 0.55)(random);
        case Phase::Burst:
            break;
    }
    return std::min(0.97, 0.9 * jitter(random));
}

void LinkStatistics::AddLink(std::mt19937& random, double load, Second& s) {
    // Downloads dominate; what goes out is mostly the acknowledgements of what came in.
    s.rx = Capacity(profile_) * load;
    s.tx = s.rx * std::uniform_real_distribution<double>(0.06, 0.14)(random) + 40;
    ispRx_ += s.rx;
    ispTx_ += s.tx;
    const double packet = Mtu(profile_) * 0.7;
    ispFramesIn_ += static_cast<std::int32_t>(std::ceil(s.rx / packet));
    ispFramesOut_ += static_cast<std::int32_t>(std::ceil(s.tx / 90));
    if (profile_.modem) {
        // A busier line shows more of its noise.
        crc_ += Chance(random, 0.03 + 0.08 * load) ? 1 : 0;
        framing_ += Chance(random, 0.01 + 0.03 * load) ? 1 : 0;
        hwOverrun_ += Chance(random, load > 0.8 ? 0.02 : 0.0) ? 1 : 0;
        bufOverrun_ += Chance(random, load > 0.8 ? 0.01 : 0.0) ? 1 : 0;
        timeouts_ += Chance(random, 0.004) ? 1 : 0;
    } else {
        alignment_ += Chance(random, 0.002) ? 1 : 0;
    }
}

void LinkStatistics::AddTunnel(std::mt19937& random, double load, Second& s) {
    // The tunnel's payload is what the link carried less the tunnel's headers.
    const double payload = (Mtu(profile_) - kTunnelHeader) / Mtu(profile_);
    s.vpnRx = s.rx * payload;
    s.vpnTx = s.tx * payload;
    vpnRx_ += s.vpnRx;
    vpnTx_ += s.vpnTx;
    const auto packets = static_cast<int>(std::ceil(s.vpnRx / (Mtu(profile_) * 0.7)));
    vpnFramesIn_ += packets;
    vpnFramesOut_ += static_cast<std::int32_t>(std::ceil(s.vpnTx / 90));
    const double lossRate = profile_.modem ? 0.002 + 0.01 * load : 0.0004;
    s.loss = std::binomial_distribution<int>(packets, lossRate)(random);

    // The round trip: the line's own delay, the queue a busy line builds, jitter, and now and
    // then a stall.
    const double base = profile_.modem ? 140 : 9;
    const double queue = load * Mtu(profile_) * 8 * 3 / profile_.bitsPerSecond * 1000;
    const double spread = profile_.modem ? 18 : 1.5;
    double rtt = base + queue + std::normal_distribution<double>(0, spread)(random);
    if (Chance(random, 0.03)) {
        rtt += profile_.modem ? 600 : 40;
    }
    s.rttMs = std::max(base * 0.8, rtt);
}

Variant LinkStatistics::LinkArray(const Second& s) const {
    auto isp = SafeArray::OneDim(0, 11);
    isp.Set(0, Variant(alignment_));
    isp.Set(1, Variant(bufOverrun_));
    isp.Set(2, Counter(ispRx_));
    isp.Set(3, Variant(std::round(s.rx)));
    isp.Set(4, Counter(ispTx_));
    isp.Set(5, Variant(-std::round(s.tx)));
    isp.Set(6, Variant(crc_));
    isp.Set(7, Variant(framing_));
    isp.Set(8, Variant(hwOverrun_));
    isp.Set(9, Variant(timeouts_));
    isp.Set(10, Variant(ispFramesIn_));
    isp.Set(11, Variant(ispFramesOut_));
    return Variant(std::move(isp));
}

Variant LinkStatistics::TunnelArray(const Second& s) const {
    auto vpn = SafeArray::OneDim(0, 9);
    vpn.Set(0, Counter(vpnRx_));
    vpn.Set(1, Variant(std::round(s.vpnRx)));
    vpn.Set(2, Counter(vpnTx_));
    vpn.Set(3, Variant(-std::round(s.vpnTx)));
    vpn.Set(4, Variant(s.loss));
    vpn.Set(5, Variant(std::round(s.rttMs)));
    vpn.Set(6, Variant(vpnFramesOut_));
    vpn.Set(7, Variant(vpnFramesIn_));
    vpn.Set(8, Variant(std::int32_t{0}));
    vpn.Set(9, Variant(std::int32_t{0}));
    return Variant(std::move(vpn));
}

}  // namespace dravlink
