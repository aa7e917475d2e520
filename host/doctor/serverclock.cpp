// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether server and machine agree on the time and on the days.
#include "host/catalogue/findings.h"
#include "host/doctor/servercheck.h"
#include "host/doctor/serverquestions.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QSqlDatabase>
#include <QTimeZone>

#include <cmath>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerCheck)
};

const double smallDifference = 2; // seconds
const double largeDifference = 60; // seconds

/// The seconds since the epoch of this machine's midnight.
qint64 midnightHere(const QDate &day)
{
    return QDateTime(day, QTime(0, 0)).toSecsSinceEpoch();
}

QString inUtc(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)
        .toString(QStringLiteral("yyyy-MM-dd HH:mm 'UTC'"));
}

/// Days in both halves of the year, in which clocks may differ.
QVector<QDate> seasons(const QDate &today)
{
    return {QDate(today.year(), 1, 15), QDate(today.year(), 7, 15)};
}

/// The seconds of a day's midnight in a zone of the server; not valid for a zone that it does not
/// know.
QVariant midnightThere(const QSqlDatabase &database, const QDate &day, const QString &zone)
{
    return askServer(database,
                     QStringLiteral("SELECT UNIX_TIMESTAMP(CONVERT_TZ('%1 00:00:00', '%2', "
                                    "@@session.time_zone))")
                         .arg(day.toString(Qt::ISODate), zone))
        .values.value(0);
}

bool agrees(const QSqlDatabase &database, const QDate &day, const QString &zone)
{
    const QVariant there = midnightThere(database, day, zone);
    return !there.isNull() && there.toLongLong() == midnightHere(day);
}

/// The server's name for the zone of this machine.
QString rightZone(const QSqlDatabase &database, const QDate &today)
{
    const QString system = QStringLiteral("SYSTEM");
    bool isSystem = agrees(database, today, system);
    for (const QDate &day : seasons(today))
        isSystem = isSystem && agrees(database, day, system);
    return isSystem ? system : QString::fromLatin1(QTimeZone::systemTimeZoneId());
}

QVector<Finding> zoneFindings(const QSqlDatabase &database, const QDate &today, qint64 midnight,
                              const QString &zone)
{
    const QString here = QString::fromLatin1(QTimeZone::systemTimeZoneId());
    const QString about = QStringLiteral("time_zone");
    QVector<Finding> findings;
    const QString right = rightZone(database, today);
    if (midnight != midnightHere(today))
        findings.append(finding("E-SRV-ZONE", about,
                                {inUtc(midnight), zone, inUtc(midnightHere(today)), here, right}));
    for (const QDate &day : seasons(today)) {
        if (findings.isEmpty() && !agrees(database, day, zone))
            findings.append(
                finding("W-SRV-SEASON", about, {zone, here, day.toString(Qt::ISODate), right}));
    }
    if (!findings.isEmpty() && midnightThere(database, today, right).isNull())
        findings.append(finding("W-SRV-ZONENAMES", about, {right}));
    return findings;
}

QVector<Finding> differenceFindings(double ahead)
{
    if (std::abs(ahead) <= smallDifference)
        return {};
    return {finding(std::abs(ahead) > largeDifference ? "E-SRV-CLOCK" : "W-SRV-CLOCK",
                    Text::tr("clock"),
                    {QString::number(std::abs(ahead), 'f', 0),
                     ahead > 0 ? Text::tr("ahead of") : Text::tr("behind")})};
}

} // namespace

Diagnosis clockDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const ServerAnswer answer = askServer(
        database,
        QStringLiteral("SELECT UNIX_TIMESTAMP(NOW(6)), UNIX_TIMESTAMP(CURDATE()), "
                       "@@session.time_zone"));
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    if (!answer.isValid()) {
        diagnosis.unknown.append({Text::tr("clock and time zone"), answer.error});
        return diagnosis;
    }
    const double there = answer.values.value(0).toDouble();
    const double here = there < before / 1000.0 ? before / 1000.0 : after / 1000.0;
    const bool isBetween = there >= before / 1000.0 && there <= after / 1000.0;
    // By the server's clock, so that a difference of the clocks is not taken for one of the zones.
    const QDate today = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(there * 1000)).date();
    diagnosis.findings = differenceFindings(isBetween ? 0 : there - here);
    diagnosis.findings += zoneFindings(database, today, answer.values.value(1).toLongLong(),
                                       answer.values.value(2).toString());
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("clock and time zone"));
    return diagnosis;
}
