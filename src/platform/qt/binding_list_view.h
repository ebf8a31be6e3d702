#pragma once

#include <functional>

#include <QAbstractTableModel>

#include "platform/forms/list_view.h"
#include "platform/qt/binding.h"

class QTimer;
class QTreeView;

namespace kw::qt {

// The rows of a forms list view as a table model, read where they are: the view asks only for
// the rows it draws, so a list of tens of thousands fills and scrolls at once. The forms model
// tells it of a change after the fact; the row count it keeps lets the view hear of each change
// in the order Qt wants (about to, then done).
class ListViewTableModel final : public QAbstractTableModel, public forms::ListViewObserver {
  public:
    explicit ListViewTableModel(forms::ListView& view);
    ~ListViewTableModel() override;
    // Lets go of the control model (its form unloaded): the view shows nothing from then on.
    void Release();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    // A tick from the view: row from 0. Set by the binding, which knows whether it is input.
    std::function<void(int row, bool checked)> UserChecked;

    void ColumnsReset(forms::ListView& view) override;
    void RowsReset(forms::ListView& view) override;
    void RowsInserted(forms::ListView& view, int first, int count) override;
    void RowsRemoved(forms::ListView& view, int first, int count) override;
    void RowsChanged(forms::ListView& view, int first, int last) override;
    void ListGone(forms::ListView& view) override;

  private:
    forms::ListView& view_;
    int rows_ = 0;
    int columns_ = 0;
    bool released_ = false;
    void Forget();
};

// A list view in report view on a tree view without branches: the model's columns and widths,
// a check box per row when the model has them, full-row select, headers that can be dragged to
// another place but do not sort.
class ListViewBinding final : public ControlBinding {
  public:
    ListViewBinding(forms::ListView& model, std::shared_ptr<BindingContext> context);
    std::vector<QWidget*> InputWidgets() const override;
    bool TakesDoubleClick() const override { return true; }

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;

  private:
    void UserSelected(const QModelIndex& current);
    void ShowColumns();
    void ShowSelection();
    // Widens each column to its heading and the rows it samples, never below the width the
    // model asked for or the user dragged: a width chosen for another font must not cut text.
    void FitColumns();

    forms::ListView& model_;
    ListViewTableModel* table_ = nullptr;
    QTreeView* tree_ = nullptr;
    QTimer* fit_ = nullptr;  // one fit for a burst of row changes
};

}  // namespace kw::qt
