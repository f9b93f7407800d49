// DIN order and sorted look-up.
//
// BM_SortDIN against BM_SortStrverscmp: std::sort of the same 100,000
// designator-like strings ("-K12", "X3:14", "K10a", "M2.1", "007"...) with
// CompareDINText and with glibc's strverscmp; the first may take at most
// twice as long as the second. BM_SortDINQuickArray is the library's own
// quick sort with the same comparison, as KFileList uses it.
//
// BM_QuickStringArrayFind: one find in a QuickStringArray of 1,000,000 (and
// fewer) entries. The counter "compares" is the number of comparisons per
// find, which shows the binary search: about log2 of the size.
#include "base/dincompare.h"
#include "base/kquickarray.h"
#include "base/quickstringarray.h"
#include "platform/framework/mbstring.h"

#include <benchmark/benchmark.h>

#include <string.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kDesignators = 100000;

std::vector<CString> Designators()
{
    std::mt19937 rng(1234);
    auto pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    static const char* const kinds[] = {"K", "X", "M", "F", "S", "Q", "A", "H", "KF", "XD"};
    std::vector<CString> out;
    out.reserve(kDesignators);
    char buffer[64];
    for (int i = 0; i < kDesignators; ++i) {
        const char* kind = kinds[pick(10)];
        switch (pick(8)) {
        case 0:
            std::snprintf(buffer, sizeof buffer, "-%s%d", kind, pick(200));
            break;
        case 1:
            std::snprintf(buffer, sizeof buffer, "%s%d:%d", kind, pick(40), pick(100));
            break;
        case 2:
            std::snprintf(buffer, sizeof buffer, "%s%d%c", kind, pick(150), 'a' + pick(4));
            break;
        case 3:
            std::snprintf(buffer, sizeof buffer, "%s%d.%d", kind, pick(20), pick(12));
            break;
        case 4:
            std::snprintf(buffer, sizeof buffer, "%0*d", 1 + pick(3), pick(120));
            break;
        case 5:
            std::snprintf(buffer, sizeof buffer, "=A%d+B%d-%s%d", pick(5), pick(10), kind, pick(60));
            break;
        case 6:
            std::snprintf(buffer, sizeof buffer, "%s%d", kind, pick(1000));
            break;
        default:
            std::snprintf(buffer, sizeof buffer, "-%s%d:%s", kind, pick(30), pick(2) ? "PE" : "13");
            break;
        }
        out.emplace_back(buffer);
    }
    return out;
}

const std::vector<CString>& Input()
{
    static const std::vector<CString> input = Designators();
    return input;
}

template <class Less>
void SortCopies(benchmark::State& state, Less less)
{
    const std::vector<CString>& input = Input();
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<CString> work = input;
        state.ResumeTiming();
        std::sort(work.begin(), work.end(), less);
        benchmark::DoNotOptimize(work.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(input.size()));
}

void BM_SortDIN(benchmark::State& state)
{
    SortCopies(state, [](CString& a, CString& b) { return CompareDINText(&a, &b) < 0; });
}
BENCHMARK(BM_SortDIN)->Unit(benchmark::kMillisecond);

void BM_SortStrverscmp(benchmark::State& state)
{
    SortCopies(state, [](const CString& a, const CString& b) { return strverscmp(a, b) < 0; });
}
BENCHMARK(BM_SortStrverscmp)->Unit(benchmark::kMillisecond);

void BM_SortDINQuickArray(benchmark::State& state)
{
    const std::vector<CString>& input = Input();
    for (auto _ : state) {
        state.PauseTiming();
        KQuickArray<CString> work;
        work.SetSize(static_cast<int>(input.size()));
        std::copy(input.begin(), input.end(), work.begin());
        work.m_pfnCompare = CompareDINText;
        state.ResumeTiming();
        work.QuickSort();
        benchmark::DoNotOptimize(work.GetData());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(input.size()));
}
BENCHMARK(BM_SortDINQuickArray)->Unit(benchmark::kMillisecond);

long g_compares = 0;

int CountingCompare(unsigned long user, CString* a, CString* b)
{
    ++g_compares;
    return CompareStringCallback(user, a, b);
}

void BM_QuickStringArrayFind(benchmark::State& state)
{
    const int size = static_cast<int>(state.range(0));
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i)
        names.push_back("Part" + std::to_string(i * 7919L % 10000019L));
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return _mbsicmp(a.c_str(), b.c_str()) < 0; });

    QuickStringArray array;
    array.SetSize(0, size); // one allocation for the whole fill
    for (const std::string& name : names)
        array.Add(name.c_str());

    std::mt19937 rng(42);
    std::vector<CString> keys;
    for (int i = 0; i < 4096; ++i)
        keys.emplace_back(names[rng() % names.size()].c_str());

    std::size_t next = 0;
    long hits = 0;
    for (auto _ : state) {
        hits += array.Find(keys[next]) >= 0;
        next = (next + 1) % keys.size();
    }
    if (hits != static_cast<long>(state.iterations()))
        state.SkipWithError("a present key was not found");

    g_compares = 0;
    array.m_pfnCompareData = CountingCompare;
    for (const CString& key : keys)
        array.Find(key);
    state.counters["compares"] = static_cast<double>(g_compares) / static_cast<double>(keys.size());
    state.SetLabel(std::to_string(size) + " entries");
}
BENCHMARK(BM_QuickStringArrayFind)->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kNanosecond);

} // namespace
