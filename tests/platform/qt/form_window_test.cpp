// The window of a form: it finds each control's widget a place, routes the controls' keys and
// mouse and its own to the model's gating, and follows the form.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"
#include "qt_app.h"
#include "test_form.h"

namespace kw::qt {
namespace {

using testing::App;
using ::testing::Contains;
using testing::DialForm;
using ::testing::ElementsAre;
using ::testing::Not;

class FormWindowTest : public ::testing::Test {
  protected:
    FormWindowTest() : platform_((App(), std::string("."))), form(platform_) {}

    void SetUp() override {
        form.Show();
        window = platform_.WindowOf(form);
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
        form.formEvents.clear();
    }

    template <class W>
    W* Find(const char* name) {
        auto* widget = window->findChild<W*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    QtPlatform platform_;
    DialForm form;
    FormWindow* window = nullptr;
};

// What the user types goes in at the caret as the KeyPress routine has it: upper case, no digits.
TEST_F(FormWindowTest, TypingGoesInAtTheCaretThroughTheKeyPressRoutine) {
    form.txtUser.SetText("ABC");
    form.journal.clear();
    auto* user = Find<QLineEdit>("txtUser");
    user->setFocus();
    user->setCursorPosition(1);
    QTest::keyClicks(user, "x1");
    EXPECT_EQ(form.txtUser.Text(), "AXBC");
    EXPECT_EQ(user->text(), "AXBC");
    EXPECT_EQ(user->cursorPosition(), 2);
    EXPECT_THAT(form.journal, ElementsAre("txtUser_Change:AXBC"));
}

TEST_F(FormWindowTest, ReturnAndEscapePressTheDefaultAndCancelButtons) {
    form.btnConnect.SetDefault(true);
    form.btnCancel.SetCancel(true);
    auto* user = Find<QLineEdit>("txtUser");
    QTest::keyClick(user, Qt::Key_Return);
    QTest::keyClick(user, Qt::Key_Escape);
    EXPECT_THAT(form.journal, ElementsAre("btnConnect_Click", "btnCancel_Click"));
}

TEST_F(FormWindowTest, SpaceAndEnterPressAPictureButtonUnlessTheFormKeepsEnter) {
    form.imgLight0.SetAccessibleRole(forms::AccessRole::Button);
    auto* picture = Find<QLabel>("imgLight(0)");
    const struct {
        bool keepsEnter;
        Qt::Key key;
        const char* click;
        const char* formKey;
    } cases[] = {{false, Qt::Key_Space, "imgLight_Click", nullptr},
                 {false, Qt::Key_Return, "imgLight_Click", nullptr},
                 {true, Qt::Key_Space, "imgLight_Click", nullptr},
                 {true, Qt::Key_Return, nullptr, "KeyPress:13"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.keepsEnter) + " " + std::to_string(c.key));
        form.journal.clear();
        form.formEvents.clear();
        form.SetKeepsEnter(c.keepsEnter);
        QTest::keyClick(picture, c.key);
        EXPECT_EQ(form.journal,
                  c.click ? std::vector<std::string>{c.click} : std::vector<std::string>{});
        EXPECT_EQ(form.formEvents,
                  c.formKey ? std::vector<std::string>{c.formKey} : std::vector<std::string>{});
    }
}

// The toolkit moves the focus on from a widget it disables; the program's focus stands.
TEST_F(FormWindowTest, TheFocusComesBackWhereTheProgramLeftItOnceEnabledAgain) {
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    auto* user = Find<QLineEdit>("txtUser");
    form.btnConnect.SetFocus();
    form.SetEnabled(false);  // under a modal form
    form.txtUser.SetFocus();
    form.SetEnabled(true);
    EXPECT_TRUE(user->hasFocus());

    form.txtUser.SetEnabled(false);
    form.txtUser.SetEnabled(true);
    EXPECT_TRUE(user->hasFocus());
}

TEST_F(FormWindowTest, TheWindowIsReadWithoutItsDecorationAndByItsName) {
    form.SetAccessibleName("Dialling");
    form.imgLight0.SetAccessibleRole(forms::AccessRole::Decorative);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(window);
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->text(QAccessible::Name), "Dialling");
    std::vector<const QObject*> read;
    for (int i = 0; i < spoken->childCount(); ++i) {
        read.push_back(spoken->child(i)->object());
        EXPECT_EQ(spoken->indexOfChild(spoken->child(i)), i);
    }
    EXPECT_THAT(read, Not(Contains(window->WidgetOf(form.imgLight0))));
    EXPECT_THAT(read, Contains(window->WidgetOf(form.imgLight1)));
}

TEST_F(FormWindowTest, AListViewsMouseUpAndDoubleClickReachTheModel) {
    form.lstvDial.AddItem("Acme");
    form.lstvDial.MouseUp = [this](int button, int, float x, float y) {
        form.Note("lstvDial_MouseUp:" + DialForm::At(button, x, y));
    };
    form.lstvDial.DblClick = [this] { form.Note("lstvDial_DblClick"); };
    QWidget* rows = Find<QAbstractItemView>("lstvDial")->viewport();
    QTest::mouseClick(rows, Qt::RightButton, {}, QPoint(30, 6));
    QTest::mouseDClick(rows, Qt::LeftButton, {}, QPoint(30, 6));
    ASSERT_GE(form.journal.size(), 2U);
    EXPECT_EQ(form.journal.front(), "lstvDial_MouseUp:2@30,6");
    EXPECT_EQ(form.journal.back(), "lstvDial_DblClick");
}

TEST_F(FormWindowTest, AnImageMakesItsClickFromTheMouse) {
    QTest::mouseClick(Find<QLabel>("imgLight(0)"), Qt::LeftButton, {}, QPoint(3, 4));
    EXPECT_THAT(form.journal,
                ElementsAre("imgLight_MouseDown:1@3,4", "imgLight_MouseUp", "imgLight_Click"));
}

TEST_F(FormWindowTest, ADisabledFormRunsNoReaction) {
    form.SetEnabled(false);
    EXPECT_FALSE(window->isEnabled());
    QTest::mouseClick(Find<QPushButton>("btnConnect"), Qt::LeftButton);
    QTest::keyClicks(Find<QLineEdit>("txtUser"), "abc");
    QTest::mouseClick(Find<QLabel>("imgLight(0)"), Qt::LeftButton);
    EXPECT_TRUE(form.journal.empty());
    EXPECT_EQ(form.txtUser.Text(), "");
}

// A form with a frame of the desktop's own: a normal window with a title bar, the form's size
// inside the frame, and no shape cut from it.
TEST_F(FormWindowTest, AFramedFormIsANormalWindowOfItsSizeWithATitle) {
    forms::Form framed(platform_, "frmFramed");
    framed.SetBorderStyle(forms::border_style::kFixedSingle);
    framed.SetCaption("Copying");
    framed.Move(30, 40, 240, 120);
    forms::CommandButton cancel(framed, "btnCancel");
    cancel.Move(150, 84, 80, 24);
    framed.Show();
    FormWindow* shown = platform_.WindowOf(framed);
    ASSERT_NE(shown, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(shown));
    EXPECT_FALSE(shown->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(shown->windowFlags().testFlag(Qt::WindowTitleHint));
    EXPECT_EQ(shown->windowTitle(), "Copying");
    EXPECT_EQ(shown->size(), QSize(240, 120));
    EXPECT_EQ(shown->minimumSize(), shown->maximumSize()) << "the user cannot resize it";
    EXPECT_TRUE(shown->mask().isEmpty());
    auto* button = shown->findChild<QWidget*>("btnCancel");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->geometry(), QRect(150, 84, 80, 24)) << "the desktop's frame is outside";
    framed.Unload();
}

TEST_F(FormWindowTest, MouseOnTheBackgroundGoesToTheForm) {
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(250, 100));
    QMouseEvent move(QEvent::MouseMove, QPointF(260, 104), window->mapToGlobal(QPointF(260, 104)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &move);
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(260, 104));
    EXPECT_THAT(form.formEvents, ElementsAre("down:1@250,100", "move:1@260,104", "up:1"));
}

TEST_F(FormWindowTest, AFrameInsetMovesTheClientAreaButNotTheShape) {
    form.SetFrameInset(3, 21);
    EXPECT_EQ(Find<QPushButton>("btnConnect")->geometry(), QRect(11, 51, 80, 24));
    EXPECT_EQ(Find<QRadioButton>("rbTone")->geometry(), QRect(6, 16, 60, 18));  // in its frame
    form.SetRegion(std::vector<forms::RegionRect>{{0, 0, 50, 50}});
    EXPECT_TRUE(window->mask().xored(QRegion(0, 0, 50, 50)).isEmpty());

    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(253, 121));
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(253, 121));
    EXPECT_THAT(form.formEvents, ElementsAre("down:1@250,100", "up:1"));
}

TEST_F(FormWindowTest, AFormThatRefusesToCloseKeepsItsWindow) {
    form.cancelClose = 1;
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(form.IsLoaded());
    EXPECT_TRUE(window->isVisible());
    EXPECT_THAT(form.formEvents,
                ElementsAre("QueryUnload:" + std::to_string(forms::unload::kFormControlMenu)));
}

TEST_F(FormWindowTest, ClosingTheWindowUnloadsTheFormAndTheWindowGoes) {
    QPointer<FormWindow> gone = window;
    window->close();
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_EQ(platform_.WindowOf(form), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(gone.isNull());
}

}  // namespace
}  // namespace kw::qt
