// KDatenbankIO against SQLite's own prepared statements on the same data:
// 100,000 records of (long, double, text of 40) written, then read back.
//
// Both sides work on the same kind of file (write-ahead log, synchronous
// NORMAL). "Commit" runs commit every record on its own, as an Update does
// without a transaction; "Batch" runs commit once, inside one transaction.
#include "partstable.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using benchsupport::kRecords;
using benchsupport::TextFor;

// The benchmark's files, in a directory that goes at the end of the run.
struct BenchDirectory {
    std::string path;
    BenchDirectory()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vxdbbench-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~BenchDirectory()
    {
        std::error_code ec;
        std::filesystem::remove_all(path, ec);
    }
};

std::string BenchFile(const char* name)
{
    static const BenchDirectory dir;
    return dir.path + "/" + name;
}

void RemoveFile(const std::string& file)
{
    for (const char* suffix : {"", "-wal", "-shm"})
        std::remove((file + suffix).c_str());
}

void WriteWithKDatenbankIO(const std::string& file, bool batch)
{
    RemoveFile(file);
    benchsupport::WriteWithKDatenbankIO(file, batch);
}

sqlite3* OpenRaw(const std::string& file)
{
    // Without SQLite's mutexes, as the engine opens its connections.
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
    return db;
}

void WriteWithSqlite(const std::string& file, bool batch)
{
    RemoveFile(file);
    sqlite3* db = OpenRaw(file);
    sqlite3_exec(db, "CREATE TABLE Parts (Nr LONG, Weight DOUBLE, Name TEXT(41) COLLATE NOCASE)", nullptr, nullptr,
                 nullptr);
    if (batch)
        sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO Parts (Nr, Weight, Name) VALUES (?1, ?2, ?3)", -1, &insert, nullptr);
    for (int i = 0; i < kRecords; ++i) {
        const std::string text = TextFor(i);
        sqlite3_bind_int(insert, 1, i);
        sqlite3_bind_double(insert, 2, i * 0.5);
        sqlite3_bind_text(insert, 3, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    if (batch)
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

void BM_Write_Commit_KDatenbankIO(benchmark::State& state)
{
    for (auto _ : state)
        WriteWithKDatenbankIO(BenchFile("commit-k.mdb"), false);
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Write_Commit_Sqlite(benchmark::State& state)
{
    for (auto _ : state)
        WriteWithSqlite(BenchFile("commit-raw.db"), false);
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Write_Batch_KDatenbankIO(benchmark::State& state)
{
    for (auto _ : state)
        WriteWithKDatenbankIO(BenchFile("batch-k.mdb"), true);
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Write_Batch_Sqlite(benchmark::State& state)
{
    for (auto _ : state)
        WriteWithSqlite(BenchFile("batch-raw.db"), true);
    state.SetItemsProcessed(state.iterations() * kRecords);
}

// Reading includes the opening, which is where the record set reads its rows.
void BM_Read_KDatenbankIO(benchmark::State& state)
{
    const std::string file = BenchFile("read-k.mdb");
    WriteWithKDatenbankIO(file, true);
    for (auto _ : state)
        benchsupport::ReadWithKDatenbankIO(state, file);
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Read_Sqlite(benchmark::State& state)
{
    const std::string file = BenchFile("read-raw.db");
    WriteWithSqlite(file, true);
    for (auto _ : state) {
        sqlite3* db = OpenRaw(file);
        sqlite3_stmt* select = nullptr;
        sqlite3_prepare_v2(db, "SELECT * FROM Parts", -1, &select, nullptr);
        benchsupport::PartsSums sums;
        while (sqlite3_step(select) == SQLITE_ROW) {
            const long nr = sqlite3_column_int(select, 0);
            const double weight = sqlite3_column_double(select, 1);
            sums.Add(nr, weight, reinterpret_cast<const char*>(sqlite3_column_text(select, 2)));
        }
        sqlite3_finalize(select);
        sqlite3_close(db);
        sums.Check(state);
    }
    state.SetItemsProcessed(state.iterations() * kRecords);
}

BENCHMARK(BM_Write_Commit_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Write_Commit_Sqlite)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Write_Batch_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Write_Batch_Sqlite)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Read_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Read_Sqlite)->Unit(benchmark::kMillisecond)->Iterations(10);

} // namespace
