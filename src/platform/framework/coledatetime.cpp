#include "platform/framework/coledatetime.h"

#include <cmath>
#include <ctime>

namespace {

// Days between 1 March 0000 and the date, by the proleptic Gregorian
// calendar (H. Hinnant's days_from_civil).
long long DaysFromCivil(long long y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long long>(doe) - 719468;
}

void CivilFromDays(long long z, int& y, int& m, int& d)
{
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long yy = static_cast<long long>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yy + (m <= 2));
}

const long long kOleEpoch = DaysFromCivil(1899, 12, 30);
// 1 January 100 and 31 December 9999, the range of an OLE date.
const double kMinDate = static_cast<double>(DaysFromCivil(100, 1, 1) - kOleEpoch);
const double kMaxDate = static_cast<double>(DaysFromCivil(9999, 12, 31) - kOleEpoch) + 1.0;

bool ValidDate(int year, int month, int day)
{
    static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1)
        return false;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int last = kDays[month - 1] + (month == 2 && leap ? 1 : 0);
    return day <= last;
}

} // namespace

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second)
{
    SetDateTime(year, month, day, hour, minute, second);
}

COleDateTime& COleDateTime::operator=(DATE date)
{
    m_dt = date;
    m_status = valid;
    CheckRange();
    return *this;
}

void COleDateTime::CheckRange()
{
    if (!(m_dt > kMinDate - 1.0 && m_dt < kMaxDate))
        m_status = invalid;
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second)
{
    if (!ValidDate(year, month, day) || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 ||
        second > 59) {
        m_status = invalid;
        return 1;
    }
    const double days = static_cast<double>(DaysFromCivil(year, static_cast<unsigned>(month),
                                                          static_cast<unsigned>(day)) - kOleEpoch);
    const double fraction = (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
    // Before the epoch the day counts backwards while the time runs forwards.
    m_dt = days >= 0 ? days + fraction : days - fraction;
    m_status = valid;
    return 0;
}

bool COleDateTime::Split(Parts& parts) const
{
    if (m_status != valid)
        return false;
    double whole = std::trunc(m_dt);
    long long seconds = std::llround(std::fabs(m_dt - whole) * 86400.0);
    long long day = static_cast<long long>(whole);
    if (seconds >= 86400) {
        // Rounding reached midnight: that is the next day at 00:00.
        seconds -= 86400;
        day += m_dt >= 0 ? 1 : -1;
    }
    CivilFromDays(day + kOleEpoch, parts.year, parts.month, parts.day);
    parts.hour = static_cast<int>(seconds / 3600);
    parts.minute = static_cast<int>(seconds / 60 % 60);
    parts.second = static_cast<int>(seconds % 60);
    // 30 December 1899 was a Saturday.
    parts.dayOfWeek = static_cast<int>(((day % 7) + 7 + 6) % 7) + 1;
    return true;
}

int COleDateTime::GetYear() const
{
    Parts p{};
    return Split(p) ? p.year : -1;
}
int COleDateTime::GetMonth() const
{
    Parts p{};
    return Split(p) ? p.month : -1;
}
int COleDateTime::GetDay() const
{
    Parts p{};
    return Split(p) ? p.day : -1;
}
int COleDateTime::GetHour() const
{
    Parts p{};
    return Split(p) ? p.hour : -1;
}
int COleDateTime::GetMinute() const
{
    Parts p{};
    return Split(p) ? p.minute : -1;
}
int COleDateTime::GetSecond() const
{
    Parts p{};
    return Split(p) ? p.second : -1;
}
int COleDateTime::GetDayOfWeek() const
{
    Parts p{};
    return Split(p) ? p.dayOfWeek : -1;
}

CString COleDateTime::Format(const char* format) const
{
    Parts p{};
    if (!format || !Split(p))
        return CString();
    std::tm tm{};
    tm.tm_year = p.year - 1900;
    tm.tm_mon = p.month - 1;
    tm.tm_mday = p.day;
    tm.tm_hour = p.hour;
    tm.tm_min = p.minute;
    tm.tm_sec = p.second;
    tm.tm_wday = p.dayOfWeek - 1;
    char buffer[256];
    const std::size_t n = std::strftime(buffer, sizeof buffer, format, &tm);
    return CString(buffer, static_cast<int>(n));
}

COleDateTime COleDateTime::GetCurrentTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    localtime_r(&now, &tm);
    return COleDateTime(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
}
