#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/forms/form.h"
#include "platform/forms/platform.h"

namespace kw::headless {

// Thrown when the program ends its process; tests catch it where the process would be gone.
struct ProcessEnded : std::runtime_error {
    explicit ProcessEnded(int code)
        : std::runtime_error("process ended with code " + std::to_string(code)), exitCode(code) {}
    int exitCode;
};

// Thrown when the program shows a box or a modal form that the test did not answer.
struct Unanswered : std::logic_error {
    using std::logic_error::logic_error;
};

// Every box shown, as the user saw it.
struct BoxRecord {
    std::string text;
    std::string caption;
    int flags = 0;
    int timeoutMs = 0;
    std::vector<std::string> buttonLabels;
    std::int64_t shownAt = 0;
    int result = 0;
};

// A window of another process that the platform pretends exists (a previous instance).
struct ForeignWindow {
    std::string className;
    std::string title;
    int showState = forms::show::kNormal;
    bool foreground = false;
};

// The deterministic Platform: a virtual clock that tests advance, timers fired in due order, boxes
// and modal forms answered by responders the test installs, and a record of what was shown.
class HeadlessPlatform : public forms::Platform {
  public:
    // Answers a box: returns one of the mb:: results. It may advance the clock first. A responder
    // that returns mb::kResultTimeout leaves the box standing: the clock then runs until the box
    // closes itself (its timeoutMs) or something closes it with CloseMessageBox.
    using BoxResponder = std::function<int(const BoxRecord&)>;
    // Answers a modal form: acts on it as a user would (types, clicks OK) until it hides.
    using FormResponder = std::function<void(forms::Form&)>;

    // 2026-03-14 09:26:53 UTC: a fixed, unremarkable moment for every test that prints a date.
    static constexpr std::int64_t kDefaultWallClockStart = 1773480413;

    HeadlessPlatform();
    ~HeadlessPlatform() override;

    // ---- the test's side ----
    // The clock moves ms forward, firing every timer that falls due on the way, in due order.
    void Advance(int ms);
    std::int64_t Now() const { return now_; }
    // The wall clock shows this moment (Unix seconds) at virtual time 0 and moves with Advance.
    // Its local calendar is UTC, so a test's dates do not depend on the machine's zone.
    void SetWallClockStart(std::int64_t unixTime) { wallClockStart_ = unixTime; }

    // The next box is answered with this result (queued answers come before the standing one).
    void AnswerNextBox(int result);
    void AnswerNextBox(BoxResponder responder);
    // Every box without a queued answer goes to this one.
    void AnswerBoxes(BoxResponder responder);
    const std::vector<BoxRecord>& Boxes() const { return boxes_; }
    void ClearBoxes() { boxes_.clear(); }

    // The next modal show of the named form is answered by this responder.
    void AnswerNextModal(const std::string& formName, FormResponder responder);
    // Every modal show of the named form without a queued answer goes to this one.
    void AnswerModals(const std::string& formName, FormResponder responder);
    // Names of the forms shown modally, in order.
    const std::vector<std::string>& ModalsShown() const { return modalsShown_; }

    const std::vector<int>& CursorHistory() const { return cursorHistory_; }
    std::vector<forms::Form*> AttachedForms() const { return attached_; }
    bool IsAttached(const forms::Form& form) const;
    int LiveTimerCount() const;

    std::optional<ForeignWindow>& PreviousInstance() { return previousInstance_; }
    void SetLoggedOnUser(std::optional<std::string> user) { userName_ = std::move(user); }
    void SetTwipsPerPixel(int twips) { twipsPerPixel_ = twips; }
    void SetSystemMetric(int index, int value) { metrics_[index] = value; }
    void AnswerNextFileDialog(std::optional<std::string> path) { fileAnswers_.push_back(path); }
    // What the program asked of the open-file dialogs, in order.
    const std::vector<forms::FileDialogRequest>& FileDialogs() const { return fileDialogs_; }
    const std::vector<std::string>& HelpShown() const { return helpShown_; }
    int Beeps() const { return beeps_; }
    std::optional<int> EndedWith() const { return endedWith_; }
    int SleptMs() const { return sleptMs_; }

    // A message reaches the form's window as the system sends it: the installed hook sees it
    // first, then, unless the hook kept it, the toolkit's own handling runs. That handling knows
    // one message: wm::kSize with a wm::size state code sets the form's window state (and with it
    // fires Form_Resize when the state changes). Returns whether the toolkit's handling ran.
    bool DeliverWindowMessage(forms::Form& form, int message, std::intptr_t wParam,
                              std::intptr_t lParam);
    // The window manager minimises, restores or maximises the window by itself, as from the task
    // bar: a wm::kSize message with the new state and the window's size.
    bool WindowManagerSetState(forms::Form& form, int state);
    bool HasMessageHook(const forms::Form& form) const { return hooks_.count(&form) != 0; }

    // ---- forms::Platform ----
    int ShowMessageBox(const forms::MessageBoxRequest& request) override;
    bool CloseMessageBox(const std::string& caption, int result) override;
    // Captions of the boxes standing open, innermost last.
    std::vector<std::string> OpenBoxCaptions() const;
    int OpenMessageBoxes() const override { return static_cast<int>(openBoxes_.size()); }
    forms::TimerId SetTimer(int intervalMs, std::function<void()> tick) override;
    void KillTimer(forms::TimerId id) override;
    void DoEvents() override;
    void Sleep(int ms) override;
    std::int64_t TickCount() const override { return now_; }
    std::int64_t UnixTime() const override { return wallClockStart_ + now_ / 1000; }
    forms::LocalTime LocalNow() const override;
    void AttachForm(forms::Form& form) override;
    void DetachForm(forms::Form& form) override;
    void RunModal(forms::Form& form) override;
    void SetCursor(int shape) override;
    int Cursor() const override { return cursor_; }
    forms::Point CursorPos() const override { return cursorPos_; }
    void SetCursorPos(forms::Point p) { cursorPos_ = p; }
    void InstallMessageHook(forms::Form& form, forms::WindowMessageHook hook) override;
    void RemoveMessageHook(forms::Form& form) override;
    bool PreviousInstanceRunning() override { return previousInstance_.has_value(); }
    forms::WindowHandle FindWindow(const std::string& className, const std::string& title) override;
    int GetWindowPlacement(forms::WindowHandle window) override;
    void SetWindowPlacement(forms::WindowHandle window, int showState) override;
    void SetForegroundWindow(forms::WindowHandle window) override;
    std::optional<std::string> LoggedOnUserName() override { return userName_; }
    int TwipsPerPixelX() const override { return twipsPerPixel_; }
    int TwipsPerPixelY() const override { return twipsPerPixel_; }
    int SystemMetric(int index) const override;
    void Beep() override { ++beeps_; }
    void ShowHelp(const std::string& helpFile, int contextId) override;
    std::optional<std::string> OpenFileDialog(const forms::FileDialogRequest& request) override;
    [[noreturn]] void EndProcess(int exitCode) override;

  private:
    struct TimerEntry {
        forms::TimerId id;
        int interval;
        std::function<void()> tick;
        std::int64_t due;
        std::uint64_t order;
        bool running = false;
    };
    // Fires the earliest timer due at or before the limit; false when none is due.
    bool FireNextDue(std::int64_t limit);

    std::int64_t now_ = 0;
    std::int64_t wallClockStart_ = kDefaultWallClockStart;
    std::map<forms::TimerId, std::shared_ptr<TimerEntry>> timers_;
    forms::TimerId nextTimerId_ = 1;
    std::uint64_t nextOrder_ = 0;

    struct OpenBox {
        std::string caption;
        std::optional<int> closedWith;
    };
    std::vector<std::shared_ptr<OpenBox>> openBoxes_;
    std::deque<BoxResponder> boxAnswers_;
    BoxResponder standingBoxAnswer_;
    std::vector<BoxRecord> boxes_;

    std::map<std::string, std::deque<FormResponder>> modalAnswers_;
    std::map<std::string, FormResponder> standingModalAnswers_;
    std::vector<std::string> modalsShown_;

    std::vector<forms::Form*> attached_;
    std::map<const forms::Form*, forms::WindowMessageHook> hooks_;
    int cursor_ = forms::cursor::kDefault;
    std::vector<int> cursorHistory_;
    forms::Point cursorPos_;
    std::optional<ForeignWindow> previousInstance_;
    std::optional<std::string> userName_ = std::string("traveller");
    int twipsPerPixel_ = 15;
    std::map<int, int> metrics_;
    std::deque<std::optional<std::string>> fileAnswers_;
    std::vector<std::string> helpShown_;
    std::vector<forms::FileDialogRequest> fileDialogs_;
    int beeps_ = 0;
    int sleptMs_ = 0;
    std::optional<int> endedWith_;
};

}  // namespace kw::headless
