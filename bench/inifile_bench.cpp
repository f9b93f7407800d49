// Settings files: KIniMan against a plain std::getline parse of the same
// file, and the private profile functions, which read the file on each call.
//
// The file has 200 sections of 50 keys (10,000 keys, about 400 KB); the
// profile reads are timed on a file of the usual size too.
#include <vxbase.h>

#include <benchmark/benchmark.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unordered_map>

namespace {

constexpr int kSections = 200;
constexpr int kKeys = 50;

std::string SectionName(int s)
{
    return "Section" + std::to_string(s);
}

std::string KeyName(int k)
{
    return "Key" + std::to_string(k);
}

// A directory with a sample file, made once and removed at exit.
struct Sample {
    std::string dir;
    std::string file;

    Sample(int sections, int keys)
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vxbench-XXXXXX").string();
        dir = mkdtemp(pattern.data());
        file = dir + "/sample.ini";
        std::ofstream out(file, std::ios::binary);
        for (int s = 0; s < sections; ++s) {
            if (s > 0)
                out << "\r\n";
            out << "[" << SectionName(s) << "]\r\n";
            for (int k = 0; k < keys; ++k)
                out << KeyName(k) << "=C:\\Projekte\\Anlage " << s << "\\Blatt " << k << ".vxd\r\n";
        }
    }
    ~Sample() { std::filesystem::remove_all(dir); }
};

const Sample& TheSample()
{
    static const Sample sample(kSections, kKeys);
    return sample;
}

// The size of a usual suite file: 10 sections of 20 keys (about 7 KB).
constexpr int kSmallSections = 10;
constexpr int kSmallKeys = 20;
const Sample& SmallSample()
{
    static const Sample sample(kSmallSections, kSmallKeys);
    return sample;
}

using PlainIni = std::unordered_map<std::string, std::unordered_map<std::string, std::string>>;

PlainIni PlainParse(const std::string& file)
{
    PlainIni ini;
    std::ifstream in(file, std::ios::binary);
    std::string line;
    std::unordered_map<std::string, std::string>* section = nullptr;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && line[0] == '[') {
            const auto close = line.find(']');
            if (close != std::string::npos)
                section = &ini[line.substr(1, close - 1)];
            continue;
        }
        const auto eq = line.find('=');
        if (eq != std::string::npos && section)
            (*section)[line.substr(0, eq)] = line.substr(eq + 1);
    }
    return ini;
}

void BM_PlainGetlineParse(benchmark::State& state)
{
    const std::string& file = TheSample().file;
    for (auto _ : state) {
        PlainIni ini = PlainParse(file);
        benchmark::DoNotOptimize(ini);
    }
    state.SetItemsProcessed(state.iterations() * kSections * kKeys);
}
BENCHMARK(BM_PlainGetlineParse)->Unit(benchmark::kMillisecond);

void BM_KIniManReadFile(benchmark::State& state)
{
    // A copy, since the document writes itself back when it goes.
    const std::string file = TheSample().dir + "/read.ini";
    std::filesystem::copy_file(TheSample().file, file, std::filesystem::copy_options::overwrite_existing);
    KIniMan ini;
    for (auto _ : state) {
        // Reading again empties the document first (without writing it).
        ini.ReadFile(file.c_str(), 0);
        benchmark::DoNotOptimize(ini.GetAnzSections());
    }
    state.SetItemsProcessed(state.iterations() * kSections * kKeys);
}
BENCHMARK(BM_KIniManReadFile)->Unit(benchmark::kMillisecond);

void BM_KIniManFlush(benchmark::State& state)
{
    const std::string file = TheSample().dir + "/flush.ini";
    std::filesystem::copy_file(TheSample().file, file, std::filesystem::copy_options::overwrite_existing);
    KIniMan ini;
    ini.ReadFile(file.c_str(), 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.Flush());
    state.SetItemsProcessed(state.iterations() * kSections * kKeys);
}
BENCHMARK(BM_KIniManFlush)->Unit(benchmark::kMillisecond);

// 10,000 reads of random keys, each of which reads and scans the file.
void ReadRandomKeys(benchmark::State& state, const Sample& sample, int sections, int keys)
{
    std::mt19937 random(1);
    char value[10000];
    for (auto _ : state) {
        for (int i = 0; i < 10000; ++i) {
            const std::string section = SectionName(static_cast<int>(random() % sections));
            const std::string key = KeyName(static_cast<int>(random() % keys));
            benchmark::DoNotOptimize(
                GetPrivateProfileStringA(section.c_str(), key.c_str(), "", value, sizeof value, sample.file.c_str()));
        }
    }
    state.SetItemsProcessed(state.iterations() * 10000);
}

void BM_GetPrivateProfileString10000(benchmark::State& state)
{
    ReadRandomKeys(state, TheSample(), kSections, kKeys);
}
BENCHMARK(BM_GetPrivateProfileString10000)->Unit(benchmark::kMillisecond);

void BM_GetPrivateProfileString10000SmallFile(benchmark::State& state)
{
    ReadRandomKeys(state, SmallSample(), kSmallSections, kSmallKeys);
}
BENCHMARK(BM_GetPrivateProfileString10000SmallFile)->Unit(benchmark::kMillisecond);

// What the same reads would cost with a cache keyed on the file's size and
// modification time: one stat() to validate, then a hash lookup.
void BM_CachedLookup10000(benchmark::State& state)
{
    const std::string& file = TheSample().file;
    const PlainIni ini = PlainParse(file);
    std::mt19937 random(1);
    for (auto _ : state) {
        for (int i = 0; i < 10000; ++i) {
            struct stat st {};
            stat(file.c_str(), &st);
            benchmark::DoNotOptimize(st.st_mtim.tv_nsec + st.st_size);
            const std::string section = SectionName(static_cast<int>(random() % kSections));
            const std::string key = KeyName(static_cast<int>(random() % kKeys));
            const auto s = ini.find(section);
            benchmark::DoNotOptimize(s->second.find(key));
        }
    }
    state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(BM_CachedLookup10000)->Unit(benchmark::kMillisecond);

} // namespace
