// The menu model of the shim: items by position and by command, texts,
// states, radio groups, the tree of submenus; permanent objects, templates,
// the menus of windows, accelerators, and the answer of a tracked popup.
#include "menutest.h"

#include "platform/windows/messagepump.h"
#include "ui/images/cbitmap.h"
#include "ui/menus/accelerators.h"
#include "ui/menus/cmenu.h"
#include "platform/windows/lasterror.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

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
    CString text;
    menu.GetMenuString(21, text, MF_BYCOMMAND); // found in the submenu
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
}

} // namespace

namespace {

MENUITEMINFOA Info(UINT mask)
{
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = mask;
    return info;
}

std::string TextAt(HMENU menu, UINT position)
{
    char text[64] = {};
    GetMenuStringA(menu, position, text, sizeof text, MF_BYPOSITION);
    return text;
}

} // namespace

// Items are found by position in the menu itself, by command in the whole
// tree: an insert before a command of a submenu lands in that submenu.
TEST(CMenu, InsertsModifiesAndRemovesByPositionAndByCommand)
{
    CMenu menu;
    menu.CreatePopupMenu();
    HMENU sub = CreatePopupMenu();
    AppendMenuA(sub, MF_STRING, 31, "Thirty-one");
    menu.AppendMenu(MF_STRING, 10, "Ten");
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "Sub");
    EXPECT_TRUE(menu.InsertMenu(0, MF_BYPOSITION | MF_STRING, 9, "Nine"));
    EXPECT_TRUE(menu.InsertMenu(static_cast<UINT>(-1), MF_BYPOSITION | MF_STRING, 99, "Last"));
    EXPECT_TRUE(menu.InsertMenu(31, MF_BYCOMMAND | MF_STRING, 30, "Thirty"));
    ASSERT_EQ(menu.GetMenuItemCount(), 4u);
    EXPECT_EQ(TextAt(menu, 0), "Nine");
    EXPECT_EQ(TextAt(menu, 3), "Last");
    EXPECT_EQ(GetMenuItemCount(sub), 2);
    EXPECT_EQ(TextAt(sub, 0), "Thirty");
    EXPECT_FALSE(menu.InsertMenu(77, MF_BYCOMMAND | MF_STRING, 78, "nowhere"));

    // A modified item keeps its check bitmaps, and its data unless it
    // becomes owner-drawn.
    HBITMAP checkedMark = CreateBitmap(2, 2, 1, 1, nullptr);
    ASSERT_TRUE(SetMenuItemBitmaps(menu, 10, MF_BYCOMMAND, nullptr, checkedMark));
    MENUITEMINFOA data = Info(MIIM_DATA);
    data.dwItemData = 0xABC;
    ASSERT_TRUE(SetMenuItemInfoA(menu, 10, FALSE, &data));
    EXPECT_TRUE(menu.ModifyMenu(10, MF_BYCOMMAND | MF_STRING | MF_CHECKED, 11, "Eleven"));
    MENUITEMINFOA read = Info(MIIM_ID | MIIM_DATA | MIIM_CHECKMARKS | MIIM_STATE);
    ASSERT_TRUE(GetMenuItemInfoA(menu, 1, TRUE, &read));
    EXPECT_EQ(read.wID, 11u);
    EXPECT_EQ(read.dwItemData, 0xABCu);
    EXPECT_EQ(read.hbmpChecked, checkedMark);
    EXPECT_TRUE(read.fState & MFS_CHECKED);
    EXPECT_EQ(TextAt(menu, 1), "Eleven");
    EXPECT_FALSE(menu.ModifyMenu(10, MF_BYCOMMAND | MF_STRING, 12, "gone"));

    // RemoveMenu keeps a submenu for its caller, DeleteMenu destroys it.
    EXPECT_TRUE(menu.RemoveMenu(2, MF_BYPOSITION));
    EXPECT_TRUE(IsMenu(sub));
    EXPECT_EQ(menu.GetMenuState(31, MF_BYCOMMAND), static_cast<UINT>(-1)) << "no longer in the tree";
    EXPECT_TRUE(menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "Again"));
    EXPECT_TRUE(menu.DeleteMenu(31, MF_BYCOMMAND)) << "found in the submenu";
    EXPECT_EQ(GetMenuItemCount(sub), 1);
    EXPECT_TRUE(menu.DeleteMenu(3, MF_BYPOSITION));
    EXPECT_FALSE(IsMenu(sub));
    EXPECT_FALSE(menu.RemoveMenu(5, MF_BYPOSITION));
    DeleteObject(checkedMark);
}

// A destroyed menu takes its whole tree with it; every function then
// refuses the stale handles instead of reaching another menu.
TEST(CMenu, DestroyedMenusAndTheirSubmenusAreRefused)
{
    HMENU top = CreateMenu();
    HMENU middle = CreatePopupMenu();
    HMENU leaf = CreatePopupMenu();
    AppendMenuA(leaf, MF_STRING, 1, "Leaf");
    AppendMenuA(middle, MF_POPUP, reinterpret_cast<UINT_PTR>(leaf), "Leaves");
    AppendMenuA(top, MF_POPUP, reinterpret_cast<UINT_PTR>(middle), "&File");
    EXPECT_EQ(GetMenuState(top, 1, MF_BYCOMMAND), 0u) << "found two levels down";
    ASSERT_TRUE(DestroyMenu(top));
    for (HMENU gone : {top, middle, leaf}) {
        EXPECT_FALSE(IsMenu(gone));
        EXPECT_EQ(GetMenuItemCount(gone), -1);
        EXPECT_FALSE(AppendMenuA(gone, MF_STRING, 2, "x"));
        EXPECT_EQ(GetMenuState(gone, 0, MF_BYPOSITION), static_cast<UINT>(-1));
        EXPECT_EQ(GetSubMenu(gone, 0), nullptr);
        EXPECT_FALSE(DestroyMenu(gone));
    }
    // A menu that holds itself is searched and destroyed without end.
    HMENU loop = CreatePopupMenu();
    AppendMenuA(loop, MF_POPUP, reinterpret_cast<UINT_PTR>(loop), "Loop");
    EXPECT_EQ(GetMenuState(loop, 5, MF_BYCOMMAND), static_cast<UINT>(-1));
    EXPECT_TRUE(DestroyMenu(loop));
    EXPECT_FALSE(IsMenu(loop));

    // The wrapper destroys what it holds, and not what it gave away.
    HMENU kept;
    {
        CMenu wrapper;
        wrapper.CreatePopupMenu();
        kept = wrapper.Detach();
        EXPECT_FALSE(wrapper.DestroyMenu());
        EXPECT_TRUE(wrapper.Attach(CreatePopupMenu()));
        EXPECT_FALSE(wrapper.Attach(kept)) << "it holds one already";
    }
    EXPECT_TRUE(IsMenu(kept));
    EXPECT_EQ(CMenu::FromHandle(kept)->m_hMenu, kept);
    DestroyMenu(kept);
    // As the framework's, a wrapper outlives its handle, but reaches nothing.
    EXPECT_EQ(CMenu::FromHandle(kept)->GetMenuItemCount(), static_cast<UINT>(-1));
    EXPECT_FALSE(CMenu::FromHandle(kept)->AppendMenu(MF_STRING, 1, "x"));
}

TEST(CMenu, TextsAreCutToTheBufferAndMeasuredWithoutOne)
{
    CMenu menu;
    menu.CreatePopupMenu();
    menu.AppendMenu(MF_STRING, 1, "&Properties...");
    menu.AppendMenu(MF_SEPARATOR);
    char small[5] = "xxxx";
    EXPECT_EQ(menu.GetMenuString(1, small, sizeof small, MF_BYCOMMAND), 4);
    EXPECT_STREQ(small, "&Pro");
    EXPECT_EQ(menu.GetMenuString(1, nullptr, 0, MF_BYCOMMAND), 14);
    EXPECT_EQ(menu.GetMenuString(1, small, 1, MF_BYCOMMAND), 0);
    EXPECT_STREQ(small, "");
    CString text = "stale";
    EXPECT_EQ(GetMenuStringA(menu, 1, nullptr, 0, MF_BYPOSITION), 0) << "a separator has no text";
    EXPECT_EQ(menu.GetMenuString(42, text, MF_BYCOMMAND), 0);
    EXPECT_EQ(text, "");

    // Item info: the length without a buffer, the cut text with one.
    MENUITEMINFOA info = Info(MIIM_STRING);
    ASSERT_TRUE(menu.GetMenuItemInfo(1, &info));
    EXPECT_EQ(info.cch, 14u);
    char buffer[6] = {};
    info.dwTypeData = buffer;
    info.cch = sizeof buffer;
    ASSERT_TRUE(menu.GetMenuItemInfo(1, &info));
    EXPECT_STREQ(buffer, "&Prop");
    EXPECT_EQ(info.cch, 5u);
    MENUITEMINFOA set = Info(MIIM_STRING);
    char renamed[] = "Rename";
    set.dwTypeData = renamed;
    ASSERT_TRUE(menu.SetMenuItemInfo(1, &set));
    EXPECT_EQ(TextAt(menu, 0), "Rename");
    // A new item by info goes before the one named, or to the end.
    MENUITEMINFOA item = Info(MIIM_ID | MIIM_STRING | MIIM_STATE);
    char first[] = "First";
    item.dwTypeData = first;
    item.wID = 5;
    item.fState = MFS_GRAYED;
    ASSERT_TRUE(menu.InsertMenuItem(1, &item));
    EXPECT_EQ(TextAt(menu, 0), "First");
    EXPECT_EQ(menu.GetMenuState(5, MF_BYCOMMAND) & MF_GRAYED, MF_GRAYED);
}

TEST(CMenu, RadioGroupsAndTheDefaultItem)
{
    CMenu menu;
    menu.CreatePopupMenu();
    for (UINT id = 100; id < 105; ++id)
        menu.AppendMenu(MF_STRING | (id == 100 ? MF_CHECKED : 0), id, "Style");
    ASSERT_TRUE(menu.CheckMenuRadioItem(101, 103, 102, MF_BYCOMMAND));
    EXPECT_EQ(menu.GetMenuState(100, MF_BYCOMMAND) & MF_CHECKED, MF_CHECKED) << "outside the range";
    EXPECT_EQ(menu.GetMenuState(102, MF_BYCOMMAND) & (MF_CHECKED | MFT_RADIOCHECK), MF_CHECKED | MFT_RADIOCHECK);
    ASSERT_TRUE(menu.CheckMenuRadioItem(1, 3, 3, MF_BYPOSITION));
    EXPECT_EQ(menu.GetMenuState(102, MF_BYCOMMAND) & MF_CHECKED, 0u);
    EXPECT_EQ(menu.GetMenuState(103, MF_BYCOMMAND) & MF_CHECKED, MF_CHECKED);
    EXPECT_FALSE(menu.CheckMenuRadioItem(101, 103, 104, MF_BYCOMMAND)) << "the item to check lies outside";

    EXPECT_EQ(menu.GetDefaultItem(0), static_cast<UINT>(-1));
    ASSERT_TRUE(menu.SetDefaultItem(3, TRUE));
    EXPECT_EQ(menu.GetDefaultItem(0), 103u);
    EXPECT_EQ(menu.GetDefaultItem(0, TRUE), 3u);
    ASSERT_TRUE(menu.SetDefaultItem(101));
    EXPECT_EQ(menu.GetDefaultItem(0), 101u) << "one default at a time";
    EXPECT_FALSE(menu.SetDefaultItem(999));
    EXPECT_TRUE(menu.SetDefaultItem(static_cast<UINT>(-1)));
    EXPECT_EQ(menu.GetDefaultItem(0), static_cast<UINT>(-1));

    // The state of an item as its check and enable calls leave it.
    EXPECT_EQ(menu.CheckMenuItem(104, MF_CHECKED), MF_UNCHECKED);
    EXPECT_EQ(menu.CheckMenuItem(104, MF_UNCHECKED), MF_CHECKED);
    EXPECT_EQ(menu.EnableMenuItem(104, MF_GRAYED), MF_ENABLED);
    EXPECT_EQ(menu.EnableMenuItem(104, MF_ENABLED), MF_GRAYED);
    EXPECT_EQ(menu.CheckMenuItem(999, MF_CHECKED), static_cast<UINT>(-1));
    EXPECT_EQ(menu.EnableMenuItem(999, MF_GRAYED), static_cast<UINT>(-1));
}

using menutest::Once;
using menutest::Owner;

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
