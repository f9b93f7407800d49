// Scanning a project directory for the pages of one drawing.
//
// The directory holds 10,000 page files of the drawing "plan" and 10,000
// other files. KVxFileList::CollectPages(1) (pages and their newest write
// time) is set against a bare readdir + stat walk of the same directory; the
// goal is at most 1.5 times the walk. A cached second scan must not open the
// directory at all: "dir_opens" counts the directory opens of the platform
// layer per scan.
#include "pages/kvxfilelist.h"
#include "platform/files/hostpath.h"

#include <benchmark/benchmark.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr int kPages = 10000;
constexpr int kOthers = 10000;

class Project {
public:
    Project()
    {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/vxbench-XXXXXX";
        if (!mkdtemp(pattern.data()))
            std::abort();
        m_dir = pattern;
        char name[64];
        for (int i = 0; i < kPages; ++i) {
            // Every tenth page has a sub-page letter, as drawings do.
            std::snprintf(name, sizeof name, "plan.%04d%s", i, i % 10 == 5 ? "a" : "");
            Touch(name);
        }
        for (int i = 0; i < kOthers; ++i) {
            static const char* const kinds[] = {"haus.%04d", "schema%05d.dxf", "liste%05d.dbf", "plan%05d.bak"};
            std::snprintf(name, sizeof name, kinds[i % 4], i);
            Touch(name);
        }
    }
    ~Project()
    {
        std::error_code ec;
        std::filesystem::remove_all(m_dir, ec);
    }
    const std::string& Dir() const { return m_dir; }

private:
    void Touch(const char* name)
    {
        const int fd = open((m_dir + "/" + name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (fd < 0 || write(fd, "x", 1) != 1)
            std::abort();
        close(fd);
    }
    std::string m_dir;
};

const Project& TheProject()
{
    static const Project project;
    return project;
}

// What any program must do to learn names and times: read every entry and
// stat it.
long long ReaddirStatWalk(const std::string& dir)
{
    DIR* d = opendir(dir.c_str());
    if (!d)
        std::abort();
    long long newest = 0;
    while (const dirent* e = readdir(d)) {
        struct stat st {};
        if (fstatat(dirfd(d), e->d_name, &st, 0) == 0 && st.st_mtime > newest)
            newest = st.st_mtime;
    }
    closedir(d);
    return newest;
}

short Collect(const std::string& dir)
{
    KVxFileList list((dir + "/plan.0001").c_str());
    return list.CollectPages(1);
}

void BM_ReaddirStatWalk(benchmark::State& state)
{
    const std::string& dir = TheProject().Dir();
    for (auto _ : state)
        benchmark::DoNotOptimize(ReaddirStatWalk(dir));
}
BENCHMARK(BM_ReaddirStatWalk)->Unit(benchmark::kMillisecond);

void BM_CollectPages(benchmark::State& state)
{
    const std::string& dir = TheProject().Dir();
    g_KVxFileList_optimize = 0;
    KVxFileList::ResetOptimization();
    short count = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(count = Collect(dir));
    if (count != kPages)
        state.SkipWithError("wrong page count");
    state.counters["pages"] = count;
}
BENCHMARK(BM_CollectPages)->Unit(benchmark::kMillisecond);

// Both in turn within each iteration, so that they see the same state of
// the machine; "ratio" is the scan's time over the walk's.
void BM_CollectPagesOverWalk(benchmark::State& state)
{
    const std::string& dir = TheProject().Dir();
    g_KVxFileList_optimize = 0;
    KVxFileList::ResetOptimization();
    using Clock = std::chrono::steady_clock;
    Clock::duration walk{}, scan{};
    for (auto _ : state) {
        const auto t0 = Clock::now();
        benchmark::DoNotOptimize(ReaddirStatWalk(dir));
        const auto t1 = Clock::now();
        benchmark::DoNotOptimize(Collect(dir));
        const auto t2 = Clock::now();
        walk += t1 - t0;
        scan += t2 - t1;
    }
    state.counters["ratio"] = std::chrono::duration<double>(scan) / std::chrono::duration<double>(walk);
}
BENCHMARK(BM_CollectPagesOverWalk)->Unit(benchmark::kMillisecond);

void BM_CollectPagesCached(benchmark::State& state)
{
    const std::string& dir = TheProject().Dir();
    g_KVxFileList_optimize = 1;
    KVxFileList::ResetOptimization();
    Collect(dir); // the scan that fills the cache
    const unsigned long before = vx::DirectoryOpenCount();
    short count = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(count = Collect(dir));
    const unsigned long opens = vx::DirectoryOpenCount() - before;
    state.counters["dir_opens"] = static_cast<double>(opens);
    if (opens != 0 || count != kPages)
        state.SkipWithError("the cached scan read the directory");
    g_KVxFileList_optimize = 0;
    KVxFileList::ResetOptimization();
}
BENCHMARK(BM_CollectPagesCached)->Unit(benchmark::kMillisecond);

// The cache without times: no file is touched at all.
void BM_CollectPagesCachedNoTimes(benchmark::State& state)
{
    const std::string& dir = TheProject().Dir();
    g_KVxFileList_optimize = 1;
    KVxFileList::ResetOptimization();
    Collect(dir);
    const unsigned long before = vx::DirectoryOpenCount();
    for (auto _ : state) {
        KVxFileList list((dir + "/plan.0001").c_str());
        benchmark::DoNotOptimize(list.CollectPages(0));
    }
    state.counters["dir_opens"] = static_cast<double>(vx::DirectoryOpenCount() - before);
    g_KVxFileList_optimize = 0;
    KVxFileList::ResetOptimization();
}
BENCHMARK(BM_CollectPagesCachedNoTimes)->Unit(benchmark::kMillisecond);

} // namespace
