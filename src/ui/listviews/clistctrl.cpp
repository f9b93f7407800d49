#include "ui/listviews/clistctrl.h"

#include "ui/controls/controlclass.h"
#include "ui/images/cimagelist.h"
#include "ui/listviews/clistctrl_p.h"

#include <algorithm>
#include <vector>

// The framework's wrappers: each sends its message, as the framework's did,
// so that a class overriding the window procedure sees every call.

CListCtrl::CListCtrl() : d(std::make_unique<Private>(*this)) {}

CListCtrl::~CListCtrl()
{
    // The header is our child: let it go before the objects do.
    if (m_hWnd)
        DestroyWindow();
}

BOOL CListCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "SysListView32", style, rect, parent, id);
}

namespace {

// Dialog templates name the list view by its window class.
const bool g_listViewClass =
    vx::RegisterControlClass("SysListView32", [] { return std::unique_ptr<CWnd>(new CListCtrl); });

template <class T>
LPARAM P(T* pointer)
{
    return reinterpret_cast<LPARAM>(pointer);
}

} // namespace

int CListCtrl::InsertColumn(int column, const LVCOLUMN* info)
{
    return static_cast<int>(SendMessage(LVM_INSERTCOLUMNA, static_cast<WPARAM>(column), P(info)));
}

int CListCtrl::InsertColumn(int column, LPCSTR heading, int format, int width, int subItem)
{
    LVCOLUMN info{};
    info.mask = LVCF_TEXT | LVCF_FMT;
    info.pszText = const_cast<LPSTR>(heading);
    info.fmt = format;
    if (width != -1) {
        info.mask |= LVCF_WIDTH;
        info.cx = width;
    }
    if (subItem != -1) {
        info.mask |= LVCF_SUBITEM;
        info.iSubItem = subItem;
    }
    const int index = InsertColumn(column, &info);
    if (index >= 0 && width == -1)
        SetColumnWidth(index, LVSCW_AUTOSIZE_USEHEADER);
    return index;
}

BOOL CListCtrl::DeleteColumn(int column)
{
    return static_cast<BOOL>(SendMessage(LVM_DELETECOLUMN, static_cast<WPARAM>(column)));
}

BOOL CListCtrl::GetColumn(int column, LVCOLUMN* info) const
{
    return static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETCOLUMNA, static_cast<WPARAM>(column), P(info)));
}

BOOL CListCtrl::SetColumn(int column, const LVCOLUMN* info)
{
    return static_cast<BOOL>(SendMessage(LVM_SETCOLUMNA, static_cast<WPARAM>(column), P(info)));
}

int CListCtrl::GetColumnWidth(int column) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

BOOL CListCtrl::SetColumnWidth(int column, int width)
{
    return static_cast<BOOL>(SendMessage(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width));
}

BOOL CListCtrl::GetColumnOrderArray(int* order, int count) const
{
    if (count < 0)
        count = static_cast<int>(d->columns.size());
    return static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETCOLUMNORDERARRAY, static_cast<WPARAM>(count), P(order)));
}

BOOL CListCtrl::SetColumnOrderArray(int count, int* order)
{
    return static_cast<BOOL>(SendMessage(LVM_SETCOLUMNORDERARRAY, static_cast<WPARAM>(count), P(order)));
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl() const
{
    const auto h = reinterpret_cast<HWND>(::SendMessageA(m_hWnd, LVM_GETHEADER, 0, 0));
    return h ? dynamic_cast<CHeaderCtrl*>(CWnd::FromHandle(h)) : nullptr;
}

int CListCtrl::GetItemCount() const
{
    // Read in place, as the texts are: a cell list asks for it on every cell.
    return m_hWnd ? static_cast<int>(d->items.size()) : 0;
}

int CListCtrl::InsertItem(const LVITEM* item)
{
    return static_cast<int>(SendMessage(LVM_INSERTITEMA, 0, P(item)));
}

int CListCtrl::InsertItem(int item, LPCSTR text)
{
    return InsertItem(LVIF_TEXT, item, text, 0, 0, 0, 0);
}

int CListCtrl::InsertItem(int item, LPCSTR text, int image)
{
    return InsertItem(LVIF_TEXT | LVIF_IMAGE, item, text, 0, 0, image, 0);
}

int CListCtrl::InsertItem(UINT mask, int item, LPCSTR text, UINT state, UINT stateMask, int image, LPARAM lParam)
{
    LVITEM info{};
    info.mask = mask;
    info.iItem = item;
    info.pszText = const_cast<LPSTR>(text);
    info.state = state;
    info.stateMask = stateMask;
    info.iImage = image;
    info.lParam = lParam;
    return InsertItem(&info);
}

BOOL CListCtrl::DeleteItem(int item)
{
    return static_cast<BOOL>(SendMessage(LVM_DELETEITEM, static_cast<WPARAM>(item)));
}

BOOL CListCtrl::DeleteAllItems()
{
    return static_cast<BOOL>(SendMessage(LVM_DELETEALLITEMS));
}

BOOL CListCtrl::GetItem(LVITEM* item) const
{
    return static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETITEMA, 0, P(item)));
}

BOOL CListCtrl::SetItem(const LVITEM* item)
{
    return static_cast<BOOL>(SendMessage(LVM_SETITEMA, 0, P(item)));
}

BOOL CListCtrl::SetItem(int item, int subItem, UINT mask, LPCSTR text, int image, UINT state, UINT stateMask,
                        LPARAM lParam)
{
    LVITEM info{};
    info.mask = mask;
    info.iItem = item;
    info.iSubItem = subItem;
    info.pszText = const_cast<LPSTR>(text);
    info.iImage = image;
    info.state = state;
    info.stateMask = stateMask;
    info.lParam = lParam;
    return SetItem(&info);
}

CString CListCtrl::GetItemText(int item, int subItem) const
{
    // Read in place: a cell's text has no length limit of its own.
    if (!d->Valid(item) || subItem < 0 || subItem >= static_cast<int>(d->columns.size()))
        return CString();
    return d->TextOf(item, subItem);
}

const char* CListCtrl::ItemTextInPlace(int item, int subItem) const
{
    if (!d->Valid(item) || subItem < 0 || subItem >= static_cast<int>(d->columns.size()))
        return "";
    const auto& texts = d->items[static_cast<std::size_t>(item)]->texts;
    return static_cast<std::size_t>(subItem) < texts.size() ? static_cast<const char*>(texts[static_cast<std::size_t>(subItem)])
                                                              : "";
}

void CListCtrl::PrefetchItem(int item, bool texts) const
{
    if (!d->Valid(item))
        return;
    const vx::listviews::Item* it = d->items[static_cast<std::size_t>(item)].get();
    if (!texts) {
        // The record may straddle two cache lines.
        __builtin_prefetch(it);
        __builtin_prefetch(reinterpret_cast<const char*>(it + 1) - 1);
        return;
    }
    // Short texts live in the array itself.
    const auto* bytes = reinterpret_cast<const char*>(it->texts.data());
    const std::size_t size = it->texts.size() * sizeof(CString);
    for (std::size_t at = 0; at < size; at += 64)
        __builtin_prefetch(bytes + at);
    if (size)
        __builtin_prefetch(bytes + size - 1);
}

int CListCtrl::GetItemText(int item, int subItem, LPSTR text, int length) const
{
    LVITEM info{};
    info.iSubItem = subItem;
    info.pszText = text;
    info.cchTextMax = length;
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETITEMTEXTA, static_cast<WPARAM>(item), P(&info)));
}

BOOL CListCtrl::SetItemText(int item, int subItem, LPCSTR text)
{
    LVITEM info{};
    info.iSubItem = subItem;
    info.pszText = const_cast<LPSTR>(text);
    return static_cast<BOOL>(SendMessage(LVM_SETITEMTEXTA, static_cast<WPARAM>(item), P(&info)));
}

DWORD_PTR CListCtrl::GetItemData(int item) const
{
    return m_hWnd && d->Valid(item) ? static_cast<DWORD_PTR>(d->items[static_cast<std::size_t>(item)]->lParam) : 0;
}

BOOL CListCtrl::SetItemData(int item, DWORD_PTR data)
{
    return SetItem(item, 0, LVIF_PARAM, nullptr, 0, 0, 0, static_cast<LPARAM>(data));
}

UINT CListCtrl::GetItemState(int item, UINT mask) const
{
    return static_cast<UINT>(::SendMessageA(m_hWnd, LVM_GETITEMSTATE, static_cast<WPARAM>(item), mask));
}

BOOL CListCtrl::SetItemState(int item, UINT state, UINT mask)
{
    LVITEM info{};
    info.state = state;
    info.stateMask = mask;
    return SetItemState(item, &info);
}

BOOL CListCtrl::SetItemState(int item, LVITEM* info)
{
    return static_cast<BOOL>(SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(item), P(info)));
}

BOOL CListCtrl::GetCheck(int item) const
{
    return ((GetItemState(item, LVIS_STATEIMAGEMASK) >> 12) - 1) == 1;
}

BOOL CListCtrl::SetCheck(int item, BOOL check)
{
    return SetItemState(item, INDEXTOSTATEIMAGEMASK(check ? 2 : 1), LVIS_STATEIMAGEMASK);
}

void CListCtrl::SetItemCount(int count)
{
    SendMessage(LVM_SETITEMCOUNT, static_cast<WPARAM>(std::max(0, count)));
}

BOOL CListCtrl::SortItems(PFNLVCOMPARE compare, DWORD_PTR data)
{
    return static_cast<BOOL>(SendMessage(LVM_SORTITEMS, data, reinterpret_cast<LPARAM>(compare)));
}

int CListCtrl::FindItem(LVFINDINFO* info, int start) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_FINDITEMA, static_cast<WPARAM>(start), P(info)));
}

int CListCtrl::GetNextItem(int item, int flags) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(item), flags));
}

UINT CListCtrl::GetSelectedCount() const
{
    return static_cast<UINT>(::SendMessageA(m_hWnd, LVM_GETSELECTEDCOUNT, 0, 0));
}

POSITION CListCtrl::GetFirstSelectedItemPosition() const
{
    // A position is the item's index plus one, so that null means none.
    const int first = GetNextItem(-1, LVNI_SELECTED);
    return reinterpret_cast<POSITION>(static_cast<std::intptr_t>(first + 1));
}

int CListCtrl::GetNextSelectedItem(POSITION& position) const
{
    const int item = static_cast<int>(reinterpret_cast<std::intptr_t>(position)) - 1;
    const int next = GetNextItem(item, LVNI_SELECTED);
    position = reinterpret_cast<POSITION>(static_cast<std::intptr_t>(next + 1));
    return item;
}

int CListCtrl::GetSelectionMark() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETSELECTIONMARK, 0, 0));
}

int CListCtrl::SetSelectionMark(int item)
{
    return static_cast<int>(SendMessage(LVM_SETSELECTIONMARK, 0, item));
}

BOOL CListCtrl::GetItemRect(int item, LPRECT rect, UINT code) const
{
    if (!rect)
        return FALSE;
    rect->left = static_cast<LONG>(code);
    return static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETITEMRECT, static_cast<WPARAM>(item), P(rect)));
}

BOOL CListCtrl::GetSubItemRect(int item, int subItem, int code, CRect& rect) const
{
    RECT r{code, subItem, 0, 0};
    const BOOL ok = static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETSUBITEMRECT, static_cast<WPARAM>(item), P(&r)));
    if (ok)
        rect = r;
    return ok;
}

int CListCtrl::HitTest(CPoint point, UINT* flags) const
{
    LVHITTESTINFO info{};
    info.pt = point;
    const int item = HitTest(&info);
    if (flags)
        *flags = info.flags;
    return item;
}

int CListCtrl::HitTest(LVHITTESTINFO* info) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_HITTEST, 0, P(info)));
}

int CListCtrl::SubItemHitTest(LVHITTESTINFO* info)
{
    return static_cast<int>(SendMessage(LVM_SUBITEMHITTEST, 0, P(info)));
}

BOOL CListCtrl::EnsureVisible(int item, BOOL partialOK)
{
    return static_cast<BOOL>(SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(item), partialOK));
}

BOOL CListCtrl::Scroll(CSize size)
{
    return static_cast<BOOL>(SendMessage(LVM_SCROLL, static_cast<WPARAM>(size.cx), size.cy));
}

BOOL CListCtrl::RedrawItems(int first, int last)
{
    return static_cast<BOOL>(SendMessage(LVM_REDRAWITEMS, static_cast<WPARAM>(first), last));
}

BOOL CListCtrl::Update(int item)
{
    return static_cast<BOOL>(SendMessage(LVM_UPDATE, static_cast<WPARAM>(item)));
}

int CListCtrl::GetTopIndex() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETTOPINDEX, 0, 0));
}

int CListCtrl::GetCountPerPage() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETCOUNTPERPAGE, 0, 0));
}

BOOL CListCtrl::GetViewRect(LPRECT rect) const
{
    return static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETVIEWRECT, 0, P(rect)));
}

BOOL CListCtrl::GetOrigin(LPPOINT point) const
{
    return static_cast<BOOL>(::SendMessageA(m_hWnd, LVM_GETORIGIN, 0, P(point)));
}

int CListCtrl::GetStringWidth(LPCSTR text) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LVM_GETSTRINGWIDTHA, 0, P(text)));
}

DWORD CListCtrl::GetExtendedStyle() const
{
    return static_cast<DWORD>(::SendMessageA(m_hWnd, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0));
}

DWORD CListCtrl::SetExtendedStyle(DWORD style)
{
    return static_cast<DWORD>(SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, style));
}

CImageList* CListCtrl::GetImageList(int kind) const
{
    const auto list = reinterpret_cast<HIMAGELIST>(::SendMessageA(m_hWnd, LVM_GETIMAGELIST, static_cast<WPARAM>(kind), 0));
    return list ? CImageList::FromHandle(list) : nullptr;
}

CImageList* CListCtrl::SetImageList(CImageList* list, int kind)
{
    const auto old = reinterpret_cast<HIMAGELIST>(SendMessage(LVM_SETIMAGELIST, static_cast<WPARAM>(kind),
                                                                P(list ? list->GetSafeHandle() : nullptr)));
    return old ? CImageList::FromHandle(old) : nullptr;
}

COLORREF CListCtrl::GetBkColor() const
{
    return static_cast<COLORREF>(::SendMessageA(m_hWnd, LVM_GETBKCOLOR, 0, 0));
}

BOOL CListCtrl::SetBkColor(COLORREF color)
{
    return static_cast<BOOL>(SendMessage(LVM_SETBKCOLOR, 0, color));
}

COLORREF CListCtrl::GetTextColor() const
{
    return static_cast<COLORREF>(::SendMessageA(m_hWnd, LVM_GETTEXTCOLOR, 0, 0));
}

BOOL CListCtrl::SetTextColor(COLORREF color)
{
    return static_cast<BOOL>(SendMessage(LVM_SETTEXTCOLOR, 0, color));
}

COLORREF CListCtrl::GetTextBkColor() const
{
    return static_cast<COLORREF>(::SendMessageA(m_hWnd, LVM_GETTEXTBKCOLOR, 0, 0));
}

BOOL CListCtrl::SetTextBkColor(COLORREF color)
{
    return static_cast<BOOL>(SendMessage(LVM_SETTEXTBKCOLOR, 0, color));
}

void CListCtrl::SetRedraw(BOOL redraw)
{
    SendMessage(WM_SETREDRAW, static_cast<WPARAM>(redraw));
}

void CListCtrl::RedrawItemState(int item)
{
    d->InvalidateRow(item);
}

void CListCtrl::InvalidateSubItem(int item, int subItem)
{
    d->InvalidateCell(item, subItem);
}

void CListCtrl::SetHeaderCtrl(CHeaderCtrl* header)
{
    CHeaderCtrl* fresh = header ? header : &d->ownHeader;
    CHeaderCtrl* old = d->header;
    if (fresh == old)
        return;
    d->header = fresh;
    if (!m_hWnd || !old->m_hWnd)
        return; // the window makes it when it is created
    // The new header takes over the old one's items, look and place.
    struct Saved {
        HDITEM item;
        char text[260];
    };
    const int count = old->GetItemCount();
    std::vector<Saved> items(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Saved& s = items[static_cast<std::size_t>(i)];
        s.item = HDITEM{};
        s.item.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT | HDI_LPARAM | HDI_IMAGE | HDI_BITMAP;
        s.item.pszText = s.text;
        s.item.cchTextMax = sizeof s.text;
        old->GetItem(i, &s.item);
    }
    std::vector<int> order(static_cast<std::size_t>(count));
    if (count)
        old->GetOrderArray(order.data(), count);
    CImageList* images = old->GetImageList();
    const DWORD style = old->GetStyle();
    CRect rect;
    old->GetWindowRect(&rect);
    ScreenToClient(&rect);
    const LRESULT font = old->SendMessage(WM_GETFONT);
    const UINT id = old->GetDlgCtrlID();
    old->DestroyWindow();
    fresh->CreateEx("", "SysHeader32", style, rect, this, id);
    fresh->SendMessage(WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    for (int i = 0; i < count; ++i)
        fresh->InsertItem(i, &items[static_cast<std::size_t>(i)].item);
    if (count)
        fresh->SetOrderArray(count, order.data());
    if (images)
        fresh->SetImageList(images);
    d->Relayout();
}
