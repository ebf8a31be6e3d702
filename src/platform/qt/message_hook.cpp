#include "platform/qt/message_hook.h"

#include <QEvent>
#include <QWidget>
#include <optional>

namespace kw::qt {

namespace {

struct Message {
    int message;
    std::intptr_t wParam;
    std::intptr_t lParam;
};

std::intptr_t SizeCode(const QWidget& window) {
    if (window.isMinimized()) {
        return forms::wm::size::kMinimized;
    }
    return window.isMaximized() ? forms::wm::size::kMaximized : forms::wm::size::kRestored;
}

// The window message an event stands for, if it stands for one.
std::optional<Message> MessageOf(const QWidget& window, const QEvent& event) {
    using namespace forms::wm;
    switch (event.type()) {
        case QEvent::WindowStateChange:
        case QEvent::Resize:
            return Message{kSize, SizeCode(window), MakeLParam(window.width(), window.height())};
        case QEvent::Move:
            return Message{kMove, 0, MakeLParam(window.x(), window.y())};
        case QEvent::Show:
            return Message{kShowWindow, 1, 0};
        case QEvent::Hide:
            return Message{kShowWindow, 0, 0};
        case QEvent::WindowActivate:
            return Message{kActivate, 1, 0};
        case QEvent::WindowDeactivate:
            return Message{kActivate, 0, 0};
        case QEvent::Close:
            return Message{kClose, 0, 0};
        default:
            return std::nullopt;
    }
}

}  // namespace

MessageHookFilter::MessageHookFilter(QWidget& window, forms::Platform& platform,
                                     forms::WindowMessageHook hook)
    : QObject(&window), window_(window), platform_(platform), hook_(std::move(hook)) {
    window_.installEventFilter(this);
}

void MessageHookFilter::Deliver(int message, std::intptr_t wParam, std::intptr_t lParam) {
    platform_.Dispatch([&] { hook_(message, wParam, lParam); });
}

bool MessageHookFilter::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &window_) {
        return false;
    }
    const std::optional<Message> message = MessageOf(window_, *event);
    if (!message) {
        return false;
    }
    bool previousRuns = true;
    platform_.Dispatch(
        [&] { previousRuns = hook_(message->message, message->wParam, message->lParam); });
    return !previousRuns;
}

}  // namespace kw::qt
