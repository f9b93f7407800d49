// KDatenbankIO on a PostgreSQL server against libpq's own prepared
// statements on the same server: 100,000 records of (long, double, text of
// 40) written in one transaction, then read back. The server is a private
// cluster the benchmark starts (tests/support/pgserver.h); set
// VXBASE_BENCH_SERVER to a connect text prefix ("ODBC;host=... user=...")
// to use another server instead. Each write makes a fresh database.
#include "database/kdatenbankio.h"
#include "platform/dao/daoworkspace.h"
#include "support/pgserver.h"

#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include <cstdlib>
#include <string>

namespace {

constexpr int kRecords = 100000;

std::string TextFor(int i)
{
    std::string text = "Part " + std::to_string(1000000 + i) + " of the benchmark file, forty";
    text.resize(40, '.');
    return text;
}

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

void Catalogue(KDatenbankIO& db)
{
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Weight");
    db.m_FeldParameter.Add(MAKELONG(8, 7));
    db.m_FeldNamen.Add("Name");
    db.m_FeldParameter.Add(MAKELONG(41, 10));
}

void WriteWithKDatenbankIO(const std::string& connect)
{
    KDatenbankIO db;
    Catalogue(db);
    db.DbAnlegen(connect.c_str(), -1);
    db.DbOeffnen(connect.c_str());
    db.m_pDatabase->m_pWorkspace->BeginTrans();
    for (int i = 0; i < kRecords; ++i) {
        const std::string text = TextFor(i);
        db.m_pDbRecordset->AddNew();
        db.DbSetLongValue(0, i);
        db.DbSetDoubleValue(1, i * 0.5);
        db.DbSetFeldValue(2, text.c_str(), 0);
        db.m_pDbRecordset->Update();
    }
    db.m_pDatabase->m_pWorkspace->CommitTrans();
    db.DbSchliessen();
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
    for (auto _ : state) {
        KDatenbankIO db;
        Catalogue(db);
        db.DbOeffnen(Connect(name).c_str());
        long sum = 0;
        double weight = 0;
        std::size_t characters = 0;
        for (db.m_pDbRecordset->MoveFirst(); !db.m_pDbRecordset->IsEOF(); db.m_pDbRecordset->MoveNext()) {
            sum += db.DbGetLongValue(0);
            weight += db.DbGetDoubleValue(1);
            characters += std::char_traits<char>::length(db.DbGetTextValue(2));
        }
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(weight);
        if (characters != static_cast<std::size_t>(kRecords) * 40)
            state.SkipWithError("records missing");
    }
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
        long sum = 0;
        double weight = 0;
        std::size_t characters = 0;
        for (int i = 0; i < PQntuples(r); ++i) {
            sum += std::strtol(PQgetvalue(r, i, 1), nullptr, 10);
            weight += std::strtod(PQgetvalue(r, i, 2), nullptr);
            characters += std::char_traits<char>::length(PQgetvalue(r, i, 3));
        }
        PQclear(r);
        PQfinish(conn);
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(weight);
        if (characters != static_cast<std::size_t>(kRecords) * 40)
            state.SkipWithError("records missing");
    }
    state.SetItemsProcessed(state.iterations() * kRecords);
}

BENCHMARK(BM_Server_Write_Batch_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Server_Write_Batch_Libpq)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Server_Read_KDatenbankIO)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Server_Read_Libpq)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
