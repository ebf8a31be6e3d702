#pragma once

#include <QDBusConnection>
#include <QDBusServer>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "link/events.h"

namespace kw::link {

// The engine's side of the link: one engine shared by every client of the user's session. A
// client attaches (which starts the engine on first use), calls operations by dispatch id, and
// advises to receive the events; the latest client that advised and is still there receives them.
// A prompt waits for its client's answer with no time-out, while calls and timers go on; a client
// that leaves the bus in the middle of a prompt counts as a cancel.
//
// The bus finds the engine and tells who is there; the calls and events themselves go over a
// connection of the client's own straight to the engine (Attach hands out its address, Join ties
// it to the client's name on the bus), which saves the bus daemon's two hops on every call. A
// client that does not join goes on over the bus.
class EngineService : public QDBusVirtualObject {
  public:
    using Log = std::function<void(const QString&)>;

    // idleMs: how long the engine stays once its last client went; onIdle is asked then, and
    // returns whether the engine ends (a call still up keeps it, and it is asked again later).
    EngineService(QDBusConnection bus, std::shared_ptr<dialer::Dravlink> engine, int idleMs,
                  std::function<bool()> onIdle, Log log = {});
    ~EngineService() override;
    EngineService(const EngineService&) = delete;
    EngineService& operator=(const EngineService&) = delete;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    int ClientCount() const { return static_cast<int>(clients_.size()); }
    // Where clients reach the engine directly; empty when it could not listen.
    QString PeerAddress() const;

  private:
    QDBusMessage Handle(const QDBusMessage& message, const QString& client,
                        const QDBusConnection& connection);
    QString ClientOf(const QDBusMessage& message, const QDBusConnection& connection) const;
    // The client that joined over this direct connection; empty when none did.
    QString ClientOfPeer(const QString& connectionName) const;
    // The connection a client's events go over, and the name to address them to on it.
    QDBusConnection ConnectionTo(const QString& client, QString& destination) const;
    void Deliver(const std::string& event, std::vector<Variant>& args);
    void Track(const QString& client);
    void Forget(const QString& client);
    void Note(const QString& text) const;

    QDBusConnection bus_;
    std::shared_ptr<dialer::Dravlink> engine_;
    ForwardingSink sink_;
    QStringList clients_;
    QStringList advised_;  // in the order they advised; the last one hears the events
    QDBusServiceWatcher watcher_;
    QDBusServer peers_;
    std::map<QString, QString> peerOf_;  // a client's bus name -> its direct connection's name
    QTimer idle_;
    Log log_;
};

}  // namespace kw::link
