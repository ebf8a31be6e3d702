#include "platform/forms/form_set.h"

#include "platform/automation/failure.h"

namespace kw::forms {

Form& FormSet::GetSlot(std::type_index type) {
    auto it = slots_.find(type);
    if (it == slots_.end() || !it->second.make) {
        throw automation::Failure(automation::err::kObjectNotSet,
                                  std::string("Form not registered: ") + type.name());
    }
    Slot& slot = it->second;
    if (slot.current && !slot.current->IsLoaded()) {
        // Touching an unloaded form loads a fresh one; the old instance may still be on the stack.
        slot.unloaded.push_back(std::move(slot.current));
    }
    if (!slot.current) {
        slot.current = slot.make();
    }
    Form& form = *slot.current;
    form.Load();
    return form;
}

std::vector<Form*> FormSet::LoadedForms() const {
    std::vector<Form*> loaded;
    for (const auto& [type, slot] : slots_) {
        if (slot.current && slot.current->IsLoaded()) {
            loaded.push_back(slot.current.get());
        }
    }
    return loaded;
}

}  // namespace kw::forms
