#pragma once

#include "client/ui/dialer/shell/pullout.h"
#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The dial list pullout: which ISPs and POPs are dialled, and in which order.
class ToPullout : public forms::Form, public Pullout {
  public:
    explicit ToPullout(Application& app);

    forms::Label Label1{*this, "Label1"};
    forms::ListBox lbDestinations{*this, "lbDestinations"};
    forms::OptionButton rbPOP{*this, "rbPOP"};
    forms::OptionButton rbISP{*this, "rbISP"};
    forms::ListView lstvDialList{*this, "lstvDialList"};
    forms::Image btnUp{*this, "btnUp"};
    forms::Image btnDown{*this, "btnDown"};
    forms::CommandButton btnRefresh{*this, "btnRefresh"};
    forms::CommandButton btnSaveList{*this, "btnSaveList"};

    // The dial list the engine computed for the location and destination.
    void UpdateDialList(const automation::Variant& list);
    void btnSaveList_Click();
    void OnHide(bool& ok) override;

    // The last list handed over by UpdateDialList.
    const automation::Variant& LastDialList() const { return lastList_; }

  protected:
    void Form_Load() override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();
    void lbDestinations_Click();

    Application& app_;
    automation::Variant lastList_;
};

}  // namespace kw::dialer
