#include "platform/qt/instance_channel.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include <QEventLoop>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include "platform/forms/platform.h"

namespace kw::qt {

namespace {

constexpr int kAnswerTimeoutMs = 2000;

// True when `dir` is a folder of the user's that nobody else may enter; tightens one of the
// user's own that is looser.
bool IsPrivateFolder(const std::string& dir) {
    struct stat st {};
    if (::lstat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != ::geteuid()) {
        return false;
    }
    return (st.st_mode & 077) == 0 || ::chmod(dir.c_str(), 0700) == 0;
}

std::string PrivateFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && runtime[0] == '/') {
        struct stat st {};
        // The session's own folder is used only as it is: it is not ours to change.
        if (::lstat(runtime, &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == ::geteuid() &&
            (st.st_mode & 077) == 0) {
            return runtime;
        }
    }
    const char* cache = std::getenv("XDG_CACHE_HOME");
    const char* home = std::getenv("HOME");
    std::string base;
    if (cache != nullptr && cache[0] == '/') {
        base = cache;
    } else if (home != nullptr && home[0] == '/') {
        base = std::string(home) + "/.cache";
    } else {
        return "";
    }
    std::string dir = base;
    ::mkdir(dir.c_str(), 0700);
    for (const char* part : {"/Ostvarra", "/run"}) {
        dir += part;
        ::mkdir(dir.c_str(), 0700);
    }
    return IsPrivateFolder(dir) ? dir : "";
}

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

InstanceChannel::InstanceChannel(QString socketPath, Handlers handlers, uid_t owner)
    : serverName_(std::move(socketPath)), handlers_(std::move(handlers)), owner_(owner) {}

InstanceChannel::~InstanceChannel() {
    // The socket goes with the instance: a later start finds nothing left over.
    if (IsListening()) {
        server_->close();
        QFile::remove(serverName_);
    }
}

QString InstanceChannel::PathFor(const std::string& key) {
    const std::string folder = PrivateFolder();
    return folder.empty() ? QString() : QString::fromStdString(folder + "/" + key);
}

bool InstanceChannel::PeerIsOwner(qintptr descriptor) const {
    ucred peer{};
    socklen_t size = sizeof peer;
    return descriptor >= 0 &&
           ::getsockopt(static_cast<int>(descriptor), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == owner_;
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
    if (serverName_.isEmpty()) {
        return;
    }
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(serverName_)) {
        // Nobody of ours answered there: what holds the name is left over from an instance that
        // died, or is not ours. The folder is the user's own, so it may go.
        QLocalServer::removeServer(serverName_);
        if (!server_->listen(serverName_)) {
            std::fprintf(stderr, "Kestrelway: cannot listen for later instances at %s: %s\n",
                         qPrintable(serverName_), qPrintable(server_->errorString()));
        }
    }
    connect(server_, &QLocalServer::newConnection, this, &InstanceChannel::OnConnection);
}

void InstanceChannel::OnConnection() {
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        if (!PeerIsOwner(socket->socketDescriptor())) {
            // Another user's request is not answered, nor acted on.
            socket->abort();
            socket->deleteLater();
            continue;
        }
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
    if (serverName_.isEmpty()) {
        return std::nullopt;
    }
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (socket.state() == QLocalSocket::ConnectingState) {
        WaitFor(socket, &QLocalSocket::connected, kAnswerTimeoutMs);
    }
    if (socket.state() != QLocalSocket::ConnectedState || !PeerIsOwner(socket.socketDescriptor())) {
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
