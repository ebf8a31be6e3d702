#pragma once

#include <cstdint>
#include <random>
#include <utility>

#include "platform/automation/variant.h"

namespace dravlink {

// How the traffic of a call runs.
enum class Traffic {
    Ordinary,  // browsing: bursts, steady transfers and idle moments within the line's speed
    Swells,    // a fast line whose load swells well past a megabit a second and falls back
    LongRun,   // a call whose byte counters are already near the top of a 32-bit number
};

// The line a call's counters run on.
struct LinkProfile {
    int bitsPerSecond = 0;
    bool modem = true;  // ten bits a byte on the wire, and the line errors of a telephone line
    Traffic traffic = Traffic::Ordinary;
};

// The counters of one call's link and tunnel, one second at a time, shaped like a real line: the
// rates follow the line's speed and the tunnel's headers, the load comes in bursts with idle
// moments between, the round trip grows with the queue, and a modem line loses the odd packet
// and shows CRC and framing errors. Transmit rates are delivered negative, as the client's chart
// draws them under its zero line. All chance comes from the random source given, so a seeded
// source gives the same call every time.
class LinkStatistics {
  public:
    // The two arrays a client unpacks: 12 figures of the link, 10 of the tunnel.
    using Report = std::pair<kw::automation::Variant, kw::automation::Variant>;

    // The line, at carrier; the counters go on where they are.
    void SetLink(const LinkProfile& profile);
    Report Tick(std::mt19937& random, bool tunnelUp);

  private:
    enum class Phase { Idle, Steady, Burst };
    struct Second {
        double rx = 0, tx = 0, vpnRx = 0, vpnTx = 0, rttMs = 0;
        std::int32_t loss = 0;
    };
    double Load(std::mt19937& random);
    void AddLink(std::mt19937& random, double load, Second& s);
    void AddTunnel(std::mt19937& random, double load, Second& s);
    kw::automation::Variant LinkArray(const Second& s) const;
    kw::automation::Variant TunnelArray(const Second& s) const;

    LinkProfile profile_;
    Phase phase_ = Phase::Idle;
    int phaseLeft_ = 0;
    int seconds_ = 0;
    // Bytes counted since carrier: beyond a 32-bit number on a long call.
    double ispRx_ = 0, ispTx_ = 0, vpnRx_ = 0, vpnTx_ = 0;
    std::int32_t crc_ = 0, framing_ = 0, hwOverrun_ = 0, bufOverrun_ = 0, alignment_ = 0,
                 timeouts_ = 0;
    std::int32_t ispFramesIn_ = 0, ispFramesOut_ = 0, vpnFramesIn_ = 0, vpnFramesOut_ = 0;
};

}  // namespace dravlink
