#include "platform/qt/bindings_simple.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPixmapCache>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

#include "platform/forms/form.h"
#include "platform/qt/convert.h"
#include "platform/qt/widgets.h"

namespace kw::qt {

using forms::Property;

namespace {

// Check boxes and option buttons are drawn over the form's artwork: only their text takes the
// model's colour.
void ShowTextColour(QWidget* widget, const forms::Control& control) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, ToQColor(control.ForeColor()));
    widget->setPalette(palette);
}

}  // namespace

// ---- label --------------------------------------------------------------------------------

LabelBinding::LabelBinding(forms::Label& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* LabelBinding::Create(QWidget* parent) {
    label_ = new SkinLabel(parent);
    label_->setWordWrap(true);
    label_->setMouseTracking(true);
    label_->SetPress([this] {
        if (Context().Live()) {
            Model().UserClick();
        }
    });
    return label_;
}

bool LabelBinding::PressesWithKeys() const {
    return model_.AccessibleRole() == forms::AccessRole::Button;
}

void LabelBinding::ShowRole() {
    label_->SetRole(model_.AccessibleRole());
}

void LabelBinding::Show(Property what) {
    switch (what) {
        case Property::Caption: {
            const QString text = LabelText(model_.Caption());
            const bool changed = text != label_->text();
            label_->setText(text);
            if (changed && model_.AccessibleRole() == forms::AccessRole::StatusLine) {
                label_->Announce(text);
            }
            break;
        }
        case Property::Attributes:
            label_->setAlignment(AlignmentOf(model_.Alignment()) | Qt::AlignTop);
            ShowSurfaceColours(label_, model_, !model_.Transparent());
            break;
        case Property::Colors:
            ShowSurfaceColours(label_, model_, !model_.Transparent());
            break;
        default:
            break;
    }
}

// ---- image --------------------------------------------------------------------------------

ImageBinding::ImageBinding(forms::Image& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ImageBinding::Create(QWidget* parent) {
    image_ = new SkinLabel(parent);
    image_->setMouseTracking(true);
    image_->SetPress([this] {
        if (Context().Live()) {
            Model().UserClick();
        }
    });
    return image_;
}

bool ImageBinding::PressesWithKeys() const {
    return model_.AccessibleRole() == forms::AccessRole::Button;
}

void ImageBinding::ShowRole() {
    image_->SetRole(model_.AccessibleRole());
    ShowVisible();
}

void ImageBinding::ShowVisible() {
    const bool light = model_.AccessibleRole() == forms::AccessRole::Indicator;
    image_->SetLit(!light || model_.Visible());
    image_->setVisible(light || model_.Visible());
}

void ImageBinding::Show(Property what) {
    if (what == Property::Picture) {
        image_->setPixmap(KeyedPicture());
    } else if (what == Property::Attributes) {
        image_->setScaledContents(model_.Stretch());
    }
}

QPixmap ImageBinding::KeyedPicture() const {
    const long key = model_.Parent().ForeColor();
    // The same picture keyed the same way is made once: the faces are shared by many images.
    const QString cacheKey = QStringLiteral("keyed:%1:%2:%3")
                                 .arg(key)
                                 .arg(Context().AssetsDir(), ToQString(model_.Picture()));
    QPixmap pixmap;
    if (QPixmapCache::find(cacheKey, &pixmap)) {
        return pixmap;
    }
    pixmap = LoadPicture(Context().AssetsDir(), model_.Picture());
    if (pixmap.isNull()) {
        return pixmap;
    }
    const QColor keyColour(static_cast<int>(key & 0xFF), static_cast<int>((key >> 8) & 0xFF),
                           static_cast<int>((key >> 16) & 0xFF));
    pixmap.setMask(pixmap.createMaskFromColor(keyColour, Qt::MaskInColor));
    QPixmapCache::insert(cacheKey, pixmap);
    return pixmap;
}

// ---- command button -----------------------------------------------------------------------

ButtonBinding::ButtonBinding(forms::CommandButton& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ButtonBinding::Create(QWidget* parent) {
    button_ = new QPushButton(parent);
    button_->setAutoDefault(false);
    return button_;
}

void ButtonBinding::ConnectInput() {
    OnUserInput(button_, &QAbstractButton::clicked, [this] { model_.UserClick(); });
}

void ButtonBinding::Show(Property what) {
    if (what == Property::Caption) {
        button_->setText(ToQString(model_.Caption()));
    } else if (what == Property::Attributes) {
        button_->setDefault(model_.Default());
    }
}

// ---- check box ----------------------------------------------------------------------------

CheckBinding::CheckBinding(forms::CheckBox& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* CheckBinding::Create(QWidget* parent) {
    box_ = new QCheckBox(parent);
    return box_;
}

void CheckBinding::ConnectInput() {
    OnUserInput(box_, &QAbstractButton::clicked, [this] {
        model_.UserClick();
        Reshow(Property::Value);
    });
}

void CheckBinding::Show(Property what) {
    switch (what) {
        case Property::Caption:
            box_->setText(ToQString(model_.Caption()));
            break;
        case Property::Value:
            ShowValue();
            break;
        case Property::Colors:
            ShowTextColour(box_, model_);
            break;
        default:
            break;
    }
}

void CheckBinding::ShowValue() {
    const int value = model_.Value();
    box_->setTristate(value == forms::check::kGrayed);
    box_->setCheckState(value == forms::check::kChecked  ? Qt::Checked
                        : value == forms::check::kGrayed ? Qt::PartiallyChecked
                                                         : Qt::Unchecked);
}

// ---- option button ------------------------------------------------------------------------

OptionBinding::OptionBinding(forms::OptionButton& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* OptionBinding::Create(QWidget* parent) {
    option_ = new QRadioButton(parent);
    option_->setAutoExclusive(false);  // the model clears the others of the container
    return option_;
}

void OptionBinding::ConnectInput() {
    OnUserInput(option_, &QAbstractButton::clicked, [this] {
        model_.UserClick();
        Reshow(Property::Value);
    });
}

void OptionBinding::Show(Property what) {
    switch (what) {
        case Property::Caption:
            option_->setText(ToQString(model_.Caption()));
            break;
        case Property::Value:
            option_->setChecked(model_.Value());
            break;
        case Property::Colors:
            ShowTextColour(option_, model_);
            break;
        default:
            break;
    }
}

// ---- frame and panel ----------------------------------------------------------------------

FrameBinding::FrameBinding(forms::Frame& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* FrameBinding::Create(QWidget* parent) {
    group_ = new QGroupBox(parent);
    return group_;
}

void FrameBinding::Show(Property what) {
    if (what == Property::Caption) {
        group_->setTitle(ToQString(model_.Caption()));
    } else if (what == Property::Colors) {
        ShowSurfaceColours(group_, model_, true);
    }
}

PanelBinding::PanelBinding(forms::Frame& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* PanelBinding::Create(QWidget* parent) {
    panel_ = new PanelWidget(parent);
    return panel_;
}

void PanelBinding::Show(Property what) {
    if (what == Property::Caption) {
        panel_->SetCaption(LabelText(model_.Caption()));
    } else if (what == Property::Colors) {
        ShowSurfaceColours(panel_, model_, true);
    }
}

// ---- progress bar -------------------------------------------------------------------------

ProgressBinding::ProgressBinding(forms::ProgressBar& model, std::shared_ptr<BindingContext> context)
    : ControlBinding(model, std::move(context)), model_(model) {}

QWidget* ProgressBinding::Create(QWidget* parent) {
    bar_ = new QProgressBar(parent);
    bar_->setTextVisible(false);
    return bar_;
}

void ProgressBinding::Show(Property what) {
    if (what == Property::Value) {
        bar_->setRange(static_cast<int>(model_.Min()), static_cast<int>(model_.Max()));
        bar_->setValue(static_cast<int>(model_.Value()));
    }
}

}  // namespace kw::qt
