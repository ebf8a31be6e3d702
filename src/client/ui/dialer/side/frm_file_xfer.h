#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// Shows the engine's call-home file transfers as it reports them. Every figure arrives ready to
// show: the window does no arithmetic on the transfer.
class frmFileXfer : public forms::Form {
  public:
    explicit frmFileXfer(Application& app);

    forms::Label Label1{*this, "Label1"};
    forms::Label lblOneOf{*this, "lblOneOf"};
    forms::Label Label2{*this, "Label2"};
    forms::Label lblFileName{*this, "lblFileName"};
    forms::Label Label5{*this, "Label5"};
    forms::Label lblFileSize{*this, "lblFileSize"};
    forms::ProgressBar pbXferProgress{*this, "pbXferProgress"};
    forms::Label lblPercent{*this, "lblPercent"};
    forms::Label lblBytesCopied{*this, "lblBytesCopied"};
    forms::Label lblXferRate{*this, "lblXferRate"};
    forms::Label Label3{*this, "Label3"};
    forms::Label lblTimeLeft{*this, "lblTimeLeft"};
    forms::CommandButton btnCancel{*this, "btnCancel"};
    forms::Timer Timer1{*this, "Timer1"};

    // One report of the transfer: path, file number, file count, bytes copied, size, time left,
    // state, percent, rate. A shorter array fails at the first missing element.
    void updateInfo(const automation::Variant& transfer);
    void btnCancel_Click();
    // The countdown of hoursLeft, minutesLeft and secondsLeft; nothing starts it.
    void Timer1_Timer();

    std::string xferElement6;
    std::int16_t hoursLeft = 0;
    std::int16_t minutesLeft = 0;
    std::int16_t secondsLeft = 0;

  protected:
    void Form_Load() override;

  private:
    Application& app_;
    bool updateStarted_ = false;
};

}  // namespace kw::dialer
