#include "client/ui/dialer/shell/message_hook.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "platform/automation/failure.h"

namespace kw::dialer {

forms::WindowHandle WindowHandleOf(const forms::Form& form) {
    return reinterpret_cast<forms::WindowHandle>(&form);
}

void InstallMessageHook(Application& app, MainWin& win) {
    const forms::WindowHandle handle = WindowHandleOf(win);
    app.Platform().InstallMessageHook(
        win, [&app, handle](int message, std::intptr_t wParam, std::intptr_t lParam) {
            return HookedWindowProc(app, handle, message, wParam, lParam);
        });
    app.OldWindowProc = handle;
}

bool HookedWindowProc(Application& app, forms::WindowHandle window, int message,
                      std::intptr_t wParam, std::intptr_t lParam) {
    MainWin* win = app.Forms().Peek<MainWin>();
    if (win != nullptr && window == WindowHandleOf(*win)) {
        // The end of a session goes this same way: what counts is the previous handling's
        // answer, which overwrites this one.
        std::intptr_t result = message == forms::wm::kQueryEndSession ? 1 : 0;
        try {
            win->ProcMsg(window, message, wParam, lParam, result);
        } catch (const automation::Failure&) {
            // Nothing a message does here may stop the window's own handling of it.
        }
    }
    return true;
}

void RemoveMessageHook(Application& app) {
    if (app.OldWindowProc == 0) {
        return;
    }
    if (MainWin* win = app.Forms().Peek<MainWin>(); win != nullptr) {
        app.Platform().RemoveMessageHook(*win);
    }
    app.OldWindowProc = 0;
}

}  // namespace kw::dialer
