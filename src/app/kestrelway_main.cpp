// Kestrelway: the program on the Qt platform. Its engine is the one the machine setting names:
// dravlinkd on the session bus, or the simulator linked in.
#include <QApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QTimer>
#include <cstdio>
#include <memory>
#include <thread>

#include <fontconfig/fontconfig.h>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "dravlink/simulator.h"
#include "link/bus_dravlink.h"
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
    kw::link::RegisterBusEngine();
    if (kw::dialer::ConfiguredEngineName() == kw::link::kBusEngineName &&
        !QDBusConnection::sessionBus().isConnected()) {
        std::fprintf(
            stderr,
            "kestrelway: no D-Bus session bus to reach the engine on (%s); start Kestrelway "
            "in a desktop session or under dbus-run-session, or choose the in-process "
            "engine with: kestrelway-install --engine dravlink.sim\n",
            qPrintable(QDBusConnection::sessionBus().lastError().message()));
        return 1;
    }
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
