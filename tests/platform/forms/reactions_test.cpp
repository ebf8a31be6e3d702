// The old toolkit's reaction semantics: what code-driven changes fire, and what user input reaches.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/automation/failure.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::forms {
namespace {

using automation::Failure;

class SampleForm : public Form {
  public:
    explicit SampleForm(Platform& p) : Form(p, "SampleForm") {}

    ComboBox cmboFrom{*this, "cmboFrom"};
    TextBox txtName{*this, "txtName"};
    CheckBox chkLog{*this, "chkLog"};
    Frame fraOptions{*this, "fraOptions"};
    OptionButton rbTone{*this, "rbTone"};
    OptionButton rbPulse{*this, "rbPulse"};
    OptionButton rbOther{*this, "rbOther"};
    Label lblStatus{*this, "lblStatus"};
    CommandButton btnOK{*this, "btnOK"};

    std::vector<std::string> log;

  protected:
    void Form_Load() override {
        rbTone.SetContainer(&fraOptions);
        rbPulse.SetContainer(&fraOptions);
        cmboFrom.Click = [this] {
            log.push_back("cmboFrom_Click:" + std::to_string(cmboFrom.ListIndex()) + ":" +
                          cmboFrom.Text());
        };
        txtName.Change = [this] { log.push_back("txtName_Change:" + txtName.Text()); };
        chkLog.Click = [this] { log.push_back("chkLog_Click:" + std::to_string(chkLog.Value())); };
        rbTone.Click = [this] { log.push_back("rbTone_Click"); };
        rbPulse.Click = [this] { log.push_back("rbPulse_Click"); };
        btnOK.Click = [this] { log.push_back("btnOK_Click"); };
    }
};

class ReactionsTest : public ::testing::Test {
  protected:
    headless::HeadlessPlatform platform;
    SampleForm form{platform};
    void SetUp() override {
        form.Show();
        form.cmboFrom.AddItem("Home");
        form.cmboFrom.AddItem("Office");
        form.log.clear();
    }
};

TEST_F(ReactionsTest, ListIndexFromCodeRunsClickOnceInsideTheSetter) {
    form.cmboFrom.Click = [this] {
        // Inside the setter the new index and text are already visible.
        form.log.push_back("inside:" + std::to_string(form.cmboFrom.ListIndex()) + ":" +
                           form.cmboFrom.Text());
    };
    form.cmboFrom.SetListIndex(1);
    form.log.push_back("after setter");
    EXPECT_EQ(form.log, (std::vector<std::string>{"inside:1:Office", "after setter"}));

    form.cmboFrom.SetListIndex(1);  // unchanged: nothing fires
    EXPECT_EQ(form.log.size(), 2u);
}

TEST_F(ReactionsTest, OutOfRangeListIndexFailsWith380AndChangesNothing) {
    form.cmboFrom.SetListIndex(0);
    form.log.clear();
    try {
        form.cmboFrom.SetListIndex(2);
        FAIL() << "no failure";
    } catch (const Failure& f) {
        EXPECT_EQ(f.Number(), 380);
    }
    EXPECT_THROW(form.cmboFrom.SetListIndex(-2), Failure);
    EXPECT_EQ(form.cmboFrom.ListIndex(), 0);
    EXPECT_EQ(form.cmboFrom.Text(), "Home");
    EXPECT_TRUE(form.log.empty());
}

TEST_F(ReactionsTest, TextChangeAndCheckValueFireOnlyWhenTheValueChanges) {
    form.txtName.SetText("anna");
    form.txtName.SetText("anna");
    form.chkLog.SetValue(1);
    form.chkLog.SetValue(1);
    form.chkLog.SetValue(0);
    EXPECT_EQ(form.log, (std::vector<std::string>{"txtName_Change:anna", "chkLog_Click:1",
                                                  "chkLog_Click:0"}));
    EXPECT_THROW(form.chkLog.SetValue(3), Failure);
}

TEST_F(ReactionsTest, OptionButtonTrueClearsItsSiblingsInTheSameContainerOnly) {
    form.rbOther.SetValue(true);
    form.rbTone.SetValue(true);
    form.rbPulse.SetValue(true);
    EXPECT_FALSE(form.rbTone.Value());
    EXPECT_TRUE(form.rbPulse.Value());
    EXPECT_TRUE(form.rbOther.Value()) << "an option of another container is not touched";
    EXPECT_EQ(form.log, (std::vector<std::string>{"rbTone_Click", "rbPulse_Click"}));
    form.log.clear();
    form.rbPulse.SetValue(false);  // false fires nothing
    EXPECT_TRUE(form.log.empty());
}

TEST_F(ReactionsTest, SortedComboKeepsItemsInOrderAsTheyAreAdded) {
    ComboBox& box = form.cmboFrom;
    box.Clear();
    box.SetSorted(true);
    for (const char* name : {"Paris", "amsterdam", "Berlin", "Zurich"}) {
        box.AddItem(name);
    }
    std::vector<std::string> items;
    for (int i = 0; i < box.ListCount(); ++i) {
        items.push_back(box.List(i));
    }
    EXPECT_EQ(items, (std::vector<std::string>{"amsterdam", "Berlin", "Paris", "Zurich"}));
    EXPECT_EQ(box.NewIndex(), 3);
}

TEST_F(ReactionsTest, SelectionStaysOnItsItemWhenItemsMoveAround) {
    form.cmboFrom.SetListIndex(1);  // Office
    form.cmboFrom.AddItem("Airport", 0);
    EXPECT_EQ(form.cmboFrom.ListIndex(), 2);
    form.cmboFrom.RemoveItem(2);
    EXPECT_EQ(form.cmboFrom.ListIndex(), -1);
    EXPECT_THROW(form.cmboFrom.RemoveItem(5), Failure);
}

TEST_F(ReactionsTest, DisabledFormGetsNoUserInputButCodeStillDrivesIt) {
    form.SetEnabled(false);
    form.btnOK.UserClick();
    form.cmboFrom.UserSelect(1);
    form.txtName.UserKeyPress('x');
    form.chkLog.UserClick();
    EXPECT_TRUE(form.log.empty());
    EXPECT_EQ(form.txtName.Text(), "");

    form.cmboFrom.SetListIndex(1);
    form.chkLog.SetValue(1);
    EXPECT_EQ(form.log, (std::vector<std::string>{"cmboFrom_Click:1:Office", "chkLog_Click:1"}));
}

TEST_F(ReactionsTest, DisabledOrHiddenControlAndDisabledContainerGetNoUserInput) {
    form.btnOK.SetEnabled(false);
    form.btnOK.UserClick();
    form.btnOK.SetEnabled(true);
    form.btnOK.SetVisible(false);
    form.btnOK.UserClick();
    form.fraOptions.SetEnabled(false);
    form.rbTone.UserClick();
    EXPECT_TRUE(form.log.empty());
    form.btnOK.SetVisible(true);
    form.btnOK.UserClick();
    EXPECT_EQ(form.log, (std::vector<std::string>{"btnOK_Click"}));
}

TEST_F(ReactionsTest, HiddenFormGetsNoUserInput) {
    form.Hide();
    form.btnOK.UserClick();
    EXPECT_TRUE(form.log.empty());
}

TEST_F(ReactionsTest, TypedKeysGoThroughKeyPressWhichMaySwallowThem) {
    form.txtName.KeyPress = [](int& key) {
        if (key >= 'a' && key <= 'z') {
            key -= 32;  // upper-cases
        }
        if (key == '!') {
            key = 0;  // swallowed
        }
    };
    for (char c : std::string("ab!c")) {
        form.txtName.UserKeyPress(c);
    }
    form.txtName.UserKeyPress(key::kBack);
    EXPECT_EQ(form.txtName.Text(), "AB");
}

TEST_F(ReactionsTest, FormWithKeyPreviewSeesKeysFirst) {
    struct Previewing : Form {
        explicit Previewing(Platform& p) : Form(p, "Previewing") { SetKeyPreview(true); }
        TextBox txt{*this, "txt"};
        int enters = 0;
        void Form_KeyPress(int& key) override {
            if (key == key::kReturn) {
                ++enters;
                key = 0;
            }
        }
    } f(platform);
    f.Show();
    f.txt.UserKeyPress(key::kReturn);
    f.txt.UserKeyPress('z');
    EXPECT_EQ(f.enters, 1);
    EXPECT_EQ(f.txt.Text(), "z");
}

TEST_F(ReactionsTest, MaxLengthLimitsTypingAndCodeAlike) {
    form.txtName.SetMaxLength(3);
    for (char c : std::string("abcdef")) {
        form.txtName.UserKeyPress(c);
    }
    EXPECT_EQ(form.txtName.Text(), "abc");
    form.txtName.SetText("wxyz");
    EXPECT_EQ(form.txtName.Text(), "wxy");
}

TEST_F(ReactionsTest, SelectionIsClippedAndSelTextReplacesIt) {
    form.txtName.SetText("hello world");
    form.txtName.SetSelStart(6);
    form.txtName.SetSelLength(50);
    EXPECT_EQ(form.txtName.SelText(), "world");
    form.txtName.SetSelText("there");
    EXPECT_EQ(form.txtName.Text(), "hello there");
    EXPECT_EQ(form.txtName.SelStart(), 11);
    EXPECT_THROW(form.txtName.SetSelStart(-1), Failure);
}

// Text inserted at the caret at the very end appends: Change fires, the caret follows, MaxLength
// still holds.
TEST_F(ReactionsTest, InsertingAtTheEndAppendsWithinMaxLength) {
    int changes = 0;
    form.txtName.Change = [&] { ++changes; };
    form.txtName.SetMaxLength(8);
    form.txtName.SetText("abc");
    form.txtName.SetSelStart(3);
    form.txtName.SetSelText("de");
    EXPECT_EQ(form.txtName.Text(), "abcde");
    EXPECT_EQ(form.txtName.SelStart(), 5);
    form.txtName.AppendText("fghij");
    EXPECT_EQ(form.txtName.Text(), "abcdefgh");
    EXPECT_EQ(form.txtName.SelStart(), 8);
    form.txtName.AppendText("k");
    EXPECT_EQ(changes, 3) << "a full box does not change";
}

TEST_F(ReactionsTest, UnguardedFailureInAUserReactionShowsTheRunTimeErrorAndEndsTheProcess) {
    form.btnOK.Click = [] { throw Failure(91); };
    platform.AnswerNextBox(mb::kResultOk);
    EXPECT_THROW(form.btnOK.UserClick(), headless::ProcessEnded);
    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text,
              "Run-time error '91':\n\nObject variable or With block variable not set");
    EXPECT_EQ(platform.Boxes()[0].flags & mb::kIconMask, mb::kCritical);
}

TEST_F(ReactionsTest, FailureInAReactionFiredFromCodeReachesTheCaller) {
    form.cmboFrom.Click = [] { throw Failure(5); };
    EXPECT_THROW(form.cmboFrom.SetListIndex(0), Failure);
    EXPECT_TRUE(platform.Boxes().empty());
}

}  // namespace
}  // namespace kw::forms
