// The bindings of the kinds that hold a text, each alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>

#include "binding_fixture.h"

namespace kw::qt {
namespace {

using ::testing::ElementsAre;
using TextBindingTest = testing::BindingTest;

TEST_F(TextBindingTest, ATextBoxShowsTheModelsText) {
    auto* user = Bind<QLineEdit>(form.txtUser);
    form.txtUser.SetText("traveller");
    EXPECT_EQ(user->text(), "traveller");
    EXPECT_THAT(form.journal, ElementsAre("txtUser_Change:traveller"));
}

TEST_F(TextBindingTest, TextBoxAttributesReachTheLineEdit) {
    auto* user = Bind<QLineEdit>(form.txtUser);
    const struct {
        const char* attribute;
        std::function<void()> change;
        std::function<bool()> shown;
    } cases[] = {
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

TEST_F(TextBindingTest, TheLineEditsCaretAndSelectionAreReadBack) {
    auto* user = Bind<QLineEdit>(form.txtUser);
    form.txtUser.SetText("traveller");
    user->setSelection(1, 3);
    BindingOf(form.txtUser).PullSelection();
    EXPECT_EQ(form.txtUser.SelStart(), 1);
    EXPECT_EQ(form.txtUser.SelLength(), 3);
    user->setCursorPosition(5);
    BindingOf(form.txtUser).PullSelection();
    EXPECT_EQ(form.txtUser.SelStart(), 5);
    EXPECT_EQ(form.txtUser.SelLength(), 0);
}

TEST_F(TextBindingTest, AMultiLineTextBoxShowsPlainLineBreaks) {
    form.txtUser.SetMultiLine(true);
    auto* edit = Bind<QTextEdit>(form.txtUser);
    form.txtUser.SetText("one\r\ntwo");
    EXPECT_EQ(edit->toPlainText(), "one\ntwo");
}

TEST_F(TextBindingTest, AMultiLineEditComesBackWithTheToolkitsLineBreaks) {
    form.txtUser.SetMultiLine(true);
    auto* edit = Bind<QTextEdit>(form.txtUser);
    edit->setPlainText("one\ntwo");  // as a paste would
    EXPECT_EQ(form.txtUser.Text(), "one\r\ntwo");
}

TEST_F(TextBindingTest, ARichTextBoxShowsWhatIsAppended) {
    auto* rx = Bind<QPlainTextEdit>(form.rtfRx);
    form.rtfRx.SetSelStart(0);
    form.rtfRx.SetSelText("Modem found\r\n");
    form.rtfRx.SetSelStart(static_cast<int>(form.rtfRx.Text().size()));
    form.rtfRx.SetSelText("Dialing");
    EXPECT_EQ(rx->toPlainText(), "Modem found\nDialing");
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

TEST_F(TextBindingTest, ARichTextBoxsCaretFollowsTheModel) {
    auto* rx = Bind<QPlainTextEdit>(form.rtfRx);
    form.rtfRx.SetText("Modem found");
    form.rtfRx.SetSelStart(6);
    EXPECT_EQ(rx->textCursor().position(), 6);
    form.rtfRx.SetSelStart(11);
    EXPECT_EQ(rx->textCursor().position(), 11);
}

}  // namespace
}  // namespace kw::qt
