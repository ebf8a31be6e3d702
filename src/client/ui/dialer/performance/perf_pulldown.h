#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;

// The performance panel below the main window: rates, round-trip delay, packet loss, errors.
class PerfPulldown : public forms::Form {
  public:
    explicit PerfPulldown(Application& app);

    forms::Image Image1{*this, "Image1"};
    forms::Timer dTimer{*this, "dTimer"};
    forms::Label lblDuration{*this, "lblDuration"};

    // Starts the monitor of a call to the destination.
    void BeginPerf(const std::string& destination);
    void EndPerf();
    // One statistics sample of the call.
    void DisplayStat(const automation::Variant& ispStats, const automation::Variant& vpnStats);

    bool Monitoring() const { return monitoring_; }
    const std::string& Destination() const { return destination_; }
    int Samples() const { return samples_; }

    // ---- place below the main window, and the jump between its two places ----
    forms::Image downBtn{*this, "downBtn"};
    // Its two places, below the main window's top: retracted, the handle showing through the
    // notch, and pulled down.
    static constexpr std::int32_t kRetracted = 176;
    static constexpr std::int32_t kPulledDown = 300;
    // Moves the window to yOffset below the main window's top.
    void PositionWindow(std::int32_t yOffset);
    // Pulls the panel down to 300 below the main window's top, or back up to 176.
    void downBtn_Click();

  protected:
    void Form_Load() override;
    void Form_Activate() override;

  private:
    Application& app_;
    bool regionCut = false;  // the pulled-down shape has been made

    bool monitoring_ = false;
    std::string destination_;
    int samples_ = 0;
};

}  // namespace kw::dialer
