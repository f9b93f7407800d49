// KXListCtrl: cells, columns and the header's check boxes.
#include "lists/kxlistctrl_p.h"

#include "config/kprofile.h"
#include "platform/framework/mbstring.h"

#include <algorithm>
#include <vector>

using vx::lists::XRow;

namespace {

void CopyAttributes(XLISTCTRLDATA& cell, const CWordArray* attributes)
{
    if (attributes)
        cell.aTextAttributes.Copy(*attributes);
}

} // namespace

// --- cells ------------------------------------------------------------------------------------

BOOL KXListCtrl::SetItem(const LVITEMA* item)
{
    if (!item || !d->ValidCell(item->iItem, item->iSubItem))
        return FALSE;
    LVITEMA copy = *item;
    copy.mask &= ~LVIF_PARAM; // the item data belongs to the records
    if (item->mask & LVIF_PARAM)
        SetItemData(item->iItem, static_cast<DWORD_PTR>(item->lParam));
    if ((item->mask & LVIF_IMAGE))
        if (XLISTCTRLDATA* cell = d->Cell(item->iItem, item->iSubItem))
            cell->nImage = item->iImage;
    const BOOL done = CListCtrl::SetItem(&copy);
    UpdateSubItem(item->iItem, item->iSubItem);
    return done;
}

BOOL KXListCtrl::SetItemText(int row, int col, const char* text)
{
    if (!d->ValidCell(row, col))
        return FALSE;
    // The control repaints the cell when its text changed.
    return CListCtrl::SetItemText(row, col, text ? text : "");
}

BOOL KXListCtrl::SetItemText(int row, int col, const char* text, COLORREF textColor, COLORREF background,
                             const CWordArray* attributes)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->crText = textColor;
    cell->crBackground = background;
    CopyAttributes(*cell, attributes);
    return SetItemText(row, col, text);
}

CString KXListCtrl::GetItemText(int row, int col) const
{
    return CListCtrl::GetItemText(row, col);
}

CString KXListCtrl::GetComboText(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    return cell && cell->bCombo ? GetItemText(row, col) : CString();
}

BOOL KXListCtrl::SetItemImage(int row, int col, int image, const CWordArray* attributes)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->nImage = image;
    CopyAttributes(*cell, attributes);
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetIcon(int row, int col, int image)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    if (cell->nKind != XLC_KIND_ICON) {
        cell->FreePayload();
        cell->pPayload = new int(image);
        cell->nKind = XLC_KIND_ICON;
    } else {
        *cell->Icon() = image;
    }
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetBridge(int row, int col, int slot, int image)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    if (cell->nKind != XLC_KIND_BRIDGE) {
        cell->FreePayload();
        cell->pPayload = new XLC_BRIDGE;
        cell->nKind = XLC_KIND_BRIDGE;
    }
    XLC_BRIDGE& bridge = *cell->Bridge();
    if (slot < 0) {
        // The first free slot, or a new one at the end.
        slot = bridge.aUsed.GetSize();
        for (int i = 0; i < bridge.aUsed.GetSize(); ++i) {
            if (!bridge.aUsed[i]) {
                slot = i;
                break;
            }
        }
    }
    if (slot >= bridge.aUsed.GetSize()) {
        // Slots past the end come empty.
        bridge.aUsed.SetSize(slot + 1);
        bridge.aImages.SetSize(slot + 1);
    }
    bridge.aUsed[slot] = 1;
    bridge.aImages[slot] = static_cast<DWORD>(image);
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetComboBox(int row, int col, BOOL enable, XLC_COMBOFILL fill, DWORD_PTR data, int lines, int sort)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bCombo = enable;
    cell->pComboFill = fill;
    cell->dwComboData = data;
    cell->nComboLines = lines > 0 ? lines : 10;
    cell->nComboSort = sort;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetCheckbox(int row, int col, int state)
{
    if (!SetItemCheckedState(row, col, state))
        return FALSE;
    d->SetHeaderCheckFromCount(col);
    return TRUE;
}

int KXListCtrl::GetCheckbox(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    return d->ValidCell(row, col) && cell ? cell->nCheckedState : -1;
}

BOOL KXListCtrl::SetItemCheckedState(int row, int col, int state)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->nCheckedState = state;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetEdit(int row, int col, BOOL edit)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bEdit = edit;
    return TRUE;
}

BOOL KXListCtrl::SetProgress(int row, int col, BOOL showText, const char* format)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bProgress = TRUE;
    cell->nProgressPercent = 0;
    cell->bShowProgressText = showText;
    cell->strProgressText = format ? format : "";
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::UpdateProgress(int row, int col, int percent)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell || !cell->bProgress)
        return FALSE;
    cell->nProgressPercent = percent;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::DeleteProgress(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bProgress = FALSE;
    cell->nProgressPercent = 0;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetBold(int row, int col, BOOL bold)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bBold = bold;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::GetBold(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    return d->ValidCell(row, col) && cell ? cell->bBold : FALSE;
}

BOOL KXListCtrl::SetModified(int row, int col, BOOL modified)
{
    if (!SetModifiedFlag(row, col, modified))
        return FALSE;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::GetModified(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    return d->ValidCell(row, col) && cell ? cell->bModified : FALSE;
}

BOOL KXListCtrl::SetModifiedFlag(int row, int col, BOOL modified)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bModified = modified;
    return TRUE;
}

BOOL KXListCtrl::SetItemColors(int row, int col, COLORREF text, COLORREF background)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->crText = text;
    cell->crBackground = background;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::GetItemColors(int row, int col, COLORREF* text, COLORREF* background)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    if (text)
        *text = cell->crText;
    if (background)
        *background = cell->crBackground;
    return TRUE;
}

BOOL KXListCtrl::SetEnabled(int row, BOOL enabled)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!first)
        return FALSE;
    first->bEnabled = enabled;
    UpdateItem(row);
    return TRUE;
}

BOOL KXListCtrl::GetEnabled(int row)
{
    XLISTCTRLDATA* first = d->First(row);
    return first ? first->bEnabled : FALSE;
}

BOOL KXListCtrl::SetCellEditable(int row, int col, BOOL editable)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bCellEditable = editable;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetRowEditable(int row, BOOL editable)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!first)
        return FALSE;
    first->bRowEditable = editable;
    UpdateItem(row);
    return TRUE;
}

BOOL KXListCtrl::SetKeepColors(int row, int col, BOOL keep)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->bKeepColors = keep;
    UpdateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::SetItemToolTipText(int row, int col, const char* text)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!d->ValidCell(row, col) || !cell)
        return FALSE;
    cell->strToolTip = text ? text : "";
    return TRUE;
}

CString KXListCtrl::GetItemToolTipText(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    return d->ValidCell(row, col) && cell ? cell->strToolTip : CString();
}

BOOL KXListCtrl::SetItemData(int row, DWORD_PTR data)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!first)
        return FALSE;
    first->dwItemData = data;
    return TRUE;
}

DWORD_PTR KXListCtrl::GetItemData(int row)
{
    XLISTCTRLDATA* first = d->First(row);
    return first ? first->dwItemData : 0;
}

BOOL KXListCtrl::SetItemData2(int row, DWORD_PTR data)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!first)
        return FALSE;
    first->dwItemData2 = data;
    return TRUE;
}

DWORD_PTR KXListCtrl::GetItemData2(int row)
{
    XLISTCTRLDATA* first = d->First(row);
    return first ? first->dwItemData2 : 0;
}

BOOL KXListCtrl::SetItemDataArray(int row, int index, DWORD value)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!first || index < 0)
        return FALSE;
    first->aDataArray.SetAtGrow(index, value);
    return TRUE;
}

DWORD KXListCtrl::GetItemDataArray(int row, int index)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!first || index < 0 || index >= first->aDataArray.GetSize())
        return 0;
    return first->aDataArray[index];
}

XLISTCTRLDATA* KXListCtrl::GetItemXLCDData(int row, int col)
{
    return d->ValidCell(row, col) ? d->Cell(row, col) : nullptr;
}

BOOL KXListCtrl::UpdateItem(int row)
{
    if (row < 0 || row >= d->Count())
        return FALSE;
    for (int c = 0; c < GetColumns(); ++c)
        InvalidateSubItem(row, c);
    return TRUE;
}

BOOL KXListCtrl::UpdateSubItem(int row, int col)
{
    if (!d->ValidCell(row, col))
        return FALSE;
    InvalidateSubItem(row, col);
    return TRUE;
}

BOOL KXListCtrl::IsCellEditable(int row, int col)
{
    XLISTCTRLDATA* cell = d->Cell(row, col);
    XLISTCTRLDATA* first = d->First(row);
    if (!d->ValidCell(row, col) || !cell || !first)
        return FALSE;
    return first->bRowEditable && cell->bCellEditable;
}

// --- columns -------------------------------------------------------------------------------------

int KXListCtrl::GetColumns()
{
    return d->header.m_hWnd ? d->header.GetItemCount() : 0;
}

CString KXListCtrl::GetColumnName(int col)
{
    if (col < 0 || col >= GetColumns())
        return CString();
    char text[260] = {};
    LVCOLUMN column{};
    column.mask = LVCF_TEXT;
    column.pszText = text;
    column.cchTextMax = sizeof text;
    GetColumn(col, &column);
    return CString(text);
}

int KXListCtrl::FindColumn(const char* name)
{
    if (!name)
        return -1;
    for (int c = 0; c < GetColumns(); ++c) {
        if (_mbsicoll(GetColumnName(c), name) == 0)
            return c;
    }
    return -1;
}

void KXListCtrl::SetButtonColumn(int col, int on)
{
    d->buttonColumn = on ? col : -1;
    Invalidate(FALSE);
}

int KXListCtrl::GetButtonColumn() const
{
    return d->buttonColumn;
}

void KXListCtrl::EnableHeaderDrag(BOOL enable)
{
    const DWORD style = GetExtendedStyle();
    SetExtendedStyle(enable ? (style | LVS_EX_HEADERDRAGDROP) : (style & ~LVS_EX_HEADERDRAGDROP));
    d->header.EnableDrag(enable);
}

void KXListCtrl::Private::ShowHeaderCheck(int col)
{
    if (!header.m_hWnd || col < 0 || col >= header.GetItemCount())
        return;
    const int state = col < static_cast<int>(headerChecked.size()) ? headerChecked[static_cast<std::size_t>(col)] : 0;
    if (state != 0)
        header.ModifyStyle(0, HDS_CHECKBOXES);
    HDITEM item{};
    item.mask = HDI_FORMAT;
    header.GetItem(col, &item);
    item.fmt &= ~(HDF_CHECKBOX | HDF_CHECKED);
    if (state != 0)
        item.fmt |= HDF_CHECKBOX | (state == 2 ? HDF_CHECKED : 0);
    header.SetItem(col, &item);
}

int KXListCtrl::GetHeaderCheckedState(int col)
{
    if (col < 0 || col >= static_cast<int>(d->headerChecked.size()))
        return 0;
    return d->headerChecked[static_cast<std::size_t>(col)];
}

BOOL KXListCtrl::SetHeaderCheckedState(int col, int state)
{
    if (col < 0 || col >= GetColumns() || state < 0 || state > 2)
        return FALSE;
    if (static_cast<int>(d->headerChecked.size()) <= col)
        d->headerChecked.resize(static_cast<std::size_t>(col) + 1, 0);
    d->headerChecked[static_cast<std::size_t>(col)] = state;
    d->ShowHeaderCheck(col);
    return TRUE;
}

void KXListCtrl::Private::SetHeaderCheckFromCount(int col)
{
    if (q.GetHeaderCheckedState(col) == 0)
        return;
    q.SetHeaderCheckedState(col, q.CountCheckedItems(col) == Count() ? 2 : 1);
}

int KXListCtrl::CountCheckedItems(int col)
{
    int n = 0;
    for (int row = 0; row < d->Count(); ++row) {
        const XLISTCTRLDATA* cell = d->Cell(row, col);
        if (cell && cell->nCheckedState == 1)
            ++n;
    }
    return n;
}

int KXListCtrl::GetColumnMinWidth(int)
{
    return 0;
}

int KXListCtrl::ColumnMinimum(int column)
{
    return GetColumnMinWidth(column);
}

BOOL KXListCtrl::SetColumnWidth(int col, int width)
{
    if (width >= 0)
        width = std::max(width, GetColumnMinWidth(col));
    return CListCtrl::SetColumnWidth(col, width);
}

void KXListCtrl::InitSpaltenverwaltung(int id, CStringArray* names)
{
    const int key = id >= 0 ? id : GetSpaltenverwaltungID();
    if (key >= 0) {
        CString name;
        name.Format("%dcolmod", key);
        d->colMod = static_cast<int>(KProfile::GetProfileIntA("DialogState", name, 1, 0));
        name.Format("%dcolheight", key);
        d->colHeight = static_cast<int>(KProfile::GetProfileIntA("DialogState", name, 0xA0, 0));
        if (d->colMod == 0)
            d->colHeight = std::max(d->colHeight, 5);
    }
    KListCtrl::InitSpaltenverwaltung(id, names);
    d->selection.SetColumnCount(GetColumns());
}

void KXListCtrl::SetCallBackRefreshFunction(void* context, int (*refresh)(void*))
{
    d->refreshContext = context;
    d->refresh = refresh;
}

void KXListCtrl::DragColumn(int from, int to)
{
    ShowEdiBox(-1, -1, 0, -1);
    const int row = GetCurSel();
    DeleteAllItems();
    // The header's check boxes go with their columns.
    std::vector<int>& checks = d->headerChecked;
    if (static_cast<int>(checks.size()) < GetColumns())
        checks.resize(static_cast<std::size_t>(GetColumns()), 0);
    const bool moved = SpalteSchieben(from, to);
    if (moved && from < static_cast<int>(checks.size()) && to < static_cast<int>(checks.size())) {
        const int state = checks[static_cast<std::size_t>(from)];
        checks.erase(checks.begin() + from);
        checks.insert(checks.begin() + to, state);
        for (int c = 0; c < GetColumns(); ++c)
            d->ShowHeaderCheck(c);
    }
    InitSpaltenverwaltung(-1, nullptr);
    if (d->refresh)
        d->refresh(d->refreshContext);
    if (row >= 0 && row < d->Count())
        SetCurSel(row, 0);
}
