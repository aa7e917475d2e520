// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Dates as the statements of the worker state them, and back.
#include "worker/sqlvalues.h"

#include <QDateTime>

namespace {

/// Stands in for an unknown first day of employment, so that it stays the same over repeated
/// passes.
QDate substituteBegin()
{
    return QDate(2000, 1, 1);
}

} // namespace

QString dateToSqlBegin(const QDate &date)
{
    return QString::number(QDateTime(date.isValid() ? date : substituteBegin()).toTime_t());
}

QString dateToSql(const QDate &date, bool endOfDay)
{
    if (!date.isValid())
        return QStringLiteral("NULL");
    return QString::number(endOfDay ? secondsAtMidnight(date.addDays(1)) - 1
                                    : secondsAtMidnight(date));
}

QDate dateFromDbBegin(uint seconds)
{
    return seconds == 0 ? substituteBegin() : QDateTime::fromTime_t(seconds).date();
}

QDate dateFromDb(uint seconds)
{
    return seconds == 0 ? QDate() : QDateTime::fromTime_t(seconds).date();
}

qint64 secondsAtMidnight(const QDate &date)
{
    return QDateTime(date).toSecsSinceEpoch();
}
