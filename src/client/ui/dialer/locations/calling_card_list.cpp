#include "client/ui/dialer/locations/calling_card_list.h"

#include "platform/automation/failure.h"

namespace kw::dialer {

std::shared_ptr<CallingCard> CallingCardList::findByID(std::int16_t id) const {
    for (const Member& m : cards_) {
        if (m.card->tapiIndex == id) {
            return m.card;
        }
    }
    return nullptr;
}

std::shared_ptr<CallingCard> CallingCardList::Add(std::string name, std::string number,
                                                  std::string longDistanceRule,
                                                  std::string sameAreaRule, std::int16_t tapiIndex,
                                                  std::int16_t index, const std::string& key) {
    auto card = std::make_shared<CallingCard>();
    card->name = std::move(name);
    card->number = std::move(number);
    card->longDistanceRule = std::move(longDistanceRule);
    card->sameAreaRule = std::move(sameAreaRule);
    card->tapiIndex = tapiIndex;
    card->index = index;
    cards_.push_back(Member{key, card});
    return card;
}

std::shared_ptr<CallingCard> CallingCardList::item(int index) const {
    if (index < 1 || index > Count()) {
        throw automation::Failure(automation::err::kInvalidCall);
    }
    return cards_[static_cast<std::size_t>(index - 1)].card;
}

void CallingCardList::remove(int index) {
    item(index);
    cards_.erase(cards_.begin() + (index - 1));
}

}  // namespace kw::dialer
