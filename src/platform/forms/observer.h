#pragma once

namespace kw::forms {

class Control;
class Form;

// What changed on a control, so that a renderer redraws only that.
enum class Property {
    Caption,
    Text,
    Enabled,
    Visible,
    Geometry,
    Font,
    ToolTip,
    Picture,
    Colors,
    List,        // items added, removed or cleared
    ListIndex,   // selection of a combo or list box
    Value,       // check box, option button, progress bar, button press
    Selection,   // SelStart / SelLength of a text
    Appended,    // text added at the end of a text; what was there before is unchanged
    Attributes,  // MaxLength, PasswordChar, Locked, Style and the like
    Columns,     // list view column headers
    Items,       // list view items, their texts, checks and selection
    Data,        // chart series and axes
    Focus,
    ZOrder,
    Accessibility,  // the spoken name, the role, the place in the Tab order
    Description,    // the spoken description, apart: it follows live figures
};

// What changed on a form.
enum class FormProperty {
    Caption,
    Geometry,
    Visible,
    Enabled,
    Picture,
    Region,
    WindowState,
    ZOrder,
    Cursor,
    Repaint,
};

// A renderer observes the models; the models never know which renderer draws them.
class FormObserver {
  public:
    virtual ~FormObserver() = default;
    virtual void ControlChanged(Control& control, Property what) = 0;
    virtual void FormChanged(Form& form, FormProperty what) = 0;
};

}  // namespace kw::forms
