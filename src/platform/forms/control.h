#pragma once

#include <functional>
#include <string>

#include "platform/forms/observer.h"

namespace kw::forms {

class Form;
class Platform;

enum class ControlKind {
    Label,
    Image,
    TextBox,
    ComboBox,
    ListBox,
    CommandButton,
    CheckBox,
    OptionButton,
    Frame,
    Panel,
    Timer,
    ListView,
    RichTextBox,
    ProgressBar,
    Chart,
};

// Mouse buttons and shift state as the event routines receive them.
namespace mouse {
inline constexpr int kLeft = 1;
inline constexpr int kRight = 2;
inline constexpr int kMiddle = 4;
}  // namespace mouse

// Key codes the program looks at.
namespace key {
inline constexpr int kBack = 8;
inline constexpr int kTab = 9;
inline constexpr int kReturn = 13;
inline constexpr int kEscape = 27;
inline constexpr int kSpace = 32;
inline constexpr int kDelete = 46;
inline constexpr int kF1 = 112;
}  // namespace key

// What assistive technology is told a control is, where its kind alone would mislead: the
// program's forms draw buttons and lights as pictures.
enum class AccessRole {
    Automatic,   // as its kind says
    Button,      // a picture or caption that acts as a button: takes focus, presses with keys
    Indicator,   // a light, lit while visible, present to assistive technology lit or not
    StatusLine,  // a caption whose changes are announced
    Decorative,  // artwork that says nothing: left out
};

using MouseHandler = std::function<void(int button, int shift, float x, float y)>;

// A control owned by its form, named as the program names it. Setting a property from code fires
// the reaction the old toolkit fired, synchronously, inside the setter. User input reaches a
// reaction only while the control, its containers and its form are enabled and visible.
class Control {
  public:
    Control(Form& form, std::string name, ControlKind kind, int index = -1);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    Form& Parent() const { return form_; }
    const std::string& Name() const { return name_; }
    int Index() const { return index_; }  // -1 unless part of a control array
    ControlKind Kind() const { return kind_; }
    // The toolkit's type name of the control ("Image", "Label", "TextBox" ...).
    const char* TypeName() const;

    // The frame or panel this control sits in; nullptr for the form itself.
    Control* Container() const { return container_; }
    void SetContainer(Control* container) { container_ = container; }

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);

    // Pixels, relative to the container.
    int Left() const { return left_; }
    int Top() const { return top_; }
    int Width() const { return width_; }
    int Height() const { return height_; }
    void SetLeft(int left);
    void SetTop(int top);
    void SetWidth(int width);
    void SetHeight(int height);
    void Move(int left, int top, int width, int height);
    void Move(int left, int top);

    const std::string& FontName() const { return fontName_; }
    double FontSize() const { return fontSize_; }
    bool FontBold() const { return fontBold_; }
    void SetFontName(std::string name);
    void SetFontSize(double size);
    void SetFontBold(bool bold);

    const std::string& ToolTipText() const { return toolTip_; }
    void SetToolTipText(std::string text);

    // A reference to an image asset ("art/mainwin.bmp"), empty for none.
    const std::string& Picture() const { return picture_; }
    void SetPicture(std::string picture);

    long ForeColor() const { return foreColor_; }
    long BackColor() const { return backColor_; }
    void SetForeColor(long colour);
    void SetBackColor(long colour);

    // What assistive technology speaks: the accessible name (empty: the caption or tool tip),
    // the role, and the place in the Tab order (-1: the order the controls were made in).
    const std::string& AccessibleName() const { return accessibleName_; }
    void SetAccessibleName(std::string name);
    // What assistive technology reads after the name: the control's state in words (empty: the
    // tool tip). It may change often; only a change is passed on.
    const std::string& AccessibleDescription() const { return accessibleDescription_; }
    void SetAccessibleDescription(std::string description);
    AccessRole AccessibleRole() const { return accessRole_; }
    void SetAccessibleRole(AccessRole role);
    int TabIndex() const { return tabIndex_; }
    void SetTabIndex(int index);
    // The control of the same form whose caption names this one (a picture beside its caption);
    // an accessible name set here comes first.
    const Control* NamedBy() const { return namedBy_; }
    void SetNamedBy(const Control* caption);

    const std::string& Tag() const { return tag_; }
    void SetTag(std::string tag) { tag_ = std::move(tag); }

    // Gives the control the focus; its GotFocus runs (the previous control's LostFocus first).
    void SetFocus();
    bool HasFocus() const;
    void ZOrder(int position = 0);

    // Event routines, set by the form that owns the control.
    std::function<void()> Click;
    std::function<void()> DblClick;
    std::function<void()> Change;
    std::function<void()> GotFocus;
    std::function<void()> LostFocus;
    std::function<void(int& keyAscii)> KeyPress;
    std::function<void(int& keyCode, int shift)> KeyDown;
    std::function<void(int& keyCode, int shift)> KeyUp;
    MouseHandler MouseDown;
    MouseHandler MouseMove;
    MouseHandler MouseUp;

    // User input, from a renderer or a test. Each runs as the message loop runs a reaction.
    bool AcceptsInput() const;
    virtual void UserClick();
    void UserDblClick();
    void UserKeyPress(int keyAscii);
    void UserKeyDown(int keyCode, int shift = 0);
    void UserKeyUp(int keyCode, int shift = 0);
    void UserMouseDown(int button, int shift, float x, float y);
    void UserMouseMove(int button, int shift, float x, float y);
    void UserMouseUp(int button, int shift, float x, float y);
    void UserFocus();

  protected:
    void Notify(Property what);
    Platform& GetPlatform() const;
    // Runs a reaction as user input does: only when the control accepts input, guarded by the loop.
    void DispatchUser(const std::function<void()>& reaction);
    // What a typed character does to the control's own content (a text box inserts it).
    virtual void ApplyKey(int keyAscii);
    static void Fire(const std::function<void()>& handler) {
        if (handler) {
            handler();
        }
    }

  private:
    Form& form_;
    std::string name_;
    ControlKind kind_;
    int index_;
    Control* container_ = nullptr;
    bool enabled_ = true;
    bool visible_ = true;
    int left_ = 0;
    int top_ = 0;
    int width_ = 0;
    int height_ = 0;
    std::string fontName_ = "Arial";
    double fontSize_ = 8.25;
    bool fontBold_ = false;
    std::string toolTip_;
    std::string picture_;
    long foreColor_ = 0x000000;
    long backColor_ = 0xFFFFFF;
    std::string tag_;
    std::string accessibleName_;
    std::string accessibleDescription_;
    AccessRole accessRole_ = AccessRole::Automatic;
    int tabIndex_ = -1;
    const Control* namedBy_ = nullptr;
};

}  // namespace kw::forms
