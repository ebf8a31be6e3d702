#pragma once

#include <vector>

#include <QFrame>
#include <QPainterPath>
#include <QString>
#include <QWidget>

namespace kw::forms {
class Chart;
}

namespace kw::qt {

// A raised panel with its caption in the middle; the controls it contains are its children.
class PanelWidget : public QFrame {
    Q_OBJECT
  public:
    explicit PanelWidget(QWidget* parent);
    void SetCaption(const QString& caption);
    const QString& Caption() const { return caption_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString caption_;
};

// Draws a chart model: each series as a line over the axis range, newest point on the right.
class ChartWidget : public QWidget {
    Q_OBJECT
  public:
    ChartWidget(const forms::Chart& chart, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    // A series as a line, its first point on the left and its newest on the right.
    QPainterPath SeriesPath(const std::vector<double>& values, const QRect& plot) const;

    const forms::Chart& chart_;
};

}  // namespace kw::qt
