#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "client/ui/dialer/diallist/linked_cell.h"

namespace kw::dialer {

// One ISP row of the dial list, keyed by the ISP's name.
class CispCell : public LinkedCell<CispCell> {
  public:
    using Key = std::string;
    using KeyHash = std::hash<std::string>;
    static const Key& KeyOf(const CispCell& cell) { return cell.ispName_; }
    static bool SameKey(const CispCell& a, const CispCell& b) { return a.ispName_ == b.ispName_; }
    // A plain exchange of the position strings.
    static void SwapIndex(CispCell& moved, CispCell& other) {
        std::swap(moved.posIndex, other.posIndex);
    }

    std::string website;
    std::string helpNumber;
    std::string posIndex;
    bool enable = false;
    std::int16_t sortedIndex = 0;  // shown as "Weight"

    const std::string& ispName() const { return ispName_; }
    void SetIspName(std::string name) {
        ispName_ = std::move(name);
        Touch();
    }

  private:
    std::string ispName_;
};

}  // namespace kw::dialer
