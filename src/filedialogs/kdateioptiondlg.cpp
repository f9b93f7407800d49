#include "filedialogs/kdateioptiondlg.h"

#include "base/vxglobals.h"
#include "filedialogs/kdateivorschaudlg.h"
#include "platform/windows/cframewnd.h"

namespace {

constexpr DWORD kSet = OFN_ENABLETEMPLATE | OFN_NOVALIDATE;
constexpr DWORD kClear = OFN_FILEMUSTEXIST;

} // namespace

KDateiOptionDlg::KDateiOptionDlg(BOOL openFileDialog, LPCSTR defExt, LPCSTR fileName, DWORD flags, LPCSTR filter,
                                 CWnd* parent)
    : CVxFileDialog(openFileDialog, defExt, fileName, flags, filter, parent)
{
    SetTemplate(vx::kVorschauDlgTemplate);
    m_ofn.Flags = (m_ofn.Flags | kSet) & ~kClear;
    m_nOffsetY = -30;
    BindDlgItem(vx::kReadOnlyCheckId, m_chkOption1);
    BindDlgItem(vx::kVorschauCheckId, m_chkOption2);
    MapCommand(BN_CLICKED, vx::kReadOnlyCheckId,
               [this] { m_nOption1 = IsDlgButtonChecked(vx::kReadOnlyCheckId) ? 1 : 0; });
    MapCommand(BN_CLICKED, vx::kVorschauCheckId,
               [this] { m_nOption2 = IsDlgButtonChecked(vx::kVorschauCheckId) ? 1 : 0; });
}

KDateiOptionDlg::~KDateiOptionDlg() = default;

BOOL KDateiOptionDlg::OnInitDialog()
{
    CVxFileDialog::OnInitDialog();
    const struct {
        int id;
        const CString& caption;
        int value;
    } options[] = {{vx::kReadOnlyCheckId, m_strOption1, m_nOption1}, {vx::kVorschauCheckId, m_strOption2, m_nOption2}};
    for (const auto& option : options) {
        CWnd* check = GetDlgItem(option.id);
        if (!check)
            continue;
        if (option.caption.IsEmpty()) {
            check->ShowWindow(SW_HIDE);
        } else {
            check->SetWindowText(option.caption);
        }
        CheckDlgButton(option.id, option.value ? BST_CHECKED : BST_UNCHECKED);
    }
    if (g_pDLLMainframe && g_pDLLMainframe->SendMessage(WM_VXBASE, HostQueryFlags, 3)) {
        GotoDlgCtrl(GetDlgItem(vx::kSkinOkId));
        return FALSE;
    }
    return TRUE;
}
