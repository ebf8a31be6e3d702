#include "client/ui/dialer/performance/cstat_info.h"

#include "client/ui/dialer/performance/perf_pulldown.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer {

using automation::Failure;
using automation::SafeArray;
using automation::Variant;

namespace {

std::size_t Slots(const forms::Chart& chart) {
    return static_cast<std::size_t>(chart.SeriesCount()) + 1;
}

template <class T>
Variant ToVariantArray(const std::vector<T>& values) {
    SafeArray array = SafeArray::OneDim(0, static_cast<std::int32_t>(values.size()) - 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        array.Set(static_cast<std::int32_t>(i), Variant(values[i]));
    }
    return Variant::FromArray(std::move(array));
}

// Walks 0 to the list's upper bound (taken as a 16-bit number), element by element.
template <class Handle>
void Walk(const Variant& list, Handle handle) {
    if (list.IsEmpty()) {
        return;
    }
    const std::int16_t upper = automation::CInt(Variant(list.ToArray().UBound()));
    for (int i = 0; i <= upper; ++i) {
        handle(i, list.ToArray().Get(i));
    }
}

// An element past what the charts made room for fails as a subscript would.
template <class T>
T& Element(std::vector<T>& values, std::size_t index) {
    if (index >= values.size()) {
        throw Failure(automation::err::kSubscriptOutOfRange);
    }
    return values[index];
}

}  // namespace

CstatInfo::CstatInfo(PerfPulldown& perf)
    : perf_(perf),
      rateData_(Slots(perf.RateChart), 0.0),
      netData_(Slots(perf.iNetHealth), 0.0),
      pktData_(Slots(perf.PktLoss), 0) {}

Variant CstatInfo::pktData() const {
    return ToVariantArray(pktData_);
}

Variant CstatInfo::netData() const {
    return ToVariantArray(netData_);
}

Variant CstatInfo::rateData() const {
    return ToVariantArray(rateData_);
}

// The divisor is read afresh at every rate: the chart may have changed its unit meanwhile.
double CstatInfo::Rate(const Variant& value) const {
    return value.ToDouble() / perf_.rateDivisor;
}

void CstatInfo::IspElement(int index, const Variant& value) {
    switch (index) {
        case 0:
            alignment_ = value.ToLong();
            break;
        case 1:
            buffovrun_ = value.ToLong();
            break;
        case 2:
            ispByteRcv_ = value.ToLong();
            break;
        case 3:
            Element(rateData_, 0) = Rate(value);
            break;
        case 4:
            ispByteSent_ = value.ToLong();
            break;
        case 5:
            Element(rateData_, 1) = Rate(value);
            break;
        case 6:
            crc_ = value.ToLong();
            break;
        case 7:
            framing_ = value.ToLong();
            break;
        case 8:
            hwOverrun_ = value.ToLong();
            break;
        case 9:
            timeout_ = value.ToLong();
            break;
        case 10:
            frameIn_ = value.ToLong();
            break;
        case 11:
            frameOut_ = value.ToLong();
            break;
        default:
            break;
    }
}

// The tunnel gives its frame pair in the other order: frames out first.
void CstatInfo::VpnElement(int index, const Variant& value) {
    switch (index) {
        case 0:
            vpnByteRcv_ = value.ToLong();
            break;
        case 1:
            Element(rateData_, 2) = Rate(value);
            break;
        case 2:
            vpnByteSent_ = value.ToLong();
            break;
        case 3:
            Element(rateData_, 3) = Rate(value);
            break;
        case 4:
            Element(pktData_, 0) = value.ToLong();
            break;
        case 5:
            Element(netData_, 0) = value.ToDouble() / 1000;
            break;
        case 6:
            frameOut_ = value.ToLong();
            break;
        case 7:
            frameIn_ = value.ToLong();
            break;
        default:
            break;
    }
}

void CstatInfo::processStatistics(const Variant& vpnStats, const Variant& ispStats) {
    try {
        Walk(ispStats, [this](int i, const Variant& v) { IspElement(i, v); });
    } catch (const Failure&) {
        // The earlier ISP fields stand; the tunnel's list still counts.
    }
    try {
        Walk(vpnStats, [this](int i, const Variant& v) { VpnElement(i, v); });
    } catch (const Failure&) {
        // The earlier tunnel fields stand.
    }
}

}  // namespace kw::dialer
