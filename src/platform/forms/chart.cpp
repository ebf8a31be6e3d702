#include "platform/forms/chart.h"

#include <algorithm>
#include <cmath>

#include "platform/automation/failure.h"
#include "platform/automation/number_format.h"
#include "platform/automation/variant.h"

namespace kw::forms {

using automation::Failure;

namespace {

std::size_t At(int index) {
    return static_cast<std::size_t>(index);
}

}  // namespace

Chart::Chart(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::Chart, index) {}

// ---- series and points ----------------------------------------------------------------------

int Chart::AddSeries(std::string title, long colour, SeriesKind kind) {
    ChartSeries series;
    series.title = std::move(title);
    series.colour = colour;
    series.kind = kind;
    series_.push_back(std::move(series));
    Notify(Property::Data);
    return SeriesCount() - 1;
}

const ChartSeries& Chart::Series(int index) const {
    if (index < 0 || index >= SeriesCount()) {
        throw Failure(automation::err::kSubscriptOutOfRange);
    }
    return series_[At(index)];
}

ChartSeries& Chart::Mutable(int series) {
    Series(series);
    return series_[At(series)];
}

void Chart::SetSeriesTitle(int series, std::string title) {
    Mutable(series).title = std::move(title);
    Notify(Property::Data);
}

void Chart::SetBarStyle(int series, int widthPercent, bool marks, bool outline) {
    ChartSeries& s = Mutable(series);
    s.barWidthPercent = widthPercent;
    s.marks = marks;
    s.outline = outline;
    Notify(Property::Data);
}

void Chart::AddXY(int series, double x, double y) {
    ChartSeries& s = Mutable(series);
    s.values.push_back(y);
    s.xValues.push_back(x);
    s.nulls.push_back(false);
    Notify(Property::Data);
}

void Chart::AddNull(int series) {
    ChartSeries& s = Mutable(series);
    const double x = s.xValues.empty() ? 0.0 : s.xValues.back() + 1;
    s.values.push_back(0.0);
    s.xValues.push_back(x);
    s.nulls.push_back(true);
    Notify(Property::Data);
}

void Chart::DeletePoint(int series, int point) {
    ChartSeries& s = Mutable(series);
    if (point < 0 || point >= s.Count()) {
        throw Failure(automation::err::kSubscriptOutOfRange);
    }
    s.values.erase(s.values.begin() + point);
    s.xValues.erase(s.xValues.begin() + point);
    s.nulls.erase(s.nulls.begin() + point);
    Notify(Property::Data);
}

void Chart::ClearSeries(int series) {
    ChartSeries& s = Mutable(series);
    s.values.clear();
    s.xValues.clear();
    s.nulls.clear();
    Notify(Property::Data);
}

double Chart::LastX(int series) const {
    const ChartSeries& s = Series(series);
    return s.xValues.empty() ? 0.0 : s.xValues.back();
}

double Chart::YValue(int series, int point) const {
    const ChartSeries& s = Series(series);
    if (point < 0 || point >= s.Count()) {
        throw Failure(automation::err::kSubscriptOutOfRange);
    }
    return s.values[At(point)];
}

bool Chart::IsNull(int series, int point) const {
    const ChartSeries& s = Series(series);
    if (point < 0 || point >= s.Count()) {
        throw Failure(automation::err::kSubscriptOutOfRange);
    }
    return s.nulls[At(point)];
}

int Chart::PointAt(int series, double x, double y) const {
    const int count = PointCount(series);
    for (int i = 0; i < count; ++i) {
        if (!IsNull(series, i) && PointRect(series, i).Contains(x, y)) {
            return i;
        }
    }
    return -1;
}

// ---- the left axis ------------------------------------------------------------------------

void Chart::SetAxisAutomatic(bool automatic, bool automaticMaximum, bool automaticMinimum) {
    left_.automatic = automatic;
    left_.automaticMaximum = automaticMaximum;
    left_.automaticMinimum = automaticMinimum;
    Notify(Property::Data);
}

void Chart::SetAxisMaximum(double maximum) {
    left_.maximum = maximum;
    Notify(Property::Data);
}

void Chart::SetAxisMinimum(double minimum) {
    left_.minimum = minimum;
    Notify(Property::Data);
}

void Chart::SetAxisIncrement(double increment) {
    left_.increment = increment;
    Notify(Property::Data);
}

void Chart::SetAxisLabelSize(int size) {
    left_.labelSize = size;
    Notify(Property::Data);
}

void Chart::SetAxisLabelFormat(std::string format) {
    left_.labelFormat = std::move(format);
    Notify(Property::Data);
}

void Chart::SetAxisTicks(int minorTickCount, int tickLength, int lineWidth) {
    left_.minorTickCount = minorTickCount;
    left_.tickLength = tickLength;
    left_.lineWidth = lineWidth;
    Notify(Property::Data);
}

// The lowest and highest Y of the points that are drawn; bars stand on zero, so zero is in.
void Chart::DataRange(double& low, double& high) const {
    low = 0;
    high = 0;
    for (const ChartSeries& s : series_) {
        for (std::size_t i = 0; i < s.values.size(); ++i) {
            if (!s.nulls[i]) {
                low = std::min(low, s.values[i]);
                high = std::max(high, s.values[i]);
            }
        }
    }
}

double Chart::AxisMin() const {
    if (left_.automatic || left_.automaticMinimum) {
        double low = 0;
        double high = 0;
        DataRange(low, high);
        return low;
    }
    return left_.minimum;
}

double Chart::AxisMax() const {
    if (left_.automatic || left_.automaticMaximum) {
        double low = 0;
        double high = 0;
        DataRange(low, high);
        return high;
    }
    return left_.maximum;
}

std::vector<AxisLabel> Chart::LeftLabels() const {
    const double low = AxisMin();
    const double high = AxisMax();
    std::vector<double> at;
    if (left_.increment > 0 && high > low) {
        const double steps = std::floor((high - low) / left_.increment + 1e-9);
        for (double k = 0; k <= steps && k < 1000; ++k) {
            at.push_back(low + k * left_.increment);
        }
    } else {
        at = {low, high};
    }
    std::vector<AxisLabel> labels;
    for (const double v : at) {
        labels.push_back({v, left_.labelFormat.empty() ? automation::Variant(v).ToString()
                                                       : automation::Format(v, left_.labelFormat)});
    }
    return labels;
}

bool Chart::AxisVisible(AxisSide side) const {
    return axisVisible_[static_cast<int>(side)];
}

void Chart::SetAxisVisible(AxisSide side, bool visible) {
    axisVisible_[static_cast<int>(side)] = visible;
    Notify(Property::Data);
}

// ---- looks --------------------------------------------------------------------------------

void Chart::SetView3D(bool on) {
    view3D_ = on;
    Notify(Property::Data);
}

void Chart::SetWallColours(long bottom, long left) {
    bottomWall_ = bottom;
    leftWall_ = left;
    Notify(Property::Colors);
}

void Chart::SetLegendVisible(bool visible) {
    legend_ = visible;
    Notify(Property::Data);
}

void Chart::SetTitle(std::string title) {
    title_ = std::move(title);
    Notify(Property::Data);
}

void Chart::SetMargins(int bottom, int left, int right, int top) {
    marginBottom_ = bottom;
    marginLeft_ = left;
    marginRight_ = right;
    marginTop_ = top;
    Notify(Property::Geometry);
}

// ---- geometry -----------------------------------------------------------------------------

ChartRect Chart::PlotArea() const {
    const double w = Width();
    const double h = Height();
    ChartRect r;
    r.left = w * marginLeft_ / 100.0;
    r.top = h * marginTop_ / 100.0;
    r.width = std::max(0.0, w - r.left - w * marginRight_ / 100.0);
    r.height = std::max(0.0, h - r.top - h * marginBottom_ / 100.0);
    return r;
}

// Every point owns one slot of the X axis, half a step either side of its X.
void Chart::XRange(double& low, double& high) const {
    bool any = false;
    for (const ChartSeries& s : series_) {
        for (const double x : s.xValues) {
            low = any ? std::min(low, x) : x;
            high = any ? std::max(high, x) : x;
            any = true;
        }
    }
    if (!any) {
        low = 0;
        high = 0;
    }
    low -= 0.5;
    high += 0.5;
}

double Chart::PixelY(double value) const {
    const ChartRect plot = PlotArea();
    const double low = AxisMin();
    const double high = AxisMax();
    const double span = high > low ? high - low : 1.0;
    const double clamped = std::clamp(value, std::min(low, high), std::max(low, high));
    return plot.top + plot.height * (high - clamped) / span;
}

ChartRect Chart::PointRect(int series, int point) const {
    const ChartSeries& s = Series(series);
    if (IsNull(series, point)) {
        return {};
    }
    double low = 0;
    double high = 0;
    XRange(low, high);
    const ChartRect plot = PlotArea();
    const double slot = plot.width / (high - low);
    const double centre = plot.left + (s.xValues[At(point)] - low) * slot;
    const double width = s.kind == SeriesKind::Bar ? slot * s.barWidthPercent / 100.0 : slot;
    const double base = s.kind == SeriesKind::Bar ? PixelY(0) : plot.top + plot.height;
    const double top = PixelY(s.values[At(point)]);
    ChartRect r;
    r.left = centre - width / 2;
    r.width = width;
    r.top = std::min(top, base);
    r.height = std::fabs(base - top);
    return r;
}

}  // namespace kw::forms
