#include "platform/forms/control.h"
#include "platform/forms/controls.h"
#include "platform/qt/accessible.h"
#include "platform/qt/binding.h"
#include "platform/qt/binding_chart.h"
#include "platform/qt/binding_list_view.h"
#include "platform/qt/bindings_lists.h"
#include "platform/qt/bindings_simple.h"
#include "platform/qt/bindings_text.h"

namespace kw::qt {

namespace {

template <class Binding, class Model>
std::unique_ptr<ControlBinding> Make(forms::Control& control,
                                     std::shared_ptr<BindingContext> context) {
    // The kind says which model class the control is: the renderer's downcasts are all here.
    return std::make_unique<Binding>(static_cast<Model&>(control), std::move(context));
}

std::unique_ptr<ControlBinding> MakeBinding(forms::Control& control,
                                            std::shared_ptr<BindingContext> context) {
    using forms::ControlKind;
    switch (control.Kind()) {
        case ControlKind::Label:
            return Make<LabelBinding, forms::Label>(control, std::move(context));
        case ControlKind::Image:
            return Make<ImageBinding, forms::Image>(control, std::move(context));
        case ControlKind::TextBox:
            if (static_cast<forms::TextBox&>(control).MultiLine()) {
                return Make<MultiLineBinding, forms::TextBox>(control, std::move(context));
            }
            return Make<LineEditBinding, forms::TextBox>(control, std::move(context));
        case ControlKind::ComboBox:
            return Make<ComboBinding, forms::ComboBox>(control, std::move(context));
        case ControlKind::ListBox:
            return Make<ListBoxBinding, forms::ListBox>(control, std::move(context));
        case ControlKind::CommandButton:
            return Make<ButtonBinding, forms::CommandButton>(control, std::move(context));
        case ControlKind::CheckBox:
            return Make<CheckBinding, forms::CheckBox>(control, std::move(context));
        case ControlKind::OptionButton:
            return Make<OptionBinding, forms::OptionButton>(control, std::move(context));
        case ControlKind::Frame:
            return Make<FrameBinding, forms::Frame>(control, std::move(context));
        case ControlKind::Panel:
            return Make<PanelBinding, forms::Frame>(control, std::move(context));
        case ControlKind::ListView:
            return Make<ListViewBinding, forms::ListView>(control, std::move(context));
        case ControlKind::RichTextBox:
            return Make<RichTextBinding, forms::RichTextBox>(control, std::move(context));
        case ControlKind::ProgressBar:
            return Make<ProgressBinding, forms::ProgressBar>(control, std::move(context));
        case ControlKind::Chart:
            return Make<ChartBinding, forms::Chart>(control, std::move(context));
        case ControlKind::Timer:
            break;  // ticks on the platform, draws nothing
    }
    return nullptr;
}

}  // namespace

ControlBinding* BindControl(forms::Control& control, std::shared_ptr<BindingContext> context,
                            QWidget* parent) {
    InstallAccessibility();  // before any widget is read
    std::unique_ptr<ControlBinding> binding = MakeBinding(control, std::move(context));
    if (binding == nullptr) {
        return nullptr;
    }
    binding->Build(parent);
    return binding.release();  // the widget owns it now
}

}  // namespace kw::qt
