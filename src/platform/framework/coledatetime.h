// COleDateTime: a point in time as an OLE date, the double that counts days
// from 30 December 1899 with the time of day as the fraction.
//
// Negative dates count days backwards, but their fraction still runs
// forwards through the day: -1.25 is 29 December 1899, 06:00.
//
//   COleDateTime t(2024, 3, 1, 12, 0, 0);
//   double d = t.m_dt;                 // 45352.5
//   COleDateTime(d).GetMonth();        // 3
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

using DATE = double;

class VXBASE_EXPORT COleDateTime {
public:
    enum DateTimeStatus { valid = 0, invalid = 1, null = 2 };

    // 0.0, which is 30 December 1899, 00:00.
    COleDateTime() = default;
    COleDateTime(DATE date) : m_dt(date) { CheckRange(); }
    // Years 100 to 9999; an impossible date (31 February) makes the object
    // invalid.
    COleDateTime(int year, int month, int day, int hour, int minute, int second);

    operator DATE() const { return m_dt; }
    COleDateTime& operator=(DATE date);
    DateTimeStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeStatus status) { m_status = status; }

    // Returns 0 and sets the object valid, or 1 and invalid.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }

    // The parts, rounded to the second; -1 for an invalid object.
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    // 1 Sunday to 7 Saturday.
    int GetDayOfWeek() const;

    // strftime form of the date and time; "" for an invalid object.
    CString Format(const char* format) const;

    // The local time now.
    static COleDateTime GetCurrentTime();

    DATE m_dt = 0.0;
    DateTimeStatus m_status = valid;

private:
    void CheckRange();
    struct Parts {
        int year, month, day, hour, minute, second, dayOfWeek;
    };
    bool Split(Parts& parts) const;
};
