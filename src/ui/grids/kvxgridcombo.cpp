#include "ui/grids/kvxgridcombo.h"

#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>

KVxGridCombo::KVxGridCombo() = default;
KVxGridCombo::~KVxGridCombo() = default;

void KVxGridCombo::Start(const RECT& cell, const CStringArray& items, int selection)
{
    if (!m_hWnd)
        return;
    ResetContent();
    for (int i = 0; i < items.GetSize(); ++i)
        AddString(items[i]);
    SetCurSel(selection >= 0 && selection < items.GetSize() ? selection : -1);
    // The window's height beyond its field is the height of the dropped
    // list, as a template gave it.
    const int line = std::max(1, GetItemHeight(0));
    const int rows = std::max(1, std::min<int>(kVisibleItems, static_cast<int>(items.GetSize())));
    const int field = GetItemHeight(-1) + 6;
    const int width = std::max<int>(cell.right - cell.left, 20);
    MoveWindow(cell.left, cell.top, width, field + rows * line + 2, FALSE);
    // A narrow cell still shows its choices whole in the list.
    int widest = 0;
    {
        CClientDC dc(this);
        CFont* font = GetFont();
        CFont* old = font ? dc.SelectObject(font) : nullptr;
        for (int i = 0; i < items.GetSize(); ++i)
            widest = std::max<int>(widest, dc.GetTextExtent(items[i]).cx);
        if (old)
            dc.SelectObject(old);
    }
    const int scroll = items.GetSize() > rows ? GetSystemMetrics(SM_CXVSCROLL) : 0;
    SendMessage(CB_SETDROPPEDWIDTH, static_cast<WPARAM>(std::max(width, widest + 8 + scroll)));
    m_active = true;
    SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    SetFocus();
    ShowDropDown(TRUE);
}

void KVxGridCombo::Finish()
{
    m_active = false;
    if (!m_hWnd)
        return;
    if (GetDroppedState())
        ShowDropDown(FALSE);
    ShowWindow(SW_HIDE);
}

CString KVxGridCombo::GetChoice() const
{
    CString text;
    const int sel = GetCurSel();
    if (sel >= 0)
        GetLBText(sel, text);
    return text;
}
