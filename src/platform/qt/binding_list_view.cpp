#include "platform/qt/binding_list_view.h"

#include <algorithm>

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPointer>
#include <QTimer>
#include <QTreeView>

#include "platform/qt/convert.h"

namespace kw::qt {

using forms::Property;

namespace {
// Rows measured when a column is fitted, the visible ones first: enough to see the widest of a
// phone book whose rows look alike, few enough that the longest list is fitted at once.
constexpr int kRowsMeasured = 200;
}  // namespace

// ---- the table model ------------------------------------------------------------------------

ListViewTableModel::ListViewTableModel(forms::ListView& view)
    : view_(view), rows_(view.ItemCount()), columns_(view.ColumnCount()) {
    view_.AddListObserver(this);
}

ListViewTableModel::~ListViewTableModel() {
    if (!released_) {
        view_.RemoveListObserver(this);
    }
}

void ListViewTableModel::Release() {
    if (released_) {
        return;
    }
    view_.RemoveListObserver(this);
    Forget();
}

void ListViewTableModel::ListGone(forms::ListView&) {
    if (!released_) {
        Forget();
    }
}

void ListViewTableModel::Forget() {
    beginResetModel();
    released_ = true;
    rows_ = 0;
    columns_ = 0;
    endResetModel();
}

int ListViewTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int ListViewTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(columns_, 1);
}

QVariant ListViewTableModel::data(const QModelIndex& index, int role) const {
    const int row = index.row();
    // Between the forms model's change and our end of it, the view may ask for a row that went.
    if (!index.isValid() || released_ || row >= view_.ItemCount()) {
        return {};
    }
    const forms::ListItem& item = view_.Item(row + 1);
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole: {
            if (index.column() == 0) {
                return ToQString(item.text);
            }
            const auto sub = static_cast<std::size_t>(index.column() - 1);
            return sub < item.subItems.size() ? ToQString(item.subItems[sub]) : QString();
        }
        case Qt::CheckStateRole:
            if (index.column() == 0 && view_.Checkboxes()) {
                return item.checked ? Qt::Checked : Qt::Unchecked;
            }
            return {};
        default:
            return {};
    }
}

QVariant ListViewTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= columns_) {
        return {};
    }
    return ToQString(view_.Columns()[static_cast<std::size_t>(section)].text);
}

Qt::ItemFlags ListViewTableModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (!released_ && index.column() == 0 && view_.Checkboxes()) {
        f |= Qt::ItemIsUserCheckable;
    }
    return f;
}

bool ListViewTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (released_ || role != Qt::CheckStateRole || index.column() != 0 ||
        index.row() >= view_.ItemCount()) {
        return false;
    }
    const bool checked = value.toInt() == Qt::Checked;
    if (UserChecked && view_.Item(index.row() + 1).checked != checked) {
        UserChecked(index.row(), checked);
    }
    // What the row shows is the model's word, which a reaction may have overruled.
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

void ListViewTableModel::ColumnsReset(forms::ListView&) {
    beginResetModel();
    rows_ = view_.ItemCount();
    columns_ = view_.ColumnCount();
    endResetModel();
}

void ListViewTableModel::RowsReset(forms::ListView&) {
    beginResetModel();
    rows_ = view_.ItemCount();
    endResetModel();
}

void ListViewTableModel::RowsInserted(forms::ListView&, int first, int count) {
    if (count <= 0) {
        return;
    }
    beginInsertRows({}, first, first + count - 1);
    rows_ += count;
    endInsertRows();
}

void ListViewTableModel::RowsRemoved(forms::ListView&, int first, int count) {
    if (count <= 0) {
        return;
    }
    beginRemoveRows({}, first, first + count - 1);
    rows_ -= count;
    endRemoveRows();
}

void ListViewTableModel::RowsChanged(forms::ListView&, int first, int last) {
    last = std::min(last, rows_ - 1);
    if (first <= last) {
        emit dataChanged(index(first, 0), index(last, columnCount() - 1));
    }
}

// ---- the binding ----------------------------------------------------------------------------

ListViewBinding::ListViewBinding(forms::ListView& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ListViewBinding::Create(QWidget* parent) {
    tree_ = new QTreeView(parent);
    table_ = new ListViewTableModel(model_);
    table_->setParent(tree_);
    tree_->setModel(table_);
    tree_->setRootIsDecorated(false);
    tree_->setItemsExpandable(false);
    tree_->setUniformRowHeights(true);  // no row is measured: what makes long lists quick
    tree_->setSelectionMode(QAbstractItemView::SingleSelection);
    tree_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tree_->setAllColumnsShowFocus(true);
    tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree_->setSortingEnabled(false);
    tree_->setTextElideMode(Qt::ElideRight);
    QHeaderView* header = tree_->header();
    header->setSortIndicatorShown(false);
    header->setStretchLastSection(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setResizeContentsPrecision(kRowsMeasured);
    fit_ = new QTimer(tree_);
    fit_->setSingleShot(true);
    fit_->setInterval(0);
    QObject::connect(fit_, &QTimer::timeout, tree_, [this] { FitColumns(); });
    const auto refit = [timer = fit_] { timer->start(); };
    QObject::connect(table_, &QAbstractItemModel::modelReset, tree_, refit);
    QObject::connect(table_, &QAbstractItemModel::rowsInserted, tree_, refit);
    QObject::connect(table_, &QAbstractItemModel::dataChanged, tree_, refit);
    // The release empties the table, which asks for a fit; none may come once the model went.
    Context().OnDetach(
        [table = QPointer<ListViewTableModel>(table_), fit = QPointer<QTimer>(fit_)] {
            if (table) {
                table->Release();
            }
            if (fit) {
                fit->stop();
            }
        });
    return tree_;
}

std::vector<QWidget*> ListViewBinding::InputWidgets() const {
    // The rows take the mouse on the viewport, the keys on the view.
    return {tree_, tree_->viewport()};
}

void ListViewBinding::ConnectInput() {
    table_->UserChecked = [this](int row, bool checked) {
        if (Context().TakesInput()) {
            model_.UserCheck(row + 1, checked);
        }
    };
    OnUserInput(tree_->selectionModel(), &QItemSelectionModel::currentRowChanged,
                [this](const QModelIndex& current, const QModelIndex&) { UserSelected(current); });
}

void ListViewBinding::UserSelected(const QModelIndex& current) {
    if (!current.isValid() || current.row() >= model_.ItemCount()) {
        return;
    }
    model_.UserSelectItem(current.row() + 1);
    Reshow(Property::Items);
}

void ListViewBinding::Show(Property what) {
    switch (what) {
        case Property::Columns:
            ShowColumns();
            break;
        case Property::Attributes:
            tree_->header()->setSectionsMovable(
                (model_.ExtendedStyle() & forms::lvs_ex::kHeaderDragDrop) != 0);
            tree_->viewport()->update();
            break;
        case Property::Items:
            ShowSelection();
            break;
        case Property::Colors:
            ShowFieldColours(tree_, model_);
            break;
        default:
            break;
    }
}

void ListViewBinding::ShowColumns() {
    const auto& columns = model_.Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].width > 0) {
            tree_->setColumnWidth(static_cast<int>(i), columns[i].width);
        }
    }
    FitColumns();
}

void ListViewBinding::FitColumns() {
    fit_->stop();
    // The table's columns, not the control's: the table outlives the control by a release.
    const int columns = table_->columnCount();
    QHeaderView* header = tree_->header();
    const QAbstractItemView* view = tree_;  // the tree's own measure, public on its base
    for (int i = 0; i < columns && i < header->count(); ++i) {
        const int wanted = std::max(view->sizeHintForColumn(i), header->sectionSizeHint(i));
        if (wanted > header->sectionSize(i)) {
            header->resizeSection(i, wanted);
        }
    }
}

void ListViewBinding::ShowSelection() {
    const int selected = model_.SelectedItem();
    QItemSelectionModel* selection = tree_->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (selected == 0) {
        if (selection->hasSelection() || current.isValid()) {
            selection->clear();
        }
        return;
    }
    if (selected > table_->rowCount() || (current.isValid() && current.row() == selected - 1 &&
                                          selection->isRowSelected(selected - 1))) {
        return;
    }
    selection->setCurrentIndex(table_->index(selected - 1, 0),
                               QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

}  // namespace kw::qt
