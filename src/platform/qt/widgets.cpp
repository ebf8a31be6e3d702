#include "platform/qt/widgets.h"

#include <algorithm>

#include <QPainter>
#include <QPainterPath>

#include "platform/forms/controls.h"
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
    if (caption_.isEmpty()) {
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, caption_);
}

ChartWidget::ChartWidget(const forms::Chart& chart, QWidget* parent)
    : QWidget(parent), chart_(chart) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ChartWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), ToQColor(chart_.BackColor()));
    QRect plot = rect().adjusted(2, 2, -3, -3);
    if (!chart_.Title().empty()) {
        const int titleHeight = fontMetrics().height();
        painter.setPen(ToQColor(chart_.ForeColor()));
        painter.drawText(QRect(plot.left(), plot.top(), plot.width(), titleHeight), Qt::AlignCenter,
                         ToQString(chart_.Title()));
        plot.setTop(plot.top() + titleHeight + 1);
    }
    painter.setPen(QPen(ToQColor(chart_.ForeColor()), 1));
    painter.drawRect(plot);
    if (plot.width() < 2 || plot.height() < 2) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(plot);
    for (int s = 0; s < chart_.SeriesCount(); ++s) {
        const auto& series = chart_.Series(s);
        if (!series.values.empty()) {
            painter.setPen(QPen(ToQColor(series.colour), 1.5));
            painter.drawPath(SeriesPath(series.values, plot));
        }
    }
}

QPainterPath ChartWidget::SeriesPath(const std::vector<double>& values, const QRect& plot) const {
    const double low = chart_.AxisMin();
    const double span = chart_.AxisMax() - low;
    const auto count = static_cast<double>(std::max<std::size_t>(values.size() - 1, 1));
    QPainterPath path;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double fraction = span > 0 ? (values[i] - low) / span : 0.0;
        const QPointF point(plot.left() + plot.width() * (static_cast<double>(i) / count),
                            plot.bottom() - plot.height() * std::clamp(fraction, 0.0, 1.0));
        if (i == 0) {
            path.moveTo(point);
        } else {
            path.lineTo(point);
        }
    }
    return path;
}

}  // namespace kw::qt
