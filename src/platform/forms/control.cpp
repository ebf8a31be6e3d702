#include "platform/forms/control.h"

#include "platform/forms/controls.h"

#include "platform/forms/form.h"
#include "platform/forms/platform.h"

namespace kw::forms {

Control::Control(Form& form, std::string name, ControlKind kind, int index)
    : form_(form), name_(std::move(name)), kind_(kind), index_(index) {
    form_.Register(this);
}

Control::~Control() {
    form_.Unregister(this);
}

const char* Control::TypeName() const {
    switch (kind_) {
        case ControlKind::Label:
            return "Label";
        case ControlKind::Image:
            return "Image";
        case ControlKind::TextBox:
            return "TextBox";
        case ControlKind::ComboBox:
            return "ComboBox";
        case ControlKind::ListBox:
            return "ListBox";
        case ControlKind::CommandButton:
            return "CommandButton";
        case ControlKind::CheckBox:
            return "CheckBox";
        case ControlKind::OptionButton:
            return "OptionButton";
        case ControlKind::Frame:
            return "Frame";
        case ControlKind::Panel:
            return "SSPanel";
        case ControlKind::Timer:
            return "Timer";
        case ControlKind::ListView:
            return "ListView";
        case ControlKind::RichTextBox:
            return "RichTextBox";
        case ControlKind::ProgressBar:
            return "ProgressBar";
        case ControlKind::Chart:
            return "TChart";
    }
    return "Control";
}

void Control::SetEnabled(bool enabled) {
    if (enabled_ == enabled) {
        return;
    }
    enabled_ = enabled;
    Notify(Property::Enabled);
}

void Control::SetVisible(bool visible) {
    if (visible_ == visible) {
        return;
    }
    visible_ = visible;
    Notify(Property::Visible);
}

void Control::SetLeft(int left) {
    Move(left, top_, width_, height_);
}
void Control::SetTop(int top) {
    Move(left_, top, width_, height_);
}
void Control::SetWidth(int width) {
    Move(left_, top_, width, height_);
}
void Control::SetHeight(int height) {
    Move(left_, top_, width_, height);
}
void Control::Move(int left, int top) {
    Move(left, top, width_, height_);
}

void Control::Move(int left, int top, int width, int height) {
    if (left == left_ && top == top_ && width == width_ && height == height_) {
        return;
    }
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
    Notify(Property::Geometry);
}

void Control::SetFontName(std::string name) {
    fontName_ = std::move(name);
    Notify(Property::Font);
}

void Control::SetFontSize(double size) {
    fontSize_ = size;
    Notify(Property::Font);
}

void Control::SetFontBold(bool bold) {
    fontBold_ = bold;
    Notify(Property::Font);
}

void Control::SetToolTipText(std::string text) {
    toolTip_ = std::move(text);
    Notify(Property::ToolTip);
}

void Control::SetAccessibleName(std::string name) {
    accessibleName_ = std::move(name);
    Notify(Property::Accessibility);
}

void Control::SetAccessibleDescription(std::string description) {
    if (accessibleDescription_ == description) {
        return;  // every change may be read out: an unchanged text is no news
    }
    accessibleDescription_ = std::move(description);
    Notify(Property::Description);
}

void Control::SetAccessibleRole(AccessRole role) {
    accessRole_ = role;
    Notify(Property::Accessibility);
}

void Control::SetTabIndex(int index) {
    tabIndex_ = index;
    Notify(Property::Accessibility);
}

void Control::SetNamedBy(const Control* caption) {
    namedBy_ = caption;
    Notify(Property::Accessibility);
}

void Control::SetPicture(std::string picture) {
    if (picture_ == picture) {
        return;
    }
    picture_ = std::move(picture);
    Notify(Property::Picture);
}

void Control::SetForeColor(long colour) {
    foreColor_ = colour;
    Notify(Property::Colors);
}

void Control::SetBackColor(long colour) {
    backColor_ = colour;
    Notify(Property::Colors);
}

void Control::SetFocus() {
    form_.SetActiveControl(this);
}

bool Control::HasFocus() const {
    return form_.ActiveControl() == this;
}

void Control::ZOrder(int position) {
    (void)position;
    Notify(Property::ZOrder);
}

bool Control::AcceptsInput() const {
    for (const Control* c = this; c != nullptr; c = c->Container()) {
        if (!c->Enabled() || !c->Visible()) {
            return false;
        }
    }
    return form_.AcceptsInput();
}

void Control::DispatchUser(const std::function<void()>& reaction) {
    if (!AcceptsInput()) {
        return;
    }
    GetPlatform().Dispatch(reaction);
}

void Control::UserClick() {
    DispatchUser([this] { Fire(Click); });
}

void Control::UserDblClick() {
    DispatchUser([this] { Fire(DblClick); });
}

void Control::UserKeyPress(int keyAscii) {
    DispatchUser([this, keyAscii] {
        // Enter and Escape belong to the form's default and cancel buttons when it has them.
        if (CommandButton* button = form_.ButtonForKey(keyAscii)) {
            if (button->AcceptsInput() && button->Click) {
                button->Click();
            }
            return;
        }
        int k = keyAscii;
        if (form_.KeyPreview()) {
            form_.UserKeyPress(k);  // the form sees the key first and may swallow it
            if (k == 0) {
                return;
            }
        }
        if (KeyPress) {
            KeyPress(k);
        }
        if (k != 0) {
            ApplyKey(k);
        }
    });
}

void Control::UserKeyDown(int keyCode, int shift) {
    DispatchUser([this, keyCode, shift] {
        int k = keyCode;
        if (KeyDown) {
            KeyDown(k, shift);
        }
    });
}

void Control::UserKeyUp(int keyCode, int shift) {
    DispatchUser([this, keyCode, shift] {
        int k = keyCode;
        if (KeyUp) {
            KeyUp(k, shift);
        }
    });
}

void Control::UserMouseDown(int button, int shift, float x, float y) {
    DispatchUser([=, this] {
        if (MouseDown) {
            MouseDown(button, shift, x, y);
        }
    });
}

void Control::UserMouseMove(int button, int shift, float x, float y) {
    DispatchUser([=, this] {
        if (MouseMove) {
            MouseMove(button, shift, x, y);
        }
    });
}

void Control::UserMouseUp(int button, int shift, float x, float y) {
    DispatchUser([=, this] {
        if (MouseUp) {
            MouseUp(button, shift, x, y);
        }
    });
}

void Control::UserFocus() {
    DispatchUser([this] { SetFocus(); });
}

void Control::ApplyKey(int keyAscii) {
    (void)keyAscii;
}

void Control::Notify(Property what) {
    form_.NotifyControl(*this, what);
}

Platform& Control::GetPlatform() const {
    return form_.GetPlatform();
}

}  // namespace kw::forms
