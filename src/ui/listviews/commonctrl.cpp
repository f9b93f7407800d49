#include "ui/listviews/commonctrl_p.h"

#include "platform/windows/sysmetrics.h"

namespace vx::listviews {

HFONT FontOf(const CWnd& window)
{
    const auto font = reinterpret_cast<HFONT>(::SendMessageA(window.m_hWnd, WM_GETFONT, 0, 0));
    return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

int LineHeight(HFONT font)
{
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(dc, font);
    TEXTMETRICA tm{};
    GetTextMetricsA(dc, &tm);
    SelectObject(dc, old);
    DeleteDC(dc);
    return tm.tmHeight > 0 ? static_cast<int>(tm.tmHeight) : 13;
}

LRESULT Notify(CWnd& from, UINT code, NMHDR* header)
{
    header->hwndFrom = from.m_hWnd;
    header->idFrom = from.GetDlgCtrlID();
    header->code = code;
    if (CWnd* parent = from.GetParent())
        return parent->SendMessage(WM_NOTIFY, header->idFrom, reinterpret_cast<LPARAM>(header));
    return from.SendMessage(WM_REFLECT_BASE + WM_NOTIFY, header->idFrom, reinterpret_cast<LPARAM>(header));
}

void DrawCheckBox(HDC dc, const RECT& at, bool checked, bool enabled)
{
    RECT box{at.left, at.top, at.left + 13, at.top + 13};
    DrawEdge(dc, &box, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    HBRUSH inside = GetSysColorBrush(enabled ? COLOR_WINDOW : COLOR_BTNFACE);
    FillRect(dc, &box, inside);
    if (!checked)
        return;
    // The classic mark: a 7 pixel wide tick, three pixels thick.
    const COLORREF ink = GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    const int x0 = box.left + 1;
    const int y0 = box.top + 3;
    static const int kRise[7] = {2, 3, 4, 3, 2, 1, 0};
    for (int i = 0; i < 7; ++i) {
        for (int t = 0; t < 3; ++t)
            SetPixelV(dc, x0 + i, y0 + kRise[i] + t, ink);
    }
}

} // namespace vx::listviews
