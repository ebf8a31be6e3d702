#pragma once

#include <QFrame>
#include <QString>
#include <QWidget>

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

}  // namespace kw::qt
