#include "startup_probe.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <cstdio>
#include <cstdlib>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"

namespace {
void Say(const char* moment) {
    std::printf("%s\n", moment);
    std::fflush(stdout);
}
}  // namespace

StartupProbe::StartupProbe(kw::dialer::Application& app) : app_(app) {
    // Installed before the main window exists: its load step paints it from a nested loop.
    qApp->installEventFilter(this);
    QObject::connect(&poll_, &QTimer::timeout, this, [this] { CheckReady(); });
    poll_.start(1);  // often enough that the poll itself adds next to nothing
}

bool StartupProbe::Wanted() {
    return std::getenv("KESTRELWAY_EXIT_WHEN_READY") != nullptr;
}

bool StartupProbe::eventFilter(QObject* watched, QEvent* event) {
    if (!painted_ && event->type() == QEvent::Paint) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->isWindow() && widget->objectName() == "MainWin") {
            painted_ = true;
            Say("painted");
        }
    }
    return false;
}

void StartupProbe::CheckReady() {
    const auto* win = app_.Forms().Peek<kw::dialer::MainWin>();
    if (painted_ && win != nullptr && !win->IsLoading && !win->IsGettingDialList &&
        win->cmboFrom.ListCount() > 0) {
        Say("ready");
        std::_Exit(0);
    }
}
