#include "platform/qt/form_window.h"

#include <algorithm>

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

#include "platform/forms/control.h"
#include "platform/forms/controls.h"
#include "platform/qt/accessible.h"
#include "platform/qt/binding.h"
#include "platform/qt/convert.h"
#include "platform/qt/widgets.h"

namespace kw::qt {

using forms::FormProperty;
using forms::Property;

namespace {

int WindowStateOf(Qt::WindowStates states) {
    if (states & Qt::WindowMinimized) {
        return forms::window_state::kMinimized;
    }
    if (states & Qt::WindowMaximized) {
        return forms::window_state::kMaximized;
    }
    return forms::window_state::kNormal;
}

// Shaped forms draw their own edge; a framed one gets the desktop's title bar with only a close
// button, at a size the user cannot drag.
Qt::WindowFlags WindowFlagsOf(const forms::Form& form) {
    if (form.BorderStyle() == forms::border_style::kFixedSingle) {
        return Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
               Qt::WindowCloseButtonHint | Qt::MSWindowsFixedSizeDialogHint;
    }
    return Qt::Window | Qt::FramelessWindowHint;
}

}  // namespace

FormWindow::FormWindow(forms::Form& form, QString assetsDir,
                       std::function<void(forms::Form&)> onHidden)
    : QWidget(nullptr, WindowFlagsOf(form)),
      form_(&form),
      context_(std::make_shared<BindingContext>(std::move(assetsDir))),
      onHidden_(std::move(onHidden)) {
    setObjectName(ToQString(form.Name()));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    InstallAccessibility();
    context_->captionOf = [this](const forms::Control& control) {
        ControlBinding* binding = BindingOf(control);
        return binding != nullptr ? binding->CaptionText() : QString();
    };
    // A form loaded and never shown (most pullouts at start) costs no widgets until it shows.
    if (form.Visible()) {
        BuildControls();
    }
    ShowingModel showing(*context_);
    for (FormProperty p : {FormProperty::Caption, FormProperty::Picture, FormProperty::Geometry,
                           FormProperty::Region, FormProperty::Enabled}) {
        SyncForm(p);
    }
    form.AddObserver(this);
    if (form.Visible()) {
        SyncForm(FormProperty::Visible);
    }
}

FormWindow::~FormWindow() {
    context_->Detach();  // the widgets go after this: nothing they signal on the way is input
    context_->captionOf = nullptr;
    if (form_ != nullptr) {
        form_->RemoveObserver(this);
    }
}

void FormWindow::Detach() {
    if (form_ == nullptr) {
        return;
    }
    context_->Detach();
    context_->captionOf = nullptr;
    form_->RemoveObserver(this);
    form_ = nullptr;
    bindings_.clear();
    inputs_.clear();
    tabOrder_.clear();
    hide();
    // The form may unload from inside one of this window's own signals.
    deleteLater();
}

QWidget* FormWindow::WidgetOf(const forms::Control& control) {
    BuildControls();
    ControlBinding* binding = BindingOf(control);
    return binding != nullptr ? binding->Widget() : nullptr;
}

void FormWindow::RestoreFromMinimized() {
    if (isMinimized()) {
        showNormal();
    }
}

// ---- the controls -------------------------------------------------------------------------

void FormWindow::BuildControls() {
    if (built_ || form_ == nullptr) {
        return;
    }
    built_ = true;
    ShowingModel showing(*context_);
    for (forms::Control* control : form_->Controls()) {
        EnsureBinding(*control);
    }
    // A control named by a caption made after it takes its name now. A label that names a
    // control is its buddy too: readers find a combo box's name through that relation.
    for (const auto& [control, binding] : bindings_) {
        if (control->NamedBy() == nullptr) {
            continue;
        }
        binding->Apply(Property::Accessibility);
        if (ControlBinding* caption = BindingOf(*control->NamedBy())) {
            // A caption left out of the tree names the control, but is no relation to read.
            auto* label = qobject_cast<QLabel*>(caption->Widget());
            if (label != nullptr && !IsDecorative(label)) {
                label->setBuddy(binding->Widget());
            }
        }
    }
    ShowTabOrder();
}

void FormWindow::ShowTabOrder() {
    if (!Live()) {
        return;
    }
    std::vector<std::pair<int, QWidget*>> ordered;
    const int count = static_cast<int>(form_->Controls().size());
    bool placed = false;
    for (int made = 0; made < count; ++made) {
        const forms::Control* control = form_->Controls()[static_cast<std::size_t>(made)];
        if (ControlBinding* binding = BindingOf(*control)) {
            // Controls without a place follow the placed ones, in the order they were made.
            placed |= control->TabIndex() >= 0;
            const int key = control->TabIndex() >= 0 ? control->TabIndex() : count + made;
            ordered.emplace_back(key, binding->Widget());
        }
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    tabOrder_.clear();
    for (const auto& [key, widget] : ordered) {
        tabOrder_.push_back(widget);
    }
    for (std::size_t i = 1; placed && i < tabOrder_.size(); ++i) {
        QWidget::setTabOrder(tabOrder_[i - 1], tabOrder_[i]);
    }
}

void FormWindow::RenameNamedBy(const forms::Control& caption) {
    for (const auto& [control, binding] : bindings_) {
        if (control->NamedBy() == &caption) {
            binding->Apply(Property::Accessibility);
        }
    }
}

ControlBinding* FormWindow::BindingOf(const forms::Control& control) const {
    auto it = bindings_.find(&control);
    return it != bindings_.end() ? it->second : nullptr;
}

ControlBinding* FormWindow::EnsureBinding(forms::Control& control) {
    if (ControlBinding* existing = BindingOf(control)) {
        return existing;
    }
    QWidget* parent = this;
    if (control.Container() != nullptr) {
        if (ControlBinding* container = EnsureBinding(*control.Container())) {
            parent = container->Widget();
        }
    }
    ControlBinding* binding = BindControl(control, context_, parent);
    if (binding == nullptr) {
        return nullptr;
    }
    bindings_[&control] = binding;
    for (QWidget* input : binding->InputWidgets()) {
        inputs_[input] = binding;
        input->installEventFilter(this);
    }
    return binding;
}

void FormWindow::DropBinding(forms::Control& control) {
    ControlBinding* binding = BindingOf(control);
    if (binding == nullptr) {
        return;
    }
    bindings_.erase(&control);
    std::erase_if(inputs_, [binding](const auto& entry) { return entry.second == binding; });
    std::erase(tabOrder_, binding->Widget());
    for (QWidget* input : binding->InputWidgets()) {
        input->removeEventFilter(this);
    }
    QWidget* widget = binding->Widget();
    widget->hide();
    widget->deleteLater();  // with its binding; we may be inside one of its signals
}

void FormWindow::ControlChanged(forms::Control& control, Property what) {
    if (!Live() || !built_) {
        return;  // unbuilt controls take all their properties when they are made
    }
    ControlBinding* binding = BindingOf(control);
    if (binding == nullptr) {
        EnsureBinding(control);  // a control added after the form loaded
        ShowTabOrder();
        return;
    }
    if (what == Property::Attributes && !binding->Fits()) {
        // A different widget: make it afresh in the same place.
        DropBinding(control);
        EnsureBinding(control);
        ShowTabOrder();
        return;
    }
    binding->Apply(what);
    if (what == Property::Enabled && control.Enabled() && control.HasFocus()) {
        KeepFocus();
    } else if (what == Property::Caption) {
        RenameNamedBy(control);
    } else if (what == Property::Accessibility) {
        ShowTabOrder();
    }
}

// ---- the form -----------------------------------------------------------------------------

void FormWindow::FormChanged(forms::Form& form, FormProperty what) {
    (void)form;
    if (Live()) {
        SyncForm(what);
    }
}

void FormWindow::SyncForm(FormProperty what) {
    forms::Form& form = *form_;
    ShowingModel showing(*context_);
    switch (what) {
        case FormProperty::Caption:
            setWindowTitle(ToQString(form.Caption()));
            setAccessibleName(
                ToQString(form.AccessibleName().empty() ? form.Caption() : form.AccessibleName()));
            break;
        case FormProperty::Geometry:
            SyncGeometry();
            break;
        case FormProperty::Visible:
            SyncVisible();
            break;
        case FormProperty::Enabled:
            setEnabled(form.Enabled());
            if (form.Enabled() && built_) {
                KeepFocus();
            }
            break;
        case FormProperty::Picture:
            background_ = LoadPicture(context_->AssetsDir(), form.Picture());
            update();
            break;
        case FormProperty::Region:
            SyncRegion();
            break;
        case FormProperty::WindowState:
            if (form.Visible()) {
                ApplyWindowState();
            }
            break;
        default:
            SyncStacking(what);
            break;
    }
}

void FormWindow::SyncVisible() {
    if (form_->Visible()) {
        BuildControls();
        ApplyWindowState();
        return;
    }
    hide();
    if (onHidden_) {
        onHidden_(*form_);
    }
}

void FormWindow::SyncRegion() {
    if (form_->Region().has_value()) {
        setMask(ToQRegion(*form_->Region()));
    } else {
        clearMask();
    }
}

// Raising, lowering and repainting: asked of the window, nothing to keep.
void FormWindow::SyncStacking(FormProperty what) {
    if (what == FormProperty::ZOrder) {
        if (form_->ZOrderRequest() == 0) {
            raise();
        } else {
            lower();
        }
    } else if (what == FormProperty::Repaint) {
        repaint();
    }
}

void FormWindow::SyncGeometry() {
    if (form_->BorderStyle() == forms::border_style::kNone) {
        setGeometry(form_->Left(), form_->Top(), std::max(form_->Width(), 1),
                    std::max(form_->Height(), 1));
    } else {
        // The frame stands at the form's place and holds its size inside.
        move(form_->Left(), form_->Top());
        setFixedSize(std::max(form_->Width(), 1), std::max(form_->Height(), 1));
    }
    // The frame inset may have changed with it.
    for (forms::Control* control : form_->Controls()) {
        ControlBinding* binding = BindingOf(*control);
        if (binding != nullptr && control->Container() == nullptr) {
            binding->Apply(Property::Geometry);
        }
    }
    update();
}

void FormWindow::ApplyWindowState() {
    switch (form_->WindowState()) {
        case forms::window_state::kMinimized:
            showMinimized();
            break;
        case forms::window_state::kMaximized:
            showMaximized();
            break;
        default:
            if (isMinimized() || isMaximized()) {
                showNormal();
            } else {
                show();
            }
            break;
    }
}

void FormWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), form_ != nullptr ? ToQColor(form_->BackColor()) : QColor(Qt::white));
    if (!background_.isNull()) {
        painter.drawPixmap(form_->FrameInsetX(), form_->FrameInsetY(), background_);
    }
}

QPointF FormWindow::ClientPoint(const QPointF& p) const {
    return p - QPointF(form_->FrameInsetX(), form_->FrameInsetY());
}

void FormWindow::mousePressEvent(QMouseEvent* event) {
    if (Live()) {
        const QPointF p = ClientPoint(event->position());
        form_->UserMouseDown(ButtonsOf(event->button()), ShiftOf(event->modifiers()),
                             static_cast<float>(p.x()), static_cast<float>(p.y()));
    }
}

void FormWindow::mouseMoveEvent(QMouseEvent* event) {
    if (Live()) {
        const QPointF p = ClientPoint(event->position());
        form_->UserMouseMove(ButtonsOf(event->buttons()), ShiftOf(event->modifiers()),
                             static_cast<float>(p.x()), static_cast<float>(p.y()));
    }
}

void FormWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (!Live()) {
        return;
    }
    const QPointF p = ClientPoint(event->position());
    form_->UserMouseUp(ButtonsOf(event->button()), ShiftOf(event->modifiers()),
                       static_cast<float>(p.x()), static_cast<float>(p.y()));
    if (Live() && event->button() == Qt::LeftButton &&
        rect().contains(event->position().toPoint())) {
        form_->UserClick();
    }
}

void FormWindow::mouseDoubleClickEvent(QMouseEvent*) {
    if (Live()) {
        form_->UserDblClick();
    }
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
    if (!Live()) {
        return;
    }
    if (event->key() == Qt::Key_F6 && KeyboardToNextWindow()) {
        return;
    }
    if (event->key() == Qt::Key_F1 && !form_->GetPlatform().HelpFile().empty()) {
        forms::Platform& platform = form_->GetPlatform();
        platform.ShowHelp(platform.HelpFile(), 0);
        return;
    }
    const auto ascii = KeyAsciiOf(*event);
    if (ascii && !PressDefaultOrCancel(*ascii) && Live() && form_->AcceptsInput()) {
        form_->UserKeyPress(*ascii);
    }
}

void FormWindow::closeEvent(QCloseEvent* event) {
    if (!Live()) {
        event->accept();
        return;
    }
    if (form_->UserClose()) {
        event->accept();
    } else {
        event->ignore();
    }
}

void FormWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && Live()) {
        KeepFocus();
    }
    if (event->type() != QEvent::WindowStateChange || !context_->TakesInput()) {
        return;
    }
    const int state = WindowStateOf(windowState());
    if (state != form_->WindowState()) {
        form_->UserSetWindowState(state);
    }
}

void FormWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    // Only the window manager's moves go back to the model; ours came from it.
    if (!context_->TakesInput() || !event->spontaneous()) {
        return;
    }
    if (x() != form_->Left() || y() != form_->Top()) {
        forms::Form* form = form_;
        const int left = x();
        const int top = y();
        form->GetPlatform().Dispatch([form, left, top] { form->Move(left, top); });
    }
}

void FormWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!context_->TakesInput() || !event->spontaneous()) {
        return;
    }
    if (width() != form_->Width() || height() != form_->Height()) {
        forms::Form* form = form_;
        const QRect g = geometry();
        form->GetPlatform().Dispatch(
            [form, g] { form->Move(g.x(), g.y(), g.width(), g.height()); });
    }
}

// ---- the controls' keys and mouse ---------------------------------------------------------

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
    if (!context_->TakesInput()) {
        return false;
    }
    auto it = inputs_.find(watched);
    if (it == inputs_.end()) {
        return false;
    }
    ControlBinding& binding = *it->second;
    switch (event->type()) {
        case QEvent::KeyPress:
            return HandleKey(binding, static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease: {
            auto* key = static_cast<QKeyEvent*>(event);
            if (const int code = KeyCodeOf(*key); code != 0 && !key->isAutoRepeat()) {
                binding.Model().UserKeyUp(code, ShiftOf(key->modifiers()));
            }
            return false;
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
            return HandleMouse(binding, static_cast<QWidget*>(watched),
                               static_cast<QMouseEvent*>(event));
        case QEvent::FocusIn:
            binding.Model().UserFocus();
            return false;
        default:
            return false;
    }
}

bool FormWindow::HandleMouse(ControlBinding& binding, QWidget* widget, QMouseEvent* event) {
    forms::Control& control = binding.Model();
    const QPointF p = event->position();
    const auto x = static_cast<float>(p.x());
    const auto y = static_cast<float>(p.y());
    const int shift = ShiftOf(event->modifiers());
    const bool makesClick = binding.MakesOwnClick();
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            control.UserMouseDown(ButtonsOf(event->button()), shift, x, y);
            return makesClick;
        case QEvent::MouseButtonRelease:
            control.UserMouseUp(ButtonsOf(event->button()), shift, x, y);
            if (makesClick && Live() && event->button() == Qt::LeftButton &&
                widget->rect().contains(p.toPoint())) {
                control.UserClick();
            }
            return makesClick;
        case QEvent::MouseButtonDblClick:
            if (binding.TakesDoubleClick()) {
                control.UserDblClick();
            }
            return makesClick;
        case QEvent::MouseMove:
            control.UserMouseMove(ButtonsOf(event->buttons()), shift, x, y);
            return false;
        default:
            return false;
    }
}

bool FormWindow::HandleKey(ControlBinding& binding, QKeyEvent* event) {
    if (event->key() == Qt::Key_F6 && KeyboardToNextWindow()) {
        return true;
    }
    forms::Control& control = binding.Model();
    if (const int code = KeyCodeOf(*event); code != 0) {
        control.UserKeyDown(code, ShiftOf(event->modifiers()));
        if (!Live()) {
            return true;
        }
    }
    const auto ascii = KeyAsciiOf(*event);
    if (!ascii) {
        return false;  // the widget moves its caret, deletes, pastes: edits come back as text
    }
    if (binding.PressesWithKeys() && PressWithKey(binding, *ascii)) {
        return true;
    }
    if (form_->ButtonForKey(*ascii) != nullptr) {
        control.UserKeyPress(*ascii);  // the model gives it to the default or cancel button
        return true;
    }
    ControlBinding* current = BindingOf(control);  // KeyDown may have made it afresh
    if (current == nullptr || !current->TypesIntoModel()) {
        control.UserKeyPress(*ascii);
        return false;  // the widget acts on the key as well (space ticks a check box)
    }
    // The model types the character, so that a KeyPress routine can change or swallow it.
    current->PullSelection();
    control.UserKeyPress(*ascii);
    if (Live()) {
        if (ControlBinding* shown = BindingOf(control)) {
            shown->Apply(Property::Text);
            shown->Apply(Property::Selection);
        }
    }
    return true;
}

namespace {

bool TakesKeyboard(const QWidget* widget) {
    return widget != nullptr && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
           widget->isEnabled() && widget->isVisible();
}

}  // namespace

void FormWindow::KeepFocus() {
    // The toolkit moves the focus on when its widget is disabled, and the program may move it
    // while the window is disabled under a modal form: the window comes back where the program
    // left the focus, or to its first control.
    if (const forms::Control* active = form_->ActiveControl()) {
        ControlBinding* binding = BindingOf(*active);
        QWidget* widget = binding != nullptr ? binding->Widget() : nullptr;
        if (TakesKeyboard(widget)) {
            if (widget != focusWidget() && !widget->isAncestorOf(focusWidget())) {
                widget->setFocus(Qt::OtherFocusReason);
            }
            return;
        }
    }
    if (focusWidget() == nullptr) {
        FocusFirst();
    }
}

void FormWindow::FocusFirst() {
    for (QWidget* widget : tabOrder_) {
        if (TakesKeyboard(widget)) {
            widget->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

bool FormWindow::KeyboardToNextWindow() {
    if (QApplication::activeModalWidget() != nullptr) {
        return false;  // a modal form keeps the keyboard
    }
    std::vector<FormWindow*> shown;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<FormWindow*>(widget);
        if (window != nullptr && window->Live() && window->isVisible() && window->isEnabled()) {
            shown.push_back(window);
        }
    }
    if (shown.size() < 2) {
        return false;
    }
    std::sort(shown.begin(), shown.end(), [](const FormWindow* a, const FormWindow* b) {
        return std::pair(a->x(), a->y()) < std::pair(b->x(), b->y());
    });
    const auto at = std::find(shown.begin(), shown.end(), this);
    FormWindow* next = at == shown.end() || at + 1 == shown.end() ? shown.front() : *(at + 1);
    if (next->focusWidget() == nullptr) {
        next->FocusFirst();  // arriving for the first time
    }
    next->activateWindow();
    return true;
}

bool FormWindow::PressWithKey(ControlBinding& binding, int keyAscii) {
    if (keyAscii == forms::key::kReturn && form_->KeepsEnter()) {
        if (form_->AcceptsInput()) {
            form_->UserKeyPress(keyAscii);
        }
        return true;
    }
    if (keyAscii != forms::key::kSpace && keyAscii != forms::key::kReturn) {
        return false;
    }
    binding.Model().UserClick();
    return true;
}

bool FormWindow::PressDefaultOrCancel(int keyAscii) {
    forms::CommandButton* button = form_->ButtonForKey(keyAscii);
    if (button == nullptr) {
        return false;
    }
    button->UserClick();
    return true;
}

}  // namespace kw::qt
