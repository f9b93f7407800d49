#include "menus/menutheme.h"

#include "menus/cmenuwindowhook.h"
#include "menus/cnewmenu.h"
#include "menus/menucolors.h"

#include "platform/windows/lasterror.h"
#include "platform/windows/sysmetrics.h"
#include "platform/windows/windowlong.h"
#include "ui/gdi/wingdi.h"

#include <algorithm>

namespace {

void Fill(HDC dc, const RECT& r, COLORREF c)
{
    HBRUSH brush = CreateSolidBrush(c);
    FillRect(dc, &r, brush);
    DeleteObject(brush);
}

void Outline(HDC dc, const RECT& r, COLORREF c)
{
    HBRUSH brush = CreateSolidBrush(c);
    FrameRect(dc, &r, brush);
    DeleteObject(brush);
}

// The client area in window coordinates.
RECT ClientInWindow(HWND hwnd)
{
    RECT window{};
    GetWindowRect(hwnd, &window);
    RECT client{};
    GetClientRect(hwnd, &client);
    POINT origin{0, 0};
    ClientToScreen(hwnd, &origin);
    OffsetRect(&client, origin.x - window.left, origin.y - window.top);
    return client;
}

// Fills `outer` except the client area.
void FillFrame(HWND hwnd, HDC dc, const RECT& outer, COLORREF c)
{
    const RECT client = ClientInWindow(hwnd);
    const int saved = SaveDC(dc);
    ExcludeClipRect(dc, client.left, client.top, client.right, client.bottom);
    Fill(dc, outer, c);
    RestoreDC(dc, saved);
}

CSize WindowSize(HWND hwnd)
{
    RECT r{};
    GetWindowRect(hwnd, &r);
    return CSize(r.right - r.left, r.bottom - r.top);
}

} // namespace

CMenuTheme::CMenuTheme(DWORD themeId, MeasureFunc measure, DrawFunc draw, DrawFunc title, DWORD flags)
    : m_dwThemeId(themeId), m_dwFlags(flags), m_pMeasureItemFunc(measure), m_pItemDrawFunc(draw),
      m_pDrawTitle(title)
{
    const bool shadow = DropShadowEnabled();
    m_BorderRight = shadow ? 2 : 5;
    m_BorderBottom = shadow ? 2 : 6;
}

CMenuTheme::~CMenuTheme() = default;

CMenuTheme* CMenuTheme::FindTheme(DWORD themeId)
{
    for (const auto& theme : CMenuWindowHook::Instance().Themes()) {
        if (theme->m_dwThemeId == themeId)
            return theme.get();
    }
    return nullptr;
}

CMenuWindowData* CMenuTheme::DataOf(HWND hwnd)
{
    return CMenuWindowHook::GetMenuWindowData(hwnd);
}

BOOL CMenuTheme::DoDrawBorder()
{
    return (m_dwFlags & 1) ? TRUE : FALSE;
}

BOOL CMenuTheme::OnInitWnd(HWND hwnd)
{
    CMenuWindowData* data = DataOf(hwnd);
    if (!data || !data->m_bDrawBorder || !DoDrawBorder())
        return FALSE;
    data->m_dwData |= MENU_WND_STYLES;
    const LONG_PTR style = GetWindowLongPtrA(hwnd, GWL_STYLE);
    SetWindowLongPtrA(hwnd, GWL_STYLE, style & ~static_cast<LONG_PTR>(WS_BORDER));
    const LONG_PTR ex = GetWindowLongPtrA(hwnd, GWL_EXSTYLE);
    SetWindowLongPtrA(hwnd, GWL_EXSTYLE, ex & ~static_cast<LONG_PTR>(WS_EX_WINDOWEDGE | WS_EX_DLGMODALFRAME));
    return TRUE;
}

BOOL CMenuTheme::OnUnInitWnd(HWND hwnd)
{
    CMenuWindowData* data = DataOf(hwnd);
    if (!data)
        return FALSE;
    if (auto* menu = dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(data->m_hMenu)))
        menu->OnUnInitPopupMenu();
    if (data->m_dwData & MENU_WND_STYLES) {
        DWORD style = data->m_dwStyle;
        if (data->m_dwData & MENU_WND_SIZEWINDOW)
            style |= WS_VISIBLE;
        SetLastError(0);
        SetWindowLongPtrA(hwnd, GWL_STYLE, static_cast<LONG_PTR>(style));
        ShowLastError();
        SetLastError(0);
        SetWindowLongPtrA(hwnd, GWL_EXSTYLE, static_cast<LONG_PTR>(data->m_dwExStyle));
        ShowLastError();
    }
    return TRUE;
}

BOOL CMenuTheme::OnNcCalcSize(HWND, NCCALCSIZE_PARAMS* calc)
{
    if (calc && DoDrawBorder()) {
        calc->rgrc[0].left += m_BorderLeft;
        calc->rgrc[0].top += m_BorderTop;
        calc->rgrc[0].right -= m_BorderRight;
        calc->rgrc[0].bottom -= m_BorderBottom;
    }
    return FALSE;
}

BOOL CMenuTheme::OnWindowPosChanging(HWND, LPWINDOWPOS pos)
{
    if (!DoDrawBorder() || !pos)
        return FALSE;
    const int delta = DropShadowEnabled() ? -2 : 2;
    pos->cx += delta;
    pos->cy += delta;
    pos->y -= 1;
    return TRUE;
}

BOOL CMenuTheme::OnCalcFrameRect(HWND hwnd, LPRECT rect)
{
    if (!rect || !GetWindowRect(hwnd, rect))
        return FALSE;
    if (DoDrawBorder()) {
        const int far = DropShadowEnabled() ? 3 : 7;
        rect->left += 2;
        rect->top += 2;
        rect->right -= far;
        rect->bottom -= far;
    }
    return TRUE;
}

BOOL CMenuTheme::OnEraseBkgnd(HWND hwnd, HDC dc)
{
    RECT r{};
    GetClientRect(hwnd, &r);
    r.left -= 2;
    if (DoDrawBorder())
        r.right -= 1;
    Fill(dc, r, GetSysColor(COLOR_MENU));
    return TRUE;
}

void CMenuTheme::CaptureScreen(HWND hwnd, CMenuWindowData* data)
{
    if (!data || data->m_Screen.m_hObject)
        return;
    RECT window{};
    GetWindowRect(hwnd, &window);
    const int w = window.right - window.left;
    const int h = window.bottom - window.top;
    if (w < 8 || h < 8)
        return;
    // Only what the shadow covers is kept: the columns at the right and
    // the rows below.
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    data->m_Screen.Attach(CreateCompatibleBitmap(screen, 4, h));
    data->m_ScreenBelow.Attach(CreateCompatibleBitmap(screen, w, 4));
    HGDIOBJ old = SelectObject(memory, data->m_Screen.m_hObject);
    BitBlt(memory, 0, 0, 4, h, screen, window.right - 4, window.top, SRCCOPY);
    SelectObject(memory, data->m_ScreenBelow.m_hObject);
    BitBlt(memory, 0, 0, w, 4, screen, window.left, window.bottom - 4, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
}

void CMenuTheme::DrawShadow(HDC dc, CMenuWindowData* data, int w, int h)
{
    if (!data || !data->m_Screen.m_hObject || !data->m_ScreenBelow.m_hObject || w < 8 || h < 8)
        return;
    if (data->m_Screen.GetSize() != CSize(4, h) || data->m_ScreenBelow.GetSize() != CSize(w, 4))
        return; // captured at another size
    // The two strips are worked out from the capture and copied at once:
    // four columns at the right (corner included), four rows below.
    CBitmap& screen = data->m_Screen;
    CBitmap right;
    CBitmap bottom;
    right.Attach(CreateCompatibleBitmap(dc, 4, h));
    bottom.Attach(CreateCompatibleBitmap(dc, w - 4, 4));
    const bool few = NumScreenColors() <= 256;
    const COLORREF flat = GetSysColor(COLOR_BTNSHADOW);
    COLORREF lastIn = CLR_INVALID;
    long lastLevel = -1;
    COLORREF lastOut = 0;
    CBitmap& below = data->m_ScreenBelow;
    auto shade = [&](int x, int y, long level) {
        const COLORREF c = x >= w - 4 ? screen.GetPixel(x - (w - 4), y) : below.GetPixel(x, y - (h - 4));
        if (level <= 0)
            return c;
        if (few)
            return flat;
        if (c != lastIn || level != lastLevel) {
            lastIn = c;
            lastLevel = level;
            lastOut = DarkenColor(level, c);
        }
        return lastOut;
    };
    for (int k = 1; k <= 4; ++k) {
        const int x = w - k;
        for (int y = 0; y < h; ++y) {
            long level = 0;
            if (few)
                level = (k >= 3 && y >= 4 && y <= h - 3) ? 1 : 0;
            else if (y >= 4 && y <= 7)
                level = 6L * k * (y - 3);
            else if (y >= 8 && y <= h - 5)
                level = 30L * k;
            else if (y >= h - 4)
                level = 6L * k * (h - y);
            right.SetPixel(x - (w - 4), y, shade(x, y, level));
        }
    }
    for (int k = 1; k <= 4; ++k) {
        const int y = h - k;
        for (int x = 0; x < w - 4; ++x) {
            long level = 0;
            if (few)
                level = (k >= 3 && x >= 4 && x <= w - 5) ? 1 : 0;
            else if (x >= 4 && x <= 7)
                level = 6L * k * (x - 3);
            else if (x >= 8)
                level = 30L * k;
            bottom.SetPixel(x, y - (h - 4), shade(x, y, level));
        }
    }
    HDC source = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(source, right.m_hObject);
    BitBlt(dc, w - 4, 0, 4, h, source, 0, 0, SRCCOPY);
    SelectObject(source, bottom.m_hObject);
    BitBlt(dc, 0, h - 4, w - 4, 4, source, 0, 0, SRCCOPY);
    SelectObject(source, old);
    DeleteDC(source);
}

void CMenuTheme::DrawJoint(HWND hwnd, HDC dc, CMenuWindowData* data)
{
    auto* menu = data ? dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(data->m_hMenu)) : nullptr;
    auto* parent = menu ? dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(menu->GetParent())) : nullptr;
    if (!parent || parent->IsPopup())
        return;
    RECT window{};
    GetWindowRect(hwnd, &window);
    const RECT tab = parent->GetLastActiveMenuRect();
    RECT overlap{};
    if (!IntersectRect(&overlap, &window, &tab) || IsRectEmpty(&overlap))
        return;
    if (overlap.right - overlap.left > overlap.bottom - overlap.top) {
        overlap.left += 1;
        overlap.right -= 1;
    } else {
        overlap.top += 1;
        overlap.bottom -= 1;
    }
    OffsetRect(&overlap, -window.left, -window.top);
    const COLORREF c = NumScreenColors() <= 256 ? GetSysColor(COLOR_BTNFACE)
                                                : MixColor(CNewMenu::GetMenuBarColor(nullptr), GetSysColor(COLOR_WINDOW));
    Fill(dc, overlap, c);
}

BOOL CMenuTheme::OnDrawBorder(HWND hwnd, HDC dc, BOOL onlyBorder)
{
    if (!DoDrawBorder())
        return FALSE;
    CMenuWindowData* data = DataOf(hwnd);
    CaptureScreen(hwnd, data);
    const CSize size = WindowSize(hwnd);
    const int w = size.cx;
    const int h = size.cy;
    const COLORREF outline = IsHighContrast() ? GetSysColor(COLOR_BTNTEXT) : GetSysColor(COLOR_HIGHLIGHT);
    if (!DropShadowEnabled()) {
        if (!onlyBorder)
            FillFrame(hwnd, dc, RECT{1, 1, w - 5, h - 5}, CNewMenu::GetMenuColor(nullptr));
        Outline(dc, RECT{0, 0, w - 4, h - 4}, outline);
        if (!IsHighContrast())
            DrawShadow(dc, data, w, h);
    } else {
        if (!onlyBorder)
            FillFrame(hwnd, dc, RECT{1, 1, w - 1, h - 1}, CNewMenu::GetMenuColor(nullptr));
        Outline(dc, RECT{0, 0, w, h}, outline);
    }
    return TRUE;
}

BOOL CMenuThemeXP::OnEraseBkgnd(HWND hwnd, HDC dc)
{
    CMenuWindowData* data = DataOf(hwnd);
    if (!data || !data->m_hMenu)
        return CMenuTheme::OnEraseBkgnd(hwnd, dc);
    RECT r{};
    GetClientRect(hwnd, &r);
    r.left -= 2;
    if (DoDrawBorder())
        r.right -= 1;
    Fill(dc, r, CNewMenu::GetMenuBarColor(data->m_hMenu));
    return TRUE;
}

BOOL CMenuThemeXP::OnDrawBorder(HWND hwnd, HDC dc, BOOL onlyBorder)
{
    if (!DoDrawBorder())
        return FALSE;
    CMenuWindowData* data = DataOf(hwnd);
    CaptureScreen(hwnd, data);
    const CSize size = WindowSize(hwnd);
    const int w = size.cx;
    const int h = size.cy;
    const COLORREF menu = CNewMenu::GetMenuColor(data ? data->m_hMenu : nullptr);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    COLORREF back = MixColor(window, menu);
    const COLORREF frame = DarkenColor(0x80, menu);
    COLORREF column = NumScreenColors() <= 256 ? GetSysColor(COLOR_BTNFACE) : MixColor(menu, window);
    if (GetNearestColor(dc, back) == GetNearestColor(dc, column)) {
        back = window;
        column = menu;
    }
    const bool shadow = DropShadowEnabled();
    const int inner = shadow ? 1 : 5;
    const int outer = shadow ? 0 : 4;
    if (!onlyBorder)
        FillFrame(hwnd, dc, RECT{1, 1, w - inner, h - inner}, back);
    if (!IsHighContrast()) {
        Outline(dc, RECT{1, 1, w - inner, h - inner}, back);
        Fill(dc, RECT{1, 2, 2, 2 + (shadow ? h - 4 : h - 8)}, column);
        Outline(dc, RECT{0, 0, w - outer, h - outer}, frame);
        if (!shadow)
            DrawShadow(dc, data, w, h);
    } else {
        Outline(dc, RECT{0, 0, w - outer, h - outer}, GetSysColor(COLOR_BTNTEXT));
    }
    DrawJoint(hwnd, dc, data);
    return TRUE;
}
