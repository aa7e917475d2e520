// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whose leave a running server may look at again.
#include "host/rehearsal/leavedoubts.h"

#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QHash>
#include <QSqlQuery>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(LeaveDoubts)
};

const qint64 recentCalculation = 899; // seconds that the plugin keeps away from one

/// Moments in the database, in seconds; 0 for none.
struct Traces
{
    qint64 created = 0;
    qint64 calculated = 0; ///< when, as far as the mark tells
    qint64 lastDay = 0; ///< the last one that was calculated
    qint64 corrected = 0; ///< the last day with a correction of leave
    qint64 refused = 0; ///< the last open day that is neither calculated nor to be
};

Failure failed(const QSqlQuery &query)
{
    return {ExitDatabase,
            Text::tr("the copy cannot be read: %1").arg(errorText(query.lastError()))};
}

Failure readTraces(const QSqlDatabase &copy, int fund, QHash<uint, Traces> *traces)
{
    QSqlQuery query(copy);
    query.setForwardOnly(true);
    const QString statement
        = QStringLiteral(
              "SELECT p.pid, p.created, p.calc, p.lastCalc, m.day, a.day FROM people p "
              "LEFT JOIN (SELECT uid, MAX(day) day FROM funds_move WHERE type = 3 AND fid = %1 "
              "GROUP BY uid) m ON m.uid = p.uid "
              "LEFT JOIN (SELECT uid, MAX(`date`) day FROM atten WHERE `lock` = 0 AND ok < -1 "
              "GROUP BY uid) a ON a.uid = p.uid")
              .arg(fund);
    if (!query.exec(statement))
        return failed(query);
    while (query.next())
        traces->insert(query.value(0).toUInt(),
                       {query.value(1).toLongLong(), query.value(2).toLongLong(),
                        query.value(3).toLongLong(), query.value(4).toLongLong(),
                        query.value(5).toLongLong()});
    return {};
}

/// Why the leave may not have been at rest at some moment from `taken` on; empty where it was.
QString reasonOf(const Traces &traces, const QDateTime &taken)
{
    const qint64 since = taken.toSecsSinceEpoch();
    const qint64 day = QDateTime(taken.date()).toSecsSinceEpoch();
    if (traces.created >= since)
        return Text::tr("came after the last export had been written; a server that has added them "
                        "looks at their leave only now");
    if (traces.calculated + recentCalculation >= since || traces.lastDay >= day)
        return Text::tr("attendance was calculated after the last export had been written; a "
                        "server that has found it open looks at leave again now");
    if (traces.corrected >= day)
        return Text::tr("leave was corrected on the day of the last export; a server that has seen "
                        "the correction looks at leave again now");
    if (traces.refused >= day)
        return Text::tr("a day was open when the last export had been written; a server that has "
                        "seen it looks at leave again now");
    return QString();
}

} // namespace

Failure readLeaveDoubts(const QSqlDatabase &copy, const QVector<SeenPerson> &seen,
                        QVector<LeaveDoubt> *doubts)
{
    QSqlQuery query(copy);
    if (!query.exec(QStringLiteral("SELECT fid FROM funds WHERE iid = 3 AND unit = 2")))
        return failed(query);
    if (!query.next())
        return {};
    QHash<uint, Traces> traces;
    if (const Failure failure = readTraces(copy, query.value(0).toInt(), &traces))
        return failure;
    for (const SeenPerson &person : seen) {
        const auto found = traces.constFind(person.pid);
        const bool isAsked = person.isUnchanged || person.hasSameLeave;
        if (found == traces.constEnd() || !isAsked)
            continue;
        const QString reason = reasonOf(*found, person.taken);
        if (!reason.isEmpty())
            doubts->append({person, reason});
    }
    return {};
}
