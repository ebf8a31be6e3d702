#include "platform/qt/widgets.h"

#include <QAccessible>
#include <QPainter>
#include <QPointer>
#include <QTimer>

#include "platform/qt/convert.h"

namespace kw::qt {

PanelWidget::PanelWidget(QWidget* parent) : QFrame(parent) {
    setFrameStyle(QFrame::Panel | QFrame::Raised);
    setLineWidth(1);
}

void PanelWidget::SetCaption(const QString& caption) {
    caption_ = caption;
    update();
}

void PanelWidget::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    // Controls on the panel cover its caption, transparent labels included.
    if (caption_.isEmpty() ||
        !findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly).isEmpty()) {
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, caption_);
}

SkinLabel::SkinLabel(QWidget* parent) : QLabel(parent) {
    setFocusPolicy(Qt::NoFocus);
}

void SkinLabel::SetRole(forms::AccessRole role) {
    role_ = role;
    setFocusPolicy(role == forms::AccessRole::Button ? Qt::StrongFocus : Qt::NoFocus);
    // A light that is out still stands where it is, but the mouse goes through to the form.
    setAttribute(Qt::WA_TransparentForMouseEvents, role == forms::AccessRole::Indicator && !lit_);
    update();
}

void SkinLabel::SetLit(bool lit) {
    if (lit_ == lit) {
        return;
    }
    lit_ = lit;
    setAttribute(Qt::WA_TransparentForMouseEvents, role_ == forms::AccessRole::Indicator && !lit_);
    update();
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
    QAccessibleEvent description(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&description);
}

void SkinLabel::Press() {
    QTimer::singleShot(0, this, [self = QPointer<SkinLabel>(this)] {
        if (self != nullptr && self->press_) {
            self->press_();
        }
    });
}

void SkinLabel::Announce(const QString& text) {
    if (text.isEmpty()) {
        return;
    }
    if (announcement_ == nullptr) {
        announcement_ = new Announcement(this);
    }
    announcement_->setAccessibleName(text);
    // Each appearance is one announcement.
    announcement_->hide();
    announcement_->show();
}

Announcement::Announcement(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(0, 0, 1, 1);  // draws nothing
}

void SkinLabel::paintEvent(QPaintEvent* event) {
    if (role_ == forms::AccessRole::Indicator && !lit_) {
        return;  // the artwork shows the light out
    }
    QLabel::paintEvent(event);
    if (hasFocus()) {
        // The skin has no focus look of its own: a frame in the highlight colour, over the face.
        QPainter painter(this);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

bool IsDecorative(const QWidget* widget) {
    const auto* label = qobject_cast<const SkinLabel*>(widget);
    return label != nullptr && label->Role() == forms::AccessRole::Decorative;
}

}  // namespace kw::qt
