// A maximised MDI child in the frame's menu bar: its system menu first, its
// minimise, restore and close buttons at the right end, its own frame gone;
// the items follow the maximised child and leave with it.
#include "mditest.h"

#include "ui/mdi/cmdichildwnd.h"
#include "ui/menus/menubar_p.h"
#include "ui/menus/winmenu.h"

#include <vector>

namespace {

struct Frame : mditest::Mdi {
    CMDIChildWnd a, b;

    void Make()
    {
        a.m_bAutoDelete = false;
        b.m_bAutoDelete = false;
        mditest::Mdi::Make({{ID_WINDOW_CASCADE, "&Kaskada"}}, {"&Plik"});
        ASSERT_TRUE(a.Create(nullptr, "A", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(10, 10, 210, 160), &frame));
        ASSERT_TRUE(b.Create(nullptr, "B", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(40, 40, 240, 190), &frame));
    }
    ~Frame()
    {
        if (frame.m_hWnd)
            frame.DestroyWindow();
    }
    // The bar's items: 'S' system menu of the child, 'm', 'r', 'x' buttons, '.' others.
    std::string Items(HWND* owner = nullptr) const
    {
        std::string out;
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            using namespace vx::menus;
            MENUITEMINFOA it{};
            it.cbSize = sizeof it;
            it.fMask = MIIM_FTYPE | MIIM_BITMAP | MIIM_DATA;
            GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &it);
            char c = '.';
            if (!(it.fType & MFT_BITMAP))
                c = '.';
            else if (it.hbmpItem == kBarSystem)
                c = 'S';
            else if (it.hbmpItem == kBarMinimize)
                c = 'm';
            else if (it.hbmpItem == kBarRestore)
                c = 'r';
            else if (it.hbmpItem == kBarClose)
                c = 'x';
            if (c != '.' && owner)
                *owner = reinterpret_cast<HWND>(it.dwItemData);
            out += c;
        }
        return out;
    }
    CRect Item(int position) const
    {
        RECT r{};
        GetMenuItemRect(frame.m_hWnd, menu, static_cast<UINT>(position), &r);
        return CRect(r);
    }
};

TEST(MdiMenuBar, AMaximisedChildLendsTheBarItsSystemMenuAndButtons)
{
    Frame f;
    f.Make();
    EXPECT_EQ(f.Items(), "..");
    f.b.MDIMaximize();
    HWND owner = nullptr;
    EXPECT_EQ(f.Items(&owner), "S..mrx");
    EXPECT_EQ(owner, f.b.m_hWnd);
    EXPECT_EQ(GetSubMenu(f.menu, 0), ::GetSystemMenu(f.b.m_hWnd, FALSE));
    // The buttons sit at the right end of the bar, the system menu at its left.
    CRect window;
    f.frame.GetWindowRect(&window);
    EXPECT_EQ(f.Item(5).right, window.right);
    EXPECT_EQ(f.Item(0).left, window.left);
    EXPECT_GT(f.Item(3).left, f.Item(2).right);
    // The child's own caption and border are gone.
    CRect w, c;
    f.b.GetWindowRect(&w);
    f.b.GetClientRect(&c);
    EXPECT_EQ(c.Size(), w.Size());

    // Activating the other child hands the maximised state and the items on.
    f.a.MDIActivate();
    EXPECT_EQ(f.Items(&owner), "S..mrx");
    EXPECT_EQ(owner, f.a.m_hWnd);
    f.b.GetWindowRect(&w);
    f.b.GetClientRect(&c);
    EXPECT_LT(c.Height(), w.Height()); // b has its frame again

    // Restoring takes them out; the menu is as it was.
    f.a.MDIRestore();
    EXPECT_EQ(f.Items(), "..");
    f.a.GetWindowRect(&w);
    f.a.GetClientRect(&c);
    EXPECT_LT(c.Height(), w.Height());
}

TEST(MdiMenuBar, TheBarsButtonsActOnTheChild)
{
    Frame f;
    f.Make();
    f.b.MDIMaximize();
    ASSERT_EQ(f.Items(), "S..mrx");
    // A click on the restore button: down on it, up on it.
    auto click = [&](int position) {
        const CPoint at = f.Item(position).CenterPoint();
        CPoint client = at;
        f.frame.ScreenToClient(&client);
        f.frame.PostMessage(WM_LBUTTONUP, 0, MAKELPARAM(static_cast<WORD>(client.x), static_cast<WORD>(client.y)));
        vx::DispatchInputMessage(f.frame, WM_NCLBUTTONDOWN, HTMENU,
                                 MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y)));
        vx::PumpMessages();
    };
    click(4);
    EXPECT_FALSE(f.b.IsZoomed());
    EXPECT_EQ(f.Items(), "..");

    f.b.MDIMaximize();
    click(5); // close
    EXPECT_FALSE(::IsWindow(f.b.m_hWnd));
    // The next child takes over maximised, and the bar's items with it.
    HWND owner = nullptr;
    EXPECT_TRUE(f.a.IsZoomed());
    EXPECT_EQ(f.Items(&owner), "S..mrx");
    EXPECT_EQ(owner, f.a.m_hWnd);
}

} // namespace
