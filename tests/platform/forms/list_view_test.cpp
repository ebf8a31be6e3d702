// The list view model: item states and the selection.
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace kw::forms
