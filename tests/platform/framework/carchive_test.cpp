#include "platform/framework/carchive.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::vector<unsigned char> Bytes(const std::string& file)
{
    const std::string bytes = vxtest::ReadBytes(file);
    return std::vector<unsigned char>(bytes.begin(), bytes.end());
}

} // namespace

TEST(CArchive, WritesNumbersLittleEndianInTheirOwnSize)
{
    vxtest::TempDir dir;
    const std::string file = dir.Path("n.dat");
    {
        CArchive ar(file.c_str(), CArchive::store);
        EXPECT_TRUE(ar.IsStoring());
        ar << static_cast<BYTE>(0xAB) << static_cast<WORD>(0x1234) << 0x01020304 << static_cast<short>(-2)
           << 'c' << 1.5 << 2.5f << static_cast<long long>(-1);
        EXPECT_TRUE(ar.Close());
    }
    const std::vector<unsigned char> expected = {0xAB, 0x34, 0x12, 0x04, 0x03, 0x02, 0x01, 0xFE, 0xFF, 'c'};
    const std::vector<unsigned char> bytes = Bytes(file);
    ASSERT_EQ(bytes.size(), expected.size() + 8 + 4 + 8);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), bytes.begin()));

    CArchive in(file.c_str(), CArchive::load);
    EXPECT_TRUE(in.IsLoading());
    BYTE b = 0;
    WORD w = 0;
    int i = 0;
    short s = 0;
    char c = 0;
    double d = 0;
    float f = 0;
    long long l = 0;
    in >> b >> w >> i >> s >> c >> d >> f >> l;
    EXPECT_EQ(b, 0xAB);
    EXPECT_EQ(w, 0x1234);
    EXPECT_EQ(i, 0x01020304);
    EXPECT_EQ(s, -2);
    EXPECT_EQ(c, 'c');
    EXPECT_EQ(d, 1.5);
    EXPECT_EQ(f, 2.5f);
    EXPECT_EQ(l, -1);
    EXPECT_EQ(in.BytesLeft(), 0u);
    EXPECT_FALSE(in.IsFailed());
}

TEST(CArchive, StringLengthsAndCountsSwitchToWiderPrefixes)
{
    vxtest::TempDir dir;
    const std::string file = dir.Path("s.dat");
    const CString shortText(std::string(254, 'a'));
    const CString middle(std::string(255, 'b'));
    const CString longText(std::string(70000, 'c'));
    const CString withZero(std::string_view("a\0b", 3));
    {
        CArchive ar(file.c_str(), CArchive::store);
        ar << shortText << middle << longText << withZero << "";
        ar.WriteCount(0xFFFE);
        ar.WriteCount(0xFFFF);
    }
    const std::vector<unsigned char> bytes = Bytes(file);
    ASSERT_EQ(bytes.size(), (1u + 254) + (3 + 255) + (7 + 70000) + (1 + 3) + 1 + 2 + 6);
    EXPECT_EQ(bytes[0], 254);
    EXPECT_EQ(bytes[255], 0xFF);
    EXPECT_EQ(bytes[256], 0xFF); // 255 as a WORD
    EXPECT_EQ(bytes[257], 0x00);
    const std::size_t longAt = 255 + 258;
    EXPECT_EQ(bytes[longAt], 0xFF);
    EXPECT_EQ(bytes[longAt + 1], 0xFF);
    EXPECT_EQ(bytes[longAt + 2], 0xFF);
    EXPECT_EQ(bytes[longAt + 3], 70000 & 0xFF);
    EXPECT_EQ(bytes[bytes.size() - 8], 0xFE); // count 0xFFFE as a WORD
    EXPECT_EQ(bytes[bytes.size() - 6], 0xFF); // count 0xFFFF needs the DWORD
    EXPECT_EQ(bytes[bytes.size() - 5], 0xFF);

    CArchive in(file.c_str(), CArchive::load);
    CString a, b, c, z, e("x");
    in >> a >> b >> c >> z >> e;
    EXPECT_EQ(a, shortText);
    EXPECT_EQ(b, middle);
    EXPECT_EQ(c, longText);
    EXPECT_EQ(z.GetLength(), 3);
    EXPECT_EQ(e, "");
    EXPECT_EQ(in.ReadCount(), 0xFFFEu);
    EXPECT_EQ(in.ReadCount(), 0xFFFFu);
    EXPECT_FALSE(in.IsFailed());
    EXPECT_TRUE(in.Close());
}

TEST(CArchive, FailedStoreLeavesTheOldFile)
{
    vxtest::TempDir dir;
    const std::string file = dir.Path("keep.dat");
    {
        CArchive ar(file.c_str(), CArchive::store);
        ar << 1;
    }
    {
        CArchive ar(file.c_str(), CArchive::store);
        ar << 2 << 3;
        ar.Abort();
        EXPECT_TRUE(ar.IsFailed());
    }
    EXPECT_EQ(Bytes(file).size(), 4u);
    // Reading from a storing archive is a failure too, and nothing lands.
    {
        CArchive ar(file.c_str(), CArchive::store);
        int x = 5;
        ar >> x;
        EXPECT_EQ(x, 0);
        EXPECT_FALSE(ar.Close());
    }
    EXPECT_EQ(Bytes(file).size(), 4u);
    // No temporary file is left behind.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);
}

TEST(CArchive, ReportsMissingFilesAndShortReads)
{
    vxtest::TempDir dir;
    CArchive missing(dir.Path("none.dat").c_str(), CArchive::load);
    EXPECT_TRUE(missing.IsFailed());
    int x = 7;
    missing >> x;
    EXPECT_EQ(x, 0);

    CArchive noDir(dir.Path("no/such/dir.dat").c_str(), CArchive::store);
    EXPECT_TRUE(noDir.IsFailed());
    EXPECT_FALSE(noDir.Close());

    CArchive directory(dir.Path().c_str(), CArchive::load);
    EXPECT_TRUE(directory.IsFailed());

    const std::string file = dir.Path("short.dat");
    {
        CArchive ar(file.c_str(), CArchive::store);
        ar << static_cast<BYTE>(10) << 'a' << 'b'; // says 10 bytes, holds 2
    }
    CArchive in(file.c_str(), CArchive::load);
    CString text("old");
    in >> text;
    EXPECT_TRUE(in.IsFailed());
    EXPECT_EQ(text, "");
    EXPECT_FALSE(in.Close());
}
