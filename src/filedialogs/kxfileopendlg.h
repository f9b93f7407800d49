// KXFileOpenDlg: a plain dialog that lists the files of one folder with
// the desktop's icons and lets the user pick one. A callback chooses which
// files are listed.
//
//   int PagesOnly(const char* path) { return KVxFile(path).IsValidPage(1) != VxFileNone; }
//   KXFileOpenDlg dlg(PagesOnly, "Open page", "C:\\Projekte\\Demo", "*.*", "", this);
//   if (dlg.DoModal() == IDOK)
//       OpenPage(dlg.GetPathName());
//
// Folders are not listed; a double click or Enter on a file ends the
// dialog with it, as OK does.
#pragma once

#include "platform/framework/cstring.h"
#include "ui/dialogs/cdialog.h"
#include "ui/images/cimagelist.h"
#include "ui/listviews/clistctrl.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KXFileOpenDlg : public CDialog {
public:
    // Non-zero when the file (a path text) is to be listed.
    using FileFilter = int (*)(const char* path);

    // `filter` may be null (every file). `pattern` is a wildcard such as
    // "*.eld" ("*.*" when empty); `file` is selected if it is listed.
    KXFileOpenDlg(FileFilter filter, const char* title, const char* folder, const char* pattern, const char* file,
                  CWnd* parent = nullptr);
    ~KXFileOpenDlg() override;

    // The chosen file after IDOK (a path text), else "".
    CString GetPathName() const { return m_strPath; }

    // The list of the desktop's small icons (16 x 16) the file lists use,
    // made at the first need and kept for the process.
    static HIMAGELIST GetSystemImageListHandle();
    // The index in that list of the icon of `path`'s type (a folder's icon
    // for a folder); new types add their icon.
    static int GetFileIconIndex(const char* path);

    // Control ids of the dialog.
    enum { IDC_FOLDER = 1001, IDC_FILELIST = 1002, IDC_FILENAME = 1003 };

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The selection moved: the name field follows it.
    void OnItemchangedFilelist(NMHDR* header, LRESULT* result);

private:
    void Fill();

    FileFilter m_pFilter;
    CString m_strTitle;
    CString m_strFolder;
    CString m_strPattern;
    CString m_strFile;
    CString m_strPath;
    CListCtrl m_List;
    CImageList m_Images;
};
