#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/automation/variant.h"

namespace kw::dialer {

class PerfPulldown;

// The last statistics sample of the live connection: the counters by name and the next point of
// each chart. A snapshot, not a history: each sample overwrites it.
class CstatInfo {
  public:
    // The chart arrays take one element more than their chart has series.
    explicit CstatInfo(PerfPulldown& perf);

    automation::Variant pktData() const;
    automation::Variant netData() const;
    automation::Variant rateData() const;

    std::string conName;
    std::string devName;

    std::int32_t Timeout() const { return timeout_; }
    std::int32_t HWOverrun() const { return hwOverrun_; }
    std::int32_t FrameOut() const { return frameOut_; }
    std::int32_t FrameIn() const { return frameIn_; }
    std::int32_t Buffovrun() const { return buffovrun_; }
    std::int32_t Alignment() const { return alignment_; }
    std::int32_t Framing() const { return framing_; }
    std::int32_t CRC() const { return crc_; }
    std::int32_t VpnByteRcv() const { return vpnByteRcv_; }
    std::int32_t VpnByteSent() const { return vpnByteSent_; }
    std::int32_t IspByteRcv() const { return ispByteRcv_; }
    std::int32_t IspByteSent() const { return ispByteSent_; }

    // Unpacks one sample. A value that is no number ends the walk of its list; what came before
    // it stays, and a bad ISP list still lets the tunnel list through. Nothing fails outward.
    void processStatistics(const automation::Variant& vpnStats,
                           const automation::Variant& ispStats);

    // The arrays without the copy the variant reads make.
    const std::vector<double>& Rates() const { return rateData_; }
    const std::vector<double>& Net() const { return netData_; }
    const std::vector<std::int32_t>& Packets() const { return pktData_; }

  private:
    void IspElement(int index, const automation::Variant& value);
    void VpnElement(int index, const automation::Variant& value);
    double Rate(const automation::Variant& value) const;

    PerfPulldown& perf_;
    std::int32_t ispByteSent_ = 0;
    std::int32_t ispByteRcv_ = 0;
    std::int32_t vpnByteSent_ = 0;
    std::int32_t vpnByteRcv_ = 0;
    std::int32_t crc_ = 0;
    std::int32_t framing_ = 0;
    std::int32_t alignment_ = 0;
    std::int32_t buffovrun_ = 0;
    std::int32_t frameIn_ = 0;
    std::int32_t frameOut_ = 0;
    std::int32_t hwOverrun_ = 0;
    std::int32_t timeout_ = 0;
    std::vector<double> rateData_;
    std::vector<double> netData_;
    std::vector<std::int32_t> pktData_;
};

}  // namespace kw::dialer
