// The list view model: item states, selection, and what a model/view binding is told.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::forms {
namespace {

class ViewForm : public Form {
  public:
    explicit ViewForm(Platform& p) : Form(p, "ViewForm") {}
    ListView lstvRows{*this, "lstvRows"};
};

// Notes each change as a binding would receive it.
class Binding : public ListViewObserver {
  public:
    void ColumnsReset(ListView&) override { log.push_back("columns"); }
    void RowsReset(ListView& view) override {
        log.push_back("reset:" + std::to_string(view.ItemCount()));
    }
    void RowsInserted(ListView&, int first, int count) override {
        log.push_back("insert:" + std::to_string(first) + "+" + std::to_string(count));
    }
    void RowsRemoved(ListView&, int first, int count) override {
        log.push_back("remove:" + std::to_string(first) + "+" + std::to_string(count));
    }
    void RowsChanged(ListView&, int first, int last) override {
        log.push_back("change:" + std::to_string(first) + "-" + std::to_string(last));
    }
    std::vector<std::string> log;
};

class ListViewTest : public ::testing::Test {
  protected:
    void SetUp() override {
        form.Show();
        for (const char* text : {"Acme", "Globex", "Initech"}) {
            view.AddItem(text);
        }
    }
    LvItem Box(bool ticked) {
        LvItem item;
        item.mask = lvif::kState;
        item.state = ticked ? 8192 : 4096;
        item.stateMask = -4096;
        return item;
    }
    headless::HeadlessPlatform platform;
    ViewForm form{platform};
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

TEST_F(ListViewTest, ABindingHearsSingleChangesAsTheyComeAndABatchAsOne) {
    Binding binding;
    view.AddListObserver(&binding);
    view.AddItem("Umbrella");
    view.SetChecked(4, true);
    view.RemoveItem(1);
    {
        ListView::Batch batch(view);
        view.SetSubItem(1, 1, "x");
        view.SetChecked(3, true);
    }
    {
        ListView::Batch batch(view);
        view.ClearItems();
        view.AddItem("Only");
    }
    EXPECT_EQ(binding.log, (std::vector<std::string>{"insert:3+1", "change:3-3", "remove:0+1",
                                                     "change:0-2", "reset:1"}));
    view.RemoveListObserver(&binding);
    view.AddItem("Unheard");
    EXPECT_EQ(binding.log.size(), 5u);
}

}  // namespace
}  // namespace kw::forms
