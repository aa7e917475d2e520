// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Moments of local time as the C library counts them, for what a test expects.
#pragma once

#include <QDate>

#include <ctime>

/// Seconds since the epoch of a local time of day, in the time zone of the process.
inline qint64 localSeconds(const QDate &day, int hour = 0, int minute = 0, int second = 0)
{
    std::tm time {};
    time.tm_year = day.year() - 1900;
    time.tm_mon = day.month() - 1;
    time.tm_mday = day.day();
    time.tm_hour = hour;
    time.tm_min = minute;
    time.tm_sec = second;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

/// The local day of a moment.
inline QDate localDay(qint64 seconds)
{
    const std::time_t moment = static_cast<std::time_t>(seconds);
    const std::tm *time = std::localtime(&moment);
    return QDate(time->tm_year + 1900, time->tm_mon + 1, time->tm_mday);
}
