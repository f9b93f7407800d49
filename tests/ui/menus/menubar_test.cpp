// A window's own menu bar: the strip above its client area, its layout and
// hit testing, painting, and its modal loop entered by keyboard and mouse.
#include "menutest.h"

#include "ui/menus/winmenu.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <string>
#include <vector>

using menutest::Once;

namespace {

constexpr ULONG_PTR kDrawn = 0x77;

class BarOwner : public menutest::Owner {
public:
    std::vector<std::pair<UINT, LPARAM>> loop; // ENTER/EXITMENULOOP, INITMENU(POPUP) with their lParam or wParam
    std::vector<WPARAM> sysCommands;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message) {
        case WM_ENTERMENULOOP:
        case WM_EXITMENULOOP:
            loop.emplace_back(message, static_cast<LPARAM>(wParam));
            break;
        case WM_INITMENU:
            loop.emplace_back(message, static_cast<LPARAM>(wParam));
            break;
        case WM_INITMENUPOPUP:
            loop.emplace_back(message, LOWORD(static_cast<DWORD_PTR>(lParam)));
            break;
        case WM_SYSCOMMAND:
            if (wParam != SC_KEYMENU && wParam != SC_MOUSEMENU) {
                sysCommands.push_back(wParam);
                return 0;
            }
            break;
        default:
            break;
        }
        return Owner::WindowProc(message, wParam, lParam);
    }
};

class MenuBar : public ::testing::Test {
protected:
    void SetUp() override
    {
        SystemParametersInfoA(SPI_SETMENUSHOWDELAY, 5, nullptr, 0);
        file.CreatePopupMenu();
        file.AppendMenu(MF_STRING, 101, "&New");
        file.AppendMenu(MF_STRING, 102, "&Open");
        drawn.CreatePopupMenu();
        drawn.AppendMenu(MF_STRING, 201, "&Cut");
        help.CreatePopupMenu();
        help.AppendMenu(MF_STRING, 301, "&About");
        bar.CreateMenu();
        bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(file.m_hMenu), "&File");
        bar.AppendMenu(MF_POPUP | MF_OWNERDRAW, reinterpret_cast<UINT_PTR>(drawn.m_hMenu),
                       reinterpret_cast<LPCSTR>(kDrawn));
        bar.AppendMenu(MF_POPUP | MF_HELP, reinterpret_cast<UINT_PTR>(help.m_hMenu), "&Help");
        ASSERT_TRUE(::SetMenu(owner.m_hWnd, bar.m_hMenu));
    }
    void TearDown() override { SystemParametersInfoA(SPI_SETMENUSHOWDELAY, 400, nullptr, 0); }

    CRect Item(int position)
    {
        RECT r{};
        EXPECT_TRUE(GetMenuItemRect(owner.m_hWnd, bar.m_hMenu, static_cast<UINT>(position), &r));
        return CRect(r);
    }
    // Input as the desktop delivers it.
    void Send(UINT message, WPARAM wParam, LPARAM lParam = 0) { vx::DispatchInputMessage(owner, message, wParam, lParam); }
    void NcMouse(UINT message, CPoint screen)
    {
        Send(message, HTMENU, MAKELPARAM(static_cast<WORD>(screen.x), static_cast<WORD>(screen.y)));
    }
    std::vector<int> Opened() const
    {
        std::vector<int> out;
        for (auto& [m, l] : owner.loop) {
            if (m == WM_INITMENUPOPUP)
                out.push_back(static_cast<int>(l));
        }
        return out;
    }
    // The bar position each WM_MENUSELECT of the bar named (-1 for the end).
    std::vector<int> BarSelections() const
    {
        std::vector<int> out;
        for (const MSG& m : owner.selects) {
            if (HIWORD(m.wParam) == 0xFFFF && !m.lParam)
                out.push_back(-1);
            else if (m.lParam == reinterpret_cast<LPARAM>(bar.m_hMenu))
                out.push_back(LOWORD(m.wParam));
        }
        return out;
    }

    BarOwner owner;
    CMenu bar, file, drawn, help;
};

TEST_F(MenuBar, TheStripLiesAboveTheClientAreaAndWrapsWhenNarrow)
{
    CRect window, client;
    owner.GetWindowRect(&window);
    owner.GetClientRect(&client);
    owner.ClientToScreen(&client);
    // One row as high as the owner-drawn item (20) and the line under it.
    EXPECT_EQ(client.top - window.top, 21);
    EXPECT_EQ(client.Height(), window.Height() - 21);
    EXPECT_NE(std::find(owner.measured.begin(), owner.measured.end(),
                        static_cast<UINT>(reinterpret_cast<std::uintptr_t>(drawn.m_hMenu))),
              owner.measured.end());

    const CRect a = Item(0), b = Item(1), c = Item(2);
    EXPECT_EQ(a.left, window.left);
    EXPECT_EQ(a.top, window.top);
    EXPECT_EQ(b.left, a.right);
    EXPECT_EQ(b.Width(), 60 + 12); // as the owner measured it, with the bar's spacing
    EXPECT_EQ(c.right, window.right); // MF_HELP: at the right end
    EXPECT_EQ(MenuItemFromPoint(owner.m_hWnd, bar.m_hMenu, b.CenterPoint()), 1);
    EXPECT_EQ(MenuItemFromPoint(owner.m_hWnd, bar.m_hMenu, CPoint(b.right + 5, b.top + 2)), -1);
    EXPECT_EQ(owner.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(b.left + 2, b.top + 2)), HTMENU);
    EXPECT_EQ(owner.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(client.left + 2, client.top + 2)), HTCLIENT);

    // Too narrow for all three: the last goes to a second row.
    owner.SetWindowPos(nullptr, 0, 0, a.Width() + b.Width() + 2, window.Height(), SWP_NOMOVE | SWP_NOZORDER);
    const CRect c2 = Item(2);
    EXPECT_EQ(c2.top, Item(0).bottom);
    CRect client2;
    owner.GetClientRect(&client2);
    owner.ClientToScreen(&client2);
    EXPECT_EQ(client2.top, c2.bottom + 1);

    // Without a menu the client area takes the whole window again.
    ::SetMenu(owner.m_hWnd, nullptr);
    owner.GetClientRect(&client2);
    owner.ClientToScreen(&client2);
    EXPECT_EQ(client2.top, window.top);
    EXPECT_FALSE(GetMenuItemRect(owner.m_hWnd, bar.m_hMenu, 0, nullptr));
}

TEST_F(MenuBar, PaintsItsBackgroundTheLineAndOwnerDrawnItems)
{
    const QImage plain = vxtest::Render(owner);
    CRect window;
    owner.GetWindowRect(&window);
    const CRect b = Item(1) - window.TopLeft();
    EXPECT_RECT_COLOR(plain, b, RGB(0, 0, 255)); // the owner's blue
    EXPECT_PIXEL(plain, b.right + 3, 2, GetSysColor(COLOR_MENU));
    EXPECT_RECT_COLOR(plain, CRect(0, 20, window.Width(), 21), GetSysColor(COLOR_3DFACE));

    // A menu background brush paints the rows, never the line.
    HBRUSH green = CreateSolidBrush(RGB(0, 160, 0));
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    info.hbrBack = green;
    SetMenuInfo(bar.m_hMenu, &info);
    const QImage back = vxtest::Render(owner);
    EXPECT_PIXEL(back, b.right + 3, 2, RGB(0, 160, 0));
    EXPECT_RECT_COLOR(back, CRect(0, 20, window.Width(), 21), GetSysColor(COLOR_3DFACE));
    info.hbrBack = nullptr;
    SetMenuInfo(bar.m_hMenu, &info);
    DeleteObject(green);
}

TEST_F(MenuBar, HotTrackingDrawsTheItemUnderTheMouseAndForgetsItWhenItLeaves)
{
    const CRect b = Item(1);
    owner.drawStates.clear();
    NcMouse(WM_NCMOUSEMOVE, b.CenterPoint());
    ASSERT_EQ(owner.drawStates.size(), 1u);
    EXPECT_TRUE(owner.drawStates.back() & ODS_HOTLIGHT);
    EXPECT_TRUE(owner.drawStates.back() & ODS_NOACCEL);
    NcMouse(WM_NCMOUSEMOVE, b.CenterPoint() + CSize(1, 0)); // the same item: nothing drawn
    EXPECT_EQ(owner.drawStates.size(), 1u);
    NcMouse(WM_NCMOUSEMOVE, CPoint(b.right + 3, b.top + 2)); // the bar, between items
    ASSERT_EQ(owner.drawStates.size(), 2u);
    EXPECT_FALSE(owner.drawStates.back() & ODS_HOTLIGHT);
}

TEST_F(MenuBar, AltEntersTheBarAndTheArrowsWalkItsPopups)
{
    owner.steps.push_back(Once([&] { owner.Key(VK_RIGHT); }));  // rest on item 1
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));   // its popup opens
    owner.steps.push_back(Once([&] { owner.Key(VK_RIGHT); }));  // past the leaf: item 2's popup
    owner.steps.push_back(Once([&] { owner.Key(VK_LEFT); }));   // first level: back to item 1's
    owner.steps.push_back(Once([&] { owner.Key(VK_ESCAPE); })); // closes it, rests on item 1
    owner.steps.push_back(Once([&] { owner.Key(VK_LEFT); }));   // item 0
    owner.steps.push_back(Once([&] { owner.Key(VK_LEFT); }));   // wraps to item 2
    owner.steps.push_back(Once([&] { owner.Key(VK_ESCAPE); })); // leaves the bar
    Send(WM_SYSKEYDOWN, VK_MENU, 1 << 29);
    Send(WM_SYSKEYUP, VK_MENU, (1 << 29) | (1 << 30) | (1LL << 31));
    EXPECT_TRUE(owner.steps.empty());
    EXPECT_EQ(Opened(), (std::vector<int>{1, 2, 1}));
    EXPECT_EQ(BarSelections(), (std::vector<int>{0, 1, 1, 2, 1, 1, 0, 2, -1}));
    ASSERT_GE(owner.loop.size(), 2u);
    EXPECT_EQ(owner.loop.front(), (std::pair<UINT, LPARAM>{WM_ENTERMENULOOP, FALSE}));
    EXPECT_EQ(owner.loop[1], (std::pair<UINT, LPARAM>{WM_INITMENU, reinterpret_cast<LPARAM>(bar.m_hMenu)}));
    EXPECT_EQ(owner.loop.back(), (std::pair<UINT, LPARAM>{WM_EXITMENULOOP, FALSE}));
    EXPECT_EQ(owner.Count(WM_ENTERMENULOOP), 1);
    EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 1);
    vx::PumpMessages();
    EXPECT_TRUE(owner.commands.empty());
}

TEST_F(MenuBar, AltWithAMnemonicOpensThatPopupAndEnterChooses)
{
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_RETURN); }));
    Send(WM_SYSKEYDOWN, 'F', 1 << 29);
    Send(WM_SYSCHAR, 'f', 1 << 29);
    EXPECT_EQ(Opened(), (std::vector<int>{0}));
    EXPECT_TRUE(owner.commands.empty()); // posted: it comes after the loop
    vx::PumpMessages();
    EXPECT_EQ(owner.commands, (std::vector<WPARAM>{102}));

    // A letter no item has: no loop at all.
    owner.loop.clear();
    Send(WM_SYSCHAR, 'q', 1 << 29);
    EXPECT_TRUE(owner.loop.empty());
    // F10 enters as Alt does; a chord of Alt and another key does not.
    owner.steps.push_back(Once([&] { owner.Key(VK_ESCAPE); }));
    Send(WM_SYSKEYDOWN, VK_F10, 0);
    Send(WM_SYSKEYUP, VK_F10, (1 << 30) | (1LL << 31));
    EXPECT_EQ(owner.Count(WM_ENTERMENULOOP), 2);
    Send(WM_SYSKEYDOWN, VK_MENU, 1 << 29);
    Send(WM_SYSKEYDOWN, 'Q', 1 << 29);
    Send(WM_SYSKEYUP, VK_MENU, (1 << 29) | (1 << 30) | (1LL << 31));
    EXPECT_EQ(owner.Count(WM_ENTERMENULOOP), 2);
}

TEST_F(MenuBar, TheMouseOpensMovesBetweenAndClosesThePopups)
{
    const CRect a = Item(0), b = Item(1), c = Item(2);
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_MOUSEMOVE, c.CenterPoint()); }));   // item 2's popup
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_MOUSEMOVE, b.CenterPoint()); }));   // item 1's
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_LBUTTONDOWN, b.CenterPoint()); })); // closes all
    NcMouse(WM_NCLBUTTONDOWN, a.CenterPoint());
    EXPECT_TRUE(owner.steps.empty());
    EXPECT_EQ(Opened(), (std::vector<int>{0, 2, 1}));
    EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 1);
    vx::PumpMessages();
    EXPECT_TRUE(owner.commands.empty());

    // A click on an item of the popup chooses it.
    owner.steps.push_back(Once([&] {
        const CRect open = owner.ItemRect(help.m_hMenu, 0);
        owner.MouseAt(WM_LBUTTONDOWN, open.CenterPoint());
        owner.MouseAt(WM_LBUTTONUP, open.CenterPoint());
    }));
    NcMouse(WM_NCLBUTTONDOWN, c.CenterPoint());
    vx::PumpMessages();
    EXPECT_EQ(owner.commands, (std::vector<WPARAM>{301}));

    // A click away from the popup and the bar ends the loop.
    owner.steps.push_back(Once([&] { owner.MouseAt(WM_LBUTTONDOWN, a.BottomRight() + CSize(100, 100)); }));
    NcMouse(WM_NCLBUTTONDOWN, a.CenterPoint());
    EXPECT_TRUE(owner.steps.empty());
    EXPECT_EQ(owner.Count(WM_EXITMENULOOP), 3);
}

TEST_F(MenuBar, ChildWindowsHaveNoBarWhateverTheyAreTold)
{
    CWnd child;
    ASSERT_TRUE(child.CreateEx("child", "Plain", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 80), &owner, 7));
    ::SetMenu(child.m_hWnd, file.m_hMenu);
    CRect w, c;
    child.GetWindowRect(&w);
    child.GetClientRect(&c);
    EXPECT_EQ(c.Height(), w.Height());
    child.SendMessage(WM_SYSCOMMAND, SC_KEYMENU, 0);
    EXPECT_EQ(owner.Count(WM_ENTERMENULOOP), 0);
    child.DestroyWindow();
}

TEST(MenuBarItems, OwnerDrawnItemsOfAMenuObjectAreMeasuredAndDrawnByIt)
{
    // The framework's default: a window that leaves WM_MEASUREITEM and
    // WM_DRAWITEM of a menu alone hands them to the menu's object.
    class Counting : public CMenu {
    public:
        int measured = 0;
        std::vector<UINT> drawn;
        void MeasureItem(LPMEASUREITEMSTRUCT item) override
        {
            ++measured;
            item->itemWidth = 44;
            item->itemHeight = 22;
        }
        void DrawItem(LPDRAWITEMSTRUCT item) override { drawn.push_back(item->itemState); }
    } menu;
    ASSERT_TRUE(menu.CreateMenu());
    menu.AppendMenu(MF_OWNERDRAW, 5, reinterpret_cast<LPCSTR>(0x55));
    CWnd window;
    ASSERT_TRUE(window.CreateEx("w", "Plain", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 200)));
    ::SetMenu(window.m_hWnd, menu.m_hMenu);
    EXPECT_GE(menu.measured, 1);
    RECT r{};
    ASSERT_TRUE(GetMenuItemRect(window.m_hWnd, menu.m_hMenu, 0, &r));
    EXPECT_EQ(r.right - r.left, 44 + 12);
    CRect client;
    window.GetClientRect(&client);
    EXPECT_EQ(client.Height(), 200 - 23);
    vxtest::Render(window);
    ASSERT_FALSE(menu.drawn.empty());
    ::SetMenu(window.m_hWnd, nullptr);
    window.DestroyWindow();
}

} // namespace
