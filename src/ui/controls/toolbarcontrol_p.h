// Internal to the controls: the tool bar control's procedure, shared by
// CToolBarCtrl and the framework's CToolBar, whose window is the control
// itself. Do not include directly.
#pragma once

#include "ui/controls/ctoolbarctrl.h"
#include "ui/controls/ctooltipctrl.h"

#include <memory>
#include <vector>

class CDC;

namespace vx {

class VXBASE_UI_EXPORT ToolBarControl {
public:
    explicit ToolBarControl(CWnd& window);
    ~ToolBarControl();

    // The control's answer to a message, or false for messages it leaves to
    // the plain window procedure.
    bool Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

    int Count() const { return static_cast<int>(m_buttons.size()); }
    const TBBUTTON& Button(int index) const { return m_buttons[static_cast<size_t>(index)].tb; }
    CRect ItemRect(int index) const { return m_buttons[static_cast<size_t>(index)].rect; }
    int IndexOf(int command) const;
    int HitTest(CPoint point) const;
    CSize ButtonSize() const { return m_buttonSize; }
    CSize MaxSize() const;
    int Rows() const;
    HIMAGELIST Images() const { return m_images; }
    HIMAGELIST DisabledImages() const { return m_disabled; }
    int Hot() const { return m_hot; }
    CToolTipCtrl* ToolTips() const { return m_tips; }
    // The window that hears the control's commands and notifications.
    HWND NotifyTarget() const;
    // Places the buttons from the top left, a new row after each
    // TBSTATE_WRAP, and moves the tooltips' rectangles with them.
    void Layout();
    // Every button's state at once (a bar setting its wrap flags), then the layout.
    void SetStates(const std::vector<BYTE>& states);

private:
    struct Item {
        TBBUTTON tb;
        CRect rect;
    };
    LRESULT Notify(NMHDR& header) const;
    void Paint();
    void PaintButton(CDC& dc, int index, UINT itemState);
    UINT ItemState(int index) const;
    void SetHot(int index);
    void Redraw(int index);
    void Click(int index);
    void SyncTools();
    bool SetStateBit(int command, BYTE bit, bool on);

    CWnd& m_window;
    std::vector<Item> m_buttons;
    CSize m_buttonSize{24, 22};
    CSize m_bitmapSize{16, 15};
    HIMAGELIST m_images = nullptr;
    HIMAGELIST m_disabled = nullptr;
    HIMAGELIST m_hotImages = nullptr;
    HWND m_notify = nullptr;
    int m_hot = -1;
    int m_pressed = -1;
    bool m_tracking = false;
    DWORD m_exStyle = 0;
    COLORSCHEME m_scheme{sizeof(COLORSCHEME), 0xFF000000, 0xFF000000};
    CToolTipCtrl* m_tips = nullptr;
    std::unique_ptr<CToolTipCtrl> m_ownTips;
};

} // namespace vx
