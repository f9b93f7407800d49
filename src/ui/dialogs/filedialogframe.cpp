#include "ui/dialogs/filedialogframe_p.h"

#include "platform/files/hostpath.h"
#include "platform/windows/ccombobox.h"
#include "platform/windows/messagebox.h"
#include "platform/windows/sysmetrics.h"
#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/windows/qtinterop.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QItemSelectionModel>
#include <QListView>
#include <QPointer>

#include <algorithm>
#include <cstring>
#include <functional>
#include <unistd.h>
#include <utility>
#include <vector>

namespace vx {

namespace {

constexpr int kMargin = 8;
constexpr int kRow = 30;
constexpr int kLabelWidth = 96;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 23;
constexpr int kFieldHeight = 22;
// OK and Cancel stand where the system's dialog has them, measured from the
// corner of the system part: their left edge 92 in from the right, Cancel's
// top 42 up from the bottom. Skinned dialogs lay their buttons over them by
// these distances.
constexpr int kButtonsFromRight = 92;
constexpr int kRowsFromBottom = 12;

// The folder view: a QFileDialog whose own buttons and fields are hidden.
// What would end it (a double click on a file, Enter in the list, Esc) goes
// to the frame instead, as the system's view hands it to its dialog.
class FolderView final : public QFileDialog {
public:
    FolderView(QWidget* parent, std::function<void()> onAccept, std::function<void()> onReject)
        : QFileDialog(parent, Qt::Widget), m_onAccept(std::move(onAccept)), m_onReject(std::move(onReject))
    {
        // A dialog makes itself a window whatever it is asked: it is a
        // child of the frame's place here.
        setWindowFlags(Qt::Widget);
        setOption(QFileDialog::DontUseNativeDialog);
        setSizeGripEnabled(false);
        for (const char* name : {"buttonBox", "fileNameEdit", "fileNameLabel", "fileTypeCombo", "fileTypeLabel"}) {
            if (QWidget* part = findChild<QWidget*>(QString::fromLatin1(name)))
                part->hide();
        }
    }
    void accept() override
    {
        if (m_onAccept)
            m_onAccept();
    }
    void reject() override
    {
        if (m_onReject)
            m_onReject();
    }
    void done(int) override {}

private:
    std::function<void()> m_onAccept;
    std::function<void()> m_onReject;
};

// The patterns of one filter entry as the view takes them: "*.*" is
// everything, as it was on the original.
QString ViewPatterns(const CString& patterns)
{
    QStringList out;
    for (const QString& one : ToQString(patterns.GetString()).split(u';', Qt::SkipEmptyParts)) {
        const QString p = one.trimmed();
        out << (p == QLatin1String("*.*") ? QStringLiteral("*") : p);
    }
    return out.isEmpty() ? QStringLiteral("*") : out.join(u' ');
}

QString HostQ(const std::string& host)
{
    return QString::fromStdString(host);
}

CString TextOfHost(const QString& host)
{
    return CString(PathTextFromHost(host.toStdString()).c_str());
}

bool HasWildcard(const CString& text)
{
    return text.FindOneOf("*?") >= 0;
}

bool IsAbsoluteText(const CString& text)
{
    return (text.GetLength() >= 1 && (text[0] == '/' || text[0] == '\\')) ||
           (text.GetLength() >= 2 && text[1] == ':');
}

// Copies `text` into a caller's buffer of `size` bytes; the size it needs
// with its zero, or -1 when it does not fit.
LRESULT CopyOut(const CString& text, WPARAM size, LPARAM buffer)
{
    const auto need = static_cast<LRESULT>(text.GetLength() + 1);
    if (!buffer || static_cast<LRESULT>(size) < need)
        return need;
    std::memcpy(reinterpret_cast<char*>(buffer), text.GetString(), static_cast<std::size_t>(need));
    return need;
}

} // namespace

struct FileDialogFrame::Private {
    CFileDialog& child;
    DialogTemplate childTemplate;
    QPointer<FolderView> view;
    QString folder; // host path
    std::vector<std::pair<CString, CString>> filters;
    CSize childSize;
    int systemHeight = 0; // of the system part at its smallest
    bool notifying = false;
    bool ready = false;
    // Where the child's own controls begin (child coordinates).
    int childTop = 0;
    // The path being confirmed, while CDN_FILEOK asks the child.
    CString accepted;
};

FileDialogFrame::FileDialogFrame(CFileDialog& child, const DialogTemplate& childTemplate)
    : d(std::make_unique<Private>(Private{child, childTemplate, {}, {}, {}, {}, 0, false, false, 0, {}}))
{
    // The filter pairs: description and patterns, zero-separated.
    if (const char* f = child.m_ofn.lpstrFilter) {
        while (*f) {
            const CString description(f);
            f += description.GetLength() + 1;
            if (!*f)
                break;
            const CString patterns(f);
            f += patterns.GetLength() + 1;
            d->filters.emplace_back(description, patterns);
        }
    }
}

FileDialogFrame::~FileDialogFrame() = default;

INT_PTR FileDialogFrame::Run(CWnd* parent)
{
    const OPENFILENAME& ofn = d->child.m_ofn;
    const bool open = d->child.m_bOpenFileDialog;
    CString title = ofn.lpstrTitle ? CString(ofn.lpstrTitle) : CString(open ? "Open" : "Save As");
    DialogTemplate t(title, 0, 0, 300, 200,
                     WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | DS_MODALFRAME | DS_SETFONT);
    // Tab order: the name, the type, the read-only check, the buttons.
    t.LText("File &name:", stc3, 7, 150, 50, 10)
        .EditText(edt1, 60, 148, 170, 12, ES_AUTOHSCROLL)
        .LText("Files of &type:", stc2, 7, 166, 50, 10)
        .ComboBox(cmb1, 60, 164, 170, 100, CBS_DROPDOWNLIST | WS_VSCROLL)
        .CheckBox("Open as &read-only", chx1, 60, 182, 120, 10)
        .DefPushButton(open ? "&Open" : "&Save", IDOK, 240, 148, 50, 14)
        .PushButton("Cancel", IDCANCEL, 240, 164, 50, 14)
        .Control("", lst1, "Static", WS_VISIBLE, 7, 7, 286, 136);
    InitModalIndirect(t, parent);
    return DoModal();
}

BOOL FileDialogFrame::OnInitDialog()
{
    CDialog::OnInitDialog();
    OPENFILENAME& ofn = d->child.m_ofn;
    CRect client;
    GetClientRect(&client);
    d->systemHeight = client.Height();

    // The type list.
    if (auto* types = static_cast<CComboBox*>(GetDlgItem(cmb1))) {
        for (const auto& [description, patterns] : d->filters)
            types->AddString(description);
        const int index = d->filters.empty() ? -1
                                             : std::clamp(static_cast<int>(ofn.nFilterIndex) - 1, 0,
                                                          static_cast<int>(d->filters.size()) - 1);
        types->SetCurSel(index);
        if (index >= 0)
            ofn.nFilterIndex = static_cast<DWORD>(index + 1);
    }
    if (ofn.Flags & OFN_HIDEREADONLY)
        GetDlgItem(chx1)->ShowWindow(SW_HIDE);
    else
        CheckDlgButton(chx1, (ofn.Flags & OFN_READONLY) ? BST_CHECKED : BST_UNCHECKED);

    // Where it starts: the folder of the given file, the initial folder, or
    // the current one.
    CString start = ofn.lpstrFile ? CString(ofn.lpstrFile) : CString();
    QString folder;
    CString name = start;
    if (!start.IsEmpty()) {
        const QFileInfo given(HostQ(HostPath(start.GetString())));
        const int cut = std::max(start.ReverseFind('\\'), start.ReverseFind('/'));
        if (cut >= 0 && given.dir().exists()) {
            folder = given.absolutePath();
            name = start.Mid(cut + 1);
        }
    }
    if (folder.isEmpty() && ofn.lpstrInitialDir && *ofn.lpstrInitialDir) {
        const QString initial = HostQ(DiskPath(ofn.lpstrInitialDir));
        if (QFileInfo(initial).isDir())
            folder = initial;
    }
    if (folder.isEmpty())
        folder = QDir::currentPath();
    SetDlgItemText(edt1, name);

    // The folder view fills the place held for it.
    CWnd* place = GetDlgItem(lst1);
    if (QWidget* host = WidgetOfWindow(place)) {
        const HWND self = m_hWnd;
        d->view = new FolderView(
            host, [self] { ::SendMessageA(self, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0); },
            [self] { ::SendMessageA(self, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0); });
        d->view->setAcceptMode(d->child.m_bOpenFileDialog ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
        d->view->setFileMode(QFileDialog::AnyFile);
        if (!d->filters.empty())
            d->view->setNameFilter(ViewPatterns(d->filters[ofn.nFilterIndex - 1].second));
        d->view->setDirectory(folder);
        d->view->show();
    }
    d->folder = folder;

    // The child covers the frame's client area beneath the system part's
    // controls; its own controls stand below the system part, so that a
    // derived dialog can put its controls anywhere, over the system part
    // too (as the skinned buttons do).
    // The system part is laid out first, so that the child finds the
    // buttons at their size when it starts.
    Layout();
    DialogTemplate childTemplate = d->childTemplate;
    childTemplate.style = (childTemplate.style & ~(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME |
                                                    DS_MODALFRAME | WS_VISIBLE)) |
                          WS_CHILD | DS_CONTROL | DS_SETFONT;
    childTemplate.x = 0;
    childTemplate.y = 0;
    CWnd* const owner = d->child.m_pParentWnd;
    const BOOL made = d->child.CreateIndirect(childTemplate, this);
    d->child.m_pParentWnd = owner;
    if (!made || !IsWindow(m_hWnd))
        return FALSE;
    CRect childRect;
    d->child.GetWindowRect(&childRect);
    d->childSize = childRect.Size();
    for (CWnd* c = d->child.GetWindow(GW_CHILD); c; c = c->GetWindow(GW_HWNDNEXT)) {
        CRect r;
        c->GetWindowRect(&r);
        d->child.ScreenToClient(&r);
        c->MoveWindow(r.left, r.top + d->systemHeight, r.Width(), r.Height(), FALSE);
    }
    d->childTop = d->systemHeight;

    // The frame grows to hold the child, about the same centre.
    CRect frame;
    GetWindowRect(&frame);
    const int grow = d->childSize.cy;
    const int widen = std::max(0, static_cast<int>(d->childSize.cx) - client.Width());
    CRect grown(frame.left - widen / 2, frame.top - grow / 2, frame.right - widen / 2 + widen,
                frame.bottom - grow / 2 + grow);
    // Centred over a small owner it may reach past the screen's edge: it is
    // kept on the screen, its top left corner first.
    const CRect screen(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    grown.OffsetRect(std::min(0, static_cast<int>(screen.right - grown.right)),
                     std::min(0, static_cast<int>(screen.bottom - grown.bottom)));
    grown.OffsetRect(std::max(0, static_cast<int>(screen.left - grown.left)),
                     std::max(0, static_cast<int>(screen.top - grown.top)));
    MoveWindow(grown.left, grown.top, grown.Width(), grown.Height(), FALSE);
    d->child.SetWindowPos(&wndBottom, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    Layout();
    d->child.ShowWindow(SW_SHOW);
    d->ready = true;
    Notify(CDN_INITDONE);
    Notify(CDN_FOLDERCHANGE);
    if (d->view) {
        // The selection, not the current item, is what the platform reports.
        if (auto* list = d->view->findChild<QAbstractItemView*>(QStringLiteral("listView"))) {
            QItemSelectionModel* selection = list->selectionModel();
            QObject::connect(selection, &QItemSelectionModel::selectionChanged, d->view, [this, selection] {
                const QModelIndexList rows = selection->selectedRows();
                SelectionChanged(rows.isEmpty() ? QString()
                                                : rows.front().data(QFileSystemModel::FilePathRole).toString());
            });
        }
        QObject::connect(d->view, &QFileDialog::directoryEntered, d->view,
                         [this](const QString& dir) { FolderChanged(dir); });
        if (!name.IsEmpty() && !HasWildcard(name))
            d->view->selectFile(HostQ(HostPath(name.GetString())));
    }
    if (CWnd* field = GetDlgItem(edt1))
        GotoDlgCtrl(field);
    return FALSE;
}

void FileDialogFrame::Layout()
{
    if (!m_hWnd)
        return;
    CRect client;
    GetClientRect(&client);
    const int width = client.Width();
    const bool readOnly = GetDlgItem(chx1) && (GetDlgItem(chx1)->GetStyle() & WS_VISIBLE);
    const int rows = readOnly ? 3 : 2;
    const int bottom = client.Height() - d->childSize.cy; // where the child begins
    const int rowsTop = bottom - kRowsFromBottom - rows * kRow;
    const int fieldLeft = kMargin + kLabelWidth;
    const int buttonLeft = width - kButtonsFromRight;
    const int fieldWidth = std::max(40, buttonLeft - kMargin - fieldLeft);
    auto place = [this](int id, int x, int y, int cx, int cy) {
        if (CWnd* w = GetDlgItem(id))
            w->MoveWindow(x, y, cx, cy, TRUE);
    };
    const int viewHeight = std::max(40, rowsTop - 2 * kMargin);
    place(lst1, kMargin, kMargin, width - 2 * kMargin, viewHeight);
    if (d->view)
        d->view->setGeometry(0, 0, width - 2 * kMargin, viewHeight);
    place(stc3, kMargin, rowsTop + 4, kLabelWidth - 4, 16);
    place(edt1, fieldLeft, rowsTop + 1, fieldWidth, kFieldHeight);
    place(IDOK, buttonLeft, rowsTop, kButtonWidth, kButtonHeight);
    place(stc2, kMargin, rowsTop + kRow + 4, kLabelWidth - 4, 16);
    place(cmb1, fieldLeft, rowsTop + kRow + 1, fieldWidth, 200);
    place(IDCANCEL, buttonLeft, rowsTop + kRow, kButtonWidth, kButtonHeight);
    place(chx1, fieldLeft, rowsTop + 2 * kRow + 2, fieldWidth, 18);
    if (d->child.m_hWnd) {
        d->child.MoveWindow(0, 0, width, client.Height(), TRUE);
        // The child's controls below the system part move with its bottom.
        const int shift = bottom - d->childTop;
        if (shift) {
            for (CWnd* c = d->child.GetWindow(GW_CHILD); c; c = c->GetWindow(GW_HWNDNEXT)) {
                CRect r;
                c->GetWindowRect(&r);
                d->child.ScreenToClient(&r);
                if (r.top >= d->childTop)
                    c->MoveWindow(r.left, r.top + shift, r.Width(), r.Height(), TRUE);
            }
            d->childTop = bottom;
        }
    }
}

void FileDialogFrame::OnSize(UINT type, int cx, int cy)
{
    CDialog::OnSize(type, cx, cy);
    Layout();
}

void FileDialogFrame::OnGetMinMaxInfo(MINMAXINFO* info)
{
    CRect window;
    CRect client;
    GetWindowRect(&window);
    GetClientRect(&client);
    const int frameX = window.Width() - client.Width();
    const int frameY = window.Height() - client.Height();
    info->ptMinTrackSize.x = std::max(360, static_cast<int>(d->childSize.cx)) + frameX;
    info->ptMinTrackSize.y = 220 + d->childSize.cy + frameY;
}

void FileDialogFrame::Notify(UINT code)
{
    if (!d->child.m_hWnd || d->notifying)
        return;
    OPENFILENAME& ofn = d->child.m_ofn;
    OFNOTIFY note{};
    note.hdr.hwndFrom = m_hWnd;
    note.hdr.idFrom = 0;
    note.hdr.code = code;
    note.lpOFN = &ofn;
    note.pszFile = ofn.lpstrFile;
    d->notifying = true;
    d->child.SendMessage(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&note));
    d->notifying = false;
}

void FileDialogFrame::FolderChanged(const QString& folder)
{
    if (folder == d->folder)
        return;
    d->folder = folder;
    Notify(CDN_FOLDERCHANGE);
}

void FileDialogFrame::SelectionChanged(const QString& path)
{
    const QFileInfo info(path);
    if (info.isFile())
        SetDlgItemText(edt1, TextOfHost(info.fileName()));
    Notify(CDN_SELCHANGE);
}

void FileDialogFrame::TypeChanged()
{
    auto* types = static_cast<CComboBox*>(GetDlgItem(cmb1));
    const int index = types ? types->GetCurSel() : -1;
    if (index < 0 || index >= static_cast<int>(d->filters.size()))
        return;
    d->child.m_ofn.nFilterIndex = static_cast<DWORD>(index + 1);
    if (d->view)
        d->view->setNameFilter(ViewPatterns(d->filters[static_cast<std::size_t>(index)].second));
    Notify(CDN_TYPECHANGE);
}

CString FileDialogFrame::Folder() const
{
    return TextOfHost(d->folder);
}

CString FileDialogFrame::Spec() const
{
    if (!d->accepted.IsEmpty())
        return d->accepted.Mid(d->accepted.ReverseFind('/') + 1);
    return const_cast<FileDialogFrame*>(this)->GetDlgItemText(edt1);
}

CString FileDialogFrame::NamedPath() const
{
    if (!d->accepted.IsEmpty())
        return d->accepted;
    CString name = Spec();
    name.Trim();
    if (name.IsEmpty())
        return CString();
    if (IsAbsoluteText(name))
        return TextOfHost(HostQ(DiskPath(name.GetString())));
    return TextOfHost(QDir(d->folder).filePath(HostQ(HostPath(name.GetString()))));
}

BOOL FileDialogFrame::OnCommand(WPARAM wParam, LPARAM lParam)
{
    if (LOWORD(wParam) == cmb1 && HIWORD(wParam) == CBN_SELCHANGE) {
        TypeChanged();
        return TRUE;
    }
    return CDialog::OnCommand(wParam, lParam);
}

void FileDialogFrame::OnCancel()
{
    EndDialog(IDCANCEL);
}

void FileDialogFrame::OnOK()
{
    OPENFILENAME& ofn = d->child.m_ofn;
    CString name = Spec();
    name.Trim();
    if (name.IsEmpty())
        return;
    // A pattern filters the view, as typing one did on the original.
    if (HasWildcard(name)) {
        if (d->view)
            d->view->setNameFilter(ViewPatterns(name));
        return;
    }
    QString host = IsAbsoluteText(name) ? HostQ(DiskPath(name.GetString()))
                                        : QDir(d->folder).filePath(HostQ(HostPath(name.GetString())));
    QFileInfo info(host);
    if (info.isDir()) {
        SetDlgItemText(edt1, "");
        const QString folder = info.absoluteFilePath();
        if (d->view)
            d->view->setDirectory(folder);
        FolderChanged(folder);
        return;
    }
    if (info.suffix().isEmpty() && ofn.lpstrDefExt && *ofn.lpstrDefExt && !info.exists()) {
        host += QLatin1Char('.') + ToQString(ofn.lpstrDefExt);
        info = QFileInfo(host);
    }
    const CString path = TextOfHost(info.absoluteFilePath());
    const CString caption = GetWindowTextString();
    if (!(ofn.Flags & OFN_NOVALIDATE)) {
        if ((ofn.Flags & (OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST)) && !info.dir().exists()) {
            ::MessageBoxA(m_hWnd, path + "\nPath does not exist.\nCheck the path and try again.", caption,
                          MB_OK | MB_ICONEXCLAMATION);
            return;
        }
        if ((ofn.Flags & OFN_FILEMUSTEXIST) && !info.exists()) {
            ::MessageBoxA(m_hWnd, path + "\nFile not found.\nCheck the file name and try again.", caption,
                          MB_OK | MB_ICONEXCLAMATION);
            return;
        }
        if (!d->child.m_bOpenFileDialog && (ofn.Flags & OFN_OVERWRITEPROMPT) && info.exists() &&
            ::MessageBoxA(m_hWnd, path + " already exists.\nDo you want to replace it?", caption,
                          MB_YESNO | MB_ICONEXCLAMATION) != IDYES)
            return;
    }
    // The answer, as the platform leaves it in the caller's buffers.
    if (!ofn.lpstrFile || path.GetLength() + 1 > static_cast<int>(ofn.nMaxFile))
        return;
    std::memcpy(ofn.lpstrFile, path.GetString(), static_cast<std::size_t>(path.GetLength() + 1));
    const int slash = path.ReverseFind('/');
    const int offset = slash + 1;
    const int dot = path.ReverseFind('.');
    ofn.nFileOffset = static_cast<WORD>(offset);
    ofn.nFileExtension = static_cast<WORD>(dot > offset ? dot + 1 : path.GetLength());
    if (ofn.lpstrFileTitle && ofn.nMaxFileTitle > 0) {
        const CString title = path.Mid(offset);
        const std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(title.GetLength()),
                                                        ofn.nMaxFileTitle - 1);
        std::memcpy(ofn.lpstrFileTitle, title.GetString(), count);
        ofn.lpstrFileTitle[count] = 0;
    }
    if (!(ofn.Flags & OFN_HIDEREADONLY)) {
        if (IsDlgButtonChecked(chx1))
            ofn.Flags |= OFN_READONLY;
        else
            ofn.Flags &= ~OFN_READONLY;
    }
    // The child may still refuse.
    OFNOTIFY note{};
    note.hdr.hwndFrom = m_hWnd;
    note.hdr.code = CDN_FILEOK;
    note.lpOFN = &ofn;
    note.pszFile = ofn.lpstrFile;
    d->accepted = path;
    const bool refused = d->child.m_hWnd && d->child.SendMessage(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&note));
    d->accepted.Empty();
    if (refused)
        return;
    if (!(ofn.Flags & OFN_NOCHANGEDIR)) {
        const std::string folder = info.absolutePath().toStdString();
        (void)!chdir(folder.c_str());
    }
    EndDialog(IDOK);
}

LRESULT FileDialogFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case CDM_GETSPEC:
        return CopyOut(Spec(), wParam, lParam);
    case CDM_GETFILEPATH:
        return CopyOut(NamedPath(), wParam, lParam);
    case CDM_GETFOLDERPATH:
        return CopyOut(Folder(), wParam, lParam);
    case CDM_SETCONTROLTEXT:
        if (CWnd* w = GetDlgItem(static_cast<int>(wParam)))
            w->SetWindowText(reinterpret_cast<const char*>(lParam));
        return 0;
    case CDM_HIDECONTROL:
        if (CWnd* w = GetDlgItem(static_cast<int>(wParam)))
            w->ShowWindow(SW_HIDE);
        return 0;
    default:
        return CDialog::WindowProc(message, wParam, lParam);
    }
}

} // namespace vx
