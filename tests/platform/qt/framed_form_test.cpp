// A form with a frame of the desktop's own: a normal window with a title bar, the form's size
// inside the frame, and no shape cut from it.
#include <gtest/gtest.h>

#include <QTest>

#include "platform/forms/controls.h"
#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"
#include "qt_app.h"

namespace kw::qt {
namespace {

class FramedForm : public forms::Form {
  public:
    explicit FramedForm(forms::Platform& platform) : Form(platform, "frmFramed") {
        SetBorderStyle(forms::border_style::kFixedSingle);
        SetCaption("Copying");
        Move(30, 40, 240, 120);
        btnCancel.SetCaption("Cancel");
        btnCancel.Move(150, 84, 80, 24);
    }
    forms::CommandButton btnCancel{*this, "btnCancel"};
};

TEST(FramedFormTest, AFramedFormIsANormalWindowOfItsSizeWithATitle) {
    testing::App();
    QtPlatform platform(".");
    FramedForm form(platform);
    form.Show();
    FormWindow* window = platform.WindowOf(form);
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    EXPECT_FALSE(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowTitleHint));
    EXPECT_EQ(window->windowTitle(), "Copying");
    EXPECT_EQ(window->size(), QSize(240, 120));
    EXPECT_EQ(window->minimumSize(), window->maximumSize()) << "the user cannot resize it";
    EXPECT_TRUE(window->mask().isEmpty());
    auto* button = window->findChild<QWidget*>("btnCancel");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->geometry(), QRect(150, 84, 80, 24));
}

}  // namespace
}  // namespace kw::qt
