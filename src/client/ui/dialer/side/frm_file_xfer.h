#pragma once

#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Shows the progress of the engine's call-home file transfers.
class frmFileXfer : public forms::Form {
  public:
    explicit frmFileXfer(Application& app);

    forms::ProgressBar ProgressBar1{*this, "ProgressBar1"};
    forms::Timer Timer1{*this, "Timer1"};

    // One progress report of a transfer.
    void UpdateProgress(const automation::Variant& transfer);
    const automation::Variant& LastTransfer() const { return last_; }

  private:
    automation::Variant last_;
};

}  // namespace kw::dialer
