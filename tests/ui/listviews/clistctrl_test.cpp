#include "ui/listviews/listviewtest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/images/cimagelist.h"
#include "ui/windows/uiapp.h"

#include <cstring>

namespace {

using vxtest::DrawCall;
using vxtest::RecordingParent;

constexpr COLORREF kCellColour = RGB(10, 200, 30);

class ListView : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, CRect(0, 0, 300, 200), &parent,
                                100));
        list.InsertColumn(0, "Device", LVCFMT_LEFT, 80);
        list.InsertColumn(1, "Page", LVCFMT_RIGHT, 60);
        list.InsertColumn(2, "Text", LVCFMT_LEFT, 100);
    }
    void Fill(int rows)
    {
        for (int i = 0; i < rows; ++i) {
            const CString n = CString("K") + std::to_string(i + 1).c_str();
            const int row = list.InsertItem(i, n);
            list.SetItemText(row, 1, std::to_string(10 + i).c_str());
            list.SetItemText(row, 2, "Relay");
        }
    }
    // Paints everything once, then forgets what was heard.
    void Settle()
    {
        vx::ProcessUiEvents(); // shown and exposed, so that UpdateWindow paints at once
        vxtest::Render(parent);
        vx::ProcessUiEvents(); // and nothing is left to paint
        parent.Clear();
    }

    RecordingParent parent;
    CListCtrl list;
};

TEST_F(ListView, KeepsItemsColumnsAndTextsByMessage)
{
    Fill(3);
    EXPECT_EQ(list.GetItemCount(), 3);
    EXPECT_EQ(list.GetItemText(1, 0), CString("K2"));
    EXPECT_EQ(list.GetItemText(1, 1), CString("11"));
    char buffer[4];
    EXPECT_EQ(list.GetItemText(0, 2, buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "Rel"); // cut to the buffer
    EXPECT_EQ(list.GetItemText(5, 0), CString());
    EXPECT_FALSE(list.SetItemText(5, 0, "x"));
    EXPECT_FALSE(list.SetItemText(0, 3, "x"));

    EXPECT_TRUE(list.SetItemData(2, 0x1234));
    EXPECT_EQ(list.GetItemData(2), 0x1234u);
    LVFINDINFO find{};
    find.flags = LVFI_PARAM;
    find.lParam = 0x1234;
    EXPECT_EQ(list.FindItem(&find), 2);
    find.flags = LVFI_STRING | LVFI_PARTIAL;
    find.psz = "k";
    EXPECT_EQ(list.FindItem(&find), 0);
    EXPECT_EQ(list.FindItem(&find, 0), 1);

    // A column inserted in the middle moves the later texts with it.
    list.InsertColumn(1, "New", LVCFMT_LEFT, 40);
    EXPECT_EQ(list.GetItemText(0, 2), CString("10"));
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 4);
    LVCOLUMN col{};
    char name[16];
    col.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    col.pszText = name;
    col.cchTextMax = sizeof name;
    ASSERT_TRUE(list.GetColumn(2, &col));
    EXPECT_STREQ(name, "Page");
    EXPECT_EQ(col.cx, 60);
    EXPECT_EQ(col.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_RIGHT);
    EXPECT_TRUE(list.DeleteColumn(1));
    EXPECT_EQ(list.GetItemText(0, 1), CString("10"));

    parent.Clear();
    EXPECT_TRUE(list.DeleteItem(0));
    EXPECT_EQ(list.GetItemText(0, 0), CString("K2"));
    ASSERT_EQ(parent.listNotes.size(), 1u);
    EXPECT_EQ(parent.listNotes[0].hdr.code, LVN_DELETEITEM);
    EXPECT_TRUE(list.DeleteAllItems());
    EXPECT_EQ(list.GetItemCount(), 0);
    EXPECT_EQ(parent.Count(LVN_DELETEALLITEMS), 1);
    EXPECT_EQ(parent.Count(LVN_DELETEITEM), 1 + 2);
}

TEST_F(ListView, SortsOnInsertAndByCallback)
{
    CListCtrl sorted;
    ASSERT_TRUE(sorted.Create(WS_CHILD | LVS_REPORT | LVS_SORTASCENDING, CRect(0, 0, 100, 100), &parent, 101));
    sorted.InsertColumn(0, "A", LVCFMT_LEFT, 50);
    for (const char* t : {"b", "C", "a"})
        sorted.InsertItem(0, t);
    EXPECT_EQ(sorted.GetItemText(0, 0), CString("a"));
    EXPECT_EQ(sorted.GetItemText(1, 0), CString("b"));
    EXPECT_EQ(sorted.GetItemText(2, 0), CString("C"));

    Fill(3);
    for (int i = 0; i < 3; ++i)
        list.SetItemData(i, static_cast<DWORD_PTR>(i));
    ASSERT_TRUE(list.SortItems([](LPARAM a, LPARAM b, LPARAM) { return static_cast<int>(b - a); }, 0));
    EXPECT_EQ(list.GetItemText(0, 0), CString("K3"));
    EXPECT_EQ(list.GetItemText(2, 0), CString("K1"));
}

TEST_F(ListView, StateChangesAreAskedForAndTold)
{
    Fill(4);
    parent.Clear();
    EXPECT_TRUE(list.SetItemState(1, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED));
    ASSERT_EQ(parent.listNotes.size(), 2u);
    EXPECT_EQ(parent.listNotes[0].hdr.code, LVN_ITEMCHANGING);
    EXPECT_EQ(parent.listNotes[1].hdr.code, LVN_ITEMCHANGED);
    EXPECT_EQ(parent.listNotes[1].uNewState, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(parent.listNotes[1].uOldState, 0u);
    EXPECT_EQ(parent.listNotes[1].uChanged, LVIF_STATE);

    // The focus is on one item only; selection is many.
    list.SetItemState(3, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(list.GetItemState(1, LVIS_FOCUSED), 0u);
    EXPECT_EQ(list.GetSelectedCount(), 2u);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 1);
    EXPECT_EQ(list.GetNextItem(1, LVNI_SELECTED), 3);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 3);
    POSITION pos = list.GetFirstSelectedItemPosition();
    std::vector<int> selected;
    while (pos)
        selected.push_back(list.GetNextSelectedItem(pos));
    EXPECT_EQ(selected, (std::vector<int>{1, 3}));

    parent.refuseItem = 0;
    list.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(list.GetItemState(0, LVIS_SELECTED), 0u);

    // With LVS_SINGLESEL a new selection drops the old one.
    list.ModifyStyle(0, LVS_SINGLESEL);
    list.SetItemState(2, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(list.GetSelectedCount(), 1u);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 2);
}

TEST_F(ListView, GeometryAndHitTests)
{
    Fill(30);
    CHeaderCtrl* header = list.GetHeaderCtrl();
    ASSERT_NE(header, nullptr);
    CRect headerRect;
    header->GetWindowRect(&headerRect);
    const int headerHeight = headerRect.Height();
    EXPECT_GT(headerHeight, 10);

    CRect row0, row1;
    ASSERT_TRUE(list.GetItemRect(0, &row0, LVIR_BOUNDS));
    ASSERT_TRUE(list.GetItemRect(1, &row1, LVIR_BOUNDS));
    const int h = row0.Height();
    EXPECT_EQ(row0, CRect(0, headerHeight, 240, headerHeight + h));
    EXPECT_EQ(row1.top, row0.bottom);

    CRect cell;
    ASSERT_TRUE(list.GetSubItemRect(1, 1, LVIR_BOUNDS, cell));
    EXPECT_EQ(cell, CRect(80, row1.top, 140, row1.bottom));
    ASSERT_TRUE(list.GetSubItemRect(1, 0, LVIR_BOUNDS, cell));
    EXPECT_EQ(cell, row1); // column 0's bounds are the whole row, as on the original
    ASSERT_TRUE(list.GetSubItemRect(1, 0, LVIR_LABEL, cell));
    EXPECT_EQ(cell, CRect(0, row1.top, 80, row1.bottom));
    EXPECT_FALSE(list.GetSubItemRect(99, 0, LVIR_LABEL, cell));

    LVHITTESTINFO hit{};
    hit.pt = CPoint(100, row1.top + 2);
    EXPECT_EQ(list.SubItemHitTest(&hit), 1);
    EXPECT_EQ(hit.iSubItem, 1);
    EXPECT_EQ(hit.flags, LVHT_ONITEMLABEL);
    // Without full row select only the first column hits the item.
    UINT flags = 0;
    EXPECT_EQ(list.HitTest(CPoint(100, row1.top + 2), &flags), -1);
    EXPECT_EQ(list.HitTest(CPoint(10, row1.top + 2), &flags), 1);
    EXPECT_EQ(list.HitTest(CPoint(10, 2), &flags), -1);
    EXPECT_TRUE(flags & LVHT_ABOVE);
    list.SetExtendedStyle(LVS_EX_FULLROWSELECT);
    EXPECT_EQ(list.HitTest(CPoint(100, row1.top + 2), &flags), 1);

    // Thirty rows do not fit: a vertical bar, and the page counts whole rows.
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    const int perPage = list.GetCountPerPage();
    EXPECT_EQ(perPage, (200 - headerHeight) / h);
    EXPECT_EQ(list.GetTopIndex(), 0);
    EXPECT_TRUE(list.EnsureVisible(20, FALSE));
    EXPECT_EQ(list.GetTopIndex(), 20 - perPage + 1);
    EXPECT_TRUE(list.EnsureVisible(3, FALSE));
    EXPECT_EQ(list.GetTopIndex(), 3);
    ASSERT_TRUE(list.GetItemRect(3, &row0, LVIR_BOUNDS));
    EXPECT_EQ(row0.top, headerHeight);
    list.Scroll(CSize(0, h * 2 - 1)); // whole rows, rounded up
    EXPECT_EQ(list.GetTopIndex(), 5);
    list.Scroll(CSize(0, -1000));
    EXPECT_EQ(list.GetTopIndex(), 0);
    list.Scroll(CSize(0, 100000));
    EXPECT_EQ(list.GetTopIndex(), 30 - perPage);
    hit.pt = CPoint(300 - bar + 2, headerHeight + 3);
    EXPECT_EQ(list.SubItemHitTest(&hit), -1); // on the bar, not on a row
    EXPECT_TRUE(hit.flags & LVHT_TORIGHT);
}

TEST_F(ListView, CustomDrawRunsItsStagesPerCell)
{
    Fill(2);
    parent.prepaintAnswer = CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    parent.itemAnswer = CDRF_NOTIFYSUBITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    parent.cellAnswer = [](NMLVCUSTOMDRAW* cd) -> LRESULT {
        if (cd->iSubItem != 1)
            return CDRF_NOTIFYPOSTPAINT;
        // The parent paints this column itself.
        CDC::FromHandle(cd->nmcd.hdc)->FillSolidRect(&cd->nmcd.rc, kCellColour);
        return CDRF_SKIPDEFAULT;
    };
    const QImage img = vxtest::Render(parent);
    const std::vector<DrawCall> want = {
        {CDDS_PREPAINT, 0, 0},
        {CDDS_ITEMPREPAINT, 0, 0},
        {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 0, 0},
        {CDDS_ITEMPOSTPAINT | CDDS_SUBITEM, 0, 0},
        {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 0, 1},
        {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 0, 2},
        {CDDS_ITEMPOSTPAINT | CDDS_SUBITEM, 0, 2},
        {CDDS_ITEMPOSTPAINT, 0, 0},
        {CDDS_ITEMPREPAINT, 1, 0},
        {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 0},
        {CDDS_ITEMPOSTPAINT | CDDS_SUBITEM, 1, 0},
        {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 1},
        {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 2},
        {CDDS_ITEMPOSTPAINT | CDDS_SUBITEM, 1, 2},
        {CDDS_ITEMPOSTPAINT, 1, 0},
        {CDDS_POSTPAINT, 0, 2},
    };
    ASSERT_EQ(parent.draws.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(parent.draws[i].stage, want[i].stage);
        if (want[i].stage != CDDS_PREPAINT && want[i].stage != CDDS_POSTPAINT) {
            EXPECT_EQ(parent.draws[i].item, want[i].item);
            EXPECT_EQ(parent.draws[i].subItem, want[i].subItem);
        }
    }
    CRect cell;
    list.GetSubItemRect(1, 1, LVIR_BOUNDS, cell);
    EXPECT_PIXEL(img, cell.left + 3, cell.top + 3, kCellColour);
    EXPECT_PIXEL(img, cell.right + 3, cell.top + 3, GetSysColor(COLOR_WINDOW));
    // The default painting shows the texts in the window text colour.
    list.GetSubItemRect(0, 0, LVIR_LABEL, cell);
    EXPECT_GT(vxtest::CountColor(img, cell, GetSysColor(COLOR_WINDOWTEXT)), 5);
}

TEST_F(ListView, SelectedRowsShowInTheHighlight)
{
    Fill(3);
    list.SetExtendedStyle(LVS_EX_FULLROWSELECT);
    list.SetItemState(1, LVIS_SELECTED, LVIS_SELECTED);
    list.SetFocus();
    QImage img = vxtest::Render(parent);
    CRect cell;
    list.GetSubItemRect(1, 2, LVIR_BOUNDS, cell);
    EXPECT_PIXEL(img, cell.right - 3, cell.top + 2, GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_GT(vxtest::CountColor(img, cell, GetSysColor(COLOR_HIGHLIGHTTEXT)), 5);
    // Without the focus, LVS_SHOWSELALWAYS keeps the selection in the face colour.
    parent.SetFocus();
    img = vxtest::Render(parent);
    EXPECT_PIXEL(img, cell.right - 3, cell.top + 2, GetSysColor(COLOR_BTNFACE));
}

TEST_F(ListView, OnlyChangedCellsRepaint)
{
    Fill(6);
    Settle();
    // One text: its cell and no other.
    list.SetItemText(2, 1, "99");
    list.UpdateWindow();
    EXPECT_EQ(parent.Cells(), (std::vector<std::pair<int, int>>{{2, 1}}));
    // An unchanged text paints nothing.
    parent.Clear();
    list.SetItemText(2, 1, "99");
    list.UpdateWindow();
    EXPECT_TRUE(parent.Cells().empty());

    // A state change repaints the rows it touched.
    parent.Clear();
    list.SetItemState(4, LVIS_SELECTED, LVIS_SELECTED);
    list.UpdateWindow();
    EXPECT_EQ(parent.Cells(), (std::vector<std::pair<int, int>>{{4, 0}, {4, 1}, {4, 2}}));

    // With drawing off nothing paints; on again, only what changed meanwhile.
    parent.Clear();
    list.SetRedraw(FALSE);
    list.SetItemText(0, 0, "A");
    list.SetItemText(5, 2, "B");
    list.UpdateWindow();
    vx::ProcessUiEvents();
    EXPECT_TRUE(parent.Cells().empty());
    list.SetRedraw(TRUE);
    list.UpdateWindow();
    EXPECT_EQ(parent.Cells(), (std::vector<std::pair<int, int>>{{0, 0}, {5, 2}}));
}

TEST_F(ListView, MouseSelectsAndTellsClicksAndDrags)
{
    Fill(6);
    list.SetExtendedStyle(LVS_EX_FULLROWSELECT);
    CRect row;
    list.GetItemRect(1, &row, LVIR_BOUNDS);
    const int h = row.Height();
    auto at = [&](int item, int x) { return CPoint(x, row.top + (item - 1) * h + h / 2); };
    parent.Clear();
    vxtest::Click(list, at(1, 100));
    EXPECT_EQ(CWnd::GetFocus(), &list);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 1);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 1);
    ASSERT_EQ(parent.clicks.size(), 1u);
    EXPECT_EQ(parent.clicks[0].hdr.code, NM_CLICK);
    EXPECT_EQ(parent.clicks[0].iItem, 1);
    EXPECT_EQ(parent.clicks[0].iSubItem, 1);

    vxtest::Click(list, at(3, 10), Qt::ShiftModifier);
    EXPECT_EQ(list.GetSelectedCount(), 3u);
    vxtest::Click(list, at(2, 10), Qt::ControlModifier);
    EXPECT_EQ(list.GetSelectedCount(), 2u);
    EXPECT_EQ(list.GetItemState(2, LVIS_SELECTED), 0u);
    EXPECT_EQ(list.GetSelectionMark(), 2);

    // A drag starts LVN_BEGINDRAG and is no click.
    parent.Clear();
    vxtest::Drag(list, at(4, 20), at(5, 120));
    EXPECT_EQ(parent.Count(LVN_BEGINDRAG), 1);
    EXPECT_EQ(parent.Count(NM_CLICK), 0);

    parent.Clear();
    vxtest::Mouse(list, QEvent::MouseButtonPress, at(5, 20));
    vxtest::Mouse(list, QEvent::MouseButtonRelease, at(5, 20));
    vxtest::Mouse(list, QEvent::MouseButtonDblClick, at(5, 20));
    vxtest::Mouse(list, QEvent::MouseButtonRelease, at(5, 20));
    EXPECT_EQ(parent.Count(NM_CLICK), 1);
    EXPECT_EQ(parent.Count(NM_DBLCLK), 1);

    // A click below the rows clears the selection.
    vxtest::Click(list, CPoint(20, 190));
    EXPECT_EQ(list.GetSelectedCount(), 0u);
}

TEST_F(ListView, CheckBoxesToggleByMouseAndSpace)
{
    Fill(3);
    list.SetExtendedStyle(LVS_EX_CHECKBOXES);
    EXPECT_FALSE(list.GetCheck(0));
    CRect icon;
    list.GetItemRect(0, &icon, LVIR_ICON);
    vxtest::Click(list, CPoint(5, icon.CenterPoint().y));
    EXPECT_TRUE(list.GetCheck(0));
    vxtest::Key(list, VK_SPACE);
    EXPECT_FALSE(list.GetCheck(0));
    list.SetCheck(2);
    const QImage img = vxtest::Render(parent);
    CRect row;
    list.GetItemRect(2, &row, LVIR_BOUNDS);
    EXPECT_GT(vxtest::CountColor(img, CRect(2, row.top, 16, row.bottom), GetSysColor(COLOR_WINDOWTEXT)), 10);
}

TEST_F(ListView, KeysMoveTheSelectionAndScroll)
{
    Fill(40);
    list.SetFocus();
    parent.Clear();
    vxtest::Key(list, VK_DOWN);
    EXPECT_EQ(parent.Count(LVN_KEYDOWN), 1);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 0); // nothing had the focus: the first item
    vxtest::Key(list, VK_DOWN);
    vxtest::Key(list, VK_DOWN, true);
    EXPECT_EQ(list.GetSelectedCount(), 2u);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 2);
    vxtest::Key(list, VK_END);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 39);
    EXPECT_EQ(list.GetSelectedCount(), 1u);
    EXPECT_EQ(list.GetTopIndex(), 40 - list.GetCountPerPage());
    vxtest::Key(list, VK_HOME);
    EXPECT_EQ(list.GetTopIndex(), 0);
    vxtest::Key(list, VK_NEXT);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), list.GetCountPerPage() - 1);
    vxtest::Key(list, VK_RETURN);
    EXPECT_EQ(parent.Count(NM_RETURN), 1);
}

TEST_F(ListView, ScrollBarsAndWheelScroll)
{
    Fill(40);
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    const int perPage = list.GetCountPerPage();
    // The down arrow at the foot of the vertical bar: one row.
    vxtest::Click(list, CPoint(300 - bar / 2, 200 - bar / 2 - 1));
    EXPECT_EQ(list.GetTopIndex(), 1);
    // The track below the thumb: a page.
    vxtest::Click(list, CPoint(300 - bar / 2, 200 - bar - 4));
    EXPECT_EQ(list.GetTopIndex(), 1 + perPage);
    // Dragging the thumb to the bottom shows the last rows.
    list.Scroll(CSize(0, -100000));
    CHeaderCtrl* header = list.GetHeaderCtrl();
    CRect hr;
    header->GetWindowRect(&hr);
    vxtest::Drag(list, CPoint(300 - bar / 2, bar + 3), CPoint(300 - bar / 2, 400));
    EXPECT_EQ(list.GetTopIndex(), 40 - perPage);
    // The wheel: three rows a notch.
    list.Scroll(CSize(0, -100000));
    vx::DispatchInputMessage(list, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)), 0);
    EXPECT_EQ(list.GetTopIndex(), 3);
    // Wide columns bring a horizontal bar; the header moves with the rows.
    list.SetColumnWidth(2, 400);
    list.Scroll(CSize(50, 0));
    header->GetWindowRect(&hr);
    list.ScreenToClient(&hr);
    EXPECT_EQ(hr.left, -50);
    CRect cell;
    list.GetSubItemRect(list.GetTopIndex(), 1, LVIR_BOUNDS, cell);
    EXPECT_EQ(cell.left, 80 - 50);
    const QImage img = vxtest::Render(parent);
    EXPECT_PIXEL(img, 300 - bar / 2, 200 - bar / 2, GetSysColor(COLOR_BTNFACE)); // the corner between the bars
}

} // namespace
