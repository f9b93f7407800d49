// KDatenbankIO on a PostgreSQL server against libpq's own prepared
// statements on the same server: 100,000 records of (long, double, text of
// 40) written in one transaction, then read back. The server is a private
// cluster the benchmark starts (tests/support/pgserver.h); set
// VXBASE_BENCH_SERVER to a connect text prefix ("ODBC;host=... user=...")
// to use another server instead. Each write makes a fresh database.
#include "partstable.h"
#include "support/pgserver.h"

#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include <cstdlib>
#include <string>

namespace {

using benchsupport::kRecords;
using benchsupport::TextFor;

vxtest::PgServer* Server()
{
    std::string why;
    vxtest::PgServer* server = vxtest::PgServer::Get(&why);
    if (!server) {
        std::fprintf(stderr, "no PostgreSQL server: %s\n", why.c_str());
        std::exit(1);
    }
    return server;
}

// The connect text of database `name`, in libpq's form.
std::string Connect(const std::string& name)
{
    return Server()->Connect(name, "libpq");
}

std::string LibpqText(const std::string& name)
{
    return Connect(name).substr(5); // without "ODBC;"
}

int g_databases = 0;

std::string FreshName()
{
    return "bench_" + std::to_string(++g_databases);
}

void WriteWithKDatenbankIO(const std::string& connect)
{
    benchsupport::WriteWithKDatenbankIO(connect, true);
}

void Exec(PGconn* conn, const char* sql)
{
    PQclear(PQexec(conn, sql));
}

// The same work with libpq: a database with the same table (a key the
// server numbers, citext for the text), one prepared insert per record.
void WriteWithLibpq(const std::string& name)
{
    PGconn* admin = PQconnectdb(LibpqText("postgres").c_str());
    Exec(admin, ("CREATE DATABASE " + name + " ENCODING 'SQL_ASCII' LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0")
                    .c_str());
    PQfinish(admin);
    PGconn* conn = PQconnectdb(LibpqText(name).c_str());
    Exec(conn, "CREATE EXTENSION IF NOT EXISTS citext");
    Exec(conn, "CREATE TABLE parts (nr integer, weight double precision, name citext, "
               "k bigint GENERATED ALWAYS AS IDENTITY UNIQUE)");
    Exec(conn, "BEGIN");
    PQclear(PQprepare(conn, "ins", "INSERT INTO parts (nr, weight, name) VALUES ($1, $2, $3) RETURNING k", 3, nullptr));
    for (int i = 0; i < kRecords; ++i) {
        const std::string nr = std::to_string(i);
        char weight[32];
        std::snprintf(weight, sizeof weight, "%.17g", i * 0.5);
        const std::string text = TextFor(i);
        const char* values[] = {nr.c_str(), weight, text.c_str()};
        PGresult* r = PQexecPrepared(conn, "ins", 3, values, nullptr, nullptr, 0);
        benchmark::DoNotOptimize(PQgetvalue(r, 0, 0));
        PQclear(r);
    }
    Exec(conn, "COMMIT");
    PQfinish(conn);
}

void BM_Server_Write_Batch_KDatenbankIO(benchmark::State& state)
{
    for (auto _ : state)
        WriteWithKDatenbankIO(Connect(FreshName()));
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Server_Write_Batch_Libpq(benchmark::State& state)
{
    for (auto _ : state)
        WriteWithLibpq(FreshName());
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Server_Read_KDatenbankIO(benchmark::State& state)
{
    const std::string name = FreshName();
    WriteWithKDatenbankIO(Connect(name));
    for (auto _ : state)
        benchsupport::ReadWithKDatenbankIO(state, Connect(name));
    state.SetItemsProcessed(state.iterations() * kRecords);
}

void BM_Server_Read_Libpq(benchmark::State& state)
{
    const std::string name = FreshName();
    WriteWithLibpq(name);
    for (auto _ : state) {
        PGconn* conn = PQconnectdb(LibpqText(name).c_str());
        PQclear(PQprepare(conn, "all", "SELECT k, nr, weight, name FROM parts ORDER BY k", 0, nullptr));
        PGresult* r = PQexecPrepared(conn, "all", 0, nullptr, nullptr, nullptr, 0);
        benchsupport::PartsSums sums;
        for (int i = 0; i < PQntuples(r); ++i)
            sums.Add(std::strtol(PQgetvalue(r, i, 1), nullptr, 10), std::strtod(PQgetvalue(r, i, 2), nullptr),
                     PQgetvalue(r, i, 3));
        PQclear(r);
        PQfinish(conn);
        sums.Check(state);
    }
    state.SetItemsProcessed(state.iterations() * kRecords);
}

BENCHMARK(BM_Server_Write_Batch_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Server_Write_Batch_Libpq)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Server_Read_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Server_Read_Libpq)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
