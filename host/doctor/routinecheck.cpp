// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the stored routines are there, give what they should, and are fast enough.
#include "host/doctor/schemaparts.h"

#include "host/catalogue/findings.h"
#include "host/database/errortext.h"
#include "host/doctor/grantedrights.h"
#include "host/doctor/passvalues.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

const int callsTimed = 20;
const int slowestMicroseconds = 1000;

/// A call of a function and what it should give.
struct Call
{
    QString routine;
    QString expression;
    QString expected;
};

QString monthOf(const QDate &day)
{
    return day.toString(QStringLiteral("yyyyMM"));
}

/// Half an hour to either side of a midnight, where zones that differ give another day or month.
QVector<QDateTime> moments()
{
    const QDate today = QDate::currentDate();
    return {QDateTime(QDate(today.year(), 1, 1), QTime(0, 30)),
            QDateTime(QDate(today.year(), 7, 31), QTime(23, 30)), QDateTime::currentDateTime()};
}

QVector<Call> callsOfTime()
{
    QVector<Call> calls;
    for (const QDateTime &moment : moments()) {
        const QString seconds = QString::number(moment.toSecsSinceEpoch());
        const qint64 midnight = localMidnight(moment.date());
        calls.append({QStringLiteral("midnightFromTs"),
                      QStringLiteral("midnightFromTs(%1)").arg(seconds),
                      QString::number(midnight)});
        calls.append({QStringLiteral("monthFromTimestamp"),
                      QStringLiteral("monthFromTimestamp(%1)").arg(seconds),
                      monthOf(moment.date())});
    }
    return calls;
}

/// What the plan of somebody says in each of the months, and what holds where there is no plan.
QVector<Call> callsOfGroups(const QSqlDatabase &database)
{
    const QString function = QStringLiteral("getCurrentGid");
    QVector<Call> calls {
        {function, QStringLiteral("getCurrentGid(0, %1, 7)").arg(monthOf(QDate::currentDate())),
         QStringLiteral("7")}};
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT uid FROM groups_plan LIMIT 1")) || !query.next())
        return calls;
    const QString uid = query.value(0).toString();
    for (const QDateTime &moment : moments()) {
        const QString month = monthOf(moment.date());
        if (query.exec(QStringLiteral("SELECT COALESCE((SELECT gid FROM groups_plan "
                                      "WHERE uid = %1 AND since <= %2 "
                                      "ORDER BY since DESC LIMIT 1), 7)")
                           .arg(uid, month))
            && query.next()) {
            calls.append({function, QStringLiteral("getCurrentGid(%1, %2, 7)").arg(uid, month),
                          query.value(0).toString()});
        }
    }
    return calls;
}

/// In microseconds, of one call among many; the best of three times counts. -1 if it cannot be
/// told.
qint64 costOf(const QSqlDatabase &database, const QString &expression)
{
    qint64 best = -1;
    for (int round = 0; round < 3; ++round) {
        QSqlQuery query(database);
        QElapsedTimer timer;
        timer.start();
        if (!query.exec(QStringLiteral("SELECT BENCHMARK(%1, %2)").arg(callsTimed).arg(expression)))
            return -1;
        const qint64 cost = timer.nsecsElapsed() / 1000 / callsTimed;
        if (best < 0 || cost < best)
            best = cost;
    }
    return best;
}

/// False if no more can be learned of the routine.
bool checkResult(const QSqlDatabase &database, const Call &call, Diagnosis *diagnosis)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT ") + call.expression) || !query.next()) {
        diagnosis->unknown.append(
            {call.routine, Text::tr("it cannot be called: %1").arg(errorText(query.lastError()))});
        return false;
    }
    const QString result = query.value(0).isNull() ? QStringLiteral("NULL")
                                                   : query.value(0).toString();
    if (result == call.expected)
        return true;
    diagnosis->findings.append(finding("E-SCHEMA-RESULT", call.routine,
                                       {call.routine, call.expression, result, call.expected}));
    return false;
}

void checkFunction(const QSqlDatabase &database, const QVector<Call> &calls, Diagnosis *diagnosis)
{
    for (const Call &call : calls) {
        if (!checkResult(database, call, diagnosis))
            return;
    }
    const qint64 cost = costOf(database, calls.first().expression);
    if (cost > slowestMicroseconds) {
        diagnosis->findings.append(
            finding("W-SCHEMA-SLOW", calls.first().routine,
                    {calls.first().routine, QString::number(cost / 1000.0, 'f', 1)}));
    }
}

enum class Sight {
    Seen,
    Missing,
    Hidden ///< it is not on the list of a login that cannot see all routines
};

/// Who may read the server's own table of routines, or call whichever there are.
bool seesAllRoutines(const QSqlDatabase &database)
{
    QSqlQuery query(database);
    if (query.exec(QStringLiteral("SELECT 1 FROM mysql.proc LIMIT 0")))
        return true;
    GrantedRights granted;
    return !readGrantedRights(database, &granted)
        && std::any_of(granted.grants.begin(), granted.grants.end(), [&](const Grant &grant) {
               return grant.level <= Grant::Schema && grant.reaches(granted.schema)
                   && grant.has(QStringLiteral("EXECUTE"));
           });
}

Sight sightOf(const QSqlDatabase &database, const QString &routine)
{
    QSqlQuery query(database);
    const bool seesAll = seesAllRoutines(database);
    if (query.exec(QStringLiteral("SELECT 1 FROM information_schema.routines "
                                  "WHERE routine_schema = DATABASE() AND routine_name = '%1'")
                       .arg(routine))
        && query.next())
        return Sight::Seen;
    return seesAll ? Sight::Missing : Sight::Hidden;
}

} // namespace

Diagnosis routineDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    const QVector<Call> calls = callsOfTime() + callsOfGroups(database);
    for (const NeededRoutine &routine : neededRoutines()) {
        Sight sight = sightOf(database, routine.name);
        const QString call = routine.name + QLatin1String("(0)");
        if (sight == Sight::Hidden && !routine.isProcedure
            && presenceBy(database, QStringLiteral("SELECT ") + call) == Presence::Missing)
            sight = Sight::Missing;
        if (sight == Sight::Missing) {
            diagnosis.findings.append(
                finding("E-SCHEMA-ROUTINE", routine.name,
                        {routine.name,
                         routine.isProcedure ? Text::tr("procedure") : Text::tr("function")}));
        } else if (sight == Sight::Hidden) {
            diagnosis.unknown.append(
                {routine.name, Text::tr("the login may not call it, if there is one")});
        } else if (!routine.isProcedure) {
            QVector<Call> own;
            std::copy_if(calls.begin(), calls.end(), std::back_inserter(own),
                         [&](const Call &one) { return one.routine == routine.name; });
            checkFunction(database, own, &diagnosis);
        }
    }
    if (diagnosis.findings.isEmpty() && diagnosis.unknown.isEmpty())
        diagnosis.passed.append(Text::tr("routines: there, right and fast"));
    return diagnosis;
}
