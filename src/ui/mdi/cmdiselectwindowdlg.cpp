#include "ui/mdi/cmdiselectwindowdlg.h"

#include "ui/controls/clistbox.h"

#include <utility>

namespace {

vx::DialogTemplate SelectWindowTemplate()
{
    vx::DialogTemplate t("Select Window", 0, 0, 220, 124);
    t.ListBox(CMDISelectWindowDlg::IDC_WINDOWS, 7, 7, 206, 88, WS_VSCROLL | LBS_NOINTEGRALHEIGHT)
        .DefPushButton("OK", IDOK, 52, 103, 50, 14)
        .PushButton("Cancel", IDCANCEL, 118, 103, 50, 14);
    return t;
}

} // namespace

CMDISelectWindowDlg::CMDISelectWindowDlg(std::vector<CString> titles, int selected, CWnd* parent)
    : CDialog(), m_titles(std::move(titles)), m_selected(selected)
{
    m_pParentWnd = parent;
    // A double click on a title is OK for that title.
    MapCommand(LBN_DBLCLK, IDC_WINDOWS, [this] { OnOK(); });
}

CMDISelectWindowDlg::~CMDISelectWindowDlg() = default;

INT_PTR CMDISelectWindowDlg::DoModal()
{
    m_chosen = -1;
    InitModalIndirect(SelectWindowTemplate(), m_pParentWnd);
    return CDialog::DoModal();
}

BOOL CMDISelectWindowDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    for (const CString& title : m_titles)
        SendDlgItemMessage(IDC_WINDOWS, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(title.GetString()));
    if (m_selected >= 0 && m_selected < static_cast<int>(m_titles.size()))
        SendDlgItemMessage(IDC_WINDOWS, LB_SETCURSEL, static_cast<WPARAM>(m_selected));
    // The list has the focus, so that the arrows and Enter pick at once.
    GotoDlgCtrl(GetDlgItem(IDC_WINDOWS));
    return FALSE;
}

void CMDISelectWindowDlg::OnOK()
{
    const LRESULT sel = SendDlgItemMessage(IDC_WINDOWS, LB_GETCURSEL);
    m_chosen = sel >= 0 && sel < static_cast<LRESULT>(m_titles.size()) ? static_cast<int>(sel) : -1;
    CDialog::OnOK();
}
