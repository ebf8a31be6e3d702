#pragma once

#include <QSize>

class QPainter;

namespace kw::forms {
class Chart;
}

namespace kw::qt {

// Draws a chart model at the given size: background, walls, the bars and areas where the model
// places them (so that what is seen is what its hit test answers for), the zero line and the
// left axis with its labels in the model's format. Null points draw nothing.
void PaintChart(QPainter& painter, const forms::Chart& chart, QSize size);

}  // namespace kw::qt
