#include "filedialogs/kdateivorschaudlg.h"

#include "filedialogs/freecursor_p.h"

#include "base/vxglobals.h"
#include "look/cvxdialog.h"
#include "pages/kvxfile.h"
#include "platform/files/fileapi.h"
#include "platform/framework/codepage.h"
#include "platform/windows/cframewnd.h"
#include "ui/dialogs/dialogtemplate.h"

#include <algorithm>

CString KDateiVorschauDlg::s_LastDir;
KDateiVorschauDlg* KDateiVorschauDlg::s_pRunning = nullptr;

namespace {

constexpr UINT_PTR kFollowTimer = 1;
constexpr int kFromRight = 99;
constexpr int kOkFromBottom = 108;
constexpr int kCancelFromBottom = 78;
// What the dialog sets and clears in the caller's flags.
constexpr DWORD kSet = OFN_ENABLETEMPLATE | OFN_NOVALIDATE;
constexpr DWORD kClear = OFN_FILEMUSTEXIST;

CString Text(const char* utf8)
{
    return CString(vx::FromUtf8(utf8).c_str());
}

vx::DialogTemplate VorschauDlgTemplate()
{
    // One row of checks below the system part; the skin buttons are hidden
    // until the frame's first look places them over the system's own.
    vx::DialogTemplate t("", 0, 0, 300, 22, WS_CHILD | DS_CONTROL | DS_SETFONT);
    // Wide enough for the captions KDateiOptionDlg's callers give them.
    t.CheckBox(Text("&Podgląd"), vx::kVorschauCheckId, 7, 4, 100, 10)
        .CheckBox(Text("&Tylko do odczytu"), vx::kReadOnlyCheckId, 112, 4, 100, 10)
        .Control("OK", vx::kSkinOkId, "Button", BS_PUSHBUTTON | WS_TABSTOP, 0, 0, 50, 14)
        .Control(Text("Anuluj"), vx::kSkinCancelId, "Button", BS_PUSHBUTTON | WS_TABSTOP, 0, 0, 50, 14);
    for (vx::DialogItem& item : t.items) {
        if (item.id == vx::kSkinOkId || item.id == vx::kSkinCancelId)
            item.style &= ~WS_VISIBLE;
    }
    return t;
}

const bool g_registered = vx::RegisterDialogTemplate(vx::kVorschauDlgTemplate, VorschauDlgTemplate());

// Query 8 of the host with 3: whether the file dialog's focus goes to OK.
LRESULT AskFocusOnOk()
{
    return g_pDLLMainframe ? g_pDLLMainframe->SendMessage(WM_VXBASE, HostQueryFlags, 3) : 0;
}

} // namespace

KDateiVorschauDlg::KDateiVorschauDlg(BOOL openFileDialog, LPCSTR defExt, LPCSTR fileName, DWORD flags,
                                     LPCSTR filter, CWnd* parent)
    : CFileDialog(openFileDialog, defExt, fileName, flags, filter, parent)
{
    SetTemplate(vx::kVorschauDlgTemplate);
    m_ofn.Flags = (m_ofn.Flags | kSet) & ~kClear;
    BindDlgItem(vx::kReadOnlyCheckId, m_chkReadOnly);
    BindDlgItem(vx::kSkinCancelId, m_btnCancel);
    BindDlgItem(vx::kSkinOkId, m_btnOk);
    BindDlgItem(vx::kVorschauCheckId, m_btnVorschau);
    MapCommand(BN_CLICKED, vx::kVorschauCheckId, &KDateiVorschauDlg::OnDatVorVorschauOk);
    MapCommand(BN_CLICKED, vx::kReadOnlyCheckId, &KDateiVorschauDlg::OnDatvorReadonly);
    MapCommand(BN_CLICKED, vx::kSkinOkId, &KDateiVorschauDlg::OnOK2);
    MapCommand(BN_CLICKED, vx::kSkinCancelId, &KDateiVorschauDlg::OnCancel2);
}

KDateiVorschauDlg::~KDateiVorschauDlg()
{
    if (s_pRunning == this)
        s_pRunning = nullptr;
}

INT_PTR KDateiVorschauDlg::DoModal()
{
    if (s_LastDir.IsEmpty()) {
        char here[MAX_PATH] = {};
        if (GetCurrentDirectoryA(sizeof here, here) < sizeof here)
            s_LastDir = here;
    }
    const bool ownStart = !m_ofn.lpstrInitialDir || !*m_ofn.lpstrInitialDir;
    const CString start = s_LastDir;
    if (ownStart)
        m_ofn.lpstrInitialDir = start.GetString();
    INT_PTR result;
    {
        const vx::FreeCursor free;
        result = CFileDialog::DoModal();
    }
    if (ownStart) {
        m_ofn.lpstrInitialDir = nullptr;
        if (result == IDOK && m_ofn.nFileOffset > 0)
            s_LastDir = CString(m_ofn.lpstrFile).Left(std::max(1, m_ofn.nFileOffset - 1));
    }
    if (s_pRunning == this)
        s_pRunning = nullptr;
    return result;
}

BOOL KDateiVorschauDlg::OnInitDialog()
{
    CFileDialog::OnInitDialog();
    if (m_bVorschau)
        s_pRunning = this;
    else
        GetDlgItem(vx::kVorschauCheckId)->ShowWindow(SW_HIDE);
    if (!m_bReadOnly)
        GetDlgItem(vx::kReadOnlyCheckId)->ShowWindow(SW_HIDE);
    CheckDlgButton(vx::kReadOnlyCheckId, (m_ofn.Flags & OFN_READONLY) ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(vx::kVorschauCheckId, KDateiVorschau::s_GlobalOnOff ? BST_CHECKED : BST_UNCHECKED);
    vx::HideSystemButtons(GetParent(), m_rcOk, m_rcCancel);
    if (CWnd* frame = GetParent()) {
        if (CWnd* ok = frame->GetDlgItem(IDOK))
            m_btnOk.SetWindowText(ok->GetWindowTextString());
        if (CWnd* cancel = frame->GetDlgItem(IDCANCEL))
            m_btnCancel.SetWindowText(cancel->GetWindowTextString());
    }
    if (AskFocusOnOk()) {
        GotoDlgCtrl(GetDlgItem(vx::kSkinOkId));
        return FALSE;
    }
    return TRUE;
}

void KDateiVorschauDlg::OnInitDone()
{
    CFileDialog::OnInitDone();
    CWnd* frame = GetParent();
    if (frame && !CVxDialog::RestoreDialogPosition(vx::kVorschauDlgTemplate, frame) &&
        CVxDialog::Get2DisplayEnable()) {
        const CRect place(CVxDialog::Get2DisplayWndRect(frame, TRUE));
        frame->MoveWindow(&place, TRUE);
    }
    m_rcLastFrame.SetRectEmpty();
    SetTimer(kFollowTimer, vx::kSkinFollowMs, nullptr);
}

void KDateiVorschauDlg::OnTimer(UINT_PTR id)
{
    if (id != kFollowTimer) {
        CFileDialog::OnTimer(id);
        return;
    }
    CWnd* frame = GetParent();
    if (!frame)
        return;
    CRect now;
    frame->GetWindowRect(&now);
    if (EqualRect(&now, &m_rcLastFrame))
        return;
    if (m_bVorschau && m_Vorschau.m_hWnd)
        m_Vorschau.Verschieben(0);
    m_rcLastFrame = now;
    ScreenToClient(&now);
    m_btnCancel.MoveWindow(now.right - kFromRight, now.bottom - kCancelFromBottom, m_rcCancel.Width(),
                           m_rcCancel.Height());
    m_btnCancel.ShowWindow(SW_SHOW);
    m_btnOk.MoveWindow(now.right - kFromRight, now.bottom - kOkFromBottom, m_rcOk.Width(), m_rcOk.Height());
    m_btnOk.ShowWindow(SW_SHOW);
    // Moving the preview may have activated it.
    if (CWnd::GetActiveWindow() != frame)
        frame->SetActiveWindow();
}

void KDateiVorschauDlg::OnPaint()
{
    CFileDialog::OnPaint();
}

void KDateiVorschauDlg::OnFileNameChange()
{
    CFileDialog::OnFileNameChange();
    // The drawing is made after the view's own notification has ended.
    PostMessage(vx::kVorschauBildUpdate);
    if (CWnd* frame = GetParent(); frame && frame->GetDlgItem(edt1))
        frame->GetDlgItem(edt1)->SetWindowText(GetPathName());
}

LRESULT KDateiVorschauDlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == vx::kVorschauBildUpdate) {
        BildUpdate();
        return 0;
    }
    return CFileDialog::WindowProc(message, wParam, lParam);
}

void KDateiVorschauDlg::BildUpdate()
{
    if (!m_bVorschau || !m_hWnd)
        return;
    if (!m_Vorschau.m_hWnd) {
        m_Vorschau.Erstellen(this, &m_btnVorschau, 1, vx::kVorschauRight, static_cast<int>(vx::kVorschauDlgTemplate), 1);
        m_Vorschau.Verschieben(1);
    }
    const CString path = GetPathName();
    m_Vorschau.Anzeigen(path, nullptr, nullptr);
}

BOOL KDateiVorschauDlg::OnFileNameOK()
{
    if (!m_bBlattLimit)
        return FALSE;
    KVxFile file(GetPathName());
    if (file.IsValidPage(1) == VxFileNone)
        return TRUE;
    // The edition's limits are the host's matter; a page passes here.
    return FALSE;
}

void KDateiVorschauDlg::OnDatVorVorschauOk()
{
    const int on = IsDlgButtonChecked(vx::kVorschauCheckId) ? 1 : 0;
    m_Vorschau.m_Vorschau.m_OnOff = on;
    KDateiVorschau::s_GlobalOnOff = on;
    if (m_Vorschau.m_hWnd) {
        m_Vorschau.ShowWindow(on ? SW_SHOWNOACTIVATE : SW_HIDE);
        if (on)
            m_Vorschau.Invalidate();
    } else if (on) {
        BildUpdate();
    }
}

void KDateiVorschauDlg::OnDatvorReadonly()
{
    if (IsDlgButtonChecked(vx::kReadOnlyCheckId))
        m_ofn.Flags |= OFN_READONLY;
    else
        m_ofn.Flags &= ~OFN_READONLY;
}

void KDateiVorschauDlg::OnOK2()
{
    if (CWnd* frame = GetParent())
        frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
}

void KDateiVorschauDlg::OnCancel2()
{
    if (CWnd* frame = GetParent())
        frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
}
