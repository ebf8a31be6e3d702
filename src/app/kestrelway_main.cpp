// Kestrelway: the program on the Qt platform, with the engine simulator as its default engine.
#include <QApplication>
#include <QTimer>
#include <memory>
#include <thread>

#include <fontconfig/fontconfig.h>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "dravlink/simulator.h"
#include "platform/qt/look.h"
#include "platform/qt/qt_platform.h"
#include "startup_probe.h"

int main(int argc, char** argv) {
    // The font configuration loads on the other core while the display connection is made:
    // the first text drawn needs it, and both take a while.
    std::thread fonts([] { FcInit(); });
    QApplication qtApp(argc, argv);
    fonts.join();
    QApplication::setApplicationName("Kestrelway");
    QApplication::setQuitOnLastWindowClosed(false);  // the program decides when it ends
    kw::qt::UseDarkLook();
    dravlink::RegisterSimulator();
    const std::string assets = kw::dialer::Application::DefaultAssetsDir();
    kw::qt::QtPlatform platform(assets);
    kw::dialer::Application app(platform, assets);
    std::unique_ptr<StartupProbe> probe;
    if (StartupProbe::Wanted()) {
        probe = std::make_unique<StartupProbe>(app);
    }
    platform.Dispatch([&app] { kw::dialer::Main(app); });
    // The program ends with its main window, whichever way that went.
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&app] {
        if (!app.Forms().IsLoaded<kw::dialer::MainWin>()) {
            QApplication::quit();
        }
    });
    watch.start(200);
    return QApplication::exec();
}
