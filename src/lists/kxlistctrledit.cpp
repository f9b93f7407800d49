// KXListCtrl: the in-place editors (text editor, combo, input box), the
// timers that end them, and the cells' tooltips.
#include "lists/kxlistctrl_p.h"

#include "platform/windows/windows.h"

#include <algorithm>
#include <cstring>

using namespace vx::lists;

namespace {

// Edit control styles by the column's alignment.
DWORD AlignStyle(CListCtrl& list, int col)
{
    LVCOLUMN column{};
    column.mask = LVCF_FMT;
    list.GetColumn(col, &column);
    switch (column.fmt & LVCFMT_JUSTIFYMASK) {
    case LVCFMT_RIGHT: return ES_RIGHT;
    case LVCFMT_CENTER: return ES_CENTER;
    default: return ES_LEFT;
    }
}

// Tools of the cells are numbered by row and column.
UINT_PTR ToolId(int row, int col)
{
    return (static_cast<UINT_PTR>(row) << 12) | static_cast<UINT_PTR>(col & 0xFFF);
}

} // namespace

void KXListCtrl::Private::Retire(std::unique_ptr<CWnd> window)
{
    if (!window)
        return;
    if (window->m_hWnd)
        window->DestroyWindow();
    retired.push_back(std::move(window));
    // Let them go once the handlers that may be running have returned.
    if (q.m_hWnd)
        q.PostMessage(ReleaseMessage());
}

void KXListCtrl::Private::FreeRetired()
{
    retired.clear();
}

BOOL KXListCtrl::IsEditOpen() const
{
    return d->edit && d->edit->m_hWnd;
}

BOOL KXListCtrl::IsComboOpen() const
{
    return d->combo && d->combo->m_hWnd;
}

BOOL KXListCtrl::IsEdiBoxOpen() const
{
    return d->boxOpen && d->box && d->box->m_hWnd;
}

CWnd* KXListCtrl::GetEdiBox() const
{
    return IsEdiBoxOpen() ? d->box.get() : nullptr;
}

CWnd* KXListCtrl::GetEditWindow() const
{
    return IsEditOpen() ? d->edit.get() : nullptr;
}

CWnd* KXListCtrl::GetComboWindow() const
{
    return IsComboOpen() ? d->combo.get() : nullptr;
}

// --- the text editor ---------------------------------------------------------------------------

void KXListCtrl::DrawEdit(int row, int col)
{
    if (!d->ValidCell(row, col) || CListCtrl::GetColumnWidth(col) < 5 || !GetEnabled(row))
        return;
    if (IsEditOpen())
        OnXEditKillFocus(0, 0);
    EnsureVisible(row, FALSE);
    CRect cell;
    GetSubItemRect(row, col, LVIR_BOUNDS, cell);
    CRect client;
    GetClientRect(&client);
    if (cell.left < client.left || cell.left >= client.right) {
        Scroll(CSize(cell.left - client.left, 0));
        GetSubItemRect(row, col, LVIR_BOUNDS, cell);
    }
    const DWORD style = 0x50000080 | AlignStyle(*this, col);
    CRect place(cell.left + 2, cell.top, cell.left + 2 + CListCtrl::GetColumnWidth(col) - 4, cell.bottom + 1);
    place &= client;
    d->editOld = GetItemText(row, col);
    d->editRow = row;
    d->editCol = col;
    auto editor = std::make_unique<TextEditor>(*this);
    if (!editor->CreateEx(d->editOld, "Edit", style, place, this, kEditId))
        return;
    editor->SendMessage(WM_SETFONT, SendMessage(WM_GETFONT), FALSE);
    editor->SetSel(0, -1);
    d->edit = std::move(editor);
    d->edit->SetFocus();
}

void KXListCtrl::Private::CloseEdit()
{
    Retire(std::move(edit));
}

LRESULT KXListCtrl::OnXEditKillFocus(WPARAM, LPARAM)
{
    if (!IsEditOpen())
        return 0;
    const int row = d->editRow;
    const int col = d->editCol;
    CString text = d->edit->GetWindowTextString();
    if (text.IsEmpty())
        text = d->editOld; // an emptied editor keeps what was there
    const bool focused = GetFocus() == d->edit.get();
    d->CloseEdit();
    if (focused)
        SetFocus();
    SetItemText(row, col, text);
    if (text != d->editOld) {
        SetModified(row, col, TRUE);
        d->listModified = TRUE;
    }
    UpdateSubItem(row, col);
    if (HWND target = d->Target())
        ::SendMessageA(target, WM_XLISTCTRL_EDIT_END, static_cast<WPARAM>(row), col);
    return 0;
}

LRESULT KXListCtrl::OnXEditEscape(WPARAM, LPARAM)
{
    if (!IsEditOpen())
        return 0;
    const int row = d->editRow;
    const int col = d->editCol;
    d->CloseEdit();
    SetFocus();
    SetItemText(row, col, d->editOld);
    UpdateSubItem(row, col);
    return 0;
}

// --- the combo -------------------------------------------------------------------------------------

void KXListCtrl::Private::CloseCombo()
{
    if (!combo)
        return;
    const int row = comboRow;
    const int col = comboCol;
    Retire(std::move(combo));
    q.UpdateSubItem(row, col);
}

void KXListCtrl::DrawComboBox(int row, int col)
{
    if (!d->ValidCell(row, col) || CListCtrl::GetColumnWidth(col) < 5 || !GetEnabled(row))
        return;
    if (IsComboOpen()) {
        KillTimer(kTimerComboEscape);
        KillTimer(kTimerComboComplete);
        d->CloseCombo();
    }
    XLISTCTRLDATA* cell = d->Cell(row, col);
    CRect r;
    GetSubItemRect(row, col, LVIR_BOUNDS, r);
    r.top -= 1;
    if (r.Width() < 0x37)
        r.right = r.left + 0x37;
    ClientToScreen(&r);
    r.left += 1;
    d->comboRow = row;
    d->comboCol = col;
    d->comboRect = r;
    if (!cell || !cell->pComboFill)
        return;
    CArray<ComboItem, ComboItem&> items;
    cell->pComboFill(cell->dwComboData, this, row, col, &items);
    cell = d->Cell(row, col); // the callback may have changed the list
    if (!cell || !m_hWnd)
        return;
    auto combo = std::make_unique<SuperComboBox>(*this);
    // The window reaches down as far as its lines, so that its list drops there.
    const int lines = std::max(1, cell->nComboLines);
    CRect place = r;
    place.bottom = r.top + r.Height() + lines * std::max(1, r.Height() - 2) + 4;
    if (!combo->CreateEx("", "SuperComboBox", 0x90000003, place, this, 0, 0x10000))
        return;
    combo->SendMessage(WM_SETFONT, SendMessage(WM_GETFONT), FALSE);
    // Nothing of the list flickers while the combo comes up.
    SetRedraw(FALSE);
    d->locked = true;
    for (int i = 0; i < items.GetSize(); ++i) {
        ComboItem& item = items[i];
        if (item.strText.IsEmpty())
            continue;
        const int at = combo->AddString(item.strText);
        combo->SetItemData(at, item.dwData);
        combo->values.push_back(item);
    }
    const CString present = GetItemText(row, col);
    int selected = present.IsEmpty() ? -1 : combo->FindStringExact(-1, present);
    if (selected < 0 && combo->GetCount() > 0) {
        selected = 0;
        if (present.IsEmpty()) {
            CString first;
            combo->GetLBText(0, first);
            SetItemText(row, col, first);
        }
    }
    if (selected >= 0)
        combo->SetCurSel(selected);
    d->comboOld.Empty();
    if (selected >= 0)
        combo->GetLBText(selected, d->comboOld);
    d->combo = std::move(combo);
    SetTimer(kTimerUnlock, kTimerDelay);
    d->combo->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    d->combo->SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    d->combo->SetFocus();
    if (d->combo && d->combo->m_hWnd)
        d->combo->ShowDropDown(TRUE);
}

LRESULT KXListCtrl::OnComboEscape(WPARAM, LPARAM)
{
    SetTimer(kTimerComboEscape, kTimerDelay);
    return 0;
}

LRESULT KXListCtrl::OnComboComplete(WPARAM, LPARAM)
{
    SetTimer(kTimerComboComplete, kTimerDelay);
    return 0;
}

void KXListCtrl::OnTimer(UINT_PTR id)
{
    switch (id) {
    case kTimerUnlock:
        KillTimer(id);
        if (d->locked) {
            d->locked = false;
            SetRedraw(TRUE);
        }
        return;
    case kTimerComboEscape:
        KillTimer(id);
        d->CloseCombo();
        return;
    case kTimerComboComplete: {
        KillTimer(id);
        if (!IsComboOpen())
            return;
        const int row = d->comboRow;
        const int col = d->comboCol;
        const int index = d->combo->GetCurSel();
        CString text;
        if (index >= 0)
            d->combo->GetLBText(index, text);
        XLISTCTRL_COMBOSELECTION record{row, col, this, index >= 0 ? d->combo->GetItemData(index) : 0};
        // The list may have changed in the 50 ms.
        if (d->ValidCell(row, col)) {
            SetItemText(row, col, text);
            if (text != d->comboOld) {
                SetModified(row, col, TRUE);
                d->listModified = TRUE;
            }
            UpdateSubItem(row, col);
        }
        if (HWND target = d->Target())
            ::SendMessageA(target, WM_XLISTCTRL_COMBO_SELECTION, 0, reinterpret_cast<LPARAM>(&record));
        d->CloseCombo();
        if (m_hWnd)
            SetFocus();
        return;
    }
    case kTimerComboWrite: {
        KillTimer(id);
        if (!IsComboOpen() || !d->ValidCell(d->comboRow, d->comboCol))
            return;
        const int index = d->combo->GetCurSel();
        CString text;
        if (index >= 0)
            d->combo->GetLBText(index, text);
        SetItemText(d->comboRow, d->comboCol, text);
        return;
    }
    default:
        KListCtrl::OnTimer(id);
        return;
    }
}

// --- the input box ---------------------------------------------------------------------------------

void KXListCtrl::ShowEdiBox(int row, int col, int show, int limit)
{
    if (!show || d->boxOpen) {
        d->boxOpen = FALSE;
        if (d->box) {
            d->box->open = false;
            const bool focused = GetFocus() == d->box.get();
            d->Retire(std::move(d->box));
            if (focused && m_hWnd)
                SetFocus();
        }
        return;
    }
    EnsureVisible(row, FALSE);
    d->boxRow = row;
    d->boxCol = col;
    if (!d->ValidCell(row, col))
        return;
    CRect cell;
    GetSubItemRect(row, col, LVIR_BOUNDS, cell);
    CRect client;
    GetClientRect(&client);
    if (cell.left < client.left || cell.right > client.right) {
        // The cell comes in, starting 4 pixels inside.
        Scroll(CSize(cell.left - client.left - 4, 0));
        GetSubItemRect(row, col, LVIR_BOUNDS, cell);
    }
    CRect bounds;
    CListCtrl::GetItemRect(row, &bounds, LVIR_BOUNDS);
    CRect place(cell.left, bounds.top, cell.left + CListCtrl::GetColumnWidth(col), bounds.bottom);
    place &= client;
    const CString text = GetItemText(row, col);
    auto box = std::make_unique<InputBox>(*this);
    if (!box->CreateEx("", "Edit", 0x50800080, place, this, kEdiBoxId))
        return;
    CFont* font = GetFont();
    if (!font && GetParent())
        font = GetParent()->GetFont();
    box->SetFont(font, FALSE);
    box->ShowWindow(SW_SHOW);
    box->SetWindowText(text);
    box->SendMessage(EM_SETSEL, 0, -1);
    box->SendMessage(EM_SCROLLCARET);
    d->boxText = text;
    d->box = std::move(box);
    d->boxOpen = TRUE;
    d->box->SetFocus();
    if (limit != -1 && d->box)
        d->box->SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(limit));
}

void KXListCtrl::EditCurrentRecord(int row, int col, int limit)
{
    if (!IsCellEditable(row, col))
        return;
    ShowEdiBox(d->boxRow, d->boxCol, 0, limit);
    ShowEdiBox(row, col, 1, limit);
}

CString KXListCtrl::Private::BoxText() const
{
    if (!box || !box->m_hWnd)
        return CString();
    char text[256] = {};
    box->GetWindowText(text, sizeof text);
    return CString(text);
}

void KXListCtrl::Private::MarkBox()
{
    if (boxOpen && BoxText() != boxText) {
        if (XLISTCTRLDATA* first = First(boxRow)) {
            first->bModified = TRUE;
            listModified = TRUE;
            q.UpdateItem(boxRow);
        }
    }
}

LRESULT KXListCtrl::OnEditProc(WPARAM key, LPARAM)
{
    if (!d->boxOpen || !d->box)
        return 1;
    CString text = d->BoxText();
    const int row = d->boxRow;
    const int col = d->boxCol;
    switch (key) {
    case VK_TAB: {
        const bool back = GetKeyState(VK_SHIFT) < 0;
        if (back && (col - 1 < 0 || col - 1 == d->buttonColumn))
            return 1; // the box stays open and takes the key
        d->box->SetSel(-1, 0);
        d->MarkBox();
        ShowEdiBox(row, col, 0, -1);
        // Walk along the row to the next editable cell; past the row's
        // last (or first) column there is none.
        const int step = back ? -1 : 1;
        for (int c = col + step; c >= 0 && c < GetColumns(); c += step) {
            if (IsCellEditable(row, c)) {
                ShowEdiBox(row, c, 1, -1);
                break;
            }
        }
        return 0;
    }
    case VK_RETURN:
    case VK_DOWN:
    case VK_UP: {
        d->box->SetSel(-1, 0);
        d->MarkBox();
        ShowEdiBox(row, col, 0, -1);
        const int step = key == VK_UP ? -1 : 1;
        for (int r = row + step; r >= 0 && r < d->Count(); r += step) {
            if (IsCellEditable(r, col)) {
                ShowEdiBox(r, col, 1, -1);
                break;
            }
        }
        return 0;
    }
    case VK_ESCAPE: {
        d->box->SetSel(-1, 0);
        d->MarkBox();
        // Escape keeps what was typed: the parent is asked to write it.
        XLISTCTRL_CHANGE change{row, col, this, 0};
        CWnd* parent = GetParent();
        const HWND self = m_hWnd;
        ShowEdiBox(row, col, 0, -1);
        if (parent && IsWindow(self))
            parent->SendMessage(WM_XLISTCTRL_SETTEXT, reinterpret_cast<WPARAM>(&change),
                                reinterpret_cast<LPARAM>(static_cast<const char*>(text)));
        return 0;
    }
    default:
        return 1;
    }
}

// --- scrolling and the frame -----------------------------------------------------------------------

void KXListCtrl::OnHScroll(UINT code, UINT pos)
{
    ShowEdiBox(-1, -1, 0, -1);
    POINT before{};
    GetOrigin(&before);
    KListCtrl::DefWindowProc(WM_HSCROLL, MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(pos)), 0);
    POINT after{};
    GetOrigin(&after);
    if (after.x != before.x)
        Invalidate(FALSE);
}

void KXListCtrl::OnNcLButtonDown(UINT hitTest, CPoint point)
{
    if (IsEditOpen())
        OnXEditKillFocus(0, 0);
    KListCtrl::OnNcLButtonDown(hitTest, point);
}

// --- tooltips ----------------------------------------------------------------------------------------

INT_PTR KXListCtrl::OnToolHitTest(CPoint point, TOOLINFO* info)
{
    int row = -1;
    int col = -1;
    if (!HitXTest(point, &row, &col) || col < 0)
        return -1;
    const XLISTCTRLDATA* cell = d->Cell(row, col);
    if (!cell || cell->strToolTip.IsEmpty())
        return -1;
    if (info) {
        CRect r;
        GetSubItemRect(row, col, LVIR_BOUNDS, r);
        info->hwnd = m_hWnd;
        info->uId = ToolId(row, col);
        info->rect = r;
        info->lpszText = LPSTR_TEXTCALLBACK;
    }
    return static_cast<INT_PTR>(ToolId(row, col));
}

BOOL KXListCtrl::OnToolTipText(UINT, NMHDR* header, LRESULT* result)
{
    if (!header || header->code != TTN_NEEDTEXTA)
        return FALSE;
    auto* info = reinterpret_cast<NMTTDISPINFOA*>(header);
    const UINT_PTR id = header->idFrom;
    const int row = static_cast<int>(id >> 12);
    const int col = static_cast<int>(id & 0xFFF);
    const CString text = GetItemToolTipText(row, col);
    const std::size_t n = std::min<std::size_t>(static_cast<std::size_t>(text.GetLength()), sizeof info->szText - 1);
    std::memcpy(info->szText, static_cast<const char*>(text), n);
    info->szText[n] = '\0';
    info->lpszText = info->szText;
    info->hinst = nullptr;
    if (result)
        *result = 0;
    return TRUE;
}

void KXListCtrl::Private::UpdateTip(CPoint point)
{
    TOOLINFO info{};
    const INT_PTR id = q.OnToolHitTest(point, &info);
    const int row = id < 0 ? -1 : static_cast<int>(static_cast<UINT_PTR>(id) >> 12);
    const int col = id < 0 ? -1 : static_cast<int>(static_cast<UINT_PTR>(id) & 0xFFF);
    if (row == tipRow && col == tipCol)
        return;
    tipRow = row;
    tipCol = col;
    if (!tip.m_hWnd) {
        if (id < 0)
            return;
        tip.Create(&q);
        tip.AddTool(&q, "");
    }
    CString text;
    if (id >= 0) {
        NMTTDISPINFOA request{};
        request.hdr.hwndFrom = tip.m_hWnd;
        request.hdr.idFrom = static_cast<UINT_PTR>(id);
        request.hdr.code = TTN_NEEDTEXTA;
        LRESULT result = 0;
        if (q.OnToolTipText(static_cast<UINT>(id), &request.hdr, &result) && request.lpszText)
            text = request.lpszText;
    }
    tip.UpdateTipText(text, &q);
}
