// KHeaderCtrlEx: the header of the cell list.
//
// A column dragged to a new place is not moved by the header itself: the
// header hands the move to its list's DragColumn, which refills the list in
// the new order (the rows' cell records follow the columns only that way).
// The check boxes of the columns (HDF_CHECKBOX) are shown with HDS_CHECKBOXES.
//
//   m_header.SetList(this);       // done by KXListCtrl for its own header
#pragma once

#include "ui/listviews/cheaderctrl.h"
#include "vxbase_ui_export.h"

class KXListCtrl;

class VXBASE_UI_EXPORT KHeaderCtrlEx : public CHeaderCtrl {
public:
    KHeaderCtrlEx();
    ~KHeaderCtrlEx() override;

    // The list that hears dragged columns; null lets the header reorder itself.
    void SetList(KXListCtrl* list) { m_list = list; }
    KXListCtrl* GetList() const { return m_list; }
    // Lets columns be dragged (HDS_DRAGDROP), or not.
    void EnableDrag(BOOL enable);

    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

private:
    KXListCtrl* m_list = nullptr;
};
