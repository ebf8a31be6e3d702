#include "platform/qt/bindings_text.h"

#include <algorithm>

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include "platform/qt/convert.h"

namespace kw::qt {

using forms::Property;

// ---- one-line text box --------------------------------------------------------------------

LineEditBinding::LineEditBinding(forms::TextBox& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* LineEditBinding::Create(QWidget* parent) {
    line_ = new QLineEdit(parent);
    return line_;
}

void LineEditBinding::ConnectInput() {
    // Any change that is not the model's own is the user's: typing, and the text a screen
    // reader or another assistive technology puts in.
    OnUserInput(line_, &QLineEdit::textChanged, [this](const QString& text) {
        model_.UserSetText(FromQString(text));
        Reshow(Property::Text);
    });
}

void LineEditBinding::Show(Property what) {
    switch (what) {
        case Property::Text:
        case Property::Appended:
            ShowText();
            break;
        case Property::Selection:
            ShowLineSelection(line_, model_.SelStart(), model_.SelLength());
            break;
        case Property::Attributes:
            ShowAttributes();
            break;
        case Property::Colors:
            ShowFieldColours(line_, model_);
            break;
        default:
            break;
    }
}

void LineEditBinding::ShowText() {
    const QString text = ToQString(model_.Text());
    const QString shown = line_->text();
    if (shown == text) {
        return;
    }
    // Only the part that changed is replaced: a screen reader then hears the character typed
    // or deleted, not the whole field again.
    qsizetype head = 0;
    while (head < shown.size() && head < text.size() && shown[head] == text[head]) {
        ++head;
    }
    qsizetype tail = 0;
    while (tail < shown.size() - head && tail < text.size() - head &&
           shown[shown.size() - 1 - tail] == text[text.size() - 1 - tail]) {
        ++tail;
    }
    const QString inserted = text.mid(head, text.size() - head - tail);
    if (line_->isReadOnly() || text.size() > line_->maxLength()) {
        line_->setText(text);  // a field that takes no edits, or longer than it holds
    } else {
        line_->setCursorPosition(static_cast<int>(head));
        line_->cursorForward(true, static_cast<int>(shown.size() - head - tail));
        if (inserted.isEmpty()) {
            line_->del();
        } else {
            line_->insert(inserted);
        }
    }
    ShowLineSelection(line_, model_.SelStart(), model_.SelLength());
}

void LineEditBinding::ShowAttributes() {
    line_->setEchoMode(model_.PasswordChar() != 0 ? QLineEdit::Password : QLineEdit::Normal);
    line_->setMaxLength(model_.MaxLength() > 0 ? model_.MaxLength() : 32767);
    line_->setReadOnly(model_.Locked());
    line_->setAlignment(AlignmentOf(model_.Alignment()) | Qt::AlignVCenter);
}

void LineEditBinding::PullSelection() {
    const LineSelection selection = ReadLineSelection(*line_);
    ShowingModel showing(Context());
    model_.SetSelStart(selection.start);
    model_.SetSelLength(selection.length);
}

// ---- multi-line text box ------------------------------------------------------------------

MultiLineBinding::MultiLineBinding(forms::TextBox& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* MultiLineBinding::Create(QWidget* parent) {
    edit_ = new QTextEdit(parent);
    edit_->setAcceptRichText(false);
    return edit_;
}

void MultiLineBinding::ConnectInput() {
    OnUserInput(edit_, &QTextEdit::textChanged, [this] {
        model_.UserSetText(ToModelText(edit_->toPlainText()));
        Reshow(Property::Text);
    });
}

void MultiLineBinding::Show(Property what) {
    switch (what) {
        case Property::Text:
        case Property::Appended:
            ShowText();
            break;
        case Property::Attributes:
            edit_->setReadOnly(model_.Locked());
            edit_->setAlignment(AlignmentOf(model_.Alignment()));
            break;
        case Property::Colors:
            ShowFieldColours(edit_, model_);
            break;
        default:
            break;
    }
}

void MultiLineBinding::ShowText() {
    const QString text = ToWidgetText(model_.Text());
    if (edit_->toPlainText() != text) {
        edit_->setPlainText(text);
    }
}

// ---- rich text box ------------------------------------------------------------------------

RichTextBinding::RichTextBinding(forms::RichTextBox& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* RichTextBinding::Create(QWidget* parent) {
    edit_ = new QPlainTextEdit(parent);
    edit_->setReadOnly(true);
    // A running log nobody edits: an undo record of every line would only grow.
    edit_->setUndoRedoEnabled(false);
    return edit_;
}

void RichTextBinding::Show(Property what) {
    switch (what) {
        case Property::Text:
            ShowText();
            break;
        case Property::Appended:
            ShowAppended();
            break;
        case Property::Selection:
            ShowSelection();
            break;
        case Property::Colors:
            ShowFieldColours(edit_, model_);
            break;
        default:
            break;
    }
}

void RichTextBinding::ShowText() {
    const QString text = ToWidgetText(model_.Text());
    if (edit_->toPlainText() != text) {
        edit_->setPlainText(text);
        ShowSelection();
    }
    shown_ = model_.Text().size();
}

// Only the new end goes into the view: setting the whole text again would cost a line in
// proportion to everything shown before it.
void RichTextBinding::ShowAppended() {
    const std::string& text = model_.Text();
    if (shown_ > text.size()) {
        ShowText();
        return;
    }
    QTextCursor end(edit_->document());
    end.movePosition(QTextCursor::End);
    end.insertText(ToWidgetText(text.substr(shown_)));
    shown_ = text.size();
}

// The running text follows its caret, which the program keeps at the end.
void RichTextBinding::ShowSelection() {
    QTextCursor cursor = edit_->textCursor();
    const int size = static_cast<int>(edit_->document()->characterCount()) - 1;
    cursor.setPosition(std::min(model_.SelStart(), size));
    cursor.setPosition(std::min(model_.SelStart() + model_.SelLength(), size),
                       QTextCursor::KeepAnchor);
    edit_->setTextCursor(cursor);
    edit_->ensureCursorVisible();
}

}  // namespace kw::qt
