#include "platform/qt/form_window.h"

#include <algorithm>

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmapCache>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextEdit>
#include <QTreeWidget>
#include <QWindow>

#include "platform/forms/control.h"
#include "platform/forms/controls.h"
#include "platform/qt/convert.h"
#include "platform/qt/widgets.h"

namespace kw::qt {

using forms::ControlKind;
using forms::FormProperty;
using forms::Property;

namespace {

// While the model is being shown on the widgets, their signals are not the user's doing.
struct Updating {
    explicit Updating(int& depth) : depth_(depth) { ++depth_; }
    ~Updating() { --depth_; }
    Updating(const Updating&) = delete;
    Updating& operator=(const Updating&) = delete;

  private:
    int& depth_;
};

QString ObjectNameOf(const forms::Control& control) {
    QString name = ToQString(control.Name());
    if (control.Index() >= 0) {
        name += u'(' + QString::number(control.Index()) + u')';
    }
    return name;
}

const std::string* CaptionOf(const forms::Control& c) {
    switch (c.Kind()) {
        case ControlKind::Label:
            return &static_cast<const forms::Label&>(c).Caption();
        case ControlKind::CommandButton:
            return &static_cast<const forms::CommandButton&>(c).Caption();
        case ControlKind::CheckBox:
            return &static_cast<const forms::CheckBox&>(c).Caption();
        case ControlKind::OptionButton:
            return &static_cast<const forms::OptionButton&>(c).Caption();
        case ControlKind::Frame:
        case ControlKind::Panel:
            return &static_cast<const forms::Frame&>(c).Caption();
        default:
            return nullptr;
    }
}

bool IsListControl(const forms::Control& c) {
    return c.Kind() == ControlKind::ComboBox || c.Kind() == ControlKind::ListBox;
}

// Model text keeps the toolkit's line breaks; the widgets want plain ones.
QString ToWidgetText(const std::string& text) {
    return ToQString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

std::string ToModelText(const QString& text) {
    QString out = text;
    out.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return FromQString(out);
}

int WindowStateOf(Qt::WindowStates states) {
    if (states & Qt::WindowMinimized) {
        return forms::window_state::kMinimized;
    }
    if (states & Qt::WindowMaximized) {
        return forms::window_state::kMaximized;
    }
    return forms::window_state::kNormal;
}

Qt::Alignment AlignmentOf(int alignment) {
    switch (alignment) {
        case forms::align::kRight:
            return Qt::AlignRight;
        case forms::align::kCenter:
            return Qt::AlignHCenter;
        default:
            return Qt::AlignLeft;
    }
}

}  // namespace

FormWindow::FormWindow(forms::Form& form, QString assetsDir,
                       std::function<void(forms::Form&)> onHidden)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      form_(&form),
      assetsDir_(std::move(assetsDir)),
      onHidden_(std::move(onHidden)) {
    setObjectName(ToQString(form.Name()));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    Updating updating(updating_);
    for (forms::Control* control : form.Controls()) {
        EnsureWidget(*control);
    }
    SyncForm(FormProperty::Caption);
    SyncForm(FormProperty::Picture);
    SyncForm(FormProperty::Geometry);
    SyncForm(FormProperty::Region);
    SyncForm(FormProperty::Enabled);
    form.AddObserver(this);
    if (form.Visible()) {
        SyncForm(FormProperty::Visible);
    }
}

FormWindow::~FormWindow() {
    if (form_ != nullptr) {
        form_->RemoveObserver(this);
    }
}

void FormWindow::Detach() {
    if (form_ == nullptr) {
        return;
    }
    form_->RemoveObserver(this);
    form_ = nullptr;
    widgets_.clear();
    controls_.clear();
    hide();
    // The form may unload from inside one of this window's own signals.
    deleteLater();
}

QWidget* FormWindow::WidgetOf(const forms::Control& control) const {
    auto it = widgets_.find(&control);
    return it != widgets_.end() ? it->second : nullptr;
}

void FormWindow::RestoreFromMinimized() {
    if (isMinimized()) {
        showNormal();
    }
}

// ---- widgets ------------------------------------------------------------------------------

QWidget* FormWindow::EnsureWidget(forms::Control& control) {
    if (control.Kind() == ControlKind::Timer) {
        return nullptr;
    }
    if (QWidget* existing = WidgetOf(control)) {
        return existing;
    }
    QWidget* parent = this;
    if (control.Container() != nullptr) {
        if (QWidget* container = EnsureWidget(*control.Container())) {
            parent = container;
        }
    }
    Updating updating(updating_);
    QWidget* widget = CreateWidget(control, parent);
    widget->setObjectName(ObjectNameOf(control));
    widgets_[&control] = widget;
    controls_[widget] = &control;
    widget->installEventFilter(this);
    if (auto* combo = qobject_cast<QComboBox*>(widget); combo && combo->lineEdit()) {
        controls_[combo->lineEdit()] = &control;
        combo->lineEdit()->installEventFilter(this);
    }
    ConnectInput(control, widget);
    SyncAll(control);
    return widget;
}

QWidget* FormWindow::CreateWidget(forms::Control& control, QWidget* parent) {
    switch (control.Kind()) {
        case ControlKind::Label: {
            auto* label = new QLabel(parent);
            label->setWordWrap(true);
            label->setMouseTracking(true);
            return label;
        }
        case ControlKind::Image: {
            auto* image = new QLabel(parent);
            image->setMouseTracking(true);
            return image;
        }
        case ControlKind::TextBox:
            if (static_cast<forms::TextBox&>(control).MultiLine()) {
                auto* edit = new QTextEdit(parent);
                edit->setAcceptRichText(false);
                return edit;
            }
            return new QLineEdit(parent);
        case ControlKind::ComboBox: {
            auto* combo = new QComboBox(parent);
            const bool editable =
                static_cast<forms::ComboBox&>(control).Style() != forms::combo::kDropdownList;
            combo->setEditable(editable);
            combo->setInsertPolicy(QComboBox::NoInsert);
            if (editable) {
                combo->setCompleter(nullptr);
            }
            return combo;
        }
        case ControlKind::ListBox:
            return new QListWidget(parent);
        case ControlKind::CommandButton: {
            auto* button = new QPushButton(parent);
            button->setAutoDefault(false);
            return button;
        }
        case ControlKind::CheckBox:
            return new QCheckBox(parent);
        case ControlKind::OptionButton: {
            auto* option = new QRadioButton(parent);
            option->setAutoExclusive(false);  // the model clears the others of the container
            return option;
        }
        case ControlKind::Frame:
            return new QGroupBox(parent);
        case ControlKind::Panel:
            return new PanelWidget(parent);
        case ControlKind::ListView: {
            auto* tree = new QTreeWidget(parent);
            tree->setRootIsDecorated(false);
            tree->setUniformRowHeights(true);
            tree->setSelectionMode(QAbstractItemView::SingleSelection);
            tree->setAllColumnsShowFocus(true);
            return tree;
        }
        case ControlKind::RichTextBox: {
            auto* text = new QPlainTextEdit(parent);
            text->setReadOnly(true);
            return text;
        }
        case ControlKind::ProgressBar: {
            auto* bar = new QProgressBar(parent);
            bar->setTextVisible(false);
            return bar;
        }
        case ControlKind::Chart:
            return new ChartWidget(static_cast<forms::Chart&>(control), parent);
        case ControlKind::Timer:
            break;
    }
    return new QWidget(parent);
}

void FormWindow::ConnectInput(forms::Control& control, QWidget* widget) {
    forms::Control* c = &control;
    // Each handler re-shows the model afterwards: the model may have refused the input.
    switch (control.Kind()) {
        case ControlKind::TextBox: {
            auto* box = static_cast<forms::TextBox*>(c);
            if (auto* line = qobject_cast<QLineEdit*>(widget)) {
                connect(line, &QLineEdit::textEdited, this, [this, box](const QString& text) {
                    if (!Live() || updating_ > 0) {
                        return;
                    }
                    box->UserSetText(FromQString(text));
                    if (Live()) {
                        SyncText(*box);
                    }
                });
            } else if (auto* edit = qobject_cast<QTextEdit*>(widget)) {
                connect(edit, &QTextEdit::textChanged, this, [this, box, edit] {
                    if (!Live() || updating_ > 0) {
                        return;
                    }
                    box->UserSetText(ToModelText(edit->toPlainText()));
                    if (Live()) {
                        SyncText(*box);
                    }
                });
            }
            break;
        }
        case ControlKind::ComboBox: {
            auto* combo = static_cast<forms::ComboBox*>(c);
            auto* qcombo = static_cast<QComboBox*>(widget);
            connect(qcombo, &QComboBox::activated, this, [this, combo](int index) {
                if (!Live() || updating_ > 0) {
                    return;
                }
                combo->UserSelect(index);
                if (Live()) {
                    Sync(*combo, Property::ListIndex);
                }
            });
            if (QLineEdit* line = qcombo->lineEdit()) {
                connect(line, &QLineEdit::textEdited, this, [this, combo](const QString& text) {
                    if (!Live() || updating_ > 0) {
                        return;
                    }
                    combo->UserSetText(FromQString(text));
                    if (Live()) {
                        SyncText(*combo);
                    }
                });
            }
            break;
        }
        case ControlKind::ListBox: {
            auto* list = static_cast<forms::ListBox*>(c);
            auto* qlist = static_cast<QListWidget*>(widget);
            connect(qlist, &QListWidget::currentRowChanged, this, [this, list](int row) {
                if (!Live() || updating_ > 0) {
                    return;
                }
                list->UserSelect(row);
                if (Live()) {
                    Sync(*list, Property::ListIndex);
                }
            });
            connect(qlist, &QListWidget::itemDoubleClicked, this, [this, list] {
                if (Live() && updating_ == 0) {
                    list->UserDblClick();
                }
            });
            break;
        }
        case ControlKind::CommandButton:
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
            connect(static_cast<QAbstractButton*>(widget), &QAbstractButton::clicked, this,
                    [this, c] {
                        if (!Live() || updating_ > 0) {
                            return;
                        }
                        c->UserClick();
                        if (Live() && c->Kind() != ControlKind::CommandButton) {
                            Sync(*c, Property::Value);
                        }
                    });
            break;
        case ControlKind::ListView: {
            auto* view = static_cast<forms::ListView*>(c);
            auto* tree = static_cast<QTreeWidget*>(widget);
            connect(tree, &QTreeWidget::itemChanged, this,
                    [this, view, tree](QTreeWidgetItem* item, int column) {
                        if (!Live() || updating_ > 0 || column != 0) {
                            return;
                        }
                        const int index = tree->indexOfTopLevelItem(item) + 1;
                        const bool checked = item->checkState(0) == Qt::Checked;
                        if (index < 1 || index > view->ItemCount() ||
                            view->Item(index).checked == checked) {
                            return;
                        }
                        view->UserCheck(index, checked);
                        if (Live()) {
                            SyncListItems(*view);
                        }
                    });
            connect(tree, &QTreeWidget::itemSelectionChanged, this, [this, view, tree] {
                if (!Live() || updating_ > 0) {
                    return;
                }
                const auto selected = tree->selectedItems();
                if (selected.isEmpty()) {
                    return;
                }
                view->UserSelectItem(tree->indexOfTopLevelItem(selected.first()) + 1);
                if (Live()) {
                    SyncListItems(*view);
                }
            });
            break;
        }
        default:
            break;
    }
}

void FormWindow::DropWidget(forms::Control& control) {
    QWidget* widget = WidgetOf(control);
    if (widget == nullptr) {
        return;
    }
    widgets_.erase(&control);
    for (auto it = controls_.begin(); it != controls_.end();) {
        it = it->second == &control ? controls_.erase(it) : std::next(it);
    }
    widget->removeEventFilter(this);
    widget->hide();
    widget->deleteLater();  // we may be inside one of its signals
}

// ---- model -> widgets ---------------------------------------------------------------------

void FormWindow::ControlChanged(forms::Control& control, Property what) {
    if (!Live()) {
        return;
    }
    if (WidgetOf(control) == nullptr) {
        EnsureWidget(control);  // a control added after the form loaded
        return;
    }
    Sync(control, what);
}

void FormWindow::SyncAll(forms::Control& control) {
    for (Property p : {Property::Attributes, Property::Caption, Property::Font, Property::Colors,
                       Property::Picture, Property::Columns, Property::List, Property::Items,
                       Property::Text, Property::Value, Property::Selection, Property::ToolTip,
                       Property::Geometry, Property::Enabled, Property::Visible}) {
        Sync(control, p);
    }
}

void FormWindow::Sync(forms::Control& control, Property what) {
    QWidget* widget = WidgetOf(control);
    if (widget == nullptr) {
        return;
    }
    Updating updating(updating_);
    const QSignalBlocker blocker(widget);
    switch (what) {
        case Property::Caption: {
            const std::string* caption = CaptionOf(control);
            if (caption == nullptr) {
                break;
            }
            if (auto* label = qobject_cast<QLabel*>(widget)) {
                label->setText(LabelText(*caption));
            } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
                button->setText(ToQString(*caption));
            } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
                group->setTitle(ToQString(*caption));
            } else if (auto* panel = qobject_cast<PanelWidget*>(widget)) {
                panel->SetCaption(LabelText(*caption));
            }
            SyncAccessibleName(control);
            break;
        }
        case Property::Text:
            SyncText(control);
            break;
        case Property::Selection:
            SyncSelection(control);
            break;
        case Property::Enabled:
            widget->setEnabled(control.Enabled());
            break;
        case Property::Visible:
            widget->setVisible(control.Visible());
            break;
        case Property::Geometry: {
            // Controls on the form itself sit in its client area, inside any emulated frame.
            const bool onForm = control.Container() == nullptr;
            const int dx = onForm ? control.Parent().FrameInsetX() : 0;
            const int dy = onForm ? control.Parent().FrameInsetY() : 0;
            widget->setGeometry(control.Left() + dx, control.Top() + dy,
                                std::max(control.Width(), 0), std::max(control.Height(), 0));
            break;
        }
        case Property::Font: {
            QFont font(ToQString(control.FontName()));
            font.setPointSizeF(control.FontSize() > 0 ? control.FontSize() : 8.25);
            font.setBold(control.FontBold());
            widget->setFont(font);
            break;
        }
        case Property::ToolTip:
            widget->setToolTip(ToQString(control.ToolTipText()));
            widget->setAccessibleDescription(ToQString(control.ToolTipText()));
            SyncAccessibleName(control);
            break;
        case Property::Picture:
            if (control.Kind() == ControlKind::Image) {
                static_cast<QLabel*>(widget)->setPixmap(LoadImagePicture(control.Picture()));
            }
            break;
        case Property::Colors:
            SyncColors(control);
            break;
        case Property::List:
            SyncList(control);
            break;
        case Property::ListIndex: {
            if (!IsListControl(control)) {
                break;
            }
            const int index = static_cast<forms::ListControl&>(control).ListIndex();
            if (auto* combo = qobject_cast<QComboBox*>(widget)) {
                combo->setCurrentIndex(index);
                SyncText(control);
            } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
                list->setCurrentRow(index);
                if (index < 0) {
                    list->clearSelection();
                }
            }
            break;
        }
        case Property::Value:
            if (control.Kind() == ControlKind::CheckBox) {
                auto* box = static_cast<QCheckBox*>(widget);
                const int value = static_cast<forms::CheckBox&>(control).Value();
                box->setTristate(value == forms::check::kGrayed);
                box->setCheckState(value == forms::check::kChecked  ? Qt::Checked
                                   : value == forms::check::kGrayed ? Qt::PartiallyChecked
                                                                    : Qt::Unchecked);
            } else if (control.Kind() == ControlKind::OptionButton) {
                static_cast<QRadioButton*>(widget)->setChecked(
                    static_cast<forms::OptionButton&>(control).Value());
            } else if (control.Kind() == ControlKind::ProgressBar) {
                auto& model = static_cast<forms::ProgressBar&>(control);
                auto* bar = static_cast<QProgressBar*>(widget);
                bar->setRange(static_cast<int>(model.Min()), static_cast<int>(model.Max()));
                bar->setValue(static_cast<int>(model.Value()));
            }
            break;
        case Property::Attributes:
            SyncAttributes(control);
            break;
        case Property::Columns:
            if (control.Kind() == ControlKind::ListView) {
                auto* tree = static_cast<QTreeWidget*>(widget);
                const auto& columns = static_cast<forms::ListView&>(control).Columns();
                QStringList labels;
                for (const auto& column : columns) {
                    labels << ToQString(column.text);
                }
                tree->setColumnCount(std::max<int>(static_cast<int>(columns.size()), 1));
                tree->setHeaderLabels(labels);
                for (std::size_t i = 0; i < columns.size(); ++i) {
                    if (columns[i].width > 0) {
                        tree->setColumnWidth(static_cast<int>(i), columns[i].width);
                    }
                }
            }
            break;
        case Property::Items:
            SyncListItems(control);
            break;
        case Property::Data:
            widget->update();
            break;
        case Property::Focus:
            if (control.HasFocus() && !widget->hasFocus()) {
                widget->setFocus(Qt::OtherFocusReason);
            }
            break;
        case Property::ZOrder:
            widget->raise();
            break;
    }
}

void FormWindow::SyncText(forms::Control& control) {
    QWidget* widget = WidgetOf(control);
    Updating updating(updating_);
    const QSignalBlocker blocker(widget);
    switch (control.Kind()) {
        case ControlKind::TextBox: {
            const auto& box = static_cast<forms::TextBox&>(control);
            if (auto* line = qobject_cast<QLineEdit*>(widget)) {
                const QString text = ToQString(box.Text());
                if (line->text() != text) {
                    line->setText(text);
                    SyncSelection(control);
                }
            } else if (auto* edit = qobject_cast<QTextEdit*>(widget)) {
                const QString text = ToWidgetText(box.Text());
                if (edit->toPlainText() != text) {
                    edit->setPlainText(text);
                }
            }
            break;
        }
        case ControlKind::ComboBox: {
            const auto& model = static_cast<forms::ComboBox&>(control);
            auto* combo = static_cast<QComboBox*>(widget);
            const QString text = ToQString(model.Text());
            if (combo->isEditable()) {
                if (combo->currentText() != text) {
                    combo->setEditText(text);
                    if (!combo->hasFocus()) {
                        combo->lineEdit()->setCursorPosition(0);  // show the start of a long name
                    }
                }
            } else {
                // A dropdown list shows a text of its own only while nothing is chosen.
                combo->setPlaceholderText(text);
            }
            break;
        }
        case ControlKind::RichTextBox: {
            const auto& model = static_cast<forms::RichTextBox&>(control);
            auto* edit = static_cast<QPlainTextEdit*>(widget);
            const QString text = ToWidgetText(model.Text());
            if (edit->toPlainText() != text) {
                edit->setPlainText(text);
                SyncSelection(control);
            }
            break;
        }
        default:
            break;
    }
}

void FormWindow::SyncSelection(forms::Control& control) {
    QWidget* widget = WidgetOf(control);
    Updating updating(updating_);
    const QSignalBlocker blocker(widget);
    int start = 0;
    int length = 0;
    QLineEdit* line = nullptr;
    if (control.Kind() == ControlKind::TextBox) {
        const auto& box = static_cast<forms::TextBox&>(control);
        start = box.SelStart();
        length = box.SelLength();
        line = qobject_cast<QLineEdit*>(widget);
    } else if (control.Kind() == ControlKind::ComboBox) {
        const auto& combo = static_cast<forms::ComboBox&>(control);
        start = combo.SelStart();
        length = combo.SelLength();
        line = static_cast<QComboBox*>(widget)->lineEdit();
    } else if (control.Kind() == ControlKind::RichTextBox) {
        // The running text follows its caret, which the program keeps at the end.
        const auto& model = static_cast<forms::RichTextBox&>(control);
        auto* edit = static_cast<QPlainTextEdit*>(widget);
        QTextCursor cursor = edit->textCursor();
        const int size = static_cast<int>(edit->document()->characterCount()) - 1;
        cursor.setPosition(std::min(model.SelStart(), size));
        cursor.setPosition(std::min(model.SelStart() + model.SelLength(), size),
                           QTextCursor::KeepAnchor);
        edit->setTextCursor(cursor);
        edit->ensureCursorVisible();
        return;
    }
    if (line == nullptr) {
        return;
    }
    if (length > 0) {
        line->setSelection(start, length);
    } else {
        line->setCursorPosition(start);
    }
}

void FormWindow::SyncList(forms::Control& control) {
    if (!IsListControl(control)) {
        return;
    }
    const auto& model = static_cast<forms::ListControl&>(control);
    QWidget* widget = WidgetOf(control);
    const int count = model.ListCount();
    // In place: a reaction may refill the list from inside the widget's own signal.
    if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        while (combo->count() > count) {
            combo->removeItem(combo->count() - 1);
        }
        for (int i = 0; i < count; ++i) {
            const QString item = ToQString(model.List(i));
            if (i < combo->count()) {
                if (combo->itemText(i) != item) {
                    combo->setItemText(i, item);
                }
            } else {
                combo->addItem(item);
            }
        }
    } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
        while (list->count() > count) {
            delete list->takeItem(list->count() - 1);
        }
        for (int i = 0; i < count; ++i) {
            const QString item = ToQString(model.List(i));
            if (i < list->count()) {
                if (list->item(i)->text() != item) {
                    list->item(i)->setText(item);
                }
            } else {
                list->addItem(item);
            }
        }
    }
    Sync(control, Property::ListIndex);
}

void FormWindow::SyncListItems(forms::Control& control) {
    if (control.Kind() != ControlKind::ListView) {
        return;
    }
    const auto& view = static_cast<forms::ListView&>(control);
    auto* tree = static_cast<QTreeWidget*>(WidgetOf(control));
    Updating updating(updating_);
    const QSignalBlocker blocker(tree);
    const int count = view.ItemCount();
    while (tree->topLevelItemCount() > count) {
        delete tree->takeTopLevelItem(tree->topLevelItemCount() - 1);
    }
    while (tree->topLevelItemCount() < count) {
        tree->addTopLevelItem(new QTreeWidgetItem());
    }
    QTreeWidgetItem* selected = nullptr;
    for (int i = 1; i <= count; ++i) {
        const forms::ListItem& item = view.Item(i);
        QTreeWidgetItem* row = tree->topLevelItem(i - 1);
        row->setText(0, ToQString(item.text));
        for (std::size_t s = 0; s < item.subItems.size(); ++s) {
            row->setText(static_cast<int>(s) + 1, ToQString(item.subItems[s]));
        }
        if (view.Checkboxes()) {
            row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
            row->setCheckState(0, item.checked ? Qt::Checked : Qt::Unchecked);
        } else {
            row->setFlags(row->flags() & ~Qt::ItemIsUserCheckable);
            row->setData(0, Qt::CheckStateRole, QVariant());
        }
        if (item.selected) {
            selected = row;
        }
    }
    tree->setCurrentItem(selected);
    if (selected == nullptr) {
        tree->clearSelection();
    }
    tree->viewport()->update();
}

void FormWindow::SyncAttributes(forms::Control& control) {
    QWidget* widget = WidgetOf(control);
    switch (control.Kind()) {
        case ControlKind::Label: {
            const auto& model = static_cast<forms::Label&>(control);
            auto* label = static_cast<QLabel*>(widget);
            label->setAlignment(AlignmentOf(model.Alignment()) | Qt::AlignTop);
            SyncColors(control);
            break;
        }
        case ControlKind::Image:
            static_cast<QLabel*>(widget)->setScaledContents(
                static_cast<forms::Image&>(control).Stretch());
            break;
        case ControlKind::TextBox: {
            const auto& model = static_cast<forms::TextBox&>(control);
            const bool isMulti = qobject_cast<QTextEdit*>(widget) != nullptr;
            if (isMulti != model.MultiLine()) {
                // A different widget: make it afresh in the same place.
                DropWidget(control);
                EnsureWidget(control);
                return;
            }
            if (auto* line = qobject_cast<QLineEdit*>(widget)) {
                line->setEchoMode(model.PasswordChar() != 0 ? QLineEdit::Password
                                                            : QLineEdit::Normal);
                line->setMaxLength(model.MaxLength() > 0 ? model.MaxLength() : 32767);
                line->setReadOnly(model.Locked());
                line->setAlignment(AlignmentOf(model.Alignment()) | Qt::AlignVCenter);
            } else if (auto* edit = qobject_cast<QTextEdit*>(widget)) {
                edit->setReadOnly(model.Locked());
                edit->setAlignment(AlignmentOf(model.Alignment()));
            }
            break;
        }
        case ControlKind::ComboBox: {
            const auto& model = static_cast<forms::ComboBox&>(control);
            auto* combo = static_cast<QComboBox*>(widget);
            const bool editable = model.Style() != forms::combo::kDropdownList;
            if (combo->isEditable() != editable) {
                DropWidget(control);
                EnsureWidget(control);
                return;
            }
            if (combo->lineEdit() != nullptr) {
                combo->lineEdit()->setReadOnly(model.Locked());
            }
            break;
        }
        case ControlKind::CommandButton:
            static_cast<QPushButton*>(widget)->setDefault(
                static_cast<forms::CommandButton&>(control).Default());
            break;
        case ControlKind::ListView:
            SyncListItems(control);
            break;
        case ControlKind::RichTextBox:
            break;  // always read-only here: the program only appends
        default:
            break;
    }
}

void FormWindow::SyncColors(forms::Control& control) {
    QWidget* widget = WidgetOf(control);
    QPalette palette = widget->palette();
    const QColor fore = ToQColor(control.ForeColor());
    const QColor back = ToQColor(control.BackColor());
    switch (control.Kind()) {
        case ControlKind::Label: {
            palette.setColor(QPalette::WindowText, fore);
            palette.setColor(QPalette::Window, back);
            const bool opaque = !static_cast<forms::Label&>(control).Transparent();
            widget->setAutoFillBackground(opaque);
            break;
        }
        case ControlKind::TextBox:
        case ControlKind::ComboBox:
        case ControlKind::ListBox:
        case ControlKind::ListView:
        case ControlKind::RichTextBox:
            palette.setColor(QPalette::Text, fore);
            palette.setColor(QPalette::Base, back);
            break;
        case ControlKind::Frame:
        case ControlKind::Panel:
            palette.setColor(QPalette::WindowText, fore);
            palette.setColor(QPalette::Window, back);
            widget->setAutoFillBackground(true);
            break;
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
            // Drawn over the form's artwork: only the text takes the model's colour.
            palette.setColor(QPalette::WindowText, fore);
            break;
        case ControlKind::Chart:
            widget->update();
            return;
        default:
            return;
    }
    widget->setPalette(palette);
}

void FormWindow::SyncAccessibleName(forms::Control& control) {
    QWidget* widget = WidgetOf(control);
    const std::string* caption = CaptionOf(control);
    QString name = caption != nullptr ? LabelText(*caption) : QString();
    if (name.isEmpty()) {
        name = ToQString(control.ToolTipText());
    }
    if (name.isEmpty() && control.Kind() == ControlKind::Image) {
        name = ObjectNameOf(control);
    }
    widget->setAccessibleName(name);
}

QPixmap FormWindow::LoadPicture(const std::string& picture) const {
    if (picture.empty()) {
        return {};
    }
    QString path = ToQString(picture).replace(u'\\', u'/');
    if (QFileInfo(path).isRelative()) {
        path = QDir(assetsDir_).filePath(path);
    }
    QPixmap pixmap;
    if (!QPixmapCache::find(path, &pixmap)) {
        pixmap.load(path);
        QPixmapCache::insert(path, pixmap);
    }
    return pixmap;
}

QPixmap FormWindow::LoadImagePicture(const std::string& picture) const {
    QPixmap pixmap = LoadPicture(picture);
    if (pixmap.isNull() || form_ == nullptr) {
        return pixmap;
    }
    // An image's picture is cut out like its form's: the form's key colour is see-through.
    const long key = form_->ForeColor();
    const QColor keyColour(static_cast<int>(key & 0xFF), static_cast<int>((key >> 8) & 0xFF),
                           static_cast<int>((key >> 16) & 0xFF));
    pixmap.setMask(pixmap.createMaskFromColor(keyColour, Qt::MaskInColor));
    return pixmap;
}

// ---- the form -----------------------------------------------------------------------------

void FormWindow::FormChanged(forms::Form& form, FormProperty what) {
    (void)form;
    if (Live()) {
        SyncForm(what);
    }
}

void FormWindow::SyncForm(FormProperty what) {
    forms::Form& form = *form_;
    Updating updating(updating_);
    switch (what) {
        case FormProperty::Caption:
            setWindowTitle(ToQString(form.Caption()));
            setAccessibleName(ToQString(form.Caption()));
            break;
        case FormProperty::Geometry:
            setGeometry(form.Left(), form.Top(), std::max(form.Width(), 1),
                        std::max(form.Height(), 1));
            // The frame inset may have changed with it.
            for (forms::Control* control : form.Controls()) {
                if (control->Container() == nullptr) {
                    Sync(*control, Property::Geometry);
                }
            }
            update();
            break;
        case FormProperty::Visible:
            if (form.Visible()) {
                ApplyWindowState();
            } else {
                hide();
                if (onHidden_) {
                    onHidden_(form);
                }
            }
            break;
        case FormProperty::Enabled:
            setEnabled(form.Enabled());
            break;
        case FormProperty::Picture:
            background_ = LoadPicture(form.Picture());
            update();
            break;
        case FormProperty::Region:
            if (form.Region().has_value()) {
                setMask(ToQRegion(*form.Region()));
            } else {
                clearMask();
            }
            break;
        case FormProperty::WindowState:
            if (form.Visible()) {
                ApplyWindowState();
            }
            break;
        case FormProperty::ZOrder:
            if (form.ZOrderRequest() == 0) {
                raise();
            } else {
                lower();
            }
            break;
        case FormProperty::Cursor:
            break;
        case FormProperty::Repaint:
            repaint();
            break;
    }
}

void FormWindow::ApplyWindowState() {
    switch (form_->WindowState()) {
        case forms::window_state::kMinimized:
            showMinimized();
            break;
        case forms::window_state::kMaximized:
            showMaximized();
            break;
        default:
            if (isMinimized() || isMaximized()) {
                showNormal();
            } else {
                show();
            }
            break;
    }
}

void FormWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), form_ != nullptr ? ToQColor(form_->BackColor()) : QColor(Qt::white));
    if (!background_.isNull()) {
        painter.drawPixmap(form_->FrameInsetX(), form_->FrameInsetY(), background_);
    }
}

QPointF FormWindow::ClientPoint(const QPointF& p) const {
    return p - QPointF(form_->FrameInsetX(), form_->FrameInsetY());
}

void FormWindow::mousePressEvent(QMouseEvent* event) {
    if (Live()) {
        const QPointF p = ClientPoint(event->position());
        form_->UserMouseDown(ButtonsOf(event->button()), ShiftOf(event->modifiers()),
                             static_cast<float>(p.x()), static_cast<float>(p.y()));
    }
}

void FormWindow::mouseMoveEvent(QMouseEvent* event) {
    if (Live()) {
        const QPointF p = ClientPoint(event->position());
        form_->UserMouseMove(ButtonsOf(event->buttons()), ShiftOf(event->modifiers()),
                             static_cast<float>(p.x()), static_cast<float>(p.y()));
    }
}

void FormWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (!Live()) {
        return;
    }
    const QPointF p = ClientPoint(event->position());
    form_->UserMouseUp(ButtonsOf(event->button()), ShiftOf(event->modifiers()),
                       static_cast<float>(p.x()), static_cast<float>(p.y()));
    if (Live() && event->button() == Qt::LeftButton &&
        rect().contains(event->position().toPoint())) {
        form_->UserClick();
    }
}

void FormWindow::mouseDoubleClickEvent(QMouseEvent*) {
    if (Live()) {
        form_->UserDblClick();
    }
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
    if (!Live()) {
        return;
    }
    if (event->key() == Qt::Key_F1 && !form_->GetPlatform().HelpFile().empty()) {
        forms::Platform& platform = form_->GetPlatform();
        platform.ShowHelp(platform.HelpFile(), 0);
        return;
    }
    const auto ascii = KeyAsciiOf(*event);
    if (ascii && !PressDefaultOrCancel(*ascii) && Live() && form_->AcceptsInput()) {
        form_->UserKeyPress(*ascii);
    }
}

void FormWindow::closeEvent(QCloseEvent* event) {
    if (!Live()) {
        event->accept();
        return;
    }
    if (form_->UserClose()) {
        event->accept();
    } else {
        event->ignore();
    }
}

void FormWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !Live() || updating_ > 0) {
        return;
    }
    const int state = WindowStateOf(windowState());
    if (state != form_->WindowState()) {
        form_->UserSetWindowState(state);
    }
}

void FormWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    // Only the window manager's moves go back to the model; ours came from it.
    if (!Live() || updating_ > 0 || !event->spontaneous()) {
        return;
    }
    if (x() != form_->Left() || y() != form_->Top()) {
        forms::Form* form = form_;
        const int left = x();
        const int top = y();
        form->GetPlatform().Dispatch([form, left, top] { form->Move(left, top); });
    }
}

void FormWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!Live() || updating_ > 0 || !event->spontaneous()) {
        return;
    }
    if (width() != form_->Width() || height() != form_->Height()) {
        forms::Form* form = form_;
        const QRect g = geometry();
        form->GetPlatform().Dispatch(
            [form, g] { form->Move(g.x(), g.y(), g.width(), g.height()); });
    }
}

// ---- widgets -> model ---------------------------------------------------------------------

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    if (!Live() || updating_ > 0) {
        return false;
    }
    auto it = controls_.find(watched);
    if (it == controls_.end()) {
        return false;
    }
    forms::Control& control = *it->second;
    auto* widget = static_cast<QWidget*>(watched);
    switch (event->type()) {
        case QEvent::KeyPress:
            return HandleKey(control, static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease: {
            auto* key = static_cast<QKeyEvent*>(event);
            if (const int code = KeyCodeOf(*key); code != 0 && !key->isAutoRepeat()) {
                control.UserKeyUp(code, ShiftOf(key->modifiers()));
            }
            return false;
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
            return HandleMouse(control, widget, static_cast<QMouseEvent*>(event));
        case QEvent::FocusIn:
            control.UserFocus();
            return false;
        default:
            return false;
    }
}

bool FormWindow::HandleMouse(forms::Control& control, QWidget* widget, QMouseEvent* event) {
    const QPointF p = event->position();
    const auto x = static_cast<float>(p.x());
    const auto y = static_cast<float>(p.y());
    const int shift = ShiftOf(event->modifiers());
    // Labels and images have no click of their own: it is made here, as the toolkit did.
    const bool clickable =
        control.Kind() == ControlKind::Label || control.Kind() == ControlKind::Image;
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            control.UserMouseDown(ButtonsOf(event->button()), shift, x, y);
            return clickable;
        case QEvent::MouseButtonRelease:
            control.UserMouseUp(ButtonsOf(event->button()), shift, x, y);
            if (clickable && Live() && event->button() == Qt::LeftButton &&
                widget->rect().contains(p.toPoint())) {
                control.UserClick();
            }
            return clickable;
        case QEvent::MouseButtonDblClick:
            if (clickable || control.Kind() == ControlKind::CommandButton) {
                control.UserDblClick();
            }
            return clickable;
        case QEvent::MouseMove:
            control.UserMouseMove(ButtonsOf(event->buttons()), shift, x, y);
            return false;
        default:
            return false;
    }
}

bool FormWindow::HandleKey(forms::Control& control, QKeyEvent* event) {
    const int code = KeyCodeOf(*event);
    const int shift = ShiftOf(event->modifiers());
    if (code != 0) {
        control.UserKeyDown(code, shift);
        if (!Live()) {
            return true;
        }
    }
    const auto ascii = KeyAsciiOf(*event);
    if (!ascii) {
        return false;  // the widget moves its caret, deletes, pastes: edits come back as text
    }
    if (form_->ButtonForKey(*ascii) != nullptr) {
        control.UserKeyPress(*ascii);  // the model gives it to the default or cancel button
        return true;
    }
    const bool typesIntoModel =
        (control.Kind() == ControlKind::TextBox &&
         qobject_cast<QLineEdit*>(WidgetOf(control)) != nullptr) ||
        (control.Kind() == ControlKind::ComboBox &&
         static_cast<forms::ComboBox&>(control).Style() != forms::combo::kDropdownList);
    if (!typesIntoModel) {
        control.UserKeyPress(*ascii);
        return false;  // the widget acts on the key as well (space ticks a check box)
    }
    // The model types the character, so that a KeyPress routine can change or swallow it.
    PullSelection(control);
    control.UserKeyPress(*ascii);
    if (Live() && WidgetOf(control) != nullptr) {
        SyncText(control);
        SyncSelection(control);
    }
    return true;
}

void FormWindow::PullSelection(forms::Control& control) {
    QLineEdit* line = nullptr;
    if (control.Kind() == ControlKind::TextBox) {
        line = qobject_cast<QLineEdit*>(WidgetOf(control));
    } else if (control.Kind() == ControlKind::ComboBox) {
        line = static_cast<QComboBox*>(WidgetOf(control))->lineEdit();
    }
    if (line == nullptr) {
        return;
    }
    const int start = line->hasSelectedText() ? line->selectionStart() : line->cursorPosition();
    const int length = line->hasSelectedText() ? static_cast<int>(line->selectedText().size()) : 0;
    Updating updating(updating_);
    if (control.Kind() == ControlKind::TextBox) {
        auto& box = static_cast<forms::TextBox&>(control);
        box.SetSelStart(start);
        box.SetSelLength(length);
    } else {
        auto& combo = static_cast<forms::ComboBox&>(control);
        combo.SetSelStart(start);
        combo.SetSelLength(length);
    }
}

bool FormWindow::PressDefaultOrCancel(int keyAscii) {
    forms::CommandButton* button = form_->ButtonForKey(keyAscii);
    if (button == nullptr) {
        return false;
    }
    button->UserClick();
    return true;
}

}  // namespace kw::qt
