#include "platform/qt/binding_chart.h"

#include <QPainter>

#include "platform/qt/chart_painter.h"

namespace kw::qt {

ChartWidget::ChartWidget(const forms::Chart& chart, QWidget* parent)
    : QWidget(parent), chart_(chart) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
}

void ChartWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    PaintChart(painter, chart_, size());
}

ChartBinding::ChartBinding(forms::Chart& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ChartBinding::Create(QWidget* parent) {
    return new ChartWidget(model_, parent);
}

void ChartBinding::Show(forms::Property what) {
    if (what == forms::Property::Colors) {
        Widget()->update();
    }
}

}  // namespace kw::qt
