#include "platform/files/filetime.h"

namespace {

// 100-nanosecond steps between 1601-01-01 and 1970-01-01.
constexpr std::int64_t kEpochDifference = 116444736000000000LL;
constexpr std::int64_t kStepsPerSecond = 10000000LL;

std::uint64_t ToU64(const FILETIME& t)
{
    return (static_cast<std::uint64_t>(t.dwHighDateTime) << 32) | t.dwLowDateTime;
}

FILETIME FromU64(std::uint64_t v)
{
    return FILETIME{static_cast<DWORD>(v & 0xFFFFFFFFu), static_cast<DWORD>(v >> 32)};
}

// Days since 1970-01-01 of a proleptic Gregorian date, and back
// (H. Hinnant's algorithms), so that no time zone and no time_t range enter.
std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void CivilFromDays(std::int64_t z, std::int64_t& y, unsigned& m, unsigned& d)
{
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    y = static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2);
}

long OffsetAt(std::time_t utcSeconds)
{
    std::tm local{};
    if (!localtime_r(&utcSeconds, &local))
        return 0;
    return local.tm_gmtoff;
}

} // namespace

namespace vx {

FILETIME FileTimeFromUnix(std::int64_t seconds, long nanoseconds)
{
    const std::int64_t steps = seconds * kStepsPerSecond + nanoseconds / 100 + kEpochDifference;
    return FromU64(steps < 0 ? 0 : static_cast<std::uint64_t>(steps));
}

std::int64_t UnixFromFileTime(const FILETIME& time)
{
    const std::int64_t steps = static_cast<std::int64_t>(ToU64(time)) - kEpochDifference;
    return steps >= 0 ? steps / kStepsPerSecond : -((-steps + kStepsPerSecond - 1) / kStepsPerSecond);
}

bool DosDateTimeFromUnix(std::time_t seconds, WORD* dosDate, WORD* dosTime)
{
    const FILETIME utc = FileTimeFromUnix(seconds);
    FILETIME local;
    return FileTimeToLocalFileTime(&utc, &local) && FileTimeToDosDateTime(&local, dosDate, dosTime);
}

} // namespace vx

BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local)
{
    if (!utc || !local)
        return FALSE;
    const std::int64_t offset = OffsetAt(static_cast<std::time_t>(vx::UnixFromFileTime(*utc))) * kStepsPerSecond;
    const std::int64_t v = static_cast<std::int64_t>(ToU64(*utc)) + offset;
    if (v < 0)
        return FALSE;
    *local = FromU64(static_cast<std::uint64_t>(v));
    return TRUE;
}

BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc)
{
    if (!local || !utc)
        return FALSE;
    // The offset is that of the moment read as UTC, corrected once: right
    // everywhere except in the hour a clock change skips or repeats.
    const std::time_t guess = static_cast<std::time_t>(vx::UnixFromFileTime(*local));
    long offset = OffsetAt(guess);
    offset = OffsetAt(guess - offset);
    const std::int64_t v = static_cast<std::int64_t>(ToU64(*local)) - offset * kStepsPerSecond;
    if (v < 0)
        return FALSE;
    *utc = FromU64(static_cast<std::uint64_t>(v));
    return TRUE;
}

BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* fields)
{
    if (!time || !fields)
        return FALSE;
    const std::uint64_t v = ToU64(*time);
    if (v > 0x7FFFFFFFFFFFFFFFULL)
        return FALSE;
    const std::int64_t steps = static_cast<std::int64_t>(v) - kEpochDifference;
    std::int64_t seconds = steps / kStepsPerSecond;
    std::int64_t rest = steps % kStepsPerSecond;
    if (rest < 0) {
        rest += kStepsPerSecond;
        --seconds;
    }
    std::int64_t days = seconds / 86400;
    std::int64_t secondOfDay = seconds % 86400;
    if (secondOfDay < 0) {
        secondOfDay += 86400;
        --days;
    }
    std::int64_t year;
    unsigned month, day;
    CivilFromDays(days, year, month, day);
    fields->wYear = static_cast<WORD>(year);
    fields->wMonth = static_cast<WORD>(month);
    fields->wDay = static_cast<WORD>(day);
    // 1970-01-01 was a Thursday (4).
    fields->wDayOfWeek = static_cast<WORD>(((days % 7) + 7 + 4) % 7);
    fields->wHour = static_cast<WORD>(secondOfDay / 3600);
    fields->wMinute = static_cast<WORD>(secondOfDay / 60 % 60);
    fields->wSecond = static_cast<WORD>(secondOfDay % 60);
    fields->wMilliseconds = static_cast<WORD>(rest / 10000);
    return TRUE;
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* fields, FILETIME* time)
{
    if (!fields || !time)
        return FALSE;
    const SYSTEMTIME& f = *fields;
    if (f.wYear < 1601 || f.wMonth < 1 || f.wMonth > 12 || f.wDay < 1 || f.wDay > 31 || f.wHour > 23 ||
        f.wMinute > 59 || f.wSecond > 59 || f.wMilliseconds > 999)
        return FALSE;
    const std::int64_t days = DaysFromCivil(f.wYear, f.wMonth, f.wDay);
    std::int64_t check;
    unsigned m, d;
    CivilFromDays(days, check, m, d);
    if (m != f.wMonth || d != f.wDay)
        return FALSE; // 31 April and the like
    const std::int64_t seconds = days * 86400 + f.wHour * 3600 + f.wMinute * 60 + f.wSecond;
    *time = FromU64(static_cast<std::uint64_t>(seconds * kStepsPerSecond + f.wMilliseconds * 10000LL +
                                               kEpochDifference));
    return TRUE;
}

BOOL FileTimeToDosDateTime(const FILETIME* time, WORD* dosDate, WORD* dosTime)
{
    SYSTEMTIME f;
    if (!dosDate || !dosTime || !FileTimeToSystemTime(time, &f))
        return FALSE;
    if (f.wYear < 1980 || f.wYear > 2107)
        return FALSE;
    *dosDate = static_cast<WORD>(f.wDay | (f.wMonth << 5) | ((f.wYear - 1980) << 9));
    *dosTime = static_cast<WORD>((f.wSecond / 2) | (f.wMinute << 5) | (f.wHour << 11));
    return TRUE;
}

BOOL DosDateTimeToFileTime(WORD dosDate, WORD dosTime, FILETIME* time)
{
    SYSTEMTIME f{};
    f.wYear = static_cast<WORD>(1980 + (dosDate >> 9));
    f.wMonth = static_cast<WORD>((dosDate >> 5) & 0x0F);
    f.wDay = static_cast<WORD>(dosDate & 0x1F);
    f.wHour = static_cast<WORD>(dosTime >> 11);
    f.wMinute = static_cast<WORD>((dosTime >> 5) & 0x3F);
    f.wSecond = static_cast<WORD>((dosTime & 0x1F) * 2);
    return SystemTimeToFileTime(&f, time);
}

LONG CompareFileTime(const FILETIME* a, const FILETIME* b)
{
    const std::uint64_t x = ToU64(*a);
    const std::uint64_t y = ToU64(*b);
    return x < y ? -1 : x > y ? 1 : 0;
}
