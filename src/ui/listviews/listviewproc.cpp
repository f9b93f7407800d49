// CListCtrl: the window procedure of the list view, its items, columns and states.
#include "ui/listviews/clistctrl_p.h"

#include "ui/gdi/cdc.h"
#include "ui/images/cimagelist.h"
#include "ui/listviews/commonctrl_p.h"

#include "platform/framework/mbstring.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstring>

using vx::listviews::Column;
using vx::listviews::Item;

namespace {

// Whether two texts are the same. Inline: a changed cell mostly differs in
// its first bytes, and a block paste asks for every cell.
bool SameText(const char* a, const char* b)
{
    for (; *a == *b; ++a, ++b) {
        if (!*a)
            return true;
    }
    return false;
}

void CopyOut(const CString& text, LPSTR out, int capacity)
{
    if (!out || capacity <= 0)
        return;
    const int n = std::min(text.GetLength(), capacity - 1);
    std::memcpy(out, static_cast<const char*>(text), static_cast<std::size_t>(n));
    out[n] = '\0';
}

} // namespace

CString CListCtrl::Private::TextOf(int item, int column) const
{
    const Item& it = *items[static_cast<std::size_t>(item)];
    return static_cast<std::size_t>(column) < it.texts.size() ? it.texts[static_cast<std::size_t>(column)] : CString();
}

bool CListCtrl::Private::SetText(int item, int column, const char* text)
{
    const int columnCount = static_cast<int>(columns.size());
    if (!Valid(item) || column < 0 || (column > 0 && column >= columnCount))
        return false;
    Item& it = *items[static_cast<std::size_t>(item)];
    const std::size_t need = static_cast<std::size_t>(std::max(column + 1, columnCount));
    if (it.texts.size() < need)
        it.texts.resize(need);
    CString& now = it.texts[static_cast<std::size_t>(column)];
    const char* fresh = text ? text : "";
    if (!SameText(now, fresh)) {
        now = fresh;
        InvalidateCell(item, column);
    }
    return true;
}

LRESULT CListCtrl::Private::Notify(UINT code, NMHDR* hdr) const
{
    return vx::listviews::Notify(q, code, hdr);
}

LRESULT CListCtrl::Private::NotifyList(UINT code, int item, int subItem, UINT newState, UINT oldState, UINT changed,
                                       CPoint action, LPARAM lParam) const
{
    NMLISTVIEW nm{};
    nm.iItem = item;
    nm.iSubItem = subItem;
    nm.uNewState = newState;
    nm.uOldState = oldState;
    nm.uChanged = changed;
    nm.ptAction = action;
    nm.lParam = lParam;
    return Notify(code, &nm.hdr);
}

bool CListCtrl::Private::ChangeStateOne(int item, UINT state, UINT mask)
{
    Item& it = *items[static_cast<std::size_t>(item)];
    const UINT old = it.state;
    UINT fresh = (old & ~mask) | (state & mask);
    if (fresh == old)
        return false;
    if ((q.GetStyle() & LVS_SINGLESEL) && (fresh & LVIS_SELECTED) && !(old & LVIS_SELECTED)) {
        // One selected item at most: the others let go first.
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (static_cast<int>(i) != item && (items[i]->state & LVIS_SELECTED))
                ChangeStateOne(static_cast<int>(i), 0, LVIS_SELECTED);
        }
        if (!Valid(item))
            return false;
    }
    const HWND self = q.m_hWnd;
    if (NotifyList(LVN_ITEMCHANGING, item, 0, fresh, old, LVIF_STATE, CPoint(), it.lParam) || !IsWindow(self) ||
        !Valid(item))
        return false;
    Item& now = *items[static_cast<std::size_t>(item)];
    now.state = (now.state & ~mask) | (state & mask);
    fresh = now.state;
    if ((fresh & LVIS_FOCUSED) && !(old & LVIS_FOCUSED)) {
        // The focus is on one item only.
        const int was = focus;
        focus = item;
        if (Valid(was) && was != item && (items[static_cast<std::size_t>(was)]->state & LVIS_FOCUSED))
            ChangeStateOne(was, 0, LVIS_FOCUSED);
    } else if (!(fresh & LVIS_FOCUSED) && focus == item) {
        focus = -1;
    }
    q.RedrawItemState(item);
    NotifyList(LVN_ITEMCHANGED, item, 0, fresh, old, LVIF_STATE, CPoint(), now.lParam);
    return true;
}

bool CListCtrl::Private::ChangeState(int item, UINT state, UINT mask)
{
    if (item != -1)
        return Valid(item) && ChangeStateOne(item, state, mask);
    bool any = false;
    for (std::size_t i = 0; i < items.size(); ++i)
        any = ChangeStateOne(static_cast<int>(i), state, mask) || any;
    return any;
}

void CListCtrl::Private::SelectOnly(int item)
{
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (static_cast<int>(i) != item && (items[i]->state & LVIS_SELECTED))
            ChangeStateOne(static_cast<int>(i), 0, LVIS_SELECTED);
    }
    if (Valid(item))
        ChangeStateOne(item, LVIS_SELECTED, LVIS_SELECTED);
}

void CListCtrl::Private::SelectRange(int from, int to, bool keepOthers)
{
    if (from < 0)
        from = to;
    const int lo = std::min(from, to);
    const int hi = std::max(from, to);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const int n = static_cast<int>(i);
        const bool in = n >= lo && n <= hi;
        if (in)
            ChangeStateOne(n, LVIS_SELECTED, LVIS_SELECTED);
        else if (!keepOthers && (items[i]->state & LVIS_SELECTED))
            ChangeStateOne(n, 0, LVIS_SELECTED);
    }
}

LRESULT CListCtrl::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    Private& p = *d;
    const int count = static_cast<int>(p.items.size());
    const int columnCount = static_cast<int>(p.columns.size());
    switch (message) {
    case WM_CREATE: {
        const LRESULT r = CWnd::DefWindowProc(message, wParam, lParam);
        p.bkColor = GetSysColor(COLOR_WINDOW);
        p.textColor = GetSysColor(COLOR_WINDOWTEXT);
        p.textBkColor = GetSysColor(COLOR_WINDOW);
        const DWORD buttons = (GetStyle() & LVS_NOSORTHEADER) ? 0 : HDS_BUTTONS;
        p.header->Create(WS_CHILD | HDS_HORZ | buttons, CRect(0, 0, 0, 0), this, 0);
        p.RecomputeRowHeight();
        p.Relayout();
        return r;
    }
    case WM_SIZE:
        p.Relayout();
        return 0;
    case WM_SETFONT: {
        CWnd::DefWindowProc(message, wParam, lParam);
        if (p.header->m_hWnd)
            p.header->SendMessage(WM_SETFONT, wParam, lParam);
        p.RecomputeRowHeight();
        p.Relayout();
        p.InvalidateAll();
        return 0;
    }
    case WM_SETREDRAW:
        p.redraw = wParam != 0;
        if (p.redraw) {
            std::vector<CRect> held;
            held.swap(p.held);
            for (const CRect& r : held)
                InvalidateRect(&r, FALSE);
            p.UpdateBars();
            if (p.barsDirty) {
                p.barsDirty = false;
                p.InvalidateBars();
            }
        }
        return 0;
    case WM_SYSCOLORCHANGE:
        p.InvalidateAll();
        return 0;

    // --- columns ---------------------------------------------------------------------
    case LVM_INSERTCOLUMNA: {
        const auto* in = reinterpret_cast<const LVCOLUMN*>(lParam);
        if (!in)
            return -1;
        const int index = std::clamp(static_cast<int>(wParam), 0, columnCount);
        Column c;
        if (in->mask & LVCF_FMT)
            c.fmt = in->fmt;
        // As on the original, the first column is always left aligned.
        if (index == 0)
            c.fmt &= ~LVCFMT_JUSTIFYMASK;
        if (in->mask & LVCF_WIDTH)
            c.width = std::max(0, in->cx);
        if (in->mask & LVCF_TEXT)
            c.text = in->pszText ? in->pszText : "";
        if (in->mask & LVCF_IMAGE)
            c.image = in->iImage;
        c.subItem = (in->mask & LVCF_SUBITEM) ? in->iSubItem : index;
        p.columns.insert(p.columns.begin() + index, c);
        for (auto& it : p.items) {
            if (static_cast<std::size_t>(index) < it->texts.size())
                it->texts.insert(it->texts.begin() + index, CString());
        }
        for (int& o : p.order) {
            if (o >= index)
                ++o;
        }
        int position = static_cast<int>(p.order.size());
        if (in->mask & LVCF_ORDER)
            position = std::clamp(in->iOrder, 0, position);
        p.order.insert(p.order.begin() + position, index);
        if (p.header->m_hWnd) {
            HDITEM h{};
            h.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT | HDI_ORDER;
            h.pszText = const_cast<LPSTR>(static_cast<const char*>(c.text));
            h.cxy = c.width;
            h.fmt = HDF_STRING | (c.fmt & LVCFMT_JUSTIFYMASK);
            h.iOrder = position;
            if (c.image >= 0) {
                h.mask |= HDI_IMAGE;
                h.fmt |= HDF_IMAGE;
                h.iImage = c.image;
            }
            p.header->InsertItem(index, &h);
        }
        p.RecomputeColumns();
        p.InvalidateAll();
        p.Relayout();
        return index;
    }
    case LVM_DELETECOLUMN: {
        const int index = static_cast<int>(wParam);
        if (index < 0 || index >= columnCount)
            return FALSE;
        p.columns.erase(p.columns.begin() + index);
        for (auto& it : p.items) {
            if (static_cast<std::size_t>(index) < it->texts.size())
                it->texts.erase(it->texts.begin() + index);
        }
        p.order.erase(std::remove(p.order.begin(), p.order.end(), index), p.order.end());
        for (int& o : p.order) {
            if (o > index)
                --o;
        }
        if (p.header->m_hWnd)
            p.header->DeleteItem(index);
        p.RecomputeColumns();
        p.InvalidateAll();
        p.Relayout();
        return TRUE;
    }
    case LVM_GETCOLUMNA: {
        auto* out = reinterpret_cast<LVCOLUMN*>(lParam);
        const int index = static_cast<int>(wParam);
        if (!out || index < 0 || index >= columnCount)
            return FALSE;
        const Column& c = p.columns[static_cast<std::size_t>(index)];
        if (out->mask & LVCF_FMT)
            out->fmt = c.fmt;
        if (out->mask & LVCF_WIDTH)
            out->cx = c.width;
        if (out->mask & LVCF_TEXT)
            CopyOut(c.text, out->pszText, out->cchTextMax);
        if (out->mask & LVCF_SUBITEM)
            out->iSubItem = c.subItem;
        if (out->mask & LVCF_IMAGE)
            out->iImage = c.image;
        if (out->mask & LVCF_ORDER) {
            const auto at = std::find(p.order.begin(), p.order.end(), index);
            out->iOrder = static_cast<int>(at - p.order.begin());
        }
        return TRUE;
    }
    case LVM_SETCOLUMNA: {
        const auto* in = reinterpret_cast<const LVCOLUMN*>(lParam);
        const int index = static_cast<int>(wParam);
        if (!in || index < 0 || index >= columnCount)
            return FALSE;
        Column& c = p.columns[static_cast<std::size_t>(index)];
        HDITEM h{};
        if (in->mask & LVCF_FMT) {
            c.fmt = index == 0 ? (in->fmt & ~LVCFMT_JUSTIFYMASK) : in->fmt;
            h.mask |= HDI_FORMAT;
            h.fmt = HDF_STRING | (c.fmt & LVCFMT_JUSTIFYMASK) | (c.image >= 0 ? HDF_IMAGE : 0);
        }
        if (in->mask & LVCF_WIDTH) {
            c.width = std::max(0, in->cx);
            h.mask |= HDI_WIDTH;
            h.cxy = c.width;
        }
        if (in->mask & LVCF_TEXT) {
            c.text = in->pszText ? in->pszText : "";
            h.mask |= HDI_TEXT;
            h.pszText = const_cast<LPSTR>(static_cast<const char*>(c.text));
        }
        if (in->mask & LVCF_SUBITEM)
            c.subItem = in->iSubItem;
        if (in->mask & LVCF_IMAGE) {
            c.image = in->iImage;
            h.mask |= HDI_IMAGE | HDI_FORMAT;
            h.iImage = c.image;
            h.fmt = HDF_STRING | (c.fmt & LVCFMT_JUSTIFYMASK) | (c.image >= 0 ? HDF_IMAGE : 0);
        }
        if (h.mask && p.header->m_hWnd)
            p.header->SetItem(index, &h);
        p.RecomputeColumns();
        p.InvalidateAll();
        p.Relayout();
        return TRUE;
    }
    case LVM_GETCOLUMNWIDTH: {
        const int index = static_cast<int>(wParam);
        return index >= 0 && index < columnCount ? p.columns[static_cast<std::size_t>(index)].width : 0;
    }
    case LVM_SETCOLUMNWIDTH: {
        const int index = static_cast<int>(wParam);
        if (index < 0 || index >= columnCount)
            return FALSE;
        int width = static_cast<int>(lParam);
        if (width == LVSCW_AUTOSIZE || width == LVSCW_AUTOSIZE_USEHEADER) {
            // The widest text of the column, with the room the cells leave.
            const Column& c = p.columns[static_cast<std::size_t>(index)];
            width = 0;
            HDC dc = CreateCompatibleDC(nullptr);
            HGDIOBJ old = SelectObject(dc, vx::listviews::FontOf(*this));
            auto measure = [dc](const CString& text) {
                SIZE s{};
                GetTextExtentPoint32A(dc, text, text.GetLength(), &s);
                return static_cast<int>(s.cx);
            };
            for (int i = 0; i < count; ++i)
                width = std::max(width, measure(p.TextOf(i, index)) + 12);
            if (index == 0)
                width += p.ImageWidth(LVSIL_SMALL) + ((p.exStyle & LVS_EX_CHECKBOXES) ? 16 : 0);
            if (static_cast<int>(lParam) == LVSCW_AUTOSIZE_USEHEADER)
                width = std::max(width, measure(c.text) + 12);
            SelectObject(dc, old);
            DeleteDC(dc);
        }
        LVCOLUMN info{};
        info.mask = LVCF_WIDTH;
        info.cx = width;
        return SendMessage(LVM_SETCOLUMNA, wParam, reinterpret_cast<LPARAM>(&info));
    }
    case LVM_GETCOLUMNORDERARRAY: {
        auto* out = reinterpret_cast<int*>(lParam);
        if (!out || static_cast<std::size_t>(wParam) != p.order.size())
            return FALSE;
        std::copy(p.order.begin(), p.order.end(), out);
        return TRUE;
    }
    case LVM_SETCOLUMNORDERARRAY: {
        auto* in = reinterpret_cast<int*>(lParam);
        if (!in || static_cast<std::size_t>(wParam) != p.order.size())
            return FALSE;
        if (p.header->m_hWnd && !p.header->SetOrderArray(static_cast<int>(wParam), in))
            return FALSE;
        p.order.assign(in, in + wParam);
        p.RecomputeColumns();
        p.InvalidateAll();
        return TRUE;
    }
    case LVM_GETHEADER:
        return reinterpret_cast<LRESULT>(p.header->m_hWnd);

    // --- items ---------------------------------------------------------------------------
    case LVM_GETITEMCOUNT:
        return count;
    case LVM_SETITEMCOUNT:
        p.items.reserve(static_cast<std::size_t>(wParam));
        return TRUE;
    case LVM_INSERTITEMA: {
        const auto* in = reinterpret_cast<const LVITEM*>(lParam);
        if (!in || in->iSubItem != 0)
            return -1;
        auto item = std::make_unique<Item>();
        if ((in->mask & LVIF_TEXT) && in->pszText) {
            item->texts.resize(static_cast<std::size_t>(std::max(1, columnCount)));
            item->texts[0] = in->pszText;
        }
        if (in->mask & LVIF_IMAGE)
            item->image = in->iImage;
        if (in->mask & LVIF_PARAM)
            item->lParam = in->lParam;
        if (in->mask & LVIF_INDENT)
            item->indent = in->iIndent;
        int index = std::clamp(in->iItem, 0, count);
        if (GetStyle() & (LVS_SORTASCENDING | LVS_SORTDESCENDING)) {
            const bool down = (GetStyle() & LVS_SORTDESCENDING) != 0;
            const CString text = item->texts.empty() ? CString() : item->texts[0];
            index = 0;
            while (index < count) {
                const int cmp = _mbsicoll(static_cast<const char*>(text), static_cast<const char*>(p.TextOf(index, 0)));
                if (down ? cmp > 0 : cmp < 0)
                    break;
                ++index;
            }
        }
        const UINT state = (in->mask & LVIF_STATE) ? (in->state & in->stateMask) : 0;
        p.items.insert(p.items.begin() + index, std::move(item));
        if (p.focus >= index)
            ++p.focus;
        if (p.mark >= index)
            ++p.mark;
        p.InvalidateFrom(index);
        p.UpdateBars();
        const HWND self = m_hWnd;
        p.NotifyList(LVN_INSERTITEM, index);
        if (!IsWindow(self))
            return -1;
        if (state && p.Valid(index)) {
            LVITEM s{};
            s.state = state;
            s.stateMask = in->stateMask;
            SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&s));
        }
        return index;
    }
    case LVM_DELETEITEM: {
        const int index = static_cast<int>(wParam);
        if (!p.Valid(index))
            return FALSE;
        const HWND self = m_hWnd;
        p.NotifyList(LVN_DELETEITEM, index, 0, 0, 0, 0, CPoint(), p.items[static_cast<std::size_t>(index)]->lParam);
        if (!IsWindow(self) || !p.Valid(index))
            return FALSE;
        p.InvalidateFrom(index);
        p.items.erase(p.items.begin() + index);
        if (p.focus == index)
            p.focus = -1;
        else if (p.focus > index)
            --p.focus;
        if (p.mark == index)
            p.mark = -1;
        else if (p.mark > index)
            --p.mark;
        if (p.pressItem == index)
            p.pressItem = -1;
        p.UpdateBars();
        return TRUE;
    }
    case LVM_DELETEALLITEMS: {
        if (p.items.empty())
            return TRUE;
        const HWND self = m_hWnd;
        // An answer of TRUE to LVN_DELETEALLITEMS spares the notice per item.
        const bool quiet = p.NotifyList(LVN_DELETEALLITEMS, -1) != 0;
        if (!IsWindow(self))
            return FALSE;
        if (!quiet) {
            for (std::size_t i = 0; i < p.items.size(); ++i) {
                p.NotifyList(LVN_DELETEITEM, static_cast<int>(i), 0, 0, 0, 0, CPoint(), p.items[i]->lParam);
                if (!IsWindow(self))
                    return FALSE;
            }
        }
        p.items.clear();
        p.focus = p.mark = p.pressItem = -1;
        p.top = 0;
        p.InvalidateAll();
        p.UpdateBars();
        return TRUE;
    }
    case LVM_GETITEMA: {
        auto* out = reinterpret_cast<LVITEM*>(lParam);
        if (!out || !p.Valid(out->iItem))
            return FALSE;
        const Item& it = *p.items[static_cast<std::size_t>(out->iItem)];
        if (out->mask & LVIF_TEXT)
            CopyOut(out->iSubItem >= 0 && out->iSubItem < columnCount ? p.TextOf(out->iItem, out->iSubItem) : CString(),
                    out->pszText, out->cchTextMax);
        if (out->mask & LVIF_IMAGE)
            out->iImage = it.image;
        if (out->mask & LVIF_PARAM)
            out->lParam = it.lParam;
        if (out->mask & LVIF_STATE)
            out->state = it.state & out->stateMask;
        if (out->mask & LVIF_INDENT)
            out->iIndent = it.indent;
        return TRUE;
    }
    case LVM_SETITEMA: {
        const auto* in = reinterpret_cast<const LVITEM*>(lParam);
        if (!in || !p.Valid(in->iItem) || in->iSubItem < 0 || (in->iSubItem > 0 && in->iSubItem >= columnCount))
            return FALSE;
        Item& it = *p.items[static_cast<std::size_t>(in->iItem)];
        bool seen = false;
        if (in->mask & LVIF_TEXT)
            p.SetText(in->iItem, in->iSubItem, in->pszText);
        if ((in->mask & LVIF_IMAGE) && it.image != in->iImage) {
            it.image = in->iImage;
            seen = true;
        }
        if (in->mask & LVIF_PARAM)
            it.lParam = in->lParam;
        if ((in->mask & LVIF_INDENT) && it.indent != in->iIndent) {
            it.indent = in->iIndent;
            seen = true;
        }
        if (seen)
            p.InvalidateCell(in->iItem, in->iSubItem);
        if (in->mask & LVIF_STATE)
            p.ChangeState(in->iItem, in->state, in->stateMask);
        return TRUE;
    }
    case LVM_GETITEMTEXTA: {
        auto* out = reinterpret_cast<LVITEM*>(lParam);
        const int index = static_cast<int>(wParam);
        if (!out || !p.Valid(index) || out->iSubItem < 0 || out->iSubItem >= std::max(1, columnCount)) {
            if (out && out->pszText && out->cchTextMax > 0)
                out->pszText[0] = '\0';
            return 0;
        }
        const CString text = p.TextOf(index, out->iSubItem);
        CopyOut(text, out->pszText, out->cchTextMax);
        return out->pszText && out->cchTextMax > 0 ? static_cast<LRESULT>(std::strlen(out->pszText)) : 0;
    }
    case LVM_SETITEMTEXTA: {
        auto* in = reinterpret_cast<LVITEM*>(lParam);
        if (!in)
            return FALSE;
        // Within the control, as the platform's did: no second message.
        return p.SetText(static_cast<int>(wParam), in->iSubItem, in->pszText) ? TRUE : FALSE;
    }
    case LVM_GETITEMSTATE: {
        const int index = static_cast<int>(wParam);
        return p.Valid(index) ? static_cast<LRESULT>(p.items[static_cast<std::size_t>(index)]->state &
                                                     static_cast<UINT>(lParam))
                              : 0;
    }
    case LVM_SETITEMSTATE: {
        const auto* in = reinterpret_cast<const LVITEM*>(lParam);
        if (!in)
            return FALSE;
        const int index = static_cast<int>(static_cast<std::intptr_t>(wParam));
        if (index != -1 && !p.Valid(index))
            return FALSE;
        p.ChangeState(index, in->state, in->stateMask);
        return TRUE;
    }
    case LVM_GETNEXTITEM: {
        const int start = static_cast<int>(static_cast<std::intptr_t>(wParam));
        const UINT flags = static_cast<UINT>(lParam);
        const UINT want = (flags & LVNI_SELECTED ? LVIS_SELECTED : 0) | (flags & LVNI_FOCUSED ? LVIS_FOCUSED : 0);
        const int step = (flags & LVNI_ABOVE) ? -1 : 1;
        for (int i = start + step; i >= 0 && i < count; i += step) {
            if ((p.items[static_cast<std::size_t>(i)]->state & want) == want)
                return i;
        }
        return -1;
    }
    case LVM_GETSELECTEDCOUNT:
        return std::count_if(p.items.begin(), p.items.end(),
                             [](const auto& it) { return (it->state & LVIS_SELECTED) != 0; });
    case LVM_GETSELECTIONMARK:
        return p.mark;
    case LVM_SETSELECTIONMARK: {
        const int old = p.mark;
        p.mark = p.Valid(static_cast<int>(lParam)) ? static_cast<int>(lParam) : -1;
        return old;
    }
    case LVM_FINDITEMA: {
        const auto* info = reinterpret_cast<const LVFINDINFO*>(lParam);
        if (!info || count == 0)
            return -1;
        const int start = static_cast<int>(static_cast<std::intptr_t>(wParam));
        const int first = start + 1;
        const int span = (info->flags & LVFI_WRAP) ? count : count - std::max(0, first);
        for (int n = 0; n < span; ++n) {
            const int i = (std::max(0, first) + n) % count;
            const Item& it = *p.items[static_cast<std::size_t>(i)];
            if (info->flags & LVFI_PARAM) {
                if (it.lParam == info->lParam)
                    return i;
                continue;
            }
            if ((info->flags & LVFI_STRING) && info->psz) {
                const CString text = p.TextOf(i, 0);
                const std::size_t len = std::strlen(info->psz);
                const bool hit = (info->flags & LVFI_PARTIAL) ? _strnicmp(text, info->psz, len) == 0
                                                              : _stricmp(text, info->psz) == 0;
                if (hit)
                    return i;
            }
        }
        return -1;
    }
    case LVM_SORTITEMS: {
        auto compare = reinterpret_cast<PFNLVCOMPARE>(lParam);
        if (!compare)
            return FALSE;
        const LPARAM data = static_cast<LPARAM>(wParam);
        std::stable_sort(p.items.begin(), p.items.end(), [compare, data](const auto& a, const auto& b) {
            return compare(a->lParam, b->lParam, data) < 0;
        });
        p.focus = -1;
        for (std::size_t i = 0; i < p.items.size(); ++i) {
            if (p.items[i]->state & LVIS_FOCUSED)
                p.focus = static_cast<int>(i);
        }
        p.InvalidateAll();
        return TRUE;
    }

    // --- geometry ------------------------------------------------------------------------
    case LVM_GETITEMRECT: {
        auto* r = reinterpret_cast<RECT*>(lParam);
        const int index = static_cast<int>(wParam);
        if (!r || !p.Valid(index))
            return FALSE;
        const int code = r->left;
        CRect bounds = p.RowBounds(index);
        if (code == LVIR_BOUNDS || columnCount == 0) {
            *r = bounds;
            return TRUE;
        }
        RECT sub{code == LVIR_SELECTBOUNDS ? LVIR_LABEL : code, 0, 0, 0};
        SendMessage(LVM_GETSUBITEMRECT, wParam, reinterpret_cast<LPARAM>(&sub));
        if (code == LVIR_SELECTBOUNDS) {
            if (p.exStyle & LVS_EX_FULLROWSELECT) {
                *r = bounds;
                return TRUE;
            }
            RECT icon{LVIR_ICON, 0, 0, 0};
            SendMessage(LVM_GETSUBITEMRECT, wParam, reinterpret_cast<LPARAM>(&icon));
            sub.left = icon.left;
        }
        *r = sub;
        return TRUE;
    }
    case LVM_GETSUBITEMRECT: {
        auto* r = reinterpret_cast<RECT*>(lParam);
        const int index = static_cast<int>(wParam);
        if (!r || !p.Valid(index))
            return FALSE;
        const int code = r->left;
        const int column = r->top;
        if (column < 0 || column >= std::max(1, columnCount))
            return FALSE;
        if (columnCount == 0) {
            *r = p.RowBounds(index);
            return TRUE;
        }
        CRect cell = p.CellRect(index, column);
        if (column == 0 && code == LVIR_BOUNDS) {
            *r = p.RowBounds(index);
            return TRUE;
        }
        if (column == 0 || (p.exStyle & LVS_EX_SUBITEMIMAGES)) {
            // The icon part: the state image and indent come first in column 0.
            int x = cell.left;
            if (column == 0) {
                if ((p.exStyle & LVS_EX_CHECKBOXES) || p.images[LVSIL_STATE])
                    x += std::max(16, p.ImageWidth(LVSIL_STATE));
                x += p.items[static_cast<std::size_t>(index)]->indent * std::max(1, p.ImageWidth(LVSIL_SMALL));
            }
            const int iconWidth = p.ImageWidth(LVSIL_SMALL);
            const CRect icon(x, cell.top, std::min(cell.right, x + iconWidth), cell.bottom);
            if (code == LVIR_ICON) {
                *r = icon;
                return TRUE;
            }
            if (code == LVIR_LABEL || code == LVIR_SELECTBOUNDS) {
                *r = CRect(std::min(cell.right, icon.right), cell.top, cell.right, cell.bottom);
                return TRUE;
            }
        } else if (code == LVIR_ICON) {
            *r = CRect(cell.left, cell.top, cell.left, cell.bottom);
            return TRUE;
        }
        *r = cell;
        return TRUE;
    }
    case LVM_HITTEST:
    case LVM_SUBITEMHITTEST: {
        auto* info = reinterpret_cast<LVHITTESTINFO*>(lParam);
        if (!info)
            return -1;
        const CPoint pt(info->pt);
        const CRect data = p.DataRect();
        info->flags = 0;
        info->iItem = -1;
        info->iSubItem = 0;
        if (pt.y < data.top)
            info->flags |= LVHT_ABOVE;
        if (pt.y >= data.bottom)
            info->flags |= LVHT_BELOW;
        if (pt.x < data.left)
            info->flags |= LVHT_TOLEFT;
        if (pt.x >= data.right)
            info->flags |= LVHT_TORIGHT;
        if (info->flags)
            return -1;
        const int row = p.top + (pt.y - data.top) / std::max(1, p.rowHeight);
        const int x = pt.x + p.scrollX;
        if (row >= count || x >= p.totalWidth || x < 0) {
            info->flags = LVHT_NOWHERE;
            return -1;
        }
        int column = 0;
        for (int c : p.order) {
            if (x >= p.left[static_cast<std::size_t>(c)] &&
                x < p.left[static_cast<std::size_t>(c)] + p.columns[static_cast<std::size_t>(c)].width) {
                column = c;
                break;
            }
        }
        if (message == LVM_HITTEST)
            column = 0;
        // Which part of the item: in column 0 the state image, the icon or
        // the label; in other columns only the label counts (full row
        // select makes the whole row count).
        RECT icon{LVIR_ICON, 0, 0, 0};
        SendMessage(LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&icon));
        const int col0 = p.left.empty() ? 0 : p.left[0] - p.scrollX;
        if (pt.x >= col0 && pt.x < icon.left && ((p.exStyle & LVS_EX_CHECKBOXES) || p.images[LVSIL_STATE]))
            info->flags = LVHT_ONITEMSTATEICON;
        else if (pt.x >= icon.left && pt.x < icon.right)
            info->flags = LVHT_ONITEMICON;
        else if (message == LVM_SUBITEMHITTEST || (p.exStyle & LVS_EX_FULLROWSELECT) || columnCount == 0 ||
                 (x >= p.left[0] && x < p.left[0] + p.columns[0].width))
            info->flags = LVHT_ONITEMLABEL;
        else
            info->flags = LVHT_NOWHERE;
        if (info->flags == LVHT_NOWHERE)
            return -1;
        info->iItem = row;
        info->iSubItem = column;
        return row;
    }
    case LVM_ENSUREVISIBLE: {
        const int index = static_cast<int>(wParam);
        if (!p.Valid(index))
            return FALSE;
        const int rows = std::max(1, p.PageRows());
        if (index < p.top)
            p.SetTop(index);
        else if (index >= p.top + rows)
            p.SetTop(index - rows + 1);
        return TRUE;
    }
    case LVM_SCROLL: {
        const int dx = static_cast<int>(static_cast<std::intptr_t>(wParam));
        const int dy = static_cast<int>(lParam);
        if (dx)
            p.SetScrollX(p.scrollX + dx);
        if (dy) {
            // Whole rows, rounded away from zero, as the original scrolled.
            const int h = std::max(1, p.rowHeight);
            const int rows = dy > 0 ? (dy + h - 1) / h : -((-dy + h - 1) / h);
            p.SetTop(p.top + rows);
        }
        return TRUE;
    }
    case LVM_REDRAWITEMS: {
        const int first = std::max(0, static_cast<int>(static_cast<std::intptr_t>(wParam)));
        const int last = std::min(count - 1, static_cast<int>(lParam));
        for (int i = first; i <= last; ++i)
            p.InvalidateRow(i);
        return TRUE;
    }
    case LVM_UPDATE:
        p.InvalidateRow(static_cast<int>(wParam));
        return TRUE;
    case LVM_GETTOPINDEX:
        return p.top;
    case LVM_GETCOUNTPERPAGE:
        return p.PageRows();
    case LVM_GETVIEWRECT: {
        auto* r = reinterpret_cast<RECT*>(lParam);
        if (!r)
            return FALSE;
        *r = RECT{-p.scrollX, p.headerHeight - p.top * p.rowHeight, p.totalWidth - p.scrollX,
                  p.headerHeight + (count - p.top) * p.rowHeight};
        return TRUE;
    }
    case LVM_GETORIGIN: {
        auto* pt = reinterpret_cast<POINT*>(lParam);
        if (!pt)
            return FALSE;
        *pt = POINT{p.scrollX, p.top * p.rowHeight};
        return TRUE;
    }
    case LVM_GETSTRINGWIDTHA: {
        const auto* text = reinterpret_cast<const char*>(lParam);
        if (!text)
            return 0;
        HDC dc = CreateCompatibleDC(nullptr);
        HGDIOBJ old = SelectObject(dc, vx::listviews::FontOf(*this));
        SIZE s{};
        GetTextExtentPoint32A(dc, text, static_cast<int>(std::strlen(text)), &s);
        SelectObject(dc, old);
        DeleteDC(dc);
        return s.cx;
    }

    // --- look ------------------------------------------------------------------------------
    case LVM_GETEXTENDEDLISTVIEWSTYLE:
        return p.exStyle;
    case LVM_SETEXTENDEDLISTVIEWSTYLE: {
        const DWORD old = p.exStyle;
        const DWORD mask = wParam ? static_cast<DWORD>(wParam) : 0xFFFFFFFFu;
        p.exStyle = (old & ~mask) | (static_cast<DWORD>(lParam) & mask);
        if ((p.exStyle ^ old) & LVS_EX_HEADERDRAGDROP && p.header->m_hWnd) {
            if (p.exStyle & LVS_EX_HEADERDRAGDROP)
                p.header->ModifyStyle(0, HDS_DRAGDROP);
            else
                p.header->ModifyStyle(HDS_DRAGDROP, 0);
        }
        if ((p.exStyle & LVS_EX_CHECKBOXES) && !(old & LVS_EX_CHECKBOXES)) {
            // Every item starts unchecked.
            for (auto& it : p.items) {
                if (!(it->state & LVIS_STATEIMAGEMASK))
                    it->state |= INDEXTOSTATEIMAGEMASK(1);
            }
        }
        p.RecomputeRowHeight();
        p.Relayout();
        p.InvalidateAll();
        return old;
    }
    case LVM_GETIMAGELIST:
        return wParam <= 2 ? reinterpret_cast<LRESULT>(p.images[wParam]) : 0;
    case LVM_SETIMAGELIST: {
        if (wParam > 2)
            return 0;
        const HIMAGELIST old = p.images[wParam];
        p.images[wParam] = reinterpret_cast<HIMAGELIST>(lParam);
        p.RecomputeRowHeight();
        p.Relayout();
        p.InvalidateAll();
        return reinterpret_cast<LRESULT>(old);
    }
    case LVM_GETBKCOLOR:
        return p.bkColor;
    case LVM_SETBKCOLOR:
        p.bkColor = static_cast<COLORREF>(lParam);
        p.InvalidateAll();
        return TRUE;
    case LVM_GETTEXTCOLOR:
        return p.textColor;
    case LVM_SETTEXTCOLOR:
        p.textColor = static_cast<COLORREF>(lParam);
        p.InvalidateAll();
        return TRUE;
    case LVM_GETTEXTBKCOLOR:
        return p.textBkColor;
    case LVM_SETTEXTBKCOLOR:
        p.textBkColor = static_cast<COLORREF>(lParam);
        p.InvalidateAll();
        return TRUE;
    case LVM_GETEDITCONTROL:
        return 0; // labels are not edited in place by the control itself

    // --- the scroll bars in the non-client area -------------------------------------------
    case WM_NCCALCSIZE: {
        CWnd::DefWindowProc(message, wParam, lParam);
        auto* r = reinterpret_cast<RECT*>(lParam); // rgrc[0] in either form
        if (r && p.vbar.shown)
            r->right = std::max(r->left, r->right - GetSystemMetrics(SM_CXVSCROLL));
        if (r && p.hbar.shown)
            r->bottom = std::max(r->top, r->bottom - GetSystemMetrics(SM_CYHSCROLL));
        return 0;
    }
    case WM_NCHITTEST: {
        const LRESULT bar = p.BarHitTest(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        return bar != HTNOWHERE ? bar : CWnd::DefWindowProc(message, wParam, lParam);
    }
    case WM_NCPAINT: {
        CWnd::DefWindowProc(message, wParam, lParam);
        if (HDC dc = GetWindowDC(m_hWnd)) {
            p.PaintBars(dc);
            ReleaseDC(m_hWnd, dc);
        }
        return 0;
    }
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
        if (wParam == HTVSCROLL || wParam == HTHSCROLL) {
            p.BarDown(p.ScreenToWindow(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam))));
            return 0;
        }
        return CWnd::DefWindowProc(message, wParam, lParam);

    // --- painting and input ---------------------------------------------------------------
    case WM_PAINT:
        p.Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // the paint covers the whole client area
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_LBUTTONDOWN:
        p.ButtonDown(static_cast<UINT>(wParam), CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)), false);
        return 0;
    case WM_LBUTTONDBLCLK:
        p.ButtonDown(static_cast<UINT>(wParam), CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)), true);
        return 0;
    case WM_MOUSEMOVE:
        p.MouseMove(static_cast<UINT>(wParam), CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        return 0;
    case WM_LBUTTONUP:
        p.ButtonUp(static_cast<UINT>(wParam), CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lParam) != m_hWnd) {
            p.capturedByUs = false;
            p.barPressed = 0;
        }
        return 0;
    case WM_RBUTTONDOWN: {
        SetFocus();
        LVHITTESTINFO hit{};
        hit.pt = CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        const int item = SubItemHitTest(&hit);
        if (p.Valid(item) && !(p.items[static_cast<std::size_t>(item)]->state & LVIS_SELECTED))
            p.SelectOnly(item);
        if (p.Valid(item))
            p.MoveFocus(item, 0);
        return 0;
    }
    case WM_RBUTTONUP: {
        LVHITTESTINFO hit{};
        hit.pt = CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        SubItemHitTest(&hit);
        NMITEMACTIVATE nm{};
        nm.iItem = hit.iItem;
        nm.iSubItem = hit.iSubItem;
        nm.ptAction = hit.pt;
        p.Notify(NM_RCLICK, &nm.hdr);
        return 0;
    }
    case WM_MOUSEWHEEL: {
        const int delta = static_cast<short>(HIWORD(static_cast<DWORD_PTR>(wParam)));
        p.SetTop(p.top - delta / 40); // three rows a notch
        return 0;
    }
    case WM_KEYDOWN:
        p.KeyDown(static_cast<UINT>(wParam));
        return 0;
    case WM_VSCROLL:
        p.VScroll(LOWORD(static_cast<DWORD_PTR>(wParam)), static_cast<short>(HIWORD(static_cast<DWORD_PTR>(wParam))));
        return 0;
    case WM_HSCROLL:
        p.HScroll(LOWORD(static_cast<DWORD_PTR>(wParam)), static_cast<short>(HIWORD(static_cast<DWORD_PTR>(wParam))));
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: {
        // Selected items change colour with the focus.
        for (std::size_t i = 0; i < p.items.size(); ++i) {
            if (p.items[i]->state & (LVIS_SELECTED | LVIS_FOCUSED))
                RedrawItemState(static_cast<int>(i));
        }
        NMHDR nm{};
        p.Notify(message == WM_SETFOCUS ? NM_SETFOCUS : NM_KILLFOCUS, &nm);
        return 0;
    }
    case WM_NOTIFY: {
        auto* hdr = reinterpret_cast<NMHDR*>(lParam);
        if (hdr && p.header->m_hWnd && hdr->hwndFrom == p.header->m_hWnd)
            return p.HeaderNotify(hdr);
        return 0;
    }
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}
