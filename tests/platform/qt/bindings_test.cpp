// The bindings of each control kind alone: what the model sets reaches the widget, and what the
// user does there comes back through the model's gating as the reaction's input.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

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
#include <QTextDocument>

#include "binding_fixture.h"

namespace kw::qt {
namespace {

using ::testing::ElementsAre;
using SimpleBindingTest = testing::BindingTest;
using TextBindingTest = testing::BindingTest;

TEST_F(SimpleBindingTest, ALabelShowsItsCaptionWithoutAccessKeyMarks) {
    auto* label = Bind<QLabel>(form.lblStatus);
    form.lblStatus.SetCaption("Dialing && waiting");
    EXPECT_EQ(label->text(), "Dialing & waiting");
    form.lblStatus.SetCaption("&Status");
    EXPECT_EQ(label->text(), "Status");
}

TEST_F(SimpleBindingTest, EachCaptionedKindShowsItsCaptionAndIsNamedByIt) {
    const struct {
        QWidget* widget;
        std::function<void()> setCaption;
        const char* shown;  // the widget's property that shows it
    } cases[] = {
        {Bind<QPushButton>(form.btnConnect), [this] { form.btnConnect.SetCaption("&Dial"); },
         "text"},
        {Bind<QCheckBox>(form.chkSave), [this] { form.chkSave.SetCaption("&Dial"); }, "text"},
        {Bind<QRadioButton>(form.rbTone), [this] { form.rbTone.SetCaption("&Dial"); }, "text"},
        {Bind<QGroupBox>(form.fraDial), [this] { form.fraDial.SetCaption("&Dial"); }, "title"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.widget->metaObject()->className());
        c.setCaption();
        EXPECT_EQ(c.widget->property(c.shown).toString(), "&Dial");  // the widget underlines it
        EXPECT_EQ(c.widget->accessibleName(), "Dial");
    }
}

TEST_F(SimpleBindingTest, PropertiesFollowTheModel) {
    auto* button = Bind<QPushButton>(form.btnConnect);
    auto* bar = Bind<QProgressBar>(form.barTransfer);
    auto* box = Bind<QCheckBox>(form.chkSave);
    auto* list = Bind<QListWidget>(form.lbChoices);
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
        {"progress Max and Value",
         [this] {
             form.barTransfer.SetMax(200);
             form.barTransfer.SetValue(40);
         },
         [bar] { return bar->maximum() == 200 && bar->value() == 40; }},
        {"check box Value", [this] { form.chkSave.SetValue(forms::check::kChecked); },
         [box] { return box->checkState() == Qt::Checked; }},
        {"list box items and ListIndex",
         [this] {
             form.lbChoices.AddItem("one");
             form.lbChoices.AddItem("two");
             form.lbChoices.SetListIndex(1);
         },
         [list] {
             return list->count() == 2 && list->item(1)->text() == "two" && list->currentRow() == 1;
         }},
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
    form.imgLight1.SetToolTipText("Dialing: busy");
    EXPECT_EQ(light->accessibleName(), "Dialing: busy");
    form.imgLight1.SetAccessibleName("Dialing");
    EXPECT_EQ(light->accessibleName(), "Dialing");
    form.imgLight1.SetAccessibleName("");
    form.imgLight1.SetToolTipText("");
    EXPECT_EQ(light->accessibleName(), "");
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

TEST_F(TextBindingTest, TheTextAndAttributesReachTheLineEdit) {
    auto* user = Bind<QLineEdit>(form.txtUser);
    const struct {
        const char* attribute;
        std::function<void()> change;
        std::function<bool()> shown;
    } cases[] = {
        {"Text", [this] { form.txtUser.SetText("traveller"); },
         [user] { return user->text() == "traveller"; }},
        {"PasswordChar", [this] { form.txtUser.SetPasswordChar('*'); },
         [user] { return user->echoMode() == QLineEdit::Password; }},
        {"MaxLength", [this] { form.txtUser.SetMaxLength(8); },
         [user] { return user->maxLength() == 8; }},
        {"Locked", [this] { form.txtUser.SetLocked(true); }, [user] { return user->isReadOnly(); }},
        {"Alignment", [this] { form.txtUser.SetAlignment(forms::align::kRight); },
         [user] { return (user->alignment() & Qt::AlignRight) != 0; }},
    };
    for (const auto& c : cases) {
        c.change();
        EXPECT_TRUE(c.shown()) << c.attribute;
    }
}

TEST_F(TextBindingTest, AnEditTheWidgetMakesComesBackAsTheWholeText) {
    auto* user = Bind<QLineEdit>(form.txtUser);
    form.txtUser.SetText("AXBC");
    form.journal.clear();
    user->setCursorPosition(2);
    QTest::keyClick(user, Qt::Key_Delete);
    EXPECT_EQ(form.txtUser.Text(), "AXC");
    EXPECT_THAT(form.journal, ElementsAre("txtUser_Change:AXC"));
}

TEST_F(TextBindingTest, TheModelsSelectionReachesTheLineEdit) {
    auto* user = Bind<QLineEdit>(form.txtUser);
    form.txtUser.SetText("traveller");
    form.txtUser.SetSelStart(2);
    form.txtUser.SetSelLength(3);
    EXPECT_EQ(user->selectionStart(), 2);
    EXPECT_EQ(user->selectedText(), "ave");
    form.txtUser.SetSelLength(0);
    EXPECT_FALSE(user->hasSelectedText());
    EXPECT_EQ(user->cursorPosition(), 2);
}

// A line added at the end changes only the end of the view's document: the text before it is never
// set again, which would cost each line in proportion to all the text so far.
TEST_F(TextBindingTest, ARichTextBoxExtendsItsViewWithoutResettingIt) {
    auto* rx = Bind<QPlainTextEdit>(form.rtfRx);
    form.rtfRx.SetText(std::string(100000, 'x') + "\r\n");
    std::vector<std::pair<int, int>> changes;  // position, characters removed
    QObject::connect(
        rx->document(), &QTextDocument::contentsChange,
        [&](int position, int removed, int) { changes.emplace_back(position, removed); });
    for (int line = 0; line < 3; ++line) {
        const int end = rx->document()->characterCount() - 1;
        form.rtfRx.SetSelStart(static_cast<int>(form.rtfRx.Text().size()));
        form.rtfRx.SetSelText("status " + std::to_string(line) + "\r\n");
        ASSERT_FALSE(changes.empty());
        EXPECT_EQ(changes.back(), std::make_pair(end, 0)) << "line " << line;
    }
    EXPECT_TRUE(rx->toPlainText().endsWith("status 1\nstatus 2\n"));
    EXPECT_EQ(rx->textCursor().position(), rx->document()->characterCount() - 1);
    form.rtfRx.SetText("");
    EXPECT_EQ(rx->toPlainText(), "");
}

class ListBindingTest : public testing::BindingTest {
  protected:
    void AddPlaces() {
        for (const char* place : {"Home", "Office", "Hotel"}) {
            form.cmboFrom.AddItem(place);
        }
    }
};

TEST_F(ListBindingTest, RemovingAComboItemKeepsTheChoiceOnTheSameItem) {
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    AddPlaces();
    form.cmboFrom.SetListIndex(1);
    form.cmboFrom.RemoveItem(0);
    ASSERT_EQ(combo->count(), 2);
    EXPECT_EQ(combo->itemText(1), "Hotel");
    EXPECT_EQ(combo->currentIndex(), 0);
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Click:Office"));
}

TEST_F(ListBindingTest, PickingAComboItemRunsClick) {
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    AddPlaces();
    emit combo->activated(1);  // what the popup sends when the user picks "Office"
    EXPECT_EQ(form.cmboFrom.ListIndex(), 1);
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Click:Office"));
}

TEST_F(ListBindingTest, ADropdownListShowsItsTextOnlyWhileNothingIsChosen) {
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    AddPlaces();
    form.cmboFrom.SetText("(choose a place)");
    EXPECT_EQ(combo->currentText(), "");
    EXPECT_EQ(combo->placeholderText(), "(choose a place)");
}

TEST_F(ListBindingTest, AnEditableCombosTextSetInCodeFiresChangeOnce) {
    form.cmboFrom.SetStyle(forms::combo::kDropdownCombo);
    form.cmboFrom.Change = [this] { form.Note("cmboFrom_Change:" + form.cmboFrom.Text()); };
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    form.cmboFrom.SetText("Airport");
    EXPECT_EQ(combo->currentText(), "Airport");
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Change:Airport"));
}

TEST_F(ListBindingTest, ChoosingAListBoxRowRunsClick) {
    auto* list = Bind<QListWidget>(form.lbChoices);
    form.lbChoices.AddItem("one");
    form.lbChoices.AddItem("two");
    list->setCurrentRow(1);  // as a click on the row does
    EXPECT_EQ(form.lbChoices.ListIndex(), 1);
    EXPECT_THAT(form.journal, ElementsAre("lbChoices_Click:1"));
}

TEST_F(ListBindingTest, DoubleClickingAListBoxRowRunsDblClick) {
    form.lbChoices.DblClick = [this] { form.Note("lbChoices_DblClick"); };
    auto* list = Bind<QListWidget>(form.lbChoices);
    form.lbChoices.AddItem("one");
    emit list->itemDoubleClicked(list->item(0));
    EXPECT_THAT(form.journal, ElementsAre("lbChoices_DblClick"));
}

}  // namespace
}  // namespace kw::qt
