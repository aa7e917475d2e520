// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether server and machine agree on the time and on the days.
#include "host/catalogue/findings.h"
#include "host/doctor/passvalues.h"
#include "host/doctor/servercheck.h"
#include "host/doctor/serverquestions.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QSqlDatabase>
#include <QTimeZone>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerCheck)
};

const qint64 smallDifference = 2; // seconds
const qint64 largeDifference = 60; // seconds

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
    return !there.isNull() && there.toLongLong() == localMidnight(day);
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

/// The line to write, unless the server would not start with it.
QString zoneRemedy(const QString &zone, bool isKnown)
{
    return isKnown
        ? Text::tr("write default-time-zone=%1 below [mysqld]; SET GLOBAL time_zone = '%1'")
              .arg(zone)
        : Text::tr(
              "set the time zone of the server's machine to %1 and restart the server; it does "
              "not know the name itself")
              .arg(zone);
}

QVector<Finding> zoneFindings(const QSqlDatabase &database, const QDate &today, qint64 midnight,
                              const QString &zone)
{
    const QString here = QString::fromLatin1(QTimeZone::systemTimeZoneId());
    const QString about = QStringLiteral("time_zone");
    QVector<Finding> findings;
    const QString right = rightZone(database, today);
    const bool isKnown = !midnightThere(database, today, right).isNull();
    const QString remedy = zoneRemedy(right, isKnown);
    if (midnight != localMidnight(today))
        findings.append(
            finding("E-SRV-ZONE", about,
                    {inUtc(midnight), zone, inUtc(localMidnight(today)), here, remedy}));
    for (const QDate &day : seasons(today)) {
        if (findings.isEmpty() && !agrees(database, day, zone))
            findings.append(
                finding("W-SRV-SEASON", about, {zone, here, day.toString(Qt::ISODate), remedy}));
    }
    if (!findings.isEmpty() && !isKnown)
        findings.append(finding("W-SRV-ZONENAMES", about, {right}));
    return findings;
}

QVector<Finding> differenceFindings(qint64 ahead)
{
    if (qAbs(ahead) <= smallDifference)
        return {};
    return {finding(
        qAbs(ahead) > largeDifference ? "E-SRV-CLOCK" : "W-SRV-CLOCK", Text::tr("clock"),
        {QString::number(qAbs(ahead)), ahead > 0 ? Text::tr("ahead of") : Text::tr("behind")})};
}

} // namespace

Diagnosis clockDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    // Of NOW() the server could only guess which of the two 02:30 of an autumn night is meant.
    const ServerAnswer answer = askServer(
        database,
        QStringLiteral("SELECT UNIX_TIMESTAMP(), UNIX_TIMESTAMP(CURDATE()), "
                       "@@session.time_zone"));
    const qint64 after = QDateTime::currentSecsSinceEpoch();
    if (!answer.isValid()) {
        diagnosis.unknown.append({Text::tr("clock and time zone"), answer.error});
        return diagnosis;
    }
    const qint64 there = answer.values.value(0).toLongLong();
    const qint64 here = qBound(before, there, after);
    // By the server's clock, so that a difference of the clocks is not taken for one of the zones.
    const QDate today = QDateTime::fromSecsSinceEpoch(there).date();
    diagnosis.findings = differenceFindings(there - here);
    diagnosis.findings += zoneFindings(database, today, answer.values.value(1).toLongLong(),
                                       answer.values.value(2).toString());
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("clock and time zone"));
    return diagnosis;
}
