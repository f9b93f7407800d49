// KVxGridCombo: a drop-down list combo box that opens over a grid cell for
// an in-place choice.
//
// Start fills the box with the choices, selects one, lays the box over the
// cell (the field as high as the cell, the list below it), shows it, takes
// the focus and drops the list, so that one click or Enter chooses. The box
// then tells its parent as any combo box does: CBN_SELENDOK for a choice,
// CBN_SELENDCANCEL for Esc or a click elsewhere. Finish hides it again.
//
//   m_combo.Create(WS_CHILD | CBS_DROPDOWNLIST | WS_VSCROLL, CRect(0, 0, 10, 10), this, IDC_COMBO);
//   m_combo.Start(cellInDialog, captions, 2);
//   ... on CBN_SELENDOK: CString choice = m_combo.GetChoice(); m_combo.Finish();
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/windows/ccombobox.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KVxGridCombo : public CComboBox {
public:
    // How many choices the dropped list shows before it scrolls.
    static constexpr int kVisibleItems = 8;

    KVxGridCombo();
    ~KVxGridCombo() override;

    // Opens the box over `cell` (in the parent's client coordinates) with
    // `items`; `selection` is the item to select, -1 for none.
    void Start(const RECT& cell, const CStringArray& items, int selection);
    // Closes the list if it is open and hides the box.
    void Finish();
    // Whether the box is open over a cell.
    bool IsActive() const { return m_active; }
    // The selected item's text; "" when none is selected.
    CString GetChoice() const;

private:
    bool m_active = false;
};
