// A main window laid out and painted in full: a frame with the library's
// menu bar of 12 entries and three of the library's tool bars of 30 buttons
// each (Office 2003 mode), docked at the top, against a QMainWindow with a
// QMenuBar and three QToolBars of the same entries, in the same run. Each
// round changes the window's width, so that both lay out afresh, and renders
// the whole window into an image. A third run puts the menu on the frame's
// own bar (the non-client strip, owner-drawn by the frame's CNewMenu).
#include "frames/cnewframe.h"
#include "menus/cmenubar.h"
#include "platform/windows/cframewnd.h"
#include "frames/cnewtoolbar.h"
#include "menus/cnewmenu.h"
#include "ui/images/cbitmap.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QImage>
#include <QLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QToolBar>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kMenus = 12;
constexpr int kButtons = 30;
constexpr int kBars = 3;

std::string MenuTitle(int i)
{
    return "&Menu" + std::to_string(i + 1);
}

QImage Strip()
{
    QImage strip(16 * kButtons, 15, QImage::Format_RGB32);
    strip.fill(QColor(192, 192, 192));
    QPainter p(&strip);
    for (int i = 0; i < kButtons; ++i)
        p.fillRect(16 * i + 3, 3, 10, 9, QColor::fromHsv(i * 12, 200, 200));
    return strip;
}

struct LibraryWindow {
    explicit LibraryWindow(bool ownMenuBar)
    {
        // The library's bars in their dearest mode: gradients, grippers and
        // every button painted through custom draw.
        CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP_2003);
        if (ownMenuBar)
            newFrame = std::make_unique<CNewFrameWnd>();
        else
            plainFrame = std::make_unique<CFrameWnd>();
        CFrameWnd& frame = Frame();
        frame.CreateEx("Frame", "BenchFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 1100, 700));
        pane.CreateEx("", "BenchPane", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), &frame, AFX_IDW_PANE_FIRST);
        if (newFrame)
            newFrame->EnableDocking(CBRS_ALIGN_ANY); // the library's dock bars
        else
            frame.EnableDocking(CBRS_ALIGN_ANY);
        HMENU menu = CreateMenu();
        for (int m = 0; m < kMenus; ++m) {
            HMENU popup = CreatePopupMenu();
            for (int i = 0; i < 8; ++i)
                AppendMenuA(popup, MF_STRING, static_cast<UINT>(1000 + m * 10 + i), "Item");
            AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), MenuTitle(m).c_str());
        }
        if (ownMenuBar) {
            newFrame->m_DefaultNewMenu.LoadMenu(menu);
            vx::NewFrameMenuMade(*newFrame, *newFrame);
        } else {
            menuBar.Create(&frame);
            menuBar.LoadMenu(menu, nullptr);
            menuBar.EnableDocking(CBRS_ALIGN_ANY);
            frame.DockControlBar(&menuBar);
        }
        const QImage strip = Strip();
        images.Create(16, 15, ILC_COLOR24 | ILC_MASK, 0, 4);
        HBITMAP bitmap = vx::BitmapFromQImage(strip);
        images.Add(CBitmap::FromHandle(bitmap), RGB(192, 192, 192));
        DeleteObject(bitmap);
        std::vector<UINT> commands;
        for (int i = 0; i < kButtons; ++i)
            commands.push_back(static_cast<UINT>(2000 + i));
        for (int b = 0; b < kBars; ++b) {
            auto bar = std::make_unique<CNewToolBar>();
            bar->CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER | CBRS_TOOLTIPS,
                          CRect(2, 2, 2, 2), AFX_IDW_TOOLBAR + static_cast<UINT>(b));
            bar->SetButtons(commands.data(), kButtons);
            bar->SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.m_hImageList));
            bar->EnableDocking(CBRS_ALIGN_ANY);
            frame.DockControlBar(bar.get(), AFX_IDW_DOCKBAR_TOP);
            bars.push_back(std::move(bar));
        }
    }
    CFrameWnd& Frame() { return newFrame ? static_cast<CFrameWnd&>(*newFrame) : *plainFrame; }
    std::unique_ptr<CFrameWnd> plainFrame;
    std::unique_ptr<CNewFrameWnd> newFrame;
    CWnd pane;
    CMenuBar menuBar;
    CImageList images;
    std::vector<std::unique_ptr<CNewToolBar>> bars;
};

struct QtWindow {
    QtWindow()
    {
        window.resize(1100, 700);
        const QImage strip = Strip();
        for (int m = 0; m < kMenus; ++m) {
            QString title = QString::fromStdString(MenuTitle(m));
            QMenu* popup = window.menuBar()->addMenu(title);
            for (int i = 0; i < 8; ++i)
                popup->addAction(QStringLiteral("Item"));
        }
        for (int b = 0; b < kBars; ++b) {
            QToolBar* bar = window.addToolBar(QStringLiteral("Bar %1").arg(b));
            bar->setIconSize(QSize(16, 15));
            for (int i = 0; i < kButtons; ++i)
                bar->addAction(QIcon(QPixmap::fromImage(strip.copy(16 * i, 0, 16, 15))), QStringLiteral("Command"));
            window.addToolBarBreak();
        }
        window.setCentralWidget(new QWidget);
        window.show();
    }
    QMainWindow window;
};

void EnsureUi()
{
    if (!std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    vx::InitUi();
}

LibraryWindow& Library(bool ownMenuBar)
{
    EnsureUi();
    // They live for the program; windows outlast the benchmarks.
    static auto* docked = new LibraryWindow(false);
    static auto* own = new LibraryWindow(true);
    return ownMenuBar ? *own : *docked;
}

QtWindow& Qt()
{
    EnsureUi();
    static auto* w = new QtWindow;
    return *w;
}

void RunLibrary(benchmark::State& state, bool ownMenuBar)
{
    CFrameWnd& frame = Library(ownMenuBar).Frame();
    int width = 1100;
    for (auto _ : state) {
        width = width == 1100 ? 1099 : 1100;
        frame.MoveWindow(0, 0, width, 700); // RecalcLayout through WM_SIZE
        QImage image = vx::RenderWindow(frame);
        benchmark::DoNotOptimize(image.constBits());
    }
}

void BM_FrameWithMenuBarAndThreeToolBars(benchmark::State& state)
{
    RunLibrary(state, false);
}
BENCHMARK(BM_FrameWithMenuBarAndThreeToolBars)->Unit(benchmark::kMicrosecond);

void BM_FrameWithOwnMenuBarAndThreeToolBars(benchmark::State& state)
{
    RunLibrary(state, true);
}
BENCHMARK(BM_FrameWithOwnMenuBarAndThreeToolBars)->Unit(benchmark::kMicrosecond);

void BM_QMainWindowWithQMenuBarAndThreeQToolBars(benchmark::State& state)
{
    QtWindow& w = Qt();
    int width = 1100;
    for (auto _ : state) {
        width = width == 1100 ? 1099 : 1100;
        w.window.resize(width, 700);
        w.window.layout()->activate();
        QImage image(w.window.size(), QImage::Format_RGB32);
        w.window.render(&image);
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_QMainWindowWithQMenuBarAndThreeQToolBars)->Unit(benchmark::kMicrosecond);

} // namespace
