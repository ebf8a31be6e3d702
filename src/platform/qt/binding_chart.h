#pragma once

#include <QWidget>

#include "platform/forms/chart.h"
#include "platform/qt/binding.h"

namespace kw::qt {

// Draws its chart model whenever asked; the model is read at each paint.
class ChartWidget : public QWidget {
    Q_OBJECT
  public:
    ChartWidget(const forms::Chart& chart, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const forms::Chart& chart_;
};

// A chart's data and looks only ask for a paint; the mouse moves without a button held reach
// the model, whose handlers set the tool tip from the point under the pointer.
class ChartBinding final : public ControlBinding {
  public:
    ChartBinding(forms::Chart& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;

  private:
    forms::Chart& model_;
};

}  // namespace kw::qt
