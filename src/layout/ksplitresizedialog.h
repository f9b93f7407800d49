// KSplitResizeDialog: a resizable dialog whose client area a tree of split
// panes divides, with splitter bars the user drags.
//
// Build the tree in OnInitDialog, after the base, from the controls as the
// template placed them; then Initialize measures it and lays it out. Each
// bar can be dragged between the minima of its two sides; the drag shows an
// inverted bar that follows the mouse, and the panes move at the release.
// Every resize of the dialog measures the tree again from the controls
// (which the percentage rules of the base have just placed), and the bars'
// places are kept with the window's placement:
//
//   BOOL CFindDlg::OnInitDialog()
//   {
//       KSplitResizeDialog::OnInitDialog();
//       AddSzControl(m_tree, mdResize, mdResize);      // the percentage rules
//       AddSzControl(m_list, mdResize, mdResize);
//       KSplitPane* root = CreatePane(1, nullptr, 1, 1); // tree | list
//       AddWindowToPane(root, &m_tree, 1, KSplitPane::modeStretch, KSplitPane::modeStretch);
//       AddWindowToPane(root, &m_list, 2, KSplitPane::modeStretch, KSplitPane::modeStretch);
//       Initialize(1);
//       RestoreWindowPosition("FindDlg", true, 0);       // with "Pane0"...
//       return TRUE;
//   }
#pragma once

#include "layout/cresizedialog.h"
#include "layout/ksplitpane.h"
#include "vxbase_ui_export.h"

#include <memory>

// WM_SIZING and the edge the user drags.
constexpr UINT WM_SIZING = 0x0214;
constexpr UINT WMSZ_LEFT = 1;
constexpr UINT WMSZ_RIGHT = 2;
constexpr UINT WMSZ_TOP = 3;
constexpr UINT WMSZ_TOPLEFT = 4;
constexpr UINT WMSZ_TOPRIGHT = 5;
constexpr UINT WMSZ_BOTTOM = 6;
constexpr UINT WMSZ_BOTTOMLEFT = 7;
constexpr UINT WMSZ_BOTTOMRIGHT = 8;

class VXBASE_UI_EXPORT KSplitResizeDialog : public CResizeDialog {
public:
    // The stroke of the dragged bar: the first, the last, one in between.
    enum DRAGFLAG { DRAG_START = 0, DRAG_END = 1, DRAG_MOVE = 2 };

    explicit KSplitResizeDialog(UINT templateId, CWnd* parent = nullptr);
    ~KSplitResizeDialog() override;

    // Makes a node. With a null parent it becomes the root (a former root is
    // deleted); else the child of `side` (1 left, 2 right) of `parent`. Trees
    // nest on the left: a child on the right is kept but never laid out.
    KSplitPane* CreatePane(int orientation, KSplitPane* parent, int side, int movable);
    // Appends a window to a side of a node with its rule on each axis.
    void AddWindowToPane(KSplitPane* pane, CWnd* window, int side, int modeX, int modeY);
    // Takes a window out of the node and measures the node again; a window
    // the node does not hold changes nothing.
    void RemoveWindowFromPane(KSplitPane* pane, CWnd* window);
    // Shows or hides a side (1 left, 2 right) and lays the tree out; 1.
    int ShowPane(KSplitPane* pane, int show, int side);
    // Measures the tree from the controls and, unless `move` is 0, lays it out.
    void Initialize(int move);

    // The window's placement, then the bars' places as "Pane0", "Pane1"...
    // in preorder, all in `section` of the settings of scope `profile`.
    bool StoreWindowPosition(const CString& section, int profile);
    // Reads them back: the placement, then each bar (a missing or 0 value
    // keeps the template's), and makes the result the percentage rules'
    // baseline.
    bool RestoreWindowPosition(const CString& section, bool withState, int profile);

    KSplitPane* GetRootPane() const { return m_pRoot; }
    bool IsDragging() const { return m_bDragging; }
    // Where the dragged bar is drawn now (client coordinates); empty when idle.
    const CRect& GetDragBarRect() const { return m_rcLastBar; }

protected:
    void OnSize(UINT type, int cx, int cy) override;
    // Keeps a frame dragged by the user above the tree's minimum.
    virtual void OnSizing(UINT side, LPRECT rect);
    void OnGetMinMaxInfo(MINMAXINFO* info) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    // Draws the dragged bar at `point`, erasing its last place.
    void DrawDraggingBar(CPoint point, DRAGFLAG flag);

private:
    class DragLayer;

    KSplitPane* m_pRoot = nullptr;
    bool m_bDragging = false;
    KSplitPane* m_pDragPane = nullptr;
    CRect m_rcLastBar;
    CRect m_rcBar;
    std::unique_ptr<DragLayer> m_pLayer;
};
