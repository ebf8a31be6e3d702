// The list view binding: a view over the model's rows, ticks both ways, selection, headers, and
// columns that fit their text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QTreeView>

#include "binding_fixture.h"

namespace kw::qt {
namespace {

using ::testing::ElementsAre;

class ListViewBindingTest : public testing::BindingTest {
  protected:
    QTreeView* BindWithRows(std::initializer_list<const char*> isps) {
        auto* tree = Bind<QTreeView>(form.lstvDial);
        for (const char* isp : isps) {
            const int row = form.lstvDial.AddItem(isp);
            form.lstvDial.SetSubItem(row, 1, std::string("POP of ") + isp);
        }
        return tree;
    }
    static QString Text(QTreeView* tree, int row, int column) {
        return tree->model()->index(row, column).data().toString();
    }
    static QVariant Check(QTreeView* tree, int row) {
        return tree->model()->index(row, 0).data(Qt::CheckStateRole);
    }
    // Where the user clicks the check box of a row.
    static QPoint CheckBoxOf(QTreeView* tree, int row) {
        const QRect cell = tree->visualRect(tree->model()->index(row, 0));
        return {cell.left() + cell.height() / 2 + 2, cell.center().y()};
    }
};

TEST_F(ListViewBindingTest, ShowsTheModelsColumnsWidthsRowsAndTicks) {
    auto* tree = BindWithRows({"Acme", "Globex"});
    form.lstvDial.SetChecked(2, true);
    ASSERT_EQ(tree->model()->rowCount(), 2);
    EXPECT_EQ(tree->model()->headerData(1, Qt::Horizontal).toString(), "POP");
    EXPECT_EQ(tree->columnWidth(0), 80);
    EXPECT_EQ(tree->columnWidth(1), 60);
    EXPECT_EQ(Text(tree, 1, 0), "Globex");
    EXPECT_EQ(Text(tree, 1, 1), "POP of Globex");
    EXPECT_EQ(Check(tree, 0).toInt(), Qt::Unchecked);
    EXPECT_EQ(Check(tree, 1).toInt(), Qt::Checked);
}

TEST_F(ListViewBindingTest, FollowsRowsRemovedClearedAndRefilledInABatch) {
    auto* tree = BindWithRows({"Acme", "Globex", "Initech"});
    form.lstvDial.RemoveItem(1);
    EXPECT_EQ(Text(tree, 0, 0), "Globex");
    {
        forms::ListView::Batch batch(form.lstvDial);
        form.lstvDial.ClearItems();
        form.lstvDial.AddItem("Umbrella");
        EXPECT_EQ(tree->model()->rowCount(), 2);  // nothing reaches the view inside the batch
    }
    ASSERT_EQ(tree->model()->rowCount(), 1);
    EXPECT_EQ(Text(tree, 0, 0), "Umbrella");
}

TEST_F(ListViewBindingTest, TickingARowsBoxRunsItemCheck) {
    auto* tree = BindWithRows({"Acme", "Globex"});
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, CheckBoxOf(tree, 1));
    EXPECT_TRUE(form.lstvDial.Item(2).checked);
    EXPECT_EQ(Check(tree, 1).toInt(), Qt::Checked);
    EXPECT_THAT(form.journal, ElementsAre("lstvDial_ItemCheck:2=on"));
}

TEST_F(ListViewBindingTest, ATickTheReactionTakesBackShowsUnticked) {
    form.lstvDial.ItemCheck = [this](int index) { form.lstvDial.SetChecked(index, false); };
    auto* tree = BindWithRows({"Acme"});
    tree->model()->setData(tree->model()->index(0, 0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_FALSE(form.lstvDial.Item(1).checked);
    EXPECT_EQ(Check(tree, 0).toInt(), Qt::Unchecked);
}

TEST_F(ListViewBindingTest, ClickingARowSelectsTheWholeRowInTheModel) {
    auto* tree = BindWithRows({"Acme", "Globex"});
    const QRect cell = tree->visualRect(tree->model()->index(1, 1));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(form.lstvDial.SelectedItem(), 2);
    EXPECT_TRUE(tree->selectionModel()->isRowSelected(1));
}

TEST_F(ListViewBindingTest, TheModelsSelectionShowsAndClears) {
    auto* tree = BindWithRows({"Acme", "Globex"});
    form.lstvDial.SetSelectedItem(2);
    EXPECT_TRUE(tree->selectionModel()->isRowSelected(1));
    form.lstvDial.SetSelectedItem(0);
    EXPECT_FALSE(tree->selectionModel()->hasSelection());
    EXPECT_TRUE(form.journal.empty());
}

TEST_F(ListViewBindingTest, HeadersMoveWhenTheStyleAllowsAndNeverSort) {
    auto* tree = BindWithRows({"Zeta", "Acme"});
    EXPECT_FALSE(tree->header()->sectionsMovable());
    form.lstvDial.SetExtendedStyle(form.lstvDial.ExtendedStyle() | forms::lvs_ex::kHeaderDragDrop);
    EXPECT_TRUE(tree->header()->sectionsMovable());
    tree->header()->moveSection(1, 0);
    EXPECT_EQ(tree->header()->visualIndex(1), 0);
    const int x = tree->header()->sectionViewportPosition(0) + 5;
    QTest::mouseClick(tree->header()->viewport(), Qt::LeftButton, {}, QPoint(x, 5));
    EXPECT_EQ(Text(tree, 0, 0), "Zeta");
}

// A width the program chose for another font never cuts a row or a heading, and never shrinks
// what is wide enough already.
TEST_F(ListViewBindingTest, ANarrowColumnWidensToItsRowsAndAWideOneKeepsItsWidth) {
    auto* tree = Bind<QTreeView>(form.lstvDial);
    form.lstvDial.SetSubItem(form.lstvDial.AddItem("Bluewave Online Internet Services"), 1, "1");
    QTest::qWait(50);
    const QFontMetrics metrics(tree->font());
    EXPECT_GT(tree->columnWidth(0), metrics.horizontalAdvance("Bluewave Online Internet Services"))
        << "the row's text is whole";
    EXPECT_EQ(tree->columnWidth(1), 60) << "wide enough already";
}

TEST_F(ListViewBindingTest, AColumnWidensToItsHeadingWithoutRows) {
    auto* tree = Bind<QTreeView>(form.lstvDial);
    form.lstvDial.ClearColumns();
    form.lstvDial.AddColumn("Modem Type", "Modem Type", 20);
    QTest::qWait(50);
    EXPECT_GE(tree->columnWidth(0), tree->header()->sectionSizeHint(0));
    EXPECT_GT(tree->columnWidth(0), 20);
}

}  // namespace
}  // namespace kw::qt
