#include "platform/headless/headless_platform.h"

#include <algorithm>
#include <ctime>

#include "platform/automation/failure.h"

namespace kw::headless {

namespace {
constexpr forms::WindowHandle kForeignHandle = 0x1000;
// How long a box that nobody answers may wait for something to close it: a day of virtual time.
constexpr std::int64_t kLongestWaitMs = 24LL * 60 * 60 * 1000;
}  // namespace

HeadlessPlatform::HeadlessPlatform() {
    metrics_[forms::metric::kCxScreen] = 1280;
    metrics_[forms::metric::kCyScreen] = 1024;
    metrics_[forms::metric::kCyCaption] = 19;
    metrics_[forms::metric::kCxBorder] = 1;
    metrics_[forms::metric::kCyBorder] = 1;
    metrics_[forms::metric::kCxDlgFrame] = 3;
    metrics_[forms::metric::kCyDlgFrame] = 3;
}

HeadlessPlatform::~HeadlessPlatform() = default;

forms::LocalTime HeadlessPlatform::LocalNow() const {
    const auto t = static_cast<std::time_t>(UnixTime());
    std::tm utc{};
    ::gmtime_r(&t, &utc);
    return {utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec};
}

// ---- clock and timers ---------------------------------------------------------------------

void HeadlessPlatform::Advance(int ms) {
    const std::int64_t target = now_ + std::max(ms, 0);
    while (FireNextDue(target)) {
    }
    now_ = std::max(now_, target);
}

bool HeadlessPlatform::FireNextDue(std::int64_t limit) {
    std::shared_ptr<TimerEntry> next;
    for (const auto& [id, entry] : timers_) {
        if (entry->running || entry->due > limit) {
            continue;
        }
        if (!next || entry->due < next->due ||
            (entry->due == next->due && entry->order < next->order)) {
            next = entry;
        }
    }
    if (!next) {
        return false;
    }
    now_ = std::max(now_, next->due);
    // An overdue timer fires once and counts on from now, as coalesced timer messages do.
    next->due =
        std::max(next->due + next->interval, now_ + (next->due < now_ ? next->interval : 0));
    next->order = nextOrder_++;
    // A tick does not re-enter itself: a nested loop inside it skips this timer.
    next->running = true;
    struct Done {
        TimerEntry& entry;
        ~Done() { entry.running = false; }
    } done{*next};
    Dispatch(next->tick);
    return true;
}

forms::TimerId HeadlessPlatform::SetTimer(int intervalMs, std::function<void()> tick) {
    auto entry = std::make_shared<TimerEntry>();
    entry->id = nextTimerId_++;
    entry->interval = std::max(intervalMs, 1);
    entry->tick = std::move(tick);
    entry->due = now_ + entry->interval;
    entry->order = nextOrder_++;
    timers_[entry->id] = entry;
    return entry->id;
}

void HeadlessPlatform::KillTimer(forms::TimerId id) {
    timers_.erase(id);
}

int HeadlessPlatform::LiveTimerCount() const {
    return static_cast<int>(timers_.size());
}

void HeadlessPlatform::DoEvents() {
    while (FireNextDue(now_)) {
    }
}

void HeadlessPlatform::Sleep(int ms) {
    now_ += std::max(ms, 0);
    sleptMs_ += std::max(ms, 0);
}

// ---- boxes --------------------------------------------------------------------------------

void HeadlessPlatform::AnswerNextBox(int result) {
    boxAnswers_.push_back([result](const BoxRecord&) { return result; });
}

void HeadlessPlatform::AnswerNextBox(BoxResponder responder) {
    boxAnswers_.push_back(std::move(responder));
}

void HeadlessPlatform::AnswerBoxes(BoxResponder responder) {
    standingBoxAnswer_ = std::move(responder);
}

int HeadlessPlatform::ShowMessageBox(const forms::MessageBoxRequest& request) {
    BoxRecord record;
    record.text = request.text;
    record.caption = request.caption;
    record.flags = request.flags;
    record.timeoutMs = request.timeoutMs;
    record.buttonLabels = request.buttonLabels;
    record.shownAt = now_;
    const std::size_t index = boxes_.size();
    boxes_.push_back(record);

    BoxResponder responder;
    if (!boxAnswers_.empty()) {
        responder = std::move(boxAnswers_.front());
        boxAnswers_.pop_front();
    } else if (standingBoxAnswer_) {
        responder = standingBoxAnswer_;
    } else {
        throw Unanswered("message box nobody answered: \"" + request.text + "\" (caption \"" +
                         request.caption + "\")");
    }
    auto open = std::make_shared<OpenBox>(OpenBox{request.caption, std::nullopt});
    openBoxes_.push_back(open);
    struct Close {
        std::vector<std::shared_ptr<OpenBox>>& boxes;
        std::shared_ptr<OpenBox> box;
        ~Close() { boxes.erase(std::remove(boxes.begin(), boxes.end(), box), boxes.end()); }
    } close{openBoxes_, open};
    int result = responder(record);
    if (open->closedWith) {
        result = *open->closedWith;
    } else if (result == forms::mb::kResultTimeout) {
        // Nobody answers: the loop runs until the box closes itself or is closed.
        const std::int64_t closesAt =
            request.timeoutMs > 0 ? record.shownAt + request.timeoutMs : now_ + kLongestWaitMs;
        while (!open->closedWith && now_ < closesAt) {
            if (!FireNextDue(closesAt)) {
                now_ = closesAt;
            }
        }
        if (open->closedWith) {
            result = *open->closedWith;
        } else if (request.timeoutMs <= 0) {
            throw Unanswered("message box that nothing closed: \"" + request.text + "\"");
        }
    }
    boxes_[index].result = result;
    return result;
}

bool HeadlessPlatform::CloseMessageBox(const std::string& caption, int result) {
    for (auto it = openBoxes_.rbegin(); it != openBoxes_.rend(); ++it) {
        if ((*it)->caption == caption && !(*it)->closedWith) {
            (*it)->closedWith = result;
            return true;
        }
    }
    return false;
}

std::vector<std::string> HeadlessPlatform::OpenBoxCaptions() const {
    std::vector<std::string> captions;
    for (const auto& box : openBoxes_) {
        captions.push_back(box->caption);
    }
    return captions;
}

// ---- forms --------------------------------------------------------------------------------

void HeadlessPlatform::AttachForm(forms::Form& form) {
    if (!IsAttached(form)) {
        attached_.push_back(&form);
    }
}

void HeadlessPlatform::DetachForm(forms::Form& form) {
    attached_.erase(std::remove(attached_.begin(), attached_.end(), &form), attached_.end());
    hooks_.erase(&form);  // the window goes, and its watcher with it
}

// ---- window messages ----------------------------------------------------------------------

void HeadlessPlatform::InstallMessageHook(forms::Form& form, forms::WindowMessageHook hook) {
    hooks_[&form] = std::move(hook);
}

void HeadlessPlatform::RemoveMessageHook(forms::Form& form) {
    hooks_.erase(&form);
}

bool HeadlessPlatform::DeliverWindowMessage(forms::Form& form, int message, std::intptr_t wParam,
                                            std::intptr_t lParam) {
    bool passOn = true;
    auto hook = hooks_.find(&form);
    if (hook != hooks_.end()) {
        // A copy: the hook may remove itself while it runs.
        const forms::WindowMessageHook watcher = hook->second;
        Dispatch([&] { passOn = watcher(message, wParam, lParam); });
    }
    if (!passOn) {
        return false;
    }
    if (message == forms::wm::kSize) {
        int state = forms::window_state::kNormal;
        if (wParam == forms::wm::size::kMinimized) {
            state = forms::window_state::kMinimized;
        } else if (wParam == forms::wm::size::kMaximized) {
            state = forms::window_state::kMaximized;
        }
        Dispatch([&] { form.SetWindowState(state); });
    }
    return true;
}

bool HeadlessPlatform::WindowManagerSetState(forms::Form& form, int state) {
    std::intptr_t code = forms::wm::size::kRestored;
    if (state == forms::window_state::kMinimized) {
        code = forms::wm::size::kMinimized;
    } else if (state == forms::window_state::kMaximized) {
        code = forms::wm::size::kMaximized;
    }
    return DeliverWindowMessage(form, forms::wm::kSize, code,
                                forms::wm::MakeLParam(form.Width(), form.Height()));
}

bool HeadlessPlatform::IsAttached(const forms::Form& form) const {
    return std::find(attached_.begin(), attached_.end(), &form) != attached_.end();
}

void HeadlessPlatform::AnswerNextModal(const std::string& formName, FormResponder responder) {
    modalAnswers_[formName].push_back(std::move(responder));
}

void HeadlessPlatform::AnswerModals(const std::string& formName, FormResponder responder) {
    standingModalAnswers_[formName] = std::move(responder);
}

void HeadlessPlatform::RunModal(forms::Form& form) {
    modalsShown_.push_back(form.Name());
    FormResponder responder;
    auto queued = modalAnswers_.find(form.Name());
    if (queued != modalAnswers_.end() && !queued->second.empty()) {
        responder = std::move(queued->second.front());
        queued->second.pop_front();
    } else if (auto standing = standingModalAnswers_.find(form.Name());
               standing != standingModalAnswers_.end()) {
        responder = standing->second;
    } else {
        throw Unanswered("modal form nobody answered: " + form.Name());
    }
    responder(form);
    if (form.IsLoaded() && form.Visible()) {
        throw Unanswered("modal form left open by its answer: " + form.Name());
    }
}

// ---- other services -----------------------------------------------------------------------

void HeadlessPlatform::SetCursor(int shape) {
    cursor_ = shape;
    cursorHistory_.push_back(shape);
}

forms::WindowHandle HeadlessPlatform::FindWindow(const std::string& className,
                                                 const std::string& title) {
    (void)className;
    if (previousInstance_ && previousInstance_->title == title) {
        return kForeignHandle;
    }
    return 0;
}

int HeadlessPlatform::GetWindowPlacement(forms::WindowHandle window) {
    if (window == kForeignHandle && previousInstance_) {
        return previousInstance_->showState;
    }
    return forms::show::kHide;
}

void HeadlessPlatform::SetWindowPlacement(forms::WindowHandle window, int showState) {
    if (window == kForeignHandle && previousInstance_) {
        previousInstance_->showState = showState;
    }
}

void HeadlessPlatform::SetForegroundWindow(forms::WindowHandle window) {
    if (window == kForeignHandle && previousInstance_) {
        previousInstance_->foreground = true;
    }
}

int HeadlessPlatform::SystemMetric(int index) const {
    auto it = metrics_.find(index);
    return it != metrics_.end() ? it->second : 0;
}

void HeadlessPlatform::ShowHelp(const std::string& helpFile, int contextId) {
    helpShown_.push_back(helpFile + "#" + std::to_string(contextId));
}

std::optional<std::string> HeadlessPlatform::OpenFileDialog(
    const forms::FileDialogRequest& request) {
    fileDialogs_.push_back(request);
    if (fileAnswers_.empty()) {
        throw Unanswered("file dialog nobody answered: " + request.title);
    }
    auto answer = fileAnswers_.front();
    fileAnswers_.pop_front();
    return answer;
}

void HeadlessPlatform::EndProcess(int exitCode) {
    endedWith_ = exitCode;
    throw ProcessEnded(exitCode);
}

}  // namespace kw::headless
