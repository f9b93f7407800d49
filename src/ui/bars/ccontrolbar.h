// CControlBar: the framework's base of bars that dock along a frame's sides
// or float in a mini frame: tool bars, dock bars, the menu bar. A bar keeps
// its CBRS_ style (side, borders, gripper, floating), asks its derived class
// for its size (CalcFixedLayout, CalcDynamicLayout), paints its non-client
// part (borders and gripper) and starts a drag to dock it elsewhere when
// its gripper or background is pressed.
//
//   bar.EnableDocking(CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM);
//   frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_BOTTOM);
#pragma once

#include "platform/windows/cframewnd.h"
#include "ui/gdi/cdc.h"
#include "vxbase_ui_export.h"

#include <memory>

class CDockBar;
class CDockContext;

// Modes of CalcDynamicLayout.
constexpr DWORD LM_STRETCH = 0x01;
constexpr DWORD LM_HORZ = 0x02;
constexpr DWORD LM_MRUWIDTH = 0x04;
constexpr DWORD LM_HORZDOCK = 0x08;
constexpr DWORD LM_VERTDOCK = 0x10;
constexpr DWORD LM_LENGTHY = 0x20;
constexpr DWORD LM_COMMIT = 0x40;

class VXBASE_UI_EXPORT CControlBar : public CWnd {
public:
    CControlBar();
    ~CControlBar() override;

    DWORD GetBarStyle() const { return m_dwStyle; }
    // Sets the CBRS_ style; OnBarStyleChange hears old and new.
    void SetBarStyle(DWORD style);
    // The sides this bar may dock at (CBRS_ALIGN_...), 0 for none.
    void EnableDocking(DWORD dockStyle);
    DWORD m_dwDockStyle = 0;
    BOOL IsFloating() const;
    // Docked at the top or bottom, or floating with a horizontal layout.
    BOOL IsHorzDocked() const;
    BOOL IsVertDocked() const;
    // The bar's frame: the frame it docks in, even while it floats.
    CFrameWnd* GetDockingFrame() const;
    void SetBorders(int left = 0, int top = 0, int right = 0, int bottom = 0);
    CRect GetBorders() const;

    // Its size: along the full length (`stretch`) or as it needs,
    // horizontal or vertical.
    virtual CSize CalcFixedLayout(BOOL stretch, BOOL horz);
    // Its size for a length and LM_ mode (floating and dragging).
    virtual CSize CalcDynamicLayout(int length, DWORD mode);
    // Shrinks a client rectangle by the borders and gripper.
    virtual void CalcInsideRect(CRect& rect, BOOL horz) const;
    // Enables and checks the bar's commands from `target`.
    virtual void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler);
    virtual void DoPaint(CDC* dc);
    virtual void DrawBorders(CDC* dc, CRect& rect);
    virtual void DrawGripper(CDC* dc, const CRect& rect);
    // Paints borders and gripper into the window device.
    virtual void EraseNonClient();
    virtual void OnBarStyleChange(DWORD oldStyle, DWORD newStyle);

    // Where the bar lies: its dock bar (a frame side or the float bar of a
    // mini frame) and the frame it docks in.
    CDockBar* m_pDockBar = nullptr;
    CFrameWnd* m_pDockSite = nullptr;
    std::unique_ptr<CDockContext> m_pDockContext;
    DWORD m_dwStyle = 0;
    int m_cxLeftBorder = 6;
    int m_cxRightBorder = 6;
    int m_cyTopBorder = 2;
    int m_cyBottomBorder = 2;
    // The size last given while floating, so that a bar floats again as it was.
    CSize m_sizeFloat{0, 0};

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnPaint() override;
    BOOL OnEraseBkgnd() override;
    void OnNcCalcSize(BOOL calcValidRects, NCCALCSIZE_PARAMS* params) override;
    void OnNcPaint() override;
    LRESULT OnNcHitTest(CPoint screen) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonDblClk(UINT flags, CPoint point) override;
    // Whether a client point is free for a drag (no button there).
    virtual BOOL IsDragPoint(CPoint point);
    // The window that hears commands and notifications of the bar.
    CWnd* Owner() const;
};
