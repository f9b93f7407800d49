// CScrollBar: the platform's scroll bar control, and its size box.
//
// The bar keeps a range, a page and a position (SBM_ messages, SCROLLINFO)
// and tells its parent what the user does with WM_HSCROLL or WM_VSCROLL:
// SB_LINEUP/SB_LINEDOWN while an arrow is held (repeated), SB_PAGEUP and
// SB_PAGEDOWN on the track, SB_THUMBTRACK while the thumb is dragged and
// SB_THUMBPOSITION where it is let go, then SB_ENDSCROLL. As on the
// original, the parent moves the bar (SetScrollPos); the bar does not move
// itself. A bar with SBS_SIZEBOX or SBS_SIZEGRIP is a size box instead: a
// drag on it sizes its top-level window.
//
//   m_bar.Create(WS_CHILD | WS_VISIBLE | SBS_VERT, CRect(200, 0, 216, 120), this, 300);
//   m_bar.SetScrollRange(0, 99);
#pragma once

#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <memory>

constexpr int SB_HORZ = 0;
constexpr int SB_VERT = 1;
constexpr int SB_CTL = 2;
constexpr int SB_BOTH = 3;

constexpr UINT SB_LINEUP = 0;
constexpr UINT SB_LINELEFT = 0;
constexpr UINT SB_LINEDOWN = 1;
constexpr UINT SB_LINERIGHT = 1;
constexpr UINT SB_PAGEUP = 2;
constexpr UINT SB_PAGELEFT = 2;
constexpr UINT SB_PAGEDOWN = 3;
constexpr UINT SB_PAGERIGHT = 3;
constexpr UINT SB_THUMBPOSITION = 4;
constexpr UINT SB_THUMBTRACK = 5;
constexpr UINT SB_TOP = 6;
constexpr UINT SB_LEFT = 6;
constexpr UINT SB_BOTTOM = 7;
constexpr UINT SB_RIGHT = 7;
constexpr UINT SB_ENDSCROLL = 8;

constexpr DWORD SBS_HORZ = 0x0000;
constexpr DWORD SBS_VERT = 0x0001;
constexpr DWORD SBS_SIZEBOX = 0x0008;
constexpr DWORD SBS_SIZEGRIP = 0x0010;

constexpr UINT SBM_SETPOS = 0x00E0;
constexpr UINT SBM_GETPOS = 0x00E1;
constexpr UINT SBM_SETRANGE = 0x00E2;
constexpr UINT SBM_GETRANGE = 0x00E3;
constexpr UINT SBM_ENABLE_ARROWS = 0x00E4;
constexpr UINT SBM_SETRANGEREDRAW = 0x00E6;
constexpr UINT SBM_SETSCROLLINFO = 0x00E9;
constexpr UINT SBM_GETSCROLLINFO = 0x00EA;

constexpr UINT SIF_RANGE = 0x0001;
constexpr UINT SIF_PAGE = 0x0002;
constexpr UINT SIF_POS = 0x0004;
constexpr UINT SIF_DISABLENOSCROLL = 0x0008;
constexpr UINT SIF_TRACKPOS = 0x0010;
constexpr UINT SIF_ALL = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS;

struct SCROLLINFO {
    UINT cbSize;
    UINT fMask;
    int nMin;
    int nMax;
    UINT nPage;
    int nPos;
    int nTrackPos;
};
using LPSCROLLINFO = SCROLLINFO*;

class VXBASE_UI_EXPORT CScrollBar : public CWnd {
public:
    CScrollBar();
    ~CScrollBar() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetScrollPos() const;
    // Returns the old position; the position is held within the range.
    int SetScrollPos(int pos, BOOL redraw = TRUE);
    void GetScrollRange(int* min, int* max) const;
    void SetScrollRange(int min, int max, BOOL redraw = TRUE);
    BOOL SetScrollInfo(LPSCROLLINFO info, BOOL redraw = TRUE);
    BOOL GetScrollInfo(LPSCROLLINFO info, UINT mask = SIF_ALL) const;
    int GetScrollLimit() const;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Private;
    void Paint();
    void Tell(UINT code, int pos = 0);
    bool IsSizeBox() const;
    std::unique_ptr<Private> d;
};
