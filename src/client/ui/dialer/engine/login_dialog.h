#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The controls the two login dialogs share: a title, two labels, the name and password boxes and
// OK and Cancel, laid out the same on the same kind of artwork.
struct LoginView {
    forms::Form& form;
    forms::Label& title;
    forms::Label& userLabel;
    forms::Label& passwordLabel;
    forms::TextBox& userName;
    forms::TextBox& password;
    forms::CommandButton& ok;
    forms::CommandButton& cancel;

    // Captions, fonts and places on the artwork named by picture.
    void Design(const char* titleCaption, const char* picture);
    // The real caption and frame that the shape cuts away.
    void Frame(const Application& app);
};

// A login box is always entered with all of its text selected.
void SelectAllText(forms::TextBox& box);
// When a login dialog becomes active: the password when a name is already there, else the name.
void FocusLoginFields(forms::TextBox& userName, forms::TextBox& password);
// Both boxes select their text whenever they get the focus.
void SelectTextOnFocus(forms::TextBox& userName, forms::TextBox& password);

}  // namespace kw::dialer
