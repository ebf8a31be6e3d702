#pragma once

#include <functional>
#include <map>
#include <memory>
#include <typeindex>
#include <vector>

#include "platform/forms/form.h"

namespace kw::forms {

// The single instances of a program's forms, reached by their class. A form is created and loaded
// the first time it is touched, and a fresh instance is loaded when it is touched after an unload.
// Unloaded instances live on until the set goes, since their own routines may still be running.
class FormSet {
  public:
    FormSet() = default;
    FormSet(const FormSet&) = delete;
    FormSet& operator=(const FormSet&) = delete;

    template <class F>
    void Register(std::function<std::unique_ptr<F>()> make) {
        slots_[std::type_index(typeid(F))].make = [make] { return std::unique_ptr<Form>(make()); };
    }

    // The loaded instance, loading a fresh one when there is none.
    template <class F>
    F& Get() {
        return static_cast<F&>(GetSlot(std::type_index(typeid(F))));
    }

    // The current instance whether loaded or not, or nullptr when never created.
    template <class F>
    F* Peek() const {
        auto it = slots_.find(std::type_index(typeid(F)));
        if (it == slots_.end() || !it->second.current) {
            return nullptr;
        }
        return static_cast<F*>(it->second.current.get());
    }

    template <class F>
    bool IsLoaded() const {
        F* form = Peek<F>();
        return form != nullptr && form->IsLoaded();
    }

    // Every form currently loaded.
    std::vector<Form*> LoadedForms() const;

  private:
    struct Slot {
        std::function<std::unique_ptr<Form>()> make;
        std::unique_ptr<Form> current;
        std::vector<std::unique_ptr<Form>> unloaded;
    };
    Form& GetSlot(std::type_index type);

    std::map<std::type_index, Slot> slots_;
};

}  // namespace kw::forms
