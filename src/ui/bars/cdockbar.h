// CDockBar: a frame's side (or a mini frame's inside) that holds control
// bars in rows. A top or bottom dock bar stacks its rows downwards and
// places the bars of a row from the left, each at the place it was dropped
// as long as the bars before it leave room; a left or right one does the
// same turned by a quarter. The frame asks it for its size and it moves its
// bars at the same time.
#pragma once

#include "ui/bars/ccontrolbar.h"
#include "vxbase_ui_export.h"

#include <vector>

class VXBASE_UI_EXPORT CDockBar : public CControlBar {
public:
    explicit CDockBar(BOOL floating = FALSE);
    ~CDockBar() override;

    // A child of `parent` with CBRS_ style and id (AFX_IDW_DOCKBAR_...).
    BOOL Create(CWnd* parent, DWORD style, UINT id);
    // Takes a bar: into the row under a screen rectangle's centre at the
    // rectangle's place, or (null) into a new row after the others.
    void DockControlBar(CControlBar* bar, const RECT* rect = nullptr);
    // Takes a bar into row `row` (a new row when past the last) at `place`
    // pixels along it.
    void DockControlBarAt(CControlBar* bar, int row, int place);
    BOOL RemoveControlBar(CControlBar* bar);
    // Row and place of a bar; FALSE when it is not here.
    BOOL FindBar(const CControlBar* bar, int* row, int* place) const;
    int GetRowCount() const { return static_cast<int>(m_rows.size()); }
    int GetDockedCount() const;
    // The bars of a row, in their order along it.
    std::vector<CControlBar*> GetRow(int row) const;
    BOOL IsFloatingDockBar() const { return m_bFloating; }
    // The bar of a floating dock bar, or null.
    CControlBar* FloatingBar() const;

    CSize CalcFixedLayout(BOOL stretch, BOOL horz) override;
    // Places the bars in a length of `length` pixels along the side and
    // returns the dock bar's size. Visible bars only take room.
    CSize Layout(int length, bool commit);

protected:
    BOOL OnEraseBkgnd() override;
    BOOL IsDragPoint(CPoint point) override;

private:
    struct Slot {
        CControlBar* bar;
        int place; // wanted place along the row
    };
    bool Horizontal() const;
    void Adopt(CControlBar* bar);

    BOOL m_bFloating;
    std::vector<std::vector<Slot>> m_rows;
};
