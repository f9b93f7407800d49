// CMDISelectWindowDlg: "Select Window", the dialog behind the Window menu's
// "&More Windows..." item. It lists the titles of all children of an MDI
// client, the active one selected; OK or a double click on a title ends it
// with IDOK and Chosen() tells which one the user picked.
//
//   CMDISelectWindowDlg dlg({"Rysunek 1", "Rysunek 2"}, 1, &frame);
//   if (dlg.DoModal() == IDOK) activate(dlg.Chosen());
#pragma once

#include "ui/dialogs/cdialog.h"
#include "vxbase_ui_export.h"

#include <vector>

class VXBASE_UI_EXPORT CMDISelectWindowDlg : public CDialog {
public:
    // The list box of titles.
    static constexpr int IDC_WINDOWS = 100;

    CMDISelectWindowDlg(std::vector<CString> titles, int selected, CWnd* parent = nullptr);
    ~CMDISelectWindowDlg() override;

    INT_PTR DoModal() override;
    // The index of the title chosen by OK, or -1.
    int Chosen() const { return m_chosen; }

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;

private:
    std::vector<CString> m_titles;
    int m_selected = -1;
    int m_chosen = -1;
};
