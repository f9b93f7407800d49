// Shaded buttons: how long SetShade takes for a 200 x 40 button (it runs on
// every size or design change), and how long one paint of that button takes
// (WM_PAINT through DrawItem: face, border, caption), offscreen.
#include "look/cshadebuttonst.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"

#include <benchmark/benchmark.h>

#include <QImage>

#include <cstdlib>

namespace {

struct Scene {
    Scene()
    {
        if (!std::getenv("QT_QPA_PLATFORM"))
            setenv("QT_QPA_PLATFORM", "offscreen", 1);
        vx::InitUi();
        holder.CreateEx("holder", "Holder", WS_POPUP | WS_VISIBLE, CRect(0, 0, 240, 80));
        button.Create("OK", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 40), &holder, IDOK);
        button.SetFlat(FALSE);
        std::srand(1);
        button.SetShade(CShadeButtonST::SHS_HARDBUMP, 8, 20, 5, RGB(55, 55, 255));
    }
    CWnd holder;
    CShadeButtonST button;
};

Scene& TheScene()
{
    static Scene* scene = new Scene; // lives for the program; windows outlast the benchmarks
    return *scene;
}

void BM_SetShade200x40(benchmark::State& state)
{
    Scene& s = TheScene();
    const UINT shade = static_cast<UINT>(state.range(0));
    std::srand(1);
    for (auto _ : state)
        s.button.SetShade(shade, 8, 20, 5, RGB(55, 55, 255));
    state.SetLabel("shade " + std::to_string(shade));
}
BENCHMARK(BM_SetShade200x40)->DenseRange(0, 8)->Unit(benchmark::kMicrosecond);

void BM_PaintShadedButton200x40(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state) {
        s.button.Invalidate(FALSE);
        s.button.SendMessage(WM_PAINT);
    }
}
BENCHMARK(BM_PaintShadedButton200x40)->Unit(benchmark::kMicrosecond);

// The same paint as Qt shows it: the widget rendered into an image.
void BM_RenderShadedButton200x40WithQt(benchmark::State& state)
{
    Scene& s = TheScene();
    for (auto _ : state) {
        QImage image = vx::RenderWindow(s.button);
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_RenderShadedButton200x40WithQt)->Unit(benchmark::kMicrosecond);

} // namespace
