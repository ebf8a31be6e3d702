#pragma once

#include <sys/types.h>

#include <QDBusConnection>
#include <QString>
#include <filesystem>
#include <functional>
#include <string>

namespace kw::link::testing {

// A session bus of the test's own (never the desktop's), with the engine's service file in its
// service folder when asked: the first call to the engine's name starts dravlinkd. The bus and the
// engine take XDG folders under dir, so the engine's data and settings stay in the test's folder.
class PrivateBus {
  public:
    struct Setup {
        bool engineInstalled = true;
        int idleMs = 1500;                    // how long the engine stays after its last client
        bool standardServiceFolders = false;  // look where kestrelway-install writes instead
        std::string scenario;                 // how the engine's calls go; empty: as booked
    };
    PrivateBus(const std::filesystem::path& dir, Setup setup);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const QString& Address() const { return address_; }
    // A connection of the test's own to this bus.
    QDBusConnection Connect(const QString& name);
    // The process that owns the engine's name now; 0 when none does.
    pid_t EnginePid();

  private:
    std::filesystem::path dir_;
    QString address_;
    pid_t daemon_ = 0;
    pid_t engine_ = 0;
};

// Qt's event loop for the tests: made once, as the program makes it.
void EnsureEventLoop();

// Runs the event loop until done holds or ms of real time passed; gives done().
bool RunUntil(const std::function<bool()>& done, int ms = 20000);

}  // namespace kw::link::testing
