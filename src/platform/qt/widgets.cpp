#include "platform/qt/widgets.h"

#include <QPainter>

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

}  // namespace kw::qt
