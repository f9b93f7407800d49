// CMenuBar: a control bar that stands in for a frame's menu bar. It shows
// the top level of a menu as buttons, opens their popups itself and can
// dock and float like a tool bar. Alt or F10 select it from the keyboard,
// the arrows move across its buttons and into their popups, a letter opens
// the button whose "&" names it; with a popup open the mouse moves it to
// the button under the cursor.
//
//   m_wndMenuBar.Create(this);
//   m_wndMenuBar.LoadMenuBar(IDR_MAINFRAME);
//   BOOL CMainFrame::PreTranslateMessage(MSG* msg)
//   {
//       return m_wndMenuBar.TranslateFrameMessage(msg) || CMDIFrameWnd::PreTranslateMessage(msg);
//   }
#pragma once

#include "lists/csubclasswnd.h"
#include "platform/windows/hooks.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "ui/bars/ccontrolbar.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/menus/winmenu.h"
#include "vxbase_ui_export.h"

class CMenuBar;

// One button of the bar.
struct VXBASE_UI_EXPORT CMenuBarItem {
    int m_nState = 2; // 0 raised, 1 pressed, 2 flat
    BOOL m_bHorz = TRUE;
    RECT m_rcItem{0, 0, 0, 0};
    CString m_sText;
    int m_cx = 0; // as for a horizontal bar
    int m_cy = 0;
    char m_cAccessKey = 0;
    int m_nUnderlineX1 = 0;
    int m_nUnderlineY1 = 0;
    int m_nUnderlineX2 = 0;
    int m_nUnderlineY2 = 0;
    BOOL m_bWrap = FALSE;

    // Places the button at (x, y), across or down.
    void Layout(CPoint at, BOOL horz);
};

class VXBASE_UI_EXPORT CMenuBar : public CControlBar {
public:
    enum TRACKINGSTATE { TRACK_NONE = 0, TRACK_BUTTON = 1, TRACK_POPUP = 2, TRACK_HOT = 3 };

    CMenuBar();
    ~CMenuBar() override;

    // A bar titled "MenuBar" at the top of `parent` (CBRS_SIZE_DYNAMIC added).
    BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP, UINT id = AFX_IDW_TOOLBAR + 3);
    // The menu of a resource; it replaces the frame's own menu bar.
    BOOL LoadMenuBar(UINT id);
    // Takes a menu (the bar owns it unless m_bMDIApp); returns the old one.
    HMENU LoadMenu(HMENU menu, HMENU windowMenu);
    HMENU GetMenu() const { return m_hMenu; }
    // Measures the buttons and makes the shared fonts; -1 when they fail.
    int InitBtns();
    // The frame's keys and clicks, from its PreTranslateMessage; TRUE eats it.
    BOOL TranslateFrameMessage(MSG* msg);

    CSize CalcFixedLayout(BOOL stretch, BOOL horz) override;
    CSize CalcDynamicLayout(int length, DWORD mode) override;
    void CalcInsideRect(CRect& rect, BOOL horz) const override;
    void DoPaint(CDC* dc) override;
    void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) override;

    // The state machine, for the frame and for tests.
    int GetTrackingState() const { return m_nTrackingState; }
    int GetCurrentButton() const { return m_nCurrentBtn; }
    int GetButtonCount() const { return m_arrItem.GetSize(); }
    const CMenuBarItem& GetButton(int index) const { return m_arrItem[index]; }
    BOOL IsBypassed() const { return m_bIgnoreAlt; }
    void UpdateBar(int state = TRACK_NONE, int index = -1);
    // Opens the popup of a button and tracks it (and the next, as the
    // arrows and the mouse move on) until it closes.
    void TrackPopup(int index);
    // The button at a client point, or -1.
    int HitTest(CPoint point) const;
    // Sets the wrap flags of rows of `width`; the number of rows.
    int WrapMenuBar(int count, int width);
    // Wraps between the narrowest and widest forms so that the bar fits
    // `length` along its width (or, `vertical`, its height).
    void SizeMenuBar(int count, int length, BOOL vertical);
    CSize CalcLayout(DWORD mode, int length = -1);
    void CalcFloatingLayout();
    CSize CalcSize(int count);
    // Where a button's popup opens and what it must not cover.
    CPoint ComputeMenuTrackPoint(int index, TPMPARAMS& params);
    // The menu machinery's input while a popup is open; TRUE eats it.
    BOOL OnMenuInput(MSG& msg);
    void OnMenuSelect(HMENU menu, UINT item);

    // The frame's menu is destroyed elsewhere (an MDI application's menus).
    static bool m_bMDIApp;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnTimer(UINT_PTR id) override;
    void OnKillFocus(CWnd* newWnd) override;
    void OnNcCalcSize(BOOL calcValidRects, NCCALCSIZE_PARAMS* params) override;
    void OnNcPaint() override;
    virtual void DrawGripper(CDC* dc);
    virtual void DrawBorder(CDC* dc);

private:
    // Sees the frame's menu messages before the frame does.
    class CMenuBarFrameHook : public CSubclassWnd {
    public:
        explicit CMenuBarFrameHook(CMenuBar* bar) : m_pMenuBar(bar) {}
        CMenuBar* m_pMenuBar;

    protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    };
    static LRESULT MenuInputFilter(int code, WPARAM wParam, LPARAM lParam);
    void DrawButton(CDC& dc, int index);
    void RepaintButton(int index);
    int MapAccelerator(UINT key) const;
    void RefreshBar();
    void OnSettingChange();
    void PostClearFrameMenu();
    // The private message 0x84C: the frame (wParam) loses its own menu bar.
    LRESULT OnSetMenuNull(WPARAM wParam, LPARAM lParam);
    bool Docked() const;
    bool HorizontalBar() const;
    CFrameWnd* Frame() const;

    CMenuBarFrameHook m_hook{this};
    HMENU m_hMenu = nullptr;
    int m_nTrackingState = TRACK_NONE;
    CArray<CMenuBarItem, const CMenuBarItem&> m_arrItem;
    BOOL m_bLoop = FALSE;
    int m_nCurrentBtn = -1;
    BOOL m_bIgnoreAlt = FALSE;
    CPoint m_ptMouse{-1, -1};
    UINT_PTR m_nTimerID = 0;
    BOOL m_bDown = FALSE;
    BOOL m_bAllowRight = TRUE;
    BOOL m_bAllowLeft = TRUE;
    CSize m_sizeIcon{0, 0};

    static CMenuBar* s_pTrackingBar;
    static HHOOK s_hMsgHook;
};
