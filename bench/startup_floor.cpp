// The floor of start-up: a bare frameless window with a shaped mask, started the way Kestrelway
// starts, that says "painted" at its first paint and "ready" once the event loop is idle after it.
#include <QApplication>
#include <QEvent>
#include <QRegion>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>

namespace {
class FirstPaint : public QObject {
  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && !seen_) {
            seen_ = true;
            std::printf("painted\n");
            std::fflush(stdout);
            QTimer::singleShot(0, [] {
                std::printf("ready\n");
                std::fflush(stdout);
                std::_Exit(0);
            });
        }
        return false;
    }

  private:
    bool seen_ = false;
};
}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QWidget window(nullptr, Qt::FramelessWindowHint | Qt::Window);
    window.setGeometry(445, 141, 134, 345);
    // A shape of the same kind as the main window's: a body with rounded corners cut away.
    QRegion shape(3, 22, 128, 320);
    for (int i = 0; i < 6; ++i) {
        shape -= QRegion(3, 22 + i, 6 - i, 1);
        shape -= QRegion(125 + i, 22 + i, 6 - i, 1);
    }
    window.setMask(shape);
    FirstPaint probe;
    window.installEventFilter(&probe);
    window.show();
    return QApplication::exec();
}
