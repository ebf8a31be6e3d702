#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The small pullout with the three buttons that open the login information, log and preference
// pullouts, one at a time, at one place above it.
class MorePullout : public forms::Form {
  public:
    explicit MorePullout(Application& app);

    forms::CommandButton btnDisplay{*this, "btnDisplay"};
    forms::CommandButton btnLog{*this, "btnLog"};
    forms::CommandButton btnPref{*this, "btnPref"};

    void btnDisplay_Click();
    void btnLog_Click();
    void btnPref_Click();
    // Closes the three pullouts of this one first, each with its own say; false keeps it open.
    void OnHide(bool& ok);

  protected:
    void Form_Load() override;

  private:
    // Moves the pullout to its place, cuts its shape the first time, shows it.
    void OpenChild(forms::Form& child, bool& cut);
    // Closes PrefPullout or DisplayPullout when it stands open; false when it refuses.
    bool CloseIfVisiblePref();
    bool CloseIfVisibleDisplay();
    void CloseIfVisibleLog();

    Application& app_;
    bool displayCut_ = false;
    bool logCut_ = false;
    bool prefCut_ = false;
};

}  // namespace kw::dialer
