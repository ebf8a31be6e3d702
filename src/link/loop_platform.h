#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/forms/platform.h"

namespace kw::link {

// The platform of a process without windows: timers on Qt's event loop and the clocks. The engine
// needs nothing else; what a window would answer, it answers as if no one were there.
class LoopPlatform : public forms::Platform {
  public:
    // report: where a failure that escaped a timer's tick is told; the process goes on.
    explicit LoopPlatform(std::function<void(const std::string&)> report = {});
    ~LoopPlatform() override;

    int OpenMessageBoxes() const override { return 0; }
    forms::TimerId SetTimer(int intervalMs, std::function<void()> tick) override;
    void KillTimer(forms::TimerId id) override;
    void DoEvents() override;
    void Sleep(int ms) override;
    std::int64_t TickCount() const override { return clock_.elapsed(); }
    std::int64_t UnixTime() const override;
    forms::LocalTime LocalNow() const override;
    void AttachForm(forms::Form&) override {}
    void DetachForm(forms::Form&) override {}
    void RunModal(forms::Form&) override {}
    void SetCursor(int shape) override { cursor_ = shape; }
    int Cursor() const override { return cursor_; }
    forms::Point CursorPos() const override { return {}; }
    bool PreviousInstanceRunning() override { return false; }
    forms::WindowHandle FindWindow(const std::string&, const std::string&) override { return 0; }
    int GetWindowPlacement(forms::WindowHandle) override { return forms::show::kHide; }
    void SetWindowPlacement(forms::WindowHandle, int) override {}
    void SetForegroundWindow(forms::WindowHandle) override {}
    std::optional<std::string> LoggedOnUserName() override;
    int TwipsPerPixelX() const override { return 15; }
    int TwipsPerPixelY() const override { return 15; }
    int SystemMetric(int) const override { return 0; }
    void Beep() override {}
    void ShowHelp(const std::string&, int) override {}
    std::optional<std::string> OpenFileDialog(const forms::FileDialogRequest&) override {
        return std::nullopt;
    }
    [[noreturn]] void EndProcess(int exitCode) override;

  protected:
    int ShowMessageBox(const forms::MessageBoxRequest& request) override;

  private:
    std::function<void(const std::string&)> report_;
    QElapsedTimer clock_;
    std::map<forms::TimerId, QTimer*> timers_;
    forms::TimerId nextTimer_ = 1;
    int cursor_ = 0;
};

}  // namespace kw::link
