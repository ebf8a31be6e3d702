#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/forms/observer.h"
#include "platform/forms/platform.h"

namespace kw::forms {

class Control;
class CommandButton;

// A rectangle of a window region, in pixels of the window; right and bottom exclusive.
struct RegionRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool operator==(const RegionRect&) const = default;
};

// How a form is shown.
inline constexpr int kModeless = 0;
inline constexpr int kModal = 1;

// Why a form unloads, as its QueryUnload receives it.
namespace unload {
inline constexpr int kFormControlMenu = 0;  // the window's system close
inline constexpr int kFormCode = 1;         // Unload from code
inline constexpr int kAppWindows = 2;       // the desktop session ends
inline constexpr int kAppTaskManager = 3;
}  // namespace unload

// How a form's window is framed. Set at design time, before the form loads: a window is made
// with its frame.
namespace border_style {
inline constexpr int kNone = 0;         // no frame: the form's artwork and shape are its edge
inline constexpr int kFixedSingle = 1;  // the desktop's frame and title bar; not resizable
}  // namespace border_style

namespace window_state {
inline constexpr int kNormal = 0;
inline constexpr int kMinimized = 1;
inline constexpr int kMaximized = 2;
}  // namespace window_state

// A form: a window with named controls, loaded at first touch, shown modeless or modal, hidden,
// unloaded. Its event routines are the virtual Form_ methods.
class Form {
  public:
    Form(Platform& platform, std::string name);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& Name() const { return name_; }
    Platform& GetPlatform() const { return platform_; }

    // Lifecycle.
    bool IsLoaded() const { return loaded_; }
    void Load();  // runs Form_Load once per load
    void Show(int mode = kModeless);
    void Hide();
    // QueryUnload with the reason, then Unload; false when either cancelled.
    bool Unload(int reason = unload::kFormCode);
    // Only the question of an unload: runs QueryUnload with the reason, unloads nothing. False
    // when the form refused (the end of a desktop session asks every form first).
    bool QueryUnload(int reason);
    // The user closes the window from its system menu or the window manager.
    bool UserClose();

    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    // The window's name for assistive technology when the caption says nothing (a drawer has
    // none); empty: the caption.
    const std::string& AccessibleName() const { return accessibleName_; }
    void SetAccessibleName(std::string name);
    bool Visible() const { return visible_; }
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    bool IsModal() const { return modalDepth_ > 0; }

    int Left() const { return left_; }
    int Top() const { return top_; }
    int Width() const { return width_; }
    int Height() const { return height_; }
    void SetLeft(int left);
    void SetTop(int top);
    void SetWidth(int width);
    void SetHeight(int height);
    void Move(int left, int top);
    void Move(int left, int top, int width, int height);

    // Where the client area starts inside the window: the width of the frame and the height of
    // the caption plus frame of a window that has them. Controls and the picture are placed
    // relative to the client area; 0, 0 for a borderless form.
    int FrameInsetX() const { return frameInsetX_; }
    int FrameInsetY() const { return frameInsetY_; }
    void SetFrameInset(int x, int y) {
        frameInsetX_ = x;
        frameInsetY_ = y;
        Notify(FormProperty::Geometry);
    }

    // The size of the form's inner coordinate system: the client area in pixels until code sets
    // it. Setting it changes the units of the inner coordinates, never the window's size.
    int ScaleWidth() const { return scaleWidth_ ? *scaleWidth_ : width_ - 2 * frameInsetX_; }
    int ScaleHeight() const {
        return scaleHeight_ ? *scaleHeight_ : height_ - frameInsetY_ - frameInsetX_;
    }
    void SetScaleWidth(int width) { scaleWidth_ = width; }
    void SetScaleHeight(int height) { scaleHeight_ = height; }

    long ForeColor() const { return foreColor_; }
    void SetForeColor(long colour) { foreColor_ = colour; }
    long BackColor() const { return backColor_; }
    void SetBackColor(long colour);
    const std::string& Picture() const { return picture_; }
    void SetPicture(std::string picture);

    int WindowState() const { return windowState_; }
    // Setting the state from code fires Form_Resize, as the toolkit did.
    void SetWindowState(int state);
    void UserSetWindowState(int state);

    // Enter belongs to the form's own key press even while a picture that acts as a button has
    // the focus (Space still presses the picture).
    bool KeepsEnter() const { return keepsEnter_; }
    void SetKeepsEnter(bool keeps) { keepsEnter_ = keeps; }

    bool KeyPreview() const { return keyPreview_; }
    void SetKeyPreview(bool on) { keyPreview_ = on; }

    // With a frame of the desktop's own, Width and Height are the inside of the frame: its size
    // is the desktop's to choose.
    int BorderStyle() const { return borderStyle_; }
    void SetBorderStyle(int style) { borderStyle_ = style; }

    // The window's shape; nullopt: the plain rectangle.
    const std::optional<std::vector<RegionRect>>& Region() const { return region_; }
    void SetRegion(std::optional<std::vector<RegionRect>> region);
    void ZOrder(int position = 0);  // 0: to the front, 1: to the back
    int ZOrderRequest() const { return zOrder_; }
    void Refresh();

    // Controls, in the order they were created.
    const std::vector<Control*>& Controls() const { return controls_; }
    Control* FindControl(const std::string& name, int index = -1) const;
    Control* ActiveControl() const { return activeControl_; }
    // The default button for Enter (13) or the cancel button for Escape (27), if the form has one.
    CommandButton* ButtonForKey(int keyAscii) const;

    // Renderers.
    void AddObserver(FormObserver* observer);
    void RemoveObserver(FormObserver* observer);
    void NotifyControl(Control& control, Property what);
    void Notify(FormProperty what);

    // User input on the form's own surface.
    bool AcceptsInput() const { return loaded_ && visible_ && enabled_; }
    void UserMouseDown(int button, int shift, float x, float y);
    void UserMouseMove(int button, int shift, float x, float y);
    void UserMouseUp(int button, int shift, float x, float y);
    void UserClick();
    void UserDblClick();
    // A key typed while the form is active: with KeyPreview the form sees it first.
    void UserKeyPress(int keyAscii);

    // Bookkeeping for controls.
    void Register(Control* control);
    void Unregister(Control* control);
    void SetActiveControl(Control* control);

  protected:
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_QueryUnload(int& cancel, int reason) {
        (void)cancel;
        (void)reason;
    }
    virtual void Form_Unload(int& cancel) { (void)cancel; }
    virtual void Form_Resize() {}
    virtual void Form_KeyPress(int& keyAscii) { (void)keyAscii; }
    virtual void Form_MouseDown(int button, int shift, float x, float y);
    virtual void Form_MouseMove(int button, int shift, float x, float y);
    virtual void Form_MouseUp(int button, int shift, float x, float y);
    virtual void Form_Click() {}
    virtual void Form_DblClick() {}

  private:
    void SyncTimers();
    void DispatchUser(const std::function<void()>& reaction);

    Platform& platform_;
    std::string name_;
    bool loaded_ = false;
    bool visible_ = false;
    bool shownSinceLoad_ = false;
    bool enabled_ = true;
    int modalDepth_ = 0;
    std::string caption_;
    std::string accessibleName_;
    int left_ = 0;
    int top_ = 0;
    int width_ = 0;
    int height_ = 0;
    int frameInsetX_ = 0;
    int frameInsetY_ = 0;
    std::optional<int> scaleWidth_;
    std::optional<int> scaleHeight_;
    long foreColor_ = 0;
    long backColor_ = 0xFFFFFF;
    std::string picture_;
    int windowState_ = window_state::kNormal;
    bool keyPreview_ = false;
    bool keepsEnter_ = false;
    int borderStyle_ = border_style::kNone;
    std::optional<std::vector<RegionRect>> region_;
    int zOrder_ = 0;
    std::vector<Control*> controls_;
    Control* activeControl_ = nullptr;
    std::vector<FormObserver*> observers_;
};

}  // namespace kw::forms
