// The window classes in the sample host: the main window of a program of the
// suite (menu bar, tool bars docked and floating, tooltips) and a page of
// buttons in every shade and state, reachable from its View menu.
//
//   vxhost gui                  shows the frame until it is closed (without a
//                               display: builds it offscreen and ends)
//   vxhost gui --screenshot DIR writes a PNG of each window of the frame, exits
//   vxhost --screenshot DIR     the same
//
// In the tour it shades one button offscreen and writes its image.
#include "democommand.h"
#include "mainframe.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QDir>
#include <QImage>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kShades = 9;
const char* const kShadeNames[kShades] = {"noise",         "diagonal",      "horizontal", "vertical", "h. bump",
                                          "v. bump",       "soft bump",     "hard bump",  "metal"};
// The design's button colours: the four indexes and a colour of the user's.
const DWORD kInitShades[] = {0, 1, 2, 3, RGB(96, 160, 120)};
constexpr int kColumns = kShades;
constexpr int kRows = 5;
constexpr int kCellW = 96;
constexpr int kCellH = 30;
constexpr int kLeft = 150;
constexpr int kTop = 30;

// The main frame of the demonstration: labels painted by itself, buttons as
// child windows.
class ButtonPage : public CFrameWnd {
public:
    bool quitOnClose = false;

    void Build()
    {
        CString title;
        title.LoadString(6706);
        title += " - Przyciski";
        CreateEx(title, "VxHostButtons", WS_OVERLAPPEDWINDOW, CRect(40, 40, 40 + kLeft + kColumns * kCellW + 20, 460));
        const CStringArray colours = SplitList(GetString(6711));
        m_rowNames.clear();
        for (int r = 0; r < kRows; ++r)
            m_rowNames.push_back(r < colours.GetSize() ? colours[r] : CString("?"));
        BuildShades();
        BuildStates();
    }

    // The mouse over the hover sample, once the frame shows.
    void Hover()
    {
        if (m_hover)
            vx::DispatchInputMessage(*m_hover, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    }

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
        CFont* old = dc.SelectObject(&m_font);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
        for (int c = 0; c < kColumns; ++c) {
            CRect cell(kLeft + c * kCellW, 8, kLeft + (c + 1) * kCellW, kTop);
            CString label;
            label.Format("%d %s", c, kShadeNames[c]);
            dc.DrawText(label, &cell, DT_CENTER | DT_SINGLELINE | DT_VCENTER);
        }
        for (int row = 0; row < kRows; ++row) {
            CRect cell(8, kTop + row * kCellH, kLeft - 6, kTop + (row + 1) * kCellH);
            dc.DrawText(m_rowNames[static_cast<std::size_t>(row)], &cell, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
        }
        CRect line(8, kStatesTop - 12, r.right - 8, kStatesTop - 10);
        dc.DrawEdge(&line, EDGE_ETCHED, BF_TOP);
        dc.SelectObject(old);
    }

    void OnDestroy() override
    {
        CFrameWnd::OnDestroy();
        if (quitOnClose)
            PostQuitMessage(0);
    }

private:
    static constexpr int kStatesTop = kTop + kRows * kCellH + 24;

    static CStringArray SplitList(const CString& text)
    {
        CStringArray out;
        int start = 0;
        for (;;) {
            const int hash = text.Find('#', start);
            out.Add(text.Mid(start, hash < 0 ? text.GetLength() - start : hash - start));
            if (hash < 0)
                break;
            start = hash + 1;
        }
        return out;
    }

    template <class Button>
    Button& Add(const char* caption, const CRect& r, DWORD style = 0)
    {
        auto button = std::make_unique<Button>();
        Button& b = *button;
        b.Create(caption, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, r, this, static_cast<UINT>(1000 + m_buttons.size()));
        b.SetFont(&m_font);
        m_buttons.push_back(std::move(button));
        return b;
    }

    void BuildShades()
    {
        LOGFONT lf{};
        lf.lfHeight = -11;
        lf.lfWeight = FW_NORMAL;
        std::strcpy(lf.lfFaceName, "MS Sans Serif");
        if (!m_font.m_hObject)
            m_font.CreateFontIndirect(&lf);
        const DWORD saved = CButtonST::m_InitShade;
        for (int row = 0; row < kRows; ++row) {
            CButtonST::m_InitShade = kInitShades[row];
            for (int c = 0; c < kColumns; ++c) {
                const CRect cell(kLeft + c * kCellW + 2, kTop + row * kCellH + 2, kLeft + (c + 1) * kCellW - 2,
                                 kTop + (row + 1) * kCellH - 2);
                auto& b = Add<CShadeButtonST>(kShadeNames[c], cell);
                b.SetFlat(FALSE);
                std::srand(static_cast<unsigned>(row * kColumns + c + 1)); // the same faces every run
                b.SetShade(static_cast<UINT>(c), 8, 20, 5, RGB(55, 55, 255));
            }
        }
        CButtonST::m_InitShade = saved;
    }

    void BuildStates()
    {
        const int y = kStatesTop;
        auto cell = [y](int column, int row = 0, int width = 1) {
            return CRect(8 + column * 120, y + row * 34, 8 + (column + width) * 120 - 8, y + row * 34 + 28);
        };
        Add<CButtonST>("Flat", cell(0));
        Add<CButtonST>("Raised", cell(1)).SetFlat(FALSE);
        Add<CButtonST>("Default", cell(2), BS_DEFPUSHBUTTON).SetFlat(FALSE);
        auto& pressed = Add<CButtonST>("Pressed", cell(3));
        pressed.SetFlat(FALSE);
        pressed.SetState(TRUE);
        auto& hover = Add<CButtonST>("Hover", cell(4));
        hover.SetColor(CButtonST::BTNST_COLOR_BK_IN, RGB(255, 255, 225));
        hover.SetColor(CButtonST::BTNST_COLOR_FG_IN, RGB(0, 0, 160));
        m_hover = &hover;
        Add<CButtonST>("Disabled", cell(5)).EnableWindow(FALSE);
        auto& focused = Add<CButtonST>("Focused", cell(6));
        focused.SetFlat(FALSE);
        focused.SetFocus();

        auto& ok = Add<CButtonST>("OK", cell(0, 1));
        ok.SetBitmaps(0x3EA, RGB(255, 255, 255), 0, 0, 0, 0, CButtonST::BTNST_AUTO_GRAY);
        ok.SetFlat(FALSE);
        auto& cancel = Add<CButtonST>("Anuluj", cell(1, 1));
        cancel.SetBitmaps(0x3EB, RGB(255, 255, 255), 0, 0, 0, 0, CButtonST::BTNST_AUTO_DARKER);
        cancel.SetAlign(CButtonST::ST_ALIGN_HORIZ_RIGHT);
        auto& app = Add<CButtonST>("VEXAL", cell(2, 1));
        app.SetIcon(0x3F1, 16, 16);
        app.SetAlign(CButtonST::ST_ALIGN_HORIZ);
        auto& check = Add<CButtonST>("Check box", cell(3, 1), BS_AUTOCHECKBOX);
        check.SetCheck(1);
        auto& radioA = Add<CButtonST>("Radio A", cell(4, 1), BS_AUTORADIOBUTTON | WS_GROUP);
        radioA.SetCheck(1);
        Add<CButtonST>("Radio B", cell(5, 1), BS_AUTORADIOBUTTON);
        auto& colours = Add<CButtonST>("Colours", cell(6, 1));
        colours.SetColor(CButtonST::BTNST_COLOR_BK_OUT, RGB(255, 90, 70));
        colours.OffsetColor(CButtonST::BTNST_COLOR_BK_OUT, -60);
        colours.SetColor(CButtonST::BTNST_COLOR_FG_OUT, RGB(255, 255, 255));

        auto& web = Add<CButtonST>("www.example.com", cell(0, 2, 2));
        web.SetURL("http://www.example.com");
        web.SetBtnCursor(32649);
        web.SetTooltipText("Opens the web page");
        auto& sound = Add<CButtonST>("Sound", cell(2, 2));
        sound.SetSound("/usr/share/sounds/alsa/Front_Center.wav");
        const int savedType = CButtonST::m_InitType;
        CButtonST::m_InitType = 0;
        Add<CButtonST>("Plain (off)", cell(3, 2));
        CButtonST::m_InitType = savedType;
        auto& menu = Add<CButtonST>("Menu", cell(4, 2));
        HMENU bar = CreateMenu();
        HMENU popup = CreatePopupMenu();
        AppendMenuA(popup, MF_STRING, 1, "Pierwszy");
        AppendMenuA(popup, MF_STRING | MF_CHECKED, 2, "Drugi");
        AppendMenuA(popup, MF_SEPARATOR, 0, nullptr);
        AppendMenuA(popup, MF_STRING | MF_GRAYED, 3, "Trzeci");
        AppendMenuA(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), "x");
        menu.SetMenu(bar, m_hWnd);
    }

    CFont m_font;
    CButtonST* m_hover = nullptr;
    std::vector<CString> m_rowNames;
    std::vector<std::unique_ptr<CButtonST>> m_buttons;
};

BOOL CollectTopLevel(HWND hwnd, LPARAM param)
{
    if (vx::IsLocalHandle(hwnd) && IsWindowVisible(hwnd))
        reinterpret_cast<std::vector<HWND>*>(param)->push_back(hwnd);
    return TRUE;
}

// Writes one window's PNG as `dir`/`name`.png.
int SaveWindow(CWnd& window, const std::string& dir, const std::string& name)
{
    if (!window.m_hWnd || !window.IsWindowVisible()) {
        std::fprintf(stderr, "vxhost: %s does not show\n", name.c_str());
        return 1;
    }
    const std::string file = dir + "/" + name + ".png";
    if (!vx::RenderWindow(window).save(QString::fromStdString(file))) {
        std::fprintf(stderr, "vxhost: cannot write %s\n", file.c_str());
        return 1;
    }
    std::printf("wrote %s\n", file.c_str());
    return 0;
}

// Writes a PNG of each visible window of this process into `dir`.
int Screenshots(const std::string& dir)
{
    if (!vxhost::MakePictureDir(dir))
        return 1;
    std::vector<HWND> windows;
    EnumWindows(&CollectTopLevel, reinterpret_cast<LPARAM>(&windows));
    int n = 0;
    for (HWND h : windows) {
        CWnd* w = CWnd::FromHandle(h);
        if (!w || !vx::WidgetOfWindow(w))
            continue;
        char cls[64] = {};
        GetClassNameA(h, cls, sizeof cls);
        const std::string file = dir + "/" + std::to_string(++n) + "-" + cls + ".png";
        if (!vx::RenderWindow(*w).save(QString::fromStdString(file))) {
            std::fprintf(stderr, "vxhost: cannot write %s\n", file.c_str());
            return 1;
        }
        std::printf("wrote %s\n", file.c_str());
    }
    return n ? 0 : 1;
}

// The frame in each menu draw mode, switched as the View menu does, with
// the cursor resting on a button of the docked bar so that its hot look
// shows, and the floating bar.
int DrawModeShots(const std::string& dir, vxhost::MainFrame& frame)
{
    const UINT saved = CNewMenu::GetMenuDrawMode();
    int rc = 0;
    for (UINT mode = 0; mode < 10; ++mode) {
        frame.SendMessage(WM_COMMAND, 0x8100 + mode);
        frame.SetActiveWindow();
        frame.SetFocus();
        frame.ShowSampleStates();
        vx::ProcessUiEvents();
        rc |= SaveWindow(frame, dir, "frame-mode-" + std::to_string(mode));
        CDockBar* side = frame.FloatingBar().m_pDockBar;
        if (CWnd* mini = side ? side->GetParent() : nullptr)
            rc |= SaveWindow(*mini, dir, "floating-bar-mode-" + std::to_string(mode));
    }
    frame.SetDrawMode(saved);
    return rc;
}

BOOL CollectMenuWindows(HWND hwnd, LPARAM param)
{
    char cls[16] = {};
    GetClassNameA(hwnd, cls, sizeof cls);
    if (std::strcmp(cls, "#32768") == 0 && IsWindowVisible(hwnd))
        reinterpret_cast<std::vector<HWND>*>(param)->push_back(hwnd);
    return TRUE;
}

// A frame whose menu is on its own bar, owner-drawn by CNewMenu: in three
// draw modes, with a popup opened from the bar by Alt and its mnemonic, and
// with a maximised child lending the bar its system menu and buttons.
int OwnMenuBarShots(const std::string& dir)
{
    const UINT saved = CNewMenu::GetMenuDrawMode();
    int rc = 0;
    vxhost::MainFrame frame;
    frame.Build(g_MainframeType == MainframeIT ? "IT" : "AT", true);
    frame.ShowWindow(SW_SHOW);
    frame.RecalcLayout();
    frame.SetActiveWindow();
    for (UINT mode : {0u, 2u, 8u}) {
        frame.SetDrawMode(mode);
        vx::ProcessUiEvents();
        rc |= SaveWindow(frame, dir, "own-menu-bar-mode-" + std::to_string(mode));
    }
    // The Edit popup open: the frame and the menu window, taken while the
    // bar's loop waits for the user.
    bool shot = false;
    frame.onMenuIdle = [&] {
        if (shot)
            return;
        shot = true;
        rc |= SaveWindow(frame, dir, "own-menu-bar-open");
        std::vector<HWND> menus;
        EnumWindows(&CollectMenuWindows, reinterpret_cast<LPARAM>(&menus));
        if (menus.empty() || !CWnd::FromHandle(menus.front()))
            rc = 1;
        else
            rc |= SaveWindow(*CWnd::FromHandle(menus.front()), dir, "own-menu-bar-open-popup");
        EndMenu();
    };
    frame.SendMessage(WM_SYSCOMMAND, SC_KEYMENU, 'e');
    frame.onMenuIdle = nullptr;
    rc |= shot ? 0 : 1;
    frame.MaximiseSecondChild();
    vx::ProcessUiEvents();
    rc |= SaveWindow(frame, dir, "own-menu-bar-maximised");
    frame.SetDrawMode(saved);
    frame.DestroyWindow();
    return rc;
}

// A click on a child's minimise box, as the desktop delivers it.
void ClickMinimizeBox(CMDIChildWnd& child)
{
    CRect window;
    child.GetWindowRect(&window);
    const CPoint at = window.TopLeft() + child.BoxRect(CMDIChildWnd::Box::Minimize).CenterPoint();
    const auto code = static_cast<WPARAM>(child.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(at.x, at.y)));
    child.SendMessage(WM_NCLBUTTONDOWN, code, MAKELPARAM(at.x, at.y));
    CPoint local = at;
    child.ScreenToClient(&local);
    child.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(local.x, local.y));
}

// More children than the Window menu lists: seven minimised in a scattered
// order, then Arrange Icons and Tile as the Window menu gives them; and the
// "Select Window" dialog of its "&More Windows..." item over them.
int WindowListShots(const std::string& dir, vxhost::MainFrame& frame)
{
    std::vector<CMDIChildWnd*> added;
    for (int i = 0; i < 9; ++i) {
        CString name;
        name.Format("Rysunek %d", i + 3);
        auto* child = new CMDIChildWnd; // deletes itself with the frame
        if (!child->Create(nullptr, name, WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &frame))
            return 1;
        added.push_back(child);
    }
    for (int i : {6, 1, 4, 0, 7, 2, 5})
        ClickMinimizeBox(*added[static_cast<size_t>(i)]);
    frame.SendMessage(WM_COMMAND, ID_WINDOW_ARRANGE);
    frame.SendMessage(WM_COMMAND, ID_WINDOW_TILE_VERT);
    frame.SetActiveWindow();
    vx::ProcessUiEvents();
    int rc = SaveWindow(frame, dir, "frame-icons");
    bool shown = false;
    // Fires inside the dialog's loop; gone with this call if none opened.
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* dlg = dynamic_cast<CDialog*>(CWnd::GetActiveWindow());
        if (!dlg)
            return;
        shown = true;
        rc |= SaveWindow(*dlg, dir, "select-window");
        dlg->EndDialog(IDCANCEL);
    });
    timer.start(0);
    frame.SendMessage(WM_COMMAND, AFX_IDM_FIRST_MDICHILD + 9);
    if (!shown) {
        std::fprintf(stderr, "vxhost: \"Select Window\" did not open\n");
        rc = 1;
    }
    return rc;
}

int RunFrame(const std::string& shots, bool ownMenuBar)
{
    vx::InitUi();
    CWnd* oldMain = AfxGetMainWnd();
    int rc = 0;
    {
        ButtonPage page;
        page.Build();
        vxhost::MainFrame frame;
        frame.Build(g_MainframeType == MainframeIT ? "IT" : "AT", ownMenuBar);
        frame.showButtons = [&page] {
            page.ShowWindow(SW_SHOW);
            page.SetActiveWindow();
        };
        AfxSetMainWnd(&frame);
        frame.ShowWindow(SW_SHOW);
        frame.RecalcLayout();
        frame.SetActiveWindow();
        if (!shots.empty()) {
            // The buttons page, a floating bar and a two-page tip show too.
            page.ShowWindow(SW_SHOW);
            page.SetActiveWindow();
            page.Hover();
            frame.SetActiveWindow();
            frame.ShowPaneTip();
            vx::ProcessUiEvents();
            rc = Screenshots(shots);
            // Owned popups are not top-level windows of their own; one that
            // does not show is reported, the rest are written all the same.
            CDockBar* side = frame.FloatingBar().m_pDockBar;
            if (CWnd* mini = side ? side->GetParent() : nullptr)
                SaveWindow(*mini, shots, "floating-bar");
            SaveWindow(frame.PaneTip(), shots, "two-page-tip");
            rc |= DrawModeShots(shots, frame);
            rc |= OwnMenuBarShots(shots);
            rc |= WindowListShots(shots, frame);
        } else if (!vx::HasDisplay()) {
            // Nobody could close a window that is not seen.
            vx::ProcessUiEvents();
            std::printf("offscreen: the frame was built and painted; --screenshot DIR writes its images.\n");
        } else {
            std::printf("display: close the window to end.\n");
            frame.quitOnClose = true;
            rc = vx::RunUi();
        }
        AfxSetMainWnd(oldMain);
        frame.quitOnClose = false;
        frame.DestroyWindow();
        page.DestroyWindow();
    }
    vx::ShutdownUi();
    return rc;
}

int RunGui(vxhost::Args& args)
{
    std::vector<std::string> words = args.words;
    const auto own = std::find(words.begin(), words.end(), "--system-menu");
    const bool ownMenuBar = own != words.end();
    if (ownMenuBar)
        words.erase(own);
    if (words.empty())
        return RunFrame(std::string(), ownMenuBar);
    const std::string shots = vxhost::ScreenshotDir(words);
    return shots.empty() ? vxhost::Usage("gui") : RunFrame(shots, ownMenuBar);
}

int RunScreenshot(vxhost::Args& args)
{
    if (args.words.size() != 1 || vxhost::IsOption(args.words[0]) || args.words[0].empty())
        return vxhost::Usage("--screenshot");
    int rc = RunFrame(args.words[0], false);
    // The library's dialogs too, each by its own command.
    for (const char* name : {"design", "resize"}) {
        for (const auto& c : vxhost::Commands()) {
            if (std::strcmp(c.name, name) != 0)
                continue;
            vxhost::Args shots;
            shots.words = {"--screenshot", args.words[0]};
            rc = c.run(shots) != 0 ? 1 : rc;
        }
    }
    return rc;
}

// The tour: one shaded button, offscreen.
int RunButtonTour(vxhost::Args& args)
{
    if (!args.words.empty())
        return vxhost::Usage("buttons");
    vxhost::Heading("Buttons");
    if (!std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1); // the tour never opens a window
    vx::InitUi();
    const QString dir = QDir::temp().filePath(QStringLiteral("vxhost-buttons"));
    QDir().mkpath(dir);
    int rc = 0;
    {
        CWnd holder;
        holder.CreateEx("holder", "Holder", WS_POPUP, CRect(0, 0, 200, 40));
        CShadeButtonST button;
        button.Create("OK", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 40), &holder, IDOK);
        const DWORD saved = CButtonST::m_InitShade;
        CButtonST::m_InitShade = 3;
        std::srand(1);
        button.SetShade(CShadeButtonST::SHS_HARDBUMP, 8, 20, 5, RGB(55, 55, 255));
        CButtonST::m_InitShade = saved;
        const CShadeDib& face = button.NormalFace();
        std::printf("A 200 x 40 button, shade 7 (hard bump) in \"Srebrno-niebieski\":\n");
        for (BYTE i : {0, 128, 255}) {
            const COLORREF c = face.GetPaletteIndex(i);
            std::printf("  palette %3d = RGB(%3d, %3d, %3d)\n", i, GetRValue(c), GetGValue(c), GetBValue(c));
        }
        const QString file = dir + QStringLiteral("/button.png");
        if (vx::RenderWindow(button).save(file))
            std::printf("  rendered to %s\n", file.toUtf8().constData());
        else
            rc = 1;
    }
    vx::ShutdownUi();
    return rc;
}

} // namespace

VXHOST_COMMAND_NO_TOUR("gui", "[--system-menu] [--screenshot DIR]  the main window of AT (menu bar, tool bars, tooltips) and a page of buttons; --system-menu: the menu on the frame's own bar", 90, RunGui);
VXHOST_COMMAND_NO_TOUR("--screenshot", "DIR  write a PNG of each window of the frame and of the dialogs, then exit", 91,
                       RunScreenshot);
VXHOST_COMMAND("buttons", "shade a button offscreen and write its image", 92, RunButtonTour);

#endif // VXHOST_WITH_UI
