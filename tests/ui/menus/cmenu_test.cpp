#include "menutest.h"

#include "platform/windows/lasterror.h"
#include "ui/images/cbitmap.h"
#include "ui/menus/accelerators.h"

#include <string>

using menutest::Once;
using menutest::Owner;

TEST(CMenu, ModelAnswersStatesIdsAndTexts)
{
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    CMenu sub;
    sub.CreatePopupMenu();
    sub.AppendMenu(MF_STRING, 21, "Inner");
    menu.AppendMenu(MF_STRING, 10, "&Open\tCtrl+O");
    menu.AppendMenu(MF_SEPARATOR);
    menu.AppendMenu(MF_STRING | MF_GRAYED | MF_CHECKED, 11, "Save");
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub.Detach()), "More");
    EXPECT_EQ(menu.GetMenuItemCount(), 4u);
    EXPECT_EQ(menu.GetMenuItemID(0), 10u);
    EXPECT_EQ(menu.GetMenuItemID(1), 0u);
    EXPECT_EQ(menu.GetMenuItemID(3), static_cast<UINT>(-1));
    EXPECT_EQ(menu.GetMenuState(11, MF_BYCOMMAND) & (MF_CHECKED | MF_GRAYED), MF_CHECKED | MF_GRAYED);
    EXPECT_EQ(menu.GetMenuState(3, MF_BYPOSITION), MF_POPUP | (1u << 8));
    EXPECT_EQ(menu.GetMenuState(99, MF_BYCOMMAND), static_cast<UINT>(-1));
    EXPECT_EQ(GetLastError(), ERROR_MENU_ITEM_NOT_FOUND);
    CString text;
    menu.GetMenuString(21, text, MF_BYCOMMAND); // found in the sub-menu
    EXPECT_STREQ(text, "Inner");
    EXPECT_EQ(menu.CheckMenuItem(11, MF_UNCHECKED), MF_CHECKED);
    menu.EnableMenuItem(11, MF_ENABLED);
    EXPECT_EQ(menu.GetMenuState(11, MF_BYCOMMAND) & (MF_CHECKED | MF_GRAYED), 0u);
    menu.SetDefaultItem(10);
    EXPECT_EQ(menu.GetDefaultItem(0), 10u);
    menu.ModifyMenu(10, MF_BYCOMMAND | MF_OWNERDRAW, 12, reinterpret_cast<LPCSTR>(0x1234));
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_DATA | MIIM_TYPE;
    ASSERT_TRUE(menu.GetMenuItemInfo(0, &info, TRUE));
    EXPECT_EQ(info.wID, 12u);
    EXPECT_EQ(info.dwItemData, 0x1234u);
    EXPECT_TRUE(info.fType & MFT_OWNERDRAW);
    MENUINFO mi{sizeof(MENUINFO), MIM_BACKGROUND | MIM_APPLYTOSUBMENUS, 0, 0,
                static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)), 0, 0};
    SetMenuInfo(menu, &mi);
    MENUINFO back{sizeof(MENUINFO), MIM_BACKGROUND, 0, 0, nullptr, 0, 0};
    GetMenuInfo(menu.GetSubMenu(3)->m_hMenu, &back);
    EXPECT_EQ(back.hbrBack, mi.hbrBack);
    HMENU inner = menu.GetSubMenu(3)->m_hMenu;
    EXPECT_TRUE(menu.DeleteMenu(3, MF_BYPOSITION));
    EXPECT_FALSE(IsMenu(inner)); // deleted with its item
    HMENU h = menu.m_hMenu;
    menu.DestroyMenu();
    EXPECT_FALSE(IsMenu(h));
    EXPECT_FALSE(DestroyMenu(h));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_MENU_HANDLE);
}

TEST(CMenu, AttachedObjectsArePermanentAndWrappersAreNot)
{
    CMenu owned;
    owned.CreatePopupMenu();
    EXPECT_EQ(CMenu::FromHandlePermanent(owned.m_hMenu), &owned);
    EXPECT_EQ(CMenu::FromHandle(owned.m_hMenu), &owned);
    CMenu other;
    EXPECT_FALSE(other.Attach(owned.m_hMenu)) << "one permanent object per menu";
    HMENU loose = CreatePopupMenu();
    EXPECT_EQ(CMenu::FromHandlePermanent(loose), nullptr);
    CMenu* wrapper = CMenu::FromHandle(loose);
    ASSERT_NE(wrapper, nullptr);
    EXPECT_EQ(wrapper->m_hMenu, loose);
    HMENU detached = owned.Detach();
    EXPECT_EQ(CMenu::FromHandlePermanent(detached), nullptr);
    DestroyMenu(detached);
    DestroyMenu(loose);
}

TEST(MenuTemplates, LoadMenuBuildsAFreshMenuEachTime)
{
    vx::SetMenuTemplate(MAKEINTRESOURCE(700),
                        {{MF_POPUP, 0, "&File",
                          {{MF_STRING, 101, "&Open", {}}, {MF_SEPARATOR, 0, "", {}}, {MF_STRING, 102, "E&xit", {}}}},
                         {MF_STRING | MF_GRAYED, 103, "&Help", {}}});
    CMenu a;
    ASSERT_TRUE(a.LoadMenu(700));
    HMENU b = LoadMenuA(nullptr, MAKEINTRESOURCE(700));
    ASSERT_NE(b, nullptr);
    EXPECT_NE(a.m_hMenu, b);
    EXPECT_EQ(a.GetMenuItemCount(), 2u);
    CMenu* file = a.GetSubMenu(0);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->GetMenuItemCount(), 3u);
    EXPECT_EQ(file->GetMenuItemID(2), 102u);
    EXPECT_EQ(a.GetMenuState(103, MF_BYCOMMAND) & MF_GRAYED, MF_GRAYED);
    DestroyMenu(b);
    EXPECT_EQ(LoadMenuA(nullptr, MAKEINTRESOURCE(701)), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
    vx::SetMenuTemplate("NAMED", {{MF_STRING, 1, "x", {}}});
    HMENU named = LoadMenuA(nullptr, "named");
    EXPECT_EQ(GetMenuItemCount(named), 1);
    DestroyMenu(named);
}

TEST(WindowMenus, SystemMenuIsTheWindowsOwnCopy)
{
    Owner w;
    HMENU system = GetSystemMenu(w.m_hWnd, FALSE);
    ASSERT_NE(system, nullptr);
    EXPECT_EQ(GetSystemMenu(w.m_hWnd, FALSE), system);
    EXPECT_EQ(GetMenuItemCount(system), 7);
    EXPECT_EQ(GetMenuItemID(system, 6), SC_CLOSE);
    EXPECT_EQ(GetMenuDefaultItem(system, FALSE, 0), SC_CLOSE);
    EXPECT_EQ(GetSystemMenu(w.m_hWnd, TRUE), nullptr);
    EXPECT_FALSE(IsMenu(system));
    HMENU bar = CreateMenu();
    EXPECT_TRUE(SetMenu(w.m_hWnd, bar));
    EXPECT_EQ(GetMenu(w.m_hWnd), bar);
    EXPECT_TRUE(SetMenu(w.m_hWnd, nullptr));
    DestroyMenu(bar);
}

TEST(Accelerators, KeysWithTheirModifiersBecomeCommands)
{
    Owner w;
    HMENU bar = CreateMenu();
    AppendMenuA(bar, MF_STRING | MF_GRAYED, 202, "Disabled");
    SetMenu(w.m_hWnd, bar);
    vx::SetAcceleratorTable(MAKEINTRESOURCE(300), {{FVIRTKEY | FCONTROL, 'O', 201},
                                                    {FVIRTKEY, VK_F5, 203},
                                                    {FVIRTKEY | FCONTROL, 'D', 202},
                                                    {0, 'q', 204}});
    HACCEL keys = LoadAcceleratorsA(nullptr, MAKEINTRESOURCE(300));
    ASSERT_NE(keys, nullptr);
    EXPECT_EQ(LoadAcceleratorsA(nullptr, MAKEINTRESOURCE(300)), keys) << "loaded once";
    EXPECT_EQ(CopyAcceleratorTableA(keys, nullptr, 0), 4);
    auto press = [&](UINT message, WPARAM key) {
        MSG msg{w.m_hWnd, message, key, 1, 0, {}};
        return TranslateAcceleratorA(w.m_hWnd, keys, &msg);
    };
    vx::SetKeyDown(VK_CONTROL, true);
    EXPECT_TRUE(press(WM_KEYDOWN, 'O'));
    EXPECT_FALSE(press(WM_KEYDOWN, VK_F5)) << "Ctrl is not part of that entry";
    EXPECT_TRUE(press(WM_KEYDOWN, 'D')) << "a disabled command is swallowed";
    vx::SetKeyDown(VK_CONTROL, false);
    EXPECT_FALSE(press(WM_KEYDOWN, 'O'));
    EXPECT_TRUE(press(WM_KEYDOWN, VK_F5));
    EXPECT_TRUE(press(WM_CHAR, 'q'));
    EXPECT_FALSE(press(WM_CHAR, 'Q'));
    EXPECT_EQ(w.commands, (std::vector<WPARAM>{MAKEWPARAM(201, 1), MAKEWPARAM(203, 1), MAKEWPARAM(204, 1)}));
    HACCEL made = CreateAcceleratorTableA(std::vector<ACCEL>{{FVIRTKEY, VK_F1, 1}}.data(), 1);
    EXPECT_TRUE(DestroyAcceleratorTable(made));
    EXPECT_FALSE(DestroyAcceleratorTable(made));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_ACCEL_HANDLE);
    SetMenu(w.m_hWnd, nullptr);
    DestroyMenu(bar);
}

TEST(CMenu, TrackPopupMenuReturnsOrPostsTheChoice)
{
    Owner owner;
    CMenu menu;
    menu.CreatePopupMenu();
    menu.AppendMenu(MF_STRING, 77, "Seventy-seven");
    owner.steps.push_back(Once([&] { owner.Char('s'); }));
    EXPECT_EQ(menu.TrackPopupMenuEx(TPM_RETURNCMD, 5, 6, &owner, nullptr), 0) << "no & in the text";
    owner.steps.push_back(Once([&] { owner.Key(VK_DOWN); }));
    owner.steps.push_back(Once([&] { owner.Key(VK_RETURN); }));
    EXPECT_TRUE(menu.TrackPopupMenu(0, 1, 1, &owner));
    vx::PumpMessages();
    EXPECT_EQ(owner.commands, std::vector<WPARAM>{77});
    EXPECT_FALSE(TrackPopupMenuEx(nullptr, 0, 0, 0, owner.m_hWnd, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_MENU_HANDLE);
}
