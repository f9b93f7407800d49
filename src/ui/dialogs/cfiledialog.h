// CFileDialog: the framework's open and save dialog, in the explorer form
// with a hook and a child template.
//
// The dialog is two windows, as on the original platform: the frame (the
// system part: a folder view, the file name field, the type list, OK and
// Cancel) and, inside it below the system part, the child dialog made from
// the caller's template. The CFileDialog object is the child: its
// GetParent() is the frame, whose children include OK (IDOK), Cancel
// (IDCANCEL) and the file name field (edt1), so that a derived dialog can
// hide and replace them. The folder view is a non-native QFileDialog with
// its own buttons and fields hidden.
//
//   CFileDialog dlg(TRUE, "eld", nullptr, OFN_HIDEREADONLY, "Drawings (*.eld)|*.eld|All files (*.*)|*.*||");
//   if (dlg.DoModal() == IDOK)
//       Open(dlg.GetPathName());
//
// The child gets, in this order: WM_INITDIALOG (OnInitDialog, with the
// frame's controls made), CDN_INITDONE (OnInitDone, with the frame laid out
// around the child), CDN_FOLDERCHANGE (OnFolderChange) and, when a file is
// preselected, CDN_SELCHANGE. Later: CDN_SELCHANGE (OnFileNameChange) when
// the selection in the folder view changes, CDN_FOLDERCHANGE when the folder
// does, CDN_TYPECHANGE (OnTypeChange) when the type does, and at OK
// CDN_FILEOK (OnFileNameOK: non-zero keeps the dialog open). The
// notifications arrive as WM_NOTIFY with an OFNOTIFY record.
#pragma once

#include "platform/framework/cstring.h"
#include "ui/dialogs/cdialog.h"
#include "vxbase_ui_export.h"

#include <memory>

namespace vx {
class FileDialogFrame;
}

// Flags of OPENFILENAME.
constexpr DWORD OFN_READONLY = 0x00000001;
constexpr DWORD OFN_OVERWRITEPROMPT = 0x00000002;
constexpr DWORD OFN_HIDEREADONLY = 0x00000004;
constexpr DWORD OFN_NOCHANGEDIR = 0x00000008;
constexpr DWORD OFN_SHOWHELP = 0x00000010;
constexpr DWORD OFN_ENABLEHOOK = 0x00000020;
constexpr DWORD OFN_ENABLETEMPLATE = 0x00000040;
constexpr DWORD OFN_NOVALIDATE = 0x00000100;
constexpr DWORD OFN_ALLOWMULTISELECT = 0x00000200;
constexpr DWORD OFN_EXTENSIONDIFFERENT = 0x00000400;
constexpr DWORD OFN_PATHMUSTEXIST = 0x00000800;
constexpr DWORD OFN_FILEMUSTEXIST = 0x00001000;
constexpr DWORD OFN_CREATEPROMPT = 0x00002000;
constexpr DWORD OFN_NOREADONLYRETURN = 0x00008000;
constexpr DWORD OFN_EXPLORER = 0x00080000;
constexpr DWORD OFN_ENABLESIZING = 0x00800000;

// Notifications to the child dialog (WM_NOTIFY), and its requests to the frame.
constexpr UINT CDN_FIRST = 0u - 601u;
constexpr UINT CDN_INITDONE = CDN_FIRST - 0;
constexpr UINT CDN_SELCHANGE = CDN_FIRST - 1;
constexpr UINT CDN_FOLDERCHANGE = CDN_FIRST - 2;
constexpr UINT CDN_HELP = CDN_FIRST - 4;
constexpr UINT CDN_FILEOK = CDN_FIRST - 5;
constexpr UINT CDN_TYPECHANGE = CDN_FIRST - 6;
constexpr UINT CDM_GETSPEC = WM_USER + 100;
constexpr UINT CDM_GETFILEPATH = WM_USER + 101;
constexpr UINT CDM_GETFOLDERPATH = WM_USER + 102;
constexpr UINT CDM_SETCONTROLTEXT = WM_USER + 104;
constexpr UINT CDM_HIDECONTROL = WM_USER + 105;

// Controls of the frame.
constexpr int chx1 = 0x410; // read only
constexpr int cmb1 = 0x470; // file types
constexpr int stc2 = 0x441; // "Files of type:"
constexpr int stc3 = 0x442; // "File name:"
constexpr int edt1 = 0x480; // file name
constexpr int lst1 = 0x460; // the folder view

struct OPENFILENAME {
    DWORD lStructSize = sizeof(OPENFILENAME);
    HWND hwndOwner = nullptr;
    // Pairs of description and patterns, each zero-terminated, ending in an
    // empty text; patterns are separated by ";".
    LPCSTR lpstrFilter = nullptr;
    DWORD nFilterIndex = 1; // from 1
    // In: the file to start with; out: the chosen path.
    LPSTR lpstrFile = nullptr;
    DWORD nMaxFile = 0;
    // Out: the chosen name without its folder.
    LPSTR lpstrFileTitle = nullptr;
    DWORD nMaxFileTitle = 0;
    LPCSTR lpstrInitialDir = nullptr;
    LPCSTR lpstrTitle = nullptr;
    DWORD Flags = 0;
    // Out: where the name and the extension begin in lpstrFile (0 without).
    WORD nFileOffset = 0;
    WORD nFileExtension = 0;
    LPCSTR lpstrDefExt = nullptr;
    // The child template's resource id, with OFN_ENABLETEMPLATE.
    LPCSTR lpTemplateName = nullptr;
};
using LPOPENFILENAME = OPENFILENAME*;

struct OFNOTIFY {
    NMHDR hdr;
    LPOPENFILENAME lpOFN;
    LPSTR pszFile;
};

class VXBASE_UI_EXPORT CFileDialog : public CDialog {
public:
    // `filter` in the framework's form: "Description|patterns|...|", which
    // becomes m_ofn's zero-separated form. The flags gain OFN_EXPLORER and
    // OFN_ENABLEHOOK; `fileName` starts in the file name field.
    explicit CFileDialog(BOOL openFileDialog, LPCSTR defExt = nullptr, LPCSTR fileName = nullptr,
                         DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCSTR filter = nullptr,
                         CWnd* parent = nullptr);
    ~CFileDialog() override;

    // IDOK with the chosen path in m_ofn.lpstrFile, or IDCANCEL (the buffer
    // as the dialog left it); -1 when the child template is missing.
    INT_PTR DoModal() override;

    // The chosen file: its path, name, extension (without the dot) and
    // title. While the dialog runs, what the file name field names in the
    // current folder.
    CString GetPathName() const;
    CString GetFileName() const;
    CString GetFileExt() const;
    CString GetFileTitle() const;
    // The folder the dialog shows; empty when it does not run.
    CString GetFolderPath() const;
    BOOL GetReadOnlyPref() const;
    // Sets the child template (OFN_ENABLETEMPLATE).
    void SetTemplate(UINT id);

    OPENFILENAME m_ofn;

protected:
    virtual void OnInitDone();
    virtual void OnFileNameChange();
    virtual void OnFolderChange();
    virtual void OnTypeChange();
    // Non-zero keeps the dialog open.
    virtual BOOL OnFileNameOK();
    // OK and Cancel of the child go to the frame.
    void OnOK() override;
    void OnCancel() override;

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    BOOL m_bOpenFileDialog;
    char m_szFileName[MAX_PATH] = {};
    char m_szFileTitle[64] = {};
    CString m_strFilter;

private:
    friend class vx::FileDialogFrame;
    std::unique_ptr<vx::FileDialogFrame> m_frame;
};
