#include "lists/xlisttest.h"

#include "platform/windows/sysmetrics.h"

namespace {

using vxtest::CountingList;
using vxtest::FillGrid;
using vxtest::ListParent;

using Cells = std::vector<std::pair<int, int>>;

constexpr COLORREF kFrame = RGB(0x33, 0x66, 0x99); // 0x996633
constexpr COLORREF kMark = RGB(0x33, 0x99, 0x33);  // 0x339933

class Drawing : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, CRect(0, 0, 440, 280),
                                &parent, 100));
        FillGrid(list, 6, 5);
        list.SetCellMode(TRUE);
        list.SetFocus();
    }
    CRect Cell(int row, int col)
    {
        CRect r;
        list.GetSubItemRect(row, col, LVIR_BOUNDS, r);
        return r;
    }
    // A spot of the cell that text does not reach.
    CPoint Empty(int row, int col)
    {
        const CRect r = Cell(row, col);
        return CPoint(r.right - 3, r.top + 2);
    }
    QImage Shot() { return vxtest::Render(parent); }
    void Settle()
    {
        vx::ProcessUiEvents();
        Shot();
        vx::ProcessUiEvents();
        list.cells.clear();
    }

    ListParent parent;
    CountingList list;
};

TEST_F(Drawing, BackgroundsFollowTheRecord)
{
    list.SetCellEditable(1, 1, FALSE);
    list.GetItemXLCDData(2, 0)->bModified = TRUE; // the whole row is modified
    list.SetKeepColors(2, 3, TRUE);
    list.SetItemColors(3, 1, RGB(200, 0, 0), RGB(0, 0, 90));
    list.SetEnabled(4, FALSE);
    const QImage img = Shot();
    EXPECT_PIXEL(img, Empty(0, 1).x, Empty(0, 1).y, XLC_DEFAULT_BACKGROUND);
    EXPECT_PIXEL(img, Empty(1, 1).x, Empty(1, 1).y, XLC_NOT_EDITABLE_BACKGROUND);
    EXPECT_PIXEL(img, Empty(2, 2).x, Empty(2, 2).y, XLC_MODIFIED_BACKGROUND);
    EXPECT_PIXEL(img, Empty(2, 3).x, Empty(2, 3).y, XLC_DEFAULT_BACKGROUND); // keeps its colours
    EXPECT_PIXEL(img, Empty(3, 1).x, Empty(3, 1).y, RGB(0, 0, 90));
    EXPECT_GT(vxtest::CountColor(img, Cell(3, 1), RGB(200, 0, 0)), 5);
    EXPECT_GT(vxtest::CountColor(img, Cell(4, 1), GetSysColor(COLOR_GRAYTEXT)), 5);
    EXPECT_EQ(vxtest::CountColor(img, Cell(4, 1), GetSysColor(COLOR_WINDOWTEXT)), 0);
    EXPECT_GT(vxtest::CountColor(img, Cell(0, 1), GetSysColor(COLOR_WINDOWTEXT)), 5);
}

TEST_F(Drawing, SelectionShowsWithAndWithoutTheFocus)
{
    list.GetSelection().Select(1, 1, CellSelection::Plain);
    list.GetSelection().Select(2, 2, CellSelection::Shift);
    QImage img = Shot();
    for (auto [r, c] : Cells{{1, 1}, {1, 2}, {2, 1}, {2, 2}})
        EXPECT_PIXEL(img, Empty(r, c).x, Empty(r, c).y, GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_GT(vxtest::CountColor(img, Cell(2, 2), GetSysColor(COLOR_HIGHLIGHTTEXT)), 5);
    EXPECT_PIXEL(img, Empty(0, 1).x, Empty(0, 1).y, XLC_DEFAULT_BACKGROUND);
    EXPECT_PIXEL(img, Empty(1, 3).x, Empty(1, 3).y, XLC_DEFAULT_BACKGROUND);
    // Without the focus the selection keeps showing in the face colour.
    parent.SetFocus();
    img = Shot();
    EXPECT_PIXEL(img, Empty(1, 1).x, Empty(1, 1).y, GetSysColor(COLOR_BTNFACE));
    // A row selected as a whole.
    list.SetFocus();
    list.SelectRow(4, 2, TRUE);
    img = Shot();
    EXPECT_PIXEL(img, Empty(4, 3).x, Empty(4, 3).y, GetSysColor(COLOR_HIGHLIGHT));
}

TEST_F(Drawing, CheckBoxes)
{
    list.SetCheckbox(0, 1, 1);
    list.SetItemText(1, 1, "");
    list.SetCheckbox(1, 1, 0);
    list.SetCheckbox(2, 1, 1);
    list.SetEnabled(2, FALSE);
    const QImage img = Shot();
    const CRect checked = Cell(0, 1);
    EXPECT_GT(vxtest::CountColor(img, checked, kFrame), 20);
    EXPECT_EQ(vxtest::CountColor(img, checked, kMark), 21); // seven columns, three thick
    // The box sits nine pixels in, the text right of it.
    const CRect frame = vxtest::Ink(img.copy(checked.left, checked.top, checked.Width(), checked.Height()), kFrame);
    EXPECT_EQ(frame.left, 9);
    EXPECT_EQ(frame.Height(), checked.Height() - 1);
    EXPECT_GT(vxtest::CountColor(img, CRect(checked.left + 9 + frame.Width(), checked.top, checked.right, checked.bottom),
                                 GetSysColor(COLOR_WINDOWTEXT)),
              3);
    // Without text the box is centred; unchecked there is no mark.
    const CRect empty = Cell(1, 1);
    const CRect box = vxtest::Ink(img.copy(empty.left, empty.top, empty.Width(), empty.Height()), kFrame);
    EXPECT_NEAR(box.left + box.Width() / 2, empty.Width() / 2, 1);
    EXPECT_EQ(vxtest::CountColor(img, empty, kMark), 0);
    // A disabled row's mark is grey.
    EXPECT_EQ(vxtest::CountColor(img, Cell(2, 1), kMark), 0);
    EXPECT_EQ(vxtest::CountColor(img, Cell(2, 1), GetSysColor(COLOR_GRAYTEXT)) >= 21, true);
}

TEST_F(Drawing, ProgressBars)
{
    for (int r = 0; r < 4; ++r)
        list.SetProgress(r, 2);
    list.UpdateProgress(1, 2, 100);
    list.UpdateProgress(2, 2, 101);
    list.UpdateProgress(3, 2, 50);
    list.SetProgress(4, 2, TRUE, "%d pc");
    list.UpdateProgress(4, 2, 50);
    const QImage img = Shot();
    const CRect none = Cell(0, 2);
    // 0: the frame and no bar, no text.
    EXPECT_PIXEL(img, none.left + 5, none.top + 5, RGB(0xE0, 0xE0, 0xE0));
    EXPECT_EQ(vxtest::CountColor(img, none, GetSysColor(COLOR_HIGHLIGHT)), 0);
    EXPECT_EQ(vxtest::CountColor(img, none, GetSysColor(COLOR_WINDOWTEXT)), 0);
    // 100: the bar fills in the highlight colour; 101 turns it red.
    const CRect full = Cell(1, 2);
    EXPECT_PIXEL(img, full.left + 3, full.top + 3, GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_PIXEL(img, full.right - 3, full.top + 3, GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_GT(vxtest::CountColor(img, full, GetSysColor(COLOR_HIGHLIGHTTEXT)), 5);
    const CRect over = Cell(2, 2);
    EXPECT_PIXEL(img, over.left + 3, over.top + 3, RGB(255, 0, 0));
    // 50: half a bar; the text changes colour where the bar ends.
    const CRect half = Cell(3, 2);
    EXPECT_PIXEL(img, half.left + 3, half.top + 3, GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_PIXEL(img, half.right - 3, half.top + 3, RGB(0xE0, 0xE0, 0xE0));
    const int middle = half.left + half.Width() / 2;
    EXPECT_GT(vxtest::CountColor(img, CRect(half.left, half.top, middle - 1, half.bottom), GetSysColor(COLOR_HIGHLIGHTTEXT)), 0);
    EXPECT_GT(vxtest::CountColor(img, CRect(middle + 1, half.top, half.right, half.bottom), GetSysColor(COLOR_WINDOWTEXT)), 0);
    // A text of its own: wider than "50%".
    const CRect own = Cell(4, 2);
    const CRect ink = vxtest::Ink(img.copy(own.left, own.top, own.Width(), own.Height()), GetSysColor(COLOR_WINDOWTEXT));
    const CRect inkHalf = vxtest::Ink(img.copy(half.left, half.top, half.Width(), half.Height()), GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_GT(ink.right, inkHalf.right);
}

TEST_F(Drawing, BridgesIconsAndButtons)
{
    list.SetBridge(0, 3, 1, 4); // the green dot in the second slot
    list.SetIcon(1, 3, 6);      // the red cross
    const int row = list.InsertButton(6, 1, "Go");
    list.SetButtonColumn(4, 1);
    const QImage img = Shot();
    const CRect bridge = Cell(0, 3);
    const CRect second(bridge.left + 16 + 1, bridge.top + 1, bridge.left + 32 + 1, bridge.top + 17);
    EXPECT_GT(vxtest::CountColor(img, second, RGB(0, 150, 60)), 20);
    EXPECT_EQ(vxtest::CountColor(img, CRect(bridge.left, bridge.top, bridge.left + 17, bridge.bottom), RGB(0, 150, 60)), 0);
    EXPECT_EQ(vxtest::CountColor(img, bridge, RGB(255, 0, 255)), 0); // magenta is transparent
    EXPECT_GT(vxtest::CountColor(img, Cell(1, 3), RGB(200, 0, 0)), 10);
    const CRect button = Cell(row, 1);
    EXPECT_PIXEL(img, button.left + 4, button.top + 4, GetSysColor(COLOR_BTNFACE));
    EXPECT_PIXEL(img, button.left, button.top, GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_GT(vxtest::CountColor(img, button, GetSysColor(COLOR_BTNTEXT)), 3);
    // The button column's face runs on below the last row.
    const CRect last = Cell(row, 4);
    EXPECT_PIXEL(img, last.left + 4, last.bottom + last.Height() + 4, GetSysColor(COLOR_BTNFACE));
    EXPECT_PIXEL(img, last.left - 4, last.bottom + last.Height() + 4, GetSysColor(COLOR_WINDOW));
}

TEST_F(Drawing, OnlyChangedCellsRepaint)
{
    Settle();
    list.GetSelection().SetColumnCount(5);
    CRect r = Cell(1, 1);
    vxtest::Click(list, r.CenterPoint());
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{1, 1}}));
    r = Cell(2, 2);
    vxtest::Click(list, r.CenterPoint(), Qt::ShiftModifier);
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{1, 2}, {2, 1}, {2, 2}}));
    // A click elsewhere: the old block and the new cell, nothing else.
    r = Cell(4, 0);
    vxtest::Click(list, r.CenterPoint());
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{1, 1}, {1, 2}, {2, 1}, {2, 2}, {4, 0}}));
    // Keys move the cell the same way.
    vxtest::Key(list, VK_RIGHT);
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{4, 0}, {4, 1}}));
    // One cell's change repaints it alone.
    list.UpdateSubItem(3, 3);
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{3, 3}}));
    list.SetItemText(5, 4, "new");
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{5, 4}}));
    list.SetCheckbox(0, 2, 1);
    list.UpdateWindow();
    EXPECT_EQ(list.Painted(), (Cells{{0, 2}}));
}

} // namespace
