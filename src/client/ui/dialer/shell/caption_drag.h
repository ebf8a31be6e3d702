#pragma once

#include "platform/forms/form.h"

namespace kw::dialer {

// Moves a dialog with the mouse as if its caption had been pressed: a left press on its surface
// or labels starts the drag, moves with the button held follow the cursor.
class CaptionDrag {
  public:
    void Press(forms::Form& form, int button);
    void Follow(forms::Form& form, int button);
    // Lets the form's labels drag it too.
    void Attach(forms::Form& form, std::initializer_list<forms::Control*> surfaces);

  private:
    forms::Point from_;
    int left_ = 0;
    int top_ = 0;
    bool pressed_ = false;
};

}  // namespace kw::dialer
