// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The moment of the build, as the version report shows it.
#include "plugin/buildstamp.h"

#include <QDateTime>
#include <QLocale>

QString buildStamp(const QString &date, const QString &time)
{
    const QTime buildTime = QTime::fromString(time.simplified(), QStringLiteral("hh:mm:ss"));
    // simplified() also joins the two blanks that stand before a day of one digit.
    const QDate buildDate = QLocale(QStringLiteral("en_US"))
                                .toDate(date.simplified(), QStringLiteral("MMM d yyyy"));
    const QDateTime build(buildDate, buildTime);
    return build.isValid() ? build.toString(QStringLiteral("yyMMddhhmm")) : QString();
}
