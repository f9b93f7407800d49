// KGridEditDialog: a split dialog around a grid whose cells the user edits
// in place, with an edit control or a drop-down list over the cell.
//
// A double click on a cell, F2, or a character typed on the grid asks the
// dialog (GridEingabeEinleiten) whether and how that cell may be edited.
// The editor then opens over the cell: the edit with the cell's text (or the
// typed character), or the combo with the offered choices. Enter, Tab or a
// click elsewhere ends an edit and hands the text over
// (GridEingabeAbgeschlossen); Esc drops it (GridEingabeAbgebrochen). The
// grid, the edit and the combo are the derived dialog's controls:
//
//   class CPartsDlg : public KGridEditDialog {
//       BOOL OnInitDialog() override
//       {
//           KGridEditDialog::OnInitDialog();
//           SetGridControls(&m_grid, &m_edit, &m_combo);
//           ...
//       }
//       GridEditModeType GridEingabeEinleiten(int row, int column, char key, int& selection,
//                                             CStringArray* list) override
//       { return column == 1 ? GridEditText : GridEditNone; }
//       int GridEingabeAbgeschlossen(int row, int column, const char* text, const char* oldText,
//                                    int selection) override
//       { m_values[row] = text; return 0; }               // 0: the grid shows the text
//   };
#pragma once

#include "layout/ksplitresizedialog.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "vxbase_ui_export.h"

class CMSFlexGrid;
class CEdit;
class KVxGridCombo;

// How a cell is edited: not at all, in the edit, or by a choice in the combo.
enum GridEditModeType { GridEditNone = 0, GridEditText = 1, GridEditCombo = 2 };

class VXBASE_UI_EXPORT KGridEditDialog : public KSplitResizeDialog {
public:
    explicit KGridEditDialog(UINT templateId, CWnd* parent = nullptr);
    ~KGridEditDialog() override;

    // Opens the editor over a cell if the dialog allows it; `key` is the
    // character typed to start the edit (it replaces the text), or 0. True
    // when an editor opened. A running edit is ended (and kept) first.
    bool BeginGridEdit(int row, int column, char key);
    // Ends a running edit: `keep` hands the text over, else it is dropped.
    void EndGridEdit(bool keep);
    bool IsGridEditing() const { return m_nEditMode != GridEditNone; }
    int GetEditRow() const { return m_nEditRow; }
    int GetEditColumn() const { return m_nEditColumn; }

protected:
    // The controls the edits run on; call from OnInitDialog.
    void SetGridControls(CMSFlexGrid* grid, CEdit* edit, KVxGridCombo* combo);

    // Asked before an edit: the mode, and for the combo the choices in
    // `list` and the one to select (`selection`, -1 for none). None here.
    virtual GridEditModeType GridEingabeEinleiten(int row, int column, char key, int& selection, CStringArray* list);
    // Told after an edit with the new and the former text of the cell and
    // the chosen item of the combo (-1 after the edit). 0 lets the cell show
    // the new text; anything else says the dialog has set the cell itself.
    virtual int GridEingabeAbgeschlossen(int row, int column, const char* text, const char* oldText, int selection);
    // Told when an edit was dropped (Esc, or the combo closed without a choice).
    virtual void GridEingabeAbgebrochen(int row, int column);

    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    BOOL PreTranslateMessage(MSG* msg) override;
    void OnOK() override;
    void OnCancel() override;

    CMSFlexGrid* m_pGrid = nullptr;
    CEdit* m_pEdit = nullptr;
    KVxGridCombo* m_pCombo = nullptr;

private:
    // The cell in the dialog's client coordinates.
    CRect CellInDialog(int row, int column) const;

    int m_nEditMode = GridEditNone;
    int m_nEditRow = -1;
    int m_nEditColumn = -1;
    bool m_bEnding = false;
    long m_nHighLight = 1;
};
