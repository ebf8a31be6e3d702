#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kw::dialer {

// One calling card as the engine lists it.
struct CallingCard {
    std::string name;
    std::string number;
    std::string longDistanceRule;
    std::string sameAreaRule;
    std::int16_t tapiIndex = 0;  // the card's identifier, kept in locations and settings
    std::int16_t index = 0;      // position in the engine's list and in the card box
};

class CallingCardList {
  public:
    std::shared_ptr<CallingCard> findByID(std::int16_t id) const;
    std::shared_ptr<CallingCard> Add(std::string name, std::string number,
                                     std::string longDistanceRule, std::string sameAreaRule,
                                     std::int16_t tapiIndex, std::int16_t index,
                                     const std::string& key);
    // 1-based; fails with 5 outside the collection.
    std::shared_ptr<CallingCard> item(int index) const;
    int Count() const { return static_cast<int>(cards_.size()); }
    void remove(int index);

  private:
    struct Member {
        std::string key;
        std::shared_ptr<CallingCard> card;
    };
    std::vector<Member> cards_;
};

}  // namespace kw::dialer
