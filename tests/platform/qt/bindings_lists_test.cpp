// The bindings of the kinds that show a list to choose from, each alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>

#include "binding_fixture.h"

namespace kw::qt {
namespace {

using ::testing::ElementsAre;

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

TEST_F(ListBindingTest, AnArrowKeyOnAComboChoosesAndRunsClick) {
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    AddPlaces();
    form.cmboFrom.SetListIndex(1);
    form.journal.clear();
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Up);
    EXPECT_EQ(form.cmboFrom.ListIndex(), 0);
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Click:Home"));
}

TEST_F(ListBindingTest, ADropdownListShowsItsTextOnlyWhileNothingIsChosen) {
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    AddPlaces();
    form.cmboFrom.SetText("(choose a place)");
    EXPECT_EQ(combo->currentText(), "");
    EXPECT_EQ(combo->placeholderText(), "(choose a place)");
}

TEST_F(ListBindingTest, TextTypedIntoAnEditableComboReachesTheModel) {
    form.cmboFrom.SetStyle(forms::combo::kDropdownCombo);
    form.cmboFrom.Change = [this] { form.Note("cmboFrom_Change:" + form.cmboFrom.Text()); };
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    ASSERT_NE(combo->lineEdit(), nullptr);
    QTest::keyClicks(combo->lineEdit(), "Ho");
    EXPECT_EQ(form.cmboFrom.Text(), "Ho");
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Change:H", "cmboFrom_Change:Ho"));
}

TEST_F(ListBindingTest, AnEditableCombosTextSetInCodeFiresChangeOnce) {
    form.cmboFrom.SetStyle(forms::combo::kDropdownCombo);
    form.cmboFrom.Change = [this] { form.Note("cmboFrom_Change:" + form.cmboFrom.Text()); };
    auto* combo = Bind<QComboBox>(form.cmboFrom);
    form.cmboFrom.SetText("Airport");
    EXPECT_EQ(combo->currentText(), "Airport");
    EXPECT_THAT(form.journal, ElementsAre("cmboFrom_Change:Airport"));
}

TEST_F(ListBindingTest, AListBoxShowsItsItemsAndChoice) {
    auto* list = Bind<QListWidget>(form.lbChoices);
    form.lbChoices.AddItem("one");
    form.lbChoices.AddItem("two");
    form.lbChoices.SetListIndex(1);
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->item(1)->text(), "two");
    EXPECT_EQ(list->currentRow(), 1);
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
