#include "platform/framework/carray.h"

#include "support/printers.h"

#include <gtest/gtest.h>

TEST(CArray, GrowStepZeroUsesAnEighthBetweenFourAnd1024)
{
    CArray<int, int> a;
    a.Add(1);
    EXPECT_EQ(a.GetAllocSize(), 1) << "the first allocation is exactly what is asked";
    a.Add(2);
    EXPECT_EQ(a.GetAllocSize(), 5) << "small arrays grow by at least 4";
    a.SetSize(100);
    EXPECT_EQ(a.GetAllocSize(), 100);
    a.Add(0);
    EXPECT_EQ(a.GetAllocSize(), 112) << "100 / 8 = 12";
    a.SetSize(20000);
    a.Add(0);
    EXPECT_EQ(a.GetAllocSize(), 20000 + 1024) << "large arrays grow by at most 1024";
}

TEST(CArray, ExplicitGrowStepAndFirstAllocation)
{
    CStringArray a;
    a.SetSize(0, 64);
    a.Add("x");
    EXPECT_EQ(a.GetAllocSize(), 64);
    a.SetSize(65);
    EXPECT_EQ(a.GetAllocSize(), 128);
    a.SetSize(500, -1);
    EXPECT_EQ(a.GetGrowBy(), 64) << "-1 keeps the step";
    EXPECT_EQ(a.GetAllocSize(), 500);
    a.FreeExtra();
    EXPECT_EQ(a.GetAllocSize(), 500);
    a.SetSize(-4);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetAllocSize(), 0);
}

TEST(CArray, NewElementsAreZero)
{
    CDWordArray a;
    a.SetSize(3);
    EXPECT_EQ(a[0] + a[1] + a[2], 0u);
    a.SetAtGrow(6, 9);
    EXPECT_EQ(a.GetSize(), 7);
    EXPECT_EQ(a[5], 0u);
    EXPECT_EQ(a[6], 9u);
}

TEST(CArray, InsertAtBeyondEndGrowsFirst)
{
    CStringArray a;
    a.Add("A");
    a.InsertAt(3, "D");
    ASSERT_EQ(a.GetSize(), 4);
    EXPECT_EQ(a[1], "");
    EXPECT_EQ(a[3], "D");
    a.InsertAt(1, "B", 2);
    EXPECT_EQ(a.GetSize(), 6);
    EXPECT_EQ(a[0], "A");
    EXPECT_EQ(a[1], "B");
    EXPECT_EQ(a[2], "B");
    EXPECT_EQ(a[5], "D");
    a.RemoveAt(1, 2);
    EXPECT_EQ(a.GetSize(), 4);
    EXPECT_EQ(a[3], "D");
    CStringArray b;
    b.Add("x");
    b.Add("y");
    a.InsertAt(0, &b);
    EXPECT_EQ(a[0], "x");
    EXPECT_EQ(a[1], "y");
    EXPECT_EQ(a[2], "A");
}

TEST(CArray, AddingOwnElementSurvivesReallocation)
{
    CStringArray a;
    a.Add("first element, long enough to live on the heap");
    for (int i = 0; i < 50; ++i)
        a.Add(a[0]);
    EXPECT_EQ(a[50], a[0]);
    a.InsertAt(0, a[10], 3);
    EXPECT_EQ(a[2], a[3]);
}

TEST(CArray, CopyAndAppend)
{
    CUIntArray a;
    a.Add(1);
    a.Add(2);
    CUIntArray b;
    b.Add(3);
    EXPECT_EQ(a.Append(b), 2);
    EXPECT_EQ(a.Append(a), 3);
    EXPECT_EQ(a.GetSize(), 6);
    EXPECT_EQ(a[5], 3u);
    CUIntArray c;
    c.Copy(a);
    EXPECT_EQ(c.GetSize(), 6);
    c = b;
    EXPECT_EQ(c.GetSize(), 1);
}

TEST(CArrayDeathTest, IndexOutsideTheArrayStopsTheProgram)
{
    CWordArray a;
    a.Add(1);
    EXPECT_DEATH(a.GetAt(1), "array index 1 outside 0..0");
    EXPECT_DEATH(a.RemoveAt(0, 2), "outside");
    EXPECT_DEATH(a[-1], "outside");
}
