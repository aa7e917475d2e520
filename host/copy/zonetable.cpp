// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A time zone of this machine as a MariaDB server keeps it.
#include "host/copy/zonetable.h"

#include "host/copy/sqlnames.h"

#include <QDateTime>

namespace {

const qint64 week = 7 * 24 * 3600;
const qint64 firstProbe = 631152000; // 1990-01-01
const qint64 lastProbe = 2145916800; // 2038-01-01

QDateTime moment(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

} // namespace

const QVector<qint64> &probedMoments()
{
    static const QVector<qint64> moments = [] {
        QVector<qint64> all;
        for (qint64 probe = firstProbe; probe < lastProbe; probe += week)
            all.append(probe);
        return all;
    }();
    return moments;
}

bool keepsTimes(const QTimeZone &zone, const QString &localTimes)
{
    const QVector<QStringRef> times = localTimes.splitRef(QLatin1Char(','));
    const QVector<qint64> &moments = probedMoments();
    if (times.size() != moments.size())
        return false;
    // The latest ones differ first, as a rule.
    for (int at = moments.size() - 1; at >= 0; --at) {
        const QDateTime utc = moment(moments[at]);
        const QString local = utc.addSecs(zone.offsetFromUtc(utc))
                                  .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        if (times[at] != local)
            return false;
    }
    return true;
}

QTimeZone zoneOf(const QString &localTimes)
{
    if (keepsTimes(QTimeZone::systemTimeZone(), localTimes))
        return QTimeZone::systemTimeZone();
    const QList<QByteArray> ids = QTimeZone::availableTimeZoneIds();
    for (const QByteArray &id : ids) {
        const QTimeZone zone(id);
        if (zone.isValid() && keepsTimes(zone, localTimes))
            return zone;
    }
    return QTimeZone();
}

QStringList zoneStatements(const QString &name, const QTimeZone &zone)
{
    const QTimeZone::OffsetDataList changes = zone.transitions(moment(-week * 52 * 60),
                                                               moment(lastProbe));
    QStringList kinds; // each offset once
    QStringList transitions;
    const auto kindOf = [&kinds](const QTimeZone::OffsetData &data) {
        const QString kind = QStringLiteral("%1, %2, %3")
                                 .arg(data.offsetFromUtc)
                                 .arg(data.daylightTimeOffset == 0 ? 0 : 1)
                                 .arg(quotedText(data.abbreviation.left(8)));
        if (!kinds.contains(kind))
            kinds.append(kind);
        return kinds.indexOf(kind);
    };
    if (changes.isEmpty())
        kindOf(zone.offsetData(moment(firstProbe)));
    for (const QTimeZone::OffsetData &change : changes) {
        transitions.append(QStringLiteral("(@zone, %1, %2)")
                               .arg(change.atUtc.toSecsSinceEpoch())
                               .arg(kindOf(change)));
    }
    for (int kind = 0; kind < kinds.size(); ++kind)
        kinds[kind] = QStringLiteral("(@zone, %1, %2)").arg(kind).arg(kinds[kind]);

    QStringList statements {
        QStringLiteral("INSERT INTO mysql.time_zone (Use_leap_seconds) VALUES ('N')"),
        QStringLiteral("SET @zone = LAST_INSERT_ID()"),
        QStringLiteral("INSERT INTO mysql.time_zone_transition_type "
                       "(Time_zone_id, Transition_type_id, `Offset`, Is_DST, Abbreviation) VALUES ")
            + kinds.join(QStringLiteral(", ")),
    };
    if (!transitions.isEmpty()) {
        statements.append(QStringLiteral("INSERT INTO mysql.time_zone_transition "
                                         "(Time_zone_id, Transition_time, Transition_type_id) "
                                         "VALUES ")
                          + transitions.join(QStringLiteral(", ")));
    }
    // From here on the server looks at the rest.
    statements.append(
        QStringLiteral("INSERT INTO mysql.time_zone_name (Name, Time_zone_id) VALUES (%1, @zone)")
            .arg(quotedText(name)));
    return statements;
}
