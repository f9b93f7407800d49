#include "ui/menus/menubar_p.h"

#include "ui/gdi/wingdi.h"
#include "ui/menus/menumodel_p.h"
#include "ui/menus/popupmenuwindow_p.h"

#include "platform/windows/menubarbridge.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace vx::menus {
namespace {

constexpr char kMarlettMinimize = 0x30;
constexpr char kMarlettRestore = 0x32;
constexpr char kMarlettClose = 0x72;
// Space between the items of a bar, added to each item's own width.
constexpr int kItemSpace = 12;

struct BarState {
    MenuBarLayout layout;
    int hot = -1;      // under the mouse, outside the loop
    int selected = -1; // the loop's item
    bool open = false; // its popup shows
    bool cues = false;
};

std::unordered_map<HWND, BarState>& Bars()
{
    static auto* bars = new std::unordered_map<HWND, BarState>;
    return *bars;
}

BarState* Find(HWND window)
{
    auto it = Bars().find(window);
    return it == Bars().end() ? nullptr : &it->second;
}

// Handles are never reused: entries of windows that are gone only wait to
// be dropped.
BarState& Entry(HWND window)
{
    auto& bars = Bars();
    if (bars.size() >= 64 && !bars.count(window))
        std::erase_if(bars, [](const auto& e) { return !IsWindow(e.first); });
    return bars[window];
}

CRect Insets(const CWnd& w)
{
    const bool topLevel = !w.GetParent() || !(w.GetStyle() & WS_CHILD);
    return StandardFrameInsets(w.GetStyle(), w.GetExStyle(), topLevel);
}

bool IsBuiltin(HBITMAP b)
{
    const auto value = reinterpret_cast<std::uintptr_t>(b);
    return value > 0 && value < 12;
}

UINT ItemId(const MenuItem& it)
{
    return it.sub ? static_cast<UINT>(reinterpret_cast<std::uintptr_t>(it.sub)) : it.id;
}

bool FlatMenus()
{
    BOOL flat = FALSE;
    SystemParametersInfoA(SPI_GETFLATMENU, 0, &flat, 0);
    return flat;
}

HBRUSH BarBrush(const Menu& menu)
{
    if (menu.info.hbrBack)
        return menu.info.hbrBack;
    return GetSysColorBrush(FlatMenus() ? COLOR_MENUBAR : COLOR_MENU);
}

// Lays the items out in rows `width` wide from `origin` (window coordinates).
void Layout(CWnd& window, HMENU handle, int width, CPoint origin, MenuBarLayout& out)
{
    out = MenuBarLayout{};
    out.menu = handle;
    out.width = width;
    Menu* menu = MenuOf(handle);
    if (!menu)
        return;
    const int minRow = GetSystemMetrics(SM_CYMENU);
    HDC dc = GetDC(nullptr);
    HGDIOBJ oldFont = SelectObject(dc, MenuFont(false));
    const std::size_t n = menu->items.size();
    std::vector<CSize> sizes(n);
    for (std::size_t i = 0; i < n; ++i) {
        const MenuItem it = menu->items[i];
        CSize& z = sizes[i];
        if (it.IsOwnerDrawn()) {
            MEASUREITEMSTRUCT mis{};
            mis.CtlType = ODT_MENU;
            mis.itemID = ItemId(it);
            mis.itemHeight = static_cast<UINT>(minRow);
            mis.itemData = it.data;
            window.SendMessage(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&mis));
            menu = MenuOf(handle);
            if (!menu || menu->items.size() != n) { // the window changed its menu meanwhile
                SelectObject(dc, oldFont);
                ReleaseDC(nullptr, dc);
                out.items.clear();
                return;
            }
            // The bar puts its spacing around what the owner measured.
            z = CSize(static_cast<int>(mis.itemWidth) + kItemSpace, static_cast<int>(mis.itemHeight));
        } else if (it.IsSeparator()) {
            z = CSize(0, 0);
        } else if ((it.type & MFT_BITMAP) && IsBuiltin(it.bitmap)) {
            z = CSize(GetSystemMetrics(SM_CXMENUSIZE) + 2, minRow);
        } else if (it.type & MFT_BITMAP) {
            BITMAP info{};
            if (it.bitmap)
                GetObjectA(it.bitmap, sizeof info, &info);
            z = CSize(info.bmWidth + 4, info.bmHeight + 2);
        } else {
            RECT r{0, 0, 0, 0};
            const std::string text = it.text.substr(0, it.text.find('\t'));
            if (!text.empty())
                DrawTextA(dc, text.c_str(), -1, &r, DT_CALCRECT | DT_SINGLELINE);
            z = CSize(r.right - r.left + kItemSpace, r.bottom - r.top + 4);
        }
    }
    SelectObject(dc, oldFont);
    ReleaseDC(nullptr, dc);

    out.items.assign(n, CRect());
    int y = 0;
    std::size_t start = 0;
    auto finishRow = [&](std::size_t end) {
        int height = minRow;
        for (std::size_t i = start; i < end; ++i)
            height = std::max<int>(height, sizes[i].cy);
        // From the first right-justified item on, the row sits at its right end.
        std::size_t right = end;
        for (std::size_t i = start; i < end && right == end; ++i) {
            if (menu->items[i].type & MFT_RIGHTJUSTIFY)
                right = i;
        }
        const int shift = right < end ? std::max(0, width - static_cast<int>(out.items[end - 1].right)) : 0;
        for (std::size_t i = start; i < end; ++i) {
            CRect& r = out.items[i];
            r.top = y;
            r.bottom = y + height;
            if (i >= right)
                r.OffsetRect(shift, 0);
        }
        y += height;
    };
    int x = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const bool breaks = menu->items[i].type & (MF_MENUBREAK | MF_MENUBARBREAK);
        if (i > start && (breaks || x + sizes[i].cx > width)) {
            finishRow(i);
            start = i;
            x = 0;
        }
        out.items[i] = CRect(x, 0, x + sizes[i].cx, 0);
        x += sizes[i].cx;
    }
    if (n)
        finishRow(n);
    else
        y = minRow;
    for (CRect& r : out.items)
        r.OffsetRect(origin);
    // The rows and the line under them.
    out.strip = CRect(origin.x, origin.y, origin.x + width, origin.y + y + 1);
}

int Height(CWnd& window, int width)
{
    const HMENU menu = ::GetMenu(window.m_hWnd);
    if (!menu) {
        if (BarState* s = Find(window.m_hWnd))
            s->layout = MenuBarLayout{};
        return 0;
    }
    BarState& s = Entry(window.m_hWnd);
    const CRect insets = Insets(window);
    Layout(window, menu, width, CPoint(insets.left, insets.top), s.layout);
    return s.layout.strip.Height();
}

UINT StateOfItem(const BarState& s, const MenuItem& it, int position)
{
    UINT state = 0;
    if (position == s.selected)
        state |= s.open ? ODS_SELECTED : ODS_HOTLIGHT;
    else if (position == s.hot)
        state |= ODS_HOTLIGHT;
    if (it.state & MF_GRAYED)
        state |= ODS_GRAYED;
    if (it.state & MF_DISABLED)
        state |= ODS_DISABLED;
    if (it.state & MFS_CHECKED)
        state |= ODS_CHECKED;
    if (!s.cues)
        state |= ODS_NOACCEL;
    return state;
}

void DrawBuiltin(HDC dc, const CRect& r, const MenuItem& it, UINT state)
{
    if (it.bitmap == kBarSystem) {
        HICON icon = nullptr;
        if (it.data && IsWindow(reinterpret_cast<HWND>(it.data)))
            icon = reinterpret_cast<HICON>(SendMessageA(reinterpret_cast<HWND>(it.data), WM_GETICON, ICON_SMALL, 0));
        const int size = GetSystemMetrics(SM_CXSMICON);
        const int x = r.left + (r.Width() - size) / 2;
        const int y = r.top + (r.Height() - size) / 2;
        if (icon) {
            DrawIconEx(dc, x, y, icon, size, size, 0, nullptr, DI_NORMAL);
            return;
        }
        // No icon: a small window with its caption.
        RECT frame{x + 1, y + 2, x + size - 1, y + size - 2};
        FrameRect(dc, &frame, GetSysColorBrush(COLOR_BTNTEXT));
        RECT caption{x + 1, y + 2, x + size - 1, y + 5};
        FillRect(dc, &caption, GetSysColorBrush(COLOR_ACTIVECAPTION));
        return;
    }
    const int size = GetSystemMetrics(SM_CYMENUSIZE) - 2;
    CRect box(CPoint(r.left + (r.Width() - size) / 2, r.top + (r.Height() - size) / 2), CSize(size, size));
    FillRect(dc, &box, GetSysColorBrush(COLOR_BTNFACE));
    const bool pressed = state & ODS_SELECTED;
    DrawEdge(dc, &box, pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
    CRect glyph = box;
    glyph.DeflateRect(3, 3);
    if (pressed)
        glyph.OffsetRect(1, 1);
    const char mark = it.bitmap == kBarClose ? kMarlettClose : it.bitmap == kBarRestore ? kMarlettRestore
                                                                                       : kMarlettMinimize;
    MenuGlyph(dc, glyph, mark, GetSysColor((state & ODS_GRAYED) ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
}

void DrawItem(CWnd& window, HDC dc, const Menu& menu, const MenuBarLayout& layout, int position, UINT state)
{
    const MenuItem it = menu.items[static_cast<std::size_t>(position)];
    const CRect r = layout.items[static_cast<std::size_t>(position)];
    if (it.IsSeparator() || r.IsRectEmpty())
        return;
    const int saved = SaveDC(dc);
    SetBrushOrgEx(dc, 0, 0, nullptr);
    FillRect(dc, &r, BarBrush(menu));
    if (it.IsOwnerDrawn()) {
        DRAWITEMSTRUCT dis{};
        dis.CtlType = ODT_MENU;
        dis.itemID = ItemId(it);
        dis.itemAction = ODA_DRAWENTIRE;
        dis.itemState = state;
        dis.hwndItem = reinterpret_cast<HWND>(layout.menu);
        dis.hDC = dc;
        dis.rcItem = r;
        dis.itemData = it.data;
        SelectObject(dc, MenuFont(false));
        window.SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&dis));
    } else if ((it.type & MFT_BITMAP) && IsBuiltin(it.bitmap)) {
        DrawBuiltin(dc, r, it, state);
    } else if (it.type & MFT_BITMAP) {
        BITMAP info{};
        if (it.bitmap && GetObjectA(it.bitmap, sizeof info, &info)) {
            HDC memory = CreateCompatibleDC(dc);
            HGDIOBJ old = SelectObject(memory, it.bitmap);
            BitBlt(dc, r.left + (r.Width() - info.bmWidth) / 2, r.top + (r.Height() - info.bmHeight) / 2,
                   info.bmWidth, info.bmHeight, memory, 0, 0, SRCCOPY);
            SelectObject(memory, old);
            DeleteDC(memory);
        }
    } else {
        // The classic bar: a raised frame under the mouse, a pressed one
        // while the item's popup shows.
        CRect text = r;
        if (state & ODS_SELECTED) {
            DrawEdge(dc, &text, BDR_SUNKENOUTER, BF_RECT);
            text.OffsetRect(1, 1);
        } else if (state & ODS_HOTLIGHT) {
            DrawEdge(dc, &text, BDR_RAISEDINNER, BF_RECT);
        }
        SelectObject(dc, MenuFont(false));
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor((state & ODS_GRAYED) ? COLOR_GRAYTEXT : COLOR_MENUTEXT));
        const std::string caption = it.text.substr(0, it.text.find('\t'));
        DrawTextA(dc, caption.c_str(), -1, &text,
                  DT_CENTER | DT_VCENTER | DT_SINGLELINE | ((state & ODS_NOACCEL) ? DT_HIDEPREFIX : 0));
    }
    RestoreDC(dc, saved);
}

void Paint(CWnd& window, HDC given)
{
    const MenuBarLayout* layout = LayoutOfMenuBar(window);
    Menu* menu = layout ? MenuOf(layout->menu) : nullptr;
    if (!menu)
        return;
    HDC dc = given ? given : GetWindowDC(window.m_hWnd);
    if (!dc)
        return;
    const int saved = SaveDC(dc);
    SetBrushOrgEx(dc, 0, 0, nullptr);
    CRect rows = layout->strip;
    rows.bottom -= 1;
    FillRect(dc, &rows, BarBrush(*menu));
    RECT line{layout->strip.left, layout->strip.bottom - 1, layout->strip.right, layout->strip.bottom};
    FillRect(dc, &line, GetSysColorBrush(COLOR_3DFACE));
    const BarState& s = Entry(window.m_hWnd);
    // The window may change the menu while it draws an item.
    const MenuBarLayout copy = *layout;
    for (std::size_t i = 0; i < copy.items.size(); ++i) {
        menu = MenuOf(copy.menu);
        if (!menu || menu->items.size() != copy.items.size() || !window.m_hWnd)
            break;
        const int position = static_cast<int>(i);
        DrawItem(window, dc, *menu, copy, position, StateOfItem(s, menu->items[i], position));
    }
    RestoreDC(dc, saved);
    if (!given && window.m_hWnd)
        ReleaseDC(window.m_hWnd, dc);
}

void Repaint(CWnd& window, int position)
{
    const MenuBarLayout* layout = LayoutOfMenuBar(window);
    Menu* menu = layout ? MenuOf(layout->menu) : nullptr;
    if (!menu || position < 0 || position >= static_cast<int>(layout->items.size()) ||
        menu->items.size() != layout->items.size())
        return;
    const BarState& s = Entry(window.m_hWnd);
    HDC dc = GetWindowDC(window.m_hWnd);
    const MenuBarLayout copy = *layout;
    DrawItem(window, dc, *menu, copy, position, StateOfItem(s, menu->items[static_cast<std::size_t>(position)], position));
    if (window.m_hWnd)
        ReleaseDC(window.m_hWnd, dc);
}

bool Contains(CWnd& window, CPoint screen)
{
    const MenuBarLayout* layout = LayoutOfMenuBar(window);
    if (!layout)
        return false;
    CRect outer;
    window.GetWindowRect(&outer);
    return layout->strip.PtInRect(CPoint(screen - outer.TopLeft()));
}

void Hover(CWnd& window, CPoint screen)
{
    BarState* s = Find(window.m_hWnd);
    if (!s || s->selected >= 0)
        return;
    int position = MenuBarItemAt(window, screen);
    Menu* menu = MenuOf(s->layout.menu);
    if (position >= 0 && (!menu || menu->items[static_cast<std::size_t>(position)].IsSeparator()))
        position = -1;
    if (position == s->hot)
        return;
    const int old = s->hot;
    s->hot = position;
    Repaint(window, old);
    Repaint(window, position);
}

const bool g_installed = [] {
    MenuBarBridge bridge = GetMenuBarBridge();
    bridge.height = &Height;
    bridge.paint = &Paint;
    bridge.contains = &Contains;
    bridge.hover = &Hover;
    bridge.track = &TrackMenuBar;
    SetMenuBarBridge(bridge);
    return true;
}();

} // namespace

const MenuBarLayout* LayoutOfMenuBar(CWnd& window)
{
    if (!window.m_hWnd || (window.GetStyle() & WS_CHILD))
        return nullptr;
    const HMENU menu = ::GetMenu(window.m_hWnd);
    if (!menu)
        return nullptr;
    BarState& s = Entry(window.m_hWnd);
    CRect outer;
    window.GetWindowRect(&outer);
    const CRect insets = Insets(window);
    const int width = std::max(0, static_cast<int>(outer.Width() - insets.left - insets.right));
    if (s.layout.menu != menu || s.layout.width != width)
        Layout(window, menu, width, CPoint(insets.left, insets.top), s.layout);
    return &s.layout;
}

void ForgetMenuBar(HWND window)
{
    if (BarState* s = Find(window)) {
        s->layout = MenuBarLayout{};
        s->hot = -1;
    }
}

int MenuBarItemAt(CWnd& window, CPoint screen)
{
    const MenuBarLayout* layout = LayoutOfMenuBar(window);
    if (!layout)
        return -1;
    CRect outer;
    window.GetWindowRect(&outer);
    const CPoint at = screen - outer.TopLeft();
    for (std::size_t i = 0; i < layout->items.size(); ++i) {
        if (layout->items[i].PtInRect(at))
            return static_cast<int>(i);
    }
    return -1;
}

bool MenuBarItemRect(CWnd& window, HMENU menu, UINT position, RECT* rect)
{
    const MenuBarLayout* layout = LayoutOfMenuBar(window);
    if (!layout || layout->menu != menu || position >= layout->items.size() || !rect)
        return false;
    CRect outer;
    window.GetWindowRect(&outer);
    CRect r = layout->items[position];
    r.OffsetRect(outer.TopLeft());
    *rect = r;
    return true;
}

void SetMenuBarSelection(CWnd& window, int position, bool open)
{
    BarState& s = Entry(window.m_hWnd);
    const int old = s.selected;
    const int hot = s.hot;
    s.selected = position;
    s.open = open;
    s.hot = -1;
    if (hot != position && hot != old)
        Repaint(window, hot);
    if (old != position)
        Repaint(window, old);
    Repaint(window, position);
}

void SetMenuBarCues(CWnd& window, bool show)
{
    BarState& s = Entry(window.m_hWnd);
    if (s.cues == show)
        return;
    s.cues = show;
    if (window.m_hWnd)
        window.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_NOERASE);
}

void MenuBarMouseLeft(CWnd& window)
{
    BarState* s = Find(window.m_hWnd);
    if (!s || s->hot < 0)
        return;
    const int old = s->hot;
    s->hot = -1;
    Repaint(window, old);
}

} // namespace vx::menus
