#include "client/ui/dialer/shell/caption_drag.h"

#include "platform/forms/control.h"

namespace kw::dialer {

void CaptionDrag::Press(forms::Form& form, int button) {
    pressed_ = button == forms::mouse::kLeft;
    if (!pressed_) {
        return;
    }
    from_ = form.GetPlatform().CursorPos();
    left_ = form.Left();
    top_ = form.Top();
}

void CaptionDrag::Follow(forms::Form& form, int button) {
    if (!pressed_ || button != forms::mouse::kLeft) {
        pressed_ = false;
        return;
    }
    const forms::Point now = form.GetPlatform().CursorPos();
    form.Move(left_ + now.x - from_.x, top_ + now.y - from_.y);
}

void CaptionDrag::Attach(forms::Form& form, std::initializer_list<forms::Control*> surfaces) {
    for (forms::Control* surface : surfaces) {
        surface->MouseDown = [this, &form](int b, int, float, float) { Press(form, b); };
        surface->MouseMove = [this, &form](int b, int, float, float) { Follow(form, b); };
    }
}

}  // namespace kw::dialer
