#include "platform/qt/bindings_lists.h"

#include <algorithm>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

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

}  // namespace kw::qt
