#pragma once

#include "platform/forms/controls.h"

namespace kw::dialer {

// A login box is always entered with all of its text selected.
void SelectAllText(forms::TextBox& box);
// When a login dialog becomes active: the password when a name is already there, else the name.
void FocusLoginFields(forms::TextBox& userName, forms::TextBox& password);
// Both boxes select their text whenever they get the focus.
void SelectTextOnFocus(forms::TextBox& userName, forms::TextBox& password);

}  // namespace kw::dialer
