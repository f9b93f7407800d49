// CTime: the framework's moment in time, whole seconds since 1970 UTC; its
// calendar fields read in local time.
//
//   CTime t(2024, 3, 1, 12, 0, 0);     // local noon
//   t.GetHour();                        // 12
//   CTime::GetCurrentTime() > t;
#pragma once

#include "vxbase_export.h"

#include <ctime>

class VXBASE_EXPORT CTime {
public:
    CTime() = default;
    CTime(std::time_t time) : m_time(time) {}
    // A local date and time; fields out of range roll over as mktime does.
    CTime(int year, int month, int day, int hour, int minute, int second);

    static CTime GetCurrentTime();

    std::time_t GetTime() const { return m_time; }
    int GetYear() const;
    int GetMonth() const;      // 1 to 12
    int GetDay() const;        // 1 to 31
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const;  // 1 for Sunday to 7 for Saturday

    bool operator==(const CTime& other) const { return m_time == other.m_time; }
    bool operator!=(const CTime& other) const { return m_time != other.m_time; }
    bool operator<(const CTime& other) const { return m_time < other.m_time; }
    bool operator<=(const CTime& other) const { return m_time <= other.m_time; }
    bool operator>(const CTime& other) const { return m_time > other.m_time; }
    bool operator>=(const CTime& other) const { return m_time >= other.m_time; }

private:
    std::tm Local() const;
    std::time_t m_time = 0;
};
