#include "ui/dialogs/dialogunits_p.h"

#include "ui/gdi/cdc.h"

#include "platform/windows/sysmetrics.h"

#include <cstdint>

namespace vx::dialogs {

int Scale(int a, int b, int c)
{
    if (c == 0)
        return -1;
    const std::int64_t product = static_cast<std::int64_t>(a) * b;
    const std::int64_t half = (c > 0 ? c : -c) / 2;
    const bool negative = (product < 0) != (c < 0);
    const std::int64_t magnitude = ((product < 0 ? -product : product) + half) / (c > 0 ? c : -c);
    return static_cast<int>(negative ? -magnitude : magnitude);
}

SIZE BaseUnitsOf(HFONT font)
{
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    HGDIOBJ old = ::SelectObject(dc, font);
    static const char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const CSize extent = dc.GetTextExtent(kLetters, 52);
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    ::SelectObject(dc, old);
    SIZE units{(extent.cx / 26 + 1) / 2, tm.tmHeight};
    if (units.cx <= 0)
        units.cx = 6;
    if (units.cy <= 0)
        units.cy = 13;
    return units;
}

void MapRect(SIZE units, RECT& rect)
{
    rect.left = Scale(rect.left, units.cx, 4);
    rect.right = Scale(rect.right, units.cx, 4);
    rect.top = Scale(rect.top, units.cy, 8);
    rect.bottom = Scale(rect.bottom, units.cy, 8);
}

bool InSizeCorner(const CWnd& dialog, POINT client)
{
    CRect r;
    dialog.GetClientRect(&r);
    const int size = GetSystemMetrics(SM_CXVSCROLL);
    return client.x >= r.right - size && client.x < r.right && client.y >= r.bottom - size && client.y < r.bottom;
}

} // namespace vx::dialogs
