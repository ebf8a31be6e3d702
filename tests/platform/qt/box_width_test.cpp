// A box stays a box whatever its text: a name typed as one long word wraps instead of stretching
// the box across the screen.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>

#include "platform/qt/qt_platform.h"
#include "qt_app.h"

namespace kw::qt {
namespace {

TEST(QtBoxWidth, ALongWordWrapsInsideTheBox) {
    testing::App();
    QtPlatform platform(".");
    const std::string name(400, 'W');
    int width = 0;
    QString shown;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        width = box->width();
        shown = box->text();
        box->buttons().front()->click();
    });
    platform.MsgBox("Saved " + name, forms::mb::kOkOnly, "Kestrelway");
    EXPECT_LT(width, QApplication::primaryScreen()->availableGeometry().width() * 3 / 4);
    EXPECT_EQ(shown.remove(QChar(0x200B)), QString::fromStdString("Saved " + name))
        << "nothing but places to break is added";
}

}  // namespace
}  // namespace kw::qt
