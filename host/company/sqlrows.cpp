// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows of tables as SQL.
#include "host/company/sqlrows.h"

#include <QDateTime>

QString sqlNumber(qint64 value)
{
    return QString::number(value);
}

QString sqlNumberOrNull(uint value)
{
    return value == 0 ? QStringLiteral("NULL") : QString::number(value);
}

QString sqlText(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

qint64 midnight(const QDate &date)
{
    return date.startOfDay().toSecsSinceEpoch();
}

QString sqlMidnightOrNull(const QDate &date)
{
    return date.isValid() ? sqlNumber(midnight(date)) : QStringLiteral("NULL");
}

QString sqlMonth(const QDate &date)
{
    return date.toString(QStringLiteral("yyyyMM"));
}
