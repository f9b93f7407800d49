#include "filedialogs/cvxfiledialog.h"

#include "filedialogs/freecursor_p.h"

#include "base/vxglobals.h"
#include "look/cvxdialog.h"
#include "platform/files/fileapi.h"
#include "platform/files/hostpath.h"
#include "platform/shell/shellexecute.h"
#include "platform/windows/winuser.h"
#include "ui/dialogs/dialogtemplate.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace {

constexpr UINT_PTR kFollowTimer = 1;
// The skin buttons stand this far left of the frame's right edge.
constexpr int kFromRight = 99;
// OK stands one row above Cancel.
constexpr int kRowPitch = 30;

vx::DialogTemplate SkinTemplate()
{
    // Only the two buttons, hidden until the frame's first look places
    // them over the system's own.
    vx::DialogTemplate t("", 0, 0, 0, 0, WS_CHILD | DS_CONTROL | DS_SETFONT);
    t.Control("OK", vx::kSkinOkId, "Button", BS_PUSHBUTTON | WS_TABSTOP, 0, 0, 50, 14);
    t.Control("Anuluj", vx::kSkinCancelId, "Button", BS_PUSHBUTTON | WS_TABSTOP, 0, 0, 50, 14);
    for (vx::DialogItem& item : t.items)
        item.style &= ~WS_VISIBLE;
    return t;
}

const bool g_registered = vx::RegisterDialogTemplate(vx::kVxFileDialogTemplate, SkinTemplate());

struct HideState {
    CRect* ok;
    CRect* cancel;
};

BOOL HideProc(HWND hwnd, LPARAM lParam)
{
    auto* state = reinterpret_cast<HideState*>(lParam);
    CWnd* w = CWnd::FromHandle(hwnd);
    const int id = w ? w->GetDlgCtrlID() : 0;
    if (id != IDOK && id != IDCANCEL)
        return TRUE;
    CRect& kept = id == IDOK ? *state->ok : *state->cancel;
    if (id == IDCANCEL || kept.IsRectEmpty()) {
        w->GetWindowRect(&kept);
        kept.left -= 7;
    }
    w->ShowWindow(SW_HIDE);
    return id == IDOK;
}

} // namespace

namespace vx {

void HideSystemButtons(CWnd* frame, CRect& okRect, CRect& cancelRect)
{
    if (!frame || !frame->m_hWnd)
        return;
    HideState state{&okRect, &cancelRect};
    EnumChildWindows(frame->m_hWnd, HideProc, reinterpret_cast<LPARAM>(&state));
}

} // namespace vx

CVxFileDialog::CVxFileDialog(BOOL openFileDialog, LPCSTR defExt, LPCSTR fileName, DWORD flags, LPCSTR filter,
                             CWnd* parent)
    : CFileDialog(openFileDialog, defExt, fileName, flags, filter, parent)
{
    SetTemplate(vx::kVxFileDialogTemplate);
    BindDlgItem(vx::kSkinCancelId, m_btnCancel);
    BindDlgItem(vx::kSkinOkId, m_btnOk);
    MapCommand(BN_CLICKED, vx::kSkinOkId, &CVxFileDialog::OnOK2);
    MapCommand(BN_CLICKED, vx::kSkinCancelId, &CVxFileDialog::OnCancel2);
}

CVxFileDialog::~CVxFileDialog() = default;

void CVxFileDialog::SetButtonOffset(int x, int y)
{
    m_nOffsetX = x;
    m_nOffsetY = y;
}

INT_PTR CVxFileDialog::DoModal()
{
    const vx::FreeCursor free;
    return CFileDialog::DoModal();
}

BOOL CVxFileDialog::XEnumChildProc(HWND hwnd, LPARAM self)
{
    auto* dialog = reinterpret_cast<CVxFileDialog*>(self);
    HideState state{&dialog->m_rcOk, &dialog->m_rcCancel};
    return HideProc(hwnd, reinterpret_cast<LPARAM>(&state));
}

BOOL CVxFileDialog::OnInitDialog()
{
    CFileDialog::OnInitDialog();
    CWnd* frame = GetParent();
    if (frame) {
        EnumChildWindows(frame->m_hWnd, &CVxFileDialog::XEnumChildProc, reinterpret_cast<LPARAM>(this));
        // The skin buttons say what the system's said.
        if (CWnd* ok = frame->GetDlgItem(IDOK); ok && m_btnOk.m_hWnd)
            m_btnOk.SetWindowText(ok->GetWindowTextString());
        if (CWnd* cancel = frame->GetDlgItem(IDCANCEL); cancel && m_btnCancel.m_hWnd)
            m_btnCancel.SetWindowText(cancel->GetWindowTextString());
    }
    return TRUE;
}

void CVxFileDialog::OnInitDone()
{
    CFileDialog::OnInitDone();
    CWnd* frame = GetParent();
    if (frame && CVxDialog::Get2DisplayEnable()) {
        const CRect place(CVxDialog::Get2DisplayWndRect(frame, TRUE));
        frame->MoveWindow(&place, TRUE);
    }
    m_nState = 0;
    m_rcLastFrame.SetRectEmpty();
    SetTimer(kFollowTimer, vx::kSkinFollowMs, nullptr);
}

bool CVxFileDialog::FollowFrame(int okTop, int cancelTop)
{
    CWnd* frame = GetParent();
    if (!frame)
        return false;
    CRect now;
    frame->GetWindowRect(&now);
    if (EqualRect(&now, &m_rcLastFrame))
        return false;
    m_rcLastFrame = now;
    ScreenToClient(&now);
    const int left = now.right - kFromRight;
    if (m_btnCancel.m_hWnd) {
        m_btnCancel.MoveWindow(left + m_nOffsetX, now.bottom + cancelTop, m_rcCancel.Width(), m_rcCancel.Height());
        m_btnCancel.ShowWindow(SW_SHOW);
    }
    if (m_btnOk.m_hWnd) {
        m_btnOk.MoveWindow(left + m_nOffsetX, now.bottom + okTop, m_rcOk.Width(), m_rcOk.Height());
        m_btnOk.ShowWindow(SW_SHOW);
    }
    return true;
}

void CVxFileDialog::OnTimer(UINT_PTR id)
{
    if (id != kFollowTimer) {
        CFileDialog::OnTimer(id);
        return;
    }
    FollowFrame(m_nOffsetY - kRowPitch, m_nOffsetY);
}

void CVxFileDialog::OnOK2()
{
    CWnd* frame = GetParent();
    if (!frame)
        return;
    if (m_nMode == 1) {
        const CString name = frame->GetDlgItem(edt1) ? frame->GetDlgItem(edt1)->GetWindowTextString() : CString();
        if (name.GetLength() == 3 && name[1] == ':' && name[2] == '\\' && m_ofn.lpstrFile && m_ofn.nMaxFile > 2) {
            // A drive alone: the dialog ends by Cancel with the drive as
            // its answer.
            std::memcpy(m_ofn.lpstrFile, name.GetString(), 2);
            m_ofn.lpstrFile[2] = 0;
            m_nMode = 2;
            frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
            return;
        }
    }
    frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
}

void CVxFileDialog::OnCancel2()
{
    if (CWnd* frame = GetParent())
        frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
}

CString CVxFileDialog::GetFileExtShell(const char* ext)
{
    // A file of the type is made beside the suite's settings (a folder the
    // library writes to anyway), else in the temporary folder.
    CString folder(g_vexalprofiledir);
    const int cut = std::max(folder.ReverseFind('\\'), folder.ReverseFind('/'));
    folder = cut > 0 ? folder.Left(cut) : CString();
    if (folder.IsEmpty() || !(GetFileAttributesA(folder) & FILE_ATTRIBUTE_DIRECTORY) ||
        GetFileAttributesA(folder) == INVALID_FILE_ATTRIBUTES) {
        const char* tmp = std::getenv("TMPDIR");
        folder = tmp && *tmp ? tmp : "/tmp";
    }
    const CString probe = folder + "/@@@temp." + (ext ? ext : "");
    if (!std::ofstream(vx::HostPath(probe.GetString()), std::ios::binary))
        return CString();
    char program[MAX_PATH] = {};
    const auto answer = reinterpret_cast<std::intptr_t>(FindExecutableA(probe, nullptr, program));
    DeleteFileA(probe);
    return answer > 32 ? CString(program) : CString();
}
