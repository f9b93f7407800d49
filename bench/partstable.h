// What the database benchmarks share: the table of parts both sides write,
// 100,000 records of (long, double, text of 40), KDatenbankIO's side of
// writing and reading it, and the sums every read makes.
#pragma once

#include "database/kdatenbankio.h"
#include "platform/dao/daoworkspace.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace benchsupport {

constexpr int kRecords = 100000;

inline std::string TextFor(int i)
{
    std::string text = "Part " + std::to_string(1000000 + i) + " of the benchmark file, forty";
    text.resize(40, '.');
    return text;
}

inline void Catalogue(KDatenbankIO& db)
{
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Weight");
    db.m_FeldParameter.Add(MAKELONG(8, 7));
    db.m_FeldNamen.Add("Name");
    db.m_FeldParameter.Add(MAKELONG(41, 10)); // 40 characters fit below the limit
}

// Makes the table at `where` (a file or a connect text) and writes the
// records, one Update each; with `batch` all inside one transaction.
inline void WriteWithKDatenbankIO(const std::string& where, bool batch)
{
    KDatenbankIO db;
    Catalogue(db);
    db.DbAnlegen(where.c_str(), -1);
    db.DbOeffnen(where.c_str());
    if (batch)
        db.m_pDatabase->m_pWorkspace->BeginTrans();
    for (int i = 0; i < kRecords; ++i) {
        const std::string text = TextFor(i);
        db.m_pDbRecordset->AddNew();
        db.DbSetLongValue(0, i);
        db.DbSetDoubleValue(1, i * 0.5);
        db.DbSetFeldValue(2, text.c_str(), 0);
        db.m_pDbRecordset->Update();
    }
    if (batch)
        db.m_pDatabase->m_pWorkspace->CommitTrans();
    db.DbSchliessen();
}

// The sums of one read of the table, the same on both sides.
struct PartsSums {
    long sum = 0;
    double weight = 0;
    std::size_t characters = 0;

    void Add(long nr, double partWeight, const char* name)
    {
        sum += nr;
        weight += partWeight;
        characters += std::char_traits<char>::length(name);
    }
    // Keeps the sums from being optimised away, and stops the benchmark
    // when not every record came back.
    void Check(benchmark::State& state)
    {
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(weight);
        benchmark::DoNotOptimize(characters);
        if (characters != static_cast<std::size_t>(kRecords) * 40)
            state.SkipWithError("records missing");
    }
};

// One read through KDatenbankIO, opening included: opening is where the
// record set reads its rows.
inline void ReadWithKDatenbankIO(benchmark::State& state, const std::string& where)
{
    KDatenbankIO db;
    Catalogue(db);
    db.DbOeffnen(where.c_str());
    PartsSums sums;
    for (db.m_pDbRecordset->MoveFirst(); !db.m_pDbRecordset->IsEOF(); db.m_pDbRecordset->MoveNext()) {
        const long nr = db.DbGetLongValue(0);
        const double weight = db.DbGetDoubleValue(1);
        sums.Add(nr, weight, db.DbGetTextValue(2));
    }
    sums.Check(state);
}

} // namespace benchsupport
