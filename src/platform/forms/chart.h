#pragma once

#include <string>
#include <vector>

#include "platform/forms/control.h"

namespace kw::forms {

enum class SeriesKind { Bar, Area };

// One series. Its points are kept column by column, Y first, as a renderer walks them; a null
// point keeps its place on the X axis and draws nothing.
struct ChartSeries {
    std::string title;
    long colour = 0;
    SeriesKind kind = SeriesKind::Bar;
    int barWidthPercent = 80;
    bool marks = false;
    bool outline = false;
    std::vector<double> values;  // Y
    std::vector<double> xValues;
    std::vector<bool> nulls;
    int Count() const { return static_cast<int>(values.size()); }
};

enum class AxisSide { Left, Bottom, Right, Top };

struct ChartAxis {
    bool visible = true;
    bool automatic = true;
    bool automaticMaximum = true;
    bool automaticMinimum = true;
    double minimum = 0;
    double maximum = 0;
    double increment = 0;  // 0: labels at the two ends only
    int labelSize = 0;
    std::string labelFormat;  // a classic number format; empty for the plain number
    int minorTickCount = 0;
    int tickLength = 0;
    int lineWidth = 1;
};

struct AxisLabel {
    double value = 0;
    std::string text;
};

// A rectangle in pixels of the control.
struct ChartRect {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    bool Contains(double x, double y) const {
        return x >= left && x <= left + width && y >= top && y <= top + height;
    }
};

// The data model of a chart: series of bars or areas along ascending X, a left axis that follows
// the data or stays where it is put, walls, margins and the rest of what is drawn. The geometry
// (plot area, the place of every point) is computed here, so that a renderer draws exactly what
// the hit test answers for.
class Chart : public Control {
  public:
    Chart(Form& form, std::string name, int index = -1);

    // ---- series and points ----
    int SeriesCount() const { return static_cast<int>(series_.size()); }
    int AddSeries(std::string title, long colour, SeriesKind kind = SeriesKind::Bar);
    const ChartSeries& Series(int index) const;  // 0-based; outside fails with 9
    void SetSeriesTitle(int series, std::string title);
    void SetBarStyle(int series, int widthPercent, bool marks, bool outline);
    int PointCount(int series) const { return Series(series).Count(); }
    void AddXY(int series, double x, double y);
    // A gap one place after the last X (at 0 in an empty series).
    void AddNull(int series);
    void DeletePoint(int series, int point);  // outside fails with 9
    void ClearSeries(int series);
    double LastX(int series) const;  // 0 for an empty series
    double YValue(int series, int point) const;
    bool IsNull(int series, int point) const;
    // The point of the series drawn under (x, y), pixels of the control; -1 if none.
    int PointAt(int series, double x, double y) const;

    // ---- the left axis ----
    const ChartAxis& LeftAxis() const { return left_; }
    void SetAxisAutomatic(bool automatic, bool automaticMaximum, bool automaticMinimum);
    void SetAxisMaximum(double maximum);
    void SetAxisMinimum(double minimum);
    void SetAxisIncrement(double increment);
    void SetAxisLabelSize(int size);
    void SetAxisLabelFormat(std::string format);
    void SetAxisTicks(int minorTickCount, int tickLength, int lineWidth);
    // The range drawn: the values set, or the data's where the axis is automatic.
    double AxisMin() const;
    double AxisMax() const;
    std::vector<AxisLabel> LeftLabels() const;

    bool AxisVisible(AxisSide side) const;
    void SetAxisVisible(AxisSide side, bool visible);

    // ---- looks ----
    bool View3D() const { return view3D_; }
    void SetView3D(bool on);
    long BottomWallColour() const { return bottomWall_; }
    long LeftWallColour() const { return leftWall_; }
    void SetWallColours(long bottom, long left);
    bool LegendVisible() const { return legend_; }
    void SetLegendVisible(bool visible);
    const std::string& Title() const { return title_; }
    void SetTitle(std::string title);
    // Margins in percent of the control's height (bottom, top) and width (left, right).
    void SetMargins(int bottom, int left, int right, int top);

    // ---- geometry ----
    ChartRect PlotArea() const;
    // Where a point is drawn: its bar, or the column under an area. Empty for a null point.
    ChartRect PointRect(int series, int point) const;

  private:
    ChartSeries& Mutable(int series);
    void DataRange(double& low, double& high) const;
    void XRange(double& low, double& high) const;
    double PixelY(double value) const;

    std::vector<ChartSeries> series_;
    ChartAxis left_;
    bool axisVisible_[4] = {true, true, true, true};
    bool view3D_ = true;
    long bottomWall_ = 0xFFFFFF;
    long leftWall_ = 0xFFFFFF;
    bool legend_ = true;
    std::string title_;
    int marginBottom_ = 0;
    int marginLeft_ = 0;
    int marginRight_ = 0;
    int marginTop_ = 0;
};

}  // namespace kw::forms
