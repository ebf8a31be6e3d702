// The platform's open-file dialog: with the create prompt a name that does not exist yet may be
// typed, and the user is asked before it is taken.
#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>

#include "platform/qt/qt_platform.h"
#include "qt_app.h"

namespace kw::qt {
namespace {

// Runs each step in turn on the modal window that is up when its turn comes.
void WhenModal(std::vector<std::function<void(QWidget&)>> steps) {
    auto* timer = new QTimer(qApp);
    auto remaining = std::make_shared<decltype(steps)>(std::move(steps));
    QObject::connect(timer, &QTimer::timeout, [timer, remaining] {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr || !modal->isVisible()) {
            return;
        }
        auto step = remaining->front();
        remaining->erase(remaining->begin());
        if (remaining->empty()) {
            timer->deleteLater();
            timer->stop();
        }
        step(*modal);
    });
    timer->start(20);
}

void TypeName(QWidget& modal, const QString& name) {
    auto* dialog = qobject_cast<QFileDialog*>(&modal);
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
    dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
}

void Answer(QWidget& modal, QMessageBox::StandardButton answer) {
    auto* box = qobject_cast<QMessageBox*>(&modal);
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->text().contains("does not exist"));
    box->button(answer)->click();
}

class FileDialogTest : public ::testing::Test {
  protected:
    FileDialogTest() : platform_((testing::App(), std::string("."))) {}

    QTemporaryDir dir_;
    QtPlatform platform_;
};

TEST_F(FileDialogTest, ANewNameIsTakenOnceTheUserAgreesToCreateIt) {
    WhenModal({[](QWidget& m) { TypeName(m, "calls.log"); },
               [](QWidget& m) { Answer(m, QMessageBox::No); },
               [](QWidget& m) { TypeName(m, "trips.log"); },
               [](QWidget& m) { Answer(m, QMessageBox::Yes); }});
    forms::FileDialogRequest request;
    request.initialDir = dir_.path().toStdString();
    request.flags = forms::ofn::kCreatePrompt;
    const auto chosen = platform_.OpenFileDialog(request);
    ASSERT_TRUE(chosen.has_value());
    EXPECT_EQ(*chosen, dir_.filePath("trips.log").toStdString());
    EXPECT_FALSE(QFileInfo::exists(dir_.filePath("trips.log"))) << "the dialog creates nothing";
}

}  // namespace
}  // namespace kw::qt
