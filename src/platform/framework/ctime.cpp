#include "platform/framework/ctime.h"

CTime::CTime(int year, int month, int day, int hour, int minute, int second)
{
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1;
    m_time = std::mktime(&fields);
}

CTime CTime::GetCurrentTime()
{
    return CTime(std::time(nullptr));
}

std::tm CTime::Local() const
{
    std::tm fields{};
    localtime_r(&m_time, &fields);
    return fields;
}

int CTime::GetYear() const { return Local().tm_year + 1900; }
int CTime::GetMonth() const { return Local().tm_mon + 1; }
int CTime::GetDay() const { return Local().tm_mday; }
int CTime::GetHour() const { return Local().tm_hour; }
int CTime::GetMinute() const { return Local().tm_min; }
int CTime::GetSecond() const { return Local().tm_sec; }
int CTime::GetDayOfWeek() const { return Local().tm_wday + 1; }
