// CNewMenu: the library's owner-drawn menu. It keeps one CNewMenuItemData
// per item of the menu, so that a caption, icon and check mark survive the
// item being turned owner-drawn, and draws the items in one of ten styles
// (SetMenuDrawMode). The owner window routes WM_INITMENUPOPUP,
// WM_MEASUREITEM, WM_DRAWITEM and WM_MENUCHAR to it (the frame classes do;
// see CNewMenu::OnInitMenuPopup, OnMeasureItem and FindKeyboardShortcut),
// and the menu window hook (cmenuwindowhook.h) gives the popup windows the
// style's border and shadow.
//
//   CNewMenu menu;
//   menu.CreatePopupMenu();
//   menu.AppendODMenu("&Open\tCtrl+O", MF_STRING, ID_FILE_OPEN, &icons, 3);
//   menu.AppendODMenu(nullptr, MF_SEPARATOR);
//   menu.SetMenuTitle("File", MFT_GRADIENT);
//   CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP_2003);
//   menu.TrackPopupMenu(TPM_LEFTALIGN, x, y, owner);
#pragma once

#include "menus/cnewmenuicons.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "platform/windows/messagepump.h"
#include "ui/gdi/cdc.h"
#include "ui/menus/cmenu.h"
#include "vxbase_ui_export.h"

#include <vector>

class CMenuTheme;
class CToolBar;
class CImageList;

// Title flags of a menu's first item (SetMenuTitle).
constexpr DWORD MFT_TITLE = 0x01;
constexpr DWORD MFT_SIDE_TITLE = 0x02;
constexpr DWORD MFT_GRADIENT = 0x04;
constexpr DWORD MFT_SUNKEN = 0x08;
constexpr DWORD MFT_LINE = 0x10;
constexpr DWORD MFT_ROUND = 0x20;
constexpr DWORD MFT_CENTER = 0x40;

class VXBASE_UI_EXPORT CNewMenuItemData : public CObject {
public:
    CNewMenuItemData();
    ~CNewMenuItemData() override;
    CNewMenuItemData(const CNewMenuItemData&) = delete;
    CNewMenuItemData& operator=(const CNewMenuItemData&) = delete;

    // The caption (tab and shortcut included).
    CString GetString() const { return m_szMenuText; }
    void SetString(LPCSTR text) { m_szMenuText = text ? text : ""; }
    // Takes a reference to `icons` and drops the old one.
    void SetIcons(CNewMenuIcons* icons);

    CString m_szMenuText;
    DWORD m_nTitleFlags = 0;
    UINT m_nFlags = 0;
    UINT m_nID = 0;
    int m_nSyncFlag = 0;
    CNewMenuIcons* m_pMenuIcon = nullptr;
    int m_nMenuIconOffset = -1;
    DWORD_PTR m_pData = 0;
};

class VXBASE_UI_EXPORT CNewMenu : public CMenu {
public:
    // The draw modes, by number (SetMenuDrawMode).
    enum EDrawStyle {
        STYLE_ORIGINAL = 0,
        STYLE_ORIGINAL_NOBORDER = 1,
        STYLE_XP = 2,
        STYLE_XP_NOBORDER = 3,
        STYLE_SPECIAL = 4,
        STYLE_SPECIAL_NOBORDER = 5,
        STYLE_ICY = 6,
        STYLE_ICY_NOBORDER = 7,
        STYLE_XP_2003 = 8,
        STYLE_XP_2003_NOBORDER = 9,
    };
    // Which neighbours RemoveMenu(LPCSTR, ...) takes out with the entry.
    enum ESeperator { NONE = 0, HEAD = 1, TAIL = 2, BOTH = 3 };

    CNewMenu(HMENU parent = nullptr);
    ~CNewMenu() override;

    // --- library-wide switches ----------------------------------------------------
    static int m_Enable;
    static int m_bEnableXpBlending;
    static int m_bSelectDisable;
    static int m_bNewMenuBorderAllMenu;
    static CMenuTheme* m_pActMenuDrawing;
    static LOGFONT m_MenuTitleFont;
    static DWORD m_dwLastActiveItem;
    static COLORREF m_InitColor;
    static std::vector<CNewMenuIcons*>* m_pSharedMenuIcons;

    // The old style number; -1 (0xFFFFFFFF) and nothing changed for an unknown one.
    static UINT SetMenuDrawMode(UINT style);
    static UINT GetMenuDrawMode();
    static BOOL SetXpBlendig(BOOL on = TRUE);
    static BOOL GetXpBlendig();
    static BOOL SetSelectDisableMode(BOOL on);
    static BOOL GetSelectDisableMode();
    static BOOL SetNewMenuBorderAllMenu(BOOL on = TRUE);
    static BOOL GetNewMenuBorderAllMenu();
    static void SetMenuTitleFont(CFont* font);
    static void SetMenuTitleFont(const LOGFONT* font);
    static LOGFONT GetMenuTitleFont();

    // --- virtual operations ------------------------------------------------------------
    void DrawItem(LPDRAWITEMSTRUCT item) override;
    void MeasureItem(LPMEASUREITEMSTRUCT item) override;
    virtual BOOL LoadMenu(int resource);
    virtual BOOL LoadMenu(LPCSTR resource);
    virtual BOOL LoadMenu(HMENU menu);
    virtual BOOL DestroyMenu();
    virtual void DrawTitle(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    virtual BOOL EraseBkgnd(HWND hwnd, HDC dc);
    virtual void OnInitMenuPopup();
    virtual BOOL OnUnInitPopupMenu();

    // --- building ----------------------------------------------------------------------
    BOOL AppendODMenu(LPCSTR text, UINT flags = MF_OWNERDRAW, UINT_PTR id = 0, int iconIndex = -1);
    BOOL AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, CBitmap* bitmap);
    BOOL AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, CImageList* list, int index);
    BOOL AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, CNewMenuIcons* icons, int offset);
    BOOL InsertODMenu(UINT position, LPCSTR text, UINT flags = MF_OWNERDRAW, UINT_PTR id = 0, int iconIndex = -1);
    BOOL InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, CBitmap* bitmap);
    BOOL InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, CImageList* list, int index);
    BOOL InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, CNewMenuIcons* icons, int offset);
    BOOL AppendMenu(UINT flags, UINT_PTR id = 0, LPCSTR text = nullptr, int iconIndex = -1);
    BOOL AppendMenu(UINT flags, UINT_PTR id, LPCSTR text, CBitmap* bitmap);
    BOOL AppendMenu(UINT flags, UINT_PTR id, LPCSTR text, CImageList* list, int index);
    BOOL InsertMenu(UINT position, UINT flags, UINT_PTR id = 0, LPCSTR text = nullptr, int iconIndex = -1);
    BOOL InsertMenu(UINT position, UINT flags, UINT_PTR id, LPCSTR text, CBitmap* bitmap);
    BOOL InsertMenu(UINT position, UINT flags, UINT_PTR id, LPCSTR text, CImageList* list, int index);
    // Every occurrence of the command takes the caption and icon.
    BOOL ModifyODMenu(LPCSTR text, UINT id, int iconIndex = -1);
    BOOL ModifyODMenu(LPCSTR text, UINT id, CBitmap* bitmap);
    BOOL ModifyODMenu(LPCSTR text, UINT id, CImageList* list, int index);
    BOOL ModifyODMenu(LPCSTR text, UINT id, CNewMenuIcons* icons, int offset);
    // A child popup this menu owns.
    CNewMenu* AppendODPopupMenu(LPCSTR text);
    BOOL RemoveMenu(UINT position, UINT flags);
    BOOL DeleteMenu(UINT position, UINT flags);
    // The entry named `text` and the neighbours `which` says; its position or -1.
    int RemoveMenu(LPCSTR text, ESeperator which);

    // --- lookup ----------------------------------------------------------------------------
    CNewMenuItemData* FindMenuItem(UINT id);
    CNewMenu* FindMenuOption(int id, int& position);
    CNewMenu* FindMenuOption(LPCSTR text, int& position);
    // The next occurrence of `id` not among the visited menus and positions,
    // which it joins.
    CNewMenu* FindAnotherMenuOption(int id, int& position, CArray<CNewMenu*, CNewMenu*>& menus,
                                    CArray<int, int>& positions);
    CNewMenuItemData* FindMenuList(UINT id);
    CNewMenuItemData* CheckMenuItemData(UINT_PTR data) const;
    int GetMenuPosition(LPCSTR text);
    CMenu* GetSubMenu(int position) const;
    CMenu* GetSubMenu(LPCSTR text) const;
    static CNewMenu* FindPopupMenuFromID(HMENU menu, UINT id);
    static CNewMenu* FindPopupMenuFromIDData(HMENU menu, UINT id, ULONG_PTR data);
    static BOOL IsMenuBar(HMENU menu);

    // --- text and images ----------------------------------------------------------------
    BOOL GetMenuText(UINT id, CString& text, UINT flags = MF_BYPOSITION);
    BOOL SetMenuText(UINT id, CString text, UINT flags = MF_BYPOSITION);
    BOOL SetMenuTitle(LPCSTR title, DWORD flags = MFT_TITLE, int reserved = -1);
    BOOL RemoveMenuTitle();
    void UpdateImageOffset(UINT id, CNewMenuIcons* icons, int offset);
    BOOL LoadToolBar(UINT toolbarId, HINSTANCE instance = nullptr);
    BOOL LoadToolBar(LPCSTR toolbarName, HINSTANCE instance = nullptr);
    BOOL LoadToolBar(const WORD* iconInfo, COLORREF transparent = CLR_NONE);
    BOOL LoadToolBars(const UINT* toolbarIds, int count, HINSTANCE instance = nullptr);
    // Whether `id` is a button of the tool bar; its image index in `offset`.
    BOOL LoadFromToolBar(UINT id, UINT toolbarId, int& offset);
    void LoadCheckmarkBitmap(int unselected, int selected);
    BOOL AddBitmapToImageList(CImageList* list, UINT resourceId);
    HBITMAP LoadSysColorBitmap(int resourceId);
    // The icons holding an image of `id` (a resource or a list index).
    CNewMenuIcons* GetMenuIcon(int& offset, int id);
    CNewMenuIcons* GetMenuIcon(int& offset, CBitmap* bitmap);
    CNewMenuIcons* GetMenuIcon(int& offset, CImageList* list, int index);
    void SetIconSize(int width, int height);
    COLORREF SetBitmapBackground(COLORREF color);
    COLORREF GetBitmapBackground() const;

    // --- state ------------------------------------------------------------------------------
    HMENU GetParent() const { return m_hParentMenu; }
    BOOL IsPopup() const { return m_bIsPopupMenu; }
    BOOL SetPopup(BOOL popup = TRUE);
    CRect GetLastActiveMenuRect() const { return CRect(m_LastActiveMenuRect); }
    void SetLastMenuRect(HDC dc, LPRECT rect);
    void SetMenuData(DWORD data) { m_dwMenuData = data; }
    DWORD GetMenuData() const { return m_dwMenuData; }
    void SetMenuDataPtr(void* data) { m_pMenuData = data; }
    void* GetMenuDataPtr() const { return m_pMenuData; }
    BOOL SetItemData(UINT id, DWORD_PTR data, BOOL byPosition = FALSE);
    BOOL SetItemDataPtr(UINT id, void* data, BOOL byPosition = FALSE);
    DWORD_PTR GetItemData(UINT id, BOOL byPosition = FALSE) const;
    void* GetItemDataPtr(UINT id, BOOL byPosition = FALSE) const;
    int GetIconWidth() const { return m_iconX; }
    int GetIconHeight() const { return m_iconY; }
    int GetItemCount() const { return m_MenuItemList.GetSize(); }
    CNewMenuItemData* GetItem(int index) const;
    // Brings the item list into line with the menu's items.
    void SynchronizeMenu();
    void InitExchange();

    // --- for the message routers -------------------------------------------------------
    static BOOL OnMeasureItem(const MSG* msg);
    static LRESULT OnInitMenuPopup(HWND hwnd, CMenu* popup, UINT index, BOOL sysMenu);
    static LRESULT FindKeyboardShortcut(UINT ch, UINT flags, CMenu* menu);
    static void OnSysColorChange();

    // --- colours --------------------------------------------------------------------------
    static COLORREF GetMenuColor(HMENU menu = nullptr);
    static COLORREF GetMenuBarColor(HMENU menu = nullptr);
    static COLORREF GetMenuBarColorXP();
    static COLORREF GetMenuBarColor2003();

    // --- the styles (a theme holds pointers to these) -------------------------------------
    void MeasureItem_OldStyle(LPMEASUREITEMSTRUCT item, BOOL isMenuBar);
    void MeasureItem_Icy(LPMEASUREITEMSTRUCT item, BOOL isMenuBar);
    void MeasureItem_WinXP(LPMEASUREITEMSTRUCT item, BOOL isMenuBar);
    void DrawItem_OldStyle(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    void DrawItem_Icy(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    void DrawItem_WinXP(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    void DrawItem_XP_2003(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    void DrawItem_SpecialStyle(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    void DrawMenuTitle(LPDRAWITEMSTRUCT item, BOOL isMenuBar);
    static void DrawSpecialChar(CDC* dc, CRect rect, UINT ch, BOOL bold);
    void DrawSpecial_OldStyle(CDC* dc, LPCRECT rect, UINT id, DWORD state);
    void DrawSpecial_WinXP(CDC* dc, LPCRECT rect, UINT id, DWORD state);
    void DrawSpecialCharStyle(CDC* dc, LPCRECT rect, UINT id, DWORD state);
    BOOL Draw3DCheckmark(CDC* dc, const CRect& rect, HBITMAP checked, HBITMAP unchecked, DWORD state);

protected:
    BOOL AddItem(LPCSTR text, UINT flags, UINT_PTR id, CNewMenuIcons* icons, int offset, int position);
    CNewMenuItemData* NewODMenu(UINT position, UINT flags, UINT_PTR id, CString text);
    void DeleteMenuList();
    void MeasureCommon(LPMEASUREITEMSTRUCT item, BOOL isMenuBar, int style);
    // The XP styles (and that of Office 2003), and the classic ones (and Icy).
    void DrawXP(LPDRAWITEMSTRUCT item, BOOL isMenuBar, bool office2003);
    void DrawClassic(LPDRAWITEMSTRUCT item, BOOL isMenuBar, bool icy);
    CNewMenuItemData* DataOf(ULONG_PTR itemData) const;
    BOOL ReplaceSysCommand(UINT from, UINT to);
    void RepaintBarEntry();

    CPtrArray m_MenuItemList;   // CNewMenuItemData*
    CPtrArray m_SubMenus;       // HMENU of owned CNewMenu objects
    int m_iconX = 16;
    int m_iconY = 15;
    HWND m_hOwnerWnd = nullptr;
    COLORREF m_bitmapBackground = 0xFF000000;
    CImageList* m_checkmaps = nullptr;
    BOOL m_checkmapsShare = FALSE;
    int m_selectcheck = 0;
    int m_unselectcheck = 0;
    BOOL m_bDynIcons = FALSE;
    HMENU m_hParentMenu = nullptr;
    BOOL m_bIsPopupMenu = TRUE;
    RECT m_LastActiveMenuRect{};
    int m_dwOpenMenu = 0;
    DWORD m_dwMenuData = 0;
    void* m_pMenuData = nullptr;
};
