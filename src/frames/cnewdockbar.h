// CNewDockBar: a frame's side that continues the menu bar's background: it
// erases with the brush of the frame's menu (MIM_BACKGROUND), aligned to
// the frame's left edge, so that a patterned bar runs on across the sides.
// Without such a brush it is a plain dock bar; it draws no border.
#pragma once

#include "ui/bars/cdockbar.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CNewDockBar : public CDockBar {
public:
    CNewDockBar();
    ~CNewDockBar() override;

protected:
    BOOL OnEraseBkgnd() override;
    void DrawBorders(CDC* dc, CRect& rect) override;
};
