#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/forms/chart.h"
#include "platform/forms/control.h"
#include "platform/forms/list_view.h"
#include "platform/forms/platform.h"

namespace kw::forms {

// Text alignment of labels and text boxes.
namespace align {
inline constexpr int kLeft = 0;
inline constexpr int kRight = 1;
inline constexpr int kCenter = 2;
}  // namespace align

class Label : public Control {
  public:
    Label(Form& form, std::string name, int index = -1);
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    int Alignment() const { return alignment_; }
    void SetAlignment(int alignment);
    bool Transparent() const { return transparent_; }
    void SetTransparent(bool transparent);

  private:
    std::string caption_;
    int alignment_ = align::kLeft;
    bool transparent_ = true;
};

class Image : public Control {
  public:
    Image(Form& form, std::string name, int index = -1);
    bool Stretch() const { return stretch_; }
    void SetStretch(bool stretch);

  private:
    bool stretch_ = false;
};

// The text and selection that a text box and a rich text box share. SetText fires Change when the
// text changes; a selection is clipped to the text, its start counted from 0.
class EditableText : public Control {
  public:
    const std::string& Text() const { return text_; }
    void SetText(std::string text);
    int SelStart() const { return selStart_; }
    int SelLength() const { return selLength_; }
    void SetSelStart(int start);
    void SetSelLength(int length);
    std::string SelText() const;
    // Replaces the selection; the caret ends after the inserted text. At the end of the text, with
    // nothing selected, it appends.
    void SetSelText(const std::string& text);
    // Adds text at the end and puts the caret after it, firing Change: in time proportional to
    // the text added, never to what was there, so that a running log stays cheap at any length.
    // Renderers hear Property::Appended and add the same text to what they show.
    void AppendText(const std::string& text);
    bool Locked() const { return locked_; }
    void SetLocked(bool locked);

  protected:
    EditableText(Form& form, std::string name, ControlKind kind, int index);
    // The longest text the control takes; 0 for no limit.
    virtual int Limit() const { return 0; }
    void PlaceCaretAtEnd();

  private:
    std::string text_;
    int selStart_ = 0;
    int selLength_ = 0;
    bool locked_ = false;
};

class TextBox : public EditableText {
  public:
    TextBox(Form& form, std::string name, int index = -1);
    int MaxLength() const { return maxLength_; }
    void SetMaxLength(int maxLength);  // 0: no limit
    char PasswordChar() const { return passwordChar_; }
    void SetPasswordChar(char c);
    bool MultiLine() const { return multiLine_; }
    void SetMultiLine(bool multiLine);
    int Alignment() const { return alignment_; }
    void SetAlignment(int alignment);

    // The user replaces the whole text (a paste, or a renderer reporting an edit).
    void UserSetText(const std::string& text);

  protected:
    int Limit() const override { return maxLength_; }
    void ApplyKey(int keyAscii) override;

  private:
    int maxLength_ = 0;
    char passwordChar_ = 0;
    bool multiLine_ = false;
    int alignment_ = align::kLeft;
};

// The items of a combo or list box, with their ItemData, sorted on insertion when asked.
class ListControl : public Control {
  public:
    ListControl(Form& form, std::string name, ControlKind kind, int index);

    // Adds at the end (or in order when Sorted), or at a 0-based position; fails with 5 past the
    // end.
    void AddItem(const std::string& item);
    void AddItem(const std::string& item, int position);
    void RemoveItem(int position);  // fails with 5 outside the list
    void Clear();
    int ListCount() const { return static_cast<int>(items_.size()); }
    const std::string& List(int position) const;  // fails with 381 outside the list
    void SetList(int position, std::string item);
    long ItemData(int position) const;
    void SetItemData(int position, long data);
    bool Sorted() const { return sorted_; }
    void SetSorted(bool sorted) { sorted_ = sorted; }
    int NewIndex() const { return newIndex_; }

    int ListIndex() const { return listIndex_; }
    // Fires Click inside the setter when the index changes; out of range fails with 380 and
    // changes nothing.
    void SetListIndex(int index);

    // The user picks an item.
    void UserSelect(int index);

  protected:
    virtual void AfterListIndexChange() {}
    void SetListIndexSilently(int index) { listIndex_ = index; }

  private:
    std::vector<std::string> items_;
    std::vector<long> itemData_;
    bool sorted_ = false;
    int listIndex_ = -1;
    int newIndex_ = -1;
};

namespace combo {
inline constexpr int kDropdownCombo = 0;  // editable
inline constexpr int kSimpleCombo = 1;
inline constexpr int kDropdownList = 2;  // choose only
}  // namespace combo

class ComboBox : public ListControl {
  public:
    ComboBox(Form& form, std::string name, int index = -1);
    int Style() const { return style_; }
    void SetStyle(int style);
    const std::string& Text() const { return text_; }
    // Editable: fires Change when the text changes. A dropdown list shows whatever it is given
    // only while no item is selected.
    void SetText(std::string text);
    void UserSetText(const std::string& text);
    int SelStart() const { return selStart_; }
    int SelLength() const { return selLength_; }
    void SetSelStart(int start);
    void SetSelLength(int length);
    bool Locked() const { return locked_; }
    void SetLocked(bool locked);

  protected:
    void AfterListIndexChange() override;
    void ApplyKey(int keyAscii) override;

  private:
    int style_ = combo::kDropdownCombo;
    std::string text_;
    int selStart_ = 0;
    int selLength_ = 0;
    bool locked_ = false;
};

class ListBox : public ListControl {
  public:
    ListBox(Form& form, std::string name, int index = -1);
    const std::string& Text() const;  // the selected item, "" when none
};

class CommandButton : public Control {
  public:
    CommandButton(Form& form, std::string name, int index = -1);
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    bool Default() const { return default_; }
    void SetDefault(bool isDefault);
    bool Cancel() const { return cancel_; }
    void SetCancel(bool isCancel);
    // Setting Value to true from code presses the button: Click runs.
    void SetValue(bool pressed);

  private:
    std::string caption_;
    bool default_ = false;
    bool cancel_ = false;
};

namespace check {
inline constexpr int kUnchecked = 0;
inline constexpr int kChecked = 1;
inline constexpr int kGrayed = 2;
}  // namespace check

class CheckBox : public Control {
  public:
    CheckBox(Form& form, std::string name, int index = -1);
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    int Value() const { return value_; }
    // Fires Click when the value changes; values other than 0, 1, 2 fail with 380.
    void SetValue(int value);
    // A click toggles the box.
    void UserClick() override;

  private:
    std::string caption_;
    int value_ = check::kUnchecked;
};

class OptionButton : public Control {
  public:
    OptionButton(Form& form, std::string name, int index = -1);
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    bool Value() const { return value_; }
    // Setting true clears the other options of the same container and fires Click.
    void SetValue(bool value);
    void UserClick() override;

  private:
    std::string caption_;
    bool value_ = false;
};

// A frame or panel: a container with a caption.
class Frame : public Control {
  public:
    Frame(Form& form, std::string name, int index = -1, ControlKind kind = ControlKind::Frame);
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);

  private:
    std::string caption_;
};

class Panel : public Frame {
  public:
    Panel(Form& form, std::string name, int index = -1);
};

// A form's timer: ticks on the platform while enabled with an interval above 0 and the form loaded.
class Timer : public Control {
  public:
    Timer(Form& form, std::string name, int index = -1);
    ~Timer() override;
    int Interval() const { return interval_; }
    void SetInterval(int ms);
    bool TimerEnabled() const { return Enabled(); }
    void SetTimerEnabled(bool enabled);
    std::function<void()> Tick;  // the Timer event

    // Started and stopped by the form's load and unload, and by the properties.
    void Sync();

  private:
    void Stop();
    int interval_ = 0;
    TimerId id_ = 0;
    int armedInterval_ = 0;
};

class RichTextBox : public EditableText {
  public:
    RichTextBox(Form& form, std::string name, int index = -1);
};

class ProgressBar : public Control {
  public:
    ProgressBar(Form& form, std::string name, int index = -1);
    double Min() const { return min_; }
    double Max() const { return max_; }
    double Value() const { return value_; }
    void SetMin(double min);
    void SetMax(double max);
    void SetValue(double value);  // outside Min..Max fails with 380

  private:
    double min_ = 0;
    double max_ = 100;
    double value_ = 0;
};

}  // namespace kw::forms
