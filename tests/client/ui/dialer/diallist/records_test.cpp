// The record classes: the ISP search that never answers nothing, and keyed adds.
#include <gtest/gtest.h>

#include "client/ui/dialer/diallist/isp_list.h"
#include "platform/automation/failure.h"

namespace kw::dialer {
namespace {

using automation::Variant;

TEST(ISPListTest, FindSearchesTheListItIsGivenAndAMissIsANewEmptyEntry) {
    ISPList searched;
    searched.Add(Variant("Acme"), "Acme");
    ISPList caller;
    caller.Add(Variant("Globex"), "");
    EXPECT_EQ(caller.find("Acme", searched), searched.item(Variant(std::int32_t{1})));
    const auto miss = searched.find("acme", searched);  // case-sensitive
    EXPECT_TRUE(miss->ispName().IsEmpty());
    EXPECT_EQ(searched.Count(), 1);
    EXPECT_TRUE(searched.find("Globex", searched)->ispName().IsEmpty());
}

TEST(ISPInfoTest, ThePopListIsMadeOnTheFirstReadAndKept) {
    ISPInfo info;
    const auto first = info.POPList();
    EXPECT_EQ(info.POPList(), first);
    const auto pop = first->Add("Acme", "5", "Boston", "555-0100", "");
    EXPECT_EQ(first->item(Variant(std::int32_t{1}))->phoneNumber, "555-0100");
    EXPECT_EQ(pop->ispName, "Acme");
}

}  // namespace
}  // namespace kw::dialer
