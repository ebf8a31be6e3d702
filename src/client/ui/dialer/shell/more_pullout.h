#pragma once

#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;
class WindowFamily;

// The small pullout with the three buttons that open the login information, log and preference
// pullouts, one at a time, at one place above it.
class MorePullout : public forms::Form, public Pullout {
  public:
    explicit MorePullout(Application& app);

    forms::CommandButton btnDisplay{*this, "btnDisplay"};
    forms::CommandButton btnLog{*this, "btnLog"};
    forms::CommandButton btnPref{*this, "btnPref"};

    void btnDisplay_Click();
    void btnLog_Click();
    void btnPref_Click();
    // Closes the three pullouts of this one first, each with its own say; false keeps it open.
    void OnHide(bool& ok) override;

  protected:
    void Form_Load() override;

  private:
    WindowFamily& Family();

    Application& app_;
};

}  // namespace kw::dialer
