#include "menutest.h"

#include "ui/windows/qtinterop.h"

#include "platform/windows/sysmetrics.h"
#include "platform/windows/windowlong.h"

#include <map>
#include <string>
#include <vector>

using menutest::Once;
using menutest::Owner;

namespace {

// The messages a hook sees, named, for the windows of the class "#32768"
// ("menu:") and for the owner.
std::vector<std::string> g_log;
HWND g_owner = nullptr;
std::vector<HWND> g_menuWindows;
HHOOK g_hook = nullptr;

std::string Name(UINT m)
{
    static const std::map<UINT, std::string> names = {
        {WM_ENTERMENULOOP, "ENTERMENULOOP"}, {WM_INITMENU, "INITMENU"},
        {WM_INITMENUPOPUP, "INITMENUPOPUP"}, {WM_MEASUREITEM, "MEASUREITEM"},
        {WM_NCCREATE, "NCCREATE"}, {WM_NCCALCSIZE, "NCCALCSIZE"},
        {WM_CREATE, "CREATE"}, {MN_SIZEWINDOW, "SIZEWINDOW"},
        {WM_WINDOWPOSCHANGING, "POSCHANGING"}, {WM_WINDOWPOSCHANGED, "POSCHANGED"},
        {WM_SHOWWINDOW, "SHOWWINDOW"}, {WM_NCPAINT, "NCPAINT"},
        {WM_ERASEBKGND, "ERASEBKGND"}, {WM_PRINT, "PRINT"},
        {WM_PRINTCLIENT, "PRINTCLIENT"}, {WM_DRAWITEM, "DRAWITEM"},
        {WM_MENUSELECT, "MENUSELECT"}, {WM_MENUCHAR, "MENUCHAR"},
        {WM_UNINITMENUPOPUP, "UNINITMENUPOPUP"}, {WM_EXITMENULOOP, "EXITMENULOOP"},
        {WM_ENTERIDLE, "ENTERIDLE"}, {WM_DESTROY, "DESTROY"}};
    auto it = names.find(m);
    return it == names.end() ? std::string() : it->second;
}

bool IsMenuWindow(HWND h)
{
    char name[20] = {};
    GetClassNameA(h, name, sizeof name);
    return std::string(name) == "#32768";
}

LRESULT LogHook(int code, WPARAM w, LPARAM l)
{
    const auto* cwp = reinterpret_cast<const CWPSTRUCT*>(l);
    const std::string name = Name(cwp->message);
    if (!name.empty()) {
        if (cwp->hwnd == g_owner && cwp->message != WM_ENTERIDLE) {
            g_log.push_back(name);
        } else if (IsMenuWindow(cwp->hwnd)) {
            g_log.push_back("menu:" + name);
            if (cwp->message == WM_CREATE)
                g_menuWindows.push_back(cwp->hwnd);
        }
    }
    return CallNextHookEx(g_hook, code, w, l);
}

class Logged : public ::testing::Test {
protected:
    void SetUp() override
    {
        g_log.clear();
        g_menuWindows.clear();
        g_owner = owner.m_hWnd;
        g_hook = SetWindowsHookExA(WH_CALLWNDPROC, &LogHook, nullptr, GetCurrentThreadId());
        SystemParametersInfoA(SPI_SETMENUSHOWDELAY, 5, nullptr, 0);
    }
    void TearDown() override
    {
        UnhookWindowsHookEx(g_hook);
        SystemParametersInfoA(SPI_SETMENUSHOWDELAY, 400, nullptr, 0);
    }
    // A popup: Open, a separator, two owner-drawn items, Tools > (Options,
    // Gr&ay disabled), Save.
    void Build()
    {
        sub.CreatePopupMenu();
        sub.AppendMenu(MF_STRING, 31, "&Options");
        sub.AppendMenu(MF_STRING | MF_GRAYED, 32, "Gr&ay");
        menu.CreatePopupMenu();
        menu.AppendMenu(MF_STRING, 10, "&Open\tCtrl+O");
        menu.AppendMenu(MF_SEPARATOR);
        menu.AppendMenu(MF_OWNERDRAW, 11, reinterpret_cast<LPCSTR>(0x1111));
        menu.AppendMenu(MF_OWNERDRAW, 12, reinterpret_cast<LPCSTR>(0x2222));
        menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub.m_hMenu), "&Tools");
        menu.AppendMenu(MF_STRING, 13, "&Save");
    }
    UINT Track(UINT flags = TPM_RETURNCMD, int x = 150, int y = 150)
    {
        return static_cast<UINT>(TrackPopupMenuEx(menu, flags, x, y, owner.m_hWnd, nullptr));
    }

    Owner owner;
    CMenu menu;
    CMenu sub;
};

std::vector<std::string> Without(std::vector<std::string> log, const std::vector<std::string>& drop)
{
    std::vector<std::string> out;
    for (auto& s : log) {
        if (std::find(drop.begin(), drop.end(), s) == drop.end())
            out.push_back(s);
    }
    return out;
}

} // namespace

TEST_F(Logged, OpeningFollowsThePlatformsMessageOrder)
{
    Build();
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_RETURN); }));
    EXPECT_EQ(Track(0), TRUE);
    ASSERT_GE(g_log.size(), 17u);
    const std::vector<std::string> opening(g_log.begin(), g_log.begin() + 17);
    EXPECT_EQ(opening, (std::vector<std::string>{
                           "ENTERMENULOOP", "INITMENU", "INITMENUPOPUP", "MEASUREITEM", "MEASUREITEM",
                           "menu:NCCREATE", "menu:NCCALCSIZE", "menu:CREATE", "menu:SIZEWINDOW",
                           "menu:POSCHANGING", "menu:NCCALCSIZE", "menu:POSCHANGED", "menu:SHOWWINDOW",
                           "menu:NCPAINT", "menu:ERASEBKGND", "DRAWITEM", "DRAWITEM"}));
    // The first key shows the mnemonics (the owner-drawn items are drawn
    // again), then the selection moves.
    EXPECT_EQ(std::count(g_log.begin() + 17, g_log.end(), "MENUSELECT"), 2);
    const std::vector<std::string> closing(g_log.end() - 5, g_log.end());
    EXPECT_EQ(closing, (std::vector<std::string>{"UNINITMENUPOPUP", "menu:SHOWWINDOW", "menu:DESTROY",
                                                 "MENUSELECT", "EXITMENULOOP"}));
    EXPECT_EQ(owner.measured, (std::vector<UINT>{11, 12}));
    // The command is posted: it comes after the menu is gone.
    EXPECT_TRUE(owner.commands.empty());
    vx::PumpMessages();
    EXPECT_EQ(owner.commands, (std::vector<WPARAM>{10}));
    ASSERT_FALSE(owner.selects.empty());
    EXPECT_EQ(owner.selects.front().wParam, MAKEWPARAM(10, MF_HILITE));
    EXPECT_EQ(owner.selects.front().lParam, reinterpret_cast<LPARAM>(menu.m_hMenu));
    EXPECT_EQ(owner.selects.back().wParam, MAKEWPARAM(0, 0xFFFF));
    EXPECT_EQ(owner.selects.back().lParam, 0);
}

TEST_F(Logged, NoNotifyKeepsTheOwnerOutOfAllButDrawing)
{
    Build();
    owner.menuCharAnswer = 0;
    // With TPM_NONOTIFY there is no WM_ENTERIDLE to drive the menu: the keys wait in the queue.
    owner.Key(VK_DOWN);
    owner.Key(VK_DOWN);
    owner.Key(VK_RETURN);
    EXPECT_EQ(Track(TPM_RETURNCMD | TPM_NONOTIFY), 11u);
    EXPECT_EQ(Without(g_log, {"menu:NCCREATE", "menu:NCCALCSIZE", "menu:CREATE", "menu:SIZEWINDOW",
                              "menu:POSCHANGING", "menu:POSCHANGED", "menu:SHOWWINDOW", "menu:NCPAINT",
                              "menu:ERASEBKGND", "menu:DESTROY", "DRAWITEM"}),
              (std::vector<std::string>{"MEASUREITEM", "MEASUREITEM"}));
}

TEST_F(Logged, KeyboardWalksIntoAndOutOfSubMenus)
{
    Build();
    owner.steps.push_back(Once([&] { owner.Key(VK_END); }));     // Save
    owner.steps.push_back(Once([&] { owner.Key(VK_UP); }));      // Tools
    owner.steps.push_back(Once([&] { owner.Key(VK_RIGHT); }));   // opens, Options selected
    owner.steps.push_back(Once([&] {
        EXPECT_EQ(g_menuWindows.size(), 2u);
        owner.Key(VK_DOWN); // Gray: disabled items can be selected
    }));
    owner.steps.push_back(Once([&] { owner.Key(VK_LEFT); }));    // closes, back at Tools
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));    // Save
    owner.steps.push_back(Once([&] { owner.Key(VK_HOME); }));    // Open
    owner.steps.push_back(Once([&] { owner.Key(VK_UP); }));      // wraps to Save
    owner.steps.push_back(Once([&] { owner.Key(VK_RETURN); }));
    EXPECT_EQ(Track(), 13u);
    std::vector<WORD> ids;
    for (const MSG& m : owner.selects)
        ids.push_back(LOWORD(m.wParam));
    // Tools is a sub-menu: its select names its position.
    EXPECT_EQ(ids, (std::vector<WORD>{13, 4, 31, 32, 13, 10, 13, 0}));
    EXPECT_EQ(HIWORD(owner.selects[1].wParam) & MF_POPUP, MF_POPUP);
    EXPECT_EQ(HIWORD(owner.selects[3].wParam) & MF_GRAYED, MF_GRAYED);
    int uninit = 0;
    for (auto& s : g_log)
        uninit += s == "UNINITMENUPOPUP";
    EXPECT_EQ(uninit, 2);
}

TEST_F(Logged, EscapeClosesOneLevelThenTheMenu)
{
    Build();
    owner.steps.push_back(Once([&] { owner.Key(VK_UP); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_UP); })); // Tools
    owner.steps.push_back(Once([&] { owner.Key(VK_RETURN); })); // opens the sub-menu
    owner.steps.push_back(Once([&] { owner.Key(VK_ESCAPE); }));
    owner.steps.push_back(Once([&] {
        EXPECT_EQ(owner.Count(WM_UNINITMENUPOPUP), 1);
        owner.Key(VK_ESCAPE);
    }));
    EXPECT_EQ(Track(), 0u);
    EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 1);
}

TEST_F(Logged, MnemonicsChooseAndOwnerDrawnItemsAskTheOwner)
{
    Build();
    owner.steps.push_back(Once([&] { owner.Char('S'); }));
    EXPECT_EQ(Track(), 13u) << "the letter after & in any case";

    owner.steps.push_back(Once([&] { owner.Char('t'); })); // opens Tools
    owner.steps.push_back(Once([&] { owner.Char('o'); }));
    EXPECT_EQ(Track(), 31u);

    // No item has the letter: WM_MENUCHAR decides.
    owner.menuCharAnswer = MAKELRESULT(3, MNC_EXECUTE);
    owner.steps.push_back(Once([&] { owner.Char('x'); }));
    EXPECT_EQ(Track(), 12u);
    ASSERT_GE(owner.Count(WM_MENUCHAR), 1);
    owner.menuCharAnswer = MAKELRESULT(0, MNC_CLOSE);
    owner.steps.push_back(Once([&] { owner.Char('x'); }));
    EXPECT_EQ(Track(), 0u);
    // A disabled item chosen by its letter ends the menu without a command.
    owner.steps.push_back(Once([&] { owner.Char('t'); }));
    owner.steps.push_back(Once([&] { owner.Char('a'); }));
    EXPECT_EQ(Track(), 0u);
}

TEST_F(Logged, MouseHoverOpensSubMenusAndAReleaseChooses)
{
    Build();
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_MOUSEMOVE, owner.ItemRect(menu, 4).CenterPoint()); }));
    // The sub-menu opens after the delay.
    owner.steps.push_back([&] { return g_menuWindows.size() == 2; });
    owner.steps.push_back(Once([&] {
        EXPECT_EQ(MenuItemFromPoint(owner.m_hWnd, sub, owner.ItemRect(sub, 0).CenterPoint()), 0);
        owner.MouseAt(WM_MOUSEMOVE, owner.ItemRect(sub, 0).CenterPoint());
    }));
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_LBUTTONUP, owner.ItemRect(sub, 0).CenterPoint()); }));
    EXPECT_EQ(Track(), 31u);
    EXPECT_NE(HIWORD(owner.selects.front().wParam) & MF_MOUSESELECT, 0u);
}

TEST_F(Logged, ClickingASubMenuItemOpensAtOnceAndDisabledItemsIgnoreTheRelease)
{
    Build();
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_LBUTTONDOWN, owner.ItemRect(menu, 4).CenterPoint()); }));
    owner.steps.push_back(Once([&] {
        EXPECT_EQ(g_menuWindows.size(), 2u) << "no delay for a click";
        owner.MouseAt(WM_MOUSEMOVE, owner.ItemRect(sub, 1).CenterPoint());
    }));
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_LBUTTONUP, owner.ItemRect(sub, 1).CenterPoint()); }));
    owner.steps.push_back(Once([&] {
        EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 0) << "the disabled item did nothing";
        owner.MouseAt(WM_LBUTTONDOWN, CPoint(480, 380)); // outside every level
    }));
    EXPECT_EQ(Track(), 0u);
    EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 1);
}

TEST_F(Logged, CancelModeAndEndMenuEndTheLoop)
{
    Build();
    owner.steps.push_back(Once([&] { owner.PostMessage(WM_CANCELMODE); }));
    EXPECT_EQ(Track(), 0u);
    owner.steps.push_back(Once([&] { EndMenu(); }));
    EXPECT_EQ(Track(), 0u);
    EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 2);
    // While one menu is tracked another needs TPM_RECURSE.
    UINT nested = 99;
    owner.steps.push_back(Once([&] {
        nested = static_cast<UINT>(TrackPopupMenuEx(sub, TPM_RETURNCMD, 0, 0, owner.m_hWnd, nullptr));
    }));
    Track();
    EXPECT_EQ(nested, 0u);
}

TEST_F(Logged, MenusThatDoNotFitOpenOnTheOtherSide)
{
    Build();
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    CRect top, inner;
    owner.steps.push_back(Once([&] { owner.Key(VK_UP); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_UP); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_RIGHT); }));
    owner.steps.push_back(Once([&] {
        ASSERT_EQ(g_menuWindows.size(), 2u);
        GetWindowRect(g_menuWindows[0], &top);
        GetWindowRect(g_menuWindows[1], &inner);
        owner.Key(VK_ESCAPE);
        owner.Key(VK_ESCAPE);
    }));
    Track(TPM_RETURNCMD, work.right - 5, work.bottom - 5);
    EXPECT_EQ(top.right, work.right - 5) << "to the left of the point";
    EXPECT_EQ(top.bottom, work.bottom - 5) << "above the point";
    EXPECT_EQ(inner.right, top.left + 3) << "the sub-menu to the left of its parent";
    EXPECT_LE(inner.bottom, work.bottom);

    // A right-aligned menu at a point with room opens to the left of it.
    g_menuWindows.clear();
    owner.steps.push_back(Once([&] {
        GetWindowRect(g_menuWindows[0], &top);
        EndMenu();
    }));
    Track(TPM_RETURNCMD | TPM_RIGHTALIGN | TPM_BOTTOMALIGN, 400, 300);
    EXPECT_EQ(top.BottomRight(), CPoint(400, 300));
}

TEST_F(Logged, FiltersSeeTheLoopsInputInScreenCoordinatesAndMayTakeIt)
{
    Build();
    static std::vector<MSG> seen;
    static HHOOK filter;
    seen.clear();
    filter = SetWindowsHookExA(
        WH_MSGFILTER,
        [](int code, WPARAM w, LPARAM l) -> LRESULT {
            const MSG* m = reinterpret_cast<const MSG*>(l);
            if (code == MSGF_MENU)
                seen.push_back(*m);
            // A menu bar takes Right to move to its next menu.
            if (code == MSGF_MENU && m->message == WM_KEYDOWN && m->wParam == VK_RIGHT) {
                EndMenu();
                return 1;
            }
            return CallNextHookEx(filter, code, w, l);
        },
        nullptr, GetCurrentThreadId());
    CPoint at;
    owner.steps.push_back(Once([&] {
        at = owner.ItemRect(menu, 0).CenterPoint();
        owner.MouseAt(WM_MOUSEMOVE, at);
    }));
    owner.steps.push_back(Once([&] { owner.Key(VK_RIGHT); }));
    EXPECT_EQ(Track(), 0u);
    UnhookWindowsHookEx(filter);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].message, static_cast<UINT>(WM_MOUSEMOVE));
    EXPECT_EQ(CPoint(seen[0].pt), at);
    EXPECT_EQ(seen[1].wParam, static_cast<WPARAM>(VK_RIGHT));
}

TEST_F(Logged, HooksSeeMenuWindowsAndCanSubclassThem)
{
    Build();
    static WNDPROC old;
    static int nccalc;
    nccalc = 0;
    owner.steps.push_back(Once([&] {
        ASSERT_EQ(g_menuWindows.size(), 1u);
        HWND w = g_menuWindows[0];
        EXPECT_EQ(reinterpret_cast<HMENU>(SendMessageA(w, MN_GETHMENU, 0, 0)), menu.m_hMenu);
        old = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(w, GWLP_WNDPROC));
        SetWindowLongPtrA(w, GWLP_WNDPROC,
                          reinterpret_cast<LONG_PTR>(+[](HWND h, UINT m, WPARAM wp, LPARAM lp) -> LRESULT {
                              if (m == WM_NCCALCSIZE)
                                  ++nccalc;
                              return CallWindowProcA(old, h, m, wp, lp);
                          }));
        SetWindowPos(w, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
        EndMenu();
    }));
    Track();
    EXPECT_EQ(nccalc, 1);
}

TEST(MenuLook, ClassicPopupDrawsFrameSelectionChecksAndGrayedText)
{
    Owner owner;
    CMenu menu;
    menu.CreatePopupMenu();
    menu.AppendMenu(MF_STRING | MF_CHECKED, 1, "&Checked");
    menu.AppendMenu(MF_SEPARATOR);
    menu.AppendMenu(MF_STRING | MF_GRAYED, 2, "Grayed");
    menu.AppendMenu(MF_STRING, 3, "Plain\tCtrl+P");
    QImage shot;
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));
    owner.steps.push_back(Once([&] {
        CWnd* popup = CWnd::WindowFromPoint(owner.ItemRect(menu, 0).CenterPoint());
        ASSERT_NE(popup, nullptr);
        shot = vx::RenderWindow(*popup);
        EndMenu();
    }));
    TrackPopupMenuEx(menu, TPM_RETURNCMD, 200, 200, owner.m_hWnd, nullptr);
    ASSERT_FALSE(shot.isNull());
    // A raised frame of three pixels, then the menu's colour.
    EXPECT_PIXEL(shot, 10, 0, GetSysColor(COLOR_3DLIGHT));
    EXPECT_PIXEL(shot, 10, 1, GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_PIXEL(shot, 10, 2, GetSysColor(COLOR_MENU));
    EXPECT_PIXEL(shot, 10, shot.height() - 1, GetSysColor(COLOR_3DDKSHADOW));
    EXPECT_PIXEL(shot, 10, shot.height() - 2, GetSysColor(COLOR_BTNSHADOW));
    // The first item is selected and checked: highlight with a mark in the text colour.
    const CRect first(3, 3, shot.width() - 3, 3 + 17);
    EXPECT_GT(vxtest::CountColor(shot, first, GetSysColor(COLOR_HIGHLIGHT)), 200);
    EXPECT_GT(vxtest::CountColor(shot, CRect(3, 3, 20, 20), GetSysColor(COLOR_HIGHLIGHTTEXT)), 5);
    // Grayed text is embossed: highlight under the gray.
    const CRect grayed(3, 29, shot.width() - 3, 46);
    EXPECT_GT(vxtest::CountColor(shot, grayed, GetSysColor(COLOR_GRAYTEXT)), 10);
    EXPECT_GT(vxtest::CountColor(shot, grayed, GetSysColor(COLOR_BTNHIGHLIGHT)), 10);
    // The separator is an etched line: shadow over highlight.
    EXPECT_PIXEL(shot, 20, 23, GetSysColor(COLOR_BTNSHADOW));
    EXPECT_PIXEL(shot, 20, 24, GetSysColor(COLOR_BTNHIGHLIGHT));
}

TEST(MenuLook, KeyboardCuesShowOnceAKeyIsPressed)
{
    Owner owner;
    CMenu menu;
    menu.CreatePopupMenu();
    menu.AppendMenu(MF_OWNERDRAW, 1, nullptr);
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));
    TrackPopupMenuEx(menu, TPM_RETURNCMD, 200, 200, owner.m_hWnd, nullptr);
    ASSERT_GE(owner.drawStates.size(), 2u);
    EXPECT_NE(owner.drawStates.front() & ODS_NOACCEL, 0u) << "opened by the mouse";
    EXPECT_EQ(owner.drawStates.back() & ODS_NOACCEL, 0u);
    EXPECT_NE(owner.drawStates.back() & ODS_SELECTED, 0u);
}
