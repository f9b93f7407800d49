// GetPolygonPlane on star-shaped polygons: the radii alternate between an
// outer and an inner circle, so every other vertex is reflex and the ear
// test has work to do on every round.
#include <vxbase.h>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

CArray<POINT, POINT> Star(int n)
{
    CArray<POINT, POINT> polygon;
    for (int i = 0; i < n; ++i) {
        double angle = 2.0 * M_PI * i / n;
        double r = i % 2 ? 40000.0 : 100000.0;
        polygon.Add(POINT{static_cast<LONG>(std::lround(r * std::cos(angle))),
                          static_cast<LONG>(std::lround(r * std::sin(angle)))});
    }
    return polygon;
}

void BM_GetPolygonPlane(benchmark::State& state)
{
    CArray<POINT, POINT> star = Star(static_cast<int>(state.range(0)));
    PolygonTriang triang;
    for (auto _ : state)
        benchmark::DoNotOptimize(triang.GetPolygonPlane(&star));
    state.SetLabel("star, " + std::to_string(state.range(0)) + " vertices");
}
BENCHMARK(BM_GetPolygonPlane)->Arg(100)->Arg(500)->Arg(2048)->Unit(benchmark::kMicrosecond);

} // namespace
