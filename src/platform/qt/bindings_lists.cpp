#include "platform/qt/bindings_lists.h"

#include <algorithm>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTreeWidget>

#include "platform/qt/convert.h"

namespace kw::qt {

using forms::Property;

// ---- combo box ----------------------------------------------------------------------------

ComboBinding::ComboBinding(forms::ComboBox& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ComboBinding::Create(QWidget* parent) {
    combo_ = new QComboBox(parent);
    combo_->setEditable(Editable());
    combo_->setInsertPolicy(QComboBox::NoInsert);
    if (Editable()) {
        combo_->setCompleter(nullptr);
    }
    return combo_;
}

std::vector<QWidget*> ComboBinding::InputWidgets() const {
    if (combo_->lineEdit() == nullptr) {
        return {combo_};
    }
    return {combo_, combo_->lineEdit()};
}

bool ComboBinding::Fits() const {
    return combo_->isEditable() == Editable();
}

void ComboBinding::ConnectInput() {
    OnUserInput(combo_, &QComboBox::activated, [this](int index) {
        model_.UserSelect(index);
        Reshow(Property::ListIndex);
    });
    if (QLineEdit* line = combo_->lineEdit()) {
        OnUserInput(line, &QLineEdit::textEdited, [this](const QString& text) {
            model_.UserSetText(FromQString(text));
            Reshow(Property::Text);
        });
    }
}

void ComboBinding::Show(Property what) {
    switch (what) {
        case Property::Text:
            ShowText();
            break;
        case Property::Selection:
            ShowSelection();
            break;
        case Property::List:
            ShowList();
            ShowListIndex();
            break;
        case Property::ListIndex:
            ShowListIndex();
            break;
        case Property::Attributes:
            if (combo_->lineEdit() != nullptr) {
                combo_->lineEdit()->setReadOnly(model_.Locked());
            }
            break;
        case Property::Colors:
            ShowFieldColours(combo_, model_);
            break;
        default:
            break;
    }
}

void ComboBinding::ShowText() {
    const QString text = ToQString(model_.Text());
    if (!combo_->isEditable()) {
        combo_->setPlaceholderText(text);
        return;
    }
    if (combo_->currentText() != text) {
        combo_->setEditText(text);
        if (!combo_->hasFocus()) {
            combo_->lineEdit()->setCursorPosition(0);  // show the start of a long name
        }
    }
}

void ComboBinding::ShowList() {
    const int count = model_.ListCount();
    while (combo_->count() > count) {
        combo_->removeItem(combo_->count() - 1);
    }
    for (int i = 0; i < count; ++i) {
        const QString item = ToQString(model_.List(i));
        if (i >= combo_->count()) {
            combo_->addItem(item);
        } else if (combo_->itemText(i) != item) {
            combo_->setItemText(i, item);
        }
    }
}

void ComboBinding::ShowListIndex() {
    combo_->setCurrentIndex(model_.ListIndex());
    ShowText();
}

void ComboBinding::ShowSelection() {
    if (QLineEdit* line = combo_->lineEdit()) {
        ShowLineSelection(line, model_.SelStart(), model_.SelLength());
    }
}

void ComboBinding::PullSelection() {
    QLineEdit* line = combo_->lineEdit();
    if (line == nullptr) {
        return;
    }
    const LineSelection selection = ReadLineSelection(*line);
    ShowingModel showing(Context());
    model_.SetSelStart(selection.start);
    model_.SetSelLength(selection.length);
}

// ---- list box -----------------------------------------------------------------------------

ListBoxBinding::ListBoxBinding(forms::ListBox& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ListBoxBinding::Create(QWidget* parent) {
    list_ = new QListWidget(parent);
    return list_;
}

void ListBoxBinding::ConnectInput() {
    OnUserInput(list_, &QListWidget::currentRowChanged, [this](int row) {
        model_.UserSelect(row);
        Reshow(Property::ListIndex);
    });
    OnUserInput(list_, &QListWidget::itemDoubleClicked, [this] { model_.UserDblClick(); });
}

void ListBoxBinding::Show(Property what) {
    switch (what) {
        case Property::List:
            ShowList();
            ShowListIndex();
            break;
        case Property::ListIndex:
            ShowListIndex();
            break;
        case Property::Colors:
            ShowFieldColours(list_, model_);
            break;
        default:
            break;
    }
}

void ListBoxBinding::ShowList() {
    const int count = model_.ListCount();
    while (list_->count() > count) {
        delete list_->takeItem(list_->count() - 1);
    }
    for (int i = 0; i < count; ++i) {
        const QString item = ToQString(model_.List(i));
        if (i >= list_->count()) {
            list_->addItem(item);
        } else if (list_->item(i)->text() != item) {
            list_->item(i)->setText(item);
        }
    }
}

void ListBoxBinding::ShowListIndex() {
    const int index = model_.ListIndex();
    list_->setCurrentRow(index);
    if (index < 0) {
        list_->clearSelection();
    }
}

// ---- list view ----------------------------------------------------------------------------

ListViewBinding::ListViewBinding(forms::ListView& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ListViewBinding::Create(QWidget* parent) {
    tree_ = new QTreeWidget(parent);
    tree_->setRootIsDecorated(false);
    tree_->setUniformRowHeights(true);
    tree_->setSelectionMode(QAbstractItemView::SingleSelection);
    tree_->setAllColumnsShowFocus(true);
    return tree_;
}

void ListViewBinding::ConnectInput() {
    OnUserInput(tree_, &QTreeWidget::itemChanged,
                [this](QTreeWidgetItem* item, int column) { UserChecked(item, column); });
    OnUserInput(tree_, &QTreeWidget::itemSelectionChanged, [this] { UserSelected(); });
}

void ListViewBinding::UserChecked(QTreeWidgetItem* item, int column) {
    if (column != 0) {
        return;
    }
    const int index = tree_->indexOfTopLevelItem(item) + 1;
    const bool checked = item->checkState(0) == Qt::Checked;
    if (index < 1 || index > model_.ItemCount() || model_.Item(index).checked == checked) {
        return;
    }
    model_.UserCheck(index, checked);
    Reshow(Property::Items);
}

void ListViewBinding::UserSelected() {
    const auto selected = tree_->selectedItems();
    if (selected.isEmpty()) {
        return;
    }
    model_.UserSelectItem(tree_->indexOfTopLevelItem(selected.first()) + 1);
    Reshow(Property::Items);
}

void ListViewBinding::Show(Property what) {
    switch (what) {
        case Property::Columns:
            ShowColumns();
            break;
        case Property::Items:
        case Property::Attributes:
            ShowItems();
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
    QStringList labels;
    for (const auto& column : columns) {
        labels << ToQString(column.text);
    }
    tree_->setColumnCount(std::max<int>(static_cast<int>(columns.size()), 1));
    tree_->setHeaderLabels(labels);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].width > 0) {
            tree_->setColumnWidth(static_cast<int>(i), columns[i].width);
        }
    }
}

void ListViewBinding::ShowItems() {
    const int count = model_.ItemCount();
    while (tree_->topLevelItemCount() > count) {
        delete tree_->takeTopLevelItem(tree_->topLevelItemCount() - 1);
    }
    while (tree_->topLevelItemCount() < count) {
        tree_->addTopLevelItem(new QTreeWidgetItem());
    }
    QTreeWidgetItem* selected = nullptr;
    for (int i = 1; i <= count; ++i) {
        QTreeWidgetItem* row = tree_->topLevelItem(i - 1);
        ShowRow(row, model_.Item(i));
        if (model_.Item(i).selected) {
            selected = row;
        }
    }
    tree_->setCurrentItem(selected);
    if (selected == nullptr) {
        tree_->clearSelection();
    }
    tree_->viewport()->update();
}

void ListViewBinding::ShowRow(QTreeWidgetItem* row, const forms::ListItem& item) {
    row->setText(0, ToQString(item.text));
    for (std::size_t s = 0; s < item.subItems.size(); ++s) {
        row->setText(static_cast<int>(s) + 1, ToQString(item.subItems[s]));
    }
    if (model_.Checkboxes()) {
        row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
        row->setCheckState(0, item.checked ? Qt::Checked : Qt::Unchecked);
    } else {
        row->setFlags(row->flags() & ~Qt::ItemIsUserCheckable);
        row->setData(0, Qt::CheckStateRole, QVariant());
    }
}

}  // namespace kw::qt
