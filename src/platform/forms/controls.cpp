#include "platform/forms/controls.h"

#include <algorithm>

#include "platform/automation/failure.h"
#include "platform/forms/form.h"

namespace kw::forms {

using automation::Failure;

namespace {

// Clips a selection to a text, as the toolkit does when SelStart or SelLength is set.
void ClipSelection(const std::string& text, int& start, int& length) {
    const int size = static_cast<int>(text.size());
    start = std::clamp(start, 0, size);
    length = std::clamp(length, 0, size - start);
}

// SelStart set from code: a negative start is refused, the selection collapses and is clipped.
void SelectFrom(const std::string& text, int start, int& selStart, int& selLength) {
    if (start < 0) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    selStart = start;
    selLength = 0;
    ClipSelection(text, selStart, selLength);
}

// SelLength set from code: a negative length is refused, the selection is clipped.
void SelectLength(const std::string& text, int length, int& selStart, int& selLength) {
    if (length < 0) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    selLength = length;
    ClipSelection(text, selStart, selLength);
}

}  // namespace

// ---- Label, Image -------------------------------------------------------------------------

Label::Label(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::Label, index) {}

void Label::SetCaption(std::string caption) {
    if (caption_ == caption) {
        return;
    }
    caption_ = std::move(caption);
    Notify(Property::Caption);
}

void Label::SetAlignment(int alignment) {
    alignment_ = alignment;
    Notify(Property::Attributes);
}

void Label::SetTransparent(bool transparent) {
    transparent_ = transparent;
    Notify(Property::Attributes);
}

Image::Image(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::Image, index) {}

void Image::SetStretch(bool stretch) {
    stretch_ = stretch;
    Notify(Property::Attributes);
}

// ---- EditableText, TextBox ----------------------------------------------------------------

EditableText::EditableText(Form& form, std::string name, ControlKind kind, int index)
    : Control(form, std::move(name), kind, index) {}

void EditableText::SetText(std::string text) {
    if (Limit() > 0 && static_cast<int>(text.size()) > Limit()) {
        text.resize(static_cast<std::size_t>(Limit()));
    }
    if (text_ == text) {
        return;
    }
    text_ = std::move(text);
    ClipSelection(text_, selStart_, selLength_);
    Notify(Property::Text);
    Fire(Change);
}

void EditableText::SetSelStart(int start) {
    SelectFrom(text_, start, selStart_, selLength_);
    Notify(Property::Selection);
}

void EditableText::SetSelLength(int length) {
    SelectLength(text_, length, selStart_, selLength_);
    Notify(Property::Selection);
}

std::string EditableText::SelText() const {
    return text_.substr(static_cast<std::size_t>(selStart_), static_cast<std::size_t>(selLength_));
}

void EditableText::SetSelText(const std::string& text) {
    if (selLength_ == 0 && static_cast<std::size_t>(selStart_) == text_.size()) {
        AppendText(text);
        return;
    }
    std::string next = text_;
    next.replace(static_cast<std::size_t>(selStart_), static_cast<std::size_t>(selLength_), text);
    const int caret = selStart_ + static_cast<int>(text.size());
    SetText(std::move(next));
    selStart_ = caret;
    selLength_ = 0;
    ClipSelection(text_, selStart_, selLength_);
    Notify(Property::Selection);
}

void EditableText::AppendText(const std::string& text) {
    std::size_t room = text.size();
    if (Limit() > 0) {
        const auto limit = static_cast<std::size_t>(Limit());
        room = text_.size() >= limit ? 0 : std::min(room, limit - text_.size());
    }
    if (room > 0) {
        text_.append(text, 0, room);
        Notify(Property::Appended);
        Fire(Change);
    }
    PlaceCaretAtEnd();
    Notify(Property::Selection);
}

void EditableText::SetLocked(bool locked) {
    locked_ = locked;
    Notify(Property::Attributes);
}

void EditableText::PlaceCaretAtEnd() {
    selStart_ = static_cast<int>(text_.size());
    selLength_ = 0;
}

TextBox::TextBox(Form& form, std::string name, int index)
    : EditableText(form, std::move(name), ControlKind::TextBox, index) {
    SetBackColor(0xFFFFFF);
}

void TextBox::SetMaxLength(int maxLength) {
    if (maxLength < 0) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    maxLength_ = maxLength;
    Notify(Property::Attributes);
}

void TextBox::SetPasswordChar(char c) {
    passwordChar_ = c;
    Notify(Property::Attributes);
}

void TextBox::SetMultiLine(bool multiLine) {
    multiLine_ = multiLine;
    Notify(Property::Attributes);
}

void TextBox::SetAlignment(int alignment) {
    alignment_ = alignment;
    Notify(Property::Attributes);
}

void TextBox::UserSetText(const std::string& text) {
    DispatchUser([this, text] {
        if (!Locked()) {
            SetText(text);
            PlaceCaretAtEnd();
        }
    });
}

void TextBox::ApplyKey(int keyAscii) {
    if (Locked()) {
        return;
    }
    if (keyAscii == key::kBack) {
        if (SelLength() == 0 && SelStart() > 0) {
            const int start = SelStart() - 1;
            SetSelStart(start);
            SetSelLength(1);
        }
        SetSelText("");
        return;
    }
    if (keyAscii < 32 || keyAscii > 255) {
        return;
    }
    if (maxLength_ > 0 && static_cast<int>(Text().size()) - SelLength() >= maxLength_) {
        return;
    }
    SetSelText(std::string(1, static_cast<char>(keyAscii)));
}

// ---- ListControl, ComboBox, ListBox -------------------------------------------------------

ListControl::ListControl(Form& form, std::string name, ControlKind kind, int index)
    : Control(form, std::move(name), kind, index) {}

void ListControl::AddItem(const std::string& item) {
    int position = ListCount();
    if (sorted_) {
        auto at = std::upper_bound(
            items_.begin(), items_.end(), item, [](const std::string& a, const std::string& b) {
                return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                                    [](unsigned char x, unsigned char y) {
                                                        return std::tolower(x) < std::tolower(y);
                                                    });
            });
        position = static_cast<int>(at - items_.begin());
    }
    AddItem(item, position);
}

void ListControl::AddItem(const std::string& item, int position) {
    if (position < 0 || position > ListCount()) {
        throw Failure(automation::err::kInvalidCall);
    }
    items_.insert(items_.begin() + position, item);
    itemData_.insert(itemData_.begin() + position, 0);
    newIndex_ = position;
    if (listIndex_ >= position) {
        listIndex_ += 1;  // the selection stays on its item
    }
    Notify(Property::List);
}

void ListControl::RemoveItem(int position) {
    if (position < 0 || position >= ListCount()) {
        throw Failure(automation::err::kInvalidCall);
    }
    items_.erase(items_.begin() + position);
    itemData_.erase(itemData_.begin() + position);
    if (listIndex_ == position) {
        listIndex_ = -1;
        AfterListIndexChange();
    } else if (listIndex_ > position) {
        listIndex_ -= 1;
    }
    Notify(Property::List);
    Notify(Property::ListIndex);
}

void ListControl::Clear() {
    items_.clear();
    itemData_.clear();
    listIndex_ = -1;
    newIndex_ = -1;
    AfterListIndexChange();
    Notify(Property::List);
    Notify(Property::ListIndex);
}

const std::string& ListControl::List(int position) const {
    if (position < 0 || position >= ListCount()) {
        throw Failure(381, "Invalid property array index");
    }
    return items_[static_cast<std::size_t>(position)];
}

void ListControl::SetList(int position, std::string item) {
    if (position < 0 || position >= ListCount()) {
        throw Failure(381, "Invalid property array index");
    }
    items_[static_cast<std::size_t>(position)] = std::move(item);
    Notify(Property::List);
}

long ListControl::ItemData(int position) const {
    if (position < 0 || position >= ListCount()) {
        throw Failure(381, "Invalid property array index");
    }
    return itemData_[static_cast<std::size_t>(position)];
}

void ListControl::SetItemData(int position, long data) {
    if (position < 0 || position >= ListCount()) {
        throw Failure(381, "Invalid property array index");
    }
    itemData_[static_cast<std::size_t>(position)] = data;
}

void ListControl::SetListIndex(int index) {
    if (index < -1 || index >= ListCount()) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    if (index == listIndex_) {
        return;
    }
    listIndex_ = index;
    AfterListIndexChange();
    Notify(Property::ListIndex);
    Fire(Click);
}

void ListControl::UserSelect(int index) {
    DispatchUser([this, index] { SetListIndex(index); });
}

ComboBox::ComboBox(Form& form, std::string name, int index)
    : ListControl(form, std::move(name), ControlKind::ComboBox, index) {}

void ComboBox::SetStyle(int style) {
    style_ = style;
    Notify(Property::Attributes);
}

void ComboBox::SetText(std::string text) {
    if (text_ == text) {
        return;
    }
    text_ = std::move(text);
    selStart_ = static_cast<int>(text_.size());
    selLength_ = 0;
    Notify(Property::Text);
    if (style_ != combo::kDropdownList) {
        Fire(Change);
    }
}

void ComboBox::UserSetText(const std::string& text) {
    DispatchUser([this, text] {
        if (style_ != combo::kDropdownList && !locked_) {
            SetText(text);
        }
    });
}

void ComboBox::SetSelStart(int start) {
    SelectFrom(text_, start, selStart_, selLength_);
    Notify(Property::Selection);
}

void ComboBox::SetSelLength(int length) {
    SelectLength(text_, length, selStart_, selLength_);
    Notify(Property::Selection);
}

void ComboBox::SetLocked(bool locked) {
    locked_ = locked;
    Notify(Property::Attributes);
}

void ComboBox::AfterListIndexChange() {
    // The edit part shows the selected item; the toolkit does not fire Change for it.
    text_ = ListIndex() >= 0 ? List(ListIndex()) : (style_ == combo::kDropdownList ? "" : text_);
    Notify(Property::Text);
}

void ComboBox::ApplyKey(int keyAscii) {
    if (style_ == combo::kDropdownList || locked_ || keyAscii < 32 || keyAscii > 255) {
        return;
    }
    std::string next = text_;
    next.replace(static_cast<std::size_t>(selStart_), static_cast<std::size_t>(selLength_), 1,
                 static_cast<char>(keyAscii));
    const int caret = selStart_ + 1;
    SetText(std::move(next));
    selStart_ = caret;
    selLength_ = 0;
}

ListBox::ListBox(Form& form, std::string name, int index)
    : ListControl(form, std::move(name), ControlKind::ListBox, index) {}

const std::string& ListBox::Text() const {
    static const std::string kNone;
    return ListIndex() >= 0 ? List(ListIndex()) : kNone;
}

// ---- Buttons ------------------------------------------------------------------------------

CommandButton::CommandButton(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::CommandButton, index) {}

void CommandButton::SetCaption(std::string caption) {
    if (caption_ == caption) {
        return;
    }
    caption_ = std::move(caption);
    Notify(Property::Caption);
}

void CommandButton::SetDefault(bool isDefault) {
    default_ = isDefault;
    Notify(Property::Attributes);
}

void CommandButton::SetCancel(bool isCancel) {
    cancel_ = isCancel;
    Notify(Property::Attributes);
}

void CommandButton::SetValue(bool pressed) {
    if (pressed) {
        Fire(Click);
    }
}

CheckBox::CheckBox(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::CheckBox, index) {}

void CheckBox::SetCaption(std::string caption) {
    caption_ = std::move(caption);
    Notify(Property::Caption);
}

void CheckBox::SetValue(int value) {
    if (value < check::kUnchecked || value > check::kGrayed) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    if (value_ == value) {
        return;
    }
    value_ = value;
    Notify(Property::Value);
    Fire(Click);
}

void CheckBox::UserClick() {
    DispatchUser(
        [this] { SetValue(value_ == check::kChecked ? check::kUnchecked : check::kChecked); });
}

OptionButton::OptionButton(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::OptionButton, index) {}

void OptionButton::SetCaption(std::string caption) {
    caption_ = std::move(caption);
    Notify(Property::Caption);
}

void OptionButton::SetValue(bool value) {
    if (value_ == value) {
        return;
    }
    value_ = value;
    Notify(Property::Value);
    if (!value) {
        return;
    }
    for (Control* other : Parent().Controls()) {
        if (other != this && other->Kind() == ControlKind::OptionButton &&
            other->Container() == Container()) {
            auto* option = static_cast<OptionButton*>(other);
            if (option->value_) {
                option->value_ = false;
                option->Notify(Property::Value);
            }
        }
    }
    Fire(Click);
}

void OptionButton::UserClick() {
    DispatchUser([this] {
        if (value_) {
            Fire(Click);  // a click on the chosen option still reports itself
        } else {
            SetValue(true);
        }
    });
}

// ---- Containers ---------------------------------------------------------------------------

Frame::Frame(Form& form, std::string name, int index, ControlKind kind)
    : Control(form, std::move(name), kind, index) {}

void Frame::SetCaption(std::string caption) {
    caption_ = std::move(caption);
    Notify(Property::Caption);
}

Panel::Panel(Form& form, std::string name, int index)
    : Frame(form, std::move(name), index, ControlKind::Panel) {}

// ---- Timer --------------------------------------------------------------------------------

Timer::Timer(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::Timer, index) {
    SetVisible(false);
}

Timer::~Timer() {
    Stop();
}

void Timer::SetInterval(int ms) {
    if (ms < 0) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    interval_ = ms;
    Sync();
}

void Timer::SetTimerEnabled(bool enabled) {
    SetEnabled(enabled);
    Sync();
}

void Timer::Sync() {
    const bool shouldRun = Enabled() && interval_ > 0 && Parent().IsLoaded();
    if (!shouldRun) {
        Stop();
        return;
    }
    if (id_ != 0 && armedInterval_ == interval_) {
        return;
    }
    Stop();  // a new interval restarts the count, as the toolkit does
    armedInterval_ = interval_;
    id_ = GetPlatform().SetTimer(interval_, [this] {
        if (Tick) {
            Tick();
        }
    });
}

void Timer::Stop() {
    if (id_ != 0) {
        GetPlatform().KillTimer(id_);
        id_ = 0;
    }
}

// ---- RichTextBox, ProgressBar ------------------------------------------------------------

RichTextBox::RichTextBox(Form& form, std::string name, int index)
    : EditableText(form, std::move(name), ControlKind::RichTextBox, index) {}

ProgressBar::ProgressBar(Form& form, std::string name, int index)
    : Control(form, std::move(name), ControlKind::ProgressBar, index) {}

void ProgressBar::SetMin(double min) {
    min_ = min;
    value_ = std::max(value_, min_);
    Notify(Property::Value);
}

void ProgressBar::SetMax(double max) {
    max_ = max;
    value_ = std::min(value_, max_);
    Notify(Property::Value);
}

void ProgressBar::SetValue(double value) {
    if (value < min_ || value > max_) {
        throw Failure(automation::err::kInvalidPropertyValue);
    }
    value_ = value;
    Notify(Property::Value);
}

}  // namespace kw::forms
