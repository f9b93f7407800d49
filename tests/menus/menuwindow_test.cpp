// CNewMenu in real popup menu windows: the hook subclasses each window of
// the class "#32768", the theme sizes its frame and draws border and shadow
// over what lay beneath, and the tracking loop talks to CNewMenu through the
// owner (measure, draw, WM_MENUCHAR), driven by simulated keys and mouse.
#include "newmenutest.h"

#include "platform/windows/windowlong.h"
#include "platform/windows/windowprops.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"

#include <QImage>

#include <algorithm>

namespace {

using newmenutest::DrawMode;
using newmenutest::kOwnerColor;
using newmenutest::Once;
using newmenutest::Owner;

enum : UINT { ID_OPEN = 11, ID_SAVE, ID_EXIT, ID_SUB1 };

struct Menus {
    CNewMenu top;
    CNewMenu* sub = nullptr;
    Menus()
    {
        top.CreatePopupMenu();
        top.AppendODMenu("&Open", MF_STRING, ID_OPEN);
        top.AppendODMenu("&Save", MF_STRING | MF_GRAYED, ID_SAVE);
        sub = top.AppendODPopupMenu("&More");
        sub->AppendODMenu("&First", MF_STRING, ID_SUB1);
        top.AppendODMenu(nullptr, MF_SEPARATOR);
        top.AppendODMenu("E&xit", MF_STRING, ID_EXIT);
    }
};

HWND MenuWindowOf(HMENU menu)
{
    RECT r{};
    if (!GetMenuItemRect(nullptr, menu, 0, &r))
        return nullptr;
    return WindowFromPoint(POINT{r.left + 2, r.top + 2});
}

TEST(CNewMenuWindow, ThemeBorderAndShadowOnTheSubclassedWindow)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    Owner owner;
    owner.UpdateWindow();
    vx::ProcessUiEvents(20);
    Menus m;
    HWND window = nullptr;
    CRect outer;
    CRect client;
    QImage picture;
    bool subclassed = false;
    HMENU recorded = nullptr;
    owner.steps = {Once([&] {
        window = MenuWindowOf(m.top.m_hMenu);
        ASSERT_NE(window, nullptr);
        CMenuWindowData* data = CMenuWindowHook::GetMenuWindowData(window);
        subclassed = data && GetPropA(window, "OldMenuProc") != nullptr;
        recorded = data ? data->m_hMenu : nullptr;
        GetWindowRect(window, &outer);
        GetClientRect(window, &client);
        picture = vx::RenderWindow(*CWnd::FromHandle(window));
    })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr), 0);
    ASSERT_TRUE(subclassed);
    EXPECT_EQ(recorded, m.top.m_hMenu);
    // The window took the theme's frame: 2 left and top, 5 right, 6 below,
    // the shadow's room included, and it moved up by one.
    CPoint origin(0, 0);
    EXPECT_EQ(outer.top, 149);
    EXPECT_EQ(outer.Width() - client.Width(), 2 + 5);
    EXPECT_EQ(outer.Height() - client.Height(), 2 + 6);
    const int w = outer.Width();
    const int h = outer.Height();
    // The frame in DarkenColor(0x80, menu), inside it the text area's colour,
    // the icon column's line at x = 1.
    EXPECT_PIXEL(picture, 0, 0, RGB(106, 104, 100));
    EXPECT_PIXEL(picture, w - 5, 10, RGB(106, 104, 100));
    EXPECT_PIXEL(picture, w - 6, 10, RGB(249, 248, 247));
    EXPECT_PIXEL(picture, 1, 10, RGB(218, 215, 208));
    // The shadow darkens what lay beneath (the owner's 100, 150, 200): by
    // 30 in the outer column, by 120 in the inner one; the top rows copied.
    EXPECT_PIXEL(picture, w - 1, 20, RGB(88, 132, 176));
    EXPECT_PIXEL(picture, w - 4, 20, RGB(53, 79, 106));
    EXPECT_PIXEL(picture, w - 1, 2, kOwnerColor);
    EXPECT_PIXEL(picture, 20, h - 1, RGB(88, 132, 176));
    EXPECT_PIXEL(picture, 2, h - 1, kOwnerColor);
    // Closed: unsubclassed, no record left.
    EXPECT_EQ(CMenuWindowHook::GetMenuWindowData(window), nullptr);
}

TEST(CNewMenuWindow, WithoutBorderTheWindowKeepsItsFrame)
{
    DrawMode mode(CNewMenu::STYLE_XP_NOBORDER);
    Owner owner;
    Menus m;
    CRect outer;
    CRect client;
    owner.steps = {Once([&] {
        HWND window = MenuWindowOf(m.top.m_hMenu);
        GetWindowRect(window, &outer);
        GetClientRect(window, &client);
    })};
    m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr);
    EXPECT_EQ(outer.top, 150);
    EXPECT_EQ(outer.Width() - client.Width(), 6);
}

TEST(CNewMenuWindow, OwnerMeasuresAndDrawsThroughCNewMenu)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    Owner owner;
    Menus m;
    owner.steps = {Once([&] {})};
    m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr);
    // WM_INITMENUPOPUP before the items are measured, each item drawn.
    auto at = [&](UINT message) {
        return std::find(owner.messages.begin(), owner.messages.end(), message) - owner.messages.begin();
    };
    EXPECT_LT(at(WM_INITMENUPOPUP), at(WM_MEASUREITEM));
    EXPECT_LT(at(WM_MEASUREITEM), at(WM_DRAWITEM));
    EXPECT_EQ(std::count(owner.messages.begin(), owner.messages.end(), WM_MEASUREITEM), 5);
    EXPECT_GE(owner.drawStates.size(), 5u);
    // The grayed item was drawn grayed.
    EXPECT_TRUE(std::any_of(owner.drawStates.begin(), owner.drawStates.end(),
                            [](UINT s) { return (s & ODS_GRAYED) != 0; }));
    // The item rectangles have the measured heights: 22 in XP, 3 for the separator.
    Menus again;
    CRect first;
    CRect separator;
    owner.steps = {Once([&] {
        RECT r{};
        GetMenuItemRect(nullptr, again.top.m_hMenu, 0, &r);
        first = r;
        GetMenuItemRect(nullptr, again.top.m_hMenu, 3, &r);
        separator = r;
    })};
    again.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr);
    EXPECT_EQ(first.Height(), 22);
    EXPECT_EQ(separator.Height(), 3);
}

TEST(CNewMenuWindow, KeysMnemonicsAndTheMouse)
{
    DrawMode mode(CNewMenu::STYLE_ICY);
    Owner owner;
    Menus m;
    // A letter: the items are owner-drawn, so the menu asks the owner, and
    // CNewMenu finds "E&xit" by its caption.
    owner.steps = {Once([&] { owner.Char('x'); })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr), static_cast<BOOL>(ID_EXIT));
    EXPECT_NE(std::find(owner.messages.begin(), owner.messages.end(), WM_MENUCHAR), owner.messages.end());
    // Down to "More", Right into the sub-menu, Enter.
    owner.steps = {Once([&] { owner.Key(VK_DOWN); }), Once([&] { owner.Key(VK_DOWN); }),
                   Once([&] { owner.Key(VK_DOWN); }), Once([&] { owner.Key(VK_RIGHT); }),
                   Once([&] { owner.Key(VK_RETURN); })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr), static_cast<BOOL>(ID_SUB1));
    // Esc closes the sub-menu only, a second Esc the menu.
    bool subOpen = false;
    bool subClosed = false;
    owner.steps = {Once([&] { owner.Char('m'); }),
                   Once([&] { subOpen = MenuWindowOf(m.sub->m_hMenu) != nullptr; owner.Key(VK_ESCAPE); }),
                   Once([&] { subClosed = MenuWindowOf(m.sub->m_hMenu) == nullptr; owner.Key(VK_ESCAPE); }),
                   Once([&] { owner.Key(VK_RETURN); })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr), 0);
    EXPECT_TRUE(subOpen);
    EXPECT_TRUE(subClosed);
    // Hovering opens the sub-menu after the delay; a click chooses in it.
    CRect more;
    owner.steps = {Once([&] {
                       RECT r{};
                       GetMenuItemRect(nullptr, m.top.m_hMenu, 2, &r);
                       more = r;
                       owner.MouseAt(WM_MOUSEMOVE, more.CenterPoint());
                   }),
                   [&] { return MenuWindowOf(m.sub->m_hMenu) != nullptr; },
                   Once([&] {
                       RECT r{};
                       GetMenuItemRect(nullptr, m.sub->m_hMenu, 0, &r);
                       const CPoint p = CRect(r).CenterPoint();
                       owner.MouseAt(WM_MOUSEMOVE, p);
                       owner.MouseAt(WM_LBUTTONDOWN, p);
                       owner.MouseAt(WM_LBUTTONUP, p);
                   })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr), static_cast<BOOL>(ID_SUB1));
    // A click outside ends the menu without a command.
    owner.steps = {Once([&] { owner.MouseAt(WM_LBUTTONDOWN, CPoint(520, 450)); })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(TPM_RETURNCMD, 150, 150, &owner, nullptr), 0);
    // Without TPM_RETURNCMD the command is posted.
    owner.steps = {Once([&] { owner.Char('o'); })};
    EXPECT_EQ(m.top.TrackPopupMenuEx(0, 150, 150, &owner, nullptr), TRUE);
    MSG msg{};
    bool posted = false;
    while (PeekMessageA(&msg, owner.m_hWnd, WM_COMMAND, WM_COMMAND, PM_REMOVE))
        posted = posted || LOWORD(msg.wParam) == ID_OPEN;
    EXPECT_TRUE(posted);
}

} // namespace
