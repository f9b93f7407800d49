// A maximised MDI child in the frame's menu bar, as the platform shows it:
// the child's icon first, holding its system menu, and its minimise, restore
// and close buttons at the bar's right end. The child then shows no frame of
// its own; the items name it in their data, so that their commands reach it
// as WM_SYSCOMMAND.

#include "ui/mdi/cmdiclientwnd.h"
#include "ui/mdi/cmdichildwnd.h"

#include "ui/menus/menubar_p.h"
#include "ui/menus/menumodel_p.h"

namespace {

bool IsBarButton(const vx::menus::MenuItem& it)
{
    using namespace vx::menus;
    return (it.type & MFT_BITMAP) &&
           (it.bitmap == kBarSystem || it.bitmap == kBarMinimize || it.bitmap == kBarRestore || it.bitmap == kBarClose);
}

void RemoveBarButtons(HMENU menu)
{
    vx::menus::Menu* m = vx::menus::MenuOf(menu);
    if (!m)
        return;
    for (int i = static_cast<int>(m->items.size()) - 1; i >= 0; --i) {
        if (IsBarButton(m->items[static_cast<std::size_t>(i)]))
            RemoveMenu(menu, static_cast<UINT>(i), MF_BYPOSITION); // the system menu stays the child's
        m = vx::menus::MenuOf(menu);
        if (!m)
            return;
    }
}

void SetItemData(HMENU menu, UINT position, HWND child)
{
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_DATA;
    info.dwItemData = reinterpret_cast<ULONG_PTR>(child);
    SetMenuItemInfoA(menu, position, TRUE, &info);
}

void FrameChanged(HWND window)
{
    if (IsWindow(window))
        SetWindowPos(window, nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

} // namespace

void CMDIClientWnd::UpdateBarButtons()
{
    CMDIFrameWnd* frame = Frame();
    const HMENU menu = frame && frame->m_hWnd ? ::GetMenu(frame->m_hWnd) : nullptr;
    CMDIChildWnd* zoomed = m_active && m_active->m_hWnd && m_active->IsZoomed() ? m_active : nullptr;
    const HWND child = zoomed ? zoomed->m_hWnd : nullptr;
    if (menu == m_barMenu && child == m_barChild && (!menu || IsMenu(menu)))
        return;
    const HWND before = m_barChild;
    if (m_barMenu && IsMenu(m_barMenu))
        RemoveBarButtons(m_barMenu);
    m_barMenu = nullptr;
    m_barChild = nullptr;
    if (menu && child) {
        using namespace vx::menus;
        RemoveBarButtons(menu);
        const HMENU system = ::GetSystemMenu(child, FALSE);
        InsertMenuA(menu, 0, MF_BYPOSITION | MF_POPUP | MF_BITMAP, reinterpret_cast<UINT_PTR>(system),
                    reinterpret_cast<LPCSTR>(kBarSystem));
        SetItemData(menu, 0, child);
        struct Button {
            UINT command;
            HBITMAP bitmap;
        };
        const bool minimize = zoomed->GetStyle() & WS_MINIMIZEBOX;
        const Button buttons[] = {{SC_MINIMIZE, kBarMinimize}, {SC_RESTORE, kBarRestore}, {SC_CLOSE, kBarClose}};
        bool first = true;
        for (const Button& b : buttons) {
            if (b.command == SC_MINIMIZE && !minimize)
                continue;
            // The first of them takes itself and the rest to the right end.
            AppendMenuA(menu, MF_BITMAP | (first ? MF_HELP : 0), b.command, reinterpret_cast<LPCSTR>(b.bitmap));
            SetItemData(menu, static_cast<UINT>(GetMenuItemCount(menu) - 1), child);
            first = false;
        }
        m_barMenu = menu;
        m_barChild = child;
    }
    if (frame && frame->m_hWnd)
        ::DrawMenuBar(frame->m_hWnd);
    if (before != m_barChild) {
        FrameChanged(before);
        FrameChanged(m_barChild);
    }
}
