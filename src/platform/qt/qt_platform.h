#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QPointer>
#include <QString>
#include <QUrl>

#include "platform/forms/form.h"
#include "platform/forms/platform.h"
#include "platform/qt/message_box.h"

class QEventLoop;
class QTimer;
class QTextBrowser;

namespace kw::qt {

class FormWindow;
class InstanceChannel;

// The Platform on Qt 6 Widgets. A QApplication must exist before it is made, and everything runs
// on that application's thread.
class QtPlatform : public forms::Platform {
  public:
    // assetsDir: the artwork and help pages. instanceKey: names the per-user channel on which a
    // running instance answers a later one.
    explicit QtPlatform(std::string assetsDir, std::string instanceKey = "kestrelway");
    ~QtPlatform() override;
    QtPlatform(const QtPlatform&) = delete;
    QtPlatform& operator=(const QtPlatform&) = delete;

    // The emulated outer frame of a window (system metrics 7 and 4).
    static constexpr int kDialogFrame = 3;
    static constexpr int kCaptionHeight = 19;  // with the frame, the 22 the artwork expects

    // The window drawing a loaded form; nullptr when the form is not loaded.
    FormWindow* WindowOf(const forms::Form& form) const;
    // Where ShowHelp goes for a help file and a topic.
    QUrl HelpUrl(const std::string& helpFile, int contextId) const;

    // The end of the desktop session, as the session manager announces it (public because no
    // test can fake a session manager). First every hooked window hears wm::kQueryEndSession and
    // every loaded form answers its query-unload with the session's reason; false when a form
    // refused, and the manager is then asked to cancel.
    bool QueryEndSession();
    // The session does end: the hooks hear wm::kEndSession 1, then every form still loaded
    // unloads with the session's reason.
    void EndSession();

    // ---- forms::Platform ----
    int ShowMessageBox(const forms::MessageBoxRequest& request) override;
    bool CloseMessageBox(const std::string& caption, int result) override;
    int OpenMessageBoxes() const override { return boxes_.OpenCount(); }
    forms::TimerId SetTimer(int intervalMs, std::function<void()> tick) override;
    void KillTimer(forms::TimerId id) override;
    void DoEvents() override;
    void Sleep(int ms) override;
    std::int64_t TickCount() const override;
    std::int64_t UnixTime() const override;
    forms::LocalTime LocalNow() const override;
    void AttachForm(forms::Form& form) override;
    void DetachForm(forms::Form& form) override;
    void RunModal(forms::Form& form) override;
    void SetCursor(int shape) override;
    int Cursor() const override { return cursor_; }
    forms::Point CursorPos() const override;
    bool PreviousInstanceRunning() override;
    forms::WindowHandle FindWindow(const std::string& className, const std::string& title) override;
    int GetWindowPlacement(forms::WindowHandle window) override;
    void SetWindowPlacement(forms::WindowHandle window, int showState) override;
    void SetForegroundWindow(forms::WindowHandle window) override;
    void InstallMessageHook(forms::Form& form, forms::WindowMessageHook hook) override;
    void RemoveMessageHook(forms::Form& form) override;
    std::optional<std::string> LoggedOnUserName() override;
    int TwipsPerPixelX() const override;
    int TwipsPerPixelY() const override;
    int SystemMetric(int index) const override;
    void Beep() override;
    void ShowHelp(const std::string& helpFile, int contextId) override;
    std::optional<std::string> OpenFileDialog(const forms::FileDialogRequest& request) override;
    [[noreturn]] void EndProcess(int exitCode) override;

  private:
    struct TimerEntry;
    struct ModalLoop {
        forms::Form* form;
        QEventLoop* loop;
    };
    void FormHidden(forms::Form& form);
    void EndModalLoopsOf(const forms::Form& form);
    // What this instance does when a later one asks.
    int OwnPlacement() const;
    void RestoreOwnWindows();
    void RaiseOwnWindows();
    void WatchSession();
    void TellHooks(int message, std::intptr_t wParam);
    // The loaded forms, in the order they were loaded.
    std::vector<forms::Form*> AttachedForms() const;

    QString assetsDir_;
    MessageBoxes boxes_;
    std::unique_ptr<InstanceChannel> channel_;
    std::map<const forms::Form*, FormWindow*> windows_;
    std::vector<forms::Form*> attached_;
    std::unique_ptr<QObject> sessionWatch_;  // the context of the session manager's signals
    bool sessionEnding_ = false;
    std::map<const forms::Form*, QPointer<QObject>> hooks_;
    std::map<forms::TimerId, std::shared_ptr<TimerEntry>> timers_;
    forms::TimerId nextTimerId_ = 1;
    std::vector<ModalLoop> modalLoops_;
    int cursor_ = forms::cursor::kDefault;
    QPointer<QTextBrowser> helpViewer_;
};

}  // namespace kw::qt
