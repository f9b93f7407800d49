// Damaged files opened as databases: each is refused with a CDaoException,
// never with another exception or a read outside memory.
#include "database/dbtestutil.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daorecordset.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using dbtest::ErrorOf;

const std::string kData = std::string(VX_TEST_DATA_DIR) + "/database/";

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::uint32_t U32(const std::string& b, std::size_t at)
{
    return static_cast<std::uint8_t>(b[at]) | static_cast<std::uint8_t>(b[at + 1]) << 8 |
           static_cast<std::uint8_t>(b[at + 2]) << 16 | static_cast<std::uint32_t>(static_cast<std::uint8_t>(b[at + 3])) << 24;
}

void PutU16(std::string& b, std::size_t at, unsigned v)
{
    b[at] = static_cast<char>(v & 0xFF);
    b[at + 1] = static_cast<char>(v >> 8);
}

void PutU32(std::string& b, std::size_t at, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        b[at + static_cast<std::size_t>(i)] = static_cast<char>(v >> (8 * i));
}

} // namespace

TEST(DamagedFiles, ARecordLongerThanSqliteAllocatesIsACorruptDatabase)
{
    // A schema record whose length field asks for gigabytes: SQLite answers
    // "out of memory", which is no shortage of memory here.
    dbtest::TempDir dir;
    dbtest::WriteBytes(dir / "damaged.mdb", ReadFile(kData + "damaged-record.mdb"));
    for (const BOOL readOnly : {TRUE, FALSE}) {
        SCOPED_TRACE(readOnly ? "read-only" : "read-write");
        CDaoDatabase db;
        EXPECT_EQ(ErrorOf([&] { db.Open((dir / "damaged.mdb").c_str(), FALSE, readOnly); }), vx::kDaoCorrupt);
        EXPECT_FALSE(db.IsOpen());
    }
}

TEST(DamagedFiles, WorkbooksWithABrokenDirectoryAreRefused)
{
    const std::string book = ReadFile(kData + "parts.xls");
    ASSERT_GT(book.size(), 1024u);
    const unsigned shift = static_cast<std::uint8_t>(book[0x1E]) | static_cast<std::uint8_t>(book[0x1F]) << 8;
    const std::size_t sectorSize = std::size_t{1} << shift;
    const std::uint32_t directory = U32(book, 0x30);
    const std::size_t directoryAt = (directory + 1) * sectorSize;
    const std::size_t fatAt = (U32(book, 0x4C) + 1) * sectorSize;
    ASSERT_LT(directoryAt + 128, book.size());
    ASSERT_LT(directory, sectorSize / 4) << "the directory's entry lies in the first table sector";

    dbtest::TempDir dir;
    const auto open = [&](const std::string& bytes) {
        dbtest::WriteBytes(dir / "book.xls", bytes);
        CDaoDatabase db;
        return ErrorOf([&] { db.Open((dir / "book.xls").c_str(), FALSE, TRUE, "Excel 5.0;"); });
    };
    EXPECT_EQ(open(book), 0);

    // An entry's name longer than its 64-byte field: freexl would read
    // 26,624 bytes of a buffer of 64.
    std::string longName = book;
    PutU16(longName, directoryAt + 0x40, 0x6800);
    EXPECT_EQ(open(longName), 3274);
    // The directory's chain running in a circle.
    std::string circle = book;
    PutU32(circle, fatAt + 4 * directory, directory);
    EXPECT_EQ(open(circle), 3274);
    // The directory outside the file, and a file cut short.
    std::string outside = book;
    PutU32(outside, 0x30, 0x00FFFFFF);
    EXPECT_EQ(open(outside), 3274);
    EXPECT_EQ(open(book.substr(0, 700)), 3274);
}

namespace {

// A dBASE III table of two records with the fields NAME (C 10) and COUNT
// (N 5), whose header claims `claimed` records.
std::string DbaseTable(std::uint32_t claimed)
{
    std::string out(32, '\0');
    out[0] = 3;
    PutU32(out, 4, claimed);
    PutU16(out, 8, 32 + 2 * 32 + 1);
    PutU16(out, 10, 1 + 10 + 5);
    const auto field = [&](const char* name, char type, int length) {
        std::string d(32, '\0');
        d.replace(0, std::strlen(name), name);
        d[11] = type;
        d[16] = static_cast<char>(length);
        out += d;
    };
    field("NAME", 'C', 10);
    field("COUNT", 'N', 5);
    out += '\r';
    out += " K1            3";
    out += " Relay       -12";
    out += '\x1a';
    return out;
}

} // namespace

TEST(DamagedFiles, ADbaseTableReadsTheRecordsThatLieInTheFile)
{
    // A header that claims 268 million records: the two in the file are
    // read, and the open does not walk the missing ones.
    dbtest::TempDir dir;
    dbtest::WriteBytes(dir / "PARTS.DBF", DbaseTable(0x10000002));
    CDaoDatabase db;
    ASSERT_EQ(ErrorOf([&] { db.Open(dir.path().c_str(), FALSE, TRUE, "dBASE IV;"); }), 0);
    CDaoRecordset set(&db);
    set.Open(dbOpenSnapshot, "SELECT * FROM PARTS");
    std::vector<std::string> names;
    for (; !set.IsEOF(); set.MoveNext()) {
        COleVariant value;
        set.GetFieldValue("NAME", value);
        ASSERT_EQ(value.vt, VT_BSTR);
        names.emplace_back(value.bstrVal);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"K1", "Relay"}));
}

TEST(DamagedFiles, WhatFreexlDoesWithAHostileWorkbookStaysOutsideTheProgram)
{
    // A string record longer than its record: freexl copies 87,894 bytes of
    // a buffer of 65,768. It reads in a child process, so this program
    // lives on: the child's reading fails (under a memory checker), or it
    // hands over what it read.
    dbtest::TempDir dir;
    dbtest::WriteBytes(dir / "book.xls", ReadFile(kData + "damaged-strings.xls"));
    CDaoDatabase db;
    const long error = ErrorOf([&] { db.Open((dir / "book.xls").c_str(), FALSE, TRUE, "Excel 5.0;"); });
    EXPECT_TRUE(error == 0 || error == 3274) << error;
    EXPECT_EQ(db.IsOpen() != FALSE, error == 0);
}
