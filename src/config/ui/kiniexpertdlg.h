// KIniExpertDlg: the expert settings editor, a two-column grid over the
// rarely used settings of all the suite's settings files.
//
// What it offers comes from the control file "VXINI55.DAT" beside the AT
// program's global settings file (config/iniexpertfile.h tells its form).
// The constructor reads it and the current values, and says so in a message
// box when the file is missing, of a wrong version or yields nothing; the
// dialog opens anyway with what was read. A setting with fixed choices is
// edited with a drop-down list; a choice that stands for a scaled number
// opens an edit for the number at once. OK writes every setting back to the
// file of its scope; Cancel writes nothing.
//
//   KIniExpertDlg dialog(this);
//   dialog.DoModal();
#pragma once

#include "config/iniexpertfile.h"
#include "config/ui/kgrideditdialog.h"
#include "look/kskinbutton.h"
#include "ui/controls/cedit.h"
#include "ui/grids/cmsflexgrid.h"
#include "ui/grids/kvxgridcombo.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KIniExpertDlg : public KGridEditDialog {
public:
    // The dialog resource and its controls.
    static constexpr UINT IDD = 0x3FE;
    static constexpr int IDC_INIEXPERT_COMBO = 0x1AA4;
    static constexpr int IDC_INIEXPERT_EDIT = 0x1AA5;
    static constexpr int IDC_INIEXPERT_GRID = 0x1AA6;
    // The message that opens the number's edit after a scaled choice.
    static constexpr UINT WM_COMBOEDIT = 0x405;

    explicit KIniExpertDlg(CWnd* parent = nullptr);
    ~KIniExpertDlg() override;

    // The entries read, in the order of the file (row 1 is entry 0).
    int GetEntryCount() const { return static_cast<int>(m_entries.GetSize()); }
    const KIniExpertEntry* GetEntry(int index) const;
    // What the reading reported: 0, or the string of its message.
    UINT GetReadMessage() const { return m_nReadMessage; }
    CMSFlexGrid& GetGrid() { return m_grid; }

protected:
    // The scope of a kind line, 0 for a text line.
    int GetType(CString& kind);
    // Binds the members to the template's controls.
    virtual void DoDataExchange();

    BOOL OnInitDialog() override;
    void OnOK() override;
    void OnSize(UINT type, int cx, int cy) override;
    GridEditModeType GridEingabeEinleiten(int row, int column, char key, int& selection, CStringArray* list) override;
    int GridEingabeAbgeschlossen(int row, int column, const char* text, const char* oldText, int selection) override;
    void GridEingabeAbgebrochen(int row, int column) override;
    long OnComboEdit(unsigned int row, unsigned int parameter);
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    KIniExpertEntry* EntryOfRow(int row) const;

    CMSFlexGrid m_grid;
    CEdit m_edit;
    KVxGridCombo m_combo;
    KSkinButton m_btnOK;
    KSkinButton m_btnCancel;
    KIniExpertEntryArray m_entries;
    UINT m_nReadMessage = 0;
    // While the number of a scaled choice is typed: the value before the
    // choice, which comes back if the number is dropped, and the grid's
    // highlight, which is off meanwhile.
    CString m_sValueBeforeScale;
    long m_nHighLightBeforeScale = flexHighlightAlways;
};
