#include "mainframe.h"

#ifdef VXHOST_WITH_UI

#include <QColor>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace vxhost {
namespace {

enum : UINT {
    ID_NEW = 0x8000, ID_OPEN, ID_SAVE, ID_PRINT, ID_CUT, ID_COPY, ID_PASTE, ID_UNDO, ID_LINE, ID_RECT, ID_CIRCLE,
    ID_TEXT, ID_ZOOM, ID_BUTTONS, ID_EXIT, ID_ABOUT
};
// The View menu's draw modes, one command each.
constexpr UINT ID_STYLE_FIRST = 0x8100;
const char* const kStyleNames[10] = {"&0 Oryginalny", "&1 Oryginalny bez ramki", "&2 XP", "&3 XP bez ramki",
                                     "&4 Specjalny", "&5 Specjalny bez ramki", "&6 Lodowy", "&7 Lodowy bez ramki",
                                     "&8 Office 2003", "&9 Office 2003 bez ramki"};

struct Command {
    UINT id;
    const char* text; // "tip\nstatus" as the string table holds it
};
const Command kCommands[] = {
    {ID_NEW, "Nowy projekt"}, {ID_OPEN, "Otw\xF3rz projekt"}, {ID_SAVE, "Zapisz"}, {ID_PRINT, "Drukuj"},
    {ID_CUT, "Wytnij"}, {ID_COPY, "Kopiuj"}, {ID_PASTE, "Wklej"}, {ID_UNDO, "Cofnij"},
    {ID_LINE, "Linia"}, {ID_RECT, "Prostok\xB9t"}, {ID_CIRCLE, "Okr\xB9g"}, {ID_TEXT, "Tekst"}, {ID_ZOOM, "Powi\xEAkszenie"},
};

const char* TextOf(UINT id)
{
    for (const Command& c : kCommands) {
        if (c.id == id)
            return c.text;
    }
    return nullptr;
}

// The tool bar images, drawn here: simple glyphs in the suite's colours.
HBITMAP MakeStrip(int count)
{
    QImage strip(16 * count, 15, QImage::Format_RGB32);
    strip.fill(QColor(192, 192, 192));
    QPainter p(&strip);
    p.setRenderHint(QPainter::Antialiasing, false);
    const QColor ink[] = {QColor(0, 0, 128), QColor(0, 128, 0), QColor(128, 0, 0), QColor(0, 128, 128)};
    for (int i = 0; i < count; ++i) {
        const int x = 16 * i;
        p.setPen(ink[i % 4]);
        p.setBrush(i % 2 ? QColor(255, 255, 255) : ink[(i + 1) % 4].lighter(160));
        switch (i % 5) {
        case 0: p.drawRect(x + 3, 2, 9, 11); break;
        case 1: p.drawEllipse(x + 2, 2, 11, 11); break;
        case 2: p.drawLine(x + 2, 12, x + 13, 2); p.drawLine(x + 2, 2, x + 13, 12); break;
        case 3: p.drawRect(x + 2, 5, 12, 6); break;
        default: p.drawPolygon(QPolygon({QPoint(x + 8, 2), QPoint(x + 14, 13), QPoint(x + 2, 13)})); break;
        }
    }
    p.end();
    return vx::BitmapFromQImage(strip);
}

HMENU Popup(std::initializer_list<std::pair<UINT, const char*>> items)
{
    HMENU popup = CreatePopupMenu();
    for (const auto& [id, text] : items)
        AppendMenuA(popup, id ? MF_STRING : MF_SEPARATOR, id, text);
    return popup;
}

} // namespace

void MainFrame::Build(const char* stem, bool ownMenuBar)
{
    CString title;
    title.Format("%s %s", GetString(6706).GetString(), stem);
    CreateEx(title, "VxHostMainFrame", WS_OVERLAPPEDWINDOW, CRect(60, 60, 860, 620));
    EnableDocking(CBRS_ALIGN_ANY);

    HMENU menu = CreateMenu();
    AppendMenuA(menu, MF_POPUP,
                reinterpret_cast<UINT_PTR>(Popup({{ID_NEW, "&Nowy\tCtrl+N"}, {ID_OPEN, "&Otw\xF3rz...\tCtrl+O"},
                                                  {ID_SAVE, "&Zapisz\tCtrl+S"}, {0, nullptr},
                                                  {ID_PRINT, "&Drukuj..."}, {0, nullptr}, {ID_EXIT, "&Koniec"}})),
                "&Plik");
    AppendMenuA(menu, MF_POPUP,
                reinterpret_cast<UINT_PTR>(Popup({{ID_UNDO, "&Cofnij"}, {0, nullptr}, {ID_CUT, "W&ytnij"},
                                                  {ID_COPY, "&Kopiuj"}, {ID_PASTE, "&Wklej"}})),
                "&Edycja");
    HMENU view = Popup({{ID_ZOOM, "&Powi\xEAkszenie"}, {ID_BUTTONS, "P&rzyciski"}});
    m_styles = CreatePopupMenu();
    for (UINT i = 0; i < 10; ++i)
        AppendMenuA(m_styles, MF_STRING, ID_STYLE_FIRST + i, kStyleNames[i]);
    CheckMenuRadioItem(m_styles, ID_STYLE_FIRST, ID_STYLE_FIRST + 9, ID_STYLE_FIRST + CNewMenu::GetMenuDrawMode(),
                       MF_BYCOMMAND);
    AppendMenuA(view, MF_POPUP, reinterpret_cast<UINT_PTR>(m_styles), "&Styl");
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(view), "&Widok");
    HMENU windows = Popup({{ID_WINDOW_CASCADE, "&Kaskada"}, {ID_WINDOW_TILE_HORZ, "&S\xB9" "siaduj\xB9" "co"},
                           {ID_WINDOW_TILE_VERT, "&Obok siebie"}, {ID_WINDOW_ARRANGE, "&Rozmie\x9C\xE6 ikony"}});
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(windows), "&Okno");
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(Popup({{ID_ABOUT, "&O programie..."}})), "Pomo&c");
    if (ownMenuBar) {
        // The frame's CNewMenu takes the menu over (its items become
        // owner-drawn) and the bar gets the draw mode's background.
        m_DefaultNewMenu.LoadMenu(menu);
        vx::NewFrameMenuMade(*this, *this);
        m_hMenuDefault = m_DefaultNewMenu.m_hMenu;
    } else {
        m_menuBar.Create(this, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_TOOLTIPS);
        m_menuBar.LoadMenu(menu, nullptr);
        m_menuBar.EnableDocking(CBRS_ALIGN_ANY);
        DockControlBar(&m_menuBar);
    }

    m_images.Create(16, 15, ILC_COLOR24 | ILC_MASK, 0, 4);
    BuildToolBars();
    DockControlBar(m_mainBar.get(), AFX_IDW_DOCKBAR_TOP);
    FloatControlBar(m_drawBar.get(), CPoint(540, 200));

    m_tip.Create(this);
    m_tip.SetMaxTipWidth(0);
    CRect drawing(40, 40, 300, 200);
    CreateClient(windows);
    for (int i = 0; i < 2; ++i) {
        CString name;
        name.Format("Strona %d", i + 1);
        m_children[i].m_bAutoDelete = false;
        m_children[i].Create(nullptr, name, WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), this);
        m_panes[i].CreateEx("", "VxHostPane", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), &m_children[i],
                            AFX_IDW_PANE_FIRST, WS_EX_CLIENTEDGE);
        m_children[i].RecalcLayout();
    }
    RecalcLayout();
    MDIActivate(&m_children[0]);
    // Side by side, so that both drawings show whole.
    MDITile(MDITILE_VERTICAL);
    m_tip.AddTool(&m_panes[0], "Rysunek 12: rozdzielnica g\xB3\xF3wna\rStrona 2 z 5, zmieniono 24.11.2026", &drawing, 1);
    RecalcLayout();
}

void MainFrame::BuildToolBars()
{
    const UINT main[] = {ID_NEW, ID_OPEN, ID_SAVE, ID_SEPARATOR, ID_CUT, ID_COPY, ID_PASTE, ID_SEPARATOR, ID_UNDO,
                         ID_PRINT};
    const UINT draw[] = {ID_LINE, ID_RECT, ID_CIRCLE, ID_SEPARATOR, ID_TEXT, ID_ZOOM};
    m_mainBar = std::make_unique<CNewToolBar>();
    m_drawBar = std::make_unique<CNewToolBar>();
    BuildToolBar(*m_mainBar, AFX_IDW_TOOLBAR, "Standard", main, 10, 0);
    BuildToolBar(*m_drawBar, AFX_IDW_TOOLBAR + 1, "Rysowanie", draw, 6, 8);
}

void MainFrame::SetDrawMode(UINT mode)
{
    if (mode > 9)
        return;
    CNewMenu::SetMenuDrawMode(mode);
    CheckMenuRadioItem(m_styles, ID_STYLE_FIRST, ID_STYLE_FIRST + 9, ID_STYLE_FIRST + mode, MF_BYCOMMAND);
    if (HMENU own = ::GetMenu(m_hWnd)) {
        UpdateMenuBarColor(own);
        ::DrawMenuBar(m_hWnd);
    }
    // Where each bar is: its side, or the top left of its mini frame.
    struct Place {
        UINT side = AFX_IDW_DOCKBAR_TOP;
        CPoint at{540, 200};
        bool floating = false;
    };
    const auto placeOf = [](CNewToolBar& bar) {
        Place p;
        if (bar.IsFloating()) {
            p.floating = true;
            CWnd* side = bar.GetParent();
            if (CWnd* mini = side ? side->GetParent() : nullptr) {
                CRect r;
                mini->GetWindowRect(&r);
                p.at = r.TopLeft();
            }
        } else if (CWnd* side = bar.GetParent()) {
            p.side = static_cast<UINT>(side->GetDlgCtrlID());
        }
        return p;
    };
    const Place mainPlace = placeOf(*m_mainBar);
    const Place drawPlace = placeOf(*m_drawBar);
    // Docked first, the floating bar's mini frame goes hidden with it.
    for (CNewToolBar* bar : {m_mainBar.get(), m_drawBar.get()}) {
        if (bar->IsFloating())
            DockControlBar(bar, AFX_IDW_DOCKBAR_TOP);
    }
    BuildToolBars();
    const auto put = [this](CNewToolBar& bar, const Place& p) {
        if (p.floating)
            FloatControlBar(&bar, p.at);
        else
            DockControlBar(&bar, p.side);
    };
    put(*m_mainBar, mainPlace);
    put(*m_drawBar, drawPlace);
    RecalcLayout();
    RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_FRAME);
}

void MainFrame::BuildToolBar(CNewToolBar& bar, UINT id, const char* title, const UINT* commands, int count,
                             int firstImage)
{
    bar.CreateEx(this, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER | CBRS_TOOLTIPS | CBRS_FLYBY,
                 CRect(2, 2, 2, 2), id);
    bar.SetWindowText(title);
    bar.SetButtons(commands, count);
    for (int i = 0, image = firstImage; i < count; ++i) {
        if (commands[i] == ID_SEPARATOR)
            continue;
        UINT cmd;
        UINT style;
        int old;
        bar.GetButtonInfo(i, cmd, style, old);
        bar.SetButtonInfo(i, cmd, style, image++);
    }
    if (!m_images.GetImageCount()) {
        HBITMAP strip = MakeStrip(16);
        m_images.Add(CBitmap::FromHandle(strip), RGB(192, 192, 192));
        DeleteObject(strip);
    }
    bar.SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_images.m_hImageList));
    bar.EnableDocking(CBRS_ALIGN_ANY);
}

void MainFrame::ShowPaneTip()
{
    vx::UseManualClock(true);
    CPoint at(120, 90);
    vx::DispatchInputMessage(m_panes[0], WM_MOUSEMOVE, 0, MAKELPARAM(at.x, at.y));
    vx::AdvanceManualClock(510);
    vx::PumpMessages();
    vx::UseManualClock(false);
}

void MainFrame::ShowSampleStates()
{
    CNewToolBar& bar = *m_mainBar;
    bar.SendMessage(TB_CHECKBUTTON, ID_UNDO, TRUE);
    bar.SendMessage(TB_ENABLEBUTTON, ID_PASTE, FALSE);
    CRect button;
    bar.GetItemRect(bar.CommandToIndex(ID_OPEN), &button);
    bar.ClientToScreen(&button);
    SetCursorPos(button.CenterPoint().x, button.CenterPoint().y);
    bar.Invalidate();
    bar.UpdateWindow();
}

BOOL MainFrame::PreTranslateMessage(MSG* msg)
{
    m_tip.RelayEvent(msg);
    if (m_menuBar.m_hWnd && m_menuBar.TranslateFrameMessage(msg))
        return TRUE;
    return CNewMDIFrameWnd::PreTranslateMessage(msg);
}

LRESULT MainFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_NOTIFY: {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (header->code == TTN_NEEDTEXT) {
            auto* info = reinterpret_cast<NMTTDISPINFOA*>(lParam);
            if (const char* text = TextOf(static_cast<UINT>(header->idFrom)))
                std::snprintf(info->szText, sizeof info->szText, "%s", text);
            return 0;
        }
        break;
    }
    case WM_ENTERIDLE:
        if (wParam == MSGF_MENU && onMenuIdle)
            onMenuIdle();
        break;
    case WM_COMMAND:
        if (LOWORD(wParam) == ID_BUTTONS && showButtons) {
            showButtons();
            return 0;
        }
        if (LOWORD(wParam) >= ID_STYLE_FIRST && LOWORD(wParam) < ID_STYLE_FIRST + 10) {
            SetDrawMode(LOWORD(wParam) - ID_STYLE_FIRST);
            return 0;
        }
        if (LOWORD(wParam) == ID_EXIT) {
            PostMessage(WM_CLOSE);
            return 0;
        }
        break;
    default:
        break;
    }
    return CNewMDIFrameWnd::WindowProc(message, wParam, lParam);
}

void MainFrame::MaximiseSecondChild()
{
    m_children[1].MDIMaximize();
    RecalcLayout();
}

void MainFrame::OnDestroy()
{
    CNewMDIFrameWnd::OnDestroy();
    if (quitOnClose)
        PostQuitMessage(0);
}

void MainFrame::Pane::OnPaint()
{
    CPaintDC dc(this);
    CRect r;
    GetClientRect(&r);
    dc.FillSolidRect(&r, RGB(255, 255, 255));
    // A drawing sheet with its title block, where the tip explains it.
    CRect sheet(40, 40, 300, 200);
    dc.Draw3dRect(&sheet, RGB(0, 0, 0), RGB(0, 0, 0));
    CRect block(sheet.right - 120, sheet.bottom - 30, sheet.right, sheet.bottom);
    dc.Draw3dRect(&block, RGB(0, 0, 0), RGB(0, 0, 0));
    dc.SetBkMode(TRANSPARENT);
    dc.DrawText("=A1+S1/12", &block, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

} // namespace vxhost

#endif
