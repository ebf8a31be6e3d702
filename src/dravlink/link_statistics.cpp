#include "dravlink/link_statistics.h"

#include <cmath>

#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::SafeArray;
using kw::automation::Variant;

LinkStatistics::Report LinkStatistics::Tick(std::mt19937& random, bool modem, bool tunnelUp) {
    Second s;
    AddLink(random, modem, s);
    if (tunnelUp) {
        AddTunnel(random, modem, s);
    }
    return {LinkArray(s), TunnelArray(s)};
}

void LinkStatistics::AddLink(std::mt19937& random, bool modem, Second& s) {
    std::uniform_real_distribution<double> jitter(0.75, 1.15);
    std::uniform_int_distribution<int> dice(0, 99);
    // A 28.8k modem moves about 3 KB/s down at best; a LAN far more.
    s.rx = modem ? 2900.0 * jitter(random) : 180000.0 * jitter(random);
    s.tx = modem ? 420.0 * jitter(random) : 24000.0 * jitter(random);
    ispRx_ += s.rx;
    ispTx_ += s.tx;
    ispFramesIn_ += static_cast<std::int32_t>(s.rx / 120);
    ispFramesOut_ += static_cast<std::int32_t>(s.tx / 90);
    if (modem) {
        crc_ += dice(random) < 6 ? 1 : 0;
        framing_ += dice(random) < 2 ? 1 : 0;
        hwOverrun_ += dice(random) < 1 ? 1 : 0;
        bufOverrun_ += dice(random) < 1 ? 1 : 0;
        timeouts_ += dice(random) < 1 ? 1 : 0;
    }
}

void LinkStatistics::AddTunnel(std::mt19937& random, bool modem, Second& s) {
    std::uniform_int_distribution<int> dice(0, 99);
    // The tunnel carries a little less than the link: its own headers take the rest.
    s.vpnRx = s.rx * 0.91;
    s.vpnTx = s.tx * 0.88;
    vpnRx_ += s.vpnRx;
    vpnTx_ += s.vpnTx;
    vpnFramesIn_ += static_cast<std::int32_t>(s.vpnRx / 120);
    vpnFramesOut_ += static_cast<std::int32_t>(s.vpnTx / 90);
    s.loss = modem ? (dice(random) < 15 ? 1 + dice(random) % 3 : 0) : 0;
    s.rttMs = modem ? 180.0 + dice(random) * 1.6 : 12.0 + dice(random) * 0.2;
}

Variant LinkStatistics::LinkArray(const Second& s) const {
    auto isp = SafeArray::OneDim(0, 11);
    isp.Set(0, Variant(alignment_));
    isp.Set(1, Variant(bufOverrun_));
    isp.Set(2, Variant(static_cast<std::int32_t>(ispRx_)));
    isp.Set(3, Variant(std::round(s.rx)));
    isp.Set(4, Variant(static_cast<std::int32_t>(ispTx_)));
    isp.Set(5, Variant(-std::round(s.tx)));  // transmit below the zero line
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
    vpn.Set(0, Variant(static_cast<std::int32_t>(vpnRx_)));
    vpn.Set(1, Variant(std::round(s.vpnRx)));
    vpn.Set(2, Variant(static_cast<std::int32_t>(vpnTx_)));
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
