// The modal loop of a window's menu bar. The keyboard enters it with Alt or
// F10 (SC_KEYMENU: the first item rests selected) or Alt and a mnemonic (its
// popup opens), the mouse with a click on an item (SC_MOUSEMENU). While an
// item's popup is open the popup's tracker runs and hands the bar what
// belongs to it: the arrows past the popup's ends move to the neighbouring
// item, the mouse on another item opens that one, a click on the open item
// closes it. The window hears WM_ENTERMENULOOP and WM_INITMENU once, each
// popup's WM_INITMENUPOPUP, WM_MENUSELECT for every selection and at the
// end, WM_EXITMENULOOP, and then the chosen command (WM_COMMAND, or
// WM_SYSCOMMAND to the window whose system menu it came from).

#include "ui/menus/menubar_p.h"
#include "ui/menus/menumodel_p.h"
#include "ui/menus/menutracker_p.h"

#include "ui/gdi/wingdi.h"

#include "platform/framework/util_p.h"
#include "platform/windows/hooks.h"
#include "platform/windows/messagebox.h"
#include "platform/windows/messagepump.h"

#include <cstdint>

namespace vx::menus {
namespace {

bool g_running = false;

bool Usable(const MenuItem& it)
{
    return !it.IsSeparator();
}

// The item whose mnemonic is `ch`; owner-drawn items are the window's to
// know (WM_MENUCHAR). -1 for none; -2 when the window said to leave.
int ItemOfKey(CWnd& window, HMENU handle, UINT ch)
{
    Menu* menu = MenuOf(handle);
    if (!menu)
        return -1;
    const int key = static_cast<unsigned char>(vx::AsciiLower(static_cast<char>(ch & 0xFF)));
    for (std::size_t i = 0; i < menu->items.size(); ++i) {
        const MenuItem& it = menu->items[i];
        if (!it.IsOwnerDrawn() && Usable(it) && Mnemonic(it.text) == key)
            return static_cast<int>(i);
    }
    const LRESULT answer = window.SendMessage(WM_MENUCHAR, MAKEWPARAM(static_cast<WORD>(ch), 0),
                                              reinterpret_cast<LPARAM>(handle));
    menu = MenuOf(handle);
    const int position = LOWORD(static_cast<DWORD_PTR>(answer));
    switch (HIWORD(static_cast<DWORD_PTR>(answer))) {
    case MNC_EXECUTE:
    case MNC_SELECT:
        return menu && position < static_cast<int>(menu->items.size()) ? position : -1;
    case MNC_CLOSE:
        return -2;
    default:
        return -1;
    }
}

class MenuBarLoop final : public MenuBarLink {
public:
    MenuBarLoop(CWnd& window, HMENU menu) : m_window(window), m_hwnd(window.m_hWnd), m_menu(menu) {}

    // Runs the loop from `position`: its popup open (`open`), or resting on
    // it. `keyboard`: the keyboard entered, so mnemonics show.
    void Run(int position, bool open, bool keyboard, int pressed);

    void BarKey(UINT key) override { m_key = key; }
    bool BarMouse(UINT message, CPoint screen) override;

private:
    enum class Next { End, Open, Rest, Waiting };

    bool Alive() const { return IsWindow(m_hwnd) && ::GetMenu(m_hwnd) == m_menu && MenuOf(m_menu); }
    const MenuItem* Item(int position) const;
    void Select(int position, bool open);
    // The next usable item from the current one, wrapping.
    int Step(int step) const;
    void OpenPopup();
    bool OnRestInput(const MSG& msg);
    void Wait();
    void Choose(const MenuItem& item);

    CWnd& m_window;
    HWND m_hwnd;
    HMENU m_menu;
    int m_position = -1;
    int m_pressed = -1; // a command item the mouse went down on
    Next m_next = Next::End;
    UINT m_key = 0;
    int m_mouseNext = -1;
    MenuTracker* m_tracker = nullptr;
    bool m_cues = false;
    MenuWait m_wait;
    UINT m_command = 0;
    HWND m_commandTarget = nullptr;
};

const MenuItem* MenuBarLoop::Item(int position) const
{
    Menu* menu = MenuOf(m_menu);
    if (!menu || position < 0 || position >= static_cast<int>(menu->items.size()))
        return nullptr;
    return &menu->items[static_cast<std::size_t>(position)];
}

void MenuBarLoop::Select(int position, bool open)
{
    m_position = position;
    SetMenuBarSelection(m_window, position, open);
    const MenuItem* it = Item(position);
    if (!it || !IsWindow(m_hwnd))
        return;
    UINT flags = (it->type & (MF_BITMAP | MF_OWNERDRAW)) | (it->state & (MF_GRAYED | MF_DISABLED)) | MF_HILITE;
    if (it->sub)
        flags |= MF_POPUP;
    if (!m_cues)
        flags |= MF_MOUSESELECT;
    m_window.SendMessage(WM_MENUSELECT,
                         MAKEWPARAM(static_cast<WORD>(it->sub ? static_cast<UINT>(position) : it->id),
                                    static_cast<WORD>(flags)),
                         reinterpret_cast<LPARAM>(m_menu));
}

int MenuBarLoop::Step(int step) const
{
    Menu* menu = MenuOf(m_menu);
    if (!menu || menu->items.empty())
        return -1;
    const int n = static_cast<int>(menu->items.size());
    for (int k = 1; k <= n; ++k) {
        const int i = ((m_position + step * k) % n + n) % n;
        if (Usable(menu->items[static_cast<std::size_t>(i)]))
            return i;
    }
    return -1;
}

void MenuBarLoop::Choose(const MenuItem& item)
{
    m_command = item.id;
    m_commandTarget = nullptr;
    m_next = Next::End;
}

void MenuBarLoop::OpenPopup()
{
    const MenuItem* it = Item(m_position);
    if (!it) {
        m_next = Next::End;
        return;
    }
    if (!it->sub || it->IsGrayed()) {
        // A command on the bar itself, or nothing to open: the keyboard rests on it.
        m_next = Next::Rest;
        return;
    }
    const HMENU sub = it->sub;
    // The system menu of a maximised MDI child speaks to that child.
    const HWND owner = m_hwnd;
    const HWND system = (it->type & MFT_BITMAP) && it->bitmap == kBarSystem && IsWindow(reinterpret_cast<HWND>(it->data))
                            ? reinterpret_cast<HWND>(it->data)
                            : nullptr;
    Select(m_position, true);
    RECT r{};
    if (!Alive() || !MenuBarItemRect(m_window, m_menu, static_cast<UINT>(m_position), &r)) {
        m_next = Next::End;
        return;
    }
    m_key = 0;
    m_mouseNext = -1;
    m_next = Next::End;
    MenuTracker tracker(sub, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_LEFTBUTTON, owner, &r);
    tracker.LinkBar(this, m_position, m_cues);
    m_tracker = &tracker;
    const UINT command = tracker.Run(r.left, r.bottom);
    m_tracker = nullptr;
    if (command) {
        m_command = command;
        m_commandTarget = system;
        m_next = Next::End;
        return;
    }
    if (m_mouseNext >= 0) {
        m_position = m_mouseNext;
        m_next = Next::Open;
        return;
    }
    switch (m_key) {
    case VK_LEFT:
    case VK_RIGHT: {
        const int next = Step(m_key == VK_LEFT ? -1 : 1);
        if (next >= 0) {
            m_position = next;
            m_next = Next::Open;
        }
        break;
    }
    case VK_ESCAPE:
        // Esc closes the popup; the keyboard stays on its item.
        m_cues = true;
        m_next = Next::Rest;
        break;
    default:
        break;
    }
}

bool MenuBarLoop::BarMouse(UINT message, CPoint screen)
{
    const int item = MenuBarItemAt(m_window, screen);
    const MenuItem* it = Item(item);
    if (!it || !Usable(*it))
        return false;
    switch (message) {
    case WM_MOUSEMOVE:
        if (item != m_position && m_tracker) {
            m_mouseNext = item;
            m_tracker->Cancel();
        }
        return true;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        if (m_tracker) {
            // A click on the open item closes it, and the bar with it.
            if (item != m_position)
                m_mouseNext = item;
            m_tracker->Cancel();
        }
        return true;
    default:
        return true;
    }
}

bool MenuBarLoop::OnRestInput(const MSG& in)
{
    MSG msg = in;
    CPoint screen;
    UINT mouse = 0;
    if (MenuMouse(msg, screen, mouse)) {
        msg.pt = screen;
        if (CallMsgFilterA(&msg, MSGF_MENU))
            return true;
        const int item = MenuBarItemAt(m_window, screen);
        const MenuItem* it = Item(item);
        const bool onItem = it && Usable(*it);
        switch (mouse) {
        case WM_MOUSEMOVE:
            if (onItem && item != m_position && m_pressed < 0)
                Select(item, false);
            return true;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            if (!onItem) {
                // A click elsewhere leaves the bar and goes where it was meant.
                m_next = Next::End;
                return false;
            }
            if (it->sub) {
                m_position = item;
                m_next = Next::Open;
            } else if (!it->IsGrayed()) {
                m_pressed = item;
                Select(item, true);
            }
            return true;
        case WM_LBUTTONUP:
            if (m_pressed >= 0) {
                const MenuItem* pressed = Item(m_pressed);
                if (item == m_pressed && pressed)
                    Choose(*pressed);
                else
                    m_next = Next::End;
                m_pressed = -1;
            }
            return true;
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
            m_next = Next::End;
            return onItem;
        default:
            return true;
        }
    }
    if (CallMsgFilterA(&msg, MSGF_MENU))
        return true;
    switch (msg.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
        if (!m_cues) {
            m_cues = true;
            SetMenuBarCues(m_window, true);
        }
        const MenuItem* it = Item(m_position);
        switch (msg.wParam) {
        case VK_LEFT:
        case VK_RIGHT: {
            const int next = Step(msg.wParam == VK_LEFT ? -1 : 1);
            if (next >= 0)
                Select(next, false);
            break;
        }
        case VK_UP:
        case VK_DOWN:
            if (it && it->sub)
                m_next = Next::Open;
            break;
        case VK_RETURN:
            if (it && it->sub)
                m_next = Next::Open;
            else if (it && !it->IsGrayed())
                Choose(*it);
            break;
        case VK_ESCAPE:
        case VK_MENU:
        case VK_F10:
            m_next = Next::End;
            break;
        default:
            break;
        }
        return true;
    }
    case WM_KEYUP:
    case WM_SYSKEYUP:
        return true;
    case WM_CHAR:
    case WM_SYSCHAR: {
        if (msg.wParam < ' ')
            return true;
        const int item = ItemOfKey(m_window, m_menu, static_cast<UINT>(msg.wParam));
        if (item == -2) {
            m_next = Next::End;
        } else if (const MenuItem* it = Item(item)) {
            if (it->sub) {
                m_position = item;
                m_next = Next::Open;
            } else if (!it->IsGrayed()) {
                Choose(*it);
            }
        }
        return true;
    }
    default:
        return false;
    }
}

void MenuBarLoop::Wait()
{
    if (!m_wait.done) {
        m_wait.done = [this] { return m_next != Next::Waiting; };
        m_wait.quit = [this] { m_next = Next::End; };
        m_wait.idle = [this] { m_window.SendMessage(WM_ENTERIDLE, MSGF_MENU, 0); };
    }
    WaitForMenuInput(m_wait);
}

void MenuBarLoop::Run(int position, bool open, bool keyboard, int pressed)
{
    m_cues = keyboard;
    m_window.SendMessage(WM_ENTERMENULOOP, FALSE, 0);
    m_window.SendMessage(WM_INITMENU, reinterpret_cast<WPARAM>(m_menu), 0);
    if (keyboard)
        SetMenuBarCues(m_window, true);
    m_position = position;
    m_pressed = pressed;
    m_next = pressed >= 0 ? Next::Rest : open ? Next::Open : Next::Rest;
    while (m_next != Next::End && Alive()) {
        if (m_next == Next::Open) {
            OpenPopup();
            continue;
        }
        Select(m_position, m_pressed >= 0);
        m_next = Next::Waiting;
        InputFilter previous = SetInputFilter([this](const MSG& msg) { return OnRestInput(msg); });
        while (m_next == Next::Waiting && Alive())
            Wait();
        SetInputFilter(std::move(previous));
        if (m_next == Next::Waiting)
            m_next = Next::End;
    }
    if (!IsWindow(m_hwnd))
        return;
    SetMenuBarSelection(m_window, -1, false);
    SetMenuBarCues(m_window, false);
    m_window.SendMessage(WM_MENUSELECT, MAKEWPARAM(0, 0xFFFF), 0);
    if (!IsWindow(m_hwnd))
        return;
    m_window.SendMessage(WM_EXITMENULOOP, FALSE, 0);
    if (!m_command || !IsWindow(m_hwnd))
        return;
    // Commands of a system menu go to its window as WM_SYSCOMMAND.
    if (m_command >= SC_SIZE) {
        HWND target = m_commandTarget ? m_commandTarget : m_hwnd;
        if (!m_commandTarget) {
            // A button of a maximised child's on the bar names the child in its data.
            Menu* menu = MenuOf(m_menu);
            for (const MenuItem& it : menu ? menu->items : std::vector<MenuItem>{}) {
                if (it.id == m_command && (it.type & MFT_BITMAP) && IsWindow(reinterpret_cast<HWND>(it.data)))
                    target = reinterpret_cast<HWND>(it.data);
            }
        }
        PostMessageA(target, WM_SYSCOMMAND, m_command, 0);
    } else {
        PostMessageA(m_hwnd, WM_COMMAND, m_command, 0);
    }
}

} // namespace

void TrackMenuBar(CWnd& window, WPARAM command, LPARAM lParam)
{
    const HMENU menu = ::GetMenu(window.m_hWnd);
    Menu* m = MenuOf(menu);
    if (!m || g_running || MenuTracker::Current())
        return;
    int position = -1;
    bool open = false;
    bool keyboard = true;
    int pressed = -1;
    if (command == SC_MOUSEMENU) {
        position = MenuBarItemAt(window, CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        const MenuItem* it = position >= 0 ? &m->items[static_cast<std::size_t>(position)] : nullptr;
        if (!it || !Usable(*it))
            return;
        keyboard = false;
        open = it->sub != nullptr;
        if (!open) {
            if (it->IsGrayed())
                return;
            pressed = position;
        }
    } else if (lParam) {
        // Alt with a letter opens that item; no such item leaves the bar be.
        position = ItemOfKey(window, menu, static_cast<UINT>(lParam));
        m = MenuOf(menu);
        if (position < 0 || !m || position >= static_cast<int>(m->items.size())) {
            MessageBeep(0);
            return;
        }
        open = true;
    } else {
        for (std::size_t i = 0; i < m->items.size() && position < 0; ++i) {
            if (Usable(m->items[i]))
                position = static_cast<int>(i);
        }
        if (position < 0)
            return;
    }
    struct Running {
        Running() { g_running = true; }
        ~Running() { g_running = false; }
    } running;
    MenuBarLoop loop(window, menu);
    loop.Run(position, open, keyboard, pressed);
}

} // namespace vx::menus
