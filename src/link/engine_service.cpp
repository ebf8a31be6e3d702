#include "link/engine_service.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFileInfo>

#include "link/answer_wait.h"
#include "link/link_errors.h"
#include "link/wire.h"
#include "platform/automation/failure.h"

namespace kw::link {

using automation::Failure;

namespace {

constexpr int kJoinWithinMs = 10000;

// A socket in the user's runtime folder (libdbus picks its name); the server takes only connections
// that prove to be this same user.
QString ListenAddress() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool usable = !runtime.isEmpty() && QFileInfo(runtime).isDir();
    return QStringLiteral("unix:tmpdir=") + (usable ? runtime : QStringLiteral("/tmp"));
}

}  // namespace

EngineService::EngineService(QDBusConnection bus, std::shared_ptr<dialer::Dravlink> engine,
                             int idleMs, std::function<bool()> onIdle, Log log)
    : bus_(std::move(bus)),
      engine_(std::move(engine)),
      sink_([this](const std::string& event, std::vector<Variant>& args) { Deliver(event, args); }),
      watcher_(QString(), bus_, QDBusServiceWatcher::WatchForUnregistration),
      peers_(ListenAddress()),
      log_(std::move(log)) {
    RegisterWireTypes();
    QObject::connect(&peers_, &QDBusServer::newConnection, [this](QDBusConnection peer) {
        peer.registerVirtualObject(QLatin1String(kObjectPath), this);
        // A connection that does not say whose it is gets nothing and is not kept.
        QTimer::singleShot(kJoinWithinMs, &idle_, [this, name = peer.name()] {
            if (ClientOfPeer(name).isEmpty()) {
                QDBusConnection::disconnectFromPeer(name);
            }
        });
    });
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered,
                     [this](const QString& client) { Forget(client); });
    idle_.setSingleShot(true);
    idle_.setInterval(idleMs);
    QObject::connect(&idle_, &QTimer::timeout, [this, onIdle = std::move(onIdle)] {
        if (!clients_.isEmpty() || !onIdle) {
            return;
        }
        if (onIdle()) {
            Note(QStringLiteral("no client for a while: ending"));
        } else {
            idle_.start();
        }
    });
    // Started by the bus for a client that may never come: the same wait applies.
    idle_.start();
}

EngineService::~EngineService() {
    engine_->Unadvise();
    for (const auto& [client, peer] : peerOf_) {
        QDBusConnection::disconnectFromPeer(peer);
    }
}

QString EngineService::PeerAddress() const {
    return peers_.isConnected() ? peers_.address() : QString();
}

QString EngineService::introspect(const QString&) const {
    return QStringLiteral(
               "<interface name=\"%1\">"
               "<method name=\"Attach\"><arg name=\"engine\" type=\"s\" direction=\"out\"/>"
               "<arg name=\"direct\" type=\"s\" direction=\"out\"/></method>"
               "<method name=\"Join\"><arg name=\"client\" type=\"s\" direction=\"in\"/>"
               "</method>"
               "<method name=\"Advise\"/><method name=\"Unadvise\"/>"
               "<method name=\"GetIDsOfNames\"><arg name=\"name\" type=\"s\" direction=\"in\"/>"
               "<arg name=\"id\" type=\"i\" direction=\"out\"/></method>"
               "<method name=\"Invoke\"><arg name=\"id\" type=\"i\" direction=\"in\"/>"
               "<arg name=\"arguments\" type=\"a(iv)\" direction=\"in\"/>"
               "<arg name=\"result\" type=\"(iv)\" direction=\"out\"/>"
               "<arg name=\"arguments\" type=\"a(iv)\" direction=\"out\"/></method>"
               "</interface>")
        .arg(QLatin1String(kInterface));
}

bool EngineService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() != QLatin1String(kInterface)) {
        return false;
    }
    const QString client = ClientOf(message, connection);
    Track(client);
    QDBusMessage reply;
    try {
        reply = Handle(message, client, connection);
    } catch (const Failure& failure) {
        reply = FailureReply(message, failure);
    }
    if (reply.type() == QDBusMessage::InvalidMessage) {
        return false;
    }
    connection.send(reply);
    return true;
}

QString EngineService::ClientOf(const QDBusMessage& message,
                                const QDBusConnection& connection) const {
    return message.service().isEmpty() ? ClientOfPeer(connection.name()) : message.service();
}

QString EngineService::ClientOfPeer(const QString& connectionName) const {
    for (const auto& [client, peer] : peerOf_) {
        if (peer == connectionName) {
            return client;
        }
    }
    return {};
}

QDBusMessage EngineService::Handle(const QDBusMessage& message, const QString& client,
                                   const QDBusConnection& connection) {
    const QString member = message.member();
    const QList<QVariant> in = message.arguments();
    const bool direct = message.service().isEmpty();
    if (member == QLatin1String("Join") && direct && in.size() == 1 && client.isEmpty()) {
        // Only a client that is on the bus now may join: its leaving the bus is how we learn
        // it went.
        const QString name = in[0].toString();
        if (!bus_.interface()->isServiceRegistered(name).value()) {
            return message.createErrorReply(QDBusError::AccessDenied,
                                            QStringLiteral("%1 is not on the bus").arg(name));
        }
        peerOf_[name] = connection.name();
        Track(name);
        Note(QStringLiteral("client %1 joined directly").arg(name));
        return message.createReply();
    }
    if (client.isEmpty()) {
        return message.createErrorReply(QDBusError::AccessDenied,
                                        QStringLiteral("Join before calling the engine"));
    }
    if (member == QLatin1String("Attach")) {
        return message.createReply({bus_.baseService(), PeerAddress()});
    }
    if (member == QLatin1String("Advise")) {
        advised_.removeAll(client);
        advised_.append(client);
        engine_->Advise(&sink_);
        return message.createReply();
    }
    if (member == QLatin1String("Unadvise")) {
        advised_.removeAll(client);
        if (advised_.isEmpty()) {
            engine_->Unadvise();
        }
        return message.createReply();
    }
    if (member == QLatin1String("GetIDsOfNames") && in.size() == 1) {
        return message.createReply(
            QVariant::fromValue(engine_->GetIDsOfNames(in[0].toString().toStdString())));
    }
    if (member == QLatin1String("Invoke") && in.size() == 2 &&
        in[0].metaType().id() == QMetaType::Int) {
        std::vector<Variant> args = FromWire(WireListArgument(in[1]));
        // The operation may wait on a prompt: calls of other clients are served meanwhile.
        const Variant result = engine_->Invoke(in[0].toInt(), args);
        return message.createReply(
            {QVariant::fromValue(WireValue{result}), QVariant::fromValue(ToWire(args))});
    }
    return message.createErrorReply(
        QDBusError::UnknownMethod, QStringLiteral("No method %1 with these arguments").arg(member));
}

void EngineService::Deliver(const std::string& event, std::vector<Variant>& args) {
    if (advised_.isEmpty()) {
        if (IsPrompt(event)) {
            CancelPrompt(event, args);
        }
        return;
    }
    const QString client = advised_.last();
    QString destination;
    QDBusConnection via = ConnectionTo(client, destination);
    if (!via.isConnected()) {
        // Its direct connection broke before the bus told us it left: it is gone.
        Forget(client);
        Deliver(event, args);
        return;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(destination, QLatin1String(kEventsPath),
                                       QLatin1String(kEventsInterface), QStringLiteral("Raise"));
    call.setArguments({QString::fromStdString(event), QVariant::fromValue(ToWire(args))});
    if (!IsPrompt(event)) {
        // Told in the order raised; the engine goes on at once.
        via.send(call);
        return;
    }
    // The user may take as long as they like; calls, timers and further events run meanwhile.
    const QDBusMessage reply = CallAndWait(via, call);
    try {
        if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().size() == 1) {
            std::vector<Variant> answered = FromWire(WireListArgument(reply.arguments()[0]));
            if (answered.size() == args.size()) {
                args = std::move(answered);
                return;
            }
        }
    } catch (const Failure&) {
    }
    Note(QStringLiteral("%1 was not answered (%2): taken as a cancel")
             .arg(QString::fromStdString(event), reply.errorName()));
    if (!via.isConnected()) {
        Forget(client);
    }
    CancelPrompt(event, args);
}

QDBusConnection EngineService::ConnectionTo(const QString& client, QString& destination) const {
    if (const auto peer = peerOf_.find(client); peer != peerOf_.end()) {
        return QDBusConnection(peer->second);  // a direct connection has no names to address
    }
    destination = client;
    return bus_;
}

void EngineService::Track(const QString& client) {
    if (client.isEmpty() || clients_.contains(client)) {
        return;
    }
    clients_.append(client);
    watcher_.addWatchedService(client);
    idle_.stop();
    Note(QStringLiteral("client %1 came (%2 now)").arg(client).arg(clients_.size()));
    // It may have gone before the watch was set.
    if (!bus_.interface()->isServiceRegistered(client).value()) {
        Forget(client);
    }
}

void EngineService::Forget(const QString& client) {
    watcher_.removeWatchedService(client);
    if (!clients_.removeAll(client)) {
        return;
    }
    advised_.removeAll(client);
    if (const auto peer = peerOf_.find(client); peer != peerOf_.end()) {
        QDBusConnection::disconnectFromPeer(peer->second);
        peerOf_.erase(peer);
    }
    if (advised_.isEmpty()) {
        engine_->Unadvise();
    }
    Note(QStringLiteral("client %1 went (%2 left)").arg(client).arg(clients_.size()));
    if (clients_.isEmpty()) {
        idle_.start();
    }
}

void EngineService::Note(const QString& text) const {
    if (log_) {
        log_(text);
    }
}

}  // namespace kw::link
