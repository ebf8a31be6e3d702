#pragma once

#include "platform/forms/controls.h"
#include "platform/qt/binding.h"

class QLineEdit;
class QPlainTextEdit;
class QTextEdit;

namespace kw::qt {

// The kinds that hold a text the user or the program edits.

// A one-line text box. Typed characters go through the model, so that a KeyPress routine can
// change or swallow them; edits the widget makes itself (delete, paste) come back as the text.
class LineEditBinding final : public ControlBinding {
  public:
    LineEditBinding(forms::TextBox& model, std::shared_ptr<BindingContext> context);
    void PullSelection() override;
    bool Fits() const override { return !model_.MultiLine(); }
    bool TypesIntoModel() const override { return true; }

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;

  private:
    void ShowText();
    void ShowAttributes();

    forms::TextBox& model_;
    QLineEdit* line_ = nullptr;
};

// A multi-line text box: plain text, the toolkit's line breaks in the model.
class MultiLineBinding final : public ControlBinding {
  public:
    MultiLineBinding(forms::TextBox& model, std::shared_ptr<BindingContext> context);
    bool Fits() const override { return model_.MultiLine(); }

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;

  private:
    void ShowText();

    forms::TextBox& model_;
    QTextEdit* edit_ = nullptr;
};

// A rich text box, here a read-only running text: the program only appends to it.
class RichTextBinding final : public ControlBinding {
  public:
    RichTextBinding(forms::RichTextBox& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;

  private:
    void ShowText();
    void ShowAppended();
    void ShowSelection();

    forms::RichTextBox& model_;
    QPlainTextEdit* edit_ = nullptr;
    std::size_t shown_ = 0;  // how much of the model's text the view holds
};

}  // namespace kw::qt
