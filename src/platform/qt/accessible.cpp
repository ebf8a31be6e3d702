#include "platform/qt/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLineEdit>
#include <QStyle>
#include <QWidget>

#include "platform/qt/form_window.h"
#include "platform/qt/widgets.h"

namespace kw::qt {

namespace {

using forms::AccessRole;

// The widgets of a window or panel that say something: not other windows, not the decoration.
QList<QWidget*> SpeakingChildren(const QWidget* parent) {
    QList<QWidget*> children;
    for (QObject* object : parent->children()) {
        auto* widget = qobject_cast<QWidget*>(object);
        if (widget != nullptr && !widget->isWindow() && !IsDecorative(widget)) {
            children.append(widget);
        }
    }
    return children;
}

// A window or panel of the skin: its children without the artwork.
class SkinContainerAccessible : public QAccessibleWidget {
  public:
    SkinContainerAccessible(QWidget* widget, QAccessible::Role role)
        : QAccessibleWidget(widget, role) {}

    int childCount() const override { return static_cast<int>(SpeakingChildren(widget()).size()); }
    QAccessibleInterface* child(int index) const override {
        const QList<QWidget*> children = SpeakingChildren(widget());
        if (index < 0 || index >= children.size()) {
            return nullptr;
        }
        return QAccessible::queryAccessibleInterface(children.at(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        if (child == nullptr) {
            return -1;
        }
        const auto* widget = qobject_cast<const QWidget*>(child->object());
        return static_cast<int>(SpeakingChildren(this->widget()).indexOf(widget));
    }
};

// A form's window: a dialog while it is shown modal.
class FormWindowAccessible : public SkinContainerAccessible {
  public:
    explicit FormWindowAccessible(FormWindow* window)
        : SkinContainerAccessible(window, QAccessible::Window) {}

    QAccessible::Role role() const override {
        const forms::Form* form = static_cast<FormWindow*>(widget())->Model();
        return form != nullptr && form->IsModal() ? QAccessible::Dialog : QAccessible::Window;
    }
};

class SkinLabelAccessible : public QAccessibleWidget {
  public:
    explicit SkinLabelAccessible(SkinLabel* label) : QAccessibleWidget(label) {}

    QAccessible::Role role() const override {
        switch (Label()->Role()) {
            case AccessRole::Button:
                return QAccessible::Button;
            case AccessRole::Indicator:
                // Readers speak a check box's state everywhere; AT-SPI has no light of Qt's.
                return QAccessible::CheckBox;
            case AccessRole::StatusLine:
                return QAccessible::StatusBar;
            default:
                return Label()->pixmap().isNull() ? QAccessible::StaticText : QAccessible::Graphic;
        }
    }

    QString text(QAccessible::Text t) const override {
        switch (t) {
            case QAccessible::Name:
                return widget()->accessibleName().isEmpty() ? Label()->text()
                                                            : widget()->accessibleName();
            case QAccessible::Description:
                if (Label()->Role() == AccessRole::Indicator) {
                    return Label()->Lit() ? QStringLiteral("lit") : QStringLiteral("not lit");
                }
                return widget()->accessibleDescription();
            case QAccessible::Value:
                return Label()->Role() == AccessRole::StatusLine ? Label()->text() : QString();
            default:
                return QAccessibleWidget::text(t);
        }
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        if (Label()->Role() == AccessRole::Indicator) {
            state.checkable = true;
            state.checked = Label()->Lit();
            state.readOnly = true;
        }
        return state;
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (Label()->Role() == AccessRole::Button) {
            names.prepend(pressAction());
        }
        return names;
    }

    void doAction(const QString& action) override {
        if (action == pressAction() && Label()->Role() == AccessRole::Button) {
            Label()->Press();
            return;
        }
        QAccessibleWidget::doAction(action);
    }

  private:
    SkinLabel* Label() const { return static_cast<SkinLabel*>(widget()); }
};

QAccessibleInterface* SkinFactory(const QString& className, QObject* object) {
    if (className == QLatin1String("kw::qt::SkinLabel")) {
        return new SkinLabelAccessible(static_cast<SkinLabel*>(object));
    }
    if (className == QLatin1String("kw::qt::FormWindow")) {
        return new FormWindowAccessible(static_cast<FormWindow*>(object));
    }
    if (className == QLatin1String("kw::qt::ChartWidget")) {
        // Read as a chart, its figures in its description, rather than as an empty pane.
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Chart);
    }
    if (className == QLatin1String("kw::qt::Announcement")) {
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Notification);
    }
    if (className == QLatin1String("kw::qt::PanelWidget")) {
        return new SkinContainerAccessible(static_cast<QWidget*>(object), QAccessible::Grouping);
    }
    return nullptr;
}

// ---- what a password field tells ----------------------------------------------------------

QAccessible::UpdateHandler nextHandler = nullptr;
void MaskPasswords(QAccessibleEvent* event);

// The event as it stands, to whoever listened before us: the accessibility bridge takes events
// only while no handler is installed, so ours steps aside for it.
void PassOn(QAccessibleEvent* event) {
    if (nextHandler != nullptr) {
        nextHandler(event);
        return;
    }
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(MaskPasswords);
}

// A line edit's text events carry the characters themselves, in a password field too, and a
// screen reader speaks what they carry. They go on with the field's mask in their place.
void MaskPasswords(QAccessibleEvent* event) {
    const auto* line = qobject_cast<const QLineEdit*>(event->object());
    if (line == nullptr || line->echoMode() == QLineEdit::Normal) {
        PassOn(event);
        return;
    }
    const QChar maskChar(
        line->style()->styleHint(QStyle::SH_LineEdit_PasswordCharacter, nullptr, line));
    const auto mask = [&](const QString& text) {
        return line->echoMode() == QLineEdit::NoEcho ? QString() : QString(text.size(), maskChar);
    };
    switch (event->type()) {
        case QAccessible::TextInserted: {
            const auto* typed = static_cast<QAccessibleTextInsertEvent*>(event);
            QAccessibleTextInsertEvent masked(event->object(), typed->changePosition(),
                                              mask(typed->textInserted()));
            PassOn(&masked);
            break;
        }
        case QAccessible::TextRemoved: {
            const auto* removed = static_cast<QAccessibleTextRemoveEvent*>(event);
            QAccessibleTextRemoveEvent masked(event->object(), removed->changePosition(),
                                              mask(removed->textRemoved()));
            PassOn(&masked);
            break;
        }
        case QAccessible::TextUpdated: {
            const auto* updated = static_cast<QAccessibleTextUpdateEvent*>(event);
            QAccessibleTextUpdateEvent masked(event->object(), updated->changePosition(),
                                              mask(updated->textRemoved()),
                                              mask(updated->textInserted()));
            PassOn(&masked);
            break;
        }
        default:
            PassOn(event);
            break;
    }
}

}  // namespace

void InstallAccessibility() {
    QAccessible::installFactory(SkinFactory);  // a second install of the same one adds nothing
    static const bool masking = [] {
        nextHandler = QAccessible::installUpdateHandler(MaskPasswords);
        return true;
    }();
    (void)masking;
}

}  // namespace kw::qt
