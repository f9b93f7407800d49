// KSplitPane: a node of the binary tree that divides a split dialog's
// client area into panes with splitter bars between them.
//
// Each node has two sides, called left and right even when the node is
// split top and bottom (orientation 0; orientation 1 splits left and right,
// with a vertical bar). A side holds nothing, a child node, or a list of
// windows with a placement rule per axis. The tree measures the dialog as
// its template left it: SetupPane takes the windows' rectangles, puts each
// bar where the template left a gap behind the left side's content, and
// works out each side's minimum from the windows' rules and texts. MovePane
// then lays the tree out in any rectangle, and MoveSplitter moves a bar.
//
// Trees are built by KSplitResizeDialog::CreatePane and AddWindowToPane, and
// nest on the left side: a right side holds windows. Bars are 4 pixels thick.
//
//   KSplitPane* root = CreatePane(1, nullptr, 1, 1);        // left | right
//   KSplitPane* left = CreatePane(0, root, 1, 1);           //   top / bottom
//   AddWindowToPane(left, &m_tree, 1, KSplitPane::modeStretch, KSplitPane::modeStretch);
//   AddWindowToPane(root, &m_list, 2, KSplitPane::modeStretch, KSplitPane::modeStretch);
//   Initialize(1);
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <memory>

class VXBASE_UI_EXPORT KSplitPane {
public:
    // The rule of a window on one axis, told for the horizontal one (W is the
    // pane's new width, X its new left edge, w the window's width at setup):
    enum Mode {
        modeFixed = 0,   // stays where the template put it
        modeStretch = 1, // keeps its left distance; grows with the pane
        modeNear = 2,    // keeps its distance from the pane's left edge
        modeFar = 3,     // keeps its distance from the pane's right edge
        modeCentre = 4,  // centred in the pane
    };
    // What a side holds.
    enum Kind { kindNothing = 0, kindPane = 1, kindWindows = 2 };
    // Which side, as CreatePane and AddWindowToPane count them.
    enum Side { sideLeft = 1, sideRight = 2 };

    // One window of a side, with what SetupPane measured.
    struct WindowEntry {
        CWnd* m_pWnd = nullptr;
        int m_nModeX = modeFixed;
        int m_nModeY = modeFixed;
        CRect m_rcRelative; // the window, relative to the pane's left and top at setup
        CRect m_rcSnapshot; // the pane at setup
        int m_nOffsetX = 0; // the distance kept from the anchoring edge
        int m_nOffsetY = 0;
    };
    using WindowList = CArray<WindowEntry, const WindowEntry&>;

    // Bars are this thick.
    static constexpr int kBarSize = 4;

    KSplitPane();
    // Deletes the child nodes and the window lists, never the windows.
    ~KSplitPane();
    KSplitPane(const KSplitPane&) = delete;
    KSplitPane& operator=(const KSplitPane&) = delete;

    // Measures the tree bottom-up from the windows' present rectangles.
    void SetupPane();
    // Lays the node and all below it out in its present rectangle with a
    // new size; -1 keeps the present width or height.
    void MovePane(int cx, int cy);
    // Lays the node and all below it out in (x, y, x + cx, y + cy).
    void MovePane(int x, int y, int cx, int cy);
    // Puts the bar's left (top) edge at the point, held within both sides'
    // minima (the right side's wins), and lays the node out again.
    void MoveSplitter(CPoint point);
    // The cursor of the bar under `point` (IDC_SIZEWE or IDC_SIZENS) with its
    // node in `*hit`, or null when no bar is there. Depth first, left first.
    LPCSTR IsPointInSplitter(CPoint point, KSplitPane** hit);

    // Shows or hides both sides. ShowRight remembers the left size while the
    // right side is hidden and brings it back; ShowLeft has no such memory.
    void Show(int show);
    void ShowLeft(int show);
    void ShowRight(int show);
    int IsLeftVisible() const { return m_bLeftVisible; }
    int IsRightVisible() const { return m_bRightVisible; }

    // The width (height) of the pane at the end of the left child chain.
    int GetLeftWidth() const;
    int GetLeftHeight() const;
    void SetLeftWidth(int width);
    void SetLeftHeight(int height);
    // The least size of the node: both sides and the bar.
    int GetMinWidth() const;
    int GetMinHeight() const;
    int GetLeftMinWidth() const;
    int GetLeftMinHeight() const;
    int GetRightMinWidth() const;
    int GetRightMinHeight() const;

    // The smallest rectangle holding both; a rectangle with both sizes 0
    // counts as none.
    static CRect UnionRect(const RECT* a, const RECT* b);

    // Writes the left size of this node and every node below it, preorder,
    // as "Pane%d" with a running `*counter` in `section`.
    void SaveLeftWidth(const CString& section, int* counter, int profile);
    // Reads them back in the same order; 0 or a missing key keeps the
    // present size. Lays every node out again.
    void RestoreLeftWidth(const CString& section, int* counter, int profile);

    // --- the node's state, as KSplitResizeDialog builds and reads it ------
    int GetOrientation() const { return m_nOrientation; }
    void SetOrientation(int orientation) { m_nOrientation = orientation; }
    int IsMovable() const { return m_bMovable; }
    void SetMovable(int movable) { m_bMovable = movable; }
    int IsVisible() const { return m_bVisible; }
    int GetLeftKind() const { return m_nLeftKind; }
    int GetRightKind() const { return m_nRightKind; }
    // The child node a side holds, or null.
    KSplitPane* GetLeftPane() const { return m_pLeftPane; }
    KSplitPane* GetRightPane() const { return m_pRightPane; }
    // The windows of a side (null once a child took the side's place).
    WindowList* GetLeftWindows() const { return m_pLeftWindows.get(); }
    WindowList* GetRightWindows() const { return m_pRightWindows.get(); }
    const CRect& GetPaneRect() const { return m_rcPane; }
    const CRect& GetLeftRect() const { return m_rcLeft; }
    const CRect& GetRightRect() const { return m_rcRight; }
    // The bar the mouse hits; empty when the node can't be dragged.
    const CRect& GetSplitterRect() const { return m_rcSplitter; }

    // Makes `child` the content of a side. Side 1 sets the left kind to 1
    // and drops the left window list. Side 2 drops the right list and keeps
    // the child, but sets the right visible flag and not the kind, so that
    // the tree's walks never enter it: trees nest on the left.
    void AttachChild(KSplitPane* child, int side);
    // Appends a window to a side, whose kind becomes 2 and which shows.
    void AddWindow(CWnd* window, int side, int modeX, int modeY);
    // Takes the window out of the left list, or else the right one, and
    // measures the node again; false when neither holds it.
    bool RemoveWindow(CWnd* window);

private:
    void SetupSide(bool left);
    void MeasureWindows(bool left);
    void PlaceWindows(bool left, const CRect& pane);
    int SideMinWidth(bool left) const;
    int SideMinHeight(bool left) const;

    // Left side, then right side, in the order the node keeps them.
    KSplitPane* m_pLeftPane = nullptr;
    std::unique_ptr<WindowList> m_pLeftWindows;
    KSplitPane* m_pRightPane = nullptr;
    std::unique_ptr<WindowList> m_pRightWindows;
    CRect m_rcLeft;
    int m_nLeftMinWidth = 0;
    int m_nLeftMinHeight = 0;
    int m_bLeftVisible = 1;
    int m_nLeftKind = kindNothing;
    CRect m_rcRight;
    int m_nRightMinWidth = 0;
    int m_nRightMinHeight = 0;
    int m_bRightVisible = 1;
    int m_nRightKind = kindNothing;
    int m_nOrientation = 1;
    int m_nSpare = 20; // kept as the original had it; nothing reads it
    CRect m_rcPane;
    int m_bVisible = 1;
    int m_nRememberedLeft = 0;
    CRect m_rcSplitter;
    int m_bMovable = 1;
};
