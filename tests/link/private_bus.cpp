#include "link/private_bus.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QThread>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "link/wire.h"

namespace kw::link::testing {

namespace fs = std::filesystem;

void EnsureEventLoop() {
    static int argc = 1;
    static char name[] = "link_tests";
    static char* argv[] = {name, nullptr};
    if (QCoreApplication::instance() == nullptr) {
        new QCoreApplication(argc, argv);
    }
    RegisterWireTypes();
}

bool RunUntil(const std::function<bool()>& done, int ms) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return done();
}

PrivateBus::PrivateBus(const fs::path& dir, Setup setup) : dir_(dir) {
    EnsureEventLoop();
    fs::create_directories(dir_ / "services");
    fs::create_directories(dir_ / "config");
    fs::create_directories(dir_ / "data");
    const fs::path socket = dir_ / "bus";
    address_ = QStringLiteral("unix:path=") + QString::fromStdString(socket.string());
    {
        std::ofstream conf(dir_ / "bus.conf");
        conf << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration "
                "1.0//EN\"\n"
                " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                "<busconfig><type>session</type>\n"
             << "<listen>" << address_.toStdString() << "</listen>\n"
             << (setup.standardServiceFolders
                     ? std::string("<standard_session_servicedirs/>")
                     : "<servicedir>" + (dir_ / "services").string() + "</servicedir>")
             << "\n<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
    }
    if (setup.engineInstalled && !setup.standardServiceFolders) {
        std::ofstream service(dir_ / "services" / (std::string(kServiceName) + ".service"));
        service << "[D-BUS Service]\nName=" << kServiceName << "\nExec=" << KW_DRAVLINKD
                << " --idle-ms " << setup.idleMs << "\n";
    }
    // The bus hands its environment to the engine it starts: the test's folders, this bus.
    ::setenv("XDG_DATA_HOME", (dir_ / "data").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (dir_ / "config").c_str(), 1);
    if (setup.scenario.empty()) {
        ::unsetenv("DRAVLINK_SCENARIO");
    } else {
        ::setenv("DRAVLINK_SCENARIO", setup.scenario.c_str(), 1);
    }
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address_.toStdString().c_str(), 1);
    const std::string config = "--config-file=" + (dir_ / "bus.conf").string();
    daemon_ = ::fork();
    if (daemon_ == 0) {
        ::execlp("dbus-daemon", "dbus-daemon", config.c_str(), "--nofork", "--nopidfile",
                 static_cast<char*>(nullptr));
        ::_exit(127);
    }
    for (int i = 0; i < 500 && !fs::exists(socket); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

PrivateBus::~PrivateBus() {
    EnginePid();  // the engine started last, if it still runs
    if (engine_ > 0 && ::kill(engine_, 0) == 0) {
        ::kill(engine_, SIGTERM);
    }
    if (daemon_ > 0) {
        ::kill(daemon_, SIGTERM);
        ::waitpid(daemon_, nullptr, 0);
    }
}

QDBusConnection PrivateBus::Connect(const QString& name) {
    return QDBusConnection::connectToBus(address_, name);
}

pid_t PrivateBus::EnginePid() {
    QDBusConnection bus = Connect(QStringLiteral("kw-test-probe"));
    const auto reply = bus.interface()->servicePid(QLatin1String(kServiceName));
    const pid_t pid = reply.isValid() ? static_cast<pid_t>(reply.value()) : 0;
    QDBusConnection::disconnectFromBus(QStringLiteral("kw-test-probe"));
    if (pid > 0) {
        engine_ = pid;
    }
    return pid;
}

}  // namespace kw::link::testing
