#include "lists/cellselection.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>
#include <vector>

namespace {

struct Marks {
    // row, column (-1 for rows), op
    std::vector<std::tuple<int, int, int>> calls;
    std::set<std::pair<int, int>> on;
    static void Cell(void* self, int row, int col, int op)
    {
        auto* m = static_cast<Marks*>(self);
        m->calls.emplace_back(row, col, op);
        if (op == CellSelection::Mark)
            m->on.insert({row, col});
        else
            m->on.erase({row, col});
    }
    static void Row(void* self, int row, int op) { Cell(self, row, -1, op); }
    std::set<std::pair<int, int>> Take()
    {
        std::set<std::pair<int, int>> touched;
        for (auto& [r, c, op] : calls)
            touched.insert({r, c});
        calls.clear();
        return touched;
    }
};

class Selection : public ::testing::Test {
protected:
    void SetUp() override
    {
        sel.SetCallbacks(&Marks::Cell, &marks, &Marks::Row, &marks);
        sel.SetColumnCount(4);
    }
    CellSelection sel;
    Marks marks;
};

using Cells = std::set<std::pair<int, int>>;

TEST_F(Selection, OnlyCellsThatChangeAreMarkedOrUnmarked)
{
    sel.Select(1, 1, CellSelection::Plain);
    EXPECT_EQ(sel.GetMode(), CellSelection::Cells);
    EXPECT_EQ(marks.Take(), (Cells{{1, 1}}));
    // A rectangle from the anchor: the anchor stays, the rest is new.
    sel.Select(2, 3, CellSelection::Shift);
    EXPECT_EQ(marks.Take(), (Cells{{1, 2}, {1, 3}, {2, 1}, {2, 2}, {2, 3}}));
    EXPECT_EQ(marks.on.size(), 6u);
    // Shrinking it unmarks only what it left.
    sel.Select(1, 3, CellSelection::Shift);
    EXPECT_EQ(marks.Take(), (Cells{{2, 1}, {2, 2}, {2, 3}}));
    int r1, r2, c1, c2;
    ASSERT_TRUE(sel.GetFirst(r1, r2, c1, c2));
    EXPECT_EQ(std::make_tuple(r1, r2, c1, c2), std::make_tuple(1, 1, 1, 3));
    int row, col;
    ASSERT_TRUE(sel.GetMoving(row, col));
    EXPECT_EQ(std::make_pair(row, col), std::make_pair(1, 3));
    // The moving corner may lie above and left of the anchor.
    sel.Select(0, 0, CellSelection::Shift);
    ASSERT_TRUE(sel.GetFirst(r1, r2, c1, c2));
    EXPECT_EQ(std::make_tuple(r1, r2, c1, c2), std::make_tuple(0, 1, 0, 1));
    marks.Take();

    // Ctrl adds; a plain click starts again.
    sel.Select(5, 2, CellSelection::Ctrl);
    EXPECT_EQ(marks.Take(), (Cells{{5, 2}}));
    EXPECT_EQ(sel.GetCount(), 2);
    EXPECT_TRUE(sel.Contains(5, 2));
    EXPECT_TRUE(sel.Contains(0, 1));
    sel.Select(5, 2, CellSelection::Click);
    EXPECT_EQ(sel.GetCount(), 1);
    EXPECT_EQ(marks.on, (Cells{{5, 2}}));

    // Without the multiple flag, Ctrl is a plain click.
    sel.SetMultiple(FALSE);
    sel.Select(3, 3, CellSelection::Ctrl);
    EXPECT_EQ(marks.on, (Cells{{3, 3}}));

    sel.Select(-1, -1, CellSelection::Plain);
    EXPECT_TRUE(marks.on.empty());
    EXPECT_EQ(sel.GetCount(), 0);
    EXPECT_FALSE(sel.GetFirst(r1, r2, c1, c2));
}

TEST_F(Selection, RowsAndCellsReplaceEachOther)
{
    sel.Select(1, 1, CellSelection::Plain);
    sel.SelectRows(2, CellSelection::Plain);
    EXPECT_EQ(sel.GetMode(), CellSelection::Rows);
    EXPECT_EQ(marks.on, (Cells{{2, -1}}));
    sel.SelectRows(4, CellSelection::Shift);
    EXPECT_EQ(marks.on, (Cells{{2, -1}, {3, -1}, {4, -1}}));
    EXPECT_TRUE(sel.Contains(3, 99));
    marks.Take();
    sel.Clear();
    EXPECT_EQ(marks.Take(), (Cells{{2, -1}, {3, -1}, {4, -1}}));
    EXPECT_TRUE(marks.on.empty());
    sel.SelectRows(1, CellSelection::Plain);
    sel.Select(0, 2, CellSelection::Plain);
    EXPECT_EQ(sel.GetMode(), CellSelection::Cells);
    EXPECT_EQ(marks.on, (Cells{{0, 2}}));
}

} // namespace
