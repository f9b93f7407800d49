// One resize step of a resizable dialog with 200 registered controls, against
// the same 200 child widgets laid out by a QGridLayout on the same resize,
// offscreen and in one run. Each side alternates between two sizes:
//
//   *_Layout     the controls take their new places (no painting)
//   *_Step       the whole step as the user's drag makes it: the window's new
//                size, the controls' new places, and the repaint of all
//
// Run with --benchmark_enable_random_interleaving=true on a busy machine.
#include "layout/cresizedialog.h"
#include "ui/windows/uiapp.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QWidget>

#include <cstdlib>
#include <string>

namespace {

constexpr int kColumns = 20;
constexpr int kRows = 10;
constexpr int kCellW = 40; // dialog units
constexpr int kCellH = 14;
constexpr int kGrowX = 64; // pixels of one step
constexpr int kGrowY = 32;

vx::DialogTemplate GridTemplate()
{
    vx::DialogTemplate t("Grid", 0, 0, kColumns * kCellW, kRows * kCellH,
                         vx::DialogTemplate::kDefaultStyle | WS_THICKFRAME);
    for (int i = 0; i < kColumns * kRows; ++i) {
        const std::string text = "Cell " + std::to_string(i);
        t.LText(text.c_str(), 1000 + i, (i % kColumns) * kCellW, (i / kColumns) * kCellH, kCellW, kCellH);
    }
    return t;
}

class GridDialog : public CResizeDialog {
public:
    GridDialog() : CResizeDialog(0, nullptr, fdAll, false) {}
    using CResizeDialog::OnInitDialog;

protected:
    BOOL OnInitDialog() override
    {
        CResizeDialog::OnInitDialog();
        // Each cell takes its share of the growth, as the grid's equal
        // stretch gives it.
        for (int i = 0; i < kColumns * kRows; ++i) {
            const int c = i % kColumns;
            const int r = i / kColumns;
            AddSzControlEx(*GetDlgItem(1000 + i), static_cast<BYTE>(c * 100 / kColumns),
                           static_cast<BYTE>((c + 1) * 100 / kColumns), static_cast<BYTE>(r * 100 / kRows),
                           static_cast<BYTE>((r + 1) * 100 / kRows));
        }
        return TRUE;
    }
};

struct Scene {
    Scene()
    {
        if (!std::getenv("QT_QPA_PLATFORM"))
            setenv("QT_QPA_PLATFORM", "offscreen", 1);
        vx::InitUi();
        dialog.CreateIndirect(GridTemplate());
        dialog.ShowWindow(SW_SHOW);
        CRect r;
        dialog.GetWindowRect(&r);
        small = r.Size();
        CRect c;
        dialog.GetClientRect(&c);
        client = c.Size();

        widget = new QWidget;
        grid = new QGridLayout(widget);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setSpacing(0);
        for (int i = 0; i < kColumns * kRows; ++i) {
            auto* label = new QLabel(QStringLiteral("Cell %1").arg(i));
            grid->addWidget(label, i / kColumns, i % kColumns);
        }
        widget->resize(client.cx, client.cy);
        widget->show();
        QApplication::processEvents();
    }

    GridDialog dialog;
    CSize small;
    CSize client;
    QWidget* widget = nullptr; // made once the application exists
    QGridLayout* grid = nullptr;
    bool grown = false;
};

Scene& TheScene()
{
    static Scene* scene = new Scene; // lives for the program; windows outlast the benchmarks
    return *scene;
}

void BM_ResizeDialog200_Layout(benchmark::State& state)
{
    Scene& s = TheScene();
    CResizeDialog::ControlInfo* first = s.dialog.GetHeader().GetFirst();
    for (auto _ : state) {
        s.grown = !s.grown;
        const int dx = s.grown ? kGrowX : 0;
        const int dy = s.grown ? kGrowY : 0;
        for (CResizeDialog::ControlInfo* info = first; info; info = info->GetNext())
            info->AdaptControlSize(dx, dy);
    }
}
BENCHMARK(BM_ResizeDialog200_Layout)->Unit(benchmark::kMicrosecond);

void BM_QGridLayout200_Layout(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state) {
        s.grown = !s.grown;
        const int dx = s.grown ? kGrowX : 0;
        const int dy = s.grown ? kGrowY : 0;
        s.grid->setGeometry(QRect(0, 0, s.client.cx + dx, s.client.cy + dy));
    }
}
BENCHMARK(BM_QGridLayout200_Layout)->Unit(benchmark::kMicrosecond);

void BM_ResizeDialog200_Step(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state) {
        s.grown = !s.grown;
        const int dx = s.grown ? kGrowX : 0;
        const int dy = s.grown ? kGrowY : 0;
        s.dialog.SetWindowPos(nullptr, 0, 0, s.small.cx + dx, s.small.cy + dy, SWP_NOMOVE | SWP_NOZORDER);
    }
}
BENCHMARK(BM_ResizeDialog200_Step)->Unit(benchmark::kMicrosecond);

void BM_QGridLayout200_Step(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state) {
        s.grown = !s.grown;
        const int dx = s.grown ? kGrowX : 0;
        const int dy = s.grown ? kGrowY : 0;
        s.widget->resize(s.client.cx + dx, s.client.cy + dy);
        // The layout follows the resize (at once when the resize event was
        // delivered already), then everything is painted.
        s.grid->setGeometry(QRect(0, 0, s.client.cx + dx, s.client.cy + dy));
        s.widget->repaint();
    }
}
BENCHMARK(BM_QGridLayout200_Step)->Unit(benchmark::kMicrosecond);

} // namespace
