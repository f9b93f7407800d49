#include "ui/dialogs/cfiledialog.h"

#include "ui/controls/cbutton.h"
#include "ui/dialogs/filedialogframe_p.h"

#include <cstring>

CFileDialog::CFileDialog(BOOL openFileDialog, LPCSTR defExt, LPCSTR fileName, DWORD flags, LPCSTR filter,
                         CWnd* parent)
    : CDialog(0, parent), m_bOpenFileDialog(openFileDialog)
{
    m_ofn.Flags = flags | OFN_EXPLORER | OFN_ENABLEHOOK;
    m_ofn.lpstrFile = m_szFileName;
    m_ofn.nMaxFile = sizeof m_szFileName;
    m_ofn.lpstrFileTitle = m_szFileTitle;
    m_ofn.nMaxFileTitle = sizeof m_szFileTitle;
    m_ofn.lpstrDefExt = defExt;
    if (fileName)
        std::strncpy(m_szFileName, fileName, sizeof m_szFileName - 1);
    if (filter) {
        // "|" separates the texts; the list ends in an empty one.
        m_strFilter = filter;
        m_strFilter.Replace('|', '\0');
        // Ended even when the caller left out the closing "||".
        m_strFilter += '\0';
        m_strFilter += '\0';
        m_ofn.lpstrFilter = m_strFilter.GetString();
    }
}

CFileDialog::~CFileDialog() = default;

void CFileDialog::SetTemplate(UINT id)
{
    m_ofn.Flags |= OFN_ENABLETEMPLATE;
    m_ofn.lpTemplateName = MAKEINTRESOURCE(id);
}

INT_PTR CFileDialog::DoModal()
{
    if (m_frame)
        return -1;
    vx::DialogTemplate childTemplate("", 0, 0, 0, 0, WS_CHILD | DS_CONTROL | DS_SETFONT);
    if (m_ofn.Flags & OFN_ENABLETEMPLATE) {
        const UINT id = IS_INTRESOURCE(m_ofn.lpTemplateName)
                            ? static_cast<UINT>(reinterpret_cast<ULONG_PTR>(m_ofn.lpTemplateName))
                            : 0;
        const vx::DialogTemplate* found = vx::FindDialogTemplate(id);
        if (!found) {
            CString text;
            text.Format("file dialog: child template %u missing", id);
            vx::ReportDialogError(text);
            return -1;
        }
        childTemplate = *found;
        m_nIDTemplate = id;
    }
    m_frame = std::make_unique<vx::FileDialogFrame>(*this, childTemplate);
    INT_PTR result = m_frame->Run(m_pParentWnd);
    if (m_hWnd)
        DestroyWindow();
    m_frame.reset();
    // A frame that could not be made ends as Cancel, as the platform's call
    // answered FALSE.
    return result == IDOK ? IDOK : IDCANCEL;
}

CString CFileDialog::GetPathName() const
{
    if (m_frame && m_hWnd)
        return m_frame->NamedPath();
    return m_ofn.lpstrFile ? CString(m_ofn.lpstrFile) : CString();
}

CString CFileDialog::GetFileName() const
{
    if (m_frame && m_hWnd)
        return m_frame->Spec();
    if (!m_ofn.lpstrFile || !m_ofn.nFileOffset)
        return m_ofn.lpstrFileTitle ? CString(m_ofn.lpstrFileTitle) : CString();
    return CString(m_ofn.lpstrFile + m_ofn.nFileOffset);
}

CString CFileDialog::GetFileExt() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind('.');
    return dot < 0 ? CString() : name.Mid(dot + 1);
}

CString CFileDialog::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind('.');
    return dot < 0 ? name : name.Left(dot);
}

CString CFileDialog::GetFolderPath() const
{
    return m_frame && m_hWnd ? m_frame->Folder() : CString();
}

BOOL CFileDialog::GetReadOnlyPref() const
{
    return (m_ofn.Flags & OFN_READONLY) ? TRUE : FALSE;
}

void CFileDialog::OnInitDone() {}
void CFileDialog::OnFileNameChange() {}
void CFileDialog::OnFolderChange() {}
void CFileDialog::OnTypeChange() {}

BOOL CFileDialog::OnFileNameOK()
{
    return FALSE;
}

void CFileDialog::OnOK()
{
    if (CWnd* frame = GetParent())
        frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
}

void CFileDialog::OnCancel()
{
    if (CWnd* frame = GetParent())
        frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
}

LRESULT CFileDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NOTIFY && lParam) {
        const auto* note = reinterpret_cast<const OFNOTIFY*>(lParam);
        if (m_frame && note->hdr.hwndFrom == m_frame->m_hWnd) {
            switch (note->hdr.code) {
            case CDN_INITDONE:
                OnInitDone();
                return 0;
            case CDN_SELCHANGE:
                OnFileNameChange();
                return 0;
            case CDN_FOLDERCHANGE:
                OnFolderChange();
                return 0;
            case CDN_TYPECHANGE:
                OnTypeChange();
                return 0;
            case CDN_FILEOK:
                return OnFileNameOK();
            default:
                break;
            }
        }
    }
    return CDialog::WindowProc(message, wParam, lParam);
}
