#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QObject>
#include <QString>

class QLocalServer;

namespace kw::qt {

// One running instance per user: the first instance listens on a local socket named for the
// user; a later one finds it there and asks it to restore and raise its windows.
class InstanceChannel : public QObject {
    Q_OBJECT
  public:
    // What the first instance does when asked.
    struct Handlers {
        std::function<int()> placement;  // show state of its main window (forms::show)
        std::function<void()> restore;   // un-minimise its windows
        std::function<void()> raise;     // bring its windows to the front
    };

    InstanceChannel(QString serverName, Handlers handlers);
    ~InstanceChannel() override;

    const QString& ServerName() const { return serverName_; }

    // True when another instance answers; otherwise this one starts answering.
    bool OtherInstanceRunning();
    bool IsListening() const;

    // Asks the other instance; nullopt when none answered within the time allowed.
    std::optional<std::string> Ask(const std::string& request);

    // The per-user name: "<key>-<uid>".
    static QString NameFor(const std::string& key);

  private:
    void Listen();
    void OnConnection();
    std::string Answer(const std::string& request);

    QString serverName_;
    Handlers handlers_;
    QLocalServer* server_ = nullptr;
};

}  // namespace kw::qt
