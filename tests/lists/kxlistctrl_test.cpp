#include "lists/xlisttest.h"

#include "base/vxglobals.h"
#include "config/kprofile.h"
#include "lists/kheaderctrlex.h"
#include "platform/windows/sysmetrics.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <cstring>

namespace {

using vxtest::FillGrid;
using vxtest::ListParent;
using vxtest::Text;

class XList : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, CRect(0, 0, 440, 280),
                                &parent, 100));
    }
    ListParent parent;
    KXListCtrl list;
};

TEST_F(XList, RowsCarryOneRecordPerColumnWithTheirDefaults)
{
    FillGrid(list, 3, 4);
    EXPECT_EQ(list.GetColumns(), 4);
    XLISTCTRLDATA* first = list.GetItemXLCDData(1, 0);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->bEnabled, TRUE);
    EXPECT_EQ(first->nKind, XLC_KIND_TEXT);
    EXPECT_EQ(first->nCheckedState, -1);
    EXPECT_EQ(first->nComboLines, 10);
    EXPECT_EQ(first->crBackground, XLC_DEFAULT_BACKGROUND);
    EXPECT_EQ(first->dwItemData, static_cast<DWORD_PTR>(-1));
    EXPECT_EQ(first->bShowProgressText, TRUE);
    // Out of range gives 0 and does nothing.
    EXPECT_EQ(list.GetItemXLCDData(3, 0), nullptr);
    EXPECT_EQ(list.GetItemXLCDData(0, 4), nullptr);
    EXPECT_FALSE(list.SetItemText(0, 4, "x"));
    EXPECT_FALSE(list.SetBold(-1, 0, TRUE));
    EXPECT_FALSE(list.SetCheckbox(3, 0, 1));
    EXPECT_EQ(list.GetCheckbox(0, 9), -1);

    // Item data lives on the row's first record; an LVITEM's lParam becomes it.
    LVITEMA item{};
    item.mask = LVIF_TEXT | LVIF_PARAM | LVIF_IMAGE;
    item.iItem = 3;
    item.pszText = const_cast<char*>("K9");
    item.lParam = 0x77;
    item.iImage = 2;
    ASSERT_EQ(list.InsertItem(&item), 3);
    EXPECT_EQ(list.GetItemData(3), 0x77u);
    EXPECT_EQ(list.GetItemXLCDData(3, 0)->nImage, 2);
    EXPECT_EQ(list.FindDataItem(0x77), 3);
    EXPECT_EQ(list.FindDataItem(0x78), -1);
    list.SetItemData2(3, 5);
    EXPECT_EQ(list.GetItemData2(3), 5u);
    EXPECT_TRUE(list.SetItemDataArray(3, 4, 9));
    EXPECT_EQ(list.GetItemDataArray(3, 4), 9u);
    EXPECT_EQ(list.GetItemDataArray(3, 2), 0u);
    EXPECT_EQ(list.GetItemXLCDData(3, 0)->aDataArray.GetSize(), 5);

    const int colored = list.InsertItem(4, "R", RGB(1, 2, 3), RGB(4, 5, 6));
    COLORREF text = 0;
    COLORREF back = 0;
    ASSERT_TRUE(list.GetItemColors(colored, 2, &text, &back));
    EXPECT_EQ(text, RGB(1, 2, 3));
    EXPECT_EQ(back, RGB(4, 5, 6));

    // A column added later finds older rows without a record for it.
    list.InsertColumn(4, "Late", LVCFMT_LEFT, 40);
    EXPECT_EQ(list.GetItemXLCDData(0, 4), nullptr);
    EXPECT_FALSE(list.SetBold(0, 4, TRUE));
}

TEST_F(XList, CellKindsAndTheirPayloads)
{
    FillGrid(list, 2, 4);
    // Bridges: -1 takes the first free slot; a slot past the end grows both arrays.
    ASSERT_TRUE(list.SetBridge(0, 1, 2, 7));
    XLISTCTRLDATA* cell = list.GetItemXLCDData(0, 1);
    ASSERT_NE(cell->Bridge(), nullptr);
    EXPECT_EQ(cell->Bridge()->aUsed.GetSize(), 3);
    EXPECT_EQ(cell->Bridge()->aUsed[0], 0u);
    ASSERT_TRUE(list.SetBridge(0, 1, -1, 8));
    EXPECT_EQ(cell->Bridge()->aUsed[0], 1u);
    EXPECT_EQ(cell->Bridge()->aImages[0], 8u);
    ASSERT_TRUE(list.SetBridge(0, 1, -1, 9));
    EXPECT_EQ(cell->Bridge()->aUsed.GetSize(), 3);
    EXPECT_EQ(cell->Bridge()->aImages[1], 9u);
    ASSERT_TRUE(list.SetBridge(0, 1, -1, 10));
    EXPECT_EQ(cell->Bridge()->aUsed.GetSize(), 4);

    ASSERT_TRUE(list.SetIcon(0, 2, 3));
    EXPECT_EQ(*list.GetItemXLCDData(0, 2)->Icon(), 3);
    // A cell changing kind lets its old payload go (the sanitizer run checks).
    ASSERT_TRUE(list.SetIcon(0, 1, 4));
    EXPECT_EQ(list.GetItemXLCDData(0, 1)->Bridge(), nullptr);

    const int bridgeRow = list.InsertBridge(2, 3, -1, 1);
    EXPECT_EQ(list.GetItemXLCDData(bridgeRow, 3)->nKind, XLC_KIND_BRIDGE);
    const int buttonRow = list.InsertButton(3, 0, "Edit");
    EXPECT_EQ(list.GetItemXLCDData(buttonRow, 0)->nKind, XLC_KIND_BUTTON);
    EXPECT_EQ(Text(list, buttonRow, 0), "Edit");
    const int comboRow = list.InsertComboBox(4, 2, "Relay", nullptr, 5, 6, 7);
    const XLISTCTRLDATA* combo = list.GetItemXLCDData(comboRow, 2);
    EXPECT_TRUE(combo->bCombo);
    EXPECT_EQ(combo->dwComboData, 5u);
    EXPECT_EQ(combo->nComboLines, 6);
    EXPECT_EQ(combo->nComboSort, 7);
    EXPECT_EQ(list.GetComboText(comboRow, 2), CString("Relay"));
    EXPECT_EQ(list.GetComboText(comboRow, 1), CString());

    ASSERT_TRUE(list.SetProgress(1, 3, FALSE, "%d of 100"));
    ASSERT_TRUE(list.UpdateProgress(1, 3, 40));
    EXPECT_EQ(list.GetItemXLCDData(1, 3)->nProgressPercent, 40);
    EXPECT_FALSE(list.UpdateProgress(1, 2, 40)); // no bar there
    ASSERT_TRUE(list.DeleteProgress(1, 3));
    EXPECT_FALSE(list.GetItemXLCDData(1, 3)->bProgress);

    // Deleting rows takes their records along.
    EXPECT_TRUE(list.DeleteItem(0));
    EXPECT_EQ(list.GetItemCount(), 4);
    EXPECT_TRUE(list.DeleteAllItems());
    EXPECT_EQ(list.GetItemCount(), 0);
}

TEST_F(XList, HeaderCheckFollowsTheRowsAndTheRowsFollowTheHeader)
{
    FillGrid(list, 3, 3);
    for (int r = 0; r < 3; ++r)
        list.SetCheckbox(r, 1, 0);
    ASSERT_TRUE(list.SetHeaderCheckedState(1, 1));
    list.SetCheckbox(0, 1, 1);
    list.SetCheckbox(1, 1, 1);
    EXPECT_EQ(list.GetHeaderCheckedState(1), 1);
    EXPECT_EQ(list.CountCheckedItems(1), 2);
    list.SetCheckbox(2, 1, 1); // the last unchecked row
    EXPECT_EQ(list.GetHeaderCheckedState(1), 2);
    HDITEM item{};
    item.mask = HDI_FORMAT;
    list.GetHeader().GetItem(1, &item);
    EXPECT_TRUE(item.fmt & HDF_CHECKED);
    list.SetCheckbox(0, 1, 0);
    EXPECT_EQ(list.GetHeaderCheckedState(1), 1);
    // Without touching the header.
    list.SetItemCheckedState(0, 1, 1);
    EXPECT_EQ(list.GetHeaderCheckedState(1), 1);
    // A column without a header check stays without.
    list.SetCheckbox(0, 2, 1);
    EXPECT_EQ(list.GetHeaderCheckedState(2), 0);

    // A click on the header flips it and every check of the column.
    list.SetCheckbox(1, 1, -1); // no check box: left alone
    vxtest::Click(list.GetHeader(), CPoint(90, 8));
    EXPECT_EQ(list.GetHeaderCheckedState(1), 2);
    EXPECT_EQ(list.GetCheckbox(0, 1), 1);
    EXPECT_EQ(list.GetCheckbox(1, 1), -1);
    EXPECT_EQ(list.GetCheckbox(2, 1), 1);
    EXPECT_TRUE(list.GetModified(2, 1));
    EXPECT_TRUE(list.GetListModified());
    vxtest::Click(list.GetHeader(), CPoint(90, 8));
    EXPECT_EQ(list.GetHeaderCheckedState(1), 1);
    EXPECT_EQ(list.GetCheckbox(2, 1), 0);
}

TEST_F(XList, ColumnsByNameAndMinimumWidth)
{
    FillGrid(list, 1, 3);
    EXPECT_EQ(list.GetColumnName(2), CString("C2"));
    EXPECT_EQ(list.GetColumnName(3), CString());
    EXPECT_EQ(list.FindColumn("c1"), 1);
    EXPECT_EQ(list.FindColumn("C9"), -1);
    list.SetButtonColumn(0, 1);
    EXPECT_EQ(list.GetButtonColumn(), 0);
    list.SetButtonColumn(0, 0);
    EXPECT_EQ(list.GetButtonColumn(), -1);
}

class MinimumList : public KXListCtrl {
public:
    int GetColumnMinWidth(int) override { return 30; }
};

TEST(XListColumns, SpaltenverwaltungKeepsWidthsOrderAndItsValues)
{
    vxtest::TempDir dir;
    g_MainframeType = MainframeAT;
    std::strcpy(g_profiledirAT, dir.Path("VXWIN55AT.INI").c_str());
    KProfile::WriteProfileStringA("DialogState", "42colwidth", "50#10#70#", 0);
    KProfile::WriteProfileStringA("DialogState", "42colorder", "2#0#1#", 0);
    KProfile::WriteProfileStringA("DialogState", "42colmod", "0", 0);
    KProfile::WriteProfileStringA("DialogState", "42colheight", "2", 0);
    ListParent parent;
    parent.Create();
    {
        MinimumList list;
        list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 400, 200), &parent, 7);
        CStringArray names;
        names.Add("A");
        names.Add("B");
        names.Add("C");
        list.InitSpaltenverwaltung(42, &names);
        EXPECT_EQ(list.GetColumns(), 3);
        EXPECT_EQ(list.GetColumnWidth(0), 50);
        EXPECT_EQ(list.GetColumnWidth(1), 30); // never below the minimum
        int order[3] = {};
        list.GetColumnOrderArray(order, 3);
        EXPECT_EQ(std::vector<int>(order, order + 3), (std::vector<int>{2, 0, 1}));
        EXPECT_EQ(list.GetColMod(), 0);
        EXPECT_EQ(list.GetColHeight(), 5); // at least 5 when "colmod" is 0
        list.SetColumnWidth(2, 90);
        list.DestroyWindow();
    }
    EXPECT_EQ(KProfile::GetProfileStringA("DialogState", "42colwidth", "", 0), CString("50#30#90#"));
    EXPECT_EQ(KProfile::GetProfileIntA("DialogState", "42colheight", 0, 0), 5u);
    g_profiledirAT[0] = 0;
}

int Refills = 0;
int Refill(void* context)
{
    auto* list = static_cast<KXListCtrl*>(context);
    ++Refills;
    vxtest::FillGrid(*list, 0, 0);
    for (int r = 0; r < 3; ++r) {
        list->InsertItem(r, "");
        for (int c = 0; c < list->GetColumns(); ++c)
            list->SetItemText(r, c, list->GetColumnName(c) + "-" + std::to_string(r).c_str());
    }
    return 1;
}

TEST_F(XList, DraggedColumnsMoveThroughTheRefill)
{
    FillGrid(list, 3, 3);
    list.SetCellMode(TRUE);
    list.SetCallBackRefreshFunction(&list, &Refill);
    list.SetHeaderCheckedState(0, 2);
    list.EnableHeaderDrag(TRUE);
    list.SetCurSel(1, 0);
    Refills = 0;
    // The header hands the drop to the list, which moves the column.
    vxtest::Drag(list.GetHeader(), CPoint(35, 8), CPoint(170, 8)); // not on the check box
    EXPECT_EQ(Refills, 1);
    EXPECT_EQ(list.GetColumnName(0), CString("C1"));
    EXPECT_EQ(list.GetColumnName(2), CString("C0"));
    int order[3] = {};
    list.GetColumnOrderArray(order, 3);
    EXPECT_EQ(std::vector<int>(order, order + 3), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(Text(list, 2, 2), "C0-2");
    EXPECT_EQ(list.GetHeaderCheckedState(2), 2);
    EXPECT_EQ(list.GetHeaderCheckedState(0), 0);
    EXPECT_EQ(list.GetCurSel(), 1); // the row selected before is selected again
}

TEST_F(XList, KeysMoveTheCellAndExtendWithShift)
{
    FillGrid(list, 5, 4);
    list.SetCellMode(TRUE);
    list.SetButtonColumn(0, 1);
    list.SetFocus();
    list.SetCurSel(1, 0);
    int row = -1;
    int col = -1;
    ASSERT_TRUE(list.GetSelection().GetMoving(row, col));
    EXPECT_EQ(std::make_pair(row, col), std::make_pair(1, 1)); // not the button column
    parent.messages.clear();
    vxtest::Key(list, VK_RIGHT);
    vxtest::Key(list, VK_DOWN);
    list.GetSelection().GetMoving(row, col);
    EXPECT_EQ(std::make_pair(row, col), std::make_pair(2, 2));
    EXPECT_EQ(parent.Count(WM_XLISTCTRL_SELCHANGED), 2);
    vxtest::Key(list, VK_HOME);
    list.GetSelection().GetMoving(row, col);
    EXPECT_EQ(col, 1); // the first selectable column
    vxtest::Key(list, VK_LEFT);
    list.GetSelection().GetMoving(row, col);
    EXPECT_EQ(col, 1);
    vxtest::Key(list, VK_END, true);
    vxtest::Key(list, VK_NEXT, true);
    int r1, r2, c1, c2;
    ASSERT_TRUE(list.GetSelection().GetFirst(r1, r2, c1, c2));
    EXPECT_EQ(std::make_tuple(r1, r2, c1, c2), std::make_tuple(2, 4, 1, 3));
    vxtest::Key(list, VK_PRIOR);
    list.GetSelection().GetMoving(row, col);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(list.GetSelection().GetCount(), 1);
}

TEST_F(XList, APlainListWalksOverDisabledRows)
{
    FillGrid(list, 5, 2);
    list.SetEnabled(1, FALSE);
    list.SetEnabled(2, FALSE);
    list.SetFocus();
    list.SetCurSel(0, 0);
    list.SetItemState(0, LVIS_FOCUSED, LVIS_FOCUSED);
    vxtest::Key(list, VK_DOWN);
    EXPECT_EQ(list.GetCurSel(), 3);
    // At the end the walk turns back: all but one row disabled.
    for (int r = 0; r < 5; ++r)
        list.SetEnabled(r, r == 2);
    list.SetCurSel(4, 0);
    list.SetItemState(4, LVIS_FOCUSED, LVIS_FOCUSED);
    vxtest::Key(list, VK_END);
    EXPECT_EQ(list.GetCurSel(), 2);
}

TEST_F(XList, ClicksSelectCellsAndToggleChecksButNotOnDisabledRows)
{
    FillGrid(list, 4, 3);
    list.SetCellMode(TRUE);
    list.SetCheckbox(2, 2, 0);
    list.SetEnabled(3, FALSE);
    CRect cell;
    list.GetSubItemRect(1, 1, LVIR_BOUNDS, cell);
    vxtest::Click(list, cell.CenterPoint());
    int row = -1;
    int col = -1;
    ASSERT_TRUE(list.GetSelection().GetMoving(row, col));
    EXPECT_EQ(std::make_pair(row, col), std::make_pair(1, 1));
    EXPECT_TRUE(list.GetItemXLCDData(1, 1)->bSelected);
    list.GetSubItemRect(2, 1, LVIR_BOUNDS, cell);
    vxtest::Click(list, cell.CenterPoint(), Qt::ShiftModifier);
    int r1, r2, c1, c2;
    list.GetSelection().GetFirst(r1, r2, c1, c2);
    EXPECT_EQ(std::make_tuple(r1, r2, c1, c2), std::make_tuple(1, 2, 1, 1));

    // The check box toggles at once and tells the parent.
    list.GetSubItemRect(2, 2, LVIR_BOUNDS, cell);
    parent.messages.clear();
    vxtest::Click(list, cell.CenterPoint());
    EXPECT_EQ(list.GetCheckbox(2, 2), 1);
    EXPECT_TRUE(list.GetModified(2, 2));
    ASSERT_EQ(parent.Count(WM_XLISTCTRL_CHECKBOX_CLICKED), 1);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_CHECKBOX_CLICKED)->wParam, 2u);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_CHECKBOX_CLICKED)->lParam, 2);

    // A disabled row: nothing at all, not even selection.
    list.GetSubItemRect(3, 1, LVIR_BOUNDS, cell);
    parent.messages.clear();
    vxtest::Click(list, cell.CenterPoint());
    EXPECT_FALSE(list.GetItemXLCDData(3, 1)->bSelected);
    EXPECT_EQ(parent.messages.size(), 0u);

    // Dragging the mouse stretches a rectangle.
    CRect from, to;
    list.GetSubItemRect(0, 0, LVIR_BOUNDS, from);
    list.GetSubItemRect(2, 1, LVIR_BOUNDS, to);
    vxtest::Drag(list, from.CenterPoint(), to.CenterPoint());
    list.GetSelection().GetFirst(r1, r2, c1, c2);
    EXPECT_EQ(std::make_tuple(r1, r2, c1, c2), std::make_tuple(0, 2, 0, 1));
    EXPECT_EQ(list.GetSelection().GetCount(), 1);

    // A click below the rows clears the selection.
    vxtest::Click(list, CPoint(20, 260));
    EXPECT_EQ(list.GetSelection().GetCount(), 0);
}

TEST_F(XList, SelectionQueries)
{
    FillGrid(list, 4, 3);
    list.SetCellMode(TRUE);
    list.SelectAll();
    TUniArray<CPoint, CPoint&> cells;
    EXPECT_EQ(list.GetCurSelCells(&cells), 12);
    CUIntArray rows;
    EXPECT_EQ(list.GetCurSel(&rows), 4);
    list.DeselectAll();
    EXPECT_EQ(list.GetCurSelCells(nullptr), 0);
    EXPECT_EQ(list.GetCurSel(), -1);
    list.SelectRow(2, 2, TRUE);
    EXPECT_EQ(list.GetCurSel(&rows), 1);
    EXPECT_EQ(rows[0], 2u);
    list.SetCurSel(3, 1);
    EXPECT_EQ(list.GetCurSel(), 3);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_SELCHANGED)->wParam, 3u);
}

TEST(XListFrame, ScrollBarsTakeTheirRoomFromTheClientAreaAndShow)
{
    ListParent parent;
    ASSERT_TRUE(parent.Create());
    KXListCtrl list;
    ASSERT_TRUE(list.CreateEx("", "SysListView32", WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 300, 200),
                              &parent, 100, WS_EX_CLIENTEDGE));
    CRect window, client;
    list.GetClientRect(&client);
    EXPECT_EQ(client.Size(), CSize(300 - 4, 200 - 4)); // the client edge, no bars yet
    list.SetCellMode(TRUE);
    list.InsertColumn(0, "A", LVCFMT_LEFT, 100);
    list.SetRedraw(FALSE);
    for (int i = 0; i < 100; ++i)
        list.InsertItem(i, "x");
    list.SetRedraw(TRUE);
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    list.GetClientRect(&client);
    EXPECT_EQ(client.Size(), CSize(300 - 4 - bar, 200 - 4));
    // A moved list keeps its bar and edge.
    list.MoveWindow(0, 0, 320, 220);
    list.GetWindowRect(&window);
    list.GetClientRect(&client);
    EXPECT_EQ(window.Size(), CSize(320, 220));
    EXPECT_EQ(client.Size(), CSize(320 - 4 - bar, 220 - 4));
    // The bar is painted in the non-client area: its arrow face, not the rows' background.
    const QImage img = vxtest::Render(parent);
    EXPECT_PIXEL(img, 320 - 2 - bar + 3, 2 + 3, GetSysColor(COLOR_BTNFACE));
    EXPECT_PIXEL(img, 320 - 2 - bar + 3, 220 - 2 - bar + 3, GetSysColor(COLOR_BTNFACE));
}

} // namespace
