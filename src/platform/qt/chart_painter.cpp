#include "platform/qt/chart_painter.h"

#include <algorithm>
#include <cmath>

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>

#include "platform/forms/chart.h"
#include "platform/qt/convert.h"

namespace kw::qt {

namespace {

// The model's pixels to the widget's, should the two differ in size.
class Scale {
  public:
    Scale(const forms::Chart& chart, QSize size)
        : sx_(chart.Width() > 0 ? size.width() / static_cast<double>(chart.Width()) : 1.0),
          sy_(chart.Height() > 0 ? size.height() / static_cast<double>(chart.Height()) : 1.0) {}
    QRectF Rect(const forms::ChartRect& r) const {
        return {r.left * sx_, r.top * sy_, r.width * sx_, r.height * sy_};
    }
    double Y(double modelY) const { return modelY * sy_; }
    // A value of the left axis as the model places it, clamped to the plot.
    double ValueY(const forms::Chart& chart, double value) const {
        const forms::ChartRect plot = chart.PlotArea();
        const double low = chart.AxisMin();
        const double high = chart.AxisMax();
        const double span = high > low ? high - low : 1.0;
        const double clamped = std::clamp(value, std::min(low, high), std::max(low, high));
        return Y(plot.top + plot.height * (high - clamped) / span);
    }

  private:
    double sx_;
    double sy_;
};

void PaintBars(QPainter& painter, const forms::Chart& chart, int s, const Scale& scale) {
    const forms::ChartSeries& series = chart.Series(s);
    const QColor colour = ToQColor(series.colour);
    painter.setPen(series.outline ? QPen(colour.darker(160), 1) : Qt::NoPen);
    painter.setBrush(colour);
    for (int i = 0; i < series.Count(); ++i) {
        if (series.nulls[static_cast<std::size_t>(i)]) {
            continue;
        }
        const QRectF bar = scale.Rect(chart.PointRect(s, i));
        if (bar.height() > 0 && bar.width() > 0) {
            painter.drawRect(bar);
        }
    }
}

// An area runs through the tops of consecutive points; a null point breaks it, and a point
// alone fills its own column.
void PaintArea(QPainter& painter, const forms::Chart& chart, int s, const Scale& scale) {
    const forms::ChartSeries& series = chart.Series(s);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ToQColor(series.colour));
    QPolygonF run;
    QRectF first;
    QRectF last;
    auto close = [&] {
        if (run.isEmpty()) {
            return;
        }
        run.prepend(QPointF(first.left(), first.top()));
        run.append(QPointF(last.right(), last.top()));
        run.append(QPointF(last.right(), last.bottom()));
        run.append(QPointF(first.left(), first.bottom()));
        painter.drawPolygon(run);
        run.clear();
    };
    for (int i = 0; i < series.Count(); ++i) {
        if (series.nulls[static_cast<std::size_t>(i)]) {
            close();
            continue;
        }
        const QRectF column = scale.Rect(chart.PointRect(s, i));
        if (run.isEmpty()) {
            first = column;
        }
        last = column;
        run.append(QPointF(column.center().x(), column.top()));
    }
    close();
}

void PaintLeftAxis(QPainter& painter, const forms::Chart& chart, const QRectF& plot,
                   const Scale& scale) {
    const forms::ChartAxis& axis = chart.LeftAxis();
    const QColor ink(Qt::black);
    painter.setPen(QPen(ink, std::max(1, axis.lineWidth)));
    painter.drawLine(QPointF(plot.left(), plot.top()), QPointF(plot.left(), plot.bottom()));

    const std::vector<forms::AxisLabel> labels = chart.LeftLabels();
    // Minor ticks between the labelled ones.
    painter.setPen(QPen(ink, 1));
    const double tick = std::max(1, axis.tickLength) + 1.0;
    for (std::size_t k = 0; k + 1 < labels.size() && axis.minorTickCount > 0; ++k) {
        const double y0 = scale.ValueY(chart, labels[k].value);
        const double y1 = scale.ValueY(chart, labels[k + 1].value);
        for (int m = 1; m <= axis.minorTickCount; ++m) {
            const double y = y0 + (y1 - y0) * m / (axis.minorTickCount + 1);
            painter.drawLine(QPointF(plot.left(), y), QPointF(plot.left() + tick - 1, y));
        }
    }

    // The labels stand inside the plot, at its left edge, kept within it top and bottom.
    QFont font = painter.font();
    font.setPixelSize(std::clamp(static_cast<int>(plot.height() / 6), 7, 10));
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const double half = metrics.height() / 2;
    // A label that would overlap the one drawn before it keeps its tick and loses its text, as
    // a small chart shows only every other label of a fine increment.
    double lastCentre = -1e9;
    for (const forms::AxisLabel& label : labels) {
        const double y = scale.ValueY(chart, label.value);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.left() + tick + 1, y));
        const double centre = std::clamp(y, plot.top() + half, plot.bottom() - half);
        if (std::fabs(centre - lastCentre) < metrics.height()) {
            continue;
        }
        lastCentre = centre;
        const QRectF box(plot.left() + tick + 2, centre - half, plot.width() - tick - 2,
                         metrics.height());
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, ToQString(label.text));
    }
}

}  // namespace

void PaintChart(QPainter& painter, const forms::Chart& chart, QSize size) {
    painter.save();
    painter.fillRect(QRect(QPoint(0, 0), size), ToQColor(chart.BackColor()));
    const Scale scale(chart, size);
    const QRectF plot = scale.Rect(chart.PlotArea());
    if (plot.width() < 1 || plot.height() < 1) {
        painter.restore();
        return;
    }

    // Flat, the walls are the plot's ground and a floor strip under it.
    painter.fillRect(plot, ToQColor(chart.LeftWallColour()));
    if (const double floor = std::min(3.0, size.height() - plot.bottom()); floor > 0) {
        painter.fillRect(QRectF(plot.left(), plot.bottom(), plot.width(), floor),
                         ToQColor(chart.BottomWallColour()));
    }

    painter.setClipRect(plot.adjusted(0, 0, 1, 1));
    for (int s = 0; s < chart.SeriesCount(); ++s) {
        if (chart.Series(s).kind == forms::SeriesKind::Area) {
            PaintArea(painter, chart, s, scale);
        } else {
            PaintBars(painter, chart, s, scale);
        }
    }
    const bool leftAxis = chart.AxisVisible(forms::AxisSide::Left);
    const double low = chart.AxisMin();
    const double high = chart.AxisMax();
    if (leftAxis && low < 0 && high > 0) {
        const double zero = scale.ValueY(chart, 0);
        painter.setPen(QPen(Qt::black, 1));
        painter.drawLine(QPointF(plot.left(), zero), QPointF(plot.right(), zero));
    }
    if (leftAxis) {
        PaintLeftAxis(painter, chart, plot, scale);
    }
    painter.restore();
}

}  // namespace kw::qt
