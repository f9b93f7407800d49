// The desk design in the sample host.
//
//   vxhost design                  opens the desk design dialog; OK writes
//                                  "KonfigDesign" to the suite file
//   vxhost design --screenshot DIR writes a PNG of the dialog, changes nothing
//
// Without a display nobody could press a button: the dialog opens, OK is
// pressed for the user, and the section as written is shown. In the tour
// the round trip runs on a settings file of its own: the dialog with
// simulated clicks, OK, the keys, and the statics of the next start.
#include "democommand.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QImage>
#include <QTimer>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace {

using D = KDeskDesignDlg;

// The section as it stands in the suite file.
std::string Section()
{
    char buffer[4096] = {};
    GetPrivateProfileSectionA("KonfigDesign", buffer, sizeof buffer, g_vexalprofiledir);
    std::string out;
    for (const char* p = buffer; *p; p += std::strlen(p) + 1)
        out += std::string("  ") + p + "\n";
    return out.empty() ? "  (empty)\n" : out;
}

void PrintStatics()
{
    std::printf("  CNewMenu::m_Enable=%d m_InitColor=0x%06X CNewToolBar::m_NewToolbar=%d\n", CNewMenu::m_Enable,
                CNewMenu::m_InitColor, CNewToolBar::m_NewToolbar);
    std::printf("  CButtonST::m_InitType=%d m_InitShade=%u KSkinButton::s_ShadeMode=%d s_3D=%d\n",
                CButtonST::m_InitType, CButtonST::m_InitShade, KSkinButton::s_ShadeMode, KSkinButton::s_3D);
}

// Runs the dialog, `act` acting on it once it stands.
INT_PTR RunDialog(const std::function<void(D&)>& act)
{
    D dlg(AfxGetMainWnd());
    if (act) {
        QTimer::singleShot(0, [&dlg, act] {
            if (dlg.m_hWnd)
                act(dlg);
        });
    }
    return dlg.DoModal();
}

void Click(CWnd* w)
{
    if (!w)
        return;
    vx::DispatchInputMessage(*w, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    if (IsWindow(w->m_hWnd))
        vx::DispatchInputMessage(*w, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
}

int Screenshot(const std::string& dir)
{
    if (!vxhost::MakePictureDir(dir))
        return 1;
    int rc = 1;
    RunDialog([&](D& d) {
        vx::ProcessUiEvents();
        const std::string file = dir + "/design.png";
        if (vx::RenderWindow(d).save(QString::fromStdString(file))) {
            std::printf("wrote %s\n", file.c_str());
            rc = 0;
        }
        d.EndDialog(IDCANCEL);
    });
    return rc;
}

int Interactive()
{
    if (!vx::HasDisplay()) {
        // Nobody can press OK on a window that is not seen: it is pressed.
        RunDialog([](D& d) { Click(d.GetDlgItem(IDOK)); });
        std::printf("offscreen: the dialog opened and OK was pressed; %s now holds:\n",
                    vx::ToUtf8(g_vexalprofiledir).c_str());
        vxhost::Print(Section());
        return 0;
    }
    const INT_PTR result = RunDialog(nullptr);
    if (result == IDOK) {
        std::printf("KonfigDesign written to %s; it takes effect at the next start:\n",
                    vx::ToUtf8(g_vexalprofiledir).c_str());
        vxhost::Print(Section());
    } else {
        std::printf("cancelled: nothing written.\n");
    }
    return 0;
}

// The tour: the round trip on a suite file of its own.
int Tour()
{
    vxhost::Heading("Desk design");
    // A directory of its own: tours may run side by side.
    std::string pattern = (std::filesystem::temp_directory_path() / "vxhost-design-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        std::printf("!! no temporary directory for the desk design\n");
        return 1;
    }
    const std::filesystem::path dir = pattern;
    const std::filesystem::path file = dir / "VEXAL55.INI";
    std::ofstream(file, std::ios::binary) << "[KonfigDesign]\r\nColor=2\r\nMode=5\r\n";
    char saved[260];
    std::memcpy(saved, g_vexalprofiledir, sizeof saved);
    std::strncpy(g_vexalprofiledir, file.c_str(), sizeof g_vexalprofiledir - 1);
    std::printf("Before, in %s:\n", file.c_str());
    vxhost::Print(Section());
    const INT_PTR result = RunDialog([](D& d) {
        std::printf("The dialog shows: menu colour %d, shade type %d, rounded %u, 3D %u\n",
                    static_cast<CComboBox*>(d.GetDlgItem(D::IDC_DESIGN_COLOR))->GetCurSel(),
                    static_cast<CComboBox*>(d.GetDlgItem(D::IDC_DESIGN_SHADE))->GetCurSel(),
                    d.IsDlgButtonChecked(D::IDC_DESIGN_ROUND), d.IsDlgButtonChecked(D::IDC_DESIGN_3D));
        std::printf("Clicks: \"3D\" off, \"zaokrąglone\" off; the button colour \"Szary\"; OK.\n");
        Click(d.GetDlgItem(D::IDC_DESIGN_3D));
        Click(d.GetDlgItem(D::IDC_DESIGN_ROUND));
        static_cast<CComboBox*>(d.GetDlgItem(D::IDC_DESIGN_STYLE))->SetCurSel(2);
        d.SendMessage(WM_COMMAND, MAKEWPARAM(D::IDC_DESIGN_STYLE, CBN_SELENDOK),
                      reinterpret_cast<LPARAM>(d.GetDlgItem(D::IDC_DESIGN_STYLE)->m_hWnd));
        Click(d.GetDlgItem(IDOK));
    });
    std::printf("The dialog ended with %s; \"KonfigDesign\" now holds:\n", result == IDOK ? "OK" : "Cancel");
    vxhost::Print(Section());
    std::printf("The next start reads it (InitParameter):\n");
    KDeskDesignDlg::InitParameter();
    PrintStatics();
    std::printf("Cancel writes nothing:\n");
    const std::string before = Section();
    RunDialog([](D& d) {
        Click(d.GetDlgItem(D::IDC_DESIGN_STANDARD));
        Click(d.GetDlgItem(IDCANCEL));
    });
    const bool kept = Section() == before;
    std::printf("  the section is %s\n", kept ? "unchanged" : "CHANGED");
    const bool written = before.find("Mode3D=0") != std::string::npos;
    // The statics go back to their defaults; the host reads them at start.
    CNewMenu::m_Enable = 1;
    CNewMenu::m_InitColor = 0;
    CNewToolBar::m_NewToolbar = 1;
    CButtonST::m_InitType = 1;
    CButtonST::m_InitShade = 0;
    KSkinButton::s_ShadeMode = 0;
    KSkinButton::s_3D = 0;
    std::memcpy(g_vexalprofiledir, saved, sizeof saved);
    std::filesystem::remove_all(dir);
    return result == IDOK && written && kept ? 0 : 1;
}

int RunDesign(vxhost::Args& args)
{
    const auto& words = args.words;
    const std::string shots = vxhost::ScreenshotDir(words);
    const bool screenshot = !shots.empty();
    if (!words.empty() && !screenshot)
        return vxhost::Usage("design");
    if (args.tour && !std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1); // the tour never opens a window
    vx::InitUi();
    int rc;
    if (args.tour)
        rc = Tour();
    else if (screenshot)
        rc = Screenshot(shots);
    else
        rc = Interactive();
    vx::ShutdownUi();
    return rc;
}

} // namespace

VXHOST_COMMAND("design", "[--screenshot DIR]  the desk design dialog; OK writes \"KonfigDesign\"", 93, RunDesign);

#endif // VXHOST_WITH_UI
