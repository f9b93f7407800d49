#include "lists/xlisttest.h"

#include "platform/windows/ccombobox.h"
#include "ui/controls/cedit.h"

#include <QWidget>

namespace {

using vxtest::FillGrid;
using vxtest::ListParent;
using vxtest::Text;

void Type(CWnd* window, const char* text)
{
    ASSERT_NE(window, nullptr);
    for (const char* p = text; *p; ++p)
        vx::DispatchInputMessage(*window, WM_CHAR, static_cast<unsigned char>(*p), 1);
}

void FillParts(DWORD_PTR data, void*, int, int, CArray<ComboItem, ComboItem&>* items)
{
    for (const char* text : {"Relay", "", "Fuse", "Lamp"}) {
        ComboItem item;
        item.strText = text;
        item.dwData = data + static_cast<DWORD_PTR>(items->GetSize());
        items->Add(item);
    }
}

class Editors : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 440, 280), &parent, 100));
        FillGrid(list, 6, 5);
        list.SetCellMode(TRUE);
        list.SetFocus();
    }
    CPoint Center(int row, int col)
    {
        CRect r;
        list.GetSubItemRect(row, col, LVIR_BOUNDS, r);
        return r.CenterPoint();
    }
    void DoubleClick(CPoint at)
    {
        vxtest::Mouse(list, QEvent::MouseButtonPress, at);
        vxtest::Mouse(list, QEvent::MouseButtonRelease, at);
        vxtest::Mouse(list, QEvent::MouseButtonDblClick, at);
        vxtest::Mouse(list, QEvent::MouseButtonRelease, at);
    }
    ListParent parent;
    KXListCtrl list;
};

TEST_F(Editors, TextEditorCommitsCancelsAndKeepsAnEmptiedText)
{
    list.SetEdit(1, 1);
    vxtest::Click(list, Center(1, 1));
    CWnd* editor = list.GetEditWindow();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(CWnd::GetFocus(), editor);
    EXPECT_EQ(editor->GetDlgCtrlID(), 99u);
    EXPECT_EQ(editor->GetWindowTextString(), CString("1,1"));
    CRect cell, place;
    list.GetSubItemRect(1, 1, LVIR_BOUNDS, cell);
    editor->GetWindowRect(&place);
    list.ScreenToClient(&place);
    EXPECT_EQ(place.left, cell.left + 2);
    EXPECT_EQ(place.bottom, cell.bottom + 1);
    EXPECT_EQ(place.Width(), cell.Width() - 4);
    Type(editor, "K7");
    vxtest::Key(*editor, VK_RETURN);
    EXPECT_FALSE(list.IsEditOpen());
    EXPECT_EQ(Text(list, 1, 1), "K7");
    EXPECT_TRUE(list.GetModified(1, 1));
    EXPECT_TRUE(list.GetListModified());
    ASSERT_EQ(parent.Count(WM_XLISTCTRL_EDIT_END), 1);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_EDIT_END)->wParam, 1u);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_EDIT_END)->lParam, 1);

    // Escape puts the old text back; nothing is sent, nothing marked.
    list.SetModified(1, 1, FALSE);
    list.DrawEdit(1, 1);
    Type(list.GetEditWindow(), "zz");
    vxtest::Key(*list.GetEditWindow(), VK_ESCAPE);
    EXPECT_FALSE(list.IsEditOpen());
    EXPECT_EQ(Text(list, 1, 1), "K7");
    EXPECT_FALSE(list.GetModified(1, 1));
    EXPECT_EQ(parent.Count(WM_XLISTCTRL_EDIT_END), 1);

    // An emptied editor that loses the focus keeps the old text.
    list.DrawEdit(1, 1);
    list.GetEditWindow()->SetWindowText("");
    parent.SetFocus();
    EXPECT_FALSE(list.IsEditOpen());
    EXPECT_EQ(Text(list, 1, 1), "K7");
    EXPECT_EQ(parent.Count(WM_XLISTCTRL_EDIT_END), 2);

    // Nothing opens on a disabled row or in a column narrower than 5 pixels.
    list.SetEnabled(2, FALSE);
    list.DrawEdit(2, 1);
    EXPECT_FALSE(list.IsEditOpen());
    list.SetColumnWidth(3, 4);
    list.DrawEdit(1, 3);
    EXPECT_FALSE(list.IsEditOpen());
}

TEST_F(Editors, ComboOpensOnADoubleClickAndEndsAfterItsOwnHandling)
{
    list.SetComboBox(2, 2, TRUE, &FillParts, 100, 5, 0);
    list.SetItemText(2, 2, "Fuse");
    vxtest::Click(list, Center(2, 2));
    EXPECT_FALSE(list.IsComboOpen()); // never on a single click
    DoubleClick(Center(2, 2));
    ASSERT_TRUE(list.IsComboOpen());
    auto* combo = dynamic_cast<CComboBox*>(list.GetComboWindow());
    ASSERT_NE(combo, nullptr);
    char cls[32] = {};
    GetClassNameA(combo->m_hWnd, cls, sizeof cls);
    EXPECT_STREQ(cls, "SuperComboBox");
    EXPECT_EQ(combo->GetCount(), 3); // the empty item is left out
    EXPECT_EQ(combo->GetCurSel(), 1);
    CRect r;
    combo->GetWindowRect(&r);
    EXPECT_GE(r.Width(), 0x37 - 1);

    // A choice ends the combo 50 ms later, outside its own handling.
    combo->SetCurSel(2);
    vxtest::Key(*combo, VK_RETURN);
    EXPECT_TRUE(list.IsComboOpen());
    vx::ProcessUiEvents(150);
    EXPECT_FALSE(list.IsComboOpen());
    EXPECT_EQ(Text(list, 2, 2), "Lamp");
    EXPECT_TRUE(list.GetModified(2, 2));
    ASSERT_EQ(parent.Count(WM_XLISTCTRL_COMBO_SELECTION), 1);
    EXPECT_EQ(parent.lastCombo.nRow, 2);
    EXPECT_EQ(parent.lastCombo.nCol, 2);
    EXPECT_EQ(parent.lastCombo.pList, &list);
    EXPECT_EQ(parent.lastCombo.dwItemData, 103u);

    // Escape leaves the cell as it was.
    DoubleClick(Center(2, 2));
    ASSERT_TRUE(list.IsComboOpen());
    combo = dynamic_cast<CComboBox*>(list.GetComboWindow());
    vxtest::Key(*combo, VK_DOWN);
    vxtest::Key(*combo, VK_ESCAPE);
    vx::ProcessUiEvents(150);
    EXPECT_FALSE(list.IsComboOpen());
    EXPECT_EQ(Text(list, 2, 2), "Lamp");
    EXPECT_EQ(parent.Count(WM_XLISTCTRL_COMBO_SELECTION), 1);

    // An empty cell takes the first item as it opens.
    list.SetComboBox(3, 2, TRUE, &FillParts, 0, 5, 0);
    list.SetItemText(3, 2, "");
    list.DrawComboBox(3, 2);
    EXPECT_EQ(Text(list, 3, 2), "Relay");
    // A click on no cell closes it by the escape path.
    vxtest::Click(list, CPoint(20, 260));
    vx::ProcessUiEvents(150);
    EXPECT_FALSE(list.IsComboOpen());
}

TEST_F(Editors, InputBoxWalksByTabEnterAndArrows)
{
    list.SetCellEditable(3, 1, FALSE);
    list.SetButtonColumn(0, 1);
    list.EditCurrentRecord(1, 1, 8);
    CWnd* box = list.GetEdiBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetDlgCtrlID(), 111u);
    EXPECT_EQ(CWnd::GetFocus(), box);
    EXPECT_EQ(box->GetWindowTextString(), CString("1,1"));
    EXPECT_EQ(box->SendMessage(EM_GETLIMITTEXT), 8);
    Type(box, "X");
    vxtest::Key(*box, VK_TAB);
    // Moved right; the typed text marked the row, and nothing was written.
    box = list.GetEdiBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetWindowTextString(), CString("1,2"));
    EXPECT_TRUE(list.GetItemXLCDData(1, 0)->bModified);
    EXPECT_EQ(Text(list, 1, 1), "1,1");
    // Shift+Tab back to column 1, but not into the button column.
    vxtest::Key(*box, VK_TAB, true);
    box = list.GetEdiBox();
    EXPECT_EQ(box->GetWindowTextString(), CString("1,1"));
    vxtest::Key(*box, VK_TAB, true);
    ASSERT_EQ(list.GetEdiBox(), box); // stays open
    // Down passes over a cell that is not editable.
    vxtest::Key(*box, VK_RETURN);
    box = list.GetEdiBox();
    EXPECT_EQ(box->GetWindowTextString(), CString("2,1"));
    vxtest::Key(*box, VK_DOWN);
    box = list.GetEdiBox();
    EXPECT_EQ(box->GetWindowTextString(), CString("4,1"));
    vxtest::Key(*box, VK_UP);
    box = list.GetEdiBox();
    EXPECT_EQ(box->GetWindowTextString(), CString("2,1"));
    // Tab from the last column closes and opens nothing.
    list.EditCurrentRecord(2, 4, -1);
    vxtest::Key(*list.GetEdiBox(), VK_TAB);
    EXPECT_FALSE(list.IsEdiBoxOpen());
    // At the list's end Enter opens nothing.
    list.EditCurrentRecord(5, 2, -1);
    vxtest::Key(*list.GetEdiBox(), VK_RETURN);
    EXPECT_FALSE(list.IsEdiBoxOpen());

    // Escape keeps what was typed: the parent is asked to write it.
    list.EditCurrentRecord(0, 3, -1);
    box = list.GetEdiBox();
    box->SendMessage(EM_SETSEL, 0, -1);
    Type(box, "new");
    vxtest::Key(*box, VK_ESCAPE);
    EXPECT_FALSE(list.IsEdiBoxOpen());
    ASSERT_FALSE(parent.writes.empty());
    EXPECT_EQ(parent.writes.back().text, "new");
    EXPECT_EQ(Text(list, 0, 3), "new");
    // Losing the focus works as Escape.
    list.EditCurrentRecord(0, 2, -1);
    Type(list.GetEdiBox(), "Q");
    parent.SetFocus();
    EXPECT_FALSE(list.IsEdiBoxOpen());
    EXPECT_EQ(parent.writes.back().col, 2);
    // A cell that is not editable opens no box.
    list.EditCurrentRecord(3, 1, -1);
    EXPECT_FALSE(list.IsEdiBoxOpen());
    // Showing on an open box only closes it.
    list.ShowEdiBox(1, 2, 1, -1);
    ASSERT_TRUE(list.IsEdiBoxOpen());
    list.ShowEdiBox(1, 3, 1, -1);
    EXPECT_FALSE(list.IsEdiBoxOpen());
}

TEST_F(Editors, CellsShowTheirTooltips)
{
    list.SetItemToolTipText(2, 3, "Coil 24 V");
    vxtest::Mouse(list, QEvent::MouseMove, Center(2, 3), Qt::NoModifier, Qt::NoButton);
    EXPECT_EQ(vx::WidgetOfWindow(&list)->toolTip(), QStringLiteral("Coil 24 V"));
    vxtest::Mouse(list, QEvent::MouseMove, Center(2, 2), Qt::NoModifier, Qt::NoButton);
    EXPECT_EQ(vx::WidgetOfWindow(&list)->toolTip(), QString());
}

} // namespace
