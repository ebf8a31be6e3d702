#pragma once

#include "platform/forms/controls.h"
#include "platform/qt/binding.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace kw::qt {

class PanelWidget;
class SkinLabel;

// The kinds that show one value and take at most a click.

class LabelBinding final : public ControlBinding {
  public:
    LabelBinding(forms::Label& model, std::shared_ptr<BindingContext> context);
    bool MakesOwnClick() const override { return true; }
    bool PressesWithKeys() const override;

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;
    const std::string* Caption() const override { return &model_.Caption(); }
    void ShowRole() override;

  private:
    forms::Label& model_;
    SkinLabel* label_ = nullptr;
};

class ImageBinding final : public ControlBinding {
  public:
    ImageBinding(forms::Image& model, std::shared_ptr<BindingContext> context);
    bool MakesOwnClick() const override { return true; }
    bool PressesWithKeys() const override;

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;
    void ShowRole() override;
    // A light that is out stays, drawn as nothing, so that it can be read as out.
    void ShowVisible() override;

  private:
    // The picture with the form's key colour see-through, as the form's own is cut out.
    QPixmap KeyedPicture() const;

    forms::Image& model_;
    SkinLabel* image_ = nullptr;
};

class ButtonBinding final : public ControlBinding {
  public:
    ButtonBinding(forms::CommandButton& model, std::shared_ptr<BindingContext> context);
    bool TakesDoubleClick() const override { return true; }

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;
    const std::string* Caption() const override { return &model_.Caption(); }

  private:
    forms::CommandButton& model_;
    QPushButton* button_ = nullptr;
};

class CheckBinding final : public ControlBinding {
  public:
    CheckBinding(forms::CheckBox& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;
    const std::string* Caption() const override { return &model_.Caption(); }

  private:
    void ShowValue();

    forms::CheckBox& model_;
    QCheckBox* box_ = nullptr;
};

class OptionBinding final : public ControlBinding {
  public:
    OptionBinding(forms::OptionButton& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void ConnectInput() override;
    void Show(forms::Property what) override;
    const std::string* Caption() const override { return &model_.Caption(); }

  private:
    forms::OptionButton& model_;
    QRadioButton* option_ = nullptr;
};

// A frame: a titled group box around the controls it contains.
class FrameBinding final : public ControlBinding {
  public:
    FrameBinding(forms::Frame& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;
    const std::string* Caption() const override { return &model_.Caption(); }

  private:
    forms::Frame& model_;
    QGroupBox* group_ = nullptr;
};

// A panel: raised, its caption in the middle, around the controls it contains.
class PanelBinding final : public ControlBinding {
  public:
    PanelBinding(forms::Frame& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;
    const std::string* Caption() const override { return &model_.Caption(); }

  private:
    forms::Frame& model_;
    PanelWidget* panel_ = nullptr;
};

class ProgressBinding final : public ControlBinding {
  public:
    ProgressBinding(forms::ProgressBar& model, std::shared_ptr<BindingContext> context);

  protected:
    QWidget* Create(QWidget* parent) override;
    void Show(forms::Property what) override;

  private:
    forms::ProgressBar& model_;
    QProgressBar* bar_ = nullptr;
};

}  // namespace kw::qt
