// Kestrelway: the program on the Qt platform, with the engine simulator as its default engine.
#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "dravlink/simulator.h"
#include "platform/qt/look.h"
#include "platform/qt/qt_platform.h"

int main(int argc, char** argv) {
    QApplication qtApp(argc, argv);
    QApplication::setApplicationName("Kestrelway");
    QApplication::setQuitOnLastWindowClosed(false);  // the program decides when it ends
    kw::qt::UseDarkLook();
    dravlink::RegisterSimulator();
    const std::string assets = kw::dialer::Application::DefaultAssetsDir();
    kw::qt::QtPlatform platform(assets);
    kw::dialer::Application app(platform, assets);
    platform.Dispatch([&app] { kw::dialer::Main(app); });
    // The program ends with its main window, whichever way that went.
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&app] {
        if (!app.Forms().IsLoaded<kw::dialer::MainWin>()) {
            QApplication::quit();
        }
    });
    watch.start(200);
    // For the start-up measurement: say when the window is idle with its dial list, and end.
    QTimer probe;
    if (std::getenv("KESTRELWAY_EXIT_WHEN_READY") != nullptr) {
        QObject::connect(&probe, &QTimer::timeout, [&app] {
            const auto* win = app.Forms().Peek<kw::dialer::MainWin>();
            if (win != nullptr && !win->IsLoading && !win->IsGettingDialList &&
                win->cmboFrom.ListCount() > 0) {
                std::printf("ready\n");
                std::fflush(stdout);
                std::_Exit(0);
            }
        });
        probe.start(5);
    }
    return QApplication::exec();
}
