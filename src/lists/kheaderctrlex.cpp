#include "lists/kheaderctrlex.h"

#include "lists/kxlistctrl.h"

KHeaderCtrlEx::KHeaderCtrlEx() = default;
KHeaderCtrlEx::~KHeaderCtrlEx() = default;

void KHeaderCtrlEx::EnableDrag(BOOL enable)
{
    if (enable)
        ModifyStyle(0, HDS_DRAGDROP);
    else
        ModifyStyle(HDS_DRAGDROP, 0);
}

BOOL KHeaderCtrlEx::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    const auto* nm = reinterpret_cast<const NMHEADER*>(lParam);
    if (message == WM_NOTIFY && nm && nm->hdr.hwndFrom == m_hWnd && nm->hdr.code == HDN_ENDDRAG && m_list && nm->pitem) {
        // The list moves the column and refills; the header keeps its order.
        // The list keeps its columns in their shown order, so the place the
        // column goes to is the index it will have.
        const int from = nm->iItem;
        const int to = nm->pitem->iOrder;
        if (from != to && to >= 0 && to < GetItemCount())
            m_list->DragColumn(from, to);
        if (result)
            *result = TRUE;
        return TRUE;
    }
    return CHeaderCtrl::OnChildNotify(message, wParam, lParam, result);
}
