// CToolBar: the framework's tool bar, a control bar whose window is a tool
// bar control (it answers the TB_ messages and paints through NM_CUSTOMDRAW
// as CToolBarCtrl does). It loads its buttons from a tool bar resource (a
// bitmap strip and the command of each image), lays them out in one row
// when docked at the top or bottom, one column at the left or right, and in
// rows of a given width when floating.
//
//   CToolBar bar;
//   bar.CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER | CBRS_TOOLTIPS);
//   bar.LoadToolBar(IDR_MAINFRAME);
#pragma once

#include "ui/bars/ccontrolbar.h"
#include "ui/controls/ctoolbarctrl.h"
#include "vxbase_ui_export.h"

#include <memory>

namespace vx {
class ToolBarControl;
}

constexpr UINT ID_SEPARATOR = 0;

class VXBASE_UI_EXPORT CToolBar : public CControlBar {
public:
    CToolBar();
    ~CToolBar() override;

    BOOL Create(CWnd* parent, DWORD style = WS_CHILD | WS_VISIBLE | CBRS_TOP, UINT id = AFX_IDW_TOOLBAR);
    // `ctrlStyle` takes the TBSTYLE_ window styles; `borders` the bar's
    // borders (left, top, right, bottom).
    BOOL CreateEx(CWnd* parent, DWORD ctrlStyle = TBSTYLE_FLAT,
                  DWORD style = WS_CHILD | WS_VISIBLE | CBRS_ALIGN_TOP, CRect borders = CRect(0, 0, 0, 0),
                  UINT id = AFX_IDW_TOOLBAR);
    // Buttons and images of a tool bar resource (vx::SetToolBarResource,
    // with the bitmap of the same number); FALSE when there is none.
    virtual BOOL LoadToolBar(UINT id);
    virtual BOOL LoadToolBar(LPCSTR name);
    // The images: a bitmap strip of the button image size.
    BOOL LoadBitmap(UINT id);
    BOOL SetBitmap(HBITMAP bitmap);
    // One button per command; ID_SEPARATOR makes a separator. Null commands
    // make `count` blank buttons.
    BOOL SetButtons(const UINT* commands, int count);
    void SetSizes(CSize button, CSize image);
    int CommandToIndex(UINT command) const;
    UINT GetItemID(int index) const;
    void GetItemRect(int index, RECT* rect) const;
    UINT GetButtonStyle(int index) const;
    void SetButtonStyle(int index, UINT style);
    void GetButtonInfo(int index, UINT& id, UINT& style, int& image) const;
    void SetButtonInfo(int index, UINT id, UINT style, int image);
    int GetCount() const;

    CSize CalcFixedLayout(BOOL stretch, BOOL horz) override;
    CSize CalcDynamicLayout(int length, DWORD mode) override;
    void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) override;

    CSize m_sizeButton{23, 22};
    CSize m_sizeImage{16, 15};
    // The width a floating bar was last given, in buttons' pixels.
    int m_nMRUWidth = 32767;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL IsDragPoint(CPoint point) override;
    void OnPaint() override;
    BOOL OnEraseBkgnd() override;
    // Sets the TBSTATE_WRAP flags for one row (`width` < 0), one column
    // (width 0) or rows of `width` pixels, and returns the size of the
    // buttons so placed.
    CSize WrapButtons(int width);
    vx::ToolBarControl& Control() const { return *m_control; }
    // Asks `target` and its route for the state of each button's command
    // and shows it on the button.
    void UpdateButtons(CWnd* target, BOOL disableIfNoHandler);
    BOOL CreateEx0(CWnd* parent, DWORD windowStyle, UINT id);

    CImageList m_images;

private:
    std::unique_ptr<vx::ToolBarControl> m_control;
};
