// Internal; do not include directly.
//
// One level of an open popup menu: a top-level popup window of the class
// "#32768". It lays its menu's items out (asking the owner to measure the
// owner-drawn ones), sizes itself on MN_SIZEWINDOW, paints its frame,
// background and items (the owner draws the owner-drawn ones through
// WM_DRAWITEM) and shows a selection. What input does to it is the
// tracker's business (menutracker_p.h).
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/menus/menumodel_p.h"

namespace vx::menus {

class MenuTracker;

constexpr const char* kMenuClass = "#32768";
// The frame every menu window is sized for, whatever its style says later.
constexpr int kMenuFrame = 3;

// The menu font (SPI_GETNONCLIENTMETRICS), or its bold form for a default item.
HFONT MenuFont(bool bold);
// A Marlett glyph (check, bullet, arrow, caption buttons) filling `r`.
void MenuGlyph(HDC dc, const RECT& r, char glyph, COLORREF color);

// Lays the menu's items out (their rectangles in client coordinates) and
// answers the size of the client area. Owner-drawn items are measured by
// `owner` through WM_MEASUREITEM.
CSize LayoutMenu(HMENU menu, HWND owner);

class PopupMenuWindow final : public CWnd {
public:
    PopupMenuWindow(MenuTracker& tracker, HMENU menu, int level);
    ~PopupMenuWindow() override;

    // Makes the window (WM_CREATE, then MN_SIZEWINDOW places it at `rect`,
    // the window rectangle in screen coordinates).
    bool Open(const CRect& rect);
    HMENU MenuHandle() const { return m_menu; }
    int Level() const { return m_level; }
    // The selected position, -1 for none.
    int Selected() const { return m_selected; }
    // Moves the selection and redraws the two items at once.
    void Select(int position);
    // The item at a screen point (separators included), -1 for none.
    int ItemAt(CPoint screen) const;
    // The item's rectangle in screen coordinates.
    CRect ItemRect(int position) const;
    // Draws every item again (the keyboard cues changed).
    void RedrawItems();

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnNcPaint() override;
    BOOL OnEraseBkgnd() override;
    void OnPaint() override;
    void OnTimer(UINT_PTR id) override;

private:
    // Draws items on `dc` (client coordinates), all of them or one.
    void DrawItems(HDC dc, int only, UINT action);
    void DrawItem(HDC dc, int position, UINT action);
    void DrawFrame(HDC windowDc);
    void EraseBackground(HDC dc);

    MenuTracker& m_tracker;
    HMENU m_menu;
    int m_level;
    int m_selected = -1;
    CRect m_place;
};

} // namespace vx::menus
