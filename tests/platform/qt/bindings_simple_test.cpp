// The bindings of the kinds that show one value and take at most a click, each alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

#include "binding_fixture.h"

namespace kw::qt {
namespace {

using ::testing::ElementsAre;
using SimpleBindingTest = testing::BindingTest;

TEST_F(SimpleBindingTest, ALabelShowsItsCaptionWithoutAccessKeyMarks) {
    auto* label = Bind<QLabel>(form.lblStatus);
    const struct {
        const char* caption;
        const char* shown;
    } cases[] = {{"Dialing && waiting", "Dialing & waiting"}, {"&Status", "Status"}};
    for (const auto& c : cases) {
        form.lblStatus.SetCaption(c.caption);
        EXPECT_EQ(label->text(), c.shown) << c.caption;
    }
}

TEST_F(SimpleBindingTest, EachCaptionedKindShowsItsCaptionAndIsNamedByIt) {
    auto* button = Bind<QPushButton>(form.btnConnect);
    auto* check = Bind<QCheckBox>(form.chkSave);
    auto* option = Bind<QRadioButton>(form.rbTone);
    auto* frame = Bind<QGroupBox>(form.fraDial);
    const struct {
        const char* kind;
        std::function<void(std::string)> setCaption;
        QWidget* widget;
        std::function<QString()> shown;
    } cases[] = {
        {"button", [this](std::string c) { form.btnConnect.SetCaption(c); }, button,
         [button] { return button->text(); }},
        {"check box", [this](std::string c) { form.chkSave.SetCaption(c); }, check,
         [check] { return check->text(); }},
        {"option", [this](std::string c) { form.rbTone.SetCaption(c); }, option,
         [option] { return option->text(); }},
        {"frame", [this](std::string c) { form.fraDial.SetCaption(c); }, frame,
         [frame] { return frame->title(); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        c.setCaption("&Dial");
        EXPECT_EQ(c.shown(), "&Dial");  // the widget underlines the access key itself
        EXPECT_EQ(c.widget->accessibleName(), "Dial");
    }
}

TEST_F(SimpleBindingTest, CommonPropertiesFollowTheModel) {
    auto* button = Bind<QPushButton>(form.btnConnect);
    const struct {
        const char* property;
        std::function<void()> change;
        std::function<bool()> shown;
    } cases[] = {
        {"Enabled", [this] { form.btnConnect.SetEnabled(false); },
         [button] { return !button->isEnabled(); }},
        {"Visible", [this] { form.btnConnect.SetVisible(false); },
         [button] { return !button->isVisible(); }},
        {"Geometry", [this] { form.btnConnect.Move(12, 40, 90, 26); },
         [button] { return button->geometry() == QRect(12, 40, 90, 26); }},
        {"FontBold", [this] { form.btnConnect.SetFontBold(true); },
         [button] { return button->font().bold(); }},
        {"ToolTipText", [this] { form.btnConnect.SetToolTipText("Dial now"); },
         [button] { return button->toolTip() == "Dial now"; }},
    };
    for (const auto& c : cases) {
        c.change();
        EXPECT_TRUE(c.shown()) << c.property;
    }
}

// A reader never hears the control's own name: the accessible name, else the tool tip, else
// nothing.
TEST_F(SimpleBindingTest, AnImageIsNamedByItsAccessibleNameElseItsToolTipElseNothing) {
    auto* light = Bind<QLabel>(form.imgLight1);
    const struct {
        const char* accessibleName;
        const char* toolTip;
        const char* spoken;
    } cases[] = {{"", "Dialing: busy", "Dialing: busy"},
                 {"Dialing", "Dialing: busy", "Dialing"},
                 {"", "", ""}};
    for (const auto& c : cases) {
        form.imgLight1.SetAccessibleName(c.accessibleName);
        form.imgLight1.SetToolTipText(c.toolTip);
        EXPECT_EQ(light->accessibleName(), c.spoken) << c.accessibleName << "/" << c.toolTip;
    }
}

TEST_F(SimpleBindingTest, APictureButtonIsAPushButtonThatPressesAndTakesFocus) {
    auto* picture = Bind<QLabel>(form.imgLight0);
    form.imgLight0.SetAccessibleRole(forms::AccessRole::Button);
    form.imgLight0.SetAccessibleName("Connect");
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(picture);
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->role(), QAccessible::Button);
    EXPECT_EQ(spoken->text(QAccessible::Name), "Connect");
    EXPECT_EQ(picture->focusPolicy(), Qt::StrongFocus);
    QAccessibleActionInterface* actions = spoken->actionInterface();
    ASSERT_NE(actions, nullptr);
    ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(form.journal.empty()) << "pressed before the reader had its answer";
    QTest::qWait(20);
    EXPECT_THAT(form.journal, ElementsAre("imgLight_Click"));
}

TEST_F(SimpleBindingTest, AnImagesPictureIsSeeThroughInTheFormsKeyColour) {
    QImage picture(2, 1, QImage::Format_RGB32);
    picture.setPixel(0, 0, qRgb(0, 255, 0));
    picture.setPixel(1, 0, qRgb(200, 0, 0));
    ASSERT_TRUE(picture.save(assets.filePath("light.png")));
    form.SetForeColor(0x00FF00);  // pure green, as 0x00BBGGRR
    auto* light = Bind<QLabel>(form.imgLight0);
    form.imgLight0.SetPicture("light.png");
    const QImage mask = light->pixmap().mask().toImage();
    ASSERT_EQ(mask.size(), QSize(2, 1));
    EXPECT_NE(mask.pixelIndex(0, 0), mask.pixelIndex(1, 0));
    EXPECT_EQ(light->pixmap().toImage().pixelColor(1, 0), QColor(200, 0, 0));
}

TEST_F(SimpleBindingTest, ClickingAButtonRunsItsClick) {
    QTest::mouseClick(Bind<QPushButton>(form.btnConnect), Qt::LeftButton);
    EXPECT_THAT(form.journal, ElementsAre("btnConnect_Click"));
}

TEST_F(SimpleBindingTest, AClickWhileTheModelIsBeingShownIsNotInput) {
    auto* button = Bind<QPushButton>(form.btnConnect);
    {
        ShowingModel showing(*context);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    EXPECT_TRUE(form.journal.empty());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_THAT(form.journal, ElementsAre("btnConnect_Click"));
}

TEST_F(SimpleBindingTest, AClickAfterTheFormHasGoneIsNotInput) {
    auto* button = Bind<QPushButton>(form.btnConnect);
    context->Detach();
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(form.journal.empty());
}

TEST_F(SimpleBindingTest, ACheckBoxShowsEachValue) {
    auto* box = Bind<QCheckBox>(form.chkSave);
    const struct {
        int value;
        Qt::CheckState shown;
    } cases[] = {{forms::check::kChecked, Qt::Checked},
                 {forms::check::kGrayed, Qt::PartiallyChecked},
                 {forms::check::kUnchecked, Qt::Unchecked}};
    for (const auto& c : cases) {
        form.chkSave.SetValue(c.value);
        EXPECT_EQ(box->checkState(), c.shown) << c.value;
    }
}

TEST_F(SimpleBindingTest, ClickingACheckBoxTicksTheModel) {
    QTest::mouseClick(Bind<QCheckBox>(form.chkSave), Qt::LeftButton);
    EXPECT_EQ(form.chkSave.Value(), forms::check::kChecked);
    EXPECT_THAT(form.journal, ElementsAre("chkSave_Click:1"));
}

TEST_F(SimpleBindingTest, AValueSetInCodeFiresItsReactionOnceWithNoEchoFromTheWidget) {
    Bind<QCheckBox>(form.chkSave);
    Bind<QRadioButton>(form.rbTone);
    form.chkSave.SetValue(forms::check::kChecked);
    form.rbTone.SetValue(true);
    EXPECT_THAT(form.journal, ElementsAre("chkSave_Click:1", "rbTone_Click"));
}

TEST_F(SimpleBindingTest, ChoosingAnOptionInCodeClearsTheOthers) {
    auto* tone = Bind<QRadioButton>(form.rbTone);
    auto* pulse = Bind<QRadioButton>(form.rbPulse);
    form.rbTone.SetValue(true);
    form.rbPulse.SetValue(true);
    EXPECT_FALSE(tone->isChecked());
    EXPECT_TRUE(pulse->isChecked());
}

TEST_F(SimpleBindingTest, ClickingAnOptionChoosesItAndClearsTheOthers) {
    auto* tone = Bind<QRadioButton>(form.rbTone);
    auto* pulse = Bind<QRadioButton>(form.rbPulse);
    QTest::mouseClick(pulse, Qt::LeftButton);
    QTest::mouseClick(tone, Qt::LeftButton);
    EXPECT_TRUE(form.rbTone.Value());
    EXPECT_FALSE(form.rbPulse.Value());
    EXPECT_FALSE(pulse->isChecked());
    EXPECT_THAT(form.journal, ElementsAre("rbPulse_Click", "rbTone_Click"));
}

TEST_F(SimpleBindingTest, AClickTheModelRefusesIsUndoneOnTheWidget) {
    auto* tone = Bind<QRadioButton>(form.rbTone);
    form.fraDial.SetEnabled(false);  // its widget is elsewhere: only the model says no
    QTest::mouseClick(tone, Qt::LeftButton);
    EXPECT_TRUE(form.journal.empty());
    EXPECT_FALSE(form.rbTone.Value());
    EXPECT_FALSE(tone->isChecked());
}

TEST_F(SimpleBindingTest, AProgressBarShowsItsValueInItsRange) {
    auto* bar = Bind<QProgressBar>(form.barTransfer);
    form.barTransfer.SetMax(200);
    form.barTransfer.SetValue(40);
    EXPECT_EQ(bar->maximum(), 200);
    EXPECT_EQ(bar->value(), 40);
}

TEST_F(SimpleBindingTest, ATimerHasNoWidget) {
    EXPECT_EQ(BindControl(form.tmrBlink, context, &parent), nullptr);
}

}  // namespace
}  // namespace kw::qt
