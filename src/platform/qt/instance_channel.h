#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>
#include <unistd.h>

#include <QObject>
#include <QString>

class QLocalServer;

namespace kw::qt {

// One running instance per user: the first instance listens on a local socket in a folder only
// the user can reach; a later one finds it there and asks it to restore and raise its windows.
// Both ends talk only to a peer of the same user: nobody else can make Kestrelway quit, or run
// twice, by taking the socket's name.
class InstanceChannel : public QObject {
    Q_OBJECT
  public:
    // What the first instance does when asked.
    struct Handlers {
        std::function<int()> placement;  // show state of its main window (forms::show)
        std::function<void()> restore;   // un-minimise its windows
        std::function<void()> raise;     // bring its windows to the front
    };

    // `socketPath` is where the channel lives; `owner` is the user both ends must be.
    InstanceChannel(QString socketPath, Handlers handlers, uid_t owner = ::geteuid());
    ~InstanceChannel() override;

    const QString& ServerName() const { return serverName_; }

    // True when another instance answers; otherwise this one starts answering.
    bool OtherInstanceRunning();
    bool IsListening() const;

    // Asks the other instance; nullopt when none answered within the time allowed.
    std::optional<std::string> Ask(const std::string& request);

    // "<folder>/<key>", the folder private to the user: $XDG_RUNTIME_DIR when it is the user's
    // alone, else a 0700 folder in the user's cache folder. Empty when there is none.
    static QString PathFor(const std::string& key);

  private:
    void Listen();
    void OnConnection();
    std::string Answer(const std::string& request);

    bool PeerIsOwner(qintptr descriptor) const;

    QString serverName_;
    Handlers handlers_;
    uid_t owner_;
    QLocalServer* server_ = nullptr;
};

}  // namespace kw::qt
