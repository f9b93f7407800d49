// COleDateTime: OLE dates, days since the end of 1899.
#include "platform/framework/coledatetime.h"

#include <gtest/gtest.h>

TEST(COleDateTime, CountsDaysFromTheEndOf1899)
{
    EXPECT_EQ(COleDateTime(1899, 12, 30, 0, 0, 0).m_dt, 0.0);
    EXPECT_EQ(COleDateTime(1900, 1, 1, 0, 0, 0).m_dt, 2.0);
    EXPECT_EQ(COleDateTime(2024, 3, 1, 18, 0, 0).m_dt, 45352.75);
    const COleDateTime t(45352.75);
    EXPECT_EQ(t.GetYear(), 2024);
    EXPECT_EQ(t.GetMonth(), 3);
    EXPECT_EQ(t.GetDay(), 1);
    EXPECT_EQ(t.GetHour(), 18);
    EXPECT_EQ(t.GetDayOfWeek(), 6); // a Friday
    EXPECT_EQ(t.Format("%Y-%m-%d %H:%M"), "2024-03-01 18:00");
}

TEST(COleDateTime, BeforeTheEpochTheTimeStillRunsForwards)
{
    const COleDateTime t(-1.25);
    EXPECT_EQ(t.GetDay(), 29);
    EXPECT_EQ(t.GetMonth(), 12);
    EXPECT_EQ(t.GetYear(), 1899);
    EXPECT_EQ(t.GetHour(), 6);
    EXPECT_EQ(COleDateTime(1899, 12, 29, 6, 0, 0).m_dt, -1.25);
}

TEST(COleDateTime, RoundsToTheSecondAndRejectsImpossibleDates)
{
    const COleDateTime almostMidnight(45352.0 + 86399.9 / 86400.0);
    EXPECT_EQ(almostMidnight.GetDay(), 2); // rounds up into the next day
    EXPECT_EQ(almostMidnight.GetHour(), 0);
    COleDateTime bad(2023, 2, 29, 0, 0, 0);
    EXPECT_EQ(bad.GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(bad.GetYear(), -1);
    EXPECT_EQ(bad.Format("%Y"), "");
    EXPECT_EQ(COleDateTime(2024, 2, 29, 0, 0, 0).GetStatus(), COleDateTime::valid);
    EXPECT_EQ(COleDateTime(3e6).GetStatus(), COleDateTime::invalid);
}
