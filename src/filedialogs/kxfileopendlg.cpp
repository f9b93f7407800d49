#include "filedialogs/kxfileopendlg.h"

#include "platform/files/fileapi.h"
#include "platform/files/filefind.h"
#include "platform/files/hostpath.h"
#include "platform/windows/messagebox.h"
#include "ui/controls/cedit.h"
#include "ui/controls/cstatic.h"
#include "ui/controls/customdraw.h"
#include "ui/dialogs/dialogtemplate.h"
#include "ui/listviews/listview.h"
#include "ui/windows/qtinterop.h"

#include <QFileIconProvider>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QMimeDatabase>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr int kIconSize = 16;

struct SystemIcons {
    HIMAGELIST list = nullptr;
    std::map<std::string, int> byType; // mime type name, or "inode/directory"
};

SystemIcons& Icons()
{
    // Kept for the process, as the desktop's list was.
    static SystemIcons* icons = new SystemIcons;
    if (!icons->list)
        icons->list = ImageList_Create(kIconSize, kIconSize, ILC_COLOR32 | ILC_MASK, 8, 8);
    return *icons;
}

int AddIcon(const QIcon& icon)
{
    QImage image = icon.pixmap(kIconSize, kIconSize).toImage();
    if (image.isNull()) {
        image = QImage(kIconSize, kIconSize, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
    }
    image = image.scaled(kIconSize, kIconSize).convertToFormat(QImage::Format_ARGB32);
    HICON handle = vx::IconFromQImage(image);
    const int index = ImageList_AddIcon(Icons().list, handle);
    DestroyIcon(handle);
    return index;
}

vx::DialogTemplate OpenTemplate(const CString& title)
{
    vx::DialogTemplate t(title, 0, 0, 260, 200);
    t.LText("", KXFileOpenDlg::IDC_FOLDER, 7, 7, 246, 10, SS_PATHELLIPSIS)
        .Control("", KXFileOpenDlg::IDC_FILELIST, "SysListView32",
                 LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SORTASCENDING | WS_BORDER | WS_TABSTOP, 7,
                 20, 246, 134)
        .EditText(KXFileOpenDlg::IDC_FILENAME, 7, 160, 246, 12, ES_AUTOHSCROLL)
        .DefPushButton("OK", IDOK, 149, 179, 50, 14)
        .PushButton("Cancel", IDCANCEL, 203, 179, 50, 14);
    return t;
}

CString Joined(const CString& folder, const CString& name)
{
    if (folder.IsEmpty())
        return name;
    const char last = folder[folder.GetLength() - 1];
    const char sep = folder.Find('\\') >= 0 ? '\\' : '/';
    return last == '\\' || last == '/' ? folder + name : folder + CString(sep) + name;
}

} // namespace

KXFileOpenDlg::KXFileOpenDlg(FileFilter filter, const char* title, const char* folder, const char* pattern,
                             const char* file, CWnd* parent)
    : CDialog(0, parent), m_pFilter(filter), m_strTitle(title ? title : ""), m_strFolder(folder ? folder : ""),
      m_strPattern(pattern && *pattern ? pattern : "*.*"), m_strFile(file ? file : "")
{
    InitModalIndirect(OpenTemplate(m_strTitle), parent);
    BindDlgItem(IDC_FILELIST, m_List);
}

KXFileOpenDlg::~KXFileOpenDlg()
{
    // The list is the process's, for the next dialog too.
    m_Images.Detach();
}

HIMAGELIST KXFileOpenDlg::GetSystemImageListHandle()
{
    return Icons().list;
}

int KXFileOpenDlg::GetFileIconIndex(const char* path)
{
    const QFileInfo info(QString::fromStdString(vx::DiskPath(path ? path : "")));
    static QMimeDatabase* types = new QMimeDatabase;
    const std::string type = info.isDir() ? std::string("inode/directory")
                                          : types->mimeTypeForFile(info, QMimeDatabase::MatchExtension).name().toStdString();
    SystemIcons& icons = Icons();
    if (auto it = icons.byType.find(type); it != icons.byType.end())
        return it->second;
    static QFileIconProvider* provider = new QFileIconProvider;
    QIcon icon = info.isDir() ? provider->icon(QAbstractFileIconProvider::Folder)
                              : QIcon::fromTheme(QString::fromStdString(type).replace(u'/', u'-'));
    if (icon.isNull())
        icon = provider->icon(QAbstractFileIconProvider::File);
    const int index = AddIcon(icon);
    icons.byType[type] = index;
    return index;
}

BOOL KXFileOpenDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    SetDlgItemText(IDC_FOLDER, m_strFolder);
    if (!m_Images.GetSafeHandle())
        m_Images.Attach(GetSystemImageListHandle());
    m_List.SetImageList(&m_Images, LVSIL_SMALL);
    CRect client;
    m_List.GetClientRect(&client);
    m_List.InsertColumn(0, "Name", LVCFMT_LEFT, client.Width() - 90);
    m_List.InsertColumn(1, "Size", LVCFMT_RIGHT, 86);
    Fill();
    return TRUE;
}

void KXFileOpenDlg::Fill()
{
    m_List.DeleteAllItems();
    CFileFind find;
    BOOL more = find.FindFile(Joined(m_strFolder, m_strPattern));
    int selected = -1;
    while (more) {
        more = find.FindNextFile();
        if (find.IsDots() || find.IsDirectory())
            continue;
        const CString path = find.GetFilePath();
        if (m_pFilter && !m_pFilter(path))
            continue;
        const int row = m_List.InsertItem(m_List.GetItemCount(), find.GetFileName(), GetFileIconIndex(path));
        CString size;
        size.Format("%llu", static_cast<unsigned long long>(find.GetLength()));
        m_List.SetItemText(row, 1, size);
        if (!m_strFile.IsEmpty() && find.GetFileName().CompareNoCase(m_strFile) == 0)
            selected = row;
    }
    // Sorted lists place rows themselves: the chosen file is found again.
    if (selected >= 0) {
        for (int i = 0; i < m_List.GetItemCount(); ++i) {
            if (m_List.GetItemText(i, 0).CompareNoCase(m_strFile) == 0) {
                m_List.SetItemState(i, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
                m_List.EnsureVisible(i, FALSE);
            }
        }
    }
}

void KXFileOpenDlg::OnItemchangedFilelist(NMHDR* header, LRESULT* result)
{
    const auto* change = reinterpret_cast<const NMLISTVIEW*>(header);
    if (change->iItem >= 0 && (change->uNewState & LVIS_SELECTED) && !(change->uOldState & LVIS_SELECTED))
        SetDlgItemText(IDC_FILENAME, m_List.GetItemText(change->iItem, 0));
    if (result)
        *result = 0;
}

void KXFileOpenDlg::OnOK()
{
    CString name = GetDlgItemText(IDC_FILENAME);
    name.Trim();
    if (name.IsEmpty())
        return;
    const bool absolute = name[0] == '/' || name[0] == '\\' || (name.GetLength() > 1 && name[1] == ':');
    const CString path = absolute ? name : Joined(m_strFolder, name);
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) ||
        (m_pFilter && !m_pFilter(path))) {
        // Only what the list offers can be chosen.
        MessageBeep(MB_ICONEXCLAMATION);
        return;
    }
    m_strPath = path;
    m_strFile = path.Mid(std::max(path.ReverseFind('\\'), path.ReverseFind('/')) + 1);
    CDialog::OnOK();
}

LRESULT KXFileOpenDlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NOTIFY && lParam) {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (header->idFrom == static_cast<UINT_PTR>(IDC_FILELIST)) {
            if (header->code == LVN_ITEMCHANGED) {
                LRESULT result = 0;
                OnItemchangedFilelist(header, &result);
                return result;
            }
            if (header->code == NM_DBLCLK || header->code == NM_RETURN) {
                if (m_List.GetNextItem(-1, LVNI_SELECTED) >= 0)
                    OnOK();
                return 0;
            }
        }
    }
    return CDialog::WindowProc(message, wParam, lParam);
}
