// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Days and moments of local time as the C library counts them, for what a test expects.
#pragma once

#include <QDate>
#include <QString>

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

inline QDate today()
{
    return localDay(std::time(nullptr));
}

inline QDate firstOfPreviousMonth(const QDate &day = today())
{
    return day.month() == 1 ? QDate(day.year() - 1, 12, 1) : QDate(day.year(), day.month() - 1, 1);
}

/// The first second of a day as it stands in a statement or a row.
inline QString seconds(const QDate &day)
{
    return QString::number(localSeconds(day));
}

/// The last one.
inline QString lastSecond(const QDate &day)
{
    return QString::number(localSeconds(day, 23, 59, 59));
}
