// dravlinkd: the connection engine as a process of its own, one per user session, on the session
// bus. The bus starts it when a client first calls it; it ends a while after its last client went.
//
//   dravlinkd [--idle-ms N]
// DRAVLINK_SCENARIO, when set, makes every call go that way (busy, isp-password, call-home, ...).
// It logs to standard error and to dravlinkd.log in its data folder.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDateTime>
#include <QFile>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "dravlink/data_dir.h"
#include "dravlink/simulator.h"
#include "link/engine_service.h"
#include "link/loop_platform.h"
#include "link/wire.h"
#include "platform/automation/failure.h"

namespace {

constexpr int kDefaultIdleMs = 30000;

class EngineLog {
  public:
    explicit EngineLog(const std::filesystem::path& folder) {
        std::error_code ec;
        std::filesystem::create_directories(folder, ec);
        file_.setFileName(QString::fromStdString((folder / "dravlinkd.log").string()));
        if (!file_.open(QIODevice::Append | QIODevice::Text)) {
            std::fprintf(stderr, "dravlinkd: cannot write %s\n", qPrintable(file_.fileName()));
        }
        file_.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    void operator()(const QString& text) {
        const QByteArray line = (QDateTime::currentDateTime().toString(Qt::ISODateWithMs) +
                                 QStringLiteral(" [%1] ").arg(QCoreApplication::applicationPid()) +
                                 text + QLatin1Char('\n'))
                                    .toUtf8();
        std::fputs(line.constData(), stderr);
        if (file_.isOpen()) {
            file_.write(line);
            file_.flush();
        }
    }

  private:
    QFile file_;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("dravlinkd");
    int idleMs = kDefaultIdleMs;
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::string(argv[i]) == "--idle-ms") {
            idleMs = std::atoi(argv[++i]);
        }
    }
    EngineLog log(dravlink::DefaultDataDir());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        log(QStringLiteral("no D-Bus session bus: %1").arg(bus.lastError().message()));
        return 1;
    }
    kw::link::RegisterWireTypes();
    kw::link::LoopPlatform platform(
        [&log](const std::string& text) { log(QString::fromStdString(text)); });
    std::shared_ptr<dravlink::Simulator> engine;
    try {
        dravlink::Options options;
        if (const char* scenario = std::getenv("DRAVLINK_SCENARIO")) {
            options.scenario = scenario;
        }
        engine = std::make_shared<dravlink::Simulator>(platform, options);
    } catch (const kw::automation::Failure& failure) {
        log(QStringLiteral("cannot start the engine: %1")
                .arg(QString::fromStdString(failure.Description())));
        return 1;
    }
    kw::link::EngineService service(
        bus, engine, idleMs,
        [&engine] {
            // A call goes on without its window: the engine stays until the line is down.
            if (engine->InCall()) {
                return false;
            }
            QCoreApplication::quit();
            return true;
        },
        [&log](const QString& text) { log(text); });
    // The object first, then the name: the call that started the engine finds it ready.
    if (!bus.registerVirtualObject(QLatin1String(kw::link::kObjectPath), &service)) {
        log(QStringLiteral("cannot register %1").arg(QLatin1String(kw::link::kObjectPath)));
        return 1;
    }
    if (!bus.registerService(QLatin1String(kw::link::kServiceName))) {
        log(QStringLiteral("%1 is taken: an engine already runs in this session")
                .arg(QLatin1String(kw::link::kServiceName)));
        return 1;
    }
    log(QStringLiteral("engine ready as %1 (%2)")
            .arg(QLatin1String(kw::link::kServiceName), bus.baseService()));
    // A bus that went away takes its clients with it: nobody is left to serve.
    QTimer busWatch;
    QObject::connect(&busWatch, &QTimer::timeout, [&bus, &log] {
        if (!bus.isConnected()) {
            log(QStringLiteral("the session bus went away: ending"));
            QCoreApplication::quit();
        }
    });
    busWatch.start(1000);
    const int code = QCoreApplication::exec();
    bus.unregisterService(QLatin1String(kw::link::kServiceName));
    return code;
}
