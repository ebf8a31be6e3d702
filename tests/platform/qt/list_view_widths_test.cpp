// A list view's columns fit their text: a width the program chose for another font never cuts a
// row or a heading, and never shrinks what is wide enough already.
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QTest>
#include <QTreeView>

#include "binding_fixture.h"

namespace kw::qt {
namespace {

using ListViewWidthsTest = testing::BindingTest;

TEST_F(ListViewWidthsTest, ANarrowColumnWidensToItsRowsAndAWideOneKeepsItsWidth) {
    auto* tree = Bind<QTreeView>(form.lstvDial);
    const int row = form.lstvDial.AddItem("Bluewave Online Internet Services");
    form.lstvDial.SetSubItem(row, 1, "1");
    QTest::qWait(50);
    const QFontMetrics metrics(tree->font());
    EXPECT_GT(tree->columnWidth(0), metrics.horizontalAdvance("Bluewave Online Internet Services"))
        << "the row's text is whole";
    EXPECT_EQ(tree->columnWidth(1), 60) << "wide enough already";
}

TEST_F(ListViewWidthsTest, AColumnWidensToItsHeadingWithoutRows) {
    auto* tree = Bind<QTreeView>(form.lstvDial);
    form.lstvDial.ClearColumns();
    form.lstvDial.AddColumn("Modem Type", "Modem Type", 20);
    QTest::qWait(50);
    EXPECT_GE(tree->columnWidth(0), tree->header()->sectionSizeHint(0));
    EXPECT_GT(tree->columnWidth(0), 20);
}

}  // namespace
}  // namespace kw::qt
