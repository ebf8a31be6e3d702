#pragma once

#include <cstdint>

#include "platform/forms/form.h"

namespace kw::dialer {

class Application;
class MainWin;

// The handle by which the hook knows a window.
forms::WindowHandle WindowHandleOf(const forms::Form& form);

// Puts HookedWindowProc in front of the main window's own message handling, so that a minimise
// or restore done by the system (the task bar) still reaches MainWin's Form_Resize. The platform
// keeps the previous handling; OldWindowProc holds the hooked window's handle while the hook
// stands, and 0 when none does.
void InstallMessageHook(Application& app, MainWin& win);
// Sees a message of a hooked window: MainWin's ProcMsg for its own window, failures ignored.
// Returns whether the previous handling runs, which it does for every message.
bool HookedWindowProc(Application& app, forms::WindowHandle window, int message,
                      std::intptr_t wParam, std::intptr_t lParam);
// Puts the previous handling back alone; nothing when no hook stands.
void RemoveMessageHook(Application& app);

}  // namespace kw::dialer
