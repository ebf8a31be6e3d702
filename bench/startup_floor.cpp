// The floor of start-up: a bare frameless window with a shaped mask, started the way Kestrelway
// starts, that says "ready" once the event loop is idle with the window on screen.
#include <QApplication>
#include <QRegion>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>

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
    window.show();
    QTimer::singleShot(0, &app, [] {
        std::printf("ready\n");
        std::fflush(stdout);
        std::_Exit(0);
    });
    return QApplication::exec();
}
