#include "platform/forms/list_view.h"

#include <algorithm>

#include "platform/automation/failure.h"
#include "platform/forms/form.h"

namespace kw::forms {

using automation::Failure;

namespace {
const std::string kNoText;
}  // namespace

ListView::ListView(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::ListView, index) {}

ListView::~ListView() {
    // A view drawn by a window that the event loop deletes later may outlive this list.
    const std::vector<ListViewObserver*> observers = std::move(observers_);
    observers_.clear();
    for (ListViewObserver* observer : observers) {
        observer->ListGone(*this);
    }
}

void ListView::AddColumn(std::string key, std::string text, int width) {
    columns_.push_back(ColumnHeader{std::move(key), std::move(text), width});
    for (ListViewObserver* observer : observers_) {
        observer->ColumnsReset(*this);
    }
    Notify(Property::Columns);
}

void ListView::ClearColumns() {
    columns_.clear();
    for (ListViewObserver* observer : observers_) {
        observer->ColumnsReset(*this);
    }
    Notify(Property::Columns);
}

int ListView::AddItem(std::string text, std::string key) {
    ListItem item;
    item.text = std::move(text);
    item.key = std::move(key);
    items_.push_back(std::move(item));
    RowsInserted(ItemCount() - 1, 1);
    return ItemCount();
}

void ListView::RemoveItem(int index) {
    Item(index);
    items_.erase(items_.begin() + (index - 1));
    if (selected_ == index) {
        selected_ = 0;
    } else if (selected_ > index) {
        --selected_;
    }
    RowsRemoved(index - 1, 1);
}

void ListView::ClearItems() {
    const int count = ItemCount();
    items_.clear();
    selected_ = 0;
    RowsRemoved(0, count);
}

const ListItem& ListView::Item(int index) const {
    if (index < 1 || index > ItemCount()) {
        throw Failure(35600, "Index out of bounds");
    }
    return items_[static_cast<std::size_t>(index - 1)];
}

ListItem& ListView::MutableItem(int index) {
    Item(index);
    return items_[static_cast<std::size_t>(index - 1)];
}

void ListView::SetItemText(int index, std::string text) {
    MutableItem(index).text = std::move(text);
    RowsChanged(index - 1, index - 1);
}

const std::string& ListView::SubItem(int index, int column) const {
    const ListItem& item = Item(index);
    if (column < 1) {
        throw Failure(35600, "Index out of bounds");
    }
    if (static_cast<std::size_t>(column) > item.subItems.size()) {
        return kNoText;
    }
    return item.subItems[static_cast<std::size_t>(column - 1)];
}

void ListView::SetSubItem(int index, int column, std::string text) {
    ListItem& item = MutableItem(index);
    if (column < 1) {
        throw Failure(35600, "Index out of bounds");
    }
    if (static_cast<int>(item.subItems.size()) < column) {
        // Rows are filled a column at a time: room for every column at once, not one more each.
        item.subItems.reserve(static_cast<std::size_t>(std::max(column, ColumnCount() - 1)));
        item.subItems.resize(static_cast<std::size_t>(column));
    }
    item.subItems[static_cast<std::size_t>(column - 1)] = std::move(text);
    RowsChanged(index - 1, index - 1);
}

void ListView::SetChecked(int index, bool checked) {
    MutableItem(index).checked = checked;
    RowsChanged(index - 1, index - 1);
}

void ListView::SetSelectedItem(int index) {
    if (index != 0) {
        Item(index);
    }
    const int previous = selected_;
    if (previous != 0) {
        items_[static_cast<std::size_t>(previous - 1)].selected = false;
    }
    selected_ = index;
    if (index != 0) {
        items_[static_cast<std::size_t>(index - 1)].selected = true;
    }
    if (previous != 0) {
        RowsChanged(previous - 1, previous - 1);
    }
    if (index != 0) {
        RowsChanged(index - 1, index - 1);
    }
    if (previous == 0 && index == 0) {
        Notify(Property::Items);
    }
}

std::int32_t ListView::ItemState(int row, std::int32_t mask) const {
    if (row < 0 || row >= ItemCount()) {
        return 0;
    }
    const ListItem& item = items_[static_cast<std::size_t>(row)];
    std::int32_t state = item.checked ? lvis::kChecked : lvis::kUnchecked;
    if (item.selected) {
        state |= lvis::kSelected | lvis::kFocused;
    }
    return state & mask;
}

void ListView::SetItemState(int row, const LvItem& item) {
    if ((item.mask & lvif::kState) == 0 || row < 0 || row >= ItemCount()) {
        return;
    }
    if ((item.stateMask & lvis::kStateImageMask) != 0) {
        // Image 2 is the ticked box; any other image shows an empty one.
        const std::int32_t image = (item.state & lvis::kStateImageMask) >> 12;
        SetChecked(row + 1, image == 2);
    }
    if ((item.stateMask & lvis::kSelected) != 0) {
        if ((item.state & lvis::kSelected) != 0) {
            SetSelectedItem(row + 1);
        } else if (selected_ == row + 1) {
            SetSelectedItem(0);
        }
    }
}

void ListView::SetExtendedStyle(std::int32_t style) {
    extendedStyle_ = style;
    Notify(Property::Attributes);
}

void ListView::SetCheckboxes(bool on) {
    SetExtendedStyle(on ? (extendedStyle_ | lvs_ex::kCheckBoxes)
                        : (extendedStyle_ & ~lvs_ex::kCheckBoxes));
}

ListView::Batch::Batch(ListView& view) : view_(view) {
    ++view_.batchDepth_;
}

ListView::Batch::~Batch() {
    if (--view_.batchDepth_ == 0) {
        view_.EndBatch();
    }
}

void ListView::EndBatch() {
    const bool reset = batchReset_;
    const int first = batchFirst_;
    const int last = std::min(batchLast_, ItemCount() - 1);
    batchReset_ = false;
    batchFirst_ = batchLast_ = -1;
    if (reset) {
        RowsReset();
    } else if (first >= 0 && first <= last) {
        RowsChanged(first, last);
    }
}

void ListView::AddListObserver(ListViewObserver* observer) {
    observers_.push_back(observer);
}

void ListView::RemoveListObserver(ListViewObserver* observer) {
    observers_.erase(std::remove(observers_.begin(), observers_.end(), observer), observers_.end());
}

void ListView::RowsInserted(int first, int count) {
    if (batchDepth_ > 0) {
        batchReset_ = true;
        return;
    }
    for (ListViewObserver* observer : observers_) {
        observer->RowsInserted(*this, first, count);
    }
    Notify(Property::Items);
}

void ListView::RowsRemoved(int first, int count) {
    if (batchDepth_ > 0) {
        batchReset_ = true;
        return;
    }
    for (ListViewObserver* observer : observers_) {
        observer->RowsRemoved(*this, first, count);
    }
    Notify(Property::Items);
}

void ListView::RowsChanged(int first, int last) {
    if (batchDepth_ > 0) {
        batchFirst_ = batchFirst_ < 0 ? first : std::min(batchFirst_, first);
        batchLast_ = std::max(batchLast_, last);
        return;
    }
    for (ListViewObserver* observer : observers_) {
        observer->RowsChanged(*this, first, last);
    }
    Notify(Property::Items);
}

void ListView::RowsReset() {
    for (ListViewObserver* observer : observers_) {
        observer->RowsReset(*this);
    }
    Notify(Property::Items);
}

void ListView::UserCheck(int index, bool checked) {
    DispatchUser([this, index, checked] {
        SetChecked(index, checked);
        if (ItemCheck) {
            ItemCheck(index);
        }
    });
}

void ListView::UserSelectItem(int index) {
    DispatchUser([this, index] {
        SetSelectedItem(index);
        if (ItemClick) {
            ItemClick(index);
        }
    });
}

bool ListView::UserBeginLabelEdit(int index) {
    Item(index);
    int cancel = 0;
    DispatchUser([this, &cancel] {
        if (BeforeLabelEdit) {
            BeforeLabelEdit(cancel);
        }
    });
    return cancel == 0 && AcceptsInput();
}

}  // namespace kw::forms
