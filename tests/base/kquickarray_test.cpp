#include "base/csortstringarray.h"
#include "base/dincompare.h"
#include "base/kquickarray.h"
#include "base/quickstringarray.h"
#include "base/quickstringdataarray.h"
#include "platform/framework/mbstring.h"
#include "platform/windows/messagebox.h"

#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

template <class Array>
std::vector<std::string> Texts(Array& a)
{
    std::vector<std::string> out;
    for (int i = 0; i < a.GetSize(); ++i)
        out.emplace_back(a.GetAt(i).GetString());
    return out;
}

// Counts the boxes shown while it lives, and answers them.
class BoxCounter {
public:
    BoxCounter()
    {
        m_old = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            texts.push_back(r.text + "|" + r.caption);
            return IDOK;
        });
    }
    ~BoxCounter() { vx::SetMessageBoxHandler(m_old); }
    std::vector<std::string> texts;

private:
    vx::MessageBoxHandler m_old;
};

int Descending(int* a, int* b)
{
    return *b - *a;
}

std::vector<int> Progress;
void RecordProgress(unsigned long user, int index)
{
    Progress.push_back(static_cast<int>(user) * 1000 + index);
}

} // namespace

TEST(CSortStringArray, SortsWithoutRegardToCaseAndKeepsEqualsInOrder)
{
    CSortStringArray a;
    for (const char* s : {"b", "A", "c"})
        a.Add(s);
    a.Sort();
    EXPECT_EQ(Texts(a), (std::vector<std::string>{"A", "b", "c"}));

    CSortStringArray b;
    for (const char* s : {"x", "K2", "k1", "K1", "k2", "a"})
        b.Add(s);
    b.Sort();
    EXPECT_EQ(Texts(b), (std::vector<std::string>{"a", "k1", "K1", "K2", "k2", "x"}));

    CSortStringArray empty, one;
    empty.Sort();
    one.Add("z");
    one.Sort();
    EXPECT_EQ(empty.GetSize(), 0);
    EXPECT_EQ(Texts(one), (std::vector<std::string>{"z"}));
}

TEST(QuickStringArray, KeepsItselfSortedAndHoldsDuplicates)
{
    QuickStringArray a;
    EXPECT_EQ(a.Add("b"), 0);
    EXPECT_EQ(a.Add("a"), 0);
    EXPECT_EQ(Texts(a), (std::vector<std::string>{"a", "b"}));
    a.Add("C");
    a.Add("B");
    EXPECT_EQ(Texts(a), (std::vector<std::string>{"a", "B", "b", "C"}));
    // The new element goes in front of the equal one the search hit.
    EXPECT_EQ(a.GetAt(a.Find("b")), "B");
    EXPECT_EQ(a.m_bSorted, 1);

    int position = -7;
    EXPECT_EQ(a.Find("bb", &position), -1);
    EXPECT_EQ(position, 3);
    EXPECT_EQ(a.Find("0", &position), -1);
    EXPECT_EQ(position, 0);
    EXPECT_EQ(a.Find("z", &position), -1);
    EXPECT_EQ(position, 4);
    // A position from Find puts an element straight there.
    a.Add("bb", &(position = 3));
    EXPECT_EQ(Texts(a), (std::vector<std::string>{"a", "B", "b", "bb", "C"}));
}

TEST(QuickStringArray, FindOnAnEmptyArrayGivesPositionZero)
{
    QuickStringArray a;
    int position = 99;
    EXPECT_EQ(a.Find("x", &position), -1);
    EXPECT_EQ(position, 0);
    EXPECT_EQ(a.Find("x"), -1);
}

TEST(QuickStringArray, FindsEveryEntryOfALongList)
{
    QuickStringArray a;
    std::mt19937 rng(5);
    std::vector<std::string> all;
    for (int i = 0; i < 3000; ++i) {
        all.push_back("N" + std::to_string(rng() % 100000));
        a.Add(all.back().c_str());
    }
    for (int i = 1; i < a.GetSize(); ++i)
        ASSERT_LE(_mbsicmp(a.GetAt(i - 1), a.GetAt(i)), 0);
    for (const std::string& s : all) {
        const int index = a.Find(s.c_str());
        ASSERT_GE(index, 0) << s;
        ASSERT_EQ(a.GetAt(index), s.c_str());
    }
}

TEST(KQuickArray, UnsortedAdditionsMakeFindLinearUntilTheNextSort)
{
    KQuickArray<int> a;
    a.m_pfnCompareData = CompareIntCallback;
    for (int v : {5, 3, 9, 3, 1})
        a.Add(v);
    EXPECT_EQ(a.m_bSorted, 0);
    EXPECT_EQ(a.GetAt(0), 5);
    int position = -1;
    EXPECT_EQ(a.Find(3, &position), 1); // the first of the two, by walking
    EXPECT_EQ(position, 1);
    position = -1;
    EXPECT_EQ(a.Find(4, &position), -1);
    EXPECT_EQ(position, -1); // a miss leaves the position alone

    a.QuickSort();
    EXPECT_EQ(a.m_bSorted, 1);
    std::vector<int> sorted(a.begin(), a.end());
    EXPECT_EQ(sorted, (std::vector<int>{1, 3, 3, 5, 9}));
    EXPECT_EQ(a.Find(4, &position), -1);
    EXPECT_EQ(position, 3);
    EXPECT_EQ(a.Find(9), 4);
}

TEST(KQuickArray, KeepSortedOnAnUnorderedArraySortsFirst)
{
    KQuickArray<int> a;
    a.m_pfnCompareData = CompareIntCallback;
    for (int v : {4, 2, 8})
        a.Add(v);
    a.m_bKeepSorted = 1;
    EXPECT_EQ(a.Add(5), 2);
    std::vector<int> values(a.begin(), a.end());
    EXPECT_EQ(values, (std::vector<int>{2, 4, 5, 8}));
    EXPECT_EQ(a.m_bSorted, 1);
}

TEST(KQuickArray, DataComparisonWinsOverThePlainOne)
{
    KQuickArray<int> a;
    a.m_pfnCompare = Descending;
    for (int v : {1, 4, 2, 3})
        a.Add(v);
    a.QuickSort();
    EXPECT_EQ(std::vector<int>(a.begin(), a.end()), (std::vector<int>{4, 3, 2, 1}));
    a.m_pfnCompareData = CompareIntCallback;
    a.QuickSort();
    EXPECT_EQ(std::vector<int>(a.begin(), a.end()), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(CompareIntCallback(0, &a[0], &a[3]), -3);
}

TEST(KQuickArray, QuickSortMatchesStdSortOnRandomInput)
{
    std::mt19937 rng(11);
    for (int n : {0, 1, 2, 3, 7, 100, 5000}) {
        KQuickArray<int> a;
        a.m_pfnCompareData = CompareIntCallback;
        std::vector<int> expected;
        for (int i = 0; i < n; ++i) {
            const int v = static_cast<int>(rng() % 50); // many duplicates
            a.Add(v);
            expected.push_back(v);
        }
        a.QuickSort();
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(std::vector<int>(a.begin(), a.end()), expected) << n;
    }
    // Already sorted and reversed inputs, the classic bad cases.
    KQuickArray<int> up, down;
    up.m_pfnCompareData = down.m_pfnCompareData = CompareIntCallback;
    for (int i = 0; i < 20000; ++i) {
        up.Add(i);
        down.Add(20000 - i);
    }
    up.QuickSort();
    down.QuickSort();
    EXPECT_TRUE(std::is_sorted(up.begin(), up.end()));
    EXPECT_TRUE(std::is_sorted(down.begin(), down.end()));
}

TEST(KQuickArray, ReportsProgressWithTheMiddleOfEachRange)
{
    KQuickArray<int> a;
    a.m_pfnCompareData = CompareIntCallback;
    a.m_pfnProgress = RecordProgress;
    a.m_progressUser = 7;
    for (int v : {3, 1, 2, 5, 4})
        a.Add(v);
    Progress.clear();
    a.QuickSort();
    // Range 0..4 (middle 2) splits into 0..1 and 2..4; the left part comes
    // first, as in a recursive sort, and 2..4 then leaves 2..3.
    EXPECT_EQ(Progress, (std::vector<int>{7002, 7000, 7003, 7002}));
    EXPECT_EQ(std::vector<int>(a.begin(), a.end()), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(KQuickArray, MissingComparisonShowsTheErrorBoxAndGoesOn)
{
    BoxCounter boxes;
    KQuickArray<int> a;
    EXPECT_EQ(a.Find(1), -1);
    EXPECT_TRUE(boxes.texts.empty()); // empty: nothing to compare
    a.Add(1);
    a.Add(2);
    a.QuickSort();
    EXPECT_EQ(a.GetSize(), 2);
    ASSERT_FALSE(boxes.texts.empty());
    EXPECT_EQ(boxes.texts.front(), "!!!!COMPARE!!!!|Error");
    boxes.texts.clear();
    a.Find(5);
    EXPECT_FALSE(boxes.texts.empty());
    boxes.texts.clear();
    EXPECT_EQ(a.FindKey(5), 0); // every element counts as equal
    EXPECT_FALSE(boxes.texts.empty());
}

TEST(KQuickArray, SortsDesignatorsTheDinWay)
{
    KQuickArray<CString> a;
    a.m_pfnCompare = CompareDINText;
    for (const char* s : {"K10", "K2", "-K1", "K10a", "007", "7", "X3:14", "X3:9", "M2.1"})
        a.Add(s);
    a.QuickSort();
    EXPECT_EQ(Texts(a), (std::vector<std::string>{"-K1", "007", "7", "K2", "K10", "K10a", "M2.1", "X3:9", "X3:14"}));
}

TEST(QuickStringDataArray, FindsByStringAloneAndKeepsTheData)
{
    QuickStringDataArray a;
    a.Add(StrData("K12", 7));
    a.Add(StrData("a1", 3));
    a.Add(StrData("b", 9));
    ASSERT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a[0].m_string, "a1");
    EXPECT_EQ(a[2].m_string, "K12");
    const int i = a.FindKey("k12");
    ASSERT_EQ(i, 2);
    EXPECT_EQ(a[i].m_data, 7u);
    int position = -1;
    EXPECT_EQ(a.FindKey("c", &position), -1);
    EXPECT_EQ(position, 2);
    EXPECT_EQ(a.Find(StrData("B", 0)), 1);
    StrData fresh;
    EXPECT_EQ(fresh.m_string, "");
    EXPECT_EQ(fresh.m_data, 0u);
}

TEST(KQuickArray, SerializesInTheFrameworkLayout)
{
    vxtest::TempDir dir;
    const std::string file = dir.Path("names.dat");
    QuickStringArray names;
    names.Add("K2");
    names.Add("A1");
    names.Add(std::string(300, 'x').c_str());
    {
        CArchive ar(file.c_str(), CArchive::store);
        names.Serialize(ar);
        ASSERT_TRUE(ar.Close());
    }
    // WORD count 3; "A1" and "K2" as BYTE length and bytes; 300 bytes as
    // 0xFF, WORD 300.
    EXPECT_EQ(std::filesystem::file_size(file), 2u + 3 + 3 + 3 + 300);

    QuickStringArray back;
    back.Add("stale");
    {
        CArchive ar(file.c_str(), CArchive::load);
        back.Serialize(ar);
        EXPECT_FALSE(ar.IsFailed());
    }
    EXPECT_EQ(Texts(back), Texts(names));

    QuickStringDataArray data;
    data.Add(StrData("b", 2));
    data.Add(StrData("a", 0xDEADBEEF));
    const std::string dataFile = dir.Path("data.dat");
    {
        CArchive ar(dataFile.c_str(), CArchive::store);
        data.Serialize(ar);
    }
    EXPECT_EQ(std::filesystem::file_size(dataFile), 2u + 2 * (2 + 4));
    QuickStringDataArray dataBack;
    {
        CArchive ar(dataFile.c_str(), CArchive::load);
        dataBack.Serialize(ar);
    }
    ASSERT_EQ(dataBack.GetSize(), 2);
    EXPECT_EQ(dataBack[0].m_string, "a");
    EXPECT_EQ(dataBack[0].m_data, 0xDEADBEEFu);
    EXPECT_EQ(dataBack.FindKey("B"), 1);

    KQuickArray<int> numbers;
    numbers.m_pfnCompareData = CompareIntCallback;
    numbers.Add(-5);
    numbers.Add(70000);
    const std::string intFile = dir.Path("ints.dat");
    {
        CArchive ar(intFile.c_str(), CArchive::store);
        numbers.Serialize(ar);
    }
    KQuickArray<int> numbersBack;
    {
        CArchive ar(intFile.c_str(), CArchive::load);
        numbersBack.Serialize(ar);
    }
    EXPECT_EQ(std::vector<int>(numbersBack.begin(), numbersBack.end()), (std::vector<int>{-5, 70000}));
}

TEST(KQuickArray, DamagedArchiveLeavesTheArrayAsItWas)
{
    vxtest::TempDir dir;
    const std::string file = dir.Path("names.dat");
    QuickStringArray names;
    for (const char* s : {"one", "two", "three"})
        names.Add(s);
    {
        CArchive ar(file.c_str(), CArchive::store);
        names.Serialize(ar);
    }
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 2);
    QuickStringArray back;
    back.Add("kept");
    {
        CArchive ar(file.c_str(), CArchive::load);
        back.Serialize(ar);
        EXPECT_TRUE(ar.IsFailed());
    }
    EXPECT_EQ(Texts(back), (std::vector<std::string>{"kept"}));

    // A count far beyond the file is refused before anything is allocated.
    {
        CArchive ar(file.c_str(), CArchive::store);
        ar.WriteCount(0x7FFFFFF0);
        ar << CString("x");
    }
    {
        CArchive ar(file.c_str(), CArchive::load);
        back.Serialize(ar);
        EXPECT_TRUE(ar.IsFailed());
    }
    EXPECT_EQ(Texts(back), (std::vector<std::string>{"kept"}));
}
