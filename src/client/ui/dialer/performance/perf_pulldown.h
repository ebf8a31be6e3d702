#pragma once

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

protected:
    void Form_Load() override;

private:
    Application& app_;
    bool monitoring_ = false;
    std::string destination_;
    int samples_ = 0;
};

}  // namespace kw::dialer
