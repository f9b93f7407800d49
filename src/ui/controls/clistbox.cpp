#include "ui/controls/clistbox.h"

#include "ui/controls/controlsupport_p.h"
#include "ui/controls/scrollbarpart_p.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/framework/mbstring.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace vx::controls;


bool StartsWith(const std::string& text, const char* prefix)
{
    const std::size_t n = std::strlen(prefix);
    return n <= text.size() && _strnicmp(text.c_str(), prefix, n) == 0;
}

} // namespace

struct CListBox::Private {
    explicit Private(CListBox& list) : w(list) {}

    struct Item {
        std::string text;
        DWORD_PTR data = 0;
        bool selected = false;
        int height = 0;
    };

    CListBox& w;
    std::vector<Item> items;
    int selection = -1; // single-selection lists
    int caretIndex = 0;
    int anchor = 0;
    int top = 0;
    int itemHeight = 0;
    bool focused = false;
    bool tracking = false;
    bool comboMode = false;
    ScrollBarPart bar;

    DWORD Style() const { return w.GetStyle(); }
    bool Multiple() const { return Style() & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL); }
    bool OwnerDraw() const { return Style() & (LBS_OWNERDRAWFIXED | LBS_OWNERDRAWVARIABLE); }
    int Count() const { return static_cast<int>(items.size()); }
    bool Valid(int i) const { return i >= 0 && i < Count(); }

    int DefaultHeight()
    {
        if (itemHeight <= 0) {
            itemHeight = LineHeight(w);
            if (OwnerDraw()) {
                MEASUREITEMSTRUCT mis{ODT_LISTBOX, w.GetDlgCtrlID(), 0, 0, static_cast<UINT>(itemHeight), 0};
                if (CWnd* parent = w.GetParent())
                    parent->SendMessage(WM_MEASUREITEM, static_cast<WPARAM>(mis.CtlID), reinterpret_cast<LPARAM>(&mis));
                if (mis.itemHeight > 0)
                    itemHeight = static_cast<int>(mis.itemHeight);
            }
        }
        return itemHeight;
    }

    int HeightOf(int i)
    {
        if ((Style() & LBS_OWNERDRAWVARIABLE) && Valid(i) && items[static_cast<std::size_t>(i)].height > 0)
            return items[static_cast<std::size_t>(i)].height;
        return DefaultHeight();
    }

    CRect Inner() const
    {
        CRect r;
        w.GetClientRect(&r);
        return r;
    }

    int VisibleCount()
    {
        const int height = Inner().Height();
        int used = 0;
        int n = 0;
        for (int i = top; i < Count(); ++i) {
            used += HeightOf(i);
            if (used > height)
                break;
            ++n;
        }
        return std::max(1, n);
    }

    // How many items fit from the end, for the highest top index.
    int MaxTop()
    {
        const int height = Inner().Height();
        int used = 0;
        int i = Count() - 1;
        for (; i >= 0; --i) {
            used += HeightOf(i);
            if (used > height)
                break;
        }
        return std::max(0, i + 1);
    }

    bool NeedsBar() { return (Style() & WS_VSCROLL) && (MaxTop() > 0 || (Style() & LBS_DISABLENOSCROLL)); }

    CRect ItemArea()
    {
        CRect r = Inner();
        if (NeedsBar())
            r.right = std::max(r.left, r.right - ScrollBarWidth());
        return r;
    }

    CRect ItemRect(int i)
    {
        const CRect area = ItemArea();
        int y = area.top;
        if (i >= top) {
            for (int k = top; k < i; ++k)
                y += HeightOf(k);
        } else {
            for (int k = i; k < top; ++k)
                y -= HeightOf(k);
        }
        return CRect(area.left, y, area.right, y + HeightOf(i));
    }

    int ItemAt(CPoint p, bool& outside)
    {
        const CRect area = ItemArea();
        outside = !area.PtInRect(p);
        if (Count() == 0)
            return 0;
        int y = area.top;
        if (p.y < area.top) {
            outside = true;
            return std::max(0, top - 1);
        }
        for (int i = top; i < Count(); ++i) {
            const int h = HeightOf(i);
            if (p.y < y + h)
                return i;
            y += h;
        }
        outside = true;
        return Count() - 1;
    }

    void EnsureVisible(int i)
    {
        if (!Valid(i))
            return;
        if (i < top) {
            top = i;
        } else {
            while (top < i && ItemRect(i).bottom > ItemArea().bottom)
                ++top;
        }
        top = std::clamp(top, 0, MaxTop());
    }

    bool IsSelected(int i) const
    {
        if (!Valid(i))
            return false;
        return Multiple() ? items[static_cast<std::size_t>(i)].selected : selection == i;
    }

    void Changed() { w.Invalidate(FALSE); }

    void Tell(UINT code)
    {
        if (code == LBN_SETFOCUS || code == LBN_KILLFOCUS || (Style() & LBS_NOTIFY) || comboMode)
            Notify(w, code);
    }

    int Insert(int at, const char* text)
    {
        Item item;
        item.text = text ? text : "";
        if (at < 0 || at > Count())
            at = Count();
        items.insert(items.begin() + at, item);
        if (Style() & LBS_OWNERDRAWVARIABLE) {
            MEASUREITEMSTRUCT mis{ODT_LISTBOX, w.GetDlgCtrlID(), static_cast<UINT>(at), 0,
                                  static_cast<UINT>(DefaultHeight()), 0};
            if (CWnd* parent = w.GetParent())
                parent->SendMessage(WM_MEASUREITEM, static_cast<WPARAM>(mis.CtlID), reinterpret_cast<LPARAM>(&mis));
            items[static_cast<std::size_t>(at)].height = static_cast<int>(mis.itemHeight);
        }
        if (selection >= at)
            ++selection;
        if (caretIndex >= at && Count() > 1)
            ++caretIndex;
        Changed();
        return at;
    }

    int SortedPlace(const char* text) const
    {
        int at = 0;
        while (at < Count() && _stricmp(items[static_cast<std::size_t>(at)].text.c_str(), text ? text : "") <= 0)
            ++at;
        return at;
    }

    int Find(int startAfter, const char* text, bool exact) const
    {
        if (!text || Count() == 0)
            return LB_ERR;
        const int start = (startAfter < -1 || startAfter >= Count()) ? -1 : startAfter;
        for (int k = 1; k <= Count(); ++k) {
            const int i = (start + k) % Count();
            const std::string& t = items[static_cast<std::size_t>(i)].text;
            if (exact ? _stricmp(t.c_str(), text) == 0 : StartsWith(t, text))
                return i;
        }
        return LB_ERR;
    }

    void SelectRange(int from, int to, bool on)
    {
        if (from > to)
            std::swap(from, to);
        for (int i = std::max(0, from); i <= std::min(to, Count() - 1); ++i)
            items[static_cast<std::size_t>(i)].selected = on;
    }

    // A choice of the user: the caret moves there and the item is selected
    // by the list's rules. Returns whether the selection changed.
    bool Choose(int i, bool shift, bool ctrl, bool toggle)
    {
        if (!Valid(i) || (Style() & LBS_NOSEL))
            return false;
        bool changed = false;
        if (!Multiple()) {
            changed = selection != i;
            selection = i;
        } else if (Style() & LBS_EXTENDEDSEL) {
            std::vector<bool> before;
            for (const Item& item : items)
                before.push_back(item.selected);
            if (shift) {
                if (!ctrl)
                    SelectRange(0, Count() - 1, false);
                SelectRange(anchor, i, true);
            } else if (ctrl) {
                if (toggle)
                    items[static_cast<std::size_t>(i)].selected = !items[static_cast<std::size_t>(i)].selected;
                anchor = i;
            } else {
                SelectRange(0, Count() - 1, false);
                items[static_cast<std::size_t>(i)].selected = true;
                anchor = i;
            }
            for (int k = 0; k < Count(); ++k)
                changed = changed || before[static_cast<std::size_t>(k)] != items[static_cast<std::size_t>(k)].selected;
        } else if (toggle) {
            items[static_cast<std::size_t>(i)].selected = !items[static_cast<std::size_t>(i)].selected;
            changed = true;
        }
        caretIndex = i;
        EnsureVisible(i);
        Changed();
        return changed;
    }

    void Paint()
    {
        CPaintDC dc(&w);
        HBRUSH brush = ParentColors(w, dc, WM_CTLCOLORLISTBOX, COLOR_WINDOWTEXT, COLOR_WINDOW);
        const COLORREF textColor = w.IsWindowEnabled() ? dc.GetTextColor() : GetSysColor(COLOR_GRAYTEXT);
        CRect client;
        w.GetClientRect(&client);
        ::FillRect(dc, &client, brush);
        CRect inner(client);
        top = std::clamp(top, 0, MaxTop());
        if (NeedsBar()) {
            bar.vertical = true;
            bar.rect = CRect(std::max(inner.left, inner.right - ScrollBarWidth()), inner.top, inner.right, inner.bottom);
            bar.min = 0;
            bar.max = std::max(0, Count() - 1);
            bar.page = VisibleCount();
            bar.pos = top;
            bar.enabled = w.IsWindowEnabled() && MaxTop() > 0;
            bar.Paint(dc);
        }
        const CRect area = ItemArea();
        const int saved = dc.SaveDC();
        dc.IntersectClipRect(&area);
        HGDIOBJ oldFont = ::SelectObject(dc, FontOf(w));
        dc.SetBkMode(TRANSPARENT);
        for (int i = top; i < Count(); ++i) {
            const CRect r = ItemRect(i);
            if (r.top >= area.bottom)
                break;
            const bool selected = IsSelected(i);
            const bool hasFocus = (focused || comboMode) && i == caretIndex;
            if (OwnerDraw()) {
                DRAWITEMSTRUCT dis{};
                dis.CtlType = ODT_LISTBOX;
                dis.CtlID = w.GetDlgCtrlID();
                dis.itemID = static_cast<UINT>(i);
                dis.itemAction = ODA_DRAWENTIRE;
                dis.itemState = (selected ? ODS_SELECTED : 0) | (hasFocus ? ODS_FOCUS : 0) |
                                (w.IsWindowEnabled() ? 0 : ODS_DISABLED);
                dis.hwndItem = w.m_hWnd;
                dis.hDC = dc;
                dis.rcItem = r;
                dis.itemData = items[static_cast<std::size_t>(i)].data;
                if (CWnd* parent = w.GetParent())
                    parent->SendMessage(WM_DRAWITEM, static_cast<WPARAM>(dis.CtlID), reinterpret_cast<LPARAM>(&dis));
                continue;
            }
            if (selected)
                dc.FillSolidRect(&r, GetSysColor(COLOR_HIGHLIGHT));
            dc.SetTextColor(selected ? GetSysColor(COLOR_HIGHLIGHTTEXT) : textColor);
            CRect text(r);
            text.left += 2;
            dc.DrawText(items[static_cast<std::size_t>(i)].text.c_str(), -1, &text,
                        DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX |
                            ((Style() & LBS_USETABSTOPS) ? DT_EXPANDTABS : 0));
            if (hasFocus && focused)
                dc.DrawFocusRect(&r);
        }
        if (Count() == 0 && focused) {
            CRect r(area.left, area.top, area.right, area.top + DefaultHeight());
            dc.DrawFocusRect(&r);
        }
        ::SelectObject(dc, oldFont);
        dc.RestoreDC(saved);
    }

    void Scroll(int to)
    {
        const int now = std::clamp(to, 0, MaxTop());
        if (now != top) {
            top = now;
            Changed();
        }
    }

    void Key(UINT key)
    {
        if (Count() == 0)
            return;
        const bool shift = KeyDown(VK_SHIFT);
        const bool ctrl = KeyDown(VK_CONTROL);
        int target = caretIndex;
        switch (key) {
        case VK_UP: target = caretIndex - 1; break;
        case VK_DOWN: target = caretIndex + 1; break;
        case VK_HOME: target = 0; break;
        case VK_END: target = Count() - 1; break;
        case VK_PRIOR: target = caretIndex - std::max(1, VisibleCount() - 1); break;
        case VK_NEXT: target = caretIndex + std::max(1, VisibleCount() - 1); break;
        case VK_SPACE:
            if (Multiple()) {
                if (Choose(caretIndex, false, true, true))
                    Tell(LBN_SELCHANGE);
            }
            return;
        default:
            return;
        }
        target = std::clamp(target, 0, Count() - 1);
        if (!Multiple() && selection < 0 && (key == VK_UP || key == VK_DOWN))
            target = std::clamp(caretIndex, 0, Count() - 1);
        bool changed;
        if (Style() & LBS_MULTIPLESEL) {
            caretIndex = target;
            EnsureVisible(target);
            Changed();
            changed = false;
        } else {
            changed = Choose(target, shift, ctrl && (Style() & LBS_EXTENDEDSEL), false);
            if ((Style() & LBS_EXTENDEDSEL) && ctrl && !shift) {
                caretIndex = target;
                changed = false;
            }
        }
        if (changed && !comboMode)
            Tell(LBN_SELCHANGE);
    }
};

CListBox::CListBox() : d(std::make_unique<Private>(*this)) {}

CListBox::~CListBox() = default;

BOOL CListBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "ListBox", style, rect, parent, id);
}

int CListBox::GetCount() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETCOUNT, 0, 0));
}

int CListBox::GetCurSel() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETCURSEL, 0, 0));
}

int CListBox::SetCurSel(int index)
{
    return static_cast<int>(SendMessage(LB_SETCURSEL, static_cast<WPARAM>(index)));
}

int CListBox::GetSel(int index) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETSEL, static_cast<WPARAM>(index), 0));
}

int CListBox::SetSel(int index, BOOL select)
{
    return static_cast<int>(SendMessage(LB_SETSEL, static_cast<WPARAM>(select), index));
}

int CListBox::GetSelCount() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETSELCOUNT, 0, 0));
}

int CListBox::GetSelItems(int maxItems, int* items) const
{
    return static_cast<int>(
        ::SendMessageA(m_hWnd, LB_GETSELITEMS, static_cast<WPARAM>(maxItems), reinterpret_cast<LPARAM>(items)));
}

int CListBox::GetTopIndex() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETTOPINDEX, 0, 0));
}

int CListBox::SetTopIndex(int index)
{
    return static_cast<int>(SendMessage(LB_SETTOPINDEX, static_cast<WPARAM>(index)));
}

int CListBox::GetCaretIndex() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETCARETINDEX, 0, 0));
}

int CListBox::SetCaretIndex(int index, BOOL scroll)
{
    return static_cast<int>(SendMessage(LB_SETCARETINDEX, static_cast<WPARAM>(index), scroll ? 0 : 1));
}

DWORD_PTR CListBox::GetItemData(int index) const
{
    return static_cast<DWORD_PTR>(::SendMessageA(m_hWnd, LB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

int CListBox::SetItemData(int index, DWORD_PTR data)
{
    return static_cast<int>(SendMessage(LB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}

int CListBox::GetItemRect(int index, LPRECT rect) const
{
    return static_cast<int>(
        ::SendMessageA(m_hWnd, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(rect)));
}

int CListBox::GetItemHeight(int index) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETITEMHEIGHT, static_cast<WPARAM>(index), 0));
}

int CListBox::SetItemHeight(int index, UINT height)
{
    return static_cast<int>(SendMessage(LB_SETITEMHEIGHT, static_cast<WPARAM>(index), static_cast<LPARAM>(height)));
}

UINT CListBox::ItemFromPoint(CPoint point, BOOL& outside) const
{
    const auto r = static_cast<DWORD>(
        ::SendMessageA(m_hWnd, LB_ITEMFROMPOINT, 0, MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y))));
    outside = HIWORD(r);
    return LOWORD(r);
}

int CListBox::GetText(int index, LPSTR buffer) const
{
    return static_cast<int>(
        ::SendMessageA(m_hWnd, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(buffer)));
}

void CListBox::GetText(int index, CString& text) const
{
    const int length = GetTextLen(index);
    if (length < 0) {
        text.Empty();
        return;
    }
    GetText(index, text.GetBuffer(length));
    text.ReleaseBuffer();
}

int CListBox::GetTextLen(int index) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0));
}

int CListBox::AddString(LPCSTR text)
{
    return static_cast<int>(SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
}

int CListBox::InsertString(int index, LPCSTR text)
{
    return static_cast<int>(SendMessage(LB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}

int CListBox::DeleteString(UINT index)
{
    return static_cast<int>(SendMessage(LB_DELETESTRING, index));
}

void CListBox::ResetContent()
{
    SendMessage(LB_RESETCONTENT);
}

int CListBox::FindString(int startAfter, LPCSTR text) const
{
    return static_cast<int>(
        ::SendMessageA(m_hWnd, LB_FINDSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}

int CListBox::FindStringExact(int startAfter, LPCSTR text) const
{
    return static_cast<int>(
        ::SendMessageA(m_hWnd, LB_FINDSTRINGEXACT, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}

int CListBox::SelectString(int startAfter, LPCSTR text)
{
    return static_cast<int>(SendMessage(LB_SELECTSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}

void CListBox::DrawItem(LPDRAWITEMSTRUCT) {}

void CListBox::MeasureItem(LPMEASUREITEMSTRUCT) {}

BOOL CListBox::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message == WM_DRAWITEM) {
        DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
    } else if (message == WM_MEASUREITEM) {
        MeasureItem(reinterpret_cast<LPMEASUREITEMSTRUCT>(lParam));
    } else {
        return CWnd::OnChildNotify(message, wParam, lParam, result);
    }
    if (result)
        *result = TRUE;
    return TRUE;
}

LRESULT CListBox::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    Private& p = *d;
    const int index = static_cast<int>(wParam);
    const char* text = reinterpret_cast<const char*>(lParam);
    switch (message) {
    case WM_PAINT:
        p.Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE;
    case WM_SETFONT: {
        const LRESULT r = CWnd::DefWindowProc(message, wParam, lParam);
        if (!p.OwnerDraw())
            p.itemHeight = 0;
        p.Changed();
        return r;
    }
    case WM_SIZE:
    case WM_ENABLE:
        p.Changed();
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_SETFOCUS:
        p.focused = true;
        p.Changed();
        p.Tell(LBN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        p.focused = false;
        p.Changed();
        p.Tell(LBN_KILLFOCUS);
        return 0;
    case kListComboMode:
        p.comboMode = wParam != 0;
        p.tracking = false;
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        const CPoint at = PointOf(lParam);
        bool outside = false;
        CRect client;
        GetClientRect(&client);
        if (p.comboMode && !client.PtInRect(at)) {
            p.Tell(LBN_SELCANCEL);
            return 0;
        }
        if (p.NeedsBar() && p.bar.rect.PtInRect(at)) {
            const auto part = p.bar.Press(at);
            if (part == ScrollBarPart::LineUp)
                p.Scroll(p.top - 1);
            else if (part == ScrollBarPart::LineDown)
                p.Scroll(p.top + 1);
            else if (part == ScrollBarPart::PageUp)
                p.Scroll(p.top - p.VisibleCount());
            else if (part == ScrollBarPart::PageDown)
                p.Scroll(p.top + p.VisibleCount());
            if (part == ScrollBarPart::Thumb)
                SetCapture();
            else
                p.bar.pressed = ScrollBarPart::None;
            return 0;
        }
        if (!p.comboMode && GetFocus() != this)
            SetFocus();
        const int item = p.ItemAt(at, outside);
        if (p.comboMode) {
            // The choice is taken when the button goes up.
            p.tracking = true;
            if (!outside && p.Valid(item)) {
                p.selection = item;
                p.caretIndex = item;
                p.Changed();
            }
            return 0;
        }
        if (outside || !p.Valid(item))
            return 0;
        const bool changed = p.Choose(item, KeyDown(VK_SHIFT), KeyDown(VK_CONTROL), true);
        p.tracking = !p.Multiple() || (GetStyle() & LBS_EXTENDEDSEL);
        if (p.tracking)
            SetCapture();
        const HWND self = m_hWnd;
        if (changed)
            p.Tell(LBN_SELCHANGE);
        if (message == WM_LBUTTONDBLCLK && IsWindow(self))
            p.Tell(LBN_DBLCLK);
        return 0;
    }
    case WM_MOUSEMOVE: {
        const CPoint at = PointOf(lParam);
        if (p.bar.pressed == ScrollBarPart::Thumb) {
            p.Scroll(p.bar.DragTo(at));
            return 0;
        }
        bool outside = false;
        const int item = p.ItemAt(at, outside);
        if (p.comboMode) {
            if (!outside && p.Valid(item) && item != p.selection) {
                p.selection = item;
                p.caretIndex = item;
                p.Changed();
            }
            return 0;
        }
        if (!p.tracking || !p.Valid(item))
            return 0;
        if (outside)
            p.EnsureVisible(item);
        if (p.Choose(item, (GetStyle() & LBS_EXTENDEDSEL) != 0, false, false))
            p.Tell(LBN_SELCHANGE);
        return 0;
    }
    case WM_LBUTTONUP: {
        if (p.bar.pressed != ScrollBarPart::None) {
            p.bar.pressed = ScrollBarPart::None;
            ReleaseCapture();
            return 0;
        }
        if (p.comboMode) {
            bool outside = false;
            const int item = p.ItemAt(PointOf(lParam), outside);
            const bool wasTracking = p.tracking;
            p.tracking = false;
            if (wasTracking && !outside && p.Valid(item)) {
                p.selection = item;
                p.Tell(LBN_SELCHANGE);
            }
            return 0;
        }
        if (p.tracking) {
            p.tracking = false;
            ReleaseCapture();
        }
        return 0;
    }
    case WM_CAPTURECHANGED:
        p.tracking = p.comboMode && p.tracking;
        p.bar.pressed = ScrollBarPart::None;
        return 0;
    case WM_MOUSEWHEEL:
        p.Scroll(p.top - 3 * static_cast<short>(HIWORD(wParam)) / 120);
        return 0;
    case WM_KEYDOWN:
        if (p.comboMode) {
            if (CWnd* combo = GetParent())
                return combo->SendMessage(message, wParam, lParam);
            return 0;
        }
        p.Key(static_cast<UINT>(wParam));
        return 0;
    case WM_CHAR: {
        if (p.comboMode) {
            if (CWnd* combo = GetParent())
                return combo->SendMessage(message, wParam, lParam);
            return 0;
        }
        if (wParam < 0x20 || p.Count() == 0 || p.Multiple())
            return 0;
        const char prefix[2] = {static_cast<char>(wParam), 0};
        const int found = p.Find(p.caretIndex, prefix, false);
        if (found != LB_ERR && p.Choose(found, false, false, false))
            p.Tell(LBN_SELCHANGE);
        return 0;
    }
    case LB_GETCOUNT:
        return p.Count();
    case LB_ADDSTRING:
        return p.Insert((GetStyle() & LBS_SORT) ? p.SortedPlace(text) : p.Count(), text);
    case LB_INSERTSTRING:
        if (index < -1 || index > p.Count())
            return LB_ERR;
        return p.Insert(index, text);
    case LB_DELETESTRING:
        if (!p.Valid(index))
            return LB_ERR;
        if (CWnd* parent = GetParent(); parent && p.OwnerDraw()) {
            DELETEITEMSTRUCT dis{ODT_LISTBOX, static_cast<UINT>(GetDlgCtrlID()), static_cast<UINT>(index), m_hWnd,
                                 p.items[static_cast<std::size_t>(index)].data};
            parent->SendMessage(WM_DELETEITEM, static_cast<WPARAM>(dis.CtlID), reinterpret_cast<LPARAM>(&dis));
        }
        p.items.erase(p.items.begin() + index);
        if (p.selection == index)
            p.selection = -1;
        else if (p.selection > index)
            --p.selection;
        if (p.caretIndex > index || p.caretIndex >= p.Count())
            p.caretIndex = std::max(0, p.caretIndex - 1);
        p.top = std::clamp(p.top, 0, p.MaxTop());
        p.Changed();
        return p.Count();
    case LB_RESETCONTENT:
        p.items.clear();
        p.selection = -1;
        p.caretIndex = 0;
        p.anchor = 0;
        p.top = 0;
        p.Changed();
        return 0;
    case LB_GETTEXT:
        if (!p.Valid(index) || !text)
            return LB_ERR;
        std::memcpy(reinterpret_cast<char*>(lParam), p.items[static_cast<std::size_t>(index)].text.c_str(),
                    p.items[static_cast<std::size_t>(index)].text.size() + 1);
        return static_cast<LRESULT>(p.items[static_cast<std::size_t>(index)].text.size());
    case LB_GETTEXTLEN:
        return p.Valid(index) ? static_cast<LRESULT>(p.items[static_cast<std::size_t>(index)].text.size()) : LB_ERR;
    case LB_GETITEMDATA:
        return p.Valid(index) ? static_cast<LRESULT>(p.items[static_cast<std::size_t>(index)].data) : LB_ERR;
    case LB_SETITEMDATA:
        if (!p.Valid(index))
            return LB_ERR;
        p.items[static_cast<std::size_t>(index)].data = static_cast<DWORD_PTR>(lParam);
        return LB_OKAY;
    case LB_GETCURSEL:
        if (p.Multiple())
            return p.Valid(p.caretIndex) && p.IsSelected(p.caretIndex) ? p.caretIndex : LB_ERR;
        return p.selection;
    case LB_SETCURSEL:
        if (p.Multiple())
            return LB_ERR;
        p.selection = p.Valid(index) ? index : -1;
        if (p.selection >= 0) {
            p.caretIndex = index;
            p.EnsureVisible(index);
        }
        p.Changed();
        return p.selection >= 0 ? p.selection : LB_ERR;
    case LB_GETSEL:
        return p.Valid(index) ? (p.IsSelected(index) ? 1 : 0) : LB_ERR;
    case LB_SETSEL: {
        if (!p.Multiple())
            return LB_ERR;
        const int at = static_cast<int>(lParam);
        if (at == -1)
            p.SelectRange(0, p.Count() - 1, wParam != 0);
        else if (p.Valid(at))
            p.items[static_cast<std::size_t>(at)].selected = wParam != 0;
        else
            return LB_ERR;
        p.Changed();
        return LB_OKAY;
    }
    case LB_SELITEMRANGE:
        if (!p.Multiple())
            return LB_ERR;
        p.SelectRange(LOWORD(static_cast<DWORD_PTR>(lParam)), HIWORD(static_cast<DWORD_PTR>(lParam)), wParam != 0);
        p.Changed();
        return LB_OKAY;
    case LB_SELITEMRANGEEX:
        if (!p.Multiple())
            return LB_ERR;
        p.SelectRange(index, static_cast<int>(lParam), index <= static_cast<int>(lParam));
        p.Changed();
        return LB_OKAY;
    case LB_GETSELCOUNT: {
        if (!p.Multiple())
            return LB_ERR;
        return std::count_if(p.items.begin(), p.items.end(), [](const Private::Item& i) { return i.selected; });
    }
    case LB_GETSELITEMS: {
        if (!p.Multiple())
            return LB_ERR;
        int* out = reinterpret_cast<int*>(lParam);
        int n = 0;
        for (int i = 0; i < p.Count() && n < index; ++i) {
            if (p.items[static_cast<std::size_t>(i)].selected && out)
                out[n++] = i;
        }
        return n;
    }
    case LB_GETTOPINDEX:
        return p.top;
    case LB_SETTOPINDEX:
        if (!p.Valid(index) && index != 0)
            return LB_ERR;
        p.top = std::clamp(index, 0, p.MaxTop());
        p.Changed();
        return LB_OKAY;
    case LB_GETCARETINDEX:
        return p.caretIndex;
    case LB_SETCARETINDEX:
        if (!p.Valid(index))
            return LB_ERR;
        p.caretIndex = index;
        if (!lParam)
            p.EnsureVisible(index);
        p.Changed();
        return LB_OKAY;
    case LB_GETANCHORINDEX:
        return p.anchor;
    case LB_SETANCHORINDEX:
        if (!p.Valid(index))
            return LB_ERR;
        p.anchor = index;
        return LB_OKAY;
    case LB_GETITEMRECT:
        if (!p.Valid(index) || !lParam)
            return LB_ERR;
        *reinterpret_cast<RECT*>(lParam) = p.ItemRect(index);
        return LB_OKAY;
    case LB_GETITEMHEIGHT:
        return p.HeightOf(index);
    case LB_SETITEMHEIGHT:
        if (lParam <= 0 || lParam > 255)
            return LB_ERR;
        if ((GetStyle() & LBS_OWNERDRAWVARIABLE) && p.Valid(index))
            p.items[static_cast<std::size_t>(index)].height = static_cast<int>(lParam);
        else
            p.itemHeight = static_cast<int>(lParam);
        p.Changed();
        return LB_OKAY;
    case LB_ITEMFROMPOINT: {
        bool outside = false;
        const int item = p.ItemAt(PointOf(lParam), outside);
        return MAKELONG(static_cast<WORD>(item), outside ? 1 : 0);
    }
    case LB_FINDSTRING:
        return p.Find(index, text, false);
    case LB_FINDSTRINGEXACT:
        return p.Find(index, text, true);
    case LB_SELECTSTRING: {
        const int found = p.Find(index, text, false);
        if (found == LB_ERR)
            return LB_ERR;
        if (p.Multiple()) {
            p.items[static_cast<std::size_t>(found)].selected = true;
            p.caretIndex = found;
        } else {
            p.selection = found;
            p.caretIndex = found;
        }
        p.EnsureVisible(found);
        p.Changed();
        return found;
    }
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}
