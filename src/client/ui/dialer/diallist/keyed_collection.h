#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/automation/failure.h"
#include "platform/automation/strings.h"
#include "platform/automation/variant.h"

namespace kw::dialer {

// A general keyed collection: ordered, reached by position from 1 or by key. Keys compare
// without regard to case, as the toolkit's collection compares them.
template <class T>
class KeyedCollection {
  public:
    using Ptr = std::shared_ptr<T>;

    // An empty key adds without one; a key already present fails with 457.
    void Add(Ptr item, const std::string& key) {
        if (!key.empty() && Find(key) >= 0) {
            throw automation::Failure(
                457, "This key is already associated with an element of this collection");
        }
        entries_.emplace_back(key.empty() ? std::string() : automation::LCase(key),
                              std::move(item));
    }
    const Ptr& item(const automation::Variant& index) const { return entries_[At(index)].second; }
    std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
    void remove(const automation::Variant& index) {
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(At(index)));
    }
    // The enumerator: the items in order.
    std::vector<Ptr> NewEnum() const {
        std::vector<Ptr> items;
        items.reserve(entries_.size());
        for (const auto& entry : entries_) {
            items.push_back(entry.second);
        }
        return items;
    }

  private:
    long Find(const std::string& key) const {
        const std::string wanted = automation::LCase(key);
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (!entries_[i].first.empty() && entries_[i].first == wanted) {
                return static_cast<long>(i);
            }
        }
        return -1;
    }
    std::size_t At(const automation::Variant& index) const {
        if (index.Type() == automation::VarType::String) {
            const long found = Find(index.ToString());
            if (found < 0) {
                throw automation::Failure(5, "Invalid procedure call or argument");
            }
            return static_cast<std::size_t>(found);
        }
        const std::int32_t position = automation::CLng(index);
        if (position < 1 || position > Count()) {
            throw automation::Failure(9, "Subscript out of range");
        }
        return static_cast<std::size_t>(position - 1);
    }

    std::vector<std::pair<std::string, Ptr>> entries_;
};

}  // namespace kw::dialer
