#include "ui/menus/menutracker_p.h"

#include "ui/menus/menubar_p.h"

#include "ui/gdi/wingdi.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"

#include "platform/framework/util_p.h"
#include "platform/windows/hooks.h"
#include "platform/windows/lasterror.h"
#include "platform/windows/messagepump.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace vx::menus {
namespace {

constexpr UINT_PTR kShowTimer = 0xFFFE;

MenuTracker* g_current = nullptr;

RECT WorkArea()
{
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    return work;
}

bool Selectable(const MenuItem& it)
{
    return !it.IsSeparator();
}

UINT SelectFlags(const MenuItem& it)
{
    UINT flags = (it.type & (MF_BITMAP | MF_OWNERDRAW)) | (it.state & (MF_GRAYED | MF_DISABLED | MF_CHECKED));
    if (it.sub)
        flags |= MF_POPUP;
    return flags | MF_HILITE;
}

// Sends the bridge's WM_CANCELMODE to the innermost menu.
void CancelCurrent()
{
    EndMenu();
}

const bool g_installed = [] {
    FrameBridge bridge = GetFrameBridge();
    bridge.cancelMode = &CancelCurrent;
    SetFrameBridge(bridge);
    return true;
}();

} // namespace

MenuTracker::MenuTracker(HMENU menu, UINT flags, HWND owner, const RECT* exclude)
    : m_menu(menu), m_flags(flags), m_owner(owner)
{
    if (exclude && !IsRectEmpty(exclude)) {
        m_exclude = *exclude;
        m_hasExclude = true;
    }
}

MenuTracker::~MenuTracker()
{
    if (g_current == this)
        g_current = m_outer;
}

MenuTracker* MenuTracker::Current()
{
    return g_current;
}

void MenuTracker::Cancel()
{
    m_done = true;
    m_command = 0;
}

void MenuTracker::LinkBar(MenuBarLink* bar, int position, bool cues)
{
    m_bar = bar;
    m_barPosition = position;
    m_cues = cues;
}

UINT MenuTracker::Run(int x, int y)
{
    m_outer = g_current;
    g_current = this;
    BOOL cues = FALSE;
    SystemParametersInfoA(SPI_GETKEYBOARDCUES, 0, &cues, 0);
    m_cues = m_cues || cues;
    if (Notify()) {
        if (!m_bar) {
            SendMessageA(m_owner, WM_ENTERMENULOOP, TRUE, 0);
            SendMessageA(m_owner, WM_INITMENU, reinterpret_cast<WPARAM>(m_menu), 0);
        }
        SendMessageA(m_owner, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(m_menu),
                     MAKELPARAM(static_cast<WORD>(m_bar ? m_barPosition : 0), FALSE));
    }
    if (IsMenu(m_menu) && IsWindow(m_owner) && OpenLevel(m_menu, -1, 0, x, y)) {
        // The menu takes all input of the thread until it ends.
        InputFilter previous = SetInputFilter([this](const MSG& msg) { return OnInput(msg); });
        QWidget* grab = HasDisplay() ? WidgetOfWindow(m_levels.front().get()) : nullptr;
        if (grab) {
            grab->grabMouse();
            grab->grabKeyboard();
        }
        while (!m_done) {
            if (!IsWindow(m_owner) || m_levels.empty() || !m_levels.front()->m_hWnd) {
                Cancel();
                break;
            }
            Wait();
        }
        if (grab && !m_levels.empty() && WidgetOfWindow(m_levels.front().get()) == grab) {
            grab->releaseKeyboard();
            grab->releaseMouse();
        }
        SetInputFilter(std::move(previous));
    }
    CloseAbove(-1);
    if (Notify() && IsWindow(m_owner) && !m_bar) {
        SendMessageA(m_owner, WM_MENUSELECT, MAKEWPARAM(0, 0xFFFF), 0);
        SendMessageA(m_owner, WM_EXITMENULOOP, TRUE, 0);
    }
    g_current = m_outer;
    return m_command;
}

void MenuTracker::Wait()
{
    if (!m_wait.done) {
        m_wait.done = [this] { return m_done; };
        m_wait.quit = [this] { Cancel(); };
        if (Notify()) {
            m_wait.idle = [this] {
                SendMessageA(m_owner, WM_ENTERIDLE, MSGF_MENU,
                             reinterpret_cast<LPARAM>(m_levels.empty() ? nullptr : m_levels.front()->m_hWnd));
            };
        }
    }
    WaitForMenuInput(m_wait);
}

bool MenuTracker::OnInput(const MSG& in)
{
    MSG msg = in;
    // Mouse points are screen points for the menu (and in msg.pt for its hooks).
    CPoint screen;
    UINT mouse = 0;
    if (MenuMouse(msg, screen, mouse))
        msg.pt = screen;
    if (CallMsgFilterA(&msg, MSGF_MENU) || m_done)
        return true;
    switch (msg.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        if (!m_cues) {
            m_cues = true; // the keyboard is in use: mnemonics show
            for (auto& level : m_levels)
                level->RedrawItems();
        }
        if (msg.message == WM_SYSKEYDOWN && (msg.wParam == VK_MENU || msg.wParam == VK_F10)) {
            if (m_bar)
                m_bar->BarKey(VK_MENU);
            Cancel();
        } else
            OnKey(static_cast<UINT>(msg.wParam));
        break;
    case WM_CHAR:
    case WM_SYSCHAR:
        OnChar(static_cast<UINT>(msg.wParam));
        break;
    default:
        if (mouse)
            OnMouse(mouse, screen);
        break;
    }
    return true;
}

void MenuTracker::OnKey(UINT key)
{
    if (m_levels.empty())
        return;
    m_current = std::min(m_current, static_cast<int>(m_levels.size()) - 1);
    PopupMenuWindow& level = *m_levels[static_cast<std::size_t>(m_current)];
    Menu* menu = MenuOf(level.MenuHandle());
    const int selected = level.Selected();
    const MenuItem* item =
        (menu && selected >= 0 && selected < static_cast<int>(menu->items.size()))
            ? &menu->items[static_cast<std::size_t>(selected)]
            : nullptr;
    switch (key) {
    case VK_DOWN: Step(1); break;
    case VK_UP: Step(-1); break;
    case VK_HOME: Step(0); break;
    case VK_END: Step(0, true); break;
    case VK_RIGHT:
        if (item && item->sub && !item->IsGrayed()) {
            OpenSubmenu(m_current, true);
        } else if (m_bar) {
            // Past a leaf the bar's next item opens.
            m_bar->BarKey(VK_RIGHT);
            Cancel();
        }
        break;
    case VK_LEFT:
        if (m_current > 0) {
            CloseAbove(m_current - 1);
            m_current = static_cast<int>(m_levels.size()) - 1;
        } else if (m_bar) {
            m_bar->BarKey(VK_LEFT);
            Cancel();
        }
        break;
    case VK_ESCAPE:
        if (m_current > 0) {
            CloseAbove(m_current - 1);
            m_current = static_cast<int>(m_levels.size()) - 1;
        } else {
            if (m_bar)
                m_bar->BarKey(VK_ESCAPE);
            Cancel();
        }
        break;
    case VK_RETURN:
        if (selected >= 0)
            Execute(m_current, selected);
        else
            Cancel();
        break;
    default:
        break;
    }
}

void MenuTracker::OnChar(UINT ch)
{
    if (m_levels.empty() || ch < ' ')
        return;
    m_current = std::min(m_current, static_cast<int>(m_levels.size()) - 1);
    PopupMenuWindow& level = *m_levels[static_cast<std::size_t>(m_current)];
    HMENU handle = level.MenuHandle();
    Menu* menu = MenuOf(handle);
    if (!menu)
        return;
    const int key = static_cast<unsigned char>(vx::AsciiLower(static_cast<char>(ch & 0xFF)));
    std::vector<int> matches;
    for (std::size_t i = 0; i < menu->items.size(); ++i) {
        const MenuItem& it = menu->items[i];
        if (!it.IsOwnerDrawn() && !it.IsSeparator() && Mnemonic(it.text) == key)
            matches.push_back(static_cast<int>(i));
    }
    if (matches.size() == 1) {
        Select(m_current, matches[0], false);
        Execute(m_current, matches[0]);
        return;
    }
    if (matches.size() > 1) {
        // Several items share the letter: it moves to the next of them.
        auto next = std::upper_bound(matches.begin(), matches.end(), level.Selected());
        Select(m_current, next == matches.end() ? matches.front() : *next, false);
        return;
    }
    // The owner knows the letters of items it draws itself.
    const LRESULT answer =
        SendMessageA(m_owner, WM_MENUCHAR, MAKEWPARAM(static_cast<WORD>(ch), MF_POPUP), reinterpret_cast<LPARAM>(handle));
    menu = MenuOf(handle);
    const int position = LOWORD(static_cast<DWORD_PTR>(answer));
    const bool valid = menu && position < static_cast<int>(menu->items.size()) && !m_levels.empty() &&
                       m_current < static_cast<int>(m_levels.size());
    switch (HIWORD(static_cast<DWORD_PTR>(answer))) {
    case MNC_EXECUTE:
        if (valid) {
            Select(m_current, position, false);
            Execute(m_current, position);
        }
        break;
    case MNC_SELECT:
        if (valid)
            Select(m_current, position, false);
        break;
    case MNC_CLOSE:
        Cancel();
        break;
    default:
        break;
    }
}

void MenuTracker::OnMouse(UINT message, CPoint screen)
{
    const int level = LevelAt(screen);
    if (level < 0 && m_bar && m_bar->BarMouse(message, screen))
        return;
    const int position = level >= 0 ? m_levels[static_cast<std::size_t>(level)]->ItemAt(screen) : -1;
    Menu* menu = level >= 0 ? MenuOf(m_levels[static_cast<std::size_t>(level)]->MenuHandle()) : nullptr;
    const MenuItem* item = (menu && position >= 0) ? &menu->items[static_cast<std::size_t>(position)] : nullptr;
    const bool rightButton = (m_flags & TPM_RIGHTBUTTON) != 0;
    switch (message) {
    case WM_MOUSEMOVE: {
        if (screen == m_lastMouse)
            return;
        m_lastMouse = screen;
        if (level < 0 || !item || !Selectable(*item)) {
            // Off the items: the deepest level lets its selection go, unless
            // it leads to an open sub-menu.
            const int deepest = level >= 0 ? level : static_cast<int>(m_levels.size()) - 1;
            if (deepest >= 0 && deepest == static_cast<int>(m_levels.size()) - 1)
                Select(deepest, -1, true);
            return;
        }
        m_moved = true;
        m_current = level;
        PopupMenuWindow& w = *m_levels[static_cast<std::size_t>(level)];
        if (w.Selected() == position)
            return;
        CloseAbove(level);
        Select(level, position, true);
        if (item->sub && !item->IsGrayed()) {
            UINT delay = 400;
            SystemParametersInfoA(SPI_GETMENUSHOWDELAY, 0, &delay, 0);
            w.SetTimer(kShowTimer, delay);
        }
        return;
    }
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
        if (level < 0) {
            Cancel(); // a click outside ends the menu
            return;
        }
        m_buttonDown = true;
        if (!item || !Selectable(*item))
            return;
        m_current = level;
        if (m_levels[static_cast<std::size_t>(level)]->Selected() != position) {
            CloseAbove(level);
            Select(level, position, true);
        }
        if (item->sub && !item->IsGrayed())
            OpenSubmenu(level, false);
        return;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        if (message == WM_RBUTTONUP && !rightButton)
            return;
        // A button let go over a command chooses it, once the mouse has been
        // used in the menu (not the release of the click that opened it).
        if (!item || !Selectable(*item) || item->sub || item->IsGrayed() || !(m_buttonDown || m_moved))
            return;
        Execute(level, position);
        return;
    default:
        return;
    }
}

void MenuTracker::OnShowTimer(int level)
{
    if (level >= 0 && level < static_cast<int>(m_levels.size()) && m_levels[static_cast<std::size_t>(level)]->Selected() >= 0)
        OpenSubmenu(level, false);
}

void MenuTracker::Select(int level, int position, bool byMouse)
{
    if (level < 0 || level >= static_cast<int>(m_levels.size()))
        return;
    PopupMenuWindow& w = *m_levels[static_cast<std::size_t>(level)];
    if (w.Selected() == position)
        return;
    w.KillTimer(kShowTimer);
    w.Select(position);
    Menu* menu = MenuOf(w.MenuHandle());
    if (position < 0 || !menu || !Notify())
        return;
    const MenuItem& it = menu->items[static_cast<std::size_t>(position)];
    const UINT flags = SelectFlags(it) | (byMouse ? MF_MOUSESELECT : 0);
    const UINT which = it.sub ? static_cast<UINT>(position) : it.id;
    SendMessageA(m_owner, WM_MENUSELECT, MAKEWPARAM(static_cast<WORD>(which), static_cast<WORD>(flags)),
                 reinterpret_cast<LPARAM>(w.MenuHandle()));
}

void MenuTracker::Step(int step, bool fromEnd)
{
    if (m_levels.empty())
        return;
    CloseAbove(m_current);
    PopupMenuWindow& w = *m_levels[static_cast<std::size_t>(m_current)];
    Menu* menu = MenuOf(w.MenuHandle());
    if (!menu || menu->items.empty())
        return;
    const int n = static_cast<int>(menu->items.size());
    int at;
    int direction = step;
    if (step == 0) {
        at = fromEnd ? n - 1 : 0;
        direction = fromEnd ? -1 : 1;
    } else if (w.Selected() < 0) {
        at = step > 0 ? 0 : n - 1;
    } else {
        at = (w.Selected() + step + n) % n;
    }
    for (int k = 0; k < n; ++k) {
        const int i = (at + direction * k + n * n) % n;
        if (Selectable(menu->items[static_cast<std::size_t>(i)])) {
            Select(m_current, i, false);
            return;
        }
    }
}

void MenuTracker::Execute(int level, int position)
{
    Menu* menu = MenuOf(m_levels[static_cast<std::size_t>(level)]->MenuHandle());
    if (!menu || position < 0 || position >= static_cast<int>(menu->items.size()))
        return;
    const MenuItem& it = menu->items[static_cast<std::size_t>(position)];
    if (it.IsSeparator())
        return;
    if (it.sub) {
        if (!it.IsGrayed())
            OpenSubmenu(level, true);
        return;
    }
    // A grayed command ends the menu without a command, as on the original.
    m_command = it.IsGrayed() ? 0 : it.id;
    m_done = true;
}

void MenuTracker::OpenSubmenu(int level, bool selectFirst)
{
    if (level < 0 || level >= static_cast<int>(m_levels.size()))
        return;
    PopupMenuWindow& w = *m_levels[static_cast<std::size_t>(level)];
    w.KillTimer(kShowTimer);
    Menu* menu = MenuOf(w.MenuHandle());
    const int position = w.Selected();
    if (!menu || position < 0)
        return;
    const MenuItem& it = menu->items[static_cast<std::size_t>(position)];
    HMENU sub = it.sub;
    if (!sub || it.IsGrayed())
        return;
    const bool open = static_cast<int>(m_levels.size()) > level + 1 &&
                      m_levels[static_cast<std::size_t>(level) + 1]->MenuHandle() == sub;
    if (!open) {
        CloseAbove(level);
        if (Notify())
            SendMessageA(m_owner, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(sub),
                         MAKELPARAM(static_cast<WORD>(position), FALSE));
        if (m_done || !IsMenu(sub) || !OpenLevel(sub, level, position, 0, 0))
            return;
    }
    if (selectFirst) {
        m_current = level + 1;
        if (m_levels.back()->Selected() < 0)
            Step(0);
    }
}

void MenuTracker::CloseAbove(int level)
{
    while (static_cast<int>(m_levels.size()) > level + 1) {
        std::unique_ptr<PopupMenuWindow> w = std::move(m_levels.back());
        m_levels.pop_back();
        if (w->m_hWnd) {
            w->KillTimer(kShowTimer);
            if (Notify() && IsWindow(m_owner))
                SendMessageA(m_owner, WM_UNINITMENUPOPUP, reinterpret_cast<WPARAM>(w->MenuHandle()), 0);
            if (w->m_hWnd)
                w->ShowWindow(SW_HIDE);
            if (w->m_hWnd)
                w->DestroyWindow();
        }
    }
    m_current = std::min(m_current, std::max(0, level));
}

int MenuTracker::LevelAt(CPoint screen) const
{
    for (int i = static_cast<int>(m_levels.size()) - 1; i >= 0; --i) {
        CRect r;
        m_levels[static_cast<std::size_t>(i)]->GetWindowRect(&r);
        if (r.PtInRect(screen))
            return i;
    }
    return -1;
}

CRect MenuTracker::PlaceTop(CSize size, int x, int y) const
{
    const RECT work = WorkArea();
    int left = x;
    int top = y;
    if (m_flags & TPM_RIGHTALIGN)
        left -= size.cx;
    else if (m_flags & TPM_CENTERALIGN)
        left -= size.cx / 2;
    if (m_flags & TPM_BOTTOMALIGN)
        top -= size.cy;
    else if (m_flags & TPM_VCENTERALIGN)
        top -= size.cy / 2;
    // A menu that does not fit opens on the other side of its point.
    if (left + size.cx > work.right)
        left = x - size.cx;
    if (top + size.cy > work.bottom)
        top = y - size.cy;
    if (m_hasExclude) {
        CRect place(CPoint(left, top), size);
        CRect overlap;
        if (overlap.IntersectRect(&place, &m_exclude)) {
            // It keeps out of the rectangle: beside it, or above or below with TPM_VERTICAL.
            if (m_flags & TPM_VERTICAL)
                top = m_exclude.bottom + size.cy <= work.bottom ? m_exclude.bottom : m_exclude.top - size.cy;
            else
                left = m_exclude.right + size.cx <= work.right ? m_exclude.right : m_exclude.left - size.cx;
        }
    }
    left = std::max<int>(work.left, std::min<int>(left, work.right - size.cx));
    top = std::max<int>(work.top, std::min<int>(top, work.bottom - size.cy));
    return CRect(CPoint(left, top), size);
}

CRect MenuTracker::PlaceSub(CSize size, int level, int position) const
{
    const RECT work = WorkArea();
    const PopupMenuWindow& parent = *m_levels[static_cast<std::size_t>(level)];
    CRect outer;
    parent.GetWindowRect(&outer);
    const CRect item = parent.ItemRect(position);
    // Beside the parent, over its frame, with the first item beside the
    // parent's item; on the left when the right has no room.
    int left = outer.right - kMenuFrame;
    int top = item.top - kMenuFrame;
    if (left + size.cx > work.right)
        left = outer.left - size.cx + kMenuFrame;
    left = std::max<int>(left, work.left);
    if (top + size.cy > work.bottom)
        top = work.bottom - size.cy;
    top = std::max<int>(top, work.top);
    return CRect(CPoint(left, top), size);
}

bool MenuTracker::OpenLevel(HMENU menu, int parentLevel, int position, int x, int y)
{
    const CSize content = LayoutMenu(menu, m_owner);
    if (!IsMenu(menu) || m_done)
        return false;
    const CSize size(content.cx + 2 * kMenuFrame, content.cy + 2 * kMenuFrame);
    const CRect place = parentLevel < 0 ? PlaceTop(size, x, y) : PlaceSub(size, parentLevel, position);
    auto w = std::make_unique<PopupMenuWindow>(*this, menu, parentLevel + 1);
    if (!w->Open(place))
        return false;
    BOOL animate = FALSE;
    SystemParametersInfoA(SPI_GETMENUANIMATION, 0, &animate, 0);
    if (animate && !(m_flags & TPM_NOANIMATION)) {
        // The first picture of an animated menu is printed, frame and all,
        // as the original's animation took it.
        CRect r;
        w->GetWindowRect(&r);
        HDC screen = GetDC(nullptr);
        HDC memory = CreateCompatibleDC(screen);
        HBITMAP picture = CreateCompatibleBitmap(screen, r.Width(), r.Height());
        ReleaseDC(nullptr, screen);
        HGDIOBJ old = SelectObject(memory, picture);
        w->SendMessage(WM_PRINT, reinterpret_cast<WPARAM>(memory),
                       PRF_NONCLIENT | PRF_CLIENT | PRF_ERASEBKGND | PRF_CHILDREN);
        if (w->m_hWnd) {
            HDC window = GetWindowDC(w->m_hWnd);
            BitBlt(window, 0, 0, r.Width(), r.Height(), memory, 0, 0, SRCCOPY);
            ReleaseDC(w->m_hWnd, window);
        }
        SelectObject(memory, old);
        DeleteObject(picture);
        DeleteDC(memory);
    }
    if (!w->m_hWnd)
        return false;
    w->ShowWindow(SW_SHOWNOACTIVATE);
    if (!w->m_hWnd)
        return false;
    m_levels.push_back(std::move(w));
    m_levels.back()->UpdateWindow();
    return !m_levels.empty() && m_levels.back()->m_hWnd;
}

int Mnemonic(const std::string& text)
{
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '&')
            continue;
        if (text[i + 1] == '&') {
            ++i;
            continue;
        }
        return static_cast<unsigned char>(vx::AsciiLower(text[i + 1]));
    }
    return -1;
}

bool MenuMouse(const MSG& msg, CPoint& screen, UINT& mouse)
{
    const bool client = msg.message >= WM_MOUSEMOVE && msg.message <= WM_MBUTTONDBLCLK;
    const bool nonClient = msg.message >= WM_NCMOUSEMOVE && msg.message <= WM_NCMBUTTONDBLCLK;
    if (!client && !nonClient)
        return false;
    screen = CPoint(GET_X_LPARAM(msg.lParam), GET_Y_LPARAM(msg.lParam));
    if (client) {
        if (CWnd* w = CWnd::FromHandle(msg.hwnd))
            w->ClientToScreen(&screen);
    }
    mouse = client ? msg.message : msg.message - WM_NCMOUSEMOVE + WM_MOUSEMOVE;
    return true;
}

void WaitForMenuInput(MenuWait& wait)
{
    MSG msg;
    if (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            // The program is ending: the menu goes, the quit stays for the loop outside.
            PostQuitMessage(static_cast<int>(msg.wParam));
            if (wait.quit)
                wait.quit();
            return;
        }
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
        wait.idleSent = false;
        return;
    }
    QAbstractEventDispatcher* dispatcher =
        qobject_cast<QApplication*>(QCoreApplication::instance()) ? QAbstractEventDispatcher::instance() : nullptr;
    if (dispatcher && dispatcher->processEvents(QEventLoop::AllEvents)) {
        wait.idleSent = false;
        return;
    }
    if (wait.done())
        return;
    if (!wait.idleSent && wait.idle) {
        // Nothing waits: the owner hears that the menu is idle, once.
        wait.idleSent = true;
        wait.idle();
        return;
    }
    if (dispatcher)
        dispatcher->processEvents(QEventLoop::WaitForMoreEvents);
    else
        PumpFor(50, wait.done);
}

} // namespace vx::menus

using vx::menus::MenuTracker;

BOOL TrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND owner, LPTPMPARAMS params)
{
    if (!IsMenu(menu)) {
        SetLastError(ERROR_INVALID_MENU_HANDLE);
        return FALSE;
    }
    if (!vx::IsLocalHandle(owner) || !vx::FindTarget(owner)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    if (MenuTracker::Current() && !(flags & TPM_RECURSE))
        return FALSE;
    MenuTracker tracker(menu, flags, owner, params ? &params->rcExclude : nullptr);
    const UINT id = tracker.Run(x, y);
    if (flags & TPM_RETURNCMD)
        return static_cast<BOOL>(id);
    if (id)
        PostMessageA(owner, WM_COMMAND, id, 0);
    return TRUE;
}

BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*)
{
    return TrackPopupMenuEx(menu, flags, x, y, owner, nullptr);
}

HMENU vx::TrackedMenu(HWND* owner)
{
    MenuTracker* tracker = MenuTracker::Current();
    if (owner)
        *owner = tracker ? tracker->Owner() : nullptr;
    return tracker ? tracker->TopMenu() : nullptr;
}

BOOL EndMenu()
{
    if (MenuTracker* current = MenuTracker::Current())
        current->Cancel();
    return TRUE;
}

BOOL GetMenuItemRect(HWND window, HMENU menu, UINT item, RECT* rect)
{
    // A window's own menu is its menu bar.
    if (CWnd* w = window ? CWnd::FromHandle(window) : nullptr; w && menu && ::GetMenu(window) == menu)
        return vx::menus::MenuBarItemRect(*w, menu, item, rect) ? TRUE : FALSE;
    vx::menus::Menu* m = vx::menus::MenuOf(menu);
    if (!m || !rect || item >= m->items.size() || !m->window)
        return FALSE;
    CWnd* w = CWnd::FromHandle(m->window);
    if (!w)
        return FALSE;
    CRect r(m->items[item].rect);
    w->ClientToScreen(&r);
    *rect = r;
    return TRUE;
}

int MenuItemFromPoint(HWND window, HMENU menu, POINT screen)
{
    if (CWnd* w = window ? CWnd::FromHandle(window) : nullptr; w && menu && ::GetMenu(window) == menu)
        return vx::menus::MenuBarItemAt(*w, screen);
    vx::menus::Menu* m = vx::menus::MenuOf(menu);
    CWnd* w = m && m->window ? CWnd::FromHandle(m->window) : nullptr;
    if (!w)
        return -1;
    CPoint p(screen);
    w->ScreenToClient(&p);
    for (std::size_t i = 0; i < m->items.size(); ++i) {
        if (CRect(m->items[i].rect).PtInRect(p))
            return static_cast<int>(i);
    }
    return -1;
}
