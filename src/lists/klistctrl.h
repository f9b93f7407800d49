// KListCtrl: the library's report list, the base of its cell list.
//
// Beyond the list view it keeps the columns of a list across runs: with
// InitSpaltenverwaltung(id, names) the columns' widths and order are read
// from the profile (section "DialogState", keys "<id>colwidth" and
// "<id>colorder", the program's global file) and written back when the
// window goes. SpalteSchieben moves a column with its texts. Ctrl+A selects
// every row of a list that allows more than one.
//
//   m_list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, rect, this, IDC_PARTS);
//   CStringArray names;
//   names.Add("Device");
//   names.Add("Page");
//   m_list.InitSpaltenverwaltung(IDC_PARTS, &names);
#pragma once

#include "platform/framework/carray.h"
#include "ui/listviews/clistctrl.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KListCtrl : public CListCtrl {
public:
    KListCtrl();
    ~KListCtrl() override;

    // Moves the column at `from` to `to` (both column indexes), with its
    // title, width, format and the texts of every row. FALSE when either is
    // out of range.
    virtual BOOL SpalteSchieben(int from, int to);
    // Column management for the list `id` (-1: the id given before). With
    // `names` and no columns yet, makes one column per name. Then applies
    // the stored widths (never below the column's minimum) and order when
    // they fit the columns there are.
    virtual void InitSpaltenverwaltung(int id, CStringArray* names);
    // Writes the widths and order of the columns for the id given.
    void SaveSpaltenverwaltung();
    int GetSpaltenverwaltungID() const { return m_nSpaltenID; }
    // The first selected row, or -1.
    virtual int GetCurSel();
    // Selects `row` alone, gives it the focus and shows it; -1 selects none.
    virtual BOOL SetCurSel(int row);

protected:
    void OnKeyDown(UINT key, UINT repeat, UINT flags) override;
    void OnDestroy() override;
    // The narrowest a column may be made by the stored widths.
    virtual int ColumnMinimum(int column);

private:
    int m_nSpaltenID = -1;
};
