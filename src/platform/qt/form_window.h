#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <QPixmap>
#include <QString>
#include <QWidget>

#include "platform/forms/form.h"
#include "platform/forms/observer.h"

namespace kw::forms {
class Control;
}

namespace kw::qt {

class BindingContext;
class ControlBinding;

// The window of one form: frameless, its background the form's picture, its shape the form's
// region, one child widget per control, each kept in step with its model by a binding. Input on
// the window itself and the keys and mouse of every control go to the model's User entry points,
// which decide whether a reaction runs.
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
    // The control's widget, made with the others if the form has not shown yet.
    QWidget* WidgetOf(const forms::Control& control);

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
    ControlBinding* BindingOf(const forms::Control& control) const;
    ControlBinding* EnsureBinding(forms::Control& control);
    void DropBinding(forms::Control& control);
    void SyncForm(forms::FormProperty what);
    void SyncGeometry();
    void SyncVisible();
    void SyncRegion();
    void SyncStacking(forms::FormProperty what);
    void ApplyWindowState();
    // Return and Escape on the form itself press its default and cancel buttons.
    bool PressDefaultOrCancel(int keyAscii);
    // A point of the window in the form's client area (inside the emulated frame).
    QPointF ClientPoint(const QPointF& p) const;
    bool HandleKey(ControlBinding& binding, QKeyEvent* event);
    // Space and Enter on a label or picture that acts as a button.
    bool PressWithKey(ControlBinding& binding, int keyAscii);
    // F6: the keyboard goes to the next of the program's windows on show, left to right. The
    // drawers are windows of their own, out of reach of Tab.
    bool KeyboardToNextWindow();
    // Qt's focus back on the control the program gave it, when Qt moved it on its own.
    void KeepFocus();
    // The first control in the window's Tab order that takes the keyboard.
    void FocusFirst();
    // The focus goes from control to control in the models' Tab order.
    void ShowTabOrder();
    // A caption changed: the controls it names say so.
    void RenameNamedBy(const forms::Control& caption);
    bool HandleMouse(ControlBinding& binding, QWidget* widget, QMouseEvent* event);
    bool Live() const { return form_ != nullptr; }

    forms::Form* form_;
    std::shared_ptr<BindingContext> context_;
    std::function<void(forms::Form&)> onHidden_;
    // Makes the widgets of all controls, once: at the first show, or when a widget is asked for.
    void BuildControls();
    bool built_ = false;
    std::map<const forms::Control*, ControlBinding*> bindings_;  // owned by their widgets
    std::map<const QObject*, ControlBinding*> inputs_;           // the widgets taking input
    QPixmap background_;
    std::vector<QWidget*> tabOrder_;  // the controls' widgets as Tab goes through them
};

}  // namespace kw::qt
