#pragma once

#include <string>

#include "platform/forms/platform.h"

namespace kw::qt {

// Shows a modal message box for the request and gives its classic result: the buttons of the
// flags' set (relabelled from request.buttonLabels when given), their icon and default, and for
// a timed box mb::kResultTimeout when it closed itself. The event loop runs inside it.
int RunMessageBox(const forms::MessageBoxRequest& request, const std::string& defaultCaption);

}  // namespace kw::qt
