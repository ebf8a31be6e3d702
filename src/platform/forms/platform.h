#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kw::automation {
class Failure;
}

namespace kw::forms {

class Form;

// At most limit characters of text, then "…" and the whole text's length in characters; a text
// within the limit comes back as it is. Characters are counted as UTF-8, never cut in two.
std::string QuotedForBox(const std::string& text, std::size_t limit);

// Message box flags and results, with the classic numbers.
namespace mb {
inline constexpr int kOkOnly = 0;
inline constexpr int kOkCancel = 1;
inline constexpr int kAbortRetryIgnore = 2;
inline constexpr int kYesNoCancel = 3;
inline constexpr int kYesNo = 4;
inline constexpr int kRetryCancel = 5;
inline constexpr int kButtonMask = 0x7;
inline constexpr int kCritical = 16;
inline constexpr int kQuestion = 32;
inline constexpr int kExclamation = 48;
inline constexpr int kInformation = 64;
inline constexpr int kIconMask = 0x70;
inline constexpr int kDefaultButton1 = 0;
inline constexpr int kDefaultButton2 = 256;
inline constexpr int kDefaultButton3 = 512;
inline constexpr int kDefaultMask = 0x300;
inline constexpr int kApplicationModal = 0;
inline constexpr int kSystemModal = 4096;
inline constexpr int kSetForeground = 0x10000;

inline constexpr int kResultOk = 1;
inline constexpr int kResultCancel = 2;
inline constexpr int kResultAbort = 3;
inline constexpr int kResultRetry = 4;
inline constexpr int kResultIgnore = 5;
inline constexpr int kResultYes = 6;
inline constexpr int kResultNo = 7;
inline constexpr int kResultTimeout = 32000;  // what a timed box returns when it closed itself
}  // namespace mb

struct MessageBoxRequest {
    std::string text;
    int flags = mb::kOkOnly;
    std::string caption;
    int timeoutMs = 0;                      // 0: waits for the user
    std::vector<std::string> buttonLabels;  // empty: the standard labels of the flags
};

// Cursor shapes, numbered as the program sets them.
namespace cursor {
inline constexpr int kDefault = 0;
inline constexpr int kHourglass = 11;
inline constexpr int kArrowHourglass = 13;
}  // namespace cursor

// System metric indices that the program reads.
namespace metric {
inline constexpr int kCxScreen = 0;
inline constexpr int kCyScreen = 1;
inline constexpr int kCyCaption = 4;
inline constexpr int kCxBorder = 5;
inline constexpr int kCyBorder = 6;
inline constexpr int kCxDlgFrame = 7;
inline constexpr int kCyDlgFrame = 8;
}  // namespace metric

// Show states of a window placement.
namespace show {
inline constexpr int kHide = 0;
inline constexpr int kNormal = 1;
inline constexpr int kMinimized = 2;
inline constexpr int kMaximized = 3;
}  // namespace show

// Flags of the open-file dialog, with the classic numbers.
namespace ofn {
// A name that does not exist may be typed: the dialog asks whether to create it (the dialog
// creates nothing itself).
inline constexpr int kCreatePrompt = 0x2000;
inline constexpr int kExplorer = 0x80000;
inline constexpr int kLongNames = 0x200000;
}  // namespace ofn

struct FileDialogRequest {
    std::string title;
    std::string filter;  // "Text files (*.log)|*.log|All files (*.*)|*.*"
    std::string initialDir;
    std::string fileName;
    int flags = 0;  // ofn::; without kCreatePrompt only an existing file can be chosen
};

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

using TimerId = int;
using WindowHandle = std::intptr_t;

// Messages of a form's top-level window, with the classic numbers; only what the program looks at.
namespace wm {
inline constexpr int kMove = 0x0003;             // lParam: new x (low word), y (high word)
inline constexpr int kSize = 0x0005;             // wParam: a size:: code; lParam: width, height
inline constexpr int kActivate = 0x0006;         // wParam: 0 inactive, 1 active
inline constexpr int kClose = 0x0010;            // the window manager asks the window to close
inline constexpr int kQueryEndSession = 0x0011;  // the desktop session is about to end
inline constexpr int kEndSession = 0x0016;       // wParam: 1 when the session does end
inline constexpr int kShowWindow = 0x0018;       // wParam: 1 shown, 0 hidden
namespace size {
inline constexpr std::intptr_t kRestored = 0;
inline constexpr std::intptr_t kMinimized = 1;
inline constexpr std::intptr_t kMaximized = 2;
}  // namespace size
// Two 16-bit halves in one parameter, as kMove and kSize carry them.
inline constexpr std::intptr_t MakeLParam(int low, int high) {
    return static_cast<std::intptr_t>((static_cast<std::uint32_t>(high & 0xFFFF) << 16) |
                                      static_cast<std::uint32_t>(low & 0xFFFF));
}
}  // namespace wm

// Sees a message of a window before the toolkit's own handling of it. Returns whether that
// previous handling still runs; a program that only watches returns true for every message.
using WindowMessageHook =
    std::function<bool(int message, std::intptr_t wParam, std::intptr_t lParam)>;

// A moment on the user's local calendar, as a log line shows it.
struct LocalTime {
    int year = 0;
    int month = 0;  // 1 to 12
    int day = 0;    // 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
};

// Everything the program asks of its surroundings beyond its own forms.
class Platform {
  public:
    virtual ~Platform() = default;

    // The most characters a box quotes of its text.
    static constexpr std::size_t kBoxTextLimit = 2000;

    // A modal message box; the message loop keeps running inside it. Returns a result of mb::.
    // Its text is quoted to a screenful at most (QuotedForBox): a box shows what came from a file
    // or the engine, and a megabyte of it would hold the interface for minutes.
    int MessageBox(const MessageBoxRequest& request);
    int MsgBox(const std::string& text, int flags = mb::kOkOnly, const std::string& caption = {});

    // Closes the open message box with this caption, as if answered with result; false when no
    // such box is open. The look-up goes by caption alone.
    virtual bool CloseMessageBox(const std::string& caption, int result) {
        (void)caption;
        (void)result;
        return false;
    }
    // How many message boxes stand open now, nested ones included.
    virtual int OpenMessageBoxes() const = 0;

    // A repeating timer on the user interface thread; KillTimer of an unknown id does nothing.
    virtual TimerId SetTimer(int intervalMs, std::function<void()> tick) = 0;
    virtual void KillTimer(TimerId id) = 0;
    // Runs what is due in the message loop, then returns.
    virtual void DoEvents() = 0;
    // Blocks the thread: nothing runs meanwhile.
    virtual void Sleep(int ms) = 0;
    // Milliseconds since some fixed start.
    virtual std::int64_t TickCount() const = 0;
    // The wall clock: seconds since the Unix epoch, and the same moment on the local calendar.
    // Every date the program writes comes from here, so a test's virtual clock decides it.
    virtual std::int64_t UnixTime() const = 0;
    virtual LocalTime LocalNow() const = 0;

    // Forms: the renderer attaches to a form when it loads and lets go of it when it unloads.
    virtual void AttachForm(Form& form) = 0;
    virtual void DetachForm(Form& form) = 0;
    // Runs the message loop until the form is hidden or unloaded.
    virtual void RunModal(Form& form) = 0;

    virtual void SetCursor(int shape) = 0;
    virtual int Cursor() const = 0;
    virtual Point CursorPos() const = 0;

    // Window services on other windows of the desktop (a previous instance).
    virtual bool PreviousInstanceRunning() = 0;
    virtual WindowHandle FindWindow(const std::string& className, const std::string& title) = 0;
    virtual int GetWindowPlacement(WindowHandle window) = 0;  // show state, show::
    virtual void SetWindowPlacement(WindowHandle window, int showState) = 0;
    virtual void SetForegroundWindow(WindowHandle window) = 0;

    // A watcher of the messages of the form's top-level window, until removed or the form's
    // window goes. One per form: installing again replaces the previous watcher.
    //
    // A platform must hand the hook every message of that window, also inside nested message
    // loops (modal forms, message boxes), and must still run its own handling of each message
    // unless the hook returns false. On Qt this is an event filter on the form's top-level
    // window that returns false (lets the event through) whenever the hook returns true, with:
    //   QEvent::WindowStateChange -> wm::kSize, wParam the new state as wm::size (minimised,
    //                                maximised, else restored), lParam width and height;
    //   QEvent::Resize            -> wm::kSize, wParam wm::size::kRestored, lParam the new size;
    //   QEvent::Move              -> wm::kMove; QEvent::Show / Hide -> wm::kShowWindow 1 / 0;
    //   QEvent::WindowActivate / WindowDeactivate -> wm::kActivate 1 / 0; QEvent::Close ->
    //   wm::kClose; the session manager's commitDataRequest -> wm::kQueryEndSession and
    //   aboutToQuit at the end of a session -> wm::kEndSession 1.
    // The hook runs on the user interface thread, as the message loop runs a reaction.
    virtual void InstallMessageHook(Form& form, WindowMessageHook hook) {
        (void)form;
        (void)hook;
    }
    virtual void RemoveMessageHook(Form& form) { (void)form; }

    // The logged-on user's name; nullopt when the platform cannot tell.
    virtual std::optional<std::string> LoggedOnUserName() = 0;

    virtual int TwipsPerPixelX() const = 0;
    virtual int TwipsPerPixelY() const = 0;
    virtual int SystemMetric(int index) const = 0;

    virtual void Beep() = 0;
    virtual void ShowHelp(const std::string& helpFile, int contextId) = 0;
    virtual std::optional<std::string> OpenFileDialog(const FileDialogRequest& request) = 0;

    // Ends the process at once: no unload step, no close. Does not return.
    [[noreturn]] virtual void EndProcess(int exitCode) = 0;

    // A failure nobody guarded reached the message loop: the run-time error box, then the end.
    [[noreturn]] void ReportUnhandledFailure(const automation::Failure& failure);

    // Runs an event reaction as the message loop does: an unguarded failure ends the process.
    void Dispatch(const std::function<void()>& reaction);

    // The title of the running program: the caption of the run-time error box.
    const std::string& ApplicationTitle() const { return applicationTitle_; }
    void SetApplicationTitle(std::string title) { applicationTitle_ = std::move(title); }
    // The help the F1 key opens in any window of the program.
    const std::string& HelpFile() const { return helpFile_; }
    void SetHelpFile(std::string file) { helpFile_ = std::move(file); }

  protected:
    // Shows the box, its text already quoted.
    virtual int ShowMessageBox(const MessageBoxRequest& request) = 0;

  private:
    std::string applicationTitle_ = "Kestrelway";
    std::string helpFile_;
};

}  // namespace kw::forms
