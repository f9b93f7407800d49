#include "menus/cmenubar.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/hooks.h"
#include "platform/windows/sysmetrics.h"
#include "platform/windows/winuser.h"
#include "ui/bars/cdockbar.h"
#include "ui/gdi/cdc.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr UINT WM_SETMENUNULL = 0x84C;
constexpr UINT WM_MDISETMENU_ = 0x0230;
constexpr UINT WM_MDIREFRESHMENU_ = 0x0234;
constexpr UINT_PTR kHoverTimer = 1;
// The wrap width that puts every button into one row.
constexpr int kWide = 0x7FFF;

// The shared fonts and gap of every menu bar.
struct MenuBarFonts {
    CFont horz;
    CFont vert;
    int height = 0;
    int gap = 2;
};

MenuBarFonts& Fonts()
{
    static auto* fonts = new MenuBarFonts;
    return *fonts;
}

bool MakeFonts()
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    if (!SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0))
        return false;
    MenuBarFonts& f = Fonts();
    f.horz.DeleteObject();
    f.vert.DeleteObject();
    LOGFONTA lf = metrics.lfMenuFont;
    if (!f.horz.CreateFontIndirect(&lf))
        return false;
    lf.lfEscapement = -900;
    lf.lfOrientation = -900;
    if (!f.vert.CreateFontIndirect(&lf))
        return false;
    f.height = std::abs(metrics.lfMenuFont.lfHeight);
    const int menu = GetSystemMetrics(SM_CYMENU);
    f.gap = f.height + 4 < menu ? (menu - f.height) / 2 : 2;
    return true;
}

int TextWidth(CDC& dc, const CString& text)
{
    if (text.IsEmpty())
        return 0;
    CRect r(0, 0, 0, 0);
    dc.DrawText(text, &r, DT_SINGLELINE | DT_CALCRECT | DT_NOPREFIX);
    return r.Width();
}

} // namespace

bool CMenuBar::m_bMDIApp = false;
CMenuBar* CMenuBar::s_pTrackingBar = nullptr;
HHOOK CMenuBar::s_hMsgHook = nullptr;

void CMenuBarItem::Layout(CPoint at, BOOL horz)
{
    m_bHorz = horz;
    m_rcItem = horz ? RECT{at.x, at.y, at.x + m_cx, at.y + m_cy} : RECT{at.x, at.y, at.x + m_cy, at.y + m_cx};
}

CMenuBar::CMenuBar() = default;

CMenuBar::~CMenuBar()
{
    m_hook.HookWindow(static_cast<HWND>(nullptr));
    if (!m_bMDIApp && m_hMenu && IsMenu(m_hMenu))
        DestroyMenu(m_hMenu);
    m_hMenu = nullptr;
}

BOOL CMenuBar::Create(CWnd* parent, DWORD style, UINT id)
{
    m_dwStyle = (style | CBRS_SIZE_DYNAMIC) & CBRS_ALL;
    if (!CreateEx("MenuBar", "AfxMenuBar", (style | CBRS_SIZE_DYNAMIC) & ~CBRS_ALL & 0xFFFF0000, CRect(0, 0, 0, 0),
                  parent, id))
        return FALSE;
    if (CFrameWnd* frame = Frame())
        m_hook.HookWindow(frame->m_hWnd);
    return TRUE;
}

CFrameWnd* CMenuBar::Frame() const
{
    return GetDockingFrame();
}

bool CMenuBar::Docked() const
{
    return m_pDockBar && !IsFloating();
}

bool CMenuBar::HorizontalBar() const
{
    return IsFloating() || (m_dwStyle & CBRS_ORIENT_HORZ) || !(m_dwStyle & CBRS_ORIENT_VERT);
}

void CMenuBar::PostClearFrameMenu()
{
    CFrameWnd* frame = Frame();
    if (frame && ::GetMenu(frame->m_hWnd))
        PostMessage(WM_SETMENUNULL, reinterpret_cast<WPARAM>(frame->m_hWnd));
}

BOOL CMenuBar::LoadMenuBar(UINT id)
{
    if (m_hMenu && IsMenu(m_hMenu))
        DestroyMenu(m_hMenu);
    m_hMenu = nullptr;
    PostClearFrameMenu();
    m_hMenu = LoadMenuA(nullptr, MAKEINTRESOURCE(id));
    if (!m_hMenu)
        return FALSE;
    return InitBtns() >= 0;
}

HMENU CMenuBar::LoadMenu(HMENU menu, HMENU)
{
    PostClearFrameMenu();
    const HMENU old = m_hMenu;
    m_hMenu = menu;
    InitBtns();
    if (menu)
        RefreshBar();
    return old;
}

void CMenuBar::RefreshBar()
{
    if (CFrameWnd* frame = Frame()) {
        frame->RecalcLayout();
        // A child frame's menu bar shows in its MDI frame.
        if (CWnd* parent = frame->GetParent()) {
            for (CWnd* w = parent; w; w = w->GetParent()) {
                if (auto* outer = dynamic_cast<CFrameWnd*>(w)) {
                    outer->RecalcLayout();
                    break;
                }
            }
        }
    }
    if (m_hWnd)
        Invalidate();
}

int CMenuBar::InitBtns()
{
    m_arrItem.RemoveAll();
    const int count = m_hMenu ? GetMenuItemCount(m_hMenu) : 0;
    m_arrItem.SetSize(std::max(count, 0));
    if (!MakeFonts())
        return -1;
    MenuBarFonts& f = Fonts();
    CClientDC dc(m_hWnd ? this : nullptr);
    CFont* old = dc.SelectObject(&f.horz);
    for (int i = 0; i < count; ++i) {
        CMenuBarItem& item = m_arrItem[i];
        char buffer[256] = {};
        MENUITEMINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_TYPE;
        info.dwTypeData = buffer;
        info.cch = sizeof buffer - 1;
        GetMenuItemInfoA(m_hMenu, static_cast<UINT>(i), TRUE, &info);
        item = CMenuBarItem{};
        item.m_sText = buffer;
        item.m_cx = TextWidth(dc, item.m_sText.SpanExcluding("\t")) + 12;
        item.m_cy = f.height + 2 * f.gap;
        const int amp = item.m_sText.Find('&');
        if (amp >= 0 && amp + 1 < item.m_sText.GetLength()) {
            item.m_cAccessKey = item.m_sText[amp + 1];
            item.m_nUnderlineX1 = item.m_nUnderlineX2 = f.gap;
            item.m_nUnderlineY1 = 6 + (amp > 0 ? TextWidth(dc, item.m_sText.Left(amp)) : 0);
            item.m_nUnderlineY2 = 6 + TextWidth(dc, item.m_sText.Left(amp) + item.m_sText.Mid(amp + 1, 1));
        }
    }
    dc.SelectObject(old);
    return count;
}

// --- layout ---------------------------------------------------------------

void CMenuBar::CalcInsideRect(CRect&, BOOL) const
{
    // The bar draws its gripper and border in its client area.
}

CSize CMenuBar::CalcLayout(DWORD mode, int)
{
    const int count = m_arrItem.GetSize();
    const bool docked = Docked();
    if (mode & LM_HORZ) {
        int x = m_sizeIcon.cx + (docked ? 12 : 5);
        const int y = 5;
        for (int i = 0; i < count; ++i) {
            m_arrItem[i].Layout(CPoint(x, y), TRUE);
            x += m_arrItem[i].m_cx;
        }
        const int first = count ? m_arrItem[0].m_cy + 10 : 10;
        return CSize(x + 5, std::max<int>(first, m_sizeIcon.cy));
    }
    int y = m_sizeIcon.cy + (docked ? 12 : 5);
    const int x = 5;
    for (int i = 0; i < count; ++i) {
        m_arrItem[i].Layout(CPoint(x, y), FALSE);
        y += m_arrItem[i].m_cx;
    }
    // A vertical button is as wide as a horizontal one is high.
    const int first = count ? m_arrItem[0].m_cy + 10 : 10;
    return CSize(std::max<int>(first, m_sizeIcon.cx), y + 5);
}

CSize CMenuBar::CalcFixedLayout(BOOL stretch, BOOL horz)
{
    return CalcLayout((stretch ? LM_STRETCH : 0) | (horz ? LM_HORZ : 0));
}

void CMenuBar::CalcFloatingLayout()
{
    int x = m_sizeIcon.cx + 5;
    int y = 5;
    for (int i = 0; i < m_arrItem.GetSize(); ++i) {
        CMenuBarItem& item = m_arrItem[i];
        item.Layout(CPoint(x, y), TRUE);
        if (item.m_bWrap) {
            y += item.m_cy;
            x = 5;
        } else {
            x += item.m_cx;
        }
    }
}

CSize CMenuBar::CalcSize(int count)
{
    CalcFloatingLayout();
    CSize size(0, 0);
    for (int i = 0; i < std::min(count, static_cast<int>(m_arrItem.GetSize())); ++i) {
        size.cx = std::max<LONG>(size.cx, m_arrItem[i].m_rcItem.right);
        size.cy = std::max<LONG>(size.cy, m_arrItem[i].m_rcItem.bottom);
    }
    return CSize(size.cx + 5, size.cy + 5);
}

int CMenuBar::WrapMenuBar(int count, int width)
{
    int x = m_sizeIcon.cx;
    int rows = count > 0 ? 1 : 0;
    for (int i = 0; i < count; ++i)
        m_arrItem[i].m_bWrap = FALSE;
    for (int i = 0; i < count; ++i) {
        const int w = m_arrItem[i].m_cx;
        if (w + 5 > width) {
            m_arrItem[i].m_bWrap = TRUE;
        } else if (w + 5 + x > width) {
            x = 0;
            if (i > 0)
                m_arrItem[i - 1].m_bWrap = TRUE;
        }
        x += w;
    }
    for (int i = 0; i + 1 < count; ++i)
        rows += m_arrItem[i].m_bWrap ? 1 : 0;
    return rows;
}

void CMenuBar::SizeMenuBar(int count, int length, BOOL vertical)
{
    WrapMenuBar(count, 0);
    const CSize narrow = CalcSize(count);
    WrapMenuBar(count, kWide);
    const CSize wide = CalcSize(count);
    if (!vertical) {
        // The widest form that fits the length (bisected on the wrap width);
        // the narrowest when none does.
        if (wide.cx <= length)
            return;
        int low = 0;
        int high = wide.cx;
        while (high - low > 1) {
            const int mid = (low + high) / 2;
            WrapMenuBar(count, mid);
            if (CalcSize(count).cx > length)
                high = mid;
            else
                low = mid;
        }
        WrapMenuBar(count, low);
        return;
    }
    // The narrowest form whose height fits the length; the widest when the
    // narrowest is still too high.
    if (narrow.cy <= length) {
        WrapMenuBar(count, 0);
        return;
    }
    int low = 0;
    int high = wide.cx;
    while (high - low > 1) {
        const int mid = (low + high) / 2;
        WrapMenuBar(count, mid);
        const CSize size = CalcSize(count);
        if (size.cy > length)
            low = mid;
        else
            high = mid;
    }
    WrapMenuBar(count, high);
}

CSize CMenuBar::CalcDynamicLayout(int length, DWORD mode)
{
    if (!m_hMenu)
        return CSize(0, 0);
    const int count = m_arrItem.GetSize();
    CFrameWnd* frame = Frame();
    if (IsFloating() && frame) {
        // A floating menu bar cannot be closed.
        if (CWnd* mini = GetParent() ? GetParent()->GetParent() : nullptr)
            EnableMenuItem(GetSystemMenu(mini->m_hWnd, FALSE), SC_CLOSE, MF_BYCOMMAND | MF_GRAYED);
    }
    const bool topOrBottom = !IsFloating() && (m_dwStyle & CBRS_ORIENT_HORZ);
    const bool leftOrRight = !IsFloating() && (m_dwStyle & CBRS_ORIENT_VERT);
    CRect bar;
    CRect dock;
    if (m_pDockBar && m_hWnd) {
        GetWindowRect(&bar);
        m_pDockBar->GetWindowRect(&dock);
    }
    if (!(mode & LM_HORZ)) {
        if (IsFloating() || topOrBottom)
            return CalcLayout(mode, length);
        const CSize size = CalcLayout(mode, length);
        return CSize(size.cx, m_pDockBar ? dock.bottom - bar.top : 5000);
    }
    if (mode & LM_HORZDOCK) {
        if (IsFloating() || leftOrRight)
            return CalcLayout(mode, length);
        const CSize size = CalcLayout(mode, length);
        return CSize(m_pDockBar ? dock.right - bar.left : 5000, size.cy);
    }
    if (mode & LM_MRUWIDTH) {
        CalcFloatingLayout();
    } else if (mode & LM_COMMIT) {
        CalcFloatingLayout();
        return CSize(0, 0);
    } else {
        SizeMenuBar(count, length, (mode & LM_LENGTHY) != 0);
    }
    return CalcSize(count);
}

// --- state ---------------------------------------------------------------------

void CMenuBar::RepaintButton(int index)
{
    if (!m_hWnd || index < 0 || index >= m_arrItem.GetSize())
        return;
    const CRect r(m_arrItem[index].m_rcItem);
    InvalidateRect(&r);
}

void CMenuBar::UpdateBar(int state, int index)
{
    if (m_nTrackingState == TRACK_HOT && state != TRACK_HOT)
        m_bIgnoreAlt = FALSE;
    m_nTrackingState = state;
    if (m_nCurrentBtn >= 0 && m_nCurrentBtn < m_arrItem.GetSize()) {
        m_arrItem[m_nCurrentBtn].m_nState = 2;
        RepaintButton(m_nCurrentBtn);
    }
    m_nCurrentBtn = -1;
    if (state != TRACK_NONE && index >= 0 && index < m_arrItem.GetSize()) {
        m_nCurrentBtn = index;
        m_arrItem[index].m_nState = state == TRACK_POPUP ? 1 : 0;
        RepaintButton(index);
    }
    m_bAllowRight = TRUE;
    m_bAllowLeft = TRUE;
}

int CMenuBar::HitTest(CPoint point) const
{
    for (int i = 0; i < m_arrItem.GetSize(); ++i) {
        if (CRect(m_arrItem[i].m_rcItem).PtInRect(point))
            return i;
    }
    return -1;
}

int CMenuBar::MapAccelerator(UINT key) const
{
    for (int i = 0; i < m_arrItem.GetSize(); ++i) {
        if (m_arrItem[i].m_cAccessKey && static_cast<UINT>(static_cast<unsigned char>(m_arrItem[i].m_cAccessKey)) == key)
            return i;
    }
    return -1;
}

CPoint CMenuBar::ComputeMenuTrackPoint(int index, TPMPARAMS& params)
{
    params.cbSize = sizeof params;
    params.rcExclude = RECT{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    const CRect desktop(params.rcExclude);
    CRect button(m_arrItem[index].m_rcItem);
    ClientToScreen(&button);
    const HMENU popup = GetSubMenu(m_hMenu, index);
    const int items = popup ? GetMenuItemCount(popup) : 0;
    if (!IsFloating() && (m_dwStyle & CBRS_ORIENT_HORZ)) {
        if (button.bottom + button.Height() * items > desktop.bottom) {
            params.rcExclude.top = button.top;
            return CPoint(button.left, button.top);
        }
        return CPoint(button.left, button.bottom);
    }
    int widest = 0;
    CClientDC dc(this);
    CFont* old = dc.SelectObject(&Fonts().horz);
    for (int i = 0; i < items; ++i) {
        char text[256] = {};
        GetMenuStringA(popup, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
        widest = std::max(widest, TextWidth(dc, text));
    }
    dc.SelectObject(old);
    widest += 18 + 2 * GetSystemMetrics(SM_CXMENUCHECK);
    if (button.right + widest > desktop.right) {
        params.rcExclude.left = button.left;
        return CPoint(button.left, button.top);
    }
    params.rcExclude.right = button.right;
    return CPoint(button.right, button.top);
}

LRESULT CMenuBar::MenuInputFilter(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == MSGF_MENU && s_pTrackingBar && s_pTrackingBar->OnMenuInput(*reinterpret_cast<MSG*>(lParam)))
        return TRUE;
    return CallNextHookEx(s_hMsgHook, code, wParam, lParam);
}

void CMenuBar::TrackPopup(int index)
{
    m_nCurrentBtn = index;
    m_bLoop = TRUE;
    while (m_bLoop) {
        UpdateWindow();
        UpdateBar(TRACK_POPUP, m_nCurrentBtn);
        if (m_nCurrentBtn < 0)
            break;
        TPMPARAMS params{};
        const CPoint at = ComputeMenuTrackPoint(m_nCurrentBtn, params);
        const HMENU popup = GetSubMenu(m_hMenu, m_nCurrentBtn);
        if (!popup)
            break;
        m_bLoop = FALSE;
        s_pTrackingBar = this;
        s_hMsgHook = SetWindowsHookExA(WH_MSGFILTER, &CMenuBar::MenuInputFilter, nullptr, GetCurrentThreadId());
        m_nTrackingState = TRACK_POPUP;
        CFrameWnd* frame = Frame();
        TrackPopupMenuEx(popup, TPM_LEFTALIGN | TPM_LEFTBUTTON | TPM_VERTICAL, at.x, at.y,
                         frame ? frame->m_hWnd : m_hWnd, &params);
        UnhookWindowsHookEx(s_hMsgHook);
        s_hMsgHook = nullptr;
        s_pTrackingBar = nullptr;
    }
    UpdateBar(TRACK_NONE);
}

BOOL CMenuBar::OnMenuInput(MSG& msg)
{
    CFrameWnd* frame = Frame();
    CPoint point = msg.pt;
    ScreenToClient(&point);
    const int count = m_arrItem.GetSize();
    switch (msg.message) {
    case WM_KEYDOWN: {
        if (!HorizontalBar() || count == 0)
            break;
        int next = -1;
        if (msg.wParam == VK_LEFT && m_bAllowLeft)
            next = (m_nCurrentBtn + count - 1) % count;
        else if (msg.wParam == VK_RIGHT && m_bAllowRight)
            next = (m_nCurrentBtn + 1) % count;
        if (next < 0)
            break;
        if (frame)
            frame->PostMessage(WM_CANCELMODE);
        UpdateBar(TRACK_NONE);
        m_nCurrentBtn = next;
        m_bLoop = TRUE;
        return TRUE;
    }
    case WM_SYSKEYDOWN:
        m_bIgnoreAlt = TRUE;
        break;
    case WM_MOUSEMOVE:
        if (point != m_ptMouse) {
            const int at = HitTest(point);
            if (at >= 0 && at != m_nCurrentBtn) {
                if (frame)
                    frame->PostMessage(WM_CANCELMODE);
                UpdateBar(TRACK_NONE);
                m_nCurrentBtn = at;
                m_bLoop = TRUE;
            }
            m_ptMouse = point;
        }
        break;
    case WM_LBUTTONDOWN:
        if (HitTest(point) == m_nCurrentBtn && m_nCurrentBtn >= 0) {
            if (frame)
                frame->PostMessage(WM_CANCELMODE);
            UpdateBar(TRACK_BUTTON, m_nCurrentBtn);
            return TRUE;
        }
        break;
    default:
        break;
    }
    return FALSE;
}

void CMenuBar::OnMenuSelect(HMENU menu, UINT item)
{
    if (m_nTrackingState != TRACK_POPUP || !menu)
        return;
    // Arrows go on to the next button only from a leaf, and back only from
    // the first level.
    m_bAllowRight = GetSubMenu(menu, static_cast<int>(item)) == nullptr;
    if (!m_bAllowRight) {
        // `item` may be a command rather than a position.
        MENUITEMINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_SUBMENU;
        if (GetMenuItemInfoA(menu, item, FALSE, &info))
            m_bAllowRight = info.hSubMenu == nullptr;
    }
    m_bAllowLeft = m_nCurrentBtn >= 0 && menu == GetSubMenu(m_hMenu, m_nCurrentBtn);
}

BOOL CMenuBar::TranslateFrameMessage(MSG* msg)
{
    if (!msg)
        return FALSE;
    const UINT message = msg->message;
    if (message >= WM_LBUTTONDOWN && message <= 0x209) {
        if (msg->hwnd != m_hWnd && m_nTrackingState > TRACK_NONE)
            UpdateBar(TRACK_NONE);
        return FALSE;
    }
    if (message != WM_SYSKEYDOWN && message != WM_SYSKEYUP && message != WM_KEYDOWN)
        return FALSE;
    const UINT key = static_cast<UINT>(msg->wParam);
    const bool shift = GetKeyState(VK_SHIFT) < 0;
    const bool ctrl = GetKeyState(VK_CONTROL) < 0;
    const bool alt = GetKeyState(VK_MENU) < 0;
    if (key == VK_MENU || (key == VK_F10 && !shift && !ctrl && !alt)) {
        if (message != WM_SYSKEYUP)
            return TRUE;
        if (m_nTrackingState == TRACK_BUTTON) {
            UpdateBar(TRACK_NONE);
        } else if (m_nTrackingState == TRACK_NONE) {
            if (m_bIgnoreAlt)
                m_bIgnoreAlt = FALSE;
            else
                UpdateBar(TRACK_BUTTON, std::max(m_nCurrentBtn, 0));
        }
        return TRUE;
    }
    const int count = m_arrItem.GetSize();
    if (m_nTrackingState == TRACK_BUTTON && message == WM_KEYDOWN && count > 0) {
        const bool horz = HorizontalBar();
        const UINT back = horz ? VK_LEFT : VK_UP;
        const UINT forward = horz ? VK_RIGHT : VK_DOWN;
        if (key == VK_ESCAPE) {
            UpdateBar(TRACK_NONE);
            return TRUE;
        }
        if (key == back || key == forward) {
            const int next = key == back ? (m_nCurrentBtn + count - 1) % count : (m_nCurrentBtn + 1) % count;
            UpdateBar(TRACK_BUTTON, next);
            return TRUE;
        }
        const bool opens = key == VK_SPACE || (horz ? (key == VK_UP || key == VK_DOWN) : (key == VK_LEFT || key == VK_RIGHT));
        if (opens) {
            TrackPopup(m_nCurrentBtn);
            return TRUE;
        }
    }
    if ((m_nTrackingState == TRACK_BUTTON || alt || message == WM_SYSKEYDOWN) &&
        ((key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z'))) {
        const int at = MapAccelerator(key);
        if (at >= 0) {
            UpdateBar(TRACK_NONE);
            TrackPopup(at);
            return TRUE;
        }
        if (m_nTrackingState == TRACK_BUTTON && !alt)
            return TRUE;
    }
    if (m_nTrackingState > TRACK_NONE && m_nTrackingState != TRACK_HOT)
        UpdateBar(TRACK_NONE);
    return FALSE;
}

// --- mouse ---------------------------------------------------------------------------

void CMenuBar::OnLButtonDown(UINT flags, CPoint point)
{
    const int at = HitTest(point);
    if (at >= 0 && GetSubMenu(m_hMenu, at)) {
        TrackPopup(at);
        return;
    }
    if (at >= 0) {
        UpdateWindow();
        m_nCurrentBtn = at;
        m_arrItem[at].m_nState = 1;
        RepaintButton(at);
        m_bDown = TRUE;
        return;
    }
    CControlBar::OnLButtonDown(flags, point);
}

void CMenuBar::OnLButtonUp(UINT flags, CPoint point)
{
    const int at = HitTest(point);
    if (at >= 0 && !GetSubMenu(m_hMenu, at) && m_bDown) {
        m_bDown = FALSE;
        if (CFrameWnd* frame = Frame())
            frame->SendMessage(WM_COMMAND, GetMenuItemID(m_hMenu, at));
        UpdateBar(TRACK_NONE);
        return;
    }
    m_bDown = FALSE;
    CControlBar::OnLButtonUp(flags, point);
}

void CMenuBar::OnMouseMove(UINT flags, CPoint point)
{
    CWnd* active = CWnd::GetActiveWindow();
    CFrameWnd* frame = Frame();
    const bool frameActive = active && (active == frame || active == GetTopLevelParent());
    if (frameActive && IsWindowEnabled()) {
        const int at = HitTest(point);
        if (at < 0) {
            if (m_nTrackingState == TRACK_HOT)
                UpdateBar(TRACK_NONE);
        } else if (at != m_nCurrentBtn) {
            UpdateBar(TRACK_HOT, at);
            m_nTimerID = SetTimer(kHoverTimer, 250);
        }
    }
    CControlBar::OnMouseMove(flags, point);
}

void CMenuBar::OnTimer(UINT_PTR id)
{
    if (id != kHoverTimer) {
        CControlBar::OnTimer(id);
        return;
    }
    CPoint cursor;
    GetCursorPos(&cursor);
    CRect r;
    GetWindowRect(&r);
    if (m_nTrackingState == TRACK_HOT && !r.PtInRect(cursor)) {
        UpdateBar(TRACK_NONE);
        KillTimer(kHoverTimer);
        m_nTimerID = 0;
    }
}

void CMenuBar::OnKillFocus(CWnd* newWnd)
{
    CControlBar::OnKillFocus(newWnd);
    UpdateBar(TRACK_NONE);
}

void CMenuBar::OnUpdateCmdUI(CFrameWnd*, BOOL) {}

void CMenuBar::OnSettingChange()
{
    InitBtns();
    if (CFrameWnd* frame = Frame())
        frame->RecalcLayout();
}

LRESULT CMenuBar::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SETMENUNULL:
        return OnSetMenuNull(wParam, lParam);
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
        OnSettingChange();
        return 0;
    default:
        return CControlBar::WindowProc(message, wParam, lParam);
    }
}

LRESULT CMenuBar::OnSetMenuNull(WPARAM wParam, LPARAM)
{
    ::SetMenu(reinterpret_cast<HWND>(wParam), nullptr);
    return 0;
}

LRESULT CMenuBar::CMenuBarFrameHook::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MENUSELECT:
        m_pMenuBar->OnMenuSelect(reinterpret_cast<HMENU>(lParam), LOWORD(wParam));
        return Default();
    case WM_MDISETMENU_:
        if (wParam) {
            m_pMenuBar->LoadMenu(reinterpret_cast<HMENU>(wParam), reinterpret_cast<HMENU>(lParam));
            ::SetMenu(m_hWnd, nullptr);
            return 0;
        }
        return Default();
    case WM_MDIREFRESHMENU_:
        return 0;
    default:
        return Default();
    }
}

// --- painting ----------------------------------------------------------------------------

void CMenuBar::OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS*)
{
    // No frame: the whole window is the bar's client area.
}

void CMenuBar::OnNcPaint() {}

void CMenuBar::DrawButton(CDC& dc, int index)
{
    const CMenuBarItem& item = m_arrItem[index];
    CRect r(item.m_rcItem);
    dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
    int offset = 0;
    if (item.m_nState == 0) {
        dc.DrawEdge(&r, BDR_RAISEDINNER, BF_RECT);
    } else if (item.m_nState == 1) {
        dc.DrawEdge(&r, BDR_SUNKENOUTER, BF_RECT);
        offset = 1;
    }
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(COLOR_MENUTEXT));
    const int gap = Fonts().gap;
    if (item.m_bHorz) {
        CFont* old = dc.SelectObject(&Fonts().horz);
        CRect text(r.left + 6 + offset, r.top + gap + offset, r.right - 6 + offset, r.bottom + offset);
        dc.DrawText(item.m_sText, &text, DT_SINGLELINE);
        dc.SelectObject(old);
        return;
    }
    CString plain = item.m_sText;
    plain.Remove('&');
    CFont* old = dc.SelectObject(&Fonts().vert);
    CRect text(r.right - gap + offset, r.top + 6 + offset, r.right + offset, r.bottom + offset);
    dc.DrawText(plain, &text, DT_SINGLELINE | DT_NOCLIP | DT_NOPREFIX);
    dc.SelectObject(old);
    if (item.m_nUnderlineY2 > item.m_nUnderlineY1) {
        CPen pen(PS_SOLID, 1, GetSysColor(COLOR_MENUTEXT));
        CPen* oldPen = dc.SelectObject(&pen);
        dc.MoveTo(r.left + item.m_nUnderlineX1 + offset, r.top + item.m_nUnderlineY1 + offset);
        dc.LineTo(r.left + item.m_nUnderlineX2 + offset, r.top + item.m_nUnderlineY2 + offset);
        dc.SelectObject(oldPen);
    }
}

void CMenuBar::DrawGripper(CDC* dc)
{
    CRect r;
    GetWindowRect(&r);
    r.OffsetRect(-r.left, -r.top);
    r.DeflateRect(4, 4);
    const COLORREF hilite = GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF shadow = GetSysColor(COLOR_BTNSHADOW);
    if (HorizontalBar()) {
        dc->Draw3dRect(r.left, r.top, 3, r.Height(), hilite, shadow);
        dc->Draw3dRect(r.left + 3, r.top, 3, r.Height(), hilite, shadow);
    } else {
        dc->Draw3dRect(r.left, r.top, r.Width(), 3, hilite, shadow);
        dc->Draw3dRect(r.left, r.top + 3, r.Width(), 3, hilite, shadow);
    }
}

void CMenuBar::DrawBorder(CDC* dc)
{
    CRect r;
    GetClientRect(&r);
    dc->DrawEdge(&r, BDR_RAISEDINNER, BF_RECT);
}

void CMenuBar::DoPaint(CDC* dc)
{
    CRect client;
    GetClientRect(&client);
    dc->FillSolidRect(&client, GetSysColor(COLOR_BTNFACE));
    for (int i = 0; i < m_arrItem.GetSize(); ++i)
        DrawButton(*dc, i);
    if (!IsFloating() && m_dwDockStyle) {
        DrawGripper(dc);
        DrawBorder(dc);
    }
}
