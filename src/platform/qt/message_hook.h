#pragma once

#include <QObject>

#include "platform/forms/platform.h"

namespace kw::qt {

// Sees every event of a form's top-level window before the window does, hands the ones that are
// window messages to the program's hook, and lets the window's own handling run unless the hook
// says otherwise.
class MessageHookFilter : public QObject {
    Q_OBJECT
  public:
    MessageHookFilter(QWidget& window, forms::Platform& platform, forms::WindowMessageHook hook);
    // A message that no event of the window stands for (the session's end), handed to the hook.
    void Deliver(int message, std::intptr_t wParam, std::intptr_t lParam);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& window_;
    forms::Platform& platform_;
    forms::WindowMessageHook hook_;
};

}  // namespace kw::qt
