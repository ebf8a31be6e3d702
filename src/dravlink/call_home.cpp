#include "dravlink/call_home.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::SafeArray;
using kw::automation::Variant;

namespace {

// "2 min 05 sec" while minutes remain, "12 sec" in the last one.
std::string TimeLeftText(int seconds) {
    const int minutes = seconds / 60;
    const int rest = seconds % 60;
    if (minutes == 0) {
        return std::to_string(rest) + " sec";
    }
    return std::to_string(minutes) + " min " + (rest < 10 ? "0" : "") + std::to_string(rest) +
           " sec";
}

// "3.3 KB/sec", to a tenth.
std::string RateText(std::int32_t bytesPerSecond) {
    const int tenths = static_cast<int>(std::lround(bytesPerSecond * 10.0 / 1024));
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " KB/sec";
}

}  // namespace

void CallHomeTransfer::Start() {
    files_ = {File{"\\\\home\\ostvarra\\outbox\\addressbook.dat", 61440},
              File{"\\\\home\\ostvarra\\outbox\\virusdefs.pkg", 412672},
              File{"\\\\home\\ostvarra\\outbox\\policy.cfg", 9216}};
    fileCount_ = static_cast<int>(files_.size());
    fileNumber_ = 1;
}

Variant CallHomeTransfer::Advance(bool overLan) {
    File& f = files_.front();
    // A modem's line gives some 3.4 KB a second after the tunnel's overhead; a LAN, 64 KB.
    const std::int32_t rate = overLan ? 65536 : 3480;
    f.copied = std::min(f.size, f.copied + rate / kReportsPerSecond);
    const double percent = std::floor(1000.0 * f.copied / f.size) / 10.0;
    const int secondsLeft = (f.size - f.copied + rate - 1) / rate;

    auto a = SafeArray::OneDim(0, 8);
    a.Set(0, Variant(f.path));
    a.Set(1, Variant(static_cast<std::int32_t>(fileNumber_)));
    a.Set(2, Variant(static_cast<std::int32_t>(fileCount_)));
    a.Set(3, Variant(f.copied));
    a.Set(4, Variant(f.size));
    a.Set(5, Variant(TimeLeftText(secondsLeft)));
    a.Set(6, Variant(f.copied == f.size ? "Done" : "Receiving"));
    a.Set(7, Variant(percent));
    a.Set(8, Variant(RateText(rate)));
    if (f.copied == f.size) {
        files_.pop_front();
        ++fileNumber_;
    }
    return Variant(std::move(a));
}

}  // namespace dravlink
