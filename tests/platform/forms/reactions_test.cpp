// The old toolkit's reaction semantics: what code-driven changes fire, and what user input reaches;
// the list view's item states and selection.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "../automation/failure_number.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::forms {
namespace {

using automation::Failure;
using Log = std::vector<std::string>;

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
    CommandButton btnOK{*this, "btnOK"};
    ListView lstvRows{*this, "lstvRows"};

    Log log;

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

// The reaction runs inside the setter, so it already sees the new index and text.
TEST_F(ReactionsTest, ListIndexFromCodeRunsClickOnceInsideTheSetter) {
    form.cmboFrom.SetListIndex(1);
    form.log.push_back("after setter");
    form.cmboFrom.SetListIndex(1);  // unchanged: nothing fires
    EXPECT_EQ(form.log, (Log{"cmboFrom_Click:1:Office", "after setter"}));
}

TEST_F(ReactionsTest, OutOfRangeListIndexFailsWith380AndChangesNothing) {
    form.cmboFrom.SetListIndex(0);
    form.log.clear();
    EXPECT_EQ(FailureNumber([&] { form.cmboFrom.SetListIndex(2); }), 380);
    EXPECT_EQ(FailureNumber([&] { form.cmboFrom.SetListIndex(-2); }), 380);
    EXPECT_EQ(form.cmboFrom.Text(), "Home");
    EXPECT_TRUE(form.log.empty());
}

TEST_F(ReactionsTest, TextChangeAndCheckValueFireOnlyWhenTheValueChanges) {
    form.txtName.SetText("anna");
    form.txtName.SetText("anna");
    form.chkLog.SetValue(1);
    form.chkLog.SetValue(1);
    form.chkLog.SetValue(0);
    EXPECT_EQ(form.log, (Log{"txtName_Change:anna", "chkLog_Click:1", "chkLog_Click:0"}));
    EXPECT_THROW(form.chkLog.SetValue(3), Failure);
}

TEST_F(ReactionsTest, OptionButtonTrueClearsItsSiblingsInTheSameContainerOnly) {
    form.rbOther.SetValue(true);
    form.rbTone.SetValue(true);
    form.rbPulse.SetValue(true);
    form.rbPulse.SetValue(false);  // false fires nothing
    EXPECT_FALSE(form.rbTone.Value());
    EXPECT_TRUE(form.rbOther.Value()) << "an option of another container is not touched";
    EXPECT_EQ(form.log, (Log{"rbTone_Click", "rbPulse_Click"}));
}

// Sorting ignores case; NewIndex tells where the last item landed.
TEST_F(ReactionsTest, SortedComboPlacesEachNewItemInOrder) {
    ComboBox& box = form.cmboFrom;
    box.Clear();
    box.SetSorted(true);
    for (const char* name : {"Paris", "amsterdam", "Berlin", "Zurich"}) box.AddItem(name);
    EXPECT_EQ(box.List(0) + "," + box.List(1) + "," + box.List(2), "amsterdam,Berlin,Paris");
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

// Each way a click can be kept from its reaction; code still drives a control that takes no input.
TEST_F(ReactionsTest, UserInputReachesOnlyAnEnabledVisibleControlOnAnEnabledVisibleForm) {
    const std::pair<const char*, std::function<void()>> blocks[] = {
        {"form disabled", [&] { form.SetEnabled(false); }},
        {"form hidden", [&] { form.Hide(); }},
        {"control disabled", [&] { form.btnOK.SetEnabled(false); }},
        {"control hidden", [&] { form.btnOK.SetVisible(false); }},
    };
    for (const auto& [what, block] : blocks) {
        block();
        form.btnOK.UserClick();
        form.chkLog.SetValue(1);
        EXPECT_EQ(form.log, (Log{"chkLog_Click:1"})) << what;
        form.chkLog.SetValue(0);
        form.SetEnabled(true);
        form.Show();
        form.btnOK.SetEnabled(true);
        form.btnOK.SetVisible(true);
        form.log.clear();
    }
    form.fraOptions.SetEnabled(false);
    form.rbTone.UserClick();
    form.btnOK.UserClick();
    EXPECT_EQ(form.log, (Log{"btnOK_Click"})) << "a disabled container stops its own controls";
}

TEST_F(ReactionsTest, MaxLengthLimitsTypingAndCodeAlike) {
    form.txtName.SetMaxLength(3);
    for (char c : std::string("abcdef")) form.txtName.UserKeyPress(c);
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

// Text appended at the end fires Change, moves the caret and stops at MaxLength.
TEST_F(ReactionsTest, AppendingStopsAtMaxLength) {
    int changes = 0;
    form.txtName.Change = [&] { ++changes; };
    form.txtName.SetMaxLength(8);
    form.txtName.SetText("abc");
    form.txtName.AppendText("defghij");
    EXPECT_EQ(form.txtName.Text(), "abcdefgh");
    EXPECT_EQ(form.txtName.SelStart(), 8);
    form.txtName.AppendText("k");
    EXPECT_EQ(changes, 2) << "a full box does not change";
}

TEST_F(ReactionsTest, FailureInAReactionFiredFromCodeReachesTheCaller) {
    form.cmboFrom.Click = [] { throw Failure(5); };
    EXPECT_EQ(FailureNumber([&] { form.cmboFrom.SetListIndex(0); }), 5);
    EXPECT_TRUE(platform.Boxes().empty());
}

class ListViewTest : public ReactionsTest {
  protected:
    void SetUp() override {
        ReactionsTest::SetUp();
        for (const char* text : {"Acme", "Globex", "Initech"}) {
            view.AddItem(text);
        }
    }
    static LvItem Box(bool ticked) {
        LvItem item;
        item.mask = lvif::kState;
        item.state = ticked ? 8192 : 4096;
        item.stateMask = -4096;
        return item;
    }
    ListView& view = form.lstvRows;
};

TEST_F(ListViewTest, AStateChangeNeedsTheStateMaskAndARowInTheList) {
    LvItem noMask = Box(true);
    noMask.mask = 0;
    view.SetItemState(0, noMask);
    EXPECT_FALSE(view.Item(1).checked);
    view.SetItemState(3, Box(true));
    view.SetItemState(-1, Box(true));
    EXPECT_EQ(view.ItemState(3, -1), 0);
    LvItem select;
    select.mask = lvif::kState;
    select.state = select.stateMask = lvis::kSelected;
    view.SetItemState(2, select);
    EXPECT_EQ(view.SelectedItem(), 3);
    EXPECT_FALSE(view.Item(3).checked) << "a mask without the box leaves it";
}

TEST_F(ListViewTest, TheSelectionFollowsRemovalsAndGoesWithAClear) {
    view.SetSelectedItem(3);
    view.RemoveItem(1);
    EXPECT_EQ(view.SelectedItem(), 2);
    EXPECT_TRUE(view.Item(2).selected);
    view.RemoveItem(2);
    EXPECT_EQ(view.SelectedItem(), 0);
    view.SetSelectedItem(1);
    view.ClearItems();
    EXPECT_EQ(view.SelectedItem(), 0);
}

}  // namespace
}  // namespace kw::forms
