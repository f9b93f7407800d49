// One drag step of a splitter: the root bar of a tree of 8 panes holding
// 100 controls moves, and every control is laid out again. Side by side: a
// KSplitPane tree (MoveSplitter, which places the windows by their rules),
// and a QSplitter tree of the same shape whose panes lay out the same number
// of plain widgets with a box layout (setSizes on the root splitter). Both
// run offscreen with their windows shown, so that every move takes effect at
// once.
#include "layout/ksplitpane.h"
#include "ui/windows/uiapp.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QSplitter>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

constexpr int kPanes = 8;
constexpr int kControls = 100;
constexpr int kWidth = 1000;
constexpr int kHeight = 700;
constexpr int kRowHeight = 22;

// How many controls the pane of this index holds: 100 over 8, the first
// ones one more.
int ControlsOf(int pane)
{
    return kControls / kPanes + (pane < kControls % kPanes ? 1 : 0);
}

void EnsureUi()
{
    if (!std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    vx::InitUi();
}

// Nodes nest on the left and alternate their orientation; every right side,
// and the deepest left side, is a pane of controls stacked from the top.
struct PaneScene {
    PaneScene()
    {
        EnsureUi();
        dialog.CreateEx("split", "SplitBench", WS_POPUP | WS_VISIBLE, CRect(0, 0, kWidth, kHeight));
        root = std::make_unique<KSplitPane>();
        KSplitPane* node = root.get();
        CRect rest(0, 0, kWidth, kHeight);
        for (int pane = 0; pane < kPanes - 1; ++pane) {
            const int orientation = pane % 2 == 0 ? 1 : 0;
            node->SetOrientation(orientation);
            CRect left = rest;
            CRect right = rest;
            if (orientation == 1) {
                left.right = rest.left + rest.Width() / 2 - 2;
                right.left = left.right + KSplitPane::kBarSize;
            } else {
                left.bottom = rest.top + rest.Height() / 2 - 2;
                right.top = left.bottom + KSplitPane::kBarSize;
            }
            Fill(*node, KSplitPane::sideRight, right, pane);
            if (pane == kPanes - 2) {
                Fill(*node, KSplitPane::sideLeft, left, pane + 1);
            } else {
                auto* child = new KSplitPane;
                node->AttachChild(child, KSplitPane::sideLeft);
                node = child;
            }
            rest = left;
        }
        root->SetupPane();
        root->MovePane(-1, -1);
    }

    // Controls stacked from the top of `area`, each as wide as the pane
    // and keeping its distance from the top; the last one takes the rest.
    void Fill(KSplitPane& node, int side, const CRect& area, int pane)
    {
        const int n = ControlsOf(pane);
        const int row = std::max(2, std::min(kRowHeight, area.Height() / n));
        for (int i = 0; i < n; ++i) {
            auto w = std::make_unique<CWnd>();
            CRect r(area.left + 2, area.top + i * row, area.right - 2, area.top + (i + 1) * row - 2);
            if (i == n - 1)
                r.bottom = area.bottom - 2;
            w->CreateEx("", "Control", WS_CHILD | WS_VISIBLE, r, &dialog, static_cast<UINT>(1000 + controls.size()));
            const bool last = i == n - 1;
            node.AddWindow(w.get(), side, KSplitPane::modeStretch, last ? KSplitPane::modeStretch : KSplitPane::modeNear);
            controls.push_back(std::move(w));
        }
    }

    CWnd dialog;
    std::vector<std::unique_ptr<CWnd>> controls;
    std::unique_ptr<KSplitPane> root;
};

// The same shape with Qt's splitters: nested QSplitters of alternating
// orientation, the second widget of each a pane of controls.
struct QtScene {
    QtScene()
    {
        EnsureUi();
        top = std::make_unique<QWidget>();
        top->setGeometry(0, 0, kWidth, kHeight);
        auto* outer = new QVBoxLayout(top.get());
        outer->setContentsMargins(0, 0, 0, 0);
        QSplitter* parent = nullptr;
        for (int pane = 0; pane < kPanes - 1; ++pane) {
            auto* splitter = new QSplitter(pane % 2 == 0 ? Qt::Horizontal : Qt::Vertical);
            splitter->setHandleWidth(KSplitPane::kBarSize);
            splitter->setChildrenCollapsible(false);
            if (parent)
                parent->insertWidget(0, splitter);
            else
                outer->addWidget(splitter);
            if (!root)
                root = splitter;
            splitter->addWidget(Pane(ControlsOf(pane)));
            if (pane == kPanes - 2)
                splitter->insertWidget(0, Pane(ControlsOf(pane + 1)));
            parent = splitter;
        }
        top->show();
        QApplication::processEvents();
    }

    static QWidget* Pane(int n)
    {
        auto* pane = new QWidget;
        auto* box = new QVBoxLayout(pane);
        box->setContentsMargins(2, 0, 2, 2);
        box->setSpacing(2);
        for (int i = 0; i < n; ++i) {
            auto* control = new QWidget;
            control->setMinimumHeight(2);
            box->addWidget(control, i == n - 1 ? 1 : 0);
        }
        return pane;
    }

    std::unique_ptr<QWidget> top;
    QSplitter* root = nullptr;
};

// Both scenes live for the program: their windows outlast the benchmarks.
PaneScene& Panes()
{
    static auto* scene = new PaneScene;
    return *scene;
}

QtScene& Splitters()
{
    static auto* scene = new QtScene;
    return *scene;
}

void BM_DragStepKSplitPane(benchmark::State& state)
{
    PaneScene& s = Panes();
    int step = 0;
    for (auto _ : state) {
        // The bar goes back and forth, so that every step changes the layout.
        const int x = (step++ % 2) ? 480 : 520;
        s.root->MoveSplitter(CPoint(x, kHeight / 2));
    }
    state.SetLabel("8 panes, 100 controls");
}
BENCHMARK(BM_DragStepKSplitPane)->Unit(benchmark::kMicrosecond);

void BM_DragStepQSplitter(benchmark::State& state)
{
    QtScene& s = Splitters();
    const int total = kWidth - KSplitPane::kBarSize;
    int step = 0;
    for (auto _ : state) {
        const int x = (step++ % 2) ? 480 : 520;
        s.root->setSizes({x, total - x});
    }
    state.SetLabel("8 panes, 100 controls");
}
BENCHMARK(BM_DragStepQSplitter)->Unit(benchmark::kMicrosecond);

} // namespace
