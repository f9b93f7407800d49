// CMiniDockFrameWnd: the small frame a floating control bar lives in. It has
// a thin border and a small caption of its own with the bar's title and a
// close box: dragging the caption moves the bar (and docks it when dropped
// on a side of its frame), the close box hides the bar.
#pragma once

#include "platform/windows/cframewnd.h"
#include "ui/bars/cdockbar.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CMiniDockFrameWnd : public CFrameWnd {
public:
    CMiniDockFrameWnd();
    ~CMiniDockFrameWnd() override;

    // A hidden popup owned by `parent` (the docking frame), holding a
    // floating dock bar.
    virtual BOOL Create(CWnd* parent, DWORD barStyle);
    // Fits the window around its bar, with the bar's title.
    void RecalcLayout(BOOL notify = TRUE) override;
    // The caption's height and the border's width.
    static constexpr int kCaption = 14;
    static constexpr int kBorder = 2;

    CDockBar m_wndDockBar{TRUE};

protected:
    void OnNcCalcSize(BOOL calcValidRects, NCCALCSIZE_PARAMS* params) override;
    void OnNcPaint() override;
    LRESULT OnNcHitTest(CPoint screen) override;
    void OnNcLButtonDown(UINT hitTest, CPoint screen) override;
    void OnNcLButtonDblClk(UINT hitTest, CPoint screen) override;
    void OnClose() override;
    void OnSize(UINT type, int cx, int cy) override;
    // The close box in window coordinates.
    CRect CloseBox() const;
};
