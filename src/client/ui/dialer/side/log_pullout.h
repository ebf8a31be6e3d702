#pragma once

#include "client/ui/dialer/shell/pullout.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The log options pullout: whether the connection history and the Prescriber output are logged,
// and to which files.
class LogPullout : public forms::Form, public Pullout {
  public:
    explicit LogPullout(Application& app);

    forms::Image Image1{*this, "Image1"};
    forms::Label Label1{*this, "Label1"};
    forms::CheckBox ConnectLogCheck{*this, "ConnectLogCheck"};
    forms::TextBox txtHistoryLog{*this, "txtHistoryLog"};
    forms::CommandButton btnConnectHist{*this, "btnConnectHist"};
    forms::CheckBox PrescriberLogCheck{*this, "PrescriberLogCheck"};
    forms::TextBox txtRxLog{*this, "txtRxLog"};
    forms::CommandButton btnPrescriberLog{*this, "btnPrescriberLog"};

    void ConnectLogCheck_Click();
    void PrescriberLogCheck_Click();
    void btnConnectHist_Click();
    void btnPrescriberLog_Click();
    // The options take effect as they are clicked: nothing is left to lose.
    void OnHide(bool& ok) override { ok = true; }

  protected:
    void Form_Load() override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();
    void ShowLogName(const char* valueName, const char* defaultFile, forms::TextBox& box);
    // The file choice behind either "..." button: only a chosen name changes the setting.
    void ChooseLogFile(const char* valueName, forms::TextBox& box);
    void SetLogControlsEnabled(forms::TextBox& box, forms::CommandButton& button, bool enabled);

    Application& app_;
    bool loading_ = false;
};

}  // namespace kw::dialer
