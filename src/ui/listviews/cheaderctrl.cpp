#include "ui/listviews/cheaderctrl.h"

#include "ui/gdi/cdc.h"
#include "ui/images/cimagelist.h"
#include "ui/listviews/commonctrl_p.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using vx::listviews::kDragThreshold;

// How far either side of a column's right edge the divider can be grabbed.
constexpr int kDividerLeft = 5;
constexpr int kDividerRight = 4;
// Room left and right of an item's contents.
constexpr int kPad = 6;
constexpr int kCheckSize = 13;

struct HeaderItem {
    CString text;
    int width = 0;
    int fmt = HDF_LEFT | HDF_STRING;
    LPARAM lParam = 0;
    int image = -1;
    HBITMAP bitmap = nullptr;
};

enum class Mode { None, Press, Track, Drag };

} // namespace

struct CHeaderCtrl::Private {
    std::vector<HeaderItem> items;
    std::vector<int> order; // order[position] = item index
    HIMAGELIST images = nullptr;
    Mode mode = Mode::None;
    int item = -1;         // the item pressed, tracked or dragged
    bool onCheck = false;  // the press began on the item's check box
    bool inside = false;   // the mouse is over the pressed item
    CPoint start;          // where the button went down
    int grab = 0;          // mouse x less the dragged item's left edge
    int mouseX = 0;
    int trackLeft = 0;     // the tracked item's left edge

    int PositionOf(int index) const
    {
        for (std::size_t p = 0; p < order.size(); ++p) {
            if (order[p] == index)
                return static_cast<int>(p);
        }
        return -1;
    }
    // Left edge of an item by its index.
    int LeftOf(int index) const
    {
        int x = 0;
        for (int i : order) {
            if (i == index)
                return x;
            x += items[static_cast<std::size_t>(i)].width;
        }
        return x;
    }
    int TotalWidth() const
    {
        int x = 0;
        for (const HeaderItem& it : items)
            x += it.width;
        return x;
    }
};

CHeaderCtrl::CHeaderCtrl() : d(std::make_unique<Private>()) {}
CHeaderCtrl::~CHeaderCtrl() = default;

BOOL CHeaderCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "SysHeader32", style, rect, parent, id);
}

int CHeaderCtrl::GetItemCount() const
{
    // Read in place: the list asks for it on every cell.
    return m_hWnd ? static_cast<int>(d->items.size()) : 0;
}

int CHeaderCtrl::InsertItem(int index, HDITEM* item)
{
    return static_cast<int>(SendMessage(HDM_INSERTITEMA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(item)));
}

BOOL CHeaderCtrl::DeleteItem(int index)
{
    return static_cast<BOOL>(SendMessage(HDM_DELETEITEM, static_cast<WPARAM>(index)));
}

BOOL CHeaderCtrl::GetItem(int index, HDITEM* item) const
{
    return static_cast<BOOL>(
        ::SendMessageA(m_hWnd, HDM_GETITEMA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(item)));
}

BOOL CHeaderCtrl::SetItem(int index, HDITEM* item)
{
    return static_cast<BOOL>(SendMessage(HDM_SETITEMA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(item)));
}

BOOL CHeaderCtrl::GetItemRect(int index, RECT* rect) const
{
    return static_cast<BOOL>(
        ::SendMessageA(m_hWnd, HDM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(rect)));
}

CImageList* CHeaderCtrl::SetImageList(CImageList* list)
{
    const auto old = reinterpret_cast<HIMAGELIST>(
        SendMessage(HDM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(list ? list->GetSafeHandle() : nullptr)));
    return old ? CImageList::FromHandle(old) : nullptr;
}

CImageList* CHeaderCtrl::GetImageList() const
{
    const auto list = reinterpret_cast<HIMAGELIST>(::SendMessageA(m_hWnd, HDM_GETIMAGELIST, 0, 0));
    return list ? CImageList::FromHandle(list) : nullptr;
}

int CHeaderCtrl::OrderToIndex(int order) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, HDM_ORDERTOINDEX, static_cast<WPARAM>(order), 0));
}

BOOL CHeaderCtrl::GetOrderArray(int* array, int count) const
{
    return static_cast<BOOL>(
        ::SendMessageA(m_hWnd, HDM_GETORDERARRAY, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(array)));
}

BOOL CHeaderCtrl::SetOrderArray(int count, int* array)
{
    return static_cast<BOOL>(
        SendMessage(HDM_SETORDERARRAY, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(array)));
}

int CHeaderCtrl::HitTest(HDHITTESTINFO* info) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, HDM_HITTEST, 0, reinterpret_cast<LPARAM>(info)));
}

BOOL CHeaderCtrl::Layout(HDLAYOUT* layout)
{
    return static_cast<BOOL>(SendMessage(HDM_LAYOUT, 0, reinterpret_cast<LPARAM>(layout)));
}

int CHeaderCtrl::GetIdealHeight() const
{
    if (GetStyle() & HDS_HIDDEN)
        return 0;
    return std::max(vx::listviews::LineHeight(vx::listviews::FontOf(*this)) + 7, kCheckSize + 7);
}

namespace {

LRESULT NotifyHeader(CWnd& header, UINT code, int item, int button, HDITEM* pitem)
{
    NMHEADER nm{};
    nm.iItem = item;
    nm.iButton = button;
    nm.pitem = pitem;
    return vx::listviews::Notify(header, code, &nm.hdr);
}

void CopyText(const CString& text, HDITEM* out)
{
    if (!out->pszText || out->cchTextMax <= 0)
        return;
    const int n = std::min(text.GetLength(), out->cchTextMax - 1);
    std::memcpy(out->pszText, static_cast<const char*>(text), static_cast<std::size_t>(n));
    out->pszText[n] = '\0';
}

CRect CheckRectIn(const CRect& item)
{
    const int top = item.top + (item.Height() - kCheckSize) / 2;
    return CRect(item.left + kPad - 2, top, item.left + kPad - 2 + kCheckSize, top + kCheckSize);
}

} // namespace

LRESULT CHeaderCtrl::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    Private& p = *d;
    auto valid = [&p](WPARAM i) { return static_cast<std::size_t>(i) < p.items.size(); };
    switch (message) {
    case HDM_GETITEMCOUNT:
        return static_cast<LRESULT>(p.items.size());
    case HDM_INSERTITEMA: {
        const auto* in = reinterpret_cast<const HDITEM*>(lParam);
        if (!in)
            return -1;
        const int index = std::clamp(static_cast<int>(wParam), 0, static_cast<int>(p.items.size()));
        HeaderItem item;
        if (in->mask & HDI_TEXT)
            item.text = in->pszText ? in->pszText : "";
        if (in->mask & HDI_WIDTH)
            item.width = std::max(0, in->cxy);
        if (in->mask & HDI_FORMAT)
            item.fmt = in->fmt;
        if (in->mask & HDI_LPARAM)
            item.lParam = in->lParam;
        if (in->mask & HDI_IMAGE)
            item.image = in->iImage;
        if (in->mask & HDI_BITMAP)
            item.bitmap = in->hbm;
        p.items.insert(p.items.begin() + index, item);
        for (int& o : p.order) {
            if (o >= index)
                ++o;
        }
        int position = static_cast<int>(p.order.size());
        if (in->mask & HDI_ORDER)
            position = std::clamp(in->iOrder, 0, position);
        p.order.insert(p.order.begin() + position, index);
        Invalidate();
        return index;
    }
    case HDM_DELETEITEM: {
        if (!valid(wParam))
            return FALSE;
        const int index = static_cast<int>(wParam);
        p.items.erase(p.items.begin() + index);
        p.order.erase(std::remove(p.order.begin(), p.order.end(), index), p.order.end());
        for (int& o : p.order) {
            if (o > index)
                --o;
        }
        if (p.item == index)
            p.mode = Mode::None;
        Invalidate();
        return TRUE;
    }
    case HDM_GETITEMA: {
        auto* out = reinterpret_cast<HDITEM*>(lParam);
        if (!out || !valid(wParam))
            return FALSE;
        const HeaderItem& item = p.items[wParam];
        if (out->mask & HDI_TEXT)
            CopyText(item.text, out);
        if (out->mask & HDI_WIDTH)
            out->cxy = item.width;
        if (out->mask & HDI_FORMAT)
            out->fmt = item.fmt;
        if (out->mask & HDI_LPARAM)
            out->lParam = item.lParam;
        if (out->mask & HDI_IMAGE)
            out->iImage = item.image;
        if (out->mask & HDI_BITMAP)
            out->hbm = item.bitmap;
        if (out->mask & HDI_ORDER)
            out->iOrder = p.PositionOf(static_cast<int>(wParam));
        return TRUE;
    }
    case HDM_SETITEMA: {
        auto* in = reinterpret_cast<HDITEM*>(lParam);
        if (!in || !valid(wParam))
            return FALSE;
        const int index = static_cast<int>(wParam);
        const HWND self = m_hWnd;
        if (NotifyHeader(*this, HDN_ITEMCHANGING, index, 0, in) || !IsWindow(self) || !valid(wParam))
            return FALSE;
        HeaderItem& item = p.items[wParam];
        if (in->mask & HDI_TEXT)
            item.text = in->pszText ? in->pszText : "";
        if (in->mask & HDI_WIDTH)
            item.width = std::max(0, in->cxy);
        if (in->mask & HDI_FORMAT)
            item.fmt = in->fmt;
        if (in->mask & HDI_LPARAM)
            item.lParam = in->lParam;
        if (in->mask & HDI_IMAGE)
            item.image = in->iImage;
        if (in->mask & HDI_BITMAP)
            item.bitmap = in->hbm;
        if (in->mask & HDI_ORDER) {
            p.order.erase(std::remove(p.order.begin(), p.order.end(), index), p.order.end());
            const int position = std::clamp(in->iOrder, 0, static_cast<int>(p.order.size()));
            p.order.insert(p.order.begin() + position, index);
        }
        Invalidate();
        NotifyHeader(*this, HDN_ITEMCHANGED, index, 0, in);
        return TRUE;
    }
    case HDM_GETITEMRECT: {
        auto* out = reinterpret_cast<RECT*>(lParam);
        if (!out || !valid(wParam))
            return FALSE;
        CRect client;
        GetClientRect(&client);
        const int left = p.LeftOf(static_cast<int>(wParam));
        *out = RECT{left, 0, left + p.items[wParam].width, client.bottom};
        return TRUE;
    }
    case HDM_SETIMAGELIST: {
        const HIMAGELIST old = p.images;
        p.images = reinterpret_cast<HIMAGELIST>(lParam);
        Invalidate();
        return reinterpret_cast<LRESULT>(old);
    }
    case HDM_GETIMAGELIST:
        return reinterpret_cast<LRESULT>(p.images);
    case HDM_ORDERTOINDEX:
        return wParam < p.order.size() ? p.order[wParam] : static_cast<LRESULT>(wParam);
    case HDM_GETORDERARRAY: {
        auto* out = reinterpret_cast<int*>(lParam);
        if (!out || wParam != p.order.size())
            return FALSE;
        std::copy(p.order.begin(), p.order.end(), out);
        return TRUE;
    }
    case HDM_SETORDERARRAY: {
        const auto* in = reinterpret_cast<const int*>(lParam);
        if (!in || wParam != p.order.size())
            return FALSE;
        std::vector<int> fresh(in, in + wParam);
        std::vector<int> sorted = fresh;
        std::sort(sorted.begin(), sorted.end());
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            if (sorted[i] != static_cast<int>(i))
                return FALSE; // not a permutation of the items
        }
        p.order = std::move(fresh);
        Invalidate();
        return TRUE;
    }
    case HDM_HITTEST: {
        auto* info = reinterpret_cast<HDHITTESTINFO*>(lParam);
        if (!info)
            return -1;
        CRect client;
        GetClientRect(&client);
        const CPoint pt(info->pt);
        info->iItem = -1;
        info->flags = 0;
        if (pt.y < client.top)
            info->flags |= HHT_ABOVE;
        if (pt.y >= client.bottom)
            info->flags |= HHT_BELOW;
        if (pt.x < client.left)
            info->flags |= HHT_TOLEFT;
        if (pt.x >= client.right)
            info->flags |= HHT_TORIGHT;
        if (info->flags)
            return -1;
        // Dividers first, from the right, so that a zero width column next
        // to a wide one is still reachable.
        int x = p.TotalWidth();
        for (auto it = p.order.rbegin(); it != p.order.rend(); ++it) {
            const HeaderItem& item = p.items[static_cast<std::size_t>(*it)];
            if (pt.x >= x - kDividerLeft && pt.x <= x + kDividerRight) {
                info->iItem = *it;
                info->flags = item.width == 0 ? HHT_ONDIVOPEN : HHT_ONDIVIDER;
                return info->iItem;
            }
            x -= item.width;
        }
        x = 0;
        for (int index : p.order) {
            const HeaderItem& item = p.items[static_cast<std::size_t>(index)];
            if (pt.x >= x && pt.x < x + item.width) {
                info->iItem = index;
                info->flags = HHT_ONHEADER;
                if ((GetStyle() & HDS_CHECKBOXES) && (item.fmt & HDF_CHECKBOX) &&
                    CheckRectIn(CRect(x, client.top, x + item.width, client.bottom)).PtInRect(pt))
                    info->flags |= HHT_ONITEMSTATEICON;
                return index;
            }
            x += item.width;
        }
        info->flags = HHT_NOWHERE;
        return -1;
    }
    case HDM_LAYOUT: {
        auto* layout = reinterpret_cast<HDLAYOUT*>(lParam);
        if (!layout || !layout->prc)
            return FALSE;
        const int height = GetIdealHeight();
        if (layout->pwpos) {
            layout->pwpos->hwnd = m_hWnd;
            layout->pwpos->hwndInsertAfter = nullptr;
            layout->pwpos->x = layout->prc->left;
            layout->pwpos->y = layout->prc->top;
            layout->pwpos->cx = layout->prc->right - layout->prc->left;
            layout->pwpos->cy = height;
            layout->pwpos->flags = SWP_NOZORDER;
        }
        layout->prc->top += height;
        return TRUE;
    }
    case WM_NCDESTROY:
        // A destroyed header forgets its items, as its window took them along.
        p.items.clear();
        p.order.clear();
        p.mode = Mode::None;
        p.images = nullptr;
        return CWnd::DefWindowProc(message, wParam, lParam);
    case WM_PAINT:
        Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // the paint covers all
    case WM_LBUTTONDOWN:
        OnButtonDown(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        return 0;
    case WM_LBUTTONDBLCLK: {
        HDHITTESTINFO hit{};
        hit.pt = CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        const int index = HitTest(&hit);
        if (hit.flags & (HHT_ONDIVIDER | HHT_ONDIVOPEN))
            NotifyHeader(*this, HDN_DIVIDERDBLCLICK, index, 0, nullptr);
        else if (index >= 0)
            NotifyHeader(*this, HDN_ITEMDBLCLICK, index, 0, nullptr);
        return 0;
    }
    case WM_MOUSEMOVE:
        OnMove(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        return 0;
    case WM_LBUTTONUP:
        OnButtonUp(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        return 0;
    case WM_CAPTURECHANGED:
        if (p.mode != Mode::None && reinterpret_cast<HWND>(lParam) != m_hWnd) {
            // Someone took the mouse away: the press or drag is over, unfinished.
            p.mode = Mode::None;
            Invalidate();
        }
        return 0;
    case WM_RBUTTONUP: {
        NMHDR nm{};
        vx::listviews::Notify(*this, NM_RCLICK, &nm);
        return 0;
    }
    case WM_SETCURSOR: {
        POINT pt{};
        ::GetCursorPos(&pt);
        ScreenToClient(&pt);
        HDHITTESTINFO hit{};
        hit.pt = pt;
        HitTest(&hit);
        if (p.mode == Mode::Track || (hit.flags & (HHT_ONDIVIDER | HHT_ONDIVOPEN))) {
            ::SetCursor(LoadCursorA(nullptr, IDC_SIZEWE));
            return TRUE;
        }
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}

// --- mouse -------------------------------------------------------------------------

void CHeaderCtrl::OnButtonDown(CPoint point)
{
    Private& p = *d;
    HDHITTESTINFO hit{};
    hit.pt = point;
    const int index = HitTest(&hit);
    if (index < 0)
        return;
    const HWND self = m_hWnd;
    p.start = point;
    p.mouseX = point.x;
    if (hit.flags & (HHT_ONDIVIDER | HHT_ONDIVOPEN)) {
        HDITEM item{};
        item.mask = HDI_WIDTH;
        item.cxy = p.items[static_cast<std::size_t>(index)].width;
        if (NotifyHeader(*this, HDN_BEGINTRACK, index, 0, &item) || !IsWindow(self))
            return; // the parent refused
        p.mode = Mode::Track;
        p.item = index;
        p.trackLeft = p.LeftOf(index);
        SetCapture();
        return;
    }
    if (!(GetStyle() & (HDS_BUTTONS | HDS_DRAGDROP)))
        return;
    p.mode = Mode::Press;
    p.item = index;
    p.onCheck = (hit.flags & HHT_ONITEMSTATEICON) != 0;
    p.inside = true;
    p.grab = point.x - p.LeftOf(index);
    SetCapture();
    Invalidate();
}

void CHeaderCtrl::OnMove(CPoint point)
{
    Private& p = *d;
    p.mouseX = point.x;
    switch (p.mode) {
    case Mode::Track: {
        const int width = std::max(0, point.x - p.trackLeft);
        HDITEM item{};
        item.mask = HDI_WIDTH;
        item.cxy = width;
        const HWND self = m_hWnd;
        NotifyHeader(*this, HDN_TRACK, p.item, 0, &item);
        if (!IsWindow(self) || p.mode != Mode::Track)
            return;
        // The columns follow the mouse, as with the desktop's full drag.
        SetItem(p.item, &item);
        UpdateWindow();
        return;
    }
    case Mode::Press: {
        CRect r;
        GetItemRect(p.item, &r);
        const bool inside = r.PtInRect(point) != FALSE;
        if (inside != p.inside) {
            p.inside = inside;
            Invalidate();
        }
        if ((GetStyle() & HDS_DRAGDROP) && !p.onCheck && std::abs(point.x - p.start.x) > kDragThreshold) {
            const HWND self = m_hWnd;
            if (NotifyHeader(*this, HDN_BEGINDRAG, p.item, 0, nullptr) || !IsWindow(self))
                return; // refused: the press goes on
            p.mode = Mode::Drag;
            Invalidate();
        }
        return;
    }
    case Mode::Drag:
        Invalidate();
        return;
    case Mode::None:
        return;
    }
}

int CHeaderCtrl::DropPosition(int x) const
{
    const Private& p = *d;
    int left = 0;
    for (std::size_t pos = 0; pos < p.order.size(); ++pos) {
        const int width = p.items[static_cast<std::size_t>(p.order[pos])].width;
        if (x < left + width / 2)
            return static_cast<int>(pos);
        left += width;
    }
    return static_cast<int>(p.order.size());
}

void CHeaderCtrl::OnButtonUp(CPoint point)
{
    Private& p = *d;
    const Mode mode = p.mode;
    const int index = p.item;
    p.mode = Mode::None;
    if (mode == Mode::None)
        return;
    const HWND self = m_hWnd;
    ReleaseCapture();
    if (!IsWindow(self))
        return;
    Invalidate();
    if (mode == Mode::Track) {
        HDITEM item{};
        item.mask = HDI_WIDTH;
        item.cxy = std::max(0, point.x - p.trackLeft);
        NotifyHeader(*this, HDN_ENDTRACK, index, 0, &item);
        return;
    }
    if (mode == Mode::Drag) {
        int target = DropPosition(point.x);
        const int from = p.PositionOf(index);
        if (target > from)
            --target;
        HDITEM item{};
        item.mask = HDI_ORDER;
        item.iOrder = target;
        if (NotifyHeader(*this, HDN_ENDDRAG, index, 0, &item) || !IsWindow(self))
            return; // the parent placed the column itself
        if (target != from && static_cast<std::size_t>(index) < p.items.size()) {
            p.order.erase(p.order.begin() + from);
            p.order.insert(p.order.begin() + std::clamp(item.iOrder, 0, static_cast<int>(p.order.size())), index);
            item.mask = HDI_ORDER;
            NotifyHeader(*this, HDN_ITEMCHANGED, index, 0, &item);
        }
        return;
    }
    CRect r;
    GetItemRect(index, &r);
    if (!r.PtInRect(point))
        return;
    if (p.onCheck) {
        HDHITTESTINFO hit{};
        hit.pt = point;
        if (HitTest(&hit) == index && (hit.flags & HHT_ONITEMSTATEICON)) {
            HDITEM item{};
            item.mask = HDI_FORMAT;
            item.fmt = p.items[static_cast<std::size_t>(index)].fmt;
            NotifyHeader(*this, HDN_ITEMSTATEICONCLICK, index, 0, &item);
            return;
        }
    }
    NotifyHeader(*this, HDN_ITEMCLICK, index, 0, nullptr);
}

// --- painting ------------------------------------------------------------------------

void CHeaderCtrl::PaintItem(HDC dc, int index, const RECT& rect, bool pressed)
{
    const HeaderItem& item = d->items[static_cast<std::size_t>(index)];
    CRect r(rect);
    if (item.fmt & HDF_OWNERDRAW) {
        DRAWITEMSTRUCT dis{};
        dis.CtlType = 100; // ODT_HEADER
        dis.CtlID = GetDlgCtrlID();
        dis.itemID = static_cast<UINT>(index);
        dis.itemAction = ODA_DRAWENTIRE;
        dis.itemState = pressed ? ODS_SELECTED : 0;
        dis.hwndItem = m_hWnd;
        dis.hDC = dc;
        dis.rcItem = r;
        dis.itemData = static_cast<ULONG_PTR>(item.lParam);
        if (CWnd* parent = GetParent())
            parent->SendMessage(WM_DRAWITEM, dis.CtlID, reinterpret_cast<LPARAM>(&dis));
        return;
    }
    CRect face = r;
    FillRect(dc, &face, GetSysColorBrush(COLOR_BTNFACE));
    if (pressed) {
        FrameRect(dc, &face, GetSysColorBrush(COLOR_BTNSHADOW));
        r.OffsetRect(1, 1);
    } else {
        DrawEdge(dc, &face, EDGE_RAISED, BF_RECT | BF_SOFT);
    }
    CRect content(r.left + kPad, r.top + 2, r.right - kPad, r.bottom - 2);
    const bool enabled = IsWindowEnabled() != FALSE;
    if ((GetStyle() & HDS_CHECKBOXES) && (item.fmt & HDF_CHECKBOX)) {
        const CRect box = CheckRectIn(r);
        vx::listviews::DrawCheckBox(dc, box, (item.fmt & HDF_CHECKED) != 0, enabled);
        content.left = box.right + 4;
    }
    if ((item.fmt & HDF_IMAGE) && d->images && item.image >= 0) {
        int cx = 0;
        int cy = 0;
        ImageList_GetIconSize(d->images, &cx, &cy);
        if (content.Width() >= cx) {
            const int y = r.top + (r.Height() - cy) / 2;
            if (item.fmt & HDF_BITMAP_ON_RIGHT) {
                ImageList_Draw(d->images, item.image, dc, content.right - cx, y, ILD_TRANSPARENT);
                content.right -= cx + 4;
            } else {
                ImageList_Draw(d->images, item.image, dc, content.left, y, ILD_TRANSPARENT);
                content.left += cx + 4;
            }
        }
    }
    if (item.fmt & (HDF_SORTUP | HDF_SORTDOWN)) {
        // A small triangle at the right, pointing the way the column sorts.
        const int cx = content.right - 8;
        const int cy = r.top + r.Height() / 2;
        const bool up = (item.fmt & HDF_SORTUP) != 0;
        const COLORREF ink = GetSysColor(COLOR_BTNSHADOW);
        for (int row = 0; row < 4; ++row) {
            const int y = up ? cy - 2 + row : cy + 1 - row;
            for (int x = cx - row; x <= cx + row; ++x)
                SetPixelV(dc, x, y, ink);
        }
        content.right -= 14;
    }
    if (!item.text.IsEmpty() && content.right > content.left) {
        UINT format = DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX;
        switch (item.fmt & HDF_JUSTIFYMASK) {
        case HDF_RIGHT: format |= DT_RIGHT; break;
        case HDF_CENTER: format |= DT_CENTER; break;
        default: break;
        }
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        DrawTextA(dc, item.text, item.text.GetLength(), &content, format);
    }
}

void CHeaderCtrl::Paint()
{
    Private& p = *d;
    CPaintDC paint(this);
    HDC dc = paint.m_hDC;
    CRect client;
    GetClientRect(&client);
    HGDIOBJ oldFont = SelectObject(dc, vx::listviews::FontOf(*this));
    int x = 0;
    for (int index : p.order) {
        const int width = p.items[static_cast<std::size_t>(index)].width;
        const CRect r(x, client.top, x + width, client.bottom);
        x += width;
        if (width <= 0 || !RectVisible(dc, &r))
            continue;
        const bool pressed = p.mode == Mode::Press && p.item == index && p.inside;
        PaintItem(dc, index, r, pressed);
    }
    // The rest of the bar looks like one more, empty item.
    if (x < client.right) {
        CRect rest(x, client.top, client.right, client.bottom);
        FillRect(dc, &rest, GetSysColorBrush(COLOR_BTNFACE));
        DrawEdge(dc, &rest, EDGE_RAISED, BF_RECT | BF_SOFT);
    }
    if (p.mode == Mode::Drag && static_cast<std::size_t>(p.item) < p.items.size()) {
        // The dragged item under the mouse, and a mark where it would land.
        const int width = p.items[static_cast<std::size_t>(p.item)].width;
        const CRect ghost(p.mouseX - p.grab, client.top, p.mouseX - p.grab + width, client.bottom);
        PaintItem(dc, p.item, ghost, true);
        const int target = DropPosition(p.mouseX);
        int markX = 0;
        for (int pos = 0; pos < target; ++pos)
            markX += p.items[static_cast<std::size_t>(p.order[static_cast<std::size_t>(pos)])].width;
        CRect mark(markX - 1, client.top, markX + 1, client.bottom);
        FillRect(dc, &mark, GetSysColorBrush(COLOR_HIGHLIGHT));
    }
    SelectObject(dc, oldFont);
}
