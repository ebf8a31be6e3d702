#pragma once

#include <functional>
#include <map>

#include <QPixmap>
#include <QString>
#include <QWidget>

#include "platform/forms/form.h"
#include "platform/forms/observer.h"

namespace kw::forms {
class Control;
}

namespace kw::qt {

// The window of one form: frameless, its background the form's picture, its shape the form's
// region, one child widget per control. It keeps model and widgets in step both ways: a change
// of the model updates its widget without echoing back, and input on a widget goes to the
// model's User entry points, which decide whether a reaction runs.
class FormWindow : public QWidget, public forms::FormObserver {
    Q_OBJECT
  public:
    // assetsDir: where the form's and controls' pictures are. onHidden: told when the form hides.
    FormWindow(forms::Form& form, QString assetsDir, std::function<void(forms::Form&)> onHidden);
    ~FormWindow() override;

    // The form unloads: stop observing it, hide, and go once the event loop is back.
    void Detach();
    // nullptr once detached.
    forms::Form* Model() const { return form_; }
    // The widget drawing a control; nullptr for a timer or an unknown control.
    QWidget* WidgetOf(const forms::Control& control) const;

    // Asked by another instance of the program.
    void RestoreFromMinimized();

    void ControlChanged(forms::Control& control, forms::Property what) override;
    void FormChanged(forms::Form& form, forms::FormProperty what) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* EnsureWidget(forms::Control& control);
    QWidget* CreateWidget(forms::Control& control, QWidget* parent);
    void ConnectInput(forms::Control& control, QWidget* widget);
    void DropWidget(forms::Control& control);
    void SyncAll(forms::Control& control);
    void Sync(forms::Control& control, forms::Property what);
    void SyncForm(forms::FormProperty what);
    void SyncList(forms::Control& control);
    void SyncListItems(forms::Control& control);
    void SyncText(forms::Control& control);
    void SyncSelection(forms::Control& control);
    void SyncAttributes(forms::Control& control);
    void SyncColors(forms::Control& control);
    void SyncAccessibleName(forms::Control& control);
    void ApplyWindowState();
    // Pushes the widget's caret and selection into the model before a key goes there.
    void PullSelection(forms::Control& control);
    // Return and Escape on the form itself press its default and cancel buttons.
    bool PressDefaultOrCancel(int keyAscii);
    // A point of the window in the form's client area (inside the emulated frame).
    QPointF ClientPoint(const QPointF& p) const;
    bool HandleKey(forms::Control& control, QKeyEvent* event);
    bool HandleMouse(forms::Control& control, QWidget* widget, QMouseEvent* event);
    QPixmap LoadPicture(const std::string& picture) const;
    bool Live() const { return form_ != nullptr; }

    forms::Form* form_;
    QString assetsDir_;
    std::function<void(forms::Form&)> onHidden_;
    std::map<const forms::Control*, QWidget*> widgets_;
    std::map<const QObject*, forms::Control*> controls_;
    QPixmap background_;
    int updating_ = 0;  // above 0 while the model is being shown: widget signals are not input
};

}  // namespace kw::qt
