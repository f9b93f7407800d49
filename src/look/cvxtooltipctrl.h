// CVXToolTipCtrl: the library's own tooltip, a popup window that keeps its
// tool table and timers, draws the tip itself with per-tool colours and
// width, and shows a tip of two pages ("first\rsecond") with an arrow that a
// click on the tip turns over. The owner passes its mouse and key messages
// to RelayEvent.
//
//   m_tip.Create(this);
//   m_tip.AddTool(&m_button, "Opens the project\rand its last page");
//   BOOL PreTranslateMessage(MSG* msg) override { m_tip.RelayEvent(msg); ... }
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "ui/gdi/cgdiobject.h"
#include "vxbase_ui_export.h"

// A tool as callers read and write it.
struct VXTOOLINFO {
    UINT cbSize;
    UINT uFlags;     // kept, not interpreted
    HWND hwnd;       // tool window
    UINT uId;        // tool id
    RECT rect;       // tool area in the parent's client coordinates
    HINSTANCE hinst; // the module's resource handle on read
    LPSTR lpszText;  // text, or LPSTR_TEXTCALLBACK (-1): asked by TTN_NEEDTEXT
    LPARAM lParam;
    int nMaxTipWidth; // 0: as wide as the widest line
    COLORREF crText;
    COLORREF crBk;
};

// One tool, owned by the control.
class VXBASE_UI_EXPORT CVXToolTipInfo : public CObject {
public:
    UINT nFlags = 0;
    HWND hWnd = nullptr;
    UINT nIDTool = 0;
    CRect rectBounds;
    LPSTR nIDText = nullptr; // LPSTR_TEXTCALLBACK when the text is asked for
    CString szText;
    int nWidth = 0;
    COLORREF crTextColor = 0xFF000000;
    COLORREF crBkColor = 0xFF000000;
    LPARAM lParam = 0;

    CVXToolTipInfo& operator=(const CVXToolTipInfo& other);
    CVXToolTipInfo& operator=(const VXTOOLINFO& info);
};

class VXBASE_UI_EXPORT CVXToolTipCtrl : public CWnd {
public:
    CVXToolTipCtrl();
    ~CVXToolTipCtrl() override;

    // The hidden popup, owned by `parent`, with the system's tooltip font.
    BOOL Create(CWnd* parent);
    // Passes the owner's mouse and key messages: moves start and end tools,
    // clicks and keys take the tip down.
    void RelayEvent(MSG* msg);

    // A tool over `window` (null rectangle: the whole window; else a
    // rectangle in `window`'s client coordinates). The text may be
    // LPSTR_TEXTCALLBACK; a text with "\r" makes a tip of two pages. Null
    // window: FALSE.
    BOOL AddTool(CWnd* window, UINT textId, const RECT* rect = nullptr, UINT id = 0);
    BOOL AddTool(CWnd* window, LPCSTR text, const RECT* rect = nullptr, UINT id = 0);
    // Removes every tool of this window and id; the one showing goes down.
    void DelTool(CWnd* window, UINT id = 0);
    void GetText(CString& text, CWnd* window, UINT id = 0);
    int GetToolCount() const;
    // FALSE for an unknown tool.
    BOOL GetToolInfo(VXTOOLINFO* info, CWnd* window, UINT id = 0) const;
    // Changes the tool of info->hwnd and info->uId.
    void SetToolInfo(const VXTOOLINFO* info);
    // Whether the point (the parent's client coordinates) lies in a tool of
    // `window`; fills `info` with the tool found. Null window: FALSE.
    BOOL HitTest(CWnd* window, POINT point, VXTOOLINFO* info) const;
    void Pop();
    void Activate(BOOL active) { m_bActive = active; }

    // The initial delay; (2 auto-pop | 3 initial, ms) set one of them.
    void SetDelayTime(UINT delay);
    void SetDelayTime(DWORD which, int milliseconds);
    int GetDelayTime(DWORD which) const;
    // The default width and colours, for the control and every tool that
    // still has the old default.
    void SetMaxTipWidth(int width);
    int GetMaxTipWidth() const { return m_nMaxWidth; }
    void SetTipBkColor(COLORREF color);
    COLORREF GetTipBkColor() const { return m_crBkColor; }
    void SetTipTextColor(COLORREF color);
    COLORREF GetTipTextColor() const { return m_crTextColor; }
    void SetMargin(const RECT& margin) { m_rectMargin = margin; }
    void GetMargin(RECT* margin) const { *margin = m_rectMargin; }
    // Copies the font; the system-font flag is set when it equals the
    // system's tooltip font. Null: FALSE.
    BOOL SetLogFont(const LOGFONTA* font, BOOL repaint = TRUE);
    BOOL IsVisible() const;

    // The tool being waited on or shown, or null; the page shown (0, 1).
    const CVXToolTipInfo* CurrentTool() const { return m_pCurrentToolTip; }
    int PageSide() const { return m_nSide; }
    BOOL IsTwoPage() const { return m_bTwoPage; }

    // Two blanks that reserve the arrow's room in a tip of two pages.
    static const char* m_szArrowSpace;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnTimer(UINT_PTR id) override;
    void OnPaint() override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnDestroy() override;

    // The tip's rectangle at `point` for a text of `bounds`' size, kept on
    // the screen; a tip past the bottom goes above the tool.
    virtual CRect CalculateInfoBoxRect(CPoint point, const CVXToolTipInfo* tool, CRect bounds);
    // The text's size with the margins, `width` 0 meaning the widest line.
    virtual CRect GetBoundsRect(const CString& text, int width);

private:
    void StartNewTool(CVXToolTipInfo* tool);
    void DisplayToolTip(CPoint point, int side);
    CString GetTooltipText(const CVXToolTipInfo* tool);
    static CString GetFieldFromString(const CString& text, int index, char separator);
    CVXToolTipInfo* FindToolFromPoint(CPoint point) const;
    bool IsCursorInTool(const CVXToolTipInfo* tool) const;
    bool IsCursorInToolTip() const;
    // The window at a point of the parent's client area.
    CWnd* GetChildWindowFromPoint(CPoint point) const;
    // Whether `window` is the tool's window or lies in it.
    static bool InToolWindow(const CVXToolTipInfo* tool, const CWnd* window);
    int FindTool(HWND window, UINT id) const;
    void UseSystemFont();

    CWnd* m_pParentWnd = nullptr;
    CRect m_rectMargin{2, 2, 3, 3};
    int m_nMaxWidth = 0;
    CPoint m_ptOffset{0, 20};
    CFont m_font;
    LOGFONTA m_logFont{};
    UINT m_nFormat = 0xA50;
    int m_bSystemFont = 1;
    CVXToolTipInfo* m_pCurrentToolTip = nullptr;
    UINT m_nCheckInterval = 500;
    UINT m_nDisplayDelay = 5000;
    UINT m_nTimeElapsed = 0;
    UINT m_nInitialDelay = 500;
    int m_bActive = 1;
    int m_bPopped = 0;
    int m_bTwoPage = 0;
    int m_nSide = 0;
    COLORREF m_crBkColor = 0xFF000000;
    COLORREF m_crTextColor = 0xFF000000;
    HWND m_hWndFocus = nullptr;
    CObArray m_aTools;
};
