#include "ui/menus/popupmenuwindow_p.h"

#include "ui/gdi/cdc.h"
#include "ui/gdi/wingdi.h"
#include "ui/menus/menutracker_p.h"
#include "ui/windows/qtinterop.h"

#include "platform/windows/sysmetrics.h"

#include <QWidget>

#include <algorithm>
#include <cstring>
#include <string>

namespace vx::menus {

// The menu font, and its bold form for the default item, made once per
// request of SPI_GETNONCLIENTMETRICS.
HFONT MenuFont(bool bold)
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTA lf = metrics.lfMenuFont;
    if (bold)
        lf.lfWeight = FW_BOLD;
    static LOGFONTA cached[2]{};
    static HFONT fonts[2]{};
    HFONT& font = fonts[bold ? 1 : 0];
    if (!font || std::memcmp(&cached[bold ? 1 : 0], &lf, sizeof lf) != 0) {
        if (font)
            DeleteObject(font);
        font = CreateFontIndirectA(&lf);
        cached[bold ? 1 : 0] = lf;
    }
    return font;
}

// A Marlett glyph filling `r`, as the menus draw their marks.
void MenuGlyph(HDC dc, const RECT& r, char glyph, COLORREF color)
{
    LOGFONTA lf{};
    lf.lfHeight = -(r.bottom - r.top);
    lf.lfCharSet = SYMBOL_CHARSET;
    std::strcpy(lf.lfFaceName, "Marlett");
    HFONT font = CreateFontIndirectA(&lf);
    HGDIOBJ old = SelectObject(dc, font);
    SetTextColor(dc, color);
    SetBkMode(dc, TRANSPARENT);
    RECT box = r;
    const char text[2] = {glyph, 0};
    DrawTextA(dc, text, 1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOCLIP);
    SelectObject(dc, old);
    DeleteObject(font);
}

namespace {

constexpr UINT_PTR kShowTimer = 0xFFFE;
constexpr char kMarlettCheck = 0x62;
constexpr char kMarlettBullet = 0x69;
constexpr char kMarlettArrow = 0x38;

bool FlatMenus()
{
    BOOL flat = FALSE;
    SystemParametersInfoA(SPI_GETFLATMENU, 0, &flat, 0);
    return flat;
}

std::string TextBeforeTab(const std::string& text)
{
    const auto tab = text.find('\t');
    return tab == std::string::npos ? text : text.substr(0, tab);
}

std::string TextAfterTab(const std::string& text)
{
    const auto tab = text.find('\t');
    return tab == std::string::npos ? std::string() : text.substr(tab + 1);
}

CSize TextSize(HDC dc, const std::string& text)
{
    if (text.empty())
        return CSize(0, 0);
    RECT r{0, 0, 0, 0};
    DrawTextA(dc, text.c_str(), -1, &r, DT_CALCRECT | DT_SINGLELINE);
    return CSize(r.right - r.left, r.bottom - r.top);
}

CSize BitmapSize(HBITMAP bitmap)
{
    BITMAP info{};
    if (!bitmap || !GetObjectA(bitmap, sizeof info, &info))
        return CSize(0, 0);
    return CSize(info.bmWidth, info.bmHeight);
}

} // namespace

CSize LayoutMenu(HMENU handle, HWND owner)
{
    Menu* menu = MenuOf(handle);
    if (!menu)
        return CSize(0, 0);
    HDC dc = GetDC(nullptr);
    HGDIOBJ oldFont = SelectObject(dc, MenuFont(false));
    TEXTMETRICA tm{};
    GetTextMetricsA(dc, &tm);
    const int check = GetSystemMetrics(SM_CXMENUCHECK);
    const int textHeight = std::max<int>(tm.tmHeight, GetSystemMetrics(SM_CYMENUCHECK)) + 4;
    const int separatorHeight = GetSystemMetrics(SM_CYMENU) / 2;
    const int tabGap = 2 * tm.tmAveCharWidth;
    // The check column holds the widest check bitmap.
    int leftColumn = check;
    for (const MenuItem& it : menu->items)
        leftColumn = std::max({leftColumn, static_cast<int>(BitmapSize(it.checked).cx),
                               static_cast<int>(BitmapSize(it.unchecked).cx)});
    leftColumn += 4;
    const int rightColumn = check + 4;

    // The system font's height, which the owner finds in itemHeight, as the
    // original's dialog base unit.
    HGDIOBJ system = SelectObject(dc, GetStockObject(SYSTEM_FONT));
    TEXTMETRICA systemTm{};
    GetTextMetricsA(dc, &systemTm);
    SelectObject(dc, system);

    // First every item's size (the owner measures the owner-drawn ones,
    // once each), then the columns.
    struct Size {
        int w = 0;
        int h = 0;
        int before = 0; // a text's width before its tab
        int after = 0;  // and after it
    };
    const std::size_t n = menu->items.size();
    std::vector<Size> sizes(n);
    for (std::size_t i = 0; i < n; ++i) {
        MenuItem& it = menu->items[i];
        Size& z = sizes[i];
        if (it.IsOwnerDrawn()) {
            MEASUREITEMSTRUCT mis{};
            mis.CtlType = ODT_MENU;
            mis.itemID = it.sub ? static_cast<UINT>(reinterpret_cast<std::uintptr_t>(it.sub)) : it.id;
            mis.itemHeight = static_cast<UINT>(systemTm.tmHeight);
            mis.itemData = it.data;
            if (owner)
                SendMessageA(owner, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&mis));
            menu = MenuOf(handle);
            if (!menu || menu->items.size() != n) { // the owner changed the menu meanwhile
                SelectObject(dc, oldFont);
                ReleaseDC(nullptr, dc);
                return CSize(0, 0);
            }
            // As on the original, the menu adds two average characters.
            z.w = static_cast<int>(mis.itemWidth) + 2 * tm.tmAveCharWidth;
            z.h = static_cast<int>(mis.itemHeight);
        } else if (it.IsSeparator()) {
            z.h = separatorHeight;
        } else if (it.type & MFT_BITMAP) {
            const CSize b = BitmapSize(it.bitmap);
            z.w = leftColumn + b.cx + rightColumn;
            z.h = std::max<int>(b.cy, textHeight);
        } else {
            if (it.state & MFS_DEFAULT)
                SelectObject(dc, MenuFont(true));
            const CSize before = TextSize(dc, TextBeforeTab(it.text));
            const CSize after = TextSize(dc, TextAfterTab(it.text));
            SelectObject(dc, MenuFont(false));
            z.before = before.cx;
            z.after = after.cx;
            z.h = std::max<int>(textHeight, before.cy + 4);
        }
    }
    // A column ends at a break, or where the next item would leave the
    // work area; a menu longer than the screen goes on in the next column.
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const int limit = std::max<int>(work.bottom - work.top - 2 * kMenuFrame - 2, textHeight);
    int x = 0;
    int height = 0;
    std::size_t start = 0;
    while (start < n) {
        std::size_t end = start + 1;
        int y = sizes[start].h;
        while (end < n && !(menu->items[end].type & (MF_MENUBREAK | MF_MENUBARBREAK)) &&
               y + sizes[end].h <= limit) {
            y += sizes[end].h;
            ++end;
        }
        if (start > 0 && (menu->items[start].type & MF_MENUBARBREAK))
            x += 2; // room for the line between the columns
        int width = 0;
        int textWidth = 0;
        int accelWidth = 0;
        for (std::size_t i = start; i < end; ++i) {
            textWidth = std::max(textWidth, sizes[i].before);
            accelWidth = std::max(accelWidth, sizes[i].after);
        }
        if (textWidth || accelWidth)
            width = leftColumn + textWidth + (accelWidth ? tabGap + accelWidth : 0) + rightColumn;
        for (std::size_t i = start; i < end; ++i)
            width = std::max(width, sizes[i].w);
        y = 0;
        for (std::size_t i = start; i < end; ++i) {
            MenuItem& it = menu->items[i];
            it.rect = RECT{x, y, x + width, y + sizes[i].h};
            it.accelX = x + leftColumn + textWidth + tabGap;
            y += sizes[i].h;
        }
        x += width;
        height = std::max(height, y);
        start = end;
    }
    SelectObject(dc, oldFont);
    ReleaseDC(nullptr, dc);
    return CSize(x, height);
}

PopupMenuWindow::PopupMenuWindow(MenuTracker& tracker, HMENU menu, int level)
    : m_tracker(tracker), m_menu(menu), m_level(level)
{
}

PopupMenuWindow::~PopupMenuWindow()
{
    if (Menu* m = MenuOf(m_menu); m && m->window == m_hWnd)
        m->window = nullptr;
    if (m_hWnd)
        DestroyWindow();
}

bool PopupMenuWindow::Open(const CRect& rect)
{
    m_place = rect;
    // The window is made empty and then takes its size, as the original's
    // menu windows did, so that a hook sees it before it has one.
    if (!CreateEx(nullptr, kMenuClass, WS_POPUP | WS_CLIPSIBLINGS | WS_BORDER, CRect(rect.TopLeft(), CSize(0, 0)),
                  nullptr, 0, WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_WINDOWEDGE | WS_EX_DLGMODALFRAME))
        return false;
    if (QWidget* w = WidgetOfWindow(this))
        w->setAttribute(Qt::WA_ShowWithoutActivating);
    if (Menu* m = MenuOf(m_menu))
        m->window = m_hWnd;
    SendMessage(MN_SIZEWINDOW, 0, 0);
    return m_hWnd != nullptr;
}

void PopupMenuWindow::Select(int position)
{
    Menu* m = MenuOf(m_menu);
    if (!m || position == m_selected || !m_hWnd)
        return;
    const int old = m_selected;
    m_selected = position;
    HDC dc = GetDC(m_hWnd);
    if (old >= 0)
        DrawItems(dc, old, ODA_SELECT);
    if (position >= 0)
        DrawItems(dc, position, ODA_SELECT);
    ReleaseDC(m_hWnd, dc);
}

void PopupMenuWindow::RedrawItems()
{
    if (!m_hWnd)
        return;
    HDC dc = GetDC(m_hWnd);
    DrawItems(dc, -1, ODA_DRAWENTIRE);
    ReleaseDC(m_hWnd, dc);
}

int PopupMenuWindow::ItemAt(CPoint screen) const
{
    Menu* m = MenuOf(m_menu);
    if (!m || !m_hWnd)
        return -1;
    CPoint p = screen;
    ScreenToClient(&p);
    for (std::size_t i = 0; i < m->items.size(); ++i) {
        if (CRect(m->items[i].rect).PtInRect(p))
            return static_cast<int>(i);
    }
    return -1;
}

CRect PopupMenuWindow::ItemRect(int position) const
{
    Menu* m = MenuOf(m_menu);
    if (!m || position < 0 || position >= static_cast<int>(m->items.size()))
        return CRect();
    CRect r(m->items[static_cast<std::size_t>(position)].rect);
    ClientToScreen(&r);
    return r;
}

LRESULT PopupMenuWindow::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case MN_SIZEWINDOW:
        SetWindowPos(nullptr, m_place.left, m_place.top, m_place.Width(), m_place.Height(),
                     SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    case MN_GETHMENU:
        return reinterpret_cast<LRESULT>(m_menu);
    case WM_MOUSEACTIVATE:
        return 3; // MA_NOACTIVATE: a menu never takes the activation
    case WM_PRINT: {
        // The frame is the menu's own, in the menu's colours.
        auto dc = reinterpret_cast<HDC>(wParam);
        if (dc && (lParam & PRF_NONCLIENT))
            DrawFrame(dc);
        return CWnd::DefWindowProc(message, wParam, lParam & ~static_cast<LPARAM>(PRF_NONCLIENT));
    }
    case WM_PRINTCLIENT:
        if (wParam)
            DrawItems(reinterpret_cast<HDC>(wParam), -1, ODA_DRAWENTIRE);
        return 0;
    case WM_ERASEBKGND:
        if (wParam)
            EraseBackground(reinterpret_cast<HDC>(wParam));
        return TRUE;
    case WM_NCPAINT: {
        HDC dc = GetWindowDC(m_hWnd);
        if (wParam != 1 && wParam) {
            // Only inside the region the caller passed (screen coordinates).
            CRect outer;
            GetWindowRect(&outer);
            HRGN local = CreateRectRgn(0, 0, 0, 0);
            CombineRgn(local, reinterpret_cast<HRGN>(wParam), nullptr, RGN_COPY);
            OffsetRgn(local, -outer.left, -outer.top);
            SelectClipRgn(dc, local);
            DeleteObject(local);
        }
        DrawFrame(dc);
        ReleaseDC(m_hWnd, dc);
        return 0;
    }
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}

void PopupMenuWindow::OnNcPaint()
{
    Default();
}

BOOL PopupMenuWindow::OnEraseBkgnd()
{
    return static_cast<BOOL>(Default());
}

void PopupMenuWindow::OnPaint()
{
    CPaintDC dc(this);
    DrawItems(dc.m_hDC, -1, ODA_DRAWENTIRE);
}

void PopupMenuWindow::OnTimer(UINT_PTR id)
{
    if (id == kShowTimer) {
        KillTimer(id);
        m_tracker.OnShowTimer(m_level);
        return;
    }
    CWnd::OnTimer(id);
}

void PopupMenuWindow::DrawFrame(HDC dc)
{
    const CRect insets = StandardFrameInsets(GetStyle(), GetExStyle(), true);
    if (insets.IsRectNull())
        return; // someone took the frame away (a theme draws its own)
    CRect outer;
    GetWindowRect(&outer);
    RECT r{0, 0, outer.Width(), outer.Height()};
    if (FlatMenus()) {
        FrameRect(dc, &r, GetSysColorBrush(COLOR_BTNSHADOW));
        InflateRect(&r, -1, -1);
    } else {
        DrawEdge(dc, &r, EDGE_RAISED, BF_RECT | BF_ADJUST);
    }
    HBRUSH fill = GetSysColorBrush(COLOR_MENU);
    while (r.left < insets.left && r.right > r.left) {
        FrameRect(dc, &r, fill);
        InflateRect(&r, -1, -1);
    }
}

void PopupMenuWindow::EraseBackground(HDC dc)
{
    CRect client;
    GetClientRect(&client);
    Menu* m = MenuOf(m_menu);
    HBRUSH brush = (m && m->info.hbrBack) ? m->info.hbrBack : GetSysColorBrush(COLOR_MENU);
    FillRect(dc, &client, brush);
}

void PopupMenuWindow::DrawItems(HDC dc, int only, UINT action)
{
    Menu* m = MenuOf(m_menu);
    if (!m)
        return;
    RECT box{};
    const bool clipped = GetClipBox(dc, &box) != NULLREGION;
    const int n = static_cast<int>(m->items.size());
    for (int i = 0; i < n; ++i) {
        if (only >= 0 && i != only)
            continue;
        const RECT& r = m->items[static_cast<std::size_t>(i)].rect;
        // An item of no height (a title along the edge) takes its height
        // from the device, so it is always drawn.
        RECT overlap{};
        if (r.bottom > r.top && clipped && !IntersectRect(&overlap, &r, &box))
            continue;
        DrawItem(dc, i, action);
        m = MenuOf(m_menu); // the owner may change the menu while drawing
        if (!m || static_cast<int>(m->items.size()) != n)
            return;
    }
}

void PopupMenuWindow::DrawItem(HDC dc, int position, UINT action)
{
    Menu* m = MenuOf(m_menu);
    const MenuItem it = m->items[static_cast<std::size_t>(position)];
    const bool selected = position == m_selected;
    // The line between columns belongs to the item that starts the column.
    if ((it.type & MF_MENUBARBREAK) && position > 0) {
        CRect client;
        GetClientRect(&client);
        RECT line{it.rect.left - 2, 0, it.rect.left, client.bottom};
        DrawEdge(dc, &line, EDGE_ETCHED, BF_LEFT);
    }
    if (it.IsOwnerDrawn()) {
        DRAWITEMSTRUCT dis{};
        dis.CtlType = ODT_MENU;
        dis.itemID = it.sub ? static_cast<UINT>(reinterpret_cast<std::uintptr_t>(it.sub)) : it.id;
        dis.itemAction = action;
        if (selected)
            dis.itemState |= ODS_SELECTED;
        if (it.state & MF_GRAYED)
            dis.itemState |= ODS_GRAYED;
        if (it.state & MF_DISABLED)
            dis.itemState |= ODS_DISABLED;
        if (it.state & MFS_CHECKED)
            dis.itemState |= ODS_CHECKED;
        if (it.state & MFS_DEFAULT)
            dis.itemState |= ODS_DEFAULT;
        if (!m_tracker.ShowCues())
            dis.itemState |= ODS_NOACCEL;
        dis.hwndItem = reinterpret_cast<HWND>(m_menu);
        dis.hDC = dc;
        dis.rcItem = it.rect;
        dis.itemData = it.data;
        const int saved = SaveDC(dc);
        SendMessageA(m_tracker.Owner(), WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&dis));
        if (it.sub) {
            // The menu draws the arrow of a sub-menu itself, in the colour
            // the owner left for the text.
            const int check = GetSystemMetrics(SM_CXMENUCHECK);
            const RECT& r = it.rect;
            const int top = r.top + (r.bottom - r.top - check) / 2;
            RECT arrow{r.right - check - 2, top, r.right - 2, top + check};
            MenuGlyph(dc, arrow, kMarlettArrow, GetTextColor(dc));
        }
        RestoreDC(dc, saved);
        return;
    }
    const bool flat = FlatMenus();
    RECT r = it.rect;
    const COLORREF back = m->info.hbrBack ? CLR_INVALID : GetSysColor(COLOR_MENU);
    if (it.IsSeparator()) {
        if (back != CLR_INVALID)
            FillRect(dc, &r, GetSysColorBrush(COLOR_MENU));
        else
            FillRect(dc, &r, m->info.hbrBack);
        RECT line{r.left + 1, r.top + (r.bottom - r.top) / 2 - 1, r.right - 1, r.top + (r.bottom - r.top) / 2 + 1};
        if (flat) {
            line.bottom = line.top + 1;
            FillRect(dc, &line, GetSysColorBrush(COLOR_BTNSHADOW));
        } else {
            DrawEdge(dc, &line, EDGE_ETCHED, BF_TOP);
        }
        return;
    }
    // Background and selection.
    if (selected) {
        FillRect(dc, &r, GetSysColorBrush(flat ? COLOR_MENUHILIGHT : COLOR_HIGHLIGHT));
        if (flat)
            FrameRect(dc, &r, GetSysColorBrush(COLOR_HIGHLIGHT));
    } else {
        FillRect(dc, &r, m->info.hbrBack ? m->info.hbrBack : GetSysColorBrush(COLOR_MENU));
    }
    const bool grayed = it.IsGrayed();
    const COLORREF text = grayed ? GetSysColor(COLOR_GRAYTEXT)
                                 : GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT);
    const int check = GetSystemMetrics(SM_CXMENUCHECK);
    // The check column: a check bitmap, or a check mark or bullet.
    RECT mark{r.left + 2, r.top, r.left + 2 + check, r.bottom};
    HBITMAP bitmap = (it.state & MFS_CHECKED) ? it.checked : it.unchecked;
    if (bitmap) {
        const CSize b = BitmapSize(bitmap);
        HDC source = CreateCompatibleDC(dc);
        HGDIOBJ old = SelectObject(source, bitmap);
        SetTextColor(dc, text);
        SetBkColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_MENU));
        BitBlt(dc, mark.left, r.top + (r.bottom - r.top - b.cy) / 2, b.cx, b.cy, source, 0, 0, SRCCOPY);
        SelectObject(source, old);
        DeleteDC(source);
    } else if (it.state & MFS_CHECKED) {
        const int top = r.top + (r.bottom - r.top - check) / 2;
        RECT box{mark.left, top, mark.right, top + check};
        MenuGlyph(dc, box, (it.type & MFT_RADIOCHECK) ? kMarlettBullet : kMarlettCheck, text);
    }
    if (it.sub) {
        const int top = r.top + (r.bottom - r.top - check) / 2;
        RECT arrow{r.right - check - 2, top, r.right - 2, top + check};
        MenuGlyph(dc, arrow, kMarlettArrow, text);
    }
    if (it.type & MFT_BITMAP) {
        const CSize b = BitmapSize(it.bitmap);
        HDC source = CreateCompatibleDC(dc);
        HGDIOBJ old = SelectObject(source, it.bitmap);
        const int left = r.left + check + 4;
        BitBlt(dc, left, r.top + (r.bottom - r.top - b.cy) / 2, b.cx, b.cy, source, 0, 0, SRCCOPY);
        SelectObject(source, old);
        DeleteDC(source);
        return;
    }
    // The text, and the shortcut after the tab at the column's tab stop.
    HGDIOBJ oldFont = SelectObject(dc, MenuFont(it.state & MFS_DEFAULT));
    SetBkMode(dc, TRANSPARENT);
    const UINT format = DT_SINGLELINE | DT_VCENTER | DT_LEFT | (m_tracker.ShowCues() ? 0 : DT_HIDEPREFIX);
    RECT label{r.left + check + 4, r.top, r.right - check - 4, r.bottom};
    RECT accel{it.accelX, r.top, r.right - check - 4, r.bottom};
    const std::string before = TextBeforeTab(it.text);
    const std::string after = TextAfterTab(it.text);
    auto draw = [&](int dx, COLORREF color) {
        SetTextColor(dc, color);
        RECT a = label;
        RECT b = accel;
        OffsetRect(&a, dx, dx);
        OffsetRect(&b, dx, dx);
        DrawTextA(dc, before.c_str(), -1, &a, format);
        if (!after.empty())
            DrawTextA(dc, after.c_str(), -1, &b, format);
    };
    // A grayed item is embossed in the classic look, unless selected.
    if (grayed && !selected && !flat)
        draw(1, GetSysColor(COLOR_BTNHIGHLIGHT));
    draw(0, text);
    SelectObject(dc, oldFont);
}

} // namespace vx::menus
