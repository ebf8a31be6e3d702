#pragma once

#include "platform/forms/controls.h"
#include "platform/qt/binding.h"

class QComboBox;
class QListWidget;

namespace kw::qt {

// The kinds that show a list to choose from. Lists are refilled in place: a reaction may refill
// one from inside the widget's own signal.

// A combo box: editable unless its style is a dropdown list, which shows a text of its own only
// while nothing is chosen.
class ComboBinding final : public ControlBinding {
  public:
    ComboBinding(forms::ComboBox& model, std::shared_ptr<BindingContext> context);
    std::vector<QWidget*> InputWidgets() const override;
    void PullSelection() override;
    bool Fits() const override;
    bool TypesIntoModel() const override { return Editable(); }

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;

  private:
    bool Editable() const { return model_.Style() != forms::combo::kDropdownList; }
    void ShowText();
    void ShowList();
    void ShowListIndex();
    void ShowSelection();

    forms::ComboBox& model_;
    QComboBox* combo_ = nullptr;
};

class ListBoxBinding final : public ControlBinding {
  public:
    ListBoxBinding(forms::ListBox& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;

  private:
    void ShowList();
    void ShowListIndex();

    forms::ListBox& model_;
    QListWidget* list_ = nullptr;
};

}  // namespace kw::qt
