// Internal; do not include directly.
//
// The modal loop of a popup menu: TrackPopupMenuEx opens the top level,
// then the tracker takes the thread's input (vx::SetInputFilter) until the
// user chooses, cancels or the menu is ended, while posted messages, timers
// and the other pump sources keep being served.
#pragma once

#include "ui/menus/popupmenuwindow_p.h"

#include <functional>
#include <memory>
#include <vector>

namespace vx::menus {

// The mnemonic of a menu text: the character after a single "&", lower case; -1 for none.
int Mnemonic(const std::string& text);

// A mouse message of a menu loop's input: its point on the screen and its
// client form (a WM_NC... message as its WM_... twin). False for other input.
bool MenuMouse(const MSG& msg, CPoint& screen, UINT& mouse);

// What a menu's modal loop waits with: `done` ends the wait; `idle` (may be
// empty) is told once when nothing is left to serve; `quit` when the program
// is ending (the WM_QUIT is put back for the loop outside).
struct MenuWait {
    std::function<bool()> done;
    std::function<void()> idle;
    std::function<void()> quit;
    bool idleSent = false;
};
// One step of the loop: serves one message or Qt event, or tells of
// idleness, or sleeps until there is something to serve.
void WaitForMenuInput(MenuWait& wait);

// A popup opened from a window's menu bar hands back what belongs to the
// bar: the arrows past its ends, Esc at its first level, Alt, and the mouse
// on the bar (menubarloop.cpp).
class MenuBarLink {
public:
    virtual ~MenuBarLink() = default;
    // A key the popup leaves to the bar (VK_LEFT, VK_RIGHT, VK_ESCAPE,
    // VK_MENU); the popup then ends.
    virtual void BarKey(UINT key) = 0;
    // The mouse away from the popups; true when the bar took it (ending the
    // popup itself if the bar moves on).
    virtual bool BarMouse(UINT message, CPoint screen) = 0;
};

class MenuTracker {
public:
    MenuTracker(HMENU menu, UINT flags, HWND owner, const RECT* exclude);
    ~MenuTracker();
    MenuTracker(const MenuTracker&) = delete;
    MenuTracker& operator=(const MenuTracker&) = delete;

    // Opens the menu at a screen point and tracks it; the chosen command or 0.
    UINT Run(int x, int y);
    // Ends the loop without a command.
    void Cancel();
    // Makes the menu the popup of item `position` of a menu bar: the bar's
    // loop sends the notifications of the whole session.
    void LinkBar(MenuBarLink* bar, int position, bool cues);

    HWND Owner() const { return m_owner; }
    HMENU TopMenu() const { return m_menu; }
    UINT Flags() const { return m_flags; }
    // Whether underlines of mnemonics show (ODS_NOACCEL otherwise).
    bool ShowCues() const { return m_cues; }
    // A level's timer came: its hovered sub-menu opens.
    void OnShowTimer(int level);
    // The tracker of the innermost loop, or null.
    static MenuTracker* Current();

private:
    bool OnInput(const MSG& msg);
    void OnKey(UINT key);
    void OnChar(UINT ch);
    void OnMouse(UINT message, CPoint screen);
    // Opens the sub-menu of the selected item of `level`.
    void OpenSubmenu(int level, bool selectFirst);
    // Closes the levels above `level`.
    void CloseAbove(int level);
    void Select(int level, int position, bool byMouse);
    // Moves the selection of the current level by `step` (1, -1), or to the
    // first (`step` 0, from the top) or last selectable item.
    void Step(int step, bool fromEnd = false);
    // Runs the item: a command ends the loop, a sub-menu opens.
    void Execute(int level, int position);
    CRect PlaceTop(CSize size, int x, int y) const;
    CRect PlaceSub(CSize size, int level, int position) const;
    bool OpenLevel(HMENU menu, int parentLevel, int position, int x, int y);
    int LevelAt(CPoint screen) const;
    bool Notify() const { return !(m_flags & TPM_NONOTIFY); }
    void Wait();

    HMENU m_menu;
    UINT m_flags;
    HWND m_owner;
    RECT m_exclude{};
    bool m_hasExclude = false;
    std::vector<std::unique_ptr<PopupMenuWindow>> m_levels;
    int m_current = 0; // the level the keyboard acts on
    bool m_done = false;
    UINT m_command = 0;
    bool m_cues = false;
    bool m_buttonDown = false;
    bool m_moved = false;
    MenuWait m_wait;
    CPoint m_lastMouse{-32768, -32768};
    MenuTracker* m_outer = nullptr;
    MenuBarLink* m_bar = nullptr;
    int m_barPosition = 0;
};

} // namespace vx::menus
