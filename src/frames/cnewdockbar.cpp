#include "frames/cnewdockbar.h"

#include "ui/gdi/cgdiobject.h"
#include "ui/menus/winmenu.h"

CNewDockBar::CNewDockBar() = default;

CNewDockBar::~CNewDockBar() = default;

BOOL CNewDockBar::OnEraseBkgnd()
{
    CFrameWnd* frame = GetDockingFrame();
    const HMENU menu = frame ? ::GetMenu(frame->m_hWnd) : nullptr;
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    if (!menu || !GetMenuInfo(menu, &info) || !info.hbrBack)
        return CDockBar::OnEraseBkgnd();
    CClientDC dc(this);
    CRect client;
    GetClientRect(&client);
    // The pattern starts at the frame's left edge, as the menu bar's does.
    CPoint origin(0, 0);
    ClientToScreen(&origin);
    CPoint frameOrigin(0, 0);
    frame->ClientToScreen(&frameOrigin);
    const CPoint old = dc.SetBrushOrg(frameOrigin.x - origin.x, 0);
    dc.FillRect(&client, CBrush::FromHandle(info.hbrBack));
    dc.SetBrushOrg(old);
    return TRUE;
}

void CNewDockBar::DrawBorders(CDC*, CRect&) {}
