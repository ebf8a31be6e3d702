#pragma once

#include <QObject>
#include <QTimer>

namespace kw::dialer {
class Application;
}

// For the start-up measurement (KESTRELWAY_EXIT_WHEN_READY): prints "painted" when the main window
// is first painted and "ready" once it is idle with its dial list, then ends the process.
class StartupProbe : public QObject {
  public:
    explicit StartupProbe(kw::dialer::Application& app);
    static bool Wanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void CheckReady();

    kw::dialer::Application& app_;
    QTimer poll_;
    bool painted_ = false;
};
