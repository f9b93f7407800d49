// Owner-drawn menus in the sample host: a window whose context menu (right
// click) and its "File/Edit/View" popups show icons, check and radio marks,
// disabled items, titles along the top and the side, separators, a sub-menu
// and the system commands, in each of the ten draw modes (the "Style" popup
// switches among them).
//
//   vxhost menus                  shows the window (offscreen without a display)
//   vxhost menus --screenshot DIR writes the open menu in each draw mode, then ends
#include "democommand.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace {

enum : UINT {
    ID_NEW = 100, ID_OPEN, ID_SAVE, ID_PRINT, ID_EXIT, ID_RECENT1, ID_RECENT2,
    ID_CUT = 200, ID_COPY, ID_PASTE, ID_SELECTALL,
    ID_TOOLBAR = 300, ID_STATUSBAR, ID_LARGE, ID_SMALL, ID_LIST,
    ID_STYLE = 400, // + draw mode
    IDB_MENUICONS = 0x7F00,
};

const char* const kStyleNames[10] = {"Original", "Original, no border", "XP", "XP, no border",
                                     "Special", "Special, no border", "Icy", "Icy, no border",
                                     "Office 2003", "Office 2003, no border"};

// The strip of the demo's icons, 16 by 15 each, light grey behind them.
QImage IconStrip()
{
    QImage strip(16 * 7, 15, QImage::Format_RGB32);
    strip.fill(QColor(192, 192, 192));
    QPainter p(&strip);
    auto at = [&](int i) { p.resetTransform(); p.translate(16 * i, 0); };
    // New: a page with a folded corner.
    at(0);
    p.setPen(Qt::black);
    p.setBrush(Qt::white);
    p.drawPolygon(QPolygon({QPoint(3, 1), QPoint(10, 1), QPoint(13, 4), QPoint(13, 13), QPoint(3, 13)}));
    p.drawLine(10, 1, 10, 4);
    p.drawLine(10, 4, 13, 4);
    // Open: a yellow folder.
    at(1);
    p.setBrush(QColor(255, 204, 0));
    p.drawRect(1, 4, 12, 9);
    p.setBrush(QColor(255, 230, 120));
    p.drawPolygon(QPolygon({QPoint(3, 7), QPoint(15, 7), QPoint(13, 13), QPoint(1, 13)}));
    // Save: a blue disk.
    at(2);
    p.setBrush(QColor(0, 64, 160));
    p.drawRect(1, 1, 13, 12);
    p.setBrush(Qt::white);
    p.drawRect(4, 1, 7, 5);
    p.setBrush(QColor(160, 160, 160));
    p.drawRect(4, 9, 7, 4);
    // Print: a printer.
    at(3);
    p.setBrush(Qt::white);
    p.drawRect(4, 1, 8, 5);
    p.setBrush(QColor(128, 128, 128));
    p.drawRect(1, 6, 14, 6);
    p.setBrush(QColor(0, 160, 0));
    p.drawRect(12, 8, 1, 1);
    // Cut: scissors.
    at(4);
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(0, 0, 128), 1));
    p.drawLine(5, 1, 9, 8);
    p.drawLine(10, 1, 6, 8);
    p.drawEllipse(3, 8, 4, 4);
    p.drawEllipse(8, 8, 4, 4);
    // Copy: two pages.
    at(5);
    p.setPen(Qt::black);
    p.setBrush(Qt::white);
    p.drawRect(1, 1, 8, 9);
    p.drawRect(6, 4, 8, 9);
    // Paste: a clipboard.
    at(6);
    p.setBrush(QColor(160, 100, 40));
    p.drawRect(2, 2, 10, 11);
    p.setBrush(Qt::white);
    p.drawRect(6, 6, 8, 8);
    p.setBrush(QColor(128, 128, 128));
    p.drawRect(5, 1, 4, 2);
    return strip;
}

class MenuDemo : public CWnd {
public:
    CNewMenu context;
    CNewMenu* file = nullptr;
    CNewMenu* edit = nullptr;
    CNewMenu* view = nullptr;
    CNewMenu* styles = nullptr;
    std::deque<std::function<bool()>> steps; // run one per idle moment of an open menu
    bool quitOnClose = false;
    UINT lastCommand = 0;

    void Build()
    {
        CreateEx("vxhost - owner-drawn menus", "VxHostMenus", WS_OVERLAPPEDWINDOW, CRect(40, 40, 40 + 640, 40 + 460));
        vx::SetResourceImage(IMAGE_BITMAP, IDB_MENUICONS, IconStrip());
        vx::SetToolBarResource(MAKEINTRESOURCE(IDB_MENUICONS),
                               {1, 16, 15, 8, ID_NEW, ID_OPEN, ID_SAVE, ID_PRINT, 0, ID_CUT, ID_COPY, ID_PASTE});
        context.CreatePopupMenu();
        file = context.AppendODPopupMenu("&File");
        file->AppendODMenu("&New\tCtrl+N", MF_STRING, ID_NEW);
        file->AppendODMenu("&Open...\tCtrl+O", MF_STRING, ID_OPEN);
        file->AppendODMenu("&Save\tCtrl+S", MF_STRING, ID_SAVE);
        file->AppendODMenu(nullptr, MF_SEPARATOR);
        file->AppendODMenu("&Print...\tCtrl+P", MF_STRING | MF_GRAYED, ID_PRINT);
        CNewMenu* recent = file->AppendODPopupMenu("Recent &files");
        recent->AppendODMenu("&1 Anlage.dwg", MF_STRING, ID_RECENT1);
        recent->AppendODMenu("&2 Schaltplan.dwg", MF_STRING, ID_RECENT2);
        file->AppendODMenu(nullptr, MF_SEPARATOR);
        file->AppendODMenu("E&xit", MF_STRING, ID_EXIT);
        file->SetMenuTitle("File", MFT_GRADIENT | MFT_SIDE_TITLE);
        edit = context.AppendODPopupMenu("&Edit");
        edit->AppendODMenu("Cu&t\tCtrl+X", MF_STRING, ID_CUT);
        edit->AppendODMenu("&Copy\tCtrl+C", MF_STRING, ID_COPY);
        edit->AppendODMenu("&Paste\tCtrl+V", MF_STRING | MF_GRAYED, ID_PASTE);
        edit->AppendODMenu(nullptr, MF_SEPARATOR);
        edit->AppendODMenu("Select &all\tCtrl+A", MF_STRING, ID_SELECTALL);
        edit->SetMenuTitle("Edit", MFT_GRADIENT);
        view = context.AppendODPopupMenu("&View");
        view->AppendODMenu("&Toolbar", MF_STRING | MF_CHECKED, ID_TOOLBAR);
        view->AppendODMenu("&Status bar", MF_STRING | MF_CHECKED | MF_GRAYED, ID_STATUSBAR);
        view->AppendODMenu(nullptr, MF_SEPARATOR);
        view->AppendODMenu("&Large icons", MF_STRING, ID_LARGE);
        view->AppendODMenu("S&mall icons", MF_STRING, ID_SMALL);
        view->AppendODMenu("L&ist", MF_STRING, ID_LIST);
        ::CheckMenuRadioItem(view->m_hMenu, ID_LARGE, ID_LIST, ID_SMALL, MF_BYCOMMAND);
        view->AppendODMenu(nullptr, MF_SEPARATOR);
        view->AppendODMenu("&Restore", MF_STRING | MF_GRAYED, SC_RESTORE);
        view->AppendODMenu("Mi&nimize", MF_STRING, SC_MINIMIZE);
        view->AppendODMenu("Ma&ximize", MF_STRING, SC_MAXIMIZE);
        view->AppendODMenu("&Close\tAlt+F4", MF_STRING | MF_DEFAULT, SC_CLOSE);
        ::SetMenuDefaultItem(view->m_hMenu, SC_CLOSE, FALSE);
        context.AppendODMenu(nullptr, MF_SEPARATOR);
        styles = context.AppendODPopupMenu("&Style");
        for (UINT mode = 0; mode < 10; ++mode)
            styles->AppendODMenu(kStyleNames[mode], MF_STRING, ID_STYLE + mode);
        context.LoadToolBar(IDB_MENUICONS);
        MarkStyle();
    }

    void MarkStyle()
    {
        ::CheckMenuRadioItem(styles->m_hMenu, ID_STYLE, ID_STYLE + 9, ID_STYLE + CNewMenu::GetMenuDrawMode(),
                             MF_BYCOMMAND);
    }

    void OpenContext(CPoint screen)
    {
        MarkStyle();
        context.TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, screen.x, screen.y, this);
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message) {
        case WM_INITMENUPOPUP:
            CNewMenu::OnInitMenuPopup(m_hWnd, CMenu::FromHandle(reinterpret_cast<HMENU>(wParam)), LOWORD(lParam),
                                      HIWORD(lParam));
            return 0;
        case WM_MEASUREITEM: {
            MSG msg{m_hWnd, message, wParam, lParam, 0, {}};
            if (CNewMenu::OnMeasureItem(&msg))
                return TRUE;
            break;
        }
        case WM_DRAWITEM: {
            auto* dis = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam);
            if (dis && dis->CtlType == ODT_MENU) {
                if (CMenu* menu = CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(dis->hwndItem))) {
                    menu->DrawItem(dis);
                    return TRUE;
                }
            }
            break;
        }
        case WM_MENUCHAR:
            return CNewMenu::FindKeyboardShortcut(LOWORD(wParam), HIWORD(wParam),
                                                  CMenu::FromHandle(reinterpret_cast<HMENU>(lParam)));
        case WM_ENTERIDLE:
            if (!steps.empty()) {
                if (steps.front()())
                    steps.pop_front();
                PostMessage(WM_NULL);
            }
            return 0;
        case WM_COMMAND:
            lastCommand = LOWORD(wParam);
            if (lastCommand >= ID_STYLE && lastCommand < ID_STYLE + 10)
                CNewMenu::SetMenuDrawMode(lastCommand - ID_STYLE);
            return 0;
        case WM_RBUTTONUP: {
            CPoint p(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
            ClientToScreen(&p);
            OpenContext(p);
            return 0;
        }
        case WM_PAINT: {
            CPaintDC dc(this);
            CRect r;
            GetClientRect(&r);
            dc.FillSolidRect(&r, RGB(58, 110, 165));
            dc.SetBkMode(TRANSPARENT);
            dc.SetTextColor(RGB(255, 255, 255));
            CString text;
            text.Format("Right-click for the menu. Draw mode: %s", kStyleNames[CNewMenu::GetMenuDrawMode()]);
            RECT t{12, 12, r.right - 12, 40};
            dc.DrawText(text, &t, DT_LEFT | DT_SINGLELINE);
            return 0;
        }
        case WM_CLOSE:
            if (quitOnClose)
                PostQuitMessage(0);
            break;
        default:
            break;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

BOOL CollectMenus(HWND hwnd, LPARAM param)
{
    char name[16] = {};
    GetClassNameA(hwnd, name, sizeof name);
    if (vx::IsLocalHandle(hwnd) && IsWindowVisible(hwnd) && std::string(name) == "#32768")
        reinterpret_cast<std::vector<HWND>*>(param)->push_back(hwnd);
    return TRUE;
}

// The window as it shows, with the open menu windows painted where they lie.
bool Shot(MenuDemo& demo, const std::string& file)
{
    QImage image = vx::RenderWindow(demo);
    QWidget* base = vx::WidgetOfWindow(&demo);
    std::vector<HWND> windows;
    EnumWindows(&CollectMenus, reinterpret_cast<LPARAM>(&windows));
    QPainter painter(&image);
    // The menus open first lie lowest.
    std::vector<std::pair<CRect, QImage>> shots;
    for (HWND h : windows) {
        CWnd* w = CWnd::FromHandle(h);
        if (!w || !base)
            continue;
        CRect r;
        w->GetWindowRect(&r);
        shots.emplace_back(r, vx::RenderWindow(*w));
    }
    std::sort(shots.begin(), shots.end(), [](const auto& a, const auto& b) { return a.first.left < b.first.left; });
    for (const auto& [r, picture] : shots)
        painter.drawImage(base->mapFromGlobal(QPoint(r.left, r.top)), picture);
    painter.end();
    if (!image.save(QString::fromStdString(file))) {
        std::fprintf(stderr, "vxhost: cannot write %s\n", file.c_str());
        return false;
    }
    std::printf("wrote %s\n", file.c_str());
    return true;
}

int Screenshots(MenuDemo& demo, const std::string& dir)
{
    if (!vxhost::MakePictureDir(dir))
        return 1;
    bool ok = true;
    CRect frame;
    demo.GetWindowRect(&frame);
    for (UINT mode = 0; mode < 10; ++mode) {
        CNewMenu::SetMenuDrawMode(mode);
        demo.Invalidate();
        demo.UpdateWindow();
        auto key = [&demo](UINT vk) { demo.PostMessage(WM_KEYDOWN, vk, 1); };
        // As a user would: the File popup open by keyboard, "Save" selected;
        // then the View popup with its marks, then Edit with its title.
        demo.steps = {
            [=] { key(VK_DOWN); return true; },
            [=] { key(VK_RIGHT); return true; },
            [=] { key(VK_DOWN); key(VK_DOWN); return true; },
            [&, mode] {
                char name[64];
                std::snprintf(name, sizeof name, "/menus-%d-file.png", mode);
                ok = Shot(demo, dir + name) && ok;
                return true;
            },
            [=] { key(VK_LEFT); return true; },
            [=] { key(VK_DOWN); key(VK_DOWN); return true; },
            [=] { key(VK_RIGHT); return true; },
            [=] { key(VK_DOWN); key(VK_DOWN); key(VK_DOWN); return true; },
            [&, mode] {
                char name[64];
                std::snprintf(name, sizeof name, "/menus-%d-view.png", mode);
                ok = Shot(demo, dir + name) && ok;
                return true;
            },
            [=] { key(VK_LEFT); key(VK_UP); return true; },
            [=] { key(VK_RIGHT); return true; },
            [=] { key(VK_DOWN); return true; },
            [&, mode] {
                char name[64];
                std::snprintf(name, sizeof name, "/menus-%d-edit.png", mode);
                ok = Shot(demo, dir + name) && ok;
                return true;
            },
            [] { EndMenu(); return true; },
        };
        demo.OpenContext(CPoint(frame.left + 30, frame.top + 60));
        demo.steps.clear();
        vx::ProcessUiEvents(20);
    }
    CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP);
    return ok ? 0 : 1;
}

int RunMenus(vxhost::Args& args)
{
    const auto& words = args.words;
    const std::string shots = vxhost::ScreenshotDir(words);
    if (shots.empty() && !words.empty())
        return vxhost::Usage("menus");
    vx::InitUi();
    int rc = 0;
    {
        MenuDemo demo;
        demo.Build();
        demo.ShowWindow(SW_SHOW);
        demo.SetActiveWindow();
        demo.UpdateWindow();
        vx::ProcessUiEvents(50);
        if (!shots.empty()) {
            rc = Screenshots(demo, shots);
        } else if (!vx::HasDisplay()) {
            std::printf("offscreen: the menus were built; --screenshot DIR writes them in each draw mode.\n");
        } else {
            std::printf("display: right-click the window for the menu; close the window to end.\n");
            demo.quitOnClose = true;
            rc = vx::RunUi();
        }
        demo.quitOnClose = false;
        demo.DestroyWindow();
    }
    vx::ShutdownUi();
    return rc;
}

} // namespace

VXHOST_COMMAND_NO_TOUR("menus", "[--screenshot DIR]  owner-drawn menus in the ten draw modes", 94, RunMenus);

#endif // VXHOST_WITH_UI
