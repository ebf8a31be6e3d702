#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/automation/failure.h"

namespace kw::dialer {

// The rows of the dial list between two sentinels, in the order they are shown and saved.
//
// A search answers as a walk from the head does: the first cell whose key matches, the head
// sentinel counting as a candidate, and on a miss the last cell of the walk (the tail). The walk
// itself would make every pass over the view quadratic, so the list keeps the first cell of each
// key in an index, kept in step by its own operations; anything else that relinks a cell or
// changes a key marks the index stale, and the next search rebuilds it by one walk.
template <class Cell>
class DbLinkList {
  public:
    using Ptr = std::shared_ptr<Cell>;
    using Key = typename Cell::Key;

    DbLinkList() : head_(std::make_shared<Cell>()), tail_(std::make_shared<Cell>()) {
        head_->next_ = tail_;
        tail_->prev_ = head_;
        Reindex();
    }
    ~DbLinkList() {
        clearList();
        // The sentinels refer to one another: cut that before they go.
        head_->next_.reset();
        tail_->prev_.reset();
    }
    DbLinkList(const DbLinkList&) = delete;
    DbLinkList& operator=(const DbLinkList&) = delete;

    const Ptr& head() const { return head_; }
    void SetHead(Ptr cell) {
        head_ = std::move(cell);
        *stale_ = true;
    }
    const Ptr& tail() const { return tail_; }
    void SetTail(Ptr cell) {
        tail_ = std::move(cell);
        *stale_ = true;
    }
    std::int16_t numOfItems() const { return numOfItems_; }
    void SetNumOfItems(std::int16_t count) { numOfItems_ = count; }  // the links stay

    // Appends behind the last row, without a check for duplicates. Past 32,767 rows the count
    // overflows after the links are made.
    void Add(const Ptr& cell) {
        const Ptr last = Need(Need(tail_)->prev_);
        const bool fresh = !*stale_ && cell->watch_.lock() != stale_ && cell != head_;
        last->next_ = cell;
        tail_->prev_ = cell;
        cell->next_ = tail_;
        cell->prev_ = last;
        cell->watch_ = stale_;
        if (fresh && miss_ == tail_) {
            index_.emplace(Cell::KeyOf(*cell), cell);
        } else {
            *stale_ = true;
        }
        if (numOfItems_ == INT16_MAX) {
            throw automation::Failure(6, "Overflow");
        }
        ++numOfItems_;
    }

    Ptr find(const Cell& key) {
        if (!indexed_) {
            return walkFind(key);
        }
        if (*stale_) {
            Reindex();
        }
        const auto it = index_.find(Cell::KeyOf(key));
        return it != index_.end() ? it->second : miss_;
    }

    // The search by a walk from the head, which the index stands in for.
    Ptr walkFind(const Cell& key) const {
        Ptr cur = Need(head_);
        while (cur->next_) {
            if (Cell::SameKey(*cur, key)) {
                return cur;
            }
            cur = cur->next_;
        }
        return cur;
    }
    // Off: every search walks from the head, as a list without an index would.
    void SetIndexed(bool on) { indexed_ = on; }

    // Only keys of cells in the list: an unknown key fails for want of an object.
    void remove(const Cell& key) {
        const Ptr cell = find(key);
        const Ptr prev = cell->prev_;
        const Ptr next = cell->next_;
        *stale_ = true;
        Need(prev)->next_ = next;
        Need(next)->prev_ = prev;
        if (numOfItems_ == INT16_MIN) {
            throw automation::Failure(6, "Overflow");
        }
        --numOfItems_;
    }

    // The last row stays; true when the row moved. The index values stay where they stood
    // along the list: the rows trade them.
    bool moveDown(const Cell& key) {
        if (numOfItems_ <= 0) {
            return false;
        }
        const Ptr cell = find(key);
        const Ptr prev = cell->prev_;
        const Ptr next = cell->next_;
        if (next == tail_) {
            return false;
        }
        const Ptr after = Need(next)->next_;
        const bool wasFresh = !*stale_;
        *stale_ = true;
        cell->next_ = after;
        cell->prev_ = next;
        Need(prev)->next_ = next;
        next->prev_ = prev;
        next->next_ = cell;
        Need(after)->prev_ = cell;
        Swapped(wasFresh, next, cell);
        Cell::SwapIndex(*cell, *next);
        return true;
    }

    // The first row stays; true when the row moved.
    bool moveUp(const Cell& key) {
        if (numOfItems_ <= 0) {
            return false;
        }
        const Ptr cell = find(key);
        const Ptr prev = cell->prev_;
        if (prev == head_) {
            return false;
        }
        const Ptr before = Need(prev)->prev_;
        const Ptr next = cell->next_;
        const bool wasFresh = !*stale_;
        *stale_ = true;
        cell->next_ = prev;
        cell->prev_ = before;
        prev->next_ = next;
        prev->prev_ = cell;
        Need(before)->next_ = cell;
        Need(next)->prev_ = prev;
        Swapped(wasFresh, cell, prev);
        Cell::SwapIndex(*cell, *prev);
        return true;
    }

    // Empties the list. The back links are cut first, so that no row outlives the list unless
    // a caller holds it.
    void clearList() {
        std::vector<Ptr> dropped;
        Ptr cur = Need(head_)->next_;
        while (cur != tail_) {
            Need(cur)->prev_.reset();
            cur->watch_.reset();
            dropped.push_back(cur);
            cur = cur->next_;
        }
        head_->next_ = tail_;
        Need(tail_)->prev_ = head_;
        numOfItems_ = 0;
        Reindex();
        // Dropped front to back: each cell's successor is still held, so no chain of releases.
        for (Ptr& cell : dropped) {
            cell.reset();
        }
    }

  private:
    static const Ptr& Need(const Ptr& cell) {
        if (!cell) {
            throw automation::Failure(91, "Object variable or With block variable not set");
        }
        return cell;
    }

    // After first and second traded places (first now ahead): a key that both share now finds
    // the one ahead.
    void Swapped(bool wasFresh, const Ptr& first, const Ptr& second) {
        if (!wasFresh) {
            return;
        }
        if (Cell::SameKey(*first, *second)) {
            auto it = index_.find(Cell::KeyOf(*first));
            if (it != index_.end() && it->second == second) {
                it->second = first;
            }
        }
        *stale_ = false;
    }

    // One walk from the head: the first cell of each key, and the cell a miss gives.
    void Reindex() {
        index_.clear();
        Ptr cur = Need(head_);
        while (true) {
            cur->watch_ = stale_;
            if (!cur->next_) {
                break;
            }
            index_.emplace(Cell::KeyOf(*cur), cur);
            cur = cur->next_;
        }
        miss_ = cur;
        *stale_ = false;
    }

    Ptr head_;
    Ptr tail_;
    std::int16_t numOfItems_ = 0;
    std::shared_ptr<bool> stale_ = std::make_shared<bool>(false);
    std::unordered_map<Key, Ptr, typename Cell::KeyHash> index_;
    Ptr miss_;
    bool indexed_ = true;
};

}  // namespace kw::dialer
