#pragma once

#include <map>
#include <utility>
#include <vector>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/clip_region.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "client/ui/dialer/spine/program_fixture.h"

namespace kw::dialer::testing {

// Counts what a renderer would be told about one form, while it lives.
class FormChanges : public forms::FormObserver {
  public:
    explicit FormChanges(forms::Form& form) : form_(form) { form_.AddObserver(this); }
    ~FormChanges() override { form_.RemoveObserver(this); }
    FormChanges(const FormChanges&) = delete;
    FormChanges& operator=(const FormChanges&) = delete;
    void ControlChanged(forms::Control&, forms::Property) override {}
    void FormChanged(forms::Form&, forms::FormProperty what) override { ++counts[what]; }
    int Of(forms::FormProperty what) const {
        auto it = counts.find(what);
        return it == counts.end() ? 0 : it->second;
    }
    std::map<forms::FormProperty, int> counts;

  private:
    forms::Form& form_;
};

// The program started, its first dial list in, the pullout buttons enabled.
class WindowFamilyTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        ASSERT_TRUE(Start());
        engine->RaiseGetGenericISPList("", automation::Variant());
        ASSERT_TRUE(Win().btnFromPullout.Enabled());
    }

    template <class F>
    F& Get() {
        return app->Form<F>();
    }
    template <class... F>
    std::vector<forms::Form*> FormsOf() {
        return {&Get<F>()...};
    }
    // Unsaved changes that the pullout's OnHide keeps it open for, when the user says so.
    void MakeToDirty() { Get<ToPullout>().btnSaveList.SetEnabled(true); }
    void MakePrefDirty() { Get<PrefPullout>().btnSave.SetEnabled(true); }
    void MakeDisplayDirty() { Get<DisplayPullout>().btnModify.SetCaption("Save"); }
    // Asked about unsaved changes, the user keeps them (and with them the pullout).
    void UserKeepsChanges() {
        platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultYes; });
    }
    // Where a form stands, on the screen or from the main window's corner.
    static std::pair<int, int> At(const forms::Form& form) { return {form.Left(), form.Top()}; }
    std::pair<int, int> Beside(const forms::Form& form) {
        return {form.Left() - Win().Left(), form.Top() - Win().Top()};
    }
    int FrameWidth() const { return app->frameWidth; }
    int FrameHeight() const { return app->frameHeight; }
};

}  // namespace kw::dialer::testing
