#include "ui/controls/controlsupport_p.h"

#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

namespace vx::controls {

HFONT FontOf(CWnd& control)
{
    if (auto font = reinterpret_cast<HFONT>(control.SendMessage(WM_GETFONT)))
        return font;
    return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

HBRUSH ParentColors(CWnd& control, HDC dc, UINT ctlColorMessage, int text, int back)
{
    SetTextColor(dc, GetSysColor(text));
    SetBkColor(dc, GetSysColor(back));
    HBRUSH brush = nullptr;
    if (CWnd* parent = control.GetParent())
        brush = reinterpret_cast<HBRUSH>(
            parent->SendMessage(ctlColorMessage, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(control.m_hWnd)));
    return brush ? brush : GetSysColorBrush(back);
}

void Notify(CWnd& control, UINT code)
{
    if (CWnd* parent = control.GetParent())
        parent->SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<WORD>(control.GetDlgCtrlID()), static_cast<WORD>(code)),
                            reinterpret_cast<LPARAM>(control.m_hWnd));
}

int LineHeight(CWnd& control)
{
    CClientDC dc(&control);
    HGDIOBJ old = ::SelectObject(dc, FontOf(control));
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    ::SelectObject(dc, old);
    return tm.tmHeight > 0 ? tm.tmHeight : 13;
}

CPoint PointOf(LPARAM l)
{
    return CPoint(GET_X_LPARAM(l), GET_Y_LPARAM(l));
}

bool KeyDown(int vk)
{
    return (GetKeyState(vk) & 0x8000) != 0;
}

} // namespace vx::controls
