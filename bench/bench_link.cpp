// The engine in its own process against the engine in the process: the round trip of a small
// call, over the engine's direct connection (as the client makes it) and through the bus daemon
// (as a client that does not join makes it). Each run over the bus starts a session bus of its
// own, and the bus starts dravlinkd.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <memory>
#include <optional>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include "client/ui/dialer/engine/dravlink.h"
#include "dravlink/simulator.h"

#include "link/answer_wait.h"
#include "link/bus_dravlink.h"
#include "link/events.h"
#include "link/loop_platform.h"
#include "link/private_bus.h"
#include "link/wire.h"
#include "platform/automation/safe_array.h"
#include "platform/registry/registry.h"

namespace {

namespace fs = std::filesystem;
using kw::automation::SafeArray;
using kw::automation::Variant;

using kw::link::testing::PrivateBus;

fs::path Folder(const char* what) {
    std::string name = "kw-bench-link-";
    name += what;
    name += '-';
    name += std::to_string(::getpid());
    const fs::path dir = fs::temp_directory_path() / name;
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

void LogOn(kw::dialer::Dravlink& engine) {
    std::string user = "ana";
    std::string password = "secret";
    engine.Logon(user, password, "");
}

// GetLinkSpeed of the modem: one string in, a long out, nothing else happens in the engine.
void SmallCall(benchmark::State& state, kw::dialer::Dravlink& engine) {
    const std::string modem = "Standard 33600 bps Modem";
    for (auto _ : state) {
        benchmark::DoNotOptimize(engine.GetLinkSpeed(modem));
    }
}

// A call to the engine's object, written out as a client that does without BusDravlink would.
// target: the engine's name on a bus, empty on a direct connection.
QDBusMessage EngineCall(const QString& target, const QString& method, const QVariantList& args) {
    QDBusMessage m = QDBusMessage::createMethodCall(target, QLatin1String(kw::link::kObjectPath),
                                                    QLatin1String(kw::link::kInterface), method);
    m.setArguments(args);
    return m;
}

// The same call again and again, each waiting for its answer as the client waits.
void RepeatCall(benchmark::State& state, const QDBusConnection& via, const QDBusMessage& call) {
    for (auto _ : state) {
        if (kw::link::CallAndWait(via, call).type() != QDBusMessage::ReplyMessage) {
            state.SkipWithError("the engine refused the call");
            break;
        }
    }
}

void BM_SmallCallToTheEngineProcess(benchmark::State& state) {
    const fs::path dir = Folder("direct");
    {
        PrivateBus bus(dir, {.engineInstalled = true, .idleMs = 1000, .scenario = {}});
        kw::link::BusDravlink engine(nullptr, bus.Address());
        if (!engine.Direct()) {
            state.SkipWithError("the engine offered no direct connection");
        }
        LogOn(engine);
        SmallCall(state, engine);
    }
    fs::remove_all(dir);
}
BENCHMARK(BM_SmallCallToTheEngineProcess)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

// The same call as the late-bound Invoke a client sends when it stays on the bus.
void BM_SmallCallThroughTheBusDaemon(benchmark::State& state) {
    const fs::path dir = Folder("bus");
    {
        PrivateBus bus(dir, {.engineInstalled = true, .idleMs = 1000, .scenario = {}});
        kw::link::BusDravlink engine(nullptr, bus.Address());
        LogOn(engine);
        QDBusConnection raw = bus.Connect(QStringLiteral("bench-raw"));
        const Variant args[] = {Variant("Standard 33600 bps Modem")};
        const QDBusMessage call =
            EngineCall(engine.EngineBusName(), QStringLiteral("Invoke"),
                       {QVariant::fromValue(engine.GetIDsOfNames("GetLinkSpeed")),
                        QVariant::fromValue(kw::link::ToWire(args))});
        RepeatCall(state, raw, call);
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("bench-raw"));
    fs::remove_all(dir);
}
BENCHMARK(BM_SmallCallThroughTheBusDaemon)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

// The floor under the small call: the lightest request the engine answers (a dispatch id by name,
// no automation values to marshal) over a direct connection of the same kind. What the small call
// takes beyond this is the values and the operation; this much is the transport itself.
void BM_IdLookupToTheEngineProcess(benchmark::State& state) {
    const fs::path dir = Folder("floor");
    const QString name = QStringLiteral("bench-floor");
    const QString peerName = QStringLiteral("bench-floor-direct");
    {
        PrivateBus bus(dir, {.engineInstalled = true, .idleMs = 1000, .scenario = {}});
        QDBusConnection raw = bus.Connect(name);
        const QDBusMessage attached = kw::link::CallAndWait(
            raw, EngineCall(QLatin1String(kw::link::kServiceName), QStringLiteral("Attach"), {}));
        const QString address = attached.arguments().value(1).toString();
        QDBusConnection direct = QDBusConnection::connectToPeer(address, peerName);
        const QDBusMessage joined = kw::link::CallAndWait(
            direct, EngineCall(QString(), QStringLiteral("Join"), {raw.baseService()}));
        if (joined.type() != QDBusMessage::ReplyMessage) {
            state.SkipWithError("the engine offered no direct connection");
        }
        RepeatCall(state, direct,
                   EngineCall(QString(), QStringLiteral("GetIDsOfNames"),
                              {QStringLiteral("GetLinkSpeed")}));
    }
    QDBusConnection::disconnectFromPeer(peerName);
    QDBusConnection::disconnectFromBus(name);
    fs::remove_all(dir);
}
BENCHMARK(BM_IdLookupToTheEngineProcess)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

void BM_SmallCallInTheProcess(benchmark::State& state) {
    kw::link::testing::EnsureEventLoop();
    const fs::path dir = Folder("process");
    const auto saved = kw::registry::DefaultConfig();
    kw::registry::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
    {
        kw::link::LoopPlatform platform;
        dravlink::Simulator engine(platform, dravlink::Options{dir / "data", {}, {}});
        LogOn(engine);
        SmallCall(state, engine);
    }
    kw::registry::Configure(saved);
    fs::remove_all(dir);
}
BENCHMARK(BM_SmallCallInTheProcess)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

// The receiving end of the engine's events, as the client has it: decode, then the handler.
class EventEnd : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        std::vector<Variant> args =
            kw::link::FromWire(kw::link::WireListArgument(message.arguments().value(1)));
        kw::link::RaiseOnSink(sink, message.arguments().value(0).toString().toStdString(), args);
        return true;
    }
    struct : kw::link::ForwardingSink {
        using ForwardingSink::ForwardingSink;
    } sink{[this](const std::string&, std::vector<Variant>&) { ++received; }};
    int received = 0;
};

// One statistics event as the engine sends it each second (two arrays of figures): sent from one
// connection, read and handed to a handler on the far side. destination: the receiver's name on
// a bus, empty on a direct connection.
void SendStatistics(benchmark::State& state, QDBusConnection& from, QDBusConnection& to,
                    const QString& destination) {
    EventEnd end;
    to.registerVirtualObject(QLatin1String(kw::link::kEventsPath), &end);
    SafeArray isp = SafeArray::OneDim(0, 11);
    SafeArray vpn = SafeArray::OneDim(0, 9);
    for (std::int32_t i = 0; i <= 11; ++i) {
        isp.Set(i, Variant(1000.5 * i));
    }
    for (std::int32_t i = 0; i <= 9; ++i) {
        vpn.Set(i, Variant(std::int32_t{i * 77}));
    }
    const Variant args[] = {Variant(isp), Variant(vpn)};
    for (auto _ : state) {
        QDBusMessage event = QDBusMessage::createMethodCall(
            destination, QLatin1String(kw::link::kEventsPath),
            QLatin1String(kw::link::kEventsInterface), QStringLiteral("Raise"));
        event.setArguments({QStringLiteral("GetConnectionStatistics"),
                            QVariant::fromValue(kw::link::ToWire(args))});
        const int before = end.received;
        from.send(event);
        while (end.received == before) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    to.unregisterObject(QLatin1String(kw::link::kEventsPath));
}

void BM_StatisticsEventDirect(benchmark::State& state) {
    kw::link::testing::EnsureEventLoop();
    kw::link::RegisterWireTypes();
    {
        QDBusServer server(QStringLiteral("unix:tmpdir=/tmp"));
        std::optional<QDBusConnection> engineEnd;
        QObject::connect(&server, &QDBusServer::newConnection,
                         [&](const QDBusConnection& c) { engineEnd = c; });
        QDBusConnection clientEnd =
            QDBusConnection::connectToPeer(server.address(), QStringLiteral("bench-direct"));
        while (!engineEnd) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        SendStatistics(state, *engineEnd, clientEnd, QString());
        QDBusConnection::disconnectFromPeer(engineEnd->name());
    }
    QDBusConnection::disconnectFromPeer(QStringLiteral("bench-direct"));
}
BENCHMARK(BM_StatisticsEventDirect)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

void BM_StatisticsEventThroughTheBusDaemon(benchmark::State& state) {
    const fs::path dir = Folder("event");
    {
        PrivateBus bus(dir, {.engineInstalled = false, .idleMs = 1000, .scenario = {}});
        QDBusConnection from = bus.Connect(QStringLiteral("bench-engine"));
        QDBusConnection to = bus.Connect(QStringLiteral("bench-client"));
        SendStatistics(state, from, to, to.baseService());
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("bench-engine"));
    QDBusConnection::disconnectFromBus(QStringLiteral("bench-client"));
    fs::remove_all(dir);
}
BENCHMARK(BM_StatisticsEventThroughTheBusDaemon)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly();

}  // namespace

BENCHMARK_MAIN();
