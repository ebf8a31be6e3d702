#pragma once

#include <QApplication>
#include <QtGlobal>

namespace kw::qt::testing {

// One application for the whole test program, on the offscreen platform unless the caller chose
// another (QT_QPA_PLATFORM=xcb under Xvfb shows the window shapes).
inline QApplication& App() {
    static QApplication* app = [] {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        static int argc = 1;
        static char name[] = "qt_tests";
        static char* argv[] = {name, nullptr};
        return new QApplication(argc, argv);
    }();
    return *app;
}

}  // namespace kw::qt::testing
