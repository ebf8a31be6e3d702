// The ordered cell lists: search answers, moves at both ends, the index values that stay in
// place along the list, clearing.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "client/ui/dialer/diallist/cisp_db_link_list.h"
#include "client/ui/dialer/diallist/cpop_db_link_list.h"
#include "platform/automation/failure.h"

namespace kw::dialer {
namespace {

using automation::Failure;

std::shared_ptr<CpopCell> Pop(const std::string& number, const std::string& isp,
                              const std::string& index) {
    auto cell = std::make_shared<CpopCell>();
    cell->SetPopNumber(number);
    cell->SetIspName(isp);
    cell->popIndex = index;
    return cell;
}

CpopCell PopKey(const std::string& number, const std::string& isp) {
    CpopCell key;
    key.SetPopNumber(number);
    key.SetIspName(isp);
    return key;
}

CispCell IspKey(const std::string& name) {
    CispCell key;
    key.SetIspName(name);
    return key;
}

// Numbers and index values along the list, from the first row.
std::vector<std::string> Numbers(const CpopDbLinkList& list) {
    std::vector<std::string> out;
    for (auto c = list.head()->nextCell(); c != list.tail(); c = c->nextCell()) {
        out.push_back(c->popNumber());
    }
    return out;
}
std::vector<std::string> Indexes(const CpopDbLinkList& list) {
    std::vector<std::string> out;
    for (auto c = list.head()->nextCell(); c != list.tail(); c = c->nextCell()) {
        out.push_back(c->popIndex);
    }
    return out;
}

class PopListTest : public ::testing::Test {
  protected:
    void SetUp() override {
        list.Add(Pop("A", "Acme", "1"));
        list.Add(Pop("B", "Acme", "2"));
        list.Add(Pop("C", "Acme", "3"));
    }
    CpopDbLinkList list;
};

struct MoveCase {
    const char* what;
    const char* row;
    bool down;
    bool moved;
    std::vector<std::string> order;
};

TEST_F(PopListTest, MovesTradeRowsAndLeaveTheIndexValuesInPlace) {
    const MoveCase cases[] = {
        {"the middle row down", "B", true, true, {"A", "C", "B"}},
        {"the middle row up", "B", false, true, {"B", "A", "C"}},
        {"the first row down", "A", true, true, {"B", "A", "C"}},
        {"the last row up", "C", false, true, {"A", "C", "B"}},
        {"the last row down", "C", true, false, {"A", "B", "C"}},
        {"the first row up", "A", false, false, {"A", "B", "C"}},
    };
    for (const MoveCase& c : cases) {
        CpopDbLinkList fresh;
        for (const auto& [n, i] : {std::pair{"A", "1"}, {"B", "2"}, {"C", "3"}}) {
            fresh.Add(Pop(n, "Acme", i));
        }
        const CpopCell key = PopKey(c.row, "Acme");
        const bool moved = c.down ? fresh.moveDown(key) : fresh.moveUp(key);
        EXPECT_EQ(moved, c.moved) << c.what;
        EXPECT_EQ(Numbers(fresh), c.order) << c.what;
        EXPECT_EQ(Indexes(fresh), (std::vector<std::string>{"1", "2", "3"})) << c.what;
        EXPECT_EQ(fresh.numOfItems(), 3) << c.what;
        // The back links follow the new order.
        for (auto cell = fresh.head()->nextCell(); cell; cell = cell->nextCell()) {
            EXPECT_EQ(cell->prevCell()->nextCell(), cell) << c.what;
        }
    }
}

TEST_F(PopListTest, TheOtherCellGetsTheMovedIndexBackAsANumber) {
    list.head()->nextCell()->popIndex = "03";
    ASSERT_TRUE(list.moveDown(PopKey("A", "Acme")));
    EXPECT_EQ(Indexes(list), (std::vector<std::string>{"3", "2", "3"}));
}

TEST_F(PopListTest, AnIndexThatIsNoNumberFailsAfterTheRowsTradedPlaces) {
    list.head()->nextCell()->popIndex = "one";
    EXPECT_THROW(list.moveDown(PopKey("A", "Acme")), Failure);
    EXPECT_EQ(Numbers(list), (std::vector<std::string>{"B", "A", "C"}));
    EXPECT_EQ(Indexes(list), (std::vector<std::string>{"2", "one", "3"}));
}

TEST(EmptyCellListTest, MovesOnAnEmptyListGiveFalse) {
    CpopDbLinkList pops;
    EXPECT_FALSE(pops.moveDown(PopKey("", "")));
    EXPECT_FALSE(pops.moveUp(PopKey("", "")));
    CispDbLinkList isps;
    EXPECT_FALSE(isps.moveDown(IspKey("x")));
    EXPECT_FALSE(isps.moveUp(IspKey("x")));
    EXPECT_EQ(pops.head()->nextCell(), pops.tail());
}

TEST_F(PopListTest, SearchAnswersAsAWalkFromTheHead) {
    list.Add(Pop("B", "Acme", "9"));  // a duplicate key: only the first is reached
    list.Add(Pop("D", "", "4"));
    EXPECT_EQ(list.find(PopKey("B", "Acme"))->popIndex, "2");
    EXPECT_EQ(list.find(PopKey("A", "")), list.tail()) << "an empty ISP name finds the tail";
    EXPECT_EQ(list.find(PopKey("Z", "Acme")), list.tail());
    EXPECT_EQ(list.find(PopKey("", "")), list.head());
    EXPECT_EQ(list.find(PopKey("D", ""))->popIndex, "4");
}

TEST_F(PopListTest, AKeyChangedInPlaceIsFoundUnderItsNewKey) {
    auto b = list.find(PopKey("B", "Acme"));
    b->SetPopNumber("A");  // now ahead of nothing: A stays the first "A"
    list.head()->nextCell()->SetPopNumber("Q");
    EXPECT_EQ(list.find(PopKey("A", "Acme")), b);
    EXPECT_EQ(list.find(PopKey("B", "Acme")), list.tail());
}

TEST(CellListIndexTest, TheIndexAnswersAsTheWalkAfterAnyMix) {
    CpopDbLinkList list;
    std::mt19937 random(7);
    const auto pick = [&](int n) { return std::to_string(random() % static_cast<unsigned>(n)); };
    for (int step = 0; step < 3000; ++step) {
        const CpopCell key = PopKey(pick(12), pick(2));
        switch (random() % 5) {
            case 0:
            case 1:
                list.Add(Pop(key.popNumber(), key.ispName(), pick(50)));
                break;
            case 2:
                if (list.find(key) != list.tail() && list.find(key) != list.head()) {
                    list.moveDown(key);
                }
                break;
            case 3:
                if (list.find(key) != list.tail() && list.find(key) != list.head()) {
                    list.moveUp(key);
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

TEST(IspCellListTest, AMoveExchangesThePositionTextsAndTheWeightStaysWithItsRow) {
    CispDbLinkList list;
    for (const auto& [name, pos, weight] : {std::tuple{"Acme", "07", 5}, {"Globex", "x", 9}}) {
        auto cell = std::make_shared<CispCell>();
        cell->SetIspName(name);
        cell->posIndex = pos;
        cell->sortedIndex = static_cast<std::int16_t>(weight);
        list.Add(cell);
    }
    ASSERT_TRUE(list.moveDown(IspKey("Acme")));
    auto first = list.head()->nextCell();
    EXPECT_EQ(first->ispName(), "Globex");
    EXPECT_EQ(first->posIndex, "07");
    EXPECT_EQ(first->sortedIndex, 9);
    EXPECT_EQ(first->nextCell()->posIndex, "x");
}

TEST_F(PopListTest, ClearThenAddGivesOneRowBehindTheHead) {
    auto held = list.find(PopKey("B", "Acme"));
    list.clearList();
    EXPECT_EQ(list.numOfItems(), 0);
    EXPECT_EQ(list.head()->nextCell(), list.tail());
    EXPECT_EQ(held->prevCell(), nullptr) << "the back links are cut";
    list.Add(Pop("N", "Acme", "1"));
    EXPECT_EQ(list.numOfItems(), 1);
    EXPECT_EQ(list.head()->nextCell()->prevCell(), list.head());
    EXPECT_EQ(list.find(PopKey("B", "Acme")), list.tail());
    list.clearList();
    list.clearList();
    EXPECT_EQ(list.tail()->prevCell(), list.head());
}

TEST(CellListCountTest, TheCountOverflowsPast32767AfterTheLinksAreMade) {
    CispDbLinkList list;
    list.SetNumOfItems(32767);
    auto cell = std::make_shared<CispCell>();
    cell->SetIspName("late");
    EXPECT_THROW(list.Add(cell), Failure);
    EXPECT_EQ(list.tail()->prevCell(), cell);
    EXPECT_EQ(list.find(IspKey("late")), cell);
}

TEST_F(PopListTest, MovingAKeyThatIsNotInTheListFailsForWantOfAnObject) {
    EXPECT_THROW(list.moveDown(PopKey("Z", "Acme")), Failure);
    EXPECT_EQ(Numbers(list), (std::vector<std::string>{"A", "B", "C"}));
}

}  // namespace
}  // namespace kw::dialer
