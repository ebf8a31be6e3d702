#pragma once

#include <functional>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <QObject>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include "platform/forms/observer.h"

class QLineEdit;

namespace kw::forms {
class Control;
}

namespace kw::qt {

// What the bindings of one window share: where the pictures are, whether the form is still
// there, and whether the model is being shown on the widgets. While it is, their signals are
// not the user's doing.
class BindingContext {
  public:
    explicit BindingContext(QString assetsDir) : assetsDir_(std::move(assetsDir)) {}
    const QString& AssetsDir() const { return assetsDir_; }
    // False once the form has unloaded: its models may be gone.
    bool Live() const { return live_; }
    void Detach() {
        live_ = false;
        for (auto& release : onDetach_) {
            release();
        }
        onDetach_.clear();
    }
    // Runs when the form unloads: what holds on to a control model lets go of it then, since the
    // widgets may outlive the model until the event loop deletes them.
    void OnDetach(std::function<void()> release) { onDetach_.push_back(std::move(release)); }
    // A widget signal is the user's input only now.
    bool TakesInput() const { return live_ && showing_ == 0; }
    // The caption another control of the form shows, for a control it names.
    std::function<QString(const forms::Control&)> captionOf;

  private:
    friend class ShowingModel;
    QString assetsDir_;
    bool live_ = true;
    int showing_ = 0;
    std::vector<std::function<void()>> onDetach_;
};

// Held while the model is shown on the widgets, so that nothing echoes back as input.
class ShowingModel {
  public:
    explicit ShowingModel(BindingContext& context) : context_(context) { ++context_.showing_; }
    ~ShowingModel() { --context_.showing_; }
    ShowingModel(const ShowingModel&) = delete;
    ShowingModel& operator=(const ShowingModel&) = delete;

  private:
    BindingContext& context_;
};

// One control kind on one widget, both ways: it makes the widget, shows the model's properties
// on it, and turns the widget's signals into the model's User entry points. The binding belongs
// to its widget and goes with it. The kinds live in bindings_simple, bindings_text and
// bindings_lists; BindControl makes them.
class ControlBinding : public QObject {
  public:
    ~ControlBinding() override;

    forms::Control& Model() const { return control_; }
    QWidget* Widget() const { return widget_; }
    // The widgets whose keys and mouse are the control's: the widget, and any editor it has.
    virtual std::vector<QWidget*> InputWidgets() const { return {widget_}; }

    // Shows one property of the model, or all of them.
    void Apply(forms::Property what);
    void ApplyAll();
    // Pushes the widget's caret and selection into the model, for a key that goes there.
    virtual void PullSelection() {}

    // False once the model wants another widget (a text box turned multi-line): make it afresh.
    virtual bool Fits() const { return true; }
    // Labels and images have no click of their own: the window makes it from the mouse.
    virtual bool MakesOwnClick() const { return false; }
    virtual bool TakesDoubleClick() const { return MakesOwnClick(); }
    // Typed characters go to the model, which may change or swallow them, not to the widget.
    virtual bool TypesIntoModel() const { return false; }
    // A label or picture that acts as a button: Space and Enter press it.
    virtual bool PressesWithKeys() const { return false; }
    // The caption on show, as a person reads it; empty for kinds without one.
    QString CaptionText() const;

  protected:
    ControlBinding(forms::Control& control, std::shared_ptr<BindingContext> context);
    BindingContext& Context() const { return *context_; }

    virtual QWidget* Create(QWidget* parent) = 0;
    virtual void ConnectInput() {}
    // The kind's own properties; the common ones (geometry, font, ...) are shown by Apply.
    virtual void Show(forms::Property what) = 0;
    // The caption the control shows, nullptr for kinds without one.
    virtual const std::string* Caption() const { return nullptr; }
    // The accessible name when there is neither caption nor tool tip.
    virtual QString FallbackName() const { return {}; }
    // The role the model asks for, on kinds that can take one.
    virtual void ShowRole() {}
    virtual void ShowVisible();

    // A widget signal as user input: ignored unless the context takes input. The handler may
    // take the signal's arguments or none.
    template <class Sender, class Signal, class Handler>
    void OnUserInput(Sender* sender, Signal signal, Handler handler) {
        connect(sender, signal, this, [this, handler](const auto&... args) {
            if (!context_->TakesInput()) {
                return;
            }
            if constexpr (std::is_invocable_v<Handler, decltype(args)...>) {
                handler(args...);
            } else {
                handler();
            }
        });
    }
    // Shows a property again after input, which the model may have refused.
    void Reshow(forms::Property what);
    void ShowAccessibleName();

  private:
    friend ControlBinding* BindControl(forms::Control&, std::shared_ptr<BindingContext>, QWidget*);
    void Build(QWidget* parent);
    void ShowCommon(forms::Property what);
    void ShowFont();
    void ShowAccessibleDescription();

    forms::Control& control_;
    std::shared_ptr<BindingContext> context_;
    QWidget* widget_ = nullptr;
};

// The control's widget under parent, with the binding that keeps them in step (owned by the
// widget); nullptr for a control without a widget (a timer). Holds the only switch on the kind.
ControlBinding* BindControl(forms::Control& control, std::shared_ptr<BindingContext> context,
                            QWidget* parent);

// The widget's objectName: the control's name, and its index in a control array.
QString ObjectNameOf(const forms::Control& control);

// A picture of the assets folder (or an absolute path), cached.
QPixmap LoadPicture(const QString& assetsDir, const std::string& picture);

// Model text keeps the toolkit's line breaks; the widgets want plain ones.
QString ToWidgetText(const std::string& text);
std::string ToModelText(const QString& text);

// The toolkit's alignment numbers.
Qt::Alignment AlignmentOf(int alignment);

// An entry field's colours: the model's as its text and base.
void ShowFieldColours(QWidget* widget, const forms::Control& control);
// A surface's colours: the model's as its text and background, filled when opaque.
void ShowSurfaceColours(QWidget* widget, const forms::Control& control, bool opaque);

// The caret and selection of a one-line editor, both ways.
void ShowLineSelection(QLineEdit* line, int start, int length);
struct LineSelection {
    int start = 0;
    int length = 0;
};
LineSelection ReadLineSelection(const QLineEdit& line);

}  // namespace kw::qt
