// Internal; do not include directly.
//
// The frame of a CFileDialog: the system part of the open and save dialog,
// holding the folder view (a QFileDialog without its own buttons and
// fields), the file name field, the type list, OK and Cancel, and the
// child dialog below them.
#pragma once

#include "ui/dialogs/cfiledialog.h"

#include <memory>

class QString;

namespace vx {

class FileDialogFrame final : public CDialog {
public:
    FileDialogFrame(CFileDialog& child, const DialogTemplate& childTemplate);
    ~FileDialogFrame() override;

    // Runs the dialog modally over `parent`; IDOK or IDCANCEL.
    INT_PTR Run(CWnd* parent);
    // The folder shown, and the file the name field names in it (path texts).
    CString Folder() const;
    CString NamedPath() const;
    CString Spec() const;

protected:
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void OnOK() override;
    void OnCancel() override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnGetMinMaxInfo(MINMAXINFO* info) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Private;
    void Layout();
    void Notify(UINT code);
    // Host paths, as the folder view gives them.
    void FolderChanged(const QString& folder);
    void SelectionChanged(const QString& path);
    void TypeChanged();
    std::unique_ptr<Private> d;
};

} // namespace vx
