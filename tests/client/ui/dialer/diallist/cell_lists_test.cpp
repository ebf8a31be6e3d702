// The ordered cell lists: search answers, the index values a move trades, clearing.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "client/ui/dialer/diallist/cpop_db_link_list.h"
#include "platform/automation/failure.h"

namespace kw::dialer {
namespace {

using automation::Failure;
using Texts = std::vector<std::string>;

std::shared_ptr<CpopCell> Pop(const std::string& number, const std::string& isp,
                              const std::string& index) {
    auto cell = std::make_shared<CpopCell>();
    cell->SetPopNumber(number);
    cell->SetIspName(isp);
    cell->popIndex = index;
    return cell;
}

CpopCell PopKey(const std::string& number, const std::string& isp = "Acme") {
    CpopCell key;
    key.SetPopNumber(number);
    key.SetIspName(isp);
    return key;
}

// "number:index" along the list from the first row; each back link checked on the way.
Texts Rows(const CpopDbLinkList& list) {
    Texts out;
    for (auto c = list.head()->nextCell(); c != list.tail(); c = c->nextCell()) {
        EXPECT_EQ(c->prevCell()->nextCell(), c) << c->popNumber();
        out.push_back(c->popNumber() + ":" + c->popIndex);
    }
    return out;
}

// Rows A, B and C of Acme, with index values 1, 2 and 3.
class PopListTest : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const auto& [n, i] : {std::pair{"A", "1"}, {"B", "2"}, {"C", "3"}}) {
            list.Add(Pop(n, "Acme", i));
        }
    }
    CpopDbLinkList list;
};

TEST_F(PopListTest, TheOtherCellGetsTheMovedIndexBackAsANumber) {
    list.head()->nextCell()->popIndex = "03";
    ASSERT_TRUE(list.moveDown(PopKey("A")));
    EXPECT_EQ(Rows(list), (Texts{"B:3", "A:2", "C:3"}));
}

TEST_F(PopListTest, AnIndexThatIsNoNumberFailsAfterTheRowsTradedPlaces) {
    list.head()->nextCell()->popIndex = "one";
    EXPECT_THROW(list.moveDown(PopKey("A")), Failure);
    EXPECT_EQ(Rows(list), (Texts{"B:2", "A:one", "C:3"}));
}

TEST_F(PopListTest, SearchAnswersAsAWalkFromTheHead) {
    list.Add(Pop("B", "Acme", "9"));  // a duplicate key: only the first is reached
    list.Add(Pop("D", "", "4"));
    EXPECT_EQ(list.find(PopKey("B"))->popIndex, "2");
    EXPECT_EQ(list.find(PopKey("A", "")), list.tail()) << "an empty ISP name finds the tail";
    EXPECT_EQ(list.find(PopKey("Z")), list.tail());
    EXPECT_EQ(list.find(PopKey("", "")), list.head());
    EXPECT_EQ(list.find(PopKey("D", ""))->popIndex, "4");
}

TEST_F(PopListTest, AKeyChangedInPlaceIsFoundUnderItsNewKey) {
    auto b = list.find(PopKey("B"));
    b->SetPopNumber("A");
    list.head()->nextCell()->SetPopNumber("Q");
    EXPECT_EQ(list.find(PopKey("A")), b);
    EXPECT_EQ(list.find(PopKey("B")), list.tail());
}

// The list keeps an index for its searches: after any mix of its operations it must answer as
// the walk from the head does.
TEST(CellListIndexTest, TheIndexAnswersAsTheWalkAfterAnyMix) {
    CpopDbLinkList list;
    std::mt19937 random(7);
    const auto pick = [&](int n) { return std::to_string(random() % static_cast<unsigned>(n)); };
    for (int step = 0; step < 3000; ++step) {
        const CpopCell key = PopKey(pick(12), pick(2));
        const auto op = random() % 5;
        switch (op) {
            case 0:
            case 1:
                list.Add(Pop(key.popNumber(), key.ispName(), pick(50)));
                break;
            case 2:
            case 3:
                if (list.find(key) != list.tail() && list.find(key) != list.head()) {
                    (void)(op == 2 ? list.moveDown(key) : list.moveUp(key));
                }
                break;
            default:
                if (random() % 40 == 0) {
                    list.clearList();
                }
        }
        for (int n = 0; n < 12; ++n) {
            const CpopCell probe = PopKey(std::to_string(n), pick(2));
            ASSERT_EQ(list.find(probe), list.walkFind(probe)) << "step " << step;
        }
    }
}

TEST_F(PopListTest, ClearingCutsTheBackLinksAndTheListStartsAgain) {
    auto held = list.find(PopKey("B"));
    list.clearList();
    EXPECT_EQ(list.numOfItems(), 0);
    EXPECT_EQ(held->prevCell(), nullptr) << "no row outlives the list through its links";
    list.Add(Pop("N", "Acme", "1"));
    EXPECT_EQ(Rows(list), Texts{"N:1"});
    EXPECT_EQ(list.find(PopKey("B")), list.tail());
}

}  // namespace
}  // namespace kw::dialer
