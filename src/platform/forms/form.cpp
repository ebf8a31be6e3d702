#include "platform/forms/form.h"

#include <algorithm>

#include "platform/forms/control.h"
#include "platform/forms/controls.h"

namespace kw::forms {

Form::Form(Platform& platform, std::string name) : platform_(platform), name_(std::move(name)) {}

Form::~Form() {
    if (loaded_) {
        platform_.DetachForm(*this);
    }
}

void Form::Load() {
    if (loaded_) {
        return;
    }
    // Marked loaded first: code run by the load step that touches this form must not load it again.
    loaded_ = true;
    platform_.AttachForm(*this);
    Form_Load();
    SyncTimers();
}

void Form::Show(int mode) {
    Load();
    if (!loaded_) {
        return;  // the load step unloaded the form
    }
    if (!visible_) {
        visible_ = true;
        Notify(FormProperty::Visible);
        if (!shownSinceLoad_) {
            // The first display counts as the form getting its size, as the toolkit had it.
            shownSinceLoad_ = true;
            Form_Resize();
        }
        Form_Activate();
    }
    if (mode == kModal) {
        ++modalDepth_;
        struct Leave {
            int& depth;
            ~Leave() { --depth; }
        } leave{modalDepth_};
        platform_.RunModal(*this);
    }
}

void Form::Hide() {
    if (!visible_) {
        return;
    }
    visible_ = false;
    Notify(FormProperty::Visible);
}

bool Form::QueryUnload(int reason) {
    if (!loaded_) {
        return true;
    }
    int cancel = 0;
    Form_QueryUnload(cancel, reason);
    return cancel == 0;
}

bool Form::Unload(int reason) {
    if (!loaded_) {
        return true;
    }
    if (!QueryUnload(reason)) {
        return false;
    }
    int cancel = 0;
    Form_Unload(cancel);
    if (cancel != 0) {
        return false;
    }
    if (!loaded_) {
        return true;  // the unload step unloaded the form itself
    }
    Hide();
    loaded_ = false;
    shownSinceLoad_ = false;
    SyncTimers();
    activeControl_ = nullptr;
    platform_.DetachForm(*this);
    return true;
}

bool Form::UserClose() {
    if (!loaded_) {
        return true;
    }
    bool closed = false;
    platform_.Dispatch([this, &closed] { closed = Unload(unload::kFormControlMenu); });
    return closed;
}

void Form::SetCaption(std::string caption) {
    caption_ = std::move(caption);
    Notify(FormProperty::Caption);
}

void Form::SetAccessibleName(std::string name) {
    accessibleName_ = std::move(name);
    Notify(FormProperty::Caption);
}

void Form::SetEnabled(bool enabled) {
    if (enabled_ == enabled) {
        return;
    }
    enabled_ = enabled;
    Notify(FormProperty::Enabled);
}

void Form::SetLeft(int left) {
    Move(left, top_, width_, height_);
}
void Form::SetTop(int top) {
    Move(left_, top, width_, height_);
}
void Form::SetWidth(int width) {
    Move(left_, top_, width, height_);
}
void Form::SetHeight(int height) {
    Move(left_, top_, width_, height);
}
void Form::Move(int left, int top) {
    Move(left, top, width_, height_);
}

void Form::Move(int left, int top, int width, int height) {
    if (left == left_ && top == top_ && width == width_ && height == height_) {
        return;
    }
    const bool resized = width != width_ || height != height_;
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
    Notify(FormProperty::Geometry);
    if (resized && loaded_) {
        Form_Resize();
    }
}

void Form::SetBackColor(long colour) {
    backColor_ = colour;
    Notify(FormProperty::Picture);
}

void Form::SetPicture(std::string picture) {
    picture_ = std::move(picture);
    Notify(FormProperty::Picture);
}

void Form::SetWindowState(int state) {
    if (windowState_ == state) {
        return;
    }
    windowState_ = state;
    Notify(FormProperty::WindowState);
    Form_Resize();
}

void Form::UserSetWindowState(int state) {
    platform_.Dispatch([this, state] { SetWindowState(state); });
}

void Form::SetRegion(std::optional<std::vector<RegionRect>> region) {
    region_ = std::move(region);
    Notify(FormProperty::Region);
}

void Form::ZOrder(int position) {
    zOrder_ = position;
    Notify(FormProperty::ZOrder);
}

void Form::Refresh() {
    Notify(FormProperty::Repaint);
}

Control* Form::FindControl(const std::string& name, int index) const {
    for (Control* c : controls_) {
        if (c->Name() == name && c->Index() == index) {
            return c;
        }
    }
    return nullptr;
}

CommandButton* Form::ButtonForKey(int keyAscii) const {
    if (keyAscii != key::kReturn && keyAscii != key::kEscape) {
        return nullptr;
    }
    for (Control* c : controls_) {
        if (c->Kind() != ControlKind::CommandButton) {
            continue;
        }
        auto* button = static_cast<CommandButton*>(c);
        if ((keyAscii == key::kReturn && button->Default()) ||
            (keyAscii == key::kEscape && button->Cancel())) {
            return button;
        }
    }
    return nullptr;
}

void Form::AddObserver(FormObserver* observer) {
    if (std::find(observers_.begin(), observers_.end(), observer) == observers_.end()) {
        observers_.push_back(observer);
    }
}

void Form::RemoveObserver(FormObserver* observer) {
    observers_.erase(std::remove(observers_.begin(), observers_.end(), observer), observers_.end());
}

void Form::NotifyControl(Control& control, Property what) {
    const auto observers = observers_;  // an observer may detach while being told
    for (FormObserver* o : observers) {
        o->ControlChanged(control, what);
    }
}

void Form::Notify(FormProperty what) {
    const auto observers = observers_;
    for (FormObserver* o : observers) {
        o->FormChanged(*this, what);
    }
}

void Form::DispatchUser(const std::function<void()>& reaction) {
    if (!AcceptsInput()) {
        return;
    }
    platform_.Dispatch(reaction);
}

void Form::UserMouseDown(int button, int shift, float x, float y) {
    DispatchUser([=, this] { Form_MouseDown(button, shift, x, y); });
}

void Form::UserMouseMove(int button, int shift, float x, float y) {
    DispatchUser([=, this] { Form_MouseMove(button, shift, x, y); });
}

void Form::UserMouseUp(int button, int shift, float x, float y) {
    DispatchUser([=, this] { Form_MouseUp(button, shift, x, y); });
}

void Form::UserClick() {
    DispatchUser([this] { Form_Click(); });
}

void Form::UserDblClick() {
    DispatchUser([this] { Form_DblClick(); });
}

void Form::UserKeyPress(int keyAscii) {
    Form_KeyPress(keyAscii);
}

void Form::Form_MouseDown(int, int, float, float) {}
void Form::Form_MouseMove(int, int, float, float) {}
void Form::Form_MouseUp(int, int, float, float) {}

void Form::Register(Control* control) {
    controls_.push_back(control);
}

void Form::Unregister(Control* control) {
    controls_.erase(std::remove(controls_.begin(), controls_.end(), control), controls_.end());
    if (activeControl_ == control) {
        activeControl_ = nullptr;
    }
}

void Form::SetActiveControl(Control* control) {
    if (activeControl_ == control) {
        return;
    }
    Control* previous = activeControl_;
    activeControl_ = control;
    if (previous != nullptr && previous->LostFocus) {
        previous->LostFocus();
    }
    if (control != nullptr) {
        NotifyControl(*control, Property::Focus);
        if (control->GotFocus) {
            control->GotFocus();
        }
    }
}

void Form::SyncTimers() {
    for (Control* c : controls_) {
        if (c->Kind() == ControlKind::Timer) {
            static_cast<Timer*>(c)->Sync();
        }
    }
}

}  // namespace kw::forms
