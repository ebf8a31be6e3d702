#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "platform/automation/variant.h"

namespace dravlink {

// The files a call home fetches, one after the other, reported a few times a second as they
// come in.
class CallHomeTransfer {
  public:
    static constexpr int kReportsPerSecond = 4;

    void Start();
    bool Active() const { return !files_.empty(); }
    void Cancel() { files_.clear(); }
    // Moves the current file on by a report's worth and gives the report of it, as the client
    // unpacks it: path, file number, file count, bytes copied, size, time left, state, percent,
    // rate.
    kw::automation::Variant Advance(bool overLan);

  private:
    struct File {
        std::string path;
        std::int32_t size;
        std::int32_t copied = 0;
    };
    std::deque<File> files_;
    int fileCount_ = 0;
    int fileNumber_ = 0;
};

}  // namespace dravlink
