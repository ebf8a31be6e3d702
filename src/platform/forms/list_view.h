#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/forms/control.h"

namespace kw::forms {

// The list view's messages, with the numbers the program sends them under.
namespace lvm {
inline constexpr int kSetItemState = 4139;
inline constexpr int kGetItemState = 4140;
inline constexpr int kSetExtendedListViewStyle = 4150;
inline constexpr int kGetExtendedListViewStyle = 4151;
}  // namespace lvm

// Item state bits. The state image index sits in bits 12 to 15: 1 is an empty box, 2 a ticked one.
namespace lvis {
inline constexpr std::int32_t kFocused = 0x1;
inline constexpr std::int32_t kSelected = 0x2;
inline constexpr std::int32_t kStateImageMask = 0xF000;
inline constexpr std::int32_t kUnchecked = 0x1000;
inline constexpr std::int32_t kChecked = 0x2000;
}  // namespace lvis

// LV_ITEM mask bits.
namespace lvif {
inline constexpr std::int32_t kState = 0x8;
}  // namespace lvif

// Extended style bits.
namespace lvs_ex {
inline constexpr std::int32_t kCheckBoxes = 0x4;
inline constexpr std::int32_t kHeaderDragDrop = 0x10;
inline constexpr std::int32_t kFullRowSelect = 0x20;
}  // namespace lvs_ex

// The part of LV_ITEM that a state change reads.
struct LvItem {
    std::int32_t mask = 0;
    std::int32_t item = 0;
    std::int32_t subItem = 0;
    std::int32_t state = 0;
    std::int32_t stateMask = 0;
};

struct ColumnHeader {
    std::string key;
    std::string text;
    int width = 0;
};

struct ListItem {
    std::string key;
    std::string text;
    std::vector<std::string> subItems;  // sub-item n at n - 1
    bool checked = false;
    bool selected = false;
};

class ListView;

// What a model/view binding needs to follow the rows without re-reading them all: rows here are
// 0-based, as a table model counts them. Inside an update batch the changes arrive as one.
class ListViewObserver {
  public:
    virtual ~ListViewObserver() = default;
    virtual void ColumnsReset(ListView& view) = 0;
    virtual void RowsReset(ListView& view) = 0;
    virtual void RowsInserted(ListView& view, int first, int count) = 0;
    virtual void RowsRemoved(ListView& view, int first, int count) = 0;
    virtual void RowsChanged(ListView& view, int first, int last) = 0;
    // The list is being destroyed: drop every reference to it, and do not call it back.
    virtual void ListGone(ListView& view) { (void)view; }
};

// A report-view list with a check box per row. Items are 1-based, as the toolkit counts them;
// the item-state calls take the row's index from 0, as the list view's messages do.
class ListView : public Control {
  public:
    ListView(Form& form, std::string name, int index = -1);
    ~ListView() override;

    // Columns: key, text and width, cleared and added anew for each list shown.
    void AddColumn(std::string key, std::string text, int width);
    void ClearColumns();
    const std::vector<ColumnHeader>& Columns() const { return columns_; }
    int ColumnCount() const { return static_cast<int>(columns_.size()); }

    int AddItem(std::string text, std::string key = {});  // returns the new item's index
    void RemoveItem(int index);
    void ClearItems();
    int ItemCount() const { return static_cast<int>(items_.size()); }
    const ListItem& Item(int index) const;  // fails with 35600 outside the list
    void SetItemText(int index, std::string text);
    // Sub-item n of a row, n from 1; "" where none was set.
    const std::string& SubItem(int index, int column) const;
    void SetSubItem(int index, int column, std::string text);
    void SetChecked(int index, bool checked);  // no event from code
    // 0 when nothing is selected.
    int SelectedItem() const { return selected_; }
    void SetSelectedItem(int index);

    // The item state of a row by its index from 0, masked; a row outside the list gives 0.
    std::int32_t ItemState(int row, std::int32_t mask) const;
    // Applies the state bits of item that its stateMask covers (check box and selection); the
    // mask must hold LVIF_STATE. A row outside the list is left alone, as the message does.
    void SetItemState(int row, const LvItem& item);

    std::int32_t ExtendedStyle() const { return extendedStyle_; }
    void SetExtendedStyle(std::int32_t style);
    bool Checkboxes() const { return (extendedStyle_ & lvs_ex::kCheckBoxes) != 0; }
    void SetCheckboxes(bool on);

    // Changes made inside a batch reach the renderers as one, at its end.
    class Batch {
      public:
        explicit Batch(ListView& view);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

      private:
        ListView& view_;
    };

    void AddListObserver(ListViewObserver* observer);
    void RemoveListObserver(ListViewObserver* observer);

    std::function<void(int index)> ItemCheck;
    std::function<void(int index)> ItemClick;
    std::function<void(int column)> ColumnClick;
    // Before the user edits a row's label; setting cancel to non-zero keeps the label.
    std::function<void(int& cancel)> BeforeLabelEdit;

    void UserCheck(int index, bool checked);
    void UserSelectItem(int index);
    // The user starts editing a row's label; true when the edit may go on.
    bool UserBeginLabelEdit(int index);

  private:
    ListItem& MutableItem(int index);
    void RowsInserted(int first, int count);
    void RowsRemoved(int first, int count);
    void RowsChanged(int first, int last);
    void RowsReset();
    void EndBatch();

    std::vector<ColumnHeader> columns_;
    std::vector<ListItem> items_;
    std::vector<ListViewObserver*> observers_;
    int selected_ = 0;
    std::int32_t extendedStyle_ = 0;
    int batchDepth_ = 0;
    bool batchReset_ = false;
    int batchFirst_ = -1;
    int batchLast_ = -1;
};

}  // namespace kw::forms
