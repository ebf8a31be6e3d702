#include "platform/qt/instance_channel.h"

#include <unistd.h>

#include <QEventLoop>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include "platform/forms/platform.h"

namespace kw::qt {

namespace {

constexpr int kAnswerTimeoutMs = 2000;

// Waits for a socket's signal with the event loop running, so that an instance in this very
// process (or anything else the loop owes) can answer meanwhile.
template <class Signal>
bool WaitFor(QLocalSocket& socket, Signal signal, int timeoutMs) {
    QEventLoop loop;
    bool fired = false;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&socket, signal, &loop, [&] {
        fired = true;
        loop.quit();
    });
    QObject::connect(&socket, &QLocalSocket::errorOccurred, &loop, &QEventLoop::quit);
    timer.start(timeoutMs);
    loop.exec();
    return fired;
}

}  // namespace

InstanceChannel::InstanceChannel(QString serverName, Handlers handlers)
    : serverName_(std::move(serverName)), handlers_(std::move(handlers)) {}

InstanceChannel::~InstanceChannel() = default;

QString InstanceChannel::NameFor(const std::string& key) {
    return QString::fromStdString(key) + u'-' + QString::number(::getuid());
}

bool InstanceChannel::IsListening() const {
    return server_ != nullptr && server_->isListening();
}

bool InstanceChannel::OtherInstanceRunning() {
    if (IsListening()) {
        return false;  // we are the first one
    }
    if (Ask("ping").has_value()) {
        return true;
    }
    Listen();
    return false;
}

void InstanceChannel::Listen() {
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(serverName_)) {
        // Nobody answered on it, so the name is left over from an instance that died.
        QLocalServer::removeServer(serverName_);
        server_->listen(serverName_);
    }
    connect(server_, &QLocalServer::newConnection, this, &InstanceChannel::OnConnection);
}

void InstanceChannel::OnConnection() {
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
            while (socket->canReadLine()) {
                const std::string request = socket->readLine().trimmed().toStdString();
                socket->write(QByteArray::fromStdString(Answer(request) + "\n"));
                socket->flush();
            }
        });
    }
}

std::string InstanceChannel::Answer(const std::string& request) {
    if (request == "placement") {
        return std::to_string(handlers_.placement ? handlers_.placement() : forms::show::kNormal);
    }
    if (request == "restore" && handlers_.restore) {
        handlers_.restore();
    } else if (request == "raise" && handlers_.raise) {
        handlers_.raise();
    }
    return "ok";
}

std::optional<std::string> InstanceChannel::Ask(const std::string& request) {
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (socket.state() == QLocalSocket::ConnectingState) {
        WaitFor(socket, &QLocalSocket::connected, kAnswerTimeoutMs);
    }
    if (socket.state() != QLocalSocket::ConnectedState) {
        return std::nullopt;
    }
    socket.write(QByteArray::fromStdString(request + "\n"));
    socket.flush();
    while (!socket.canReadLine()) {
        if (!WaitFor(socket, &QLocalSocket::readyRead, kAnswerTimeoutMs)) {
            return std::nullopt;
        }
    }
    return socket.readLine().trimmed().toStdString();
}

}  // namespace kw::qt
