// Element access on long lists: XString::Element(i) and GetSubString(n)
// over every element of a 10,000-element list.
#include "base/stringlist.h"
#include "base/xstring.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int kElements = 10000;

CString MakeList(char sep)
{
    CString list;
    for (int i = 0; i < kElements; ++i) {
        if (i)
            list += sep;
        CString e;
        e.Format("K%d", i);
        list += e;
    }
    return list;
}

// One iteration reads every element once; the reported time is per call.
void BM_XStringElement(benchmark::State& state)
{
    const XString list(MakeList('|'));
    for (auto _ : state) {
        for (int i = 0; i < kElements; ++i)
            benchmark::DoNotOptimize(list.Element(i));
    }
    state.SetItemsProcessed(state.iterations() * kElements);
    state.counters["ns_per_call"] = benchmark::Counter(static_cast<double>(state.iterations()) * kElements,
                                                       benchmark::Counter::kIsRate | benchmark::Counter::kInvert,
                                                       benchmark::Counter::kIs1000);
}
BENCHMARK(BM_XStringElement)->Unit(benchmark::kMillisecond);

void BM_GetSubString(benchmark::State& state)
{
    const CString list = MakeList(';');
    for (auto _ : state) {
        for (int n = 1; n <= kElements; ++n)
            benchmark::DoNotOptimize(GetSubString(n, list, ';'));
    }
    state.SetItemsProcessed(state.iterations() * kElements);
    state.counters["ns_per_call"] = benchmark::Counter(static_cast<double>(state.iterations()) * kElements,
                                                       benchmark::Counter::kIsRate | benchmark::Counter::kInvert,
                                                       benchmark::Counter::kIs1000);
}
BENCHMARK(BM_GetSubString)->Unit(benchmark::kMillisecond);

} // namespace
