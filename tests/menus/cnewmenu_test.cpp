// CNewMenu's model: owner-drawn insertion, every occurrence changed by
// ModifyODMenu, synchronisation with the menu's items, titles, lookups,
// the draw modes and the icon lists.
#include "newmenutest.h"

#include "ui/windows/qtinterop.h"

#include <QImage>

namespace {

using newmenutest::DrawMode;

CNewMenuItemData* DataAt(CNewMenu& menu, int position)
{
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_DATA | MIIM_FTYPE;
    GetMenuItemInfoA(menu.m_hMenu, static_cast<UINT>(position), TRUE, &info);
    if (!(info.fType & MFT_OWNERDRAW))
        return nullptr;
    return reinterpret_cast<CNewMenuItemData*>(info.dwItemData);
}

TEST(CNewMenu, AppendedItemsAreOwnerDrawnWithTheirData)
{
    CNewMenu menu;
    menu.CreatePopupMenu();
    ASSERT_TRUE(menu.AppendODMenu("&Open\tCtrl+O", MF_STRING | MF_CHECKED, 101));
    ASSERT_TRUE(menu.AppendODMenu(nullptr, MF_STRING, 0)); // id 0: a separator
    ASSERT_TRUE(menu.InsertODMenu(0, "&New", MF_BYPOSITION, 100));
    ASSERT_EQ(GetMenuItemCount(menu.m_hMenu), 3);
    ASSERT_EQ(menu.GetItemCount(), 3);
    CNewMenuItemData* open = DataAt(menu, 1);
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(open, menu.GetItem(1));
    EXPECT_EQ(open->m_szMenuText, CString("&Open\tCtrl+O"));
    EXPECT_EQ(open->m_nID, 101u);
    EXPECT_TRUE(open->m_nFlags & MF_OWNERDRAW);
    EXPECT_EQ(open->m_nMenuIconOffset, -1);
    EXPECT_TRUE(GetMenuState(menu.m_hMenu, 101, MF_BYCOMMAND) & MF_CHECKED);
    CNewMenuItemData* separator = DataAt(menu, 2);
    ASSERT_NE(separator, nullptr);
    EXPECT_EQ(separator->m_nFlags & (MF_SEPARATOR | MF_OWNERDRAW), MF_SEPARATOR | MF_OWNERDRAW);
    EXPECT_EQ(DataAt(menu, 0)->m_szMenuText, CString("&New"));
    // Item data of the user's own, and -1 for an unknown command.
    EXPECT_TRUE(menu.SetItemData(101, 77));
    EXPECT_EQ(menu.GetItemData(101), 77u);
    EXPECT_EQ(menu.GetItemData(999), 0xFFFFFFFFu);
    // A child popup the menu owns, with this menu as its parent.
    CNewMenu* child = menu.AppendODPopupMenu("&More");
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->GetParent(), menu.m_hMenu);
    EXPECT_EQ(GetSubMenu(menu.m_hMenu, 3), child->m_hMenu);
    EXPECT_EQ(menu.GetSubMenu("&More")->m_hMenu, child->m_hMenu);
}

TEST(CNewMenu, ModifyODMenuChangesACommandInEverySubMenu)
{
    CNewMenu top;
    top.CreatePopupMenu();
    CNewMenu* a = top.AppendODPopupMenu("A");
    CNewMenu* b = top.AppendODPopupMenu("B");
    a->AppendODMenu("Print", MF_STRING, 7);
    b->AppendODMenu("Other", MF_STRING, 8);
    b->AppendODMenu("Print", MF_STRING, 7);
    ASSERT_TRUE(top.ModifyODMenu("Print all", 7));
    EXPECT_EQ(a->GetItem(0)->m_szMenuText, CString("Print all"));
    EXPECT_EQ(b->GetItem(1)->m_szMenuText, CString("Print all"));
    EXPECT_EQ(b->GetItem(0)->m_szMenuText, CString("Other"));
    // Both stay owner-drawn with their data.
    EXPECT_EQ(DataAt(*a, 0), a->GetItem(0));
    EXPECT_EQ(DataAt(*b, 1), b->GetItem(1));
    // Each occurrence is found once.
    CArray<CNewMenu*, CNewMenu*> menus;
    CArray<int, int> positions;
    int position = -1;
    EXPECT_EQ(top.FindAnotherMenuOption(7, position, menus, positions), a);
    EXPECT_EQ(top.FindAnotherMenuOption(7, position, menus, positions), b);
    EXPECT_EQ(position, 1);
    EXPECT_EQ(top.FindAnotherMenuOption(7, position, menus, positions), nullptr);
    // A command not in the menu yet is kept for the next synchronisation.
    ASSERT_TRUE(top.ModifyODMenu("Later", 9));
    AppendMenuA(top.m_hMenu, MF_STRING, 9, "");
    top.SynchronizeMenu();
    EXPECT_EQ(top.GetItem(2)->m_szMenuText, CString("Later"));
    EXPECT_EQ(DataAt(top, 2), top.GetItem(2));
}

TEST(CNewMenu, SynchronizationKeepsDataAndTakesNewItems)
{
    CNewMenu menu;
    menu.CreatePopupMenu();
    menu.AppendODMenu("One", MF_STRING, 1);
    menu.AppendODMenu("Two", MF_STRING, 2);
    CNewMenuItemData* one = menu.GetItem(0);
    one->m_pData = 5;
    // The system's menu changes behind the list's back.
    AppendMenuA(menu.m_hMenu, MF_STRING | MF_GRAYED, 3, "&Three");
    AppendMenuA(menu.m_hMenu, MF_SEPARATOR, 0, nullptr);
    DeleteMenu(menu.m_hMenu, 2, MF_BYCOMMAND);
    menu.SynchronizeMenu();
    ASSERT_EQ(menu.GetItemCount(), 3);
    EXPECT_EQ(menu.GetItem(0), one); // kept, with the user's data
    EXPECT_EQ(one->m_pData, 5u);
    EXPECT_EQ(menu.GetItem(1)->m_szMenuText, CString("&Three"));
    EXPECT_EQ(DataAt(menu, 1), menu.GetItem(1));
    EXPECT_TRUE(GetMenuState(menu.m_hMenu, 3, MF_BYCOMMAND) & MF_GRAYED);
    EXPECT_TRUE(menu.GetItem(2)->m_nFlags & MF_SEPARATOR);
    // Duplicate ids are matched in order.
    menu.AppendODMenu("Dup A", MF_STRING, 4);
    menu.AppendODMenu("Dup B", MF_STRING, 4);
    menu.SynchronizeMenu();
    EXPECT_EQ(menu.GetItem(3)->m_szMenuText, CString("Dup A"));
    EXPECT_EQ(menu.GetItem(4)->m_szMenuText, CString("Dup B"));
}

TEST(CNewMenu, TitlesAcrossAndAlongTheSide)
{
    CNewMenu menu;
    menu.CreatePopupMenu();
    menu.AppendODMenu("One", MF_STRING, 1);
    menu.AppendODMenu("Two", MF_STRING, 2);
    ASSERT_TRUE(menu.SetMenuTitle("Tools", MFT_GRADIENT | MFT_SIDE_TITLE));
    ASSERT_EQ(GetMenuItemCount(menu.m_hMenu), 3);
    CNewMenuItemData* title = menu.GetItem(0);
    EXPECT_EQ(title->m_szMenuText, CString("Tools"));
    EXPECT_EQ(title->m_nTitleFlags, MFT_TITLE | MFT_GRADIENT | MFT_SIDE_TITLE);
    EXPECT_TRUE(GetMenuState(menu.m_hMenu, 0, MF_BYPOSITION) & MF_SEPARATOR);
    // The rest starts a column of its own beside the side title.
    EXPECT_TRUE(GetMenuState(menu.m_hMenu, 1, MF_BYPOSITION) & 0x40);
    // Again across: the title is reused and the break goes.
    ASSERT_TRUE(menu.SetMenuTitle("Tools", MFT_LINE));
    EXPECT_EQ(GetMenuItemCount(menu.m_hMenu), 3);
    EXPECT_FALSE(GetMenuState(menu.m_hMenu, 1, MF_BYPOSITION) & 0x40);
    ASSERT_TRUE(menu.SetMenuTitle("Tools", MFT_SIDE_TITLE));
    ASSERT_TRUE(menu.RemoveMenuTitle());
    EXPECT_EQ(GetMenuItemCount(menu.m_hMenu), 2);
    EXPECT_FALSE(GetMenuState(menu.m_hMenu, 0, MF_BYPOSITION) & 0x40);
    EXPECT_FALSE(menu.RemoveMenuTitle());
}

TEST(CNewMenu, LookupsAndRemovalByCaption)
{
    CNewMenu menu;
    menu.CreatePopupMenu();
    menu.AppendODMenu("A", MF_STRING, 1);
    menu.AppendODMenu(nullptr, MF_SEPARATOR);
    menu.AppendODMenu("&Open", MF_STRING, 2);
    menu.AppendODMenu(nullptr, MF_SEPARATOR);
    menu.AppendODMenu("B", MF_STRING, 3);
    // WM_MENUCHAR: the position of "&o" and MNC_EXECUTE.
    EXPECT_EQ(CNewMenu::FindKeyboardShortcut('O', MF_POPUP, &menu), MAKELRESULT(2, MNC_EXECUTE));
    EXPECT_EQ(CNewMenu::FindKeyboardShortcut('q', MF_POPUP, &menu), 0);
    CMenu plain;
    plain.CreatePopupMenu();
    plain.AppendMenu(MF_STRING, 1, "&Open");
    EXPECT_EQ(CNewMenu::FindKeyboardShortcut('o', MF_POPUP, &plain), 0);
    CString text;
    EXPECT_TRUE(menu.GetMenuText(2, text, MF_BYCOMMAND));
    EXPECT_EQ(text, CString("&Open"));
    EXPECT_TRUE(menu.SetMenuText(2, "&Load", MF_BYCOMMAND));
    EXPECT_EQ(menu.GetMenuPosition("&Load"), 2);
    EXPECT_EQ(menu.FindMenuItem(3), menu.GetItem(4));
    // The entry and both separators around it.
    EXPECT_EQ(menu.RemoveMenu("&Load", CNewMenu::BOTH), 2);
    ASSERT_EQ(GetMenuItemCount(menu.m_hMenu), 3);
    EXPECT_EQ(menu.GetItem(0)->m_szMenuText, CString("A"));
    EXPECT_EQ(menu.GetItem(1)->m_szMenuText, CString("&Load"));
    EXPECT_EQ(menu.GetItem(2)->m_szMenuText, CString("B"));
    // By itself.
    EXPECT_EQ(menu.RemoveMenu("&Load", CNewMenu::NONE), 1);
    EXPECT_EQ(GetMenuItemCount(menu.m_hMenu), 2);
    EXPECT_EQ(menu.RemoveMenu("missing", CNewMenu::NONE), -1);
}

TEST(CNewMenu, DrawModesAreFoundByNumber)
{
    DrawMode keep(CNewMenu::STYLE_XP);
    EXPECT_EQ(CNewMenu::GetMenuDrawMode(), 2u);
    // An unknown number changes nothing and answers -1.
    EXPECT_EQ(CNewMenu::SetMenuDrawMode(10), 0xFFFFFFFFu);
    EXPECT_EQ(CNewMenu::GetMenuDrawMode(), 2u);
    EXPECT_EQ(CNewMenu::SetMenuDrawMode(6), 2u);
    EXPECT_EQ(CNewMenu::GetMenuDrawMode(), 6u);
    struct Row {
        UINT number;
        CMenuTheme::MeasureFunc measure;
        CMenuTheme::DrawFunc draw;
        bool border;
        bool xp;
    };
    const Row rows[] = {
        {6, &CNewMenu::MeasureItem_Icy, &CNewMenu::DrawItem_Icy, true, false},
        {7, &CNewMenu::MeasureItem_Icy, &CNewMenu::DrawItem_Icy, false, false},
        {0, &CNewMenu::MeasureItem_OldStyle, &CNewMenu::DrawItem_OldStyle, true, false},
        {1, &CNewMenu::MeasureItem_OldStyle, &CNewMenu::DrawItem_OldStyle, false, false},
        {2, &CNewMenu::MeasureItem_WinXP, &CNewMenu::DrawItem_WinXP, true, true},
        {3, &CNewMenu::MeasureItem_WinXP, &CNewMenu::DrawItem_WinXP, false, true},
        {8, &CNewMenu::MeasureItem_WinXP, &CNewMenu::DrawItem_XP_2003, true, true},
        {9, &CNewMenu::MeasureItem_WinXP, &CNewMenu::DrawItem_XP_2003, false, true},
        {4, &CNewMenu::MeasureItem_OldStyle, &CNewMenu::DrawItem_SpecialStyle, true, false},
        {5, &CNewMenu::MeasureItem_OldStyle, &CNewMenu::DrawItem_SpecialStyle, false, false},
    };
    const auto& themes = CMenuWindowHook::Instance().Themes();
    ASSERT_EQ(themes.size(), 10u);
    for (std::size_t i = 0; i < 10; ++i) {
        const Row& row = rows[i];
        CMenuTheme* theme = themes[i].get();
        SCOPED_TRACE(row.number);
        EXPECT_EQ(theme->m_dwThemeId, row.number); // made in this order
        EXPECT_EQ(CMenuTheme::FindTheme(row.number), theme);
        EXPECT_TRUE(theme->m_pMeasureItemFunc == row.measure);
        EXPECT_TRUE(theme->m_pItemDrawFunc == row.draw);
        EXPECT_TRUE(theme->m_pDrawTitle == &CNewMenu::DrawMenuTitle);
        EXPECT_EQ(theme->DoDrawBorder() != 0, row.border);
        EXPECT_EQ(dynamic_cast<CMenuThemeXP*>(theme) != nullptr, row.xp);
        // Without the system's drop shadow the theme keeps room for its own.
        EXPECT_EQ(theme->m_BorderLeft, 2);
        EXPECT_EQ(theme->m_BorderTop, 2);
        EXPECT_EQ(theme->m_BorderRight, 5);
        EXPECT_EQ(theme->m_BorderBottom, 6);
    }
}

QImage Solid(int width, int height, COLORREF c)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(GetRValue(c), GetGValue(c), GetBValue(c)));
    return image;
}

COLORREF ImagePixel(CNewMenuIcons& icons, int index, int x, int y)
{
    vxtest::Canvas canvas(16, 15, RGB(255, 255, 255));
    ImageList_Draw(icons.m_IconsList.m_hImageList, index, canvas.hdc(), 0, 0, ILD_TRANSPARENT);
    return vxtest::ColorAt(canvas.Image(), x, y);
}

TEST(CNewMenuIcons, TriplesOfNormalShadowAndGloom)
{
    // A strip of two images, the second twice under different ids.
    QImage strip = Solid(32, 15, RGB(200, 100, 10));
    for (int y = 0; y < 15; ++y)
        strip.setPixelColor(16 + 3, y, QColor(10, 20, 31));
    vx::SetResourceImage(IMAGE_BITMAP, 0x7E10, strip);
    vx::SetToolBarResource(MAKEINTRESOURCE(0x7E10), {1, 16, 15, 3, 41, 0, 42});
    auto* icons = new CNewMenuIcons;
    ASSERT_TRUE(icons->LoadToolBar(MAKEINTRESOURCE(0x7E10), nullptr));
    EXPECT_EQ(icons->m_IDs.GetSize(), 2);
    EXPECT_EQ(icons->m_IconsList.GetImageCount(), 6);
    EXPECT_EQ(icons->FindIndex(41), 0);
    EXPECT_EQ(icons->FindIndex(42), 3);
    EXPECT_EQ(icons->FindIndex(43), -1);
    // Normal, shadow (darkened by 50) and gloom (grey, lightened by 100 and
    // mixed with the menu colour 212, 208, 200).
    EXPECT_EQ(ImagePixel(*icons, 0, 1, 1), RGB(200, 100, 10));
    EXPECT_EQ(ImagePixel(*icons, 1, 1, 1), RGB(161, 80, 8));
    // gray 103; 103 + 152 * 100 / 255 = 162.6 -> 163; mixed: 140 + 30, 140 + 29, 140 + 28
    EXPECT_EQ(ImagePixel(*icons, 2, 1, 1), RGB(170, 169, 168));
    EXPECT_EQ(ImagePixel(*icons, 3, 3, 0), RGB(10, 20, 31));
    // gray 20; 20 + 235 * 100 / 255 = 112.2 -> 112; 112 * .86 = 96.32 -> 96, + 30, 29, 28
    EXPECT_EQ(ImagePixel(*icons, 5, 3, 0), RGB(126, 125, 124));
    // The same resource matches; so do the same icon-info words.
    EXPECT_TRUE(icons->DoMatch(MAKEINTRESOURCE(0x7E10), nullptr));
    EXPECT_FALSE(icons->DoMatch(MAKEINTRESOURCE(0x7E11), nullptr));
    const WORD same[] = {0x7E10, 16, 15, 41, 42, 0};
    const WORD shorter[] = {0x7E10, 16, 15, 41, 0};
    EXPECT_TRUE(icons->DoMatch(same, CLR_NONE));
    EXPECT_FALSE(icons->DoMatch(shorter, CLR_NONE));
    EXPECT_FALSE(icons->DoMatch(same, RGB(1, 1, 1)));
    delete icons;

    // Single images: a present id is replaced in place, a duplicate id
    // resolves to its latest entry.
    CNewMenuBitmaps bitmaps;
    HICON red = vx::IconFromQImage(Solid(16, 15, RGB(255, 0, 0)));
    HICON blue = vx::IconFromQImage(Solid(16, 15, RGB(0, 0, 255)));
    EXPECT_EQ(bitmaps.AddIcon(red, 5), 0);
    EXPECT_EQ(bitmaps.AddIcon(red, 6), 3);
    EXPECT_EQ(bitmaps.AddIcon(blue, 5), 0);
    EXPECT_EQ(bitmaps.m_IconsList.GetImageCount(), 6);
    EXPECT_EQ(ImagePixel(bitmaps, 0, 2, 2), RGB(0, 0, 255));
    EXPECT_EQ(ImagePixel(bitmaps, 1, 2, 2), DarkenColor(50, RGB(0, 0, 255)));
    DestroyIcon(red);
    DestroyIcon(blue);
}

class CountingIcons : public CNewMenuIcons {
public:
    int calls = 0;
    void OnSysColorChange() override { ++calls; }
};

TEST(CNewMenuIcons, ColourChangesAreTakenOnceInTwoSeconds)
{
    auto* counting = new CountingIcons;
    CNewMenu menu; // makes the shared list's owner
    if (!CNewMenu::m_pSharedMenuIcons)
        CNewMenu::m_pSharedMenuIcons = new std::vector<CNewMenuIcons*>;
    CNewMenu::m_pSharedMenuIcons->push_back(counting);
    CNewMenu::OnSysColorChange();
    const int first = counting->calls;
    CNewMenu::OnSysColorChange();
    CNewMenu::OnSysColorChange();
    EXPECT_LE(first, 1);
    EXPECT_EQ(counting->calls, first); // the burst is one change
    auto& shared = *CNewMenu::m_pSharedMenuIcons;
    shared.erase(std::find(shared.begin(), shared.end(), counting));
    delete counting;
}

TEST(CNewMenu, IconsGiveItemsTheirOffsetAndGrowTheIconSize)
{
    vx::SetResourceImage(IMAGE_BITMAP, 0x7E20, Solid(40, 20, RGB(0, 128, 0)));
    vx::SetToolBarResource(MAKEINTRESOURCE(0x7E20), {1, 20, 20, 2, 51, 52});
    CNewMenu top;
    top.CreatePopupMenu();
    CNewMenu* sub = top.AppendODPopupMenu("Sub");
    top.AppendODMenu("First", MF_STRING, 51);
    sub->AppendODMenu("Second", MF_STRING, 52);
    ASSERT_TRUE(top.LoadToolBar(0x7E20));
    EXPECT_EQ(top.GetItem(1)->m_nMenuIconOffset, 0);
    ASSERT_NE(sub->GetItem(0)->m_pMenuIcon, nullptr);
    EXPECT_EQ(sub->GetItem(0)->m_nMenuIconOffset, 3);
    EXPECT_EQ(top.GetIconWidth(), 20);
    EXPECT_EQ(sub->GetIconHeight(), 20);
    EXPECT_GE(top.GetItem(1)->m_pMenuIcon->m_dwRefCount, 2);
    int offset = -1;
    EXPECT_TRUE(top.LoadFromToolBar(52, 0x7E20, offset));
    EXPECT_EQ(offset, 1);
    EXPECT_FALSE(top.LoadFromToolBar(53, 0x7E20, offset));
}

} // namespace
