#pragma once

#include <cstdint>
#include <random>
#include <utility>

#include "platform/automation/variant.h"

namespace dravlink {

// The counters of one call's link and tunnel. Each tick adds a second of traffic with some
// jitter, and line errors on a modem, so that the client's charts look like a real line.
class LinkStatistics {
  public:
    // The two arrays a client unpacks: 12 figures of the link, 10 of the tunnel.
    using Report = std::pair<kw::automation::Variant, kw::automation::Variant>;

    Report Tick(std::mt19937& random, bool modem, bool tunnelUp);

  private:
    struct Second {
        double rx = 0, tx = 0, vpnRx = 0, vpnTx = 0, rttMs = 0;
        std::int32_t loss = 0;
    };
    void AddLink(std::mt19937& random, bool modem, Second& s);
    void AddTunnel(std::mt19937& random, bool modem, Second& s);
    kw::automation::Variant LinkArray(const Second& s) const;
    kw::automation::Variant TunnelArray(const Second& s) const;

    double ispRx_ = 0, ispTx_ = 0, vpnRx_ = 0, vpnTx_ = 0;
    std::int32_t crc_ = 0, framing_ = 0, hwOverrun_ = 0, bufOverrun_ = 0, alignment_ = 0,
                 timeouts_ = 0;
    std::int32_t ispFramesIn_ = 0, ispFramesOut_ = 0, vpnFramesIn_ = 0, vpnFramesOut_ = 0;
};

}  // namespace dravlink
