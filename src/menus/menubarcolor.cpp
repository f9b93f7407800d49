#include "menus/menubarcolor.h"

#include "menus/cnewmenu.h"
#include "menus/menucolors.h"
#include "platform/windows/cwnd.h"
#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/gdi/wingdi.h"
#include "ui/images/cbitmap.h"
#include "ui/mdi/cmultidoctemplate.h"
#include "ui/menus/winmenu.h"

#include <vector>

namespace {

std::vector<CMenuBackBrush>& Brushes()
{
    static std::vector<CMenuBackBrush> list;
    return list;
}

// The gradient a menu bar shows across the whole screen: from the colour
// at the left to a lighter one at the right.
HBRUSH MakePattern(COLORREF colour)
{
    const int width = ((GetSystemMetrics(SM_CXSCREEN) + 16) / 8) * 8;
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CBitmap bitmap;
    {
        CClientDC screen(nullptr);
        bitmap.CreateCompatibleBitmap(&screen, width, 20);
    }
    CBitmap* old = dc.SelectObject(&bitmap);
    DrawGradient(&dc, CRect(0, 0, width, 20), colour, LightenColor(110, colour), TRUE, TRUE);
    dc.SelectObject(old);
    return CreatePatternBrush(static_cast<HBITMAP>(bitmap.m_hObject));
}

HBRUSH FindBrush(int kind, COLORREF colour)
{
    static size_t last = 0;
    auto& list = Brushes();
    if (last < list.size() && list[last].m_nKind == kind && list[last].m_Color == colour)
        return list[last].m_hBrush;
    for (size_t i = 0; i < list.size(); ++i) {
        if (list[i].m_nKind == kind && list[i].m_Color == colour) {
            last = i;
            return list[i].m_hBrush;
        }
    }
    CMenuBackBrush made;
    made.m_nKind = kind;
    made.m_Color = colour;
    made.m_hBrush = kind ? MakePattern(colour) : CreateSolidBrush(colour);
    if (!made.m_hBrush)
        return nullptr;
    list.push_back(made);
    last = list.size() - 1;
    return made.m_hBrush;
}

} // namespace

void UpdateMenuBarColor(HMENU menu)
{
    HBRUSH brush = nullptr;
    switch (CNewMenu::GetMenuDrawMode()) {
    case CNewMenu::STYLE_XP:
    case CNewMenu::STYLE_XP_NOBORDER:
        brush = FindBrush(0, GetSysColor(COLOR_BTNFACE));
        break;
    case CNewMenu::STYLE_XP_2003:
    case CNewMenu::STYLE_XP_2003_NOBORDER: {
        const COLORREF colour = CNewMenu::GetMenuBarColor2003();
        brush = FindBrush(NumScreenColors() > 256 && !IsHighContrast() ? 1 : 0, colour);
        break;
    }
    default:
        return;
    }
    if (!brush)
        return;
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    info.hbrBack = brush;
    if (menu && IsMenu(menu))
        SetMenuInfo(menu, &info);
    // The menus the document templates share, where they are CNewMenus.
    for (CMultiDocTemplate* t : CMultiDocTemplate::Templates()) {
        const auto* shared = dynamic_cast<const CNewMenu*>(t);
        if (shared && t->m_hMenuShared && shared->m_hMenu == t->m_hMenuShared && IsMenu(t->m_hMenuShared))
            SetMenuInfo(t->m_hMenuShared, &info);
    }
}

BOOL DrawMenubarItem(CWnd* window, CMenu* menu, UINT position, UINT state)
{
    if (!window || !window->m_hWnd || !menu || position == static_cast<UINT>(-1))
        return FALSE;
    CRect rect;
    if (!GetMenuItemRect(window->m_hWnd, menu->m_hMenu, position, &rect))
        return FALSE;
    MENUITEMINFOA item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_ID | MIIM_TYPE | MIIM_DATA;
    if (!GetMenuItemInfoA(menu->m_hMenu, position, TRUE, &item) || !(item.fType & MFT_OWNERDRAW))
        return FALSE;
    CWindowDC dc(window);
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    CFont font;
    font.CreateFontIndirect(&metrics.lfMenuFont);
    CFont* old = dc.SelectObject(&font);
    CRect frame;
    window->GetWindowRect(&frame);
    rect.OffsetRect(-frame.left, -frame.top);
    DRAWITEMSTRUCT draw{};
    draw.CtlType = ODT_MENU;
    draw.itemID = item.wID;
    draw.itemAction = ODA_DRAWENTIRE;
    draw.itemState = state;
    draw.hwndItem = reinterpret_cast<HWND>(menu->m_hMenu);
    draw.hDC = dc.m_hDC;
    draw.rcItem = rect;
    draw.itemData = item.dwItemData;
    CNewMenu::m_dwLastActiveItem = static_cast<DWORD>(item.dwItemData);
    window->SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&draw));
    dc.SelectObject(old);
    return TRUE;
}
