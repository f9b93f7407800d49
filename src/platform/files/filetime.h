// File times of the desktop API and the DOS date and time.
//
// A FILETIME counts 100-nanosecond steps since 1 January 1601 UTC. The DOS
// form packs a local date into 16 bits (day | month << 5 | (year - 1980) << 9)
// and a local time into 16 bits (seconds / 2 | minute << 5 | hour << 11):
//
//   FILETIME utc = vx::FileTimeFromUnix(st.st_mtim.tv_sec, st.st_mtim.tv_nsec);
//   FILETIME local;
//   WORD date, time;
//   FileTimeToLocalFileTime(&utc, &local);
//   FileTimeToDosDateTime(&local, &date, &time);
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstdint>
#include <ctime>

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};

// UTC to local time by the time zone's offset at that moment (the desktop
// API used the offset of today; this keeps summer times right).
VXBASE_EXPORT BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local);
VXBASE_EXPORT BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc);
// The calendar fields of a file time, without any zone conversion. Fails
// beyond the year 30827.
VXBASE_EXPORT BOOL FileTimeToSystemTime(const FILETIME* time, SYSTEMTIME* fields);
VXBASE_EXPORT BOOL SystemTimeToFileTime(const SYSTEMTIME* fields, FILETIME* time);
// Packs a (local) file time; fails outside the years 1980 to 2107, which the
// DOS form cannot hold. Seconds are halved, rounding down.
VXBASE_EXPORT BOOL FileTimeToDosDateTime(const FILETIME* time, WORD* dosDate, WORD* dosTime);
VXBASE_EXPORT BOOL DosDateTimeToFileTime(WORD dosDate, WORD dosTime, FILETIME* time);
// -1, 0 or 1 as `a` is before, equal to or after `b`.
VXBASE_EXPORT LONG CompareFileTime(const FILETIME* a, const FILETIME* b);

namespace vx {

// The file time of a POSIX time (seconds and nanoseconds since 1970 UTC).
VXBASE_EXPORT FILETIME FileTimeFromUnix(std::int64_t seconds, long nanoseconds = 0);
// The POSIX seconds of a file time, rounded down.
VXBASE_EXPORT std::int64_t UnixFromFileTime(const FILETIME& time);
// The local DOS date and time of a POSIX time; false outside 1980 to 2107.
VXBASE_EXPORT bool DosDateTimeFromUnix(std::time_t seconds, WORD* dosDate, WORD* dosTime);

} // namespace vx
