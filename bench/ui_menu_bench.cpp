// Owner-drawn menus against Qt's: a popup of 200 items opened (measured,
// its window made and shown) and painted in full, then closed. Ours is a
// CNewMenu in the XP draw mode, tracked by TrackPopupMenuEx (each item
// measured and drawn through the owner, the theme's border and shadow);
// Qt's a QMenu of the same 200 texts, popped up, repainted and hidden.
// Both offscreen, side by side in one run.
#include "menus/cnewmenu.h"
#include "platform/windows/cwnd.h"
#include "ui/windows/uiapp.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEvent>
#include <QMenu>
#include <QPixmap>

#include <cstdlib>
#include <string>

namespace {

constexpr int kItems = 200;

std::string ItemText(int i)
{
    return "Command number " + std::to_string(i + 1) + "\tCtrl+" + std::to_string(i % 10);
}

// The owner routes the menu's messages to CNewMenu, as the frames do, and
// ends the menu at its first idle moment: by then it is shown and painted.
class Owner : public CWnd {
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
            return CNewMenu::OnMeasureItem(&msg);
        }
        case WM_DRAWITEM: {
            auto* dis = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam);
            if (CMenu* menu = CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(dis->hwndItem)))
                menu->DrawItem(dis);
            return TRUE;
        }
        case WM_ENTERIDLE:
            EndMenu();
            return 0;
        default:
            return CWnd::WindowProc(message, wParam, lParam);
        }
    }
};

struct Scene {
    Scene()
    {
        if (!std::getenv("QT_QPA_PLATFORM"))
            setenv("QT_QPA_PLATFORM", "offscreen", 1);
        vx::InitUi();
        owner.CreateEx("owner", "MenuBenchOwner", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 200));
        menu.CreatePopupMenu();
        for (int i = 0; i < kItems; ++i)
            menu.AppendODMenu(ItemText(i).c_str(), MF_STRING, static_cast<UINT_PTR>(100 + i));
        CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP);
        qmenu = new QMenu;
        for (int i = 0; i < kItems; ++i)
            qmenu->addAction(QString::fromStdString(ItemText(i)).replace('\t', "   "));
    }
    Owner owner;
    CNewMenu menu;
    QMenu* qmenu = nullptr; // made once the application is
};

Scene& TheScene()
{
    static Scene* scene = new Scene; // lives for the program; windows outlast the benchmarks
    return *scene;
}

void BM_OpenAndPaintCNewMenu200(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state)
        s.menu.TrackPopupMenuEx(TPM_RETURNCMD, 10, 10, &s.owner, nullptr);
}
BENCHMARK(BM_OpenAndPaintCNewMenu200)->Unit(benchmark::kMillisecond);

void BM_OpenAndPaintQMenu200(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state) {
        // The items are measured again, as the owner-drawn menu measures
        // them at each opening, and every item is painted.
        QEvent fontChange(QEvent::FontChange);
        QCoreApplication::sendEvent(s.qmenu, &fontChange);
        s.qmenu->popup(QPoint(10, 10));
        benchmark::DoNotOptimize(s.qmenu->grab());
        s.qmenu->hide();
    }
    state.SetLabel(std::to_string(s.qmenu->width()) + " x " + std::to_string(s.qmenu->height()));
}
BENCHMARK(BM_OpenAndPaintQMenu200)->Unit(benchmark::kMillisecond);

} // namespace
