// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Dates as the statements of the worker state them, and back.
#pragma once

#include <QDate>
#include <QString>

/// For `people.begin`, which is never NULL: the seconds at local midnight, those of 2000-01-01 for
/// an invalid date. Unsigned 32 bits: a day outside 1970 to 2106 gives 4294967295.
QString dateToSqlBegin(const QDate &date);

/// For a date that may be absent: the seconds at local midnight, or with `endOfDay` at the last
/// second of the day; "NULL" for an invalid date.
QString dateToSql(const QDate &date, bool endOfDay);

/// The local day of `people.begin`; 2000-01-01 for 0.
QDate dateFromDbBegin(uint seconds);

/// The local day of a moment; the null date for 0.
QDate dateFromDb(uint seconds);

/// The seconds since the epoch at local midnight of the day.
qint64 secondsAtMidnight(const QDate &date);
