// The drawing side of the non-client area: the standard frames of the window
// styles, and printing a window into a device (WM_PRINT, WM_PRINTCLIENT).
// The core's window procedure calls these through vx::FrameBridge.

#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/wingdi.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/sysmetrics.h"

#include <vector>

namespace vx {
namespace {

bool TopLevel(const CWnd& w)
{
    return !w.GetParent() || !(w.GetStyle() & WS_CHILD);
}

void Ring(HDC dc, RECT& r, int width, int color)
{
    HBRUSH brush = GetSysColorBrush(color);
    for (int i = 0; i < width; ++i) {
        FrameRect(dc, &r, brush);
        InflateRect(&r, -1, -1);
    }
}

// The frame of the window's style, from the outside in, in window coordinates.
void DrawFrame(CWnd& window, HDC given, HRGN clip)
{
    const DWORD style = window.GetStyle();
    const DWORD exStyle = window.GetExStyle();
    const CRect insets = StandardFrameInsets(style, exStyle, TopLevel(window));
    if (insets.IsRectNull())
        return;
    HDC dc = given ? given : GetWindowDC(window.m_hWnd);
    if (!dc)
        return;
    const int saved = SaveDC(dc);
    CRect outer;
    window.GetWindowRect(&outer);
    if (clip) {
        // The region is in screen coordinates; the device's are the window's.
        HRGN local = CreateRectRgn(0, 0, 0, 0);
        CombineRgn(local, clip, nullptr, RGN_COPY);
        OffsetRgn(local, -outer.left, -outer.top);
        ExtSelectClipRgn(dc, local, RGN_AND);
        DeleteObject(local);
    }
    RECT r{0, 0, outer.Width(), outer.Height()};
    if (style & WS_THICKFRAME) {
        DrawEdge(dc, &r, EDGE_RAISED, BF_RECT | BF_ADJUST);
        Ring(dc, r, GetSystemMetrics(SM_CXFRAME) - 2, COLOR_ACTIVEBORDER);
    } else if ((style & WS_DLGFRAME) || (exStyle & WS_EX_DLGMODALFRAME)) {
        DrawEdge(dc, &r, EDGE_RAISED, BF_RECT | BF_ADJUST);
        Ring(dc, r, GetSystemMetrics(SM_CXDLGFRAME) - 2, COLOR_BTNFACE);
    } else if (style & WS_BORDER) {
        Ring(dc, r, GetSystemMetrics(SM_CXBORDER), COLOR_WINDOWFRAME);
    }
    if (exStyle & WS_EX_CLIENTEDGE)
        DrawEdge(dc, &r, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    if (exStyle & WS_EX_STATICEDGE)
        DrawEdge(dc, &r, BDR_SUNKENOUTER, BF_RECT | BF_ADJUST);
    RestoreDC(dc, saved);
    if (!given)
        ReleaseDC(window.m_hWnd, dc);
}

void PrintClient(CWnd& window, HDC dc, UINT flags)
{
    const CRect client = ClientAreaOf(window);
    const int saved = SaveDC(dc);
    OffsetViewportOrgEx(dc, client.left, client.top, nullptr);
    IntersectClipRect(dc, 0, 0, client.Width(), client.Height());
    if (flags & PRF_ERASEBKGND) {
        const int erase = SaveDC(dc);
        if (!window.SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc)) && gdi::Get<gdi::Dc>(dc)) {
            RECT all{0, 0, client.Width(), client.Height()};
            FillRect(dc, &all, GetSysColorBrush(COLOR_BTNFACE));
        }
        RestoreDC(dc, erase);
    }
    if ((flags & PRF_CLIENT) && window.m_hWnd)
        window.SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), flags);
    if ((flags & PRF_CHILDREN) && window.m_hWnd) {
        std::vector<CWnd*> children;
        for (CWnd* c = window.GetWindow(GW_CHILD); c; c = c->GetWindow(GW_HWNDNEXT)) {
            if ((c->GetStyle() & WS_CHILD) && c->IsWindowVisible())
                children.push_back(c);
        }
        // The first child lies on top, so it is printed last.
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            CRect r;
            (*it)->GetWindowRect(&r);
            window.ScreenToClient(&r);
            const int child = SaveDC(dc);
            OffsetViewportOrgEx(dc, r.left, r.top, nullptr);
            (*it)->SendMessage(WM_PRINT, reinterpret_cast<WPARAM>(dc), flags | PRF_NONCLIENT);
            RestoreDC(dc, child);
        }
    }
    RestoreDC(dc, saved);
}

void PaintInto(CWnd& window, HDC dc)
{
    gdi::PaintInto(window.m_hWnd, dc);
}

const bool g_installed = [] {
    FrameBridge bridge = GetFrameBridge();
    bridge.drawFrame = &DrawFrame;
    bridge.printClient = &PrintClient;
    bridge.paintInto = &PaintInto;
    SetFrameBridge(bridge);
    return true;
}();

} // namespace
} // namespace vx
