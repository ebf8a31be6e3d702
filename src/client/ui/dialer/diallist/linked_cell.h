#pragma once

#include <memory>

namespace kw::dialer {

template <class Cell>
class DbLinkList;

// The links of a cell of a doubly linked list. Links and key fields change through setters so
// that the list that holds the cell can tell that its index of keys no longer holds.
template <class Derived>
class LinkedCell {
  public:
    using Ptr = std::shared_ptr<Derived>;

    const Ptr& nextCell() const { return next_; }
    void SetNextCell(Ptr cell) {
        next_ = std::move(cell);
        Touch();
    }
    const Ptr& prevCell() const { return prev_; }
    void SetPrevCell(Ptr cell) {
        prev_ = std::move(cell);
        Touch();
    }

  protected:
    void Touch() {
        if (const auto stale = watch_.lock()) {
            *stale = true;
        }
    }

  private:
    friend class DbLinkList<Derived>;
    Ptr next_;
    Ptr prev_;
    std::weak_ptr<bool> watch_;  // the stale flag of the list that indexes this cell
};

}  // namespace kw::dialer
