// The expert settings editor in the sample host, over the sample control
// file of the installation and a set of demo settings.
//
//   vxhost expert [--dir DIR]         opens the editor; the demo settings
//                                     files are made in DIR (default: a new
//                                     temporary folder) and kept there
//   vxhost expert --screenshot DIR    writes PNGs of it: opened, a choice
//                                     dropped, the number of a scaled choice
//                                     being typed, and after it; then OK
//
// After OK the values are read back from their files and listed. Without a
// display it opens, lists the grid and ends.
#include "democommand.h"
#include "modalrun.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QImage>
#include <QPainter>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

void SetPath(char* global, const CString& path)
{
    std::strncpy(global, path, 259);
    global[259] = 0;
}

// The sample control file: the installed one, else the one of the source
// tree this program was built from.
std::optional<fs::path> SampleControlFile()
{
    for (const char* dir : {VXHOST_INSTALL_DATA_DIR, VXHOST_SOURCE_DATA_DIR}) {
        const fs::path file = fs::path(dir) / "VXINI55.DAT";
        std::error_code error;
        if (fs::is_regular_file(file, error))
            return file;
    }
    return std::nullopt;
}

// Every scope gets a file in `dir`, the control file lies beside the AT
// program's, and a few settings differ from the file's defaults.
bool MakeDemoSettings(const std::string& dir)
{
    std::error_code error;
    fs::create_directories(dir, error);
    const std::optional<fs::path> sample = SampleControlFile();
    if (!sample) {
        std::fprintf(stderr, "vxhost: the sample control file VXINI55.DAT is not installed\n");
        return false;
    }
    fs::copy_file(*sample, fs::path(dir) / "VXINI55.DAT", fs::copy_options::overwrite_existing, error);
    if (error) {
        std::fprintf(stderr, "vxhost: cannot copy %s to %s: %s\n", sample->c_str(), dir.c_str(),
                     error.message().c_str());
        return false;
    }
    const CString folder = CString(vx::PathTextFromHost(fs::absolute(dir).string()).c_str()) + "\\";
    g_MainframeType = MainframeAT;
    m_pVexalIni = m_pGlobalIniAT = m_pGlobalIniIT = m_pProjectIniAT = m_pProjectIniIT = nullptr;
    SetPath(g_vexalprofiledir, folder + "VEXAL55.INI");
    SetPath(g_vexalglobalprofiledir, folder + "VEXAL.INI");
    SetPath(g_profiledirAT, folder + "VXWIN55AT.INI");
    SetPath(g_profiledirIT, folder + "VXWIN55IT.INI");
    SetPath(g_projectprofiledirAT, folder + "PROJEKT55AT.INI");
    SetPath(g_projectprofiledirIT, folder + "PROJEKT55IT.INI");
    KProfile::WriteProfileStringA("PROCESS", "ExecuteTimeout", "25000", -1);
    KProfile::WriteProfileStringA("PROCESS", "WriteLog", "2", -1);
    KProfile::WriteProfileStringA("Zeichnen", "Raster", "2500", 10);
    KProfile::WriteProfileStringA("Projekt", "Blattformat", "A4", 11);
    KProfile::WriteProfileStringA("Liste", "Zeilenabstand", "20.000000", 20);
    return true;
}

std::string TemporaryFolder()
{
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vxhost-expert-XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back(0);
    return mkdtemp(buffer.data()) ? std::string(buffer.data()) : std::string();
}

// Input as the user gives it.
void Send(CWnd* to, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (to && to->m_hWnd)
        vx::DispatchInputMessage(*to, message, wParam, lParam);
    vx::ProcessUiEvents();
}

void Key(UINT key)
{
    Send(CWnd::GetFocus(), WM_KEYDOWN, key, 1);
    Send(CWnd::GetFocus(), WM_KEYUP, key, 1 | (1 << 30) | (1LL << 31));
}

void Type(const char* text)
{
    for (const char* c = text; *c; ++c)
        Send(CWnd::GetFocus(), WM_CHAR, static_cast<unsigned char>(*c), 1);
}

void DoubleClick(CMSFlexGrid& grid, int row, int column)
{
    CRect cell;
    if (!grid.GetCellRect(row, column, &cell))
        return;
    const LPARAM at = MAKELPARAM(cell.CenterPoint().x, cell.CenterPoint().y);
    Send(&grid, WM_LBUTTONDOWN, MK_LBUTTON, at);
    Send(&grid, WM_LBUTTONUP, 0, at);
    Send(&grid, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    Send(&grid, WM_LBUTTONUP, 0, at);
}

// The dialog as it shows, with a dropped list (a window of its own) on top.
QImage Picture(KIniExpertDlg& d)
{
    QImage image = vx::RenderWindow(d);
    CWnd* list = CWnd::GetCapture();
    if (list && list != &d && (list->GetStyle() & WS_POPUP) && list->IsWindowVisible()) {
        CRect outer;
        d.GetWindowRect(&outer);
        CRect r;
        list->GetWindowRect(&r);
        QPainter painter(&image);
        painter.drawImage(r.left - outer.left, r.top - outer.top, vx::RenderWindow(*list));
    }
    return image;
}

int RowOfKey(KIniExpertDlg& d, const char* key)
{
    for (int i = 0; i < d.GetEntryCount(); ++i) {
        if (d.GetEntry(i)->m_key == key)
            return i + 1;
    }
    return -1;
}

void PrintGrid(KIniExpertDlg& d)
{
    CMSFlexGrid& grid = d.GetGrid();
    for (int row = 0; row < grid.GetRows(); ++row) {
        const std::string caption(grid.GetTextMatrix(row, 0));
        const std::string value(grid.GetTextMatrix(row, 1));
        vxhost::Print("  " + caption + std::string(caption.size() < 44 ? 44 - caption.size() : 1, ' ') + value + "\n");
    }
}

void PrintStored(KIniExpertDlg& d)
{
    std::printf("stored in the settings files:\n");
    for (int i = 0; i < d.GetEntryCount(); ++i) {
        const KIniExpertEntry& e = *d.GetEntry(i);
        const int scope = vx::IniExpertScope(e.m_kind);
        if (scope == 0)
            continue;
        const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
        const CString value = KProfile::GetProfileStringA(e.m_section, e.m_key, "(none)", scope);
        std::printf("  %-16s [%s] %s=%s\n", target.path ? fs::path(vx::HostPath(target.path)).filename().c_str() : "?",
                    e.m_section.GetString(), e.m_key.GetString(), value.GetString());
    }
}

int Screenshot(const std::string& dir)
{
    if (!vxhost::MakePictureDir(dir))
        return 1;
    const std::string settings = dir + "/settings";
    if (!MakeDemoSettings(settings))
        return 1;
    int written = 0;
    auto save = [&](KIniExpertDlg& d, const char* name) {
        const std::string file = dir + "/" + name;
        if (Picture(d).save(QString::fromStdString(file))) {
            std::printf("wrote %s\n", file.c_str());
            ++written;
        }
    };
    KIniExpertDlg dlg(AfxGetMainWnd());
    const INT_PTR result = vxhost::RunModal(dlg, [&](KIniExpertDlg& d) {
        vx::ProcessUiEvents();
        save(d, "expert-1-opened.png");
        const int row = RowOfKey(d, "Raster");
        DoubleClick(d.GetGrid(), row, 1);
        save(d, "expert-2-choice.png");
        Key(VK_RETURN); // the selected choice: millimetres, a scaled number
        save(d, "expert-3-number.png");
        Type("4");
        Key(VK_RETURN);
        save(d, "expert-4-after.png");
        d.SendMessage(WM_COMMAND, IDOK);
    });
    if (result == IDOK)
        PrintStored(dlg);
    return written == 4 ? 0 : 1;
}

int RunExpert(vxhost::Args& args)
{
    const auto& words = args.words;
    std::optional<std::string> dir;
    std::optional<std::string> shots;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--dir" && i + 1 < words.size() && !dir && !vxhost::IsOption(words[i + 1]))
            dir = words[++i];
        else if (words[i] == "--screenshot" && i + 1 < words.size() && !shots && !vxhost::IsOption(words[i + 1]))
            shots = words[++i];
        else
            return vxhost::Usage("expert");
    }
    if (shots && dir)
        return vxhost::Usage("expert");
    vx::InitUi();
    int rc = 0;
    if (shots) {
        rc = Screenshot(*shots);
    } else {
        const std::string folder = dir ? *dir : TemporaryFolder();
        if (folder.empty() || !MakeDemoSettings(folder)) {
            vx::ShutdownUi();
            return 1;
        }
        std::printf("demo settings in %s\n", folder.c_str());
        KIniExpertDlg dlg(AfxGetMainWnd());
        if (!vx::HasDisplay()) {
            vxhost::RunModal(dlg, [](KIniExpertDlg& d) {
                std::printf("offscreen: the editor shows\n");
                PrintGrid(d);
                d.EndDialog(IDCANCEL);
            });
        } else {
            std::printf("display: double click a value (or type on it) to change it; OK writes the files.\n");
            if (vxhost::RunModal(dlg, nullptr) == IDOK)
                PrintStored(dlg);
        }
    }
    vx::ShutdownUi();
    return rc;
}

} // namespace

VXHOST_COMMAND_NO_TOUR("expert", "[--dir DIR | --screenshot DIR]  the expert settings editor over demo settings", 96,
                       RunExpert);

#endif // VXHOST_WITH_UI
