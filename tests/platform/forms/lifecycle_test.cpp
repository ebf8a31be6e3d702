// Forms: loaded at first touch, shown, hidden, unloaded with their vetoes, reloaded fresh.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/form_set.h"
#include "platform/headless/headless_platform.h"

namespace kw::forms {
namespace {

using Journal = std::vector<std::string>;

class Pullout : public Form {
  public:
    Pullout(Platform& p, Journal& j) : Form(p, "Pullout"), journal(j) {}
    Label lblCaption{*this, "lblCaption"};
    Timer tmrBlink{*this, "tmrBlink"};
    Journal& journal;
    int cancelQuery = 0;
    int cancelUnload = 0;

  protected:
    void Form_Load() override {
        journal.push_back("Load");
        tmrBlink.SetInterval(100);
        tmrBlink.Tick = [this] { journal.push_back("tick"); };
    }
    void Form_QueryUnload(int& cancel, int reason) override {
        journal.push_back("QueryUnload:" + std::to_string(reason));
        cancel = cancelQuery;
    }
    void Form_Unload(int& cancel) override {
        journal.push_back("Unload");
        cancel = cancelUnload;
    }
};

class LifecycleTest : public ::testing::Test {
  protected:
    headless::HeadlessPlatform platform;
    Journal journal;
    FormSet forms;
    void SetUp() override {
        forms.Register<Pullout>([this] { return std::make_unique<Pullout>(platform, journal); });
    }
};

TEST_F(LifecycleTest, QueryUnloadOrUnloadCancelKeepsTheFormLoaded) {
    Pullout& p = forms.Get<Pullout>();
    p.Show();
    p.cancelQuery = 1;
    EXPECT_FALSE(p.Unload());
    p.cancelQuery = 0;
    p.cancelUnload = 1;
    EXPECT_FALSE(p.Unload());
    EXPECT_TRUE(p.IsLoaded());
    EXPECT_TRUE(p.Visible());
    EXPECT_EQ(journal,
              (std::vector<std::string>{"Load", "QueryUnload:1", "QueryUnload:1", "Unload"}));
}

// Every touch reaches the one loaded instance; after an unload the next touch loads anew.
TEST_F(LifecycleTest, TouchAfterUnloadLoadsAFreshInstanceWithDesignValues) {
    Pullout& first = forms.Get<Pullout>();
    forms.Get<Pullout>().lblCaption.SetCaption("changed");
    EXPECT_EQ(first.lblCaption.Caption(), "changed");
    ASSERT_TRUE(first.Unload());
    EXPECT_FALSE(forms.IsLoaded<Pullout>());
    Pullout& second = forms.Get<Pullout>();
    EXPECT_NE(&first, &second);
    EXPECT_EQ(second.lblCaption.Caption(), "");
    EXPECT_EQ(journal, (std::vector<std::string>{"Load", "QueryUnload:1", "Unload", "Load"}));
}

TEST_F(LifecycleTest, FormTimersRunOnlyWhileLoadedAndEnabled) {
    Pullout& p = forms.Get<Pullout>();
    platform.Advance(250);
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "tick"), 2);
    p.tmrBlink.SetTimerEnabled(false);
    platform.Advance(500);
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "tick"), 2);
    p.tmrBlink.SetTimerEnabled(true);
    ASSERT_TRUE(p.Unload());
    platform.Advance(500);
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "tick"), 2);
    EXPECT_EQ(platform.LiveTimerCount(), 0);
}

}  // namespace
}  // namespace kw::forms
