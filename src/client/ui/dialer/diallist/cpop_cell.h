#pragma once

#include <functional>
#include <string>
#include <utility>

#include "client/ui/dialer/diallist/linked_cell.h"

namespace kw::dialer {

// One POP row of the dial list. Its key is the number together with the ISP's name.
class CpopCell : public LinkedCell<CpopCell> {
  public:
    using Key = std::pair<std::string, std::string>;  // ispName, popNumber
    struct KeyHash {
        std::size_t operator()(const Key& key) const {
            const std::hash<std::string> hash;
            return hash(key.first) * 31 + hash(key.second);
        }
    };
    static Key KeyOf(const CpopCell& cell) { return {cell.ispName_, cell.popNumber_}; }
    static bool SameKey(const CpopCell& a, const CpopCell& b) {
        return a.ispName_ == b.ispName_ && a.popNumber_ == b.popNumber_;
    }
    // The moved cell takes the other's index as it stands; the other gets the moved cell's
    // index back as the decimal text of a 16-bit integer ("07" comes back as "7").
    static void SwapIndex(CpopCell& moved, CpopCell& other);

    std::string state;
    std::string city;
    bool enable = false;
    std::string modem;
    std::string cost;  // shown as "Weight"
    std::string popIndex;

    const std::string& ispName() const { return ispName_; }
    void SetIspName(std::string name) {
        ispName_ = std::move(name);
        Touch();
    }
    const std::string& popNumber() const { return popNumber_; }
    void SetPopNumber(std::string number) {
        popNumber_ = std::move(number);
        Touch();
    }

  private:
    std::string ispName_;
    std::string popNumber_;
};

}  // namespace kw::dialer
