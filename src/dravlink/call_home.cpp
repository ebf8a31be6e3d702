#include "dravlink/call_home.h"

#include <algorithm>
#include <cmath>

#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::SafeArray;
using kw::automation::Variant;

void CallHomeTransfer::Start() {
    files_ = {File{"\\\\home\\ostvarra\\outbox\\addressbook.dat", 40960},
              File{"\\\\home\\ostvarra\\outbox\\virusdefs.pkg", 57344}};
    fileCount_ = static_cast<int>(files_.size());
    fileNumber_ = 1;
}

Variant CallHomeTransfer::Advance(bool overLan) {
    File& f = files_.front();
    const std::int32_t rate = overLan ? 65536 : 8192;
    f.copied = std::min(f.size, f.copied + rate);
    const double percent = std::floor(1000.0 * f.copied / f.size) / 10.0;
    const int secondsLeft = (f.size - f.copied + rate - 1) / rate;

    auto a = SafeArray::OneDim(0, 8);
    a.Set(0, Variant(f.path));
    a.Set(1, Variant(static_cast<std::int32_t>(fileNumber_)));
    a.Set(2, Variant(static_cast<std::int32_t>(fileCount_)));
    a.Set(3, Variant(f.copied));
    a.Set(4, Variant(f.size));
    a.Set(5, Variant(std::to_string(secondsLeft) + " seconds"));
    a.Set(6, Variant(f.copied == f.size ? "Done" : "Receiving"));
    a.Set(7, Variant(percent));
    a.Set(8, Variant(std::to_string(rate / 1024) + " KB/sec"));
    if (f.copied == f.size) {
        files_.pop_front();
        ++fileNumber_;
    }
    return Variant(std::move(a));
}

}  // namespace dravlink
