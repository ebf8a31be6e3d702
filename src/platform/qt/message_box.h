#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/forms/platform.h"

class QMessageBox;

namespace kw::qt {

// The message boxes of the program, including those open now (boxes nest: each runs the loop).
class MessageBoxes {
  public:
    // Shows a modal box for the request and gives its classic result: the buttons of the flags'
    // set (relabelled from request.buttonLabels when given), their icon and default, and for a
    // timed box mb::kResultTimeout when it closed itself. The event loop runs inside it.
    int Run(const forms::MessageBoxRequest& request, const std::string& defaultCaption);
    // Closes the innermost open box with this caption as if answered with result.
    bool Close(const std::string& caption, int result);
    int OpenCount() const { return static_cast<int>(open_.size()); }

  private:
    struct Open {
        std::string caption;
        QMessageBox* box;
        std::optional<int> closedWith;
    };
    std::vector<Open*> open_;
};

}  // namespace kw::qt
