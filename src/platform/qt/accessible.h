#pragma once

namespace kw::qt {

// Tells assistive technology what the skin's windows hold: a form's window by its name and
// without its decorative pictures, pictures that act as buttons as push buttons that press,
// lights as indicators that are lit or not, the status line as a status bar, a chart as a chart.
// Once per process.
void InstallAccessibility();

}  // namespace kw::qt
