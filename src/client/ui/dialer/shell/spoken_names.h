#pragma once

// What the program's windows say to a screen reader. The forms keep their controls' own names
// (btnConnect, imgModemDetected) and draw buttons and lights as pictures; this table, beside the
// artwork layout, says what each of those is to a person who cannot see it. Standard library and
// the forms model only.

#include <span>

#include "platform/forms/control.h"
#include "platform/forms/form.h"

namespace kw::dialer::spoken {

// One control: its role, the name spoken for it, or the control whose caption names it (a
// picture button beside its caption, a check box whose text is a label of its own).
struct SpokenControl {
    const char* form;
    const char* control;
    int index;  // -1 unless part of a control array
    forms::AccessRole role;
    const char* name;       // nullptr: the caption or tool tip, or namedBy's caption
    const char* namedBy;    // nullptr: none
    int namedByIndex = -1;  // namedBy's index in its control array, -1 unless in one
};

struct SpokenWindow {
    const char* form;
    const char* name;  // nullptr: the caption
    bool keepsEnter;   // Enter is the form's own key even on a picture button
};

// A form's rows are in its Tab order: the rows that take focus come first when tabbing, in this
// order, before the controls the table leaves out.
std::span<const SpokenControl> SpokenControls();
std::span<const SpokenWindow> SpokenWindows();

// Gives the form and its controls their spoken names, roles and Tab order from the table.
void Speak(forms::Form& form);

}  // namespace kw::dialer::spoken
