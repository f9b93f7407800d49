#include "platform/framework/ctime.h"
#include "platform/files/filetime.h"

#include "support/scopedenv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

namespace {

// Runs the test body in a fixed time zone and restores the old one.
class TimeZone {
public:
    explicit TimeZone(const char* tz) : m_tz(std::make_unique<vxtest::ScopedEnv>("TZ", tz)) { tzset(); }
    ~TimeZone()
    {
        m_tz.reset();
        tzset();
    }

private:
    std::unique_ptr<vxtest::ScopedEnv> m_tz;
};

} // namespace

TEST(FileTime, UnixRoundTripAndEpoch)
{
    const FILETIME epoch = vx::FileTimeFromUnix(0);
    EXPECT_EQ((static_cast<std::uint64_t>(epoch.dwHighDateTime) << 32) | epoch.dwLowDateTime,
              116444736000000000ULL);
    EXPECT_EQ(vx::UnixFromFileTime(vx::FileTimeFromUnix(1700000000, 999999999)), 1700000000);
    SYSTEMTIME f;
    ASSERT_TRUE(FileTimeToSystemTime(&epoch, &f));
    EXPECT_EQ(f.wYear, 1970);
    EXPECT_EQ(f.wMonth, 1);
    EXPECT_EQ(f.wDay, 1);
    EXPECT_EQ(f.wDayOfWeek, 4);
}

TEST(FileTime, DosDateAndTimePackLocalTime)
{
    TimeZone tz("CET-1CEST,M3.5.0,M10.5.0/3");
    // 2024-07-15 10:30:45 UTC is 12:30:45 in summer time.
    const FILETIME utc = vx::FileTimeFromUnix(1721039445);
    FILETIME local;
    ASSERT_TRUE(FileTimeToLocalFileTime(&utc, &local));
    WORD date = 0, time = 0;
    ASSERT_TRUE(FileTimeToDosDateTime(&local, &date, &time));
    EXPECT_EQ(date, (15 | (7 << 5) | ((2024 - 1980) << 9)));
    EXPECT_EQ(time, ((45 / 2) | (30 << 5) | (12 << 11)));
    WORD d2 = 0, t2 = 0;
    ASSERT_TRUE(vx::DosDateTimeFromUnix(1721039445, &d2, &t2));
    EXPECT_EQ(d2, date);
    EXPECT_EQ(t2, time);

    FILETIME back;
    ASSERT_TRUE(DosDateTimeToFileTime(date, time, &back));
    FILETIME backUtc;
    ASSERT_TRUE(LocalFileTimeToFileTime(&back, &backUtc));
    EXPECT_EQ(vx::UnixFromFileTime(backUtc), 1721039444) << "odd seconds are halved";

    const CTime t(1721039445);
    EXPECT_EQ(t.GetHour(), 12);
    EXPECT_EQ(CTime(2024, 7, 15, 12, 30, 45).GetTime(), 1721039445);
}

TEST(FileTime, DosFormRefusesYearsItCannotHold)
{
    WORD date = 7, time = 7;
    const FILETIME before = vx::FileTimeFromUnix(0); // 1970
    EXPECT_FALSE(FileTimeToDosDateTime(&before, &date, &time));
    EXPECT_EQ(date, 7);
    SYSTEMTIME f{2108, 1, 0, 1, 0, 0, 0, 0};
    FILETIME late;
    ASSERT_TRUE(SystemTimeToFileTime(&f, &late));
    EXPECT_FALSE(FileTimeToDosDateTime(&late, &date, &time));
    SYSTEMTIME april31{2024, 4, 0, 31, 0, 0, 0, 0};
    EXPECT_FALSE(SystemTimeToFileTime(&april31, &late));
    const FILETIME a = vx::FileTimeFromUnix(1), b = vx::FileTimeFromUnix(2);
    EXPECT_EQ(CompareFileTime(&a, &b), -1);
    EXPECT_EQ(CompareFileTime(&b, &a), 1);
    EXPECT_EQ(CompareFileTime(&a, &a), 0);
}
