// The renderer: model changes reach the widgets, user input on the widgets reaches the model's
// reactions through its gating, and the window follows the form.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"
#include "qt_app.h"
#include "test_form.h"

namespace kw::qt {
namespace {

using testing::App;
using testing::DialForm;
using ::testing::ElementsAre;

class RenderTest : public ::testing::Test {
  protected:
    RenderTest() : platform_((App(), std::string("."))), form(platform_) {}

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

TEST_F(RenderTest, ModelChangesReachTheirWidgets) {
    form.lblStatus.SetCaption("Dialing && waiting");
    EXPECT_EQ(Find<QLabel>("lblStatus")->text(), "Dialing & waiting");

    auto* connect = Find<QPushButton>("btnConnect");
    form.btnConnect.SetEnabled(false);
    EXPECT_FALSE(connect->isEnabled());
    form.btnConnect.SetVisible(false);
    EXPECT_FALSE(connect->isVisible());
    form.btnConnect.Move(12, 40, 90, 26);
    EXPECT_EQ(connect->geometry(), QRect(12, 40, 90, 26));

    form.txtUser.SetText("traveller");
    form.txtUser.SetPasswordChar('*');
    EXPECT_EQ(Find<QLineEdit>("txtUser")->text(), "traveller");
    EXPECT_EQ(Find<QLineEdit>("txtUser")->echoMode(), QLineEdit::Password);

    for (const char* place : {"Home", "Office", "Hotel"}) form.cmboFrom.AddItem(place);
    auto* combo = Find<QComboBox>("cmboFrom");
    form.cmboFrom.SetListIndex(1);
    form.cmboFrom.RemoveItem(0);
    ASSERT_EQ(combo->count(), 2);
    EXPECT_EQ(combo->itemText(1), "Hotel");
    EXPECT_EQ(combo->currentIndex(), 0);  // the selection stays on "Office"

    form.lbChoices.AddItem("one");
    form.lbChoices.AddItem("two");
    form.lbChoices.SetListIndex(1);
    EXPECT_EQ(Find<QListWidget>("lbChoices")->currentRow(), 1);

    form.chkSave.SetValue(forms::check::kChecked);
    EXPECT_EQ(Find<QCheckBox>("chkSave")->checkState(), Qt::Checked);
    form.rbTone.SetValue(true);
    form.rbPulse.SetValue(true);
    EXPECT_FALSE(Find<QRadioButton>("rbTone")->isChecked());
    EXPECT_TRUE(Find<QRadioButton>("rbPulse")->isChecked());

    form.barTransfer.SetValue(40);
    EXPECT_EQ(Find<QProgressBar>("barTransfer")->value(), 40);
    form.rtfRx.SetSelStart(0);
    form.rtfRx.SetSelText("Modem found\r\n");
    EXPECT_EQ(Find<QPlainTextEdit>("rtfRx")->toPlainText(), "Modem found\n");

    // Code setting a property fired its reaction once, and nothing came back from the widgets.
    EXPECT_THAT(form.journal, ElementsAre("txtUser_Change:traveller", "cmboFrom_Click:Office",
                                          "lbChoices_Click:1", "chkSave_Click:1", "rbTone_Click",
                                          "rbPulse_Click"));
}

TEST_F(RenderTest, WidgetsCarryNamesContainersAndAccessibleNames) {
    auto* light = Find<QLabel>("imgLight(1)");
    EXPECT_EQ(light->toolTip(), "Dialing");
    form.imgLight1.SetToolTipText("Dialing: busy");
    EXPECT_EQ(light->accessibleName(), "Dialing: busy");
    EXPECT_EQ(Find<QRadioButton>("rbTone")->parentWidget(), Find<QGroupBox>("fraDial"));
    EXPECT_EQ(Find<QPushButton>("btnConnect")->accessibleName(), "Connect");
    EXPECT_EQ(window->findChild<QWidget*>("tmrBlink"), nullptr);

    form.lstvDial.AddItem("Acme");
    form.lstvDial.SetSubItem(1, 1, "Boston");
    form.lstvDial.SetChecked(1, true);
    auto* tree = Find<QTreeWidget>("lstvDial");
    ASSERT_EQ(tree->topLevelItemCount(), 1);
    EXPECT_EQ(tree->headerItem()->text(1), "POP");
    EXPECT_EQ(tree->topLevelItem(0)->text(1), "Boston");
    EXPECT_EQ(tree->topLevelItem(0)->checkState(0), Qt::Checked);
}

TEST_F(RenderTest, UserInputRunsTheReactions) {
    QTest::mouseClick(Find<QPushButton>("btnConnect"), Qt::LeftButton);
    EXPECT_THAT(form.journal, ElementsAre("btnConnect_Click"));
    form.journal.clear();

    // Each typed character goes through the KeyPress routine, which may change or drop it.
    auto* user = Find<QLineEdit>("txtUser");
    user->setFocus();
    QTest::keyClicks(user, "ab1c");
    EXPECT_EQ(form.txtUser.Text(), "ABC");
    EXPECT_EQ(user->text(), "ABC");
    EXPECT_THAT(form.journal,
                ElementsAre("txtUser_Change:A", "txtUser_Change:AB", "txtUser_Change:ABC"));
    form.journal.clear();
    // Typing goes in at the caret the user put there; edits the widget makes itself come back
    // as the whole text.
    user->setCursorPosition(1);
    QTest::keyClick(user, Qt::Key_X);
    QTest::keyClick(user, Qt::Key_Delete);
    EXPECT_EQ(form.txtUser.Text(), "AXC");
    EXPECT_THAT(form.journal, ElementsAre("txtUser_Change:AXBC", "txtUser_Change:AXC"));
    form.journal.clear();

    form.cmboFrom.AddItem("Home");
    form.cmboFrom.AddItem("Office");
    auto* combo = Find<QComboBox>("cmboFrom");
    emit combo->activated(1);  // what the popup sends when the user picks "Office"
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Click:Office"));
    EXPECT_EQ(form.cmboFrom.ListIndex(), 1);
    form.journal.clear();
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Up);
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Click:Home"));
    form.journal.clear();

    QTest::mouseClick(Find<QCheckBox>("chkSave"), Qt::LeftButton);
    EXPECT_EQ(form.chkSave.Value(), forms::check::kChecked);
    QTest::mouseClick(Find<QRadioButton>("rbPulse"), Qt::LeftButton);
    QTest::mouseClick(Find<QRadioButton>("rbTone"), Qt::LeftButton);
    EXPECT_TRUE(form.rbTone.Value());
    EXPECT_FALSE(form.rbPulse.Value());
    EXPECT_THAT(form.journal, ElementsAre("chkSave_Click:1", "rbPulse_Click", "rbTone_Click"));
    form.journal.clear();

    QTest::mouseClick(Find<QLabel>("imgLight(0)"), Qt::LeftButton, {}, QPoint(3, 4));
    EXPECT_THAT(form.journal,
                ElementsAre("imgLight_MouseDown:1@3,4", "imgLight_MouseUp", "imgLight_Click"));
    form.journal.clear();

    form.lstvDial.AddItem("Acme");
    form.lstvDial.AddItem("Globex");
    Find<QTreeWidget>("lstvDial")->topLevelItem(1)->setCheckState(0, Qt::Checked);
    EXPECT_TRUE(form.lstvDial.Item(2).checked);
    EXPECT_THAT(form.journal, ElementsAre("lstvDial_ItemCheck:2=on"));
}

TEST_F(RenderTest, ReturnAndEscapePressTheDefaultAndCancelButtons) {
    form.btnConnect.SetDefault(true);
    form.btnCancel.SetCancel(true);
    auto* user = Find<QLineEdit>("txtUser");
    QTest::keyClick(user, Qt::Key_Return);
    QTest::keyClick(user, Qt::Key_Escape);
    EXPECT_THAT(form.journal, ElementsAre("btnConnect_Click", "btnCancel_Click"));
}

TEST_F(RenderTest, ADisabledFormOrControlRunsNoReaction) {
    form.SetEnabled(false);
    EXPECT_FALSE(window->isEnabled());
    QTest::mouseClick(Find<QPushButton>("btnConnect"), Qt::LeftButton);
    QTest::keyClicks(Find<QLineEdit>("txtUser"), "abc");
    QTest::mouseClick(Find<QCheckBox>("chkSave"), Qt::LeftButton);
    QTest::mouseClick(Find<QLabel>("imgLight(0)"), Qt::LeftButton);
    EXPECT_TRUE(form.journal.empty());
    EXPECT_EQ(form.txtUser.Text(), "");

    // The model gates as well: a control in a disabled frame takes no click even if its widget
    // were pressed.
    form.SetEnabled(true);
    form.fraDial.SetEnabled(false);
    auto* tone = Find<QRadioButton>("rbTone");
    emit tone->clicked();
    EXPECT_TRUE(form.journal.empty());
    EXPECT_FALSE(tone->isChecked());  // the widget shows the model again
}

TEST_F(RenderTest, TheWindowFollowsTheForm) {
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window->geometry(), QRect(40, 30, 320, 260));
    form.Move(60, 70, 300, 200);
    EXPECT_EQ(window->geometry(), QRect(60, 70, 300, 200));
    form.SetCaption("Kestrelway");
    EXPECT_EQ(window->windowTitle(), "Kestrelway");

    // The shape: banded rectangles as the region gives them, and anything else the slow way.
    form.SetRegion(
        std::vector<forms::RegionRect>{{0, 0, 100, 10}, {0, 10, 40, 30}, {60, 10, 100, 30}});
    QRegion expected = QRegion(0, 0, 100, 10) + QRegion(0, 10, 40, 20) + QRegion(60, 10, 40, 20);
    EXPECT_TRUE(window->mask().xored(expected).isEmpty());
    form.SetRegion(std::vector<forms::RegionRect>{{10, 10, 50, 50}, {0, 0, 20, 20}});  // overlap
    EXPECT_TRUE(window->mask().xored(QRegion(10, 10, 40, 40) + QRegion(0, 0, 20, 20)).isEmpty());
    form.SetRegion(std::nullopt);
    EXPECT_TRUE(window->mask().isEmpty());

    form.Hide();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(RenderTest, MouseOnTheBackgroundGoesToTheForm) {
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(250, 100));
    QMouseEvent move(QEvent::MouseMove, QPointF(260, 104), window->mapToGlobal(QPointF(260, 104)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &move);
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(260, 104));
    EXPECT_THAT(form.formEvents, ElementsAre("down:1@250,100", "move:1@260,104", "up:1"));
}

TEST_F(RenderTest, AFrameInsetMovesTheClientAreaButNotTheShape) {
    form.SetFrameInset(3, 21);
    EXPECT_EQ(Find<QPushButton>("btnConnect")->geometry(), QRect(11, 51, 80, 24));
    EXPECT_EQ(Find<QRadioButton>("rbTone")->geometry(), QRect(6, 16, 60, 18));  // in its frame
    form.SetRegion(std::vector<forms::RegionRect>{{0, 0, 50, 50}});
    EXPECT_TRUE(window->mask().xored(QRegion(0, 0, 50, 50)).isEmpty());

    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(253, 121));
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(253, 121));
    EXPECT_THAT(form.formEvents, ElementsAre("down:1@250,100", "up:1"));
}

TEST_F(RenderTest, ClosingTheWindowAsksTheForm) {
    form.cancelClose = 1;
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(form.IsLoaded());
    EXPECT_TRUE(window->isVisible());

    form.cancelClose = 0;
    QPointer<FormWindow> gone = window;
    window->close();
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_EQ(platform_.WindowOf(form), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(gone.isNull());
    EXPECT_THAT(form.formEvents,
                ElementsAre("QueryUnload:" + std::to_string(forms::unload::kFormControlMenu),
                            "QueryUnload:" + std::to_string(forms::unload::kFormControlMenu)));
}

TEST_F(RenderTest, WindowStateGoesBothWays) {
    form.SetWindowState(forms::window_state::kMinimized);
    EXPECT_TRUE(window->windowState().testFlag(Qt::WindowMinimized));
    form.formEvents.clear();
    window->setWindowState(Qt::WindowNoState);  // as the window manager restores it
    EXPECT_EQ(form.WindowState(), forms::window_state::kNormal);
    EXPECT_THAT(form.formEvents, ElementsAre("Resize"));
}

}  // namespace
}  // namespace kw::qt
