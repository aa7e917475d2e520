// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: the leave fund and its corrections.
#include "worker/thrworker.h"

#include "repository/sqlerror.h"
#include "worker/sqlvalues.h"

#include <QDateTime>
#include <QVariant>

namespace {

/// For so long a mark in `people.calc` tells of a calculation under way; an older one is a
/// calculation that died.
constexpr qint64 calculationSeconds = 899;

/// Marks that lie in the future count as recent too.
bool isRecentCalculation(uint calc)
{
    return calc != 0 && calc >= QDateTime::currentSecsSinceEpoch() - calculationSeconds;
}

QDate firstOfThisMonth()
{
    const QDate today = QDate::currentDate();
    return QDate(today.year(), today.month(), 1);
}

/// The first column of the next row as hundredths, 0 for NULL and where no row comes.
int nextSum(QSqlQuery &query)
{
    return query.next() ? query.value(0).toInt() : 0;
}

} // namespace

// Deliberate: a fund once found stays in use, even if a later pass no longer finds it. Pinned by
// tst_Fund::checkDovolenkaFond_keepsTheFundThatItFound().
void THRWorker::checkDovolenkaFond(ushort iid)
{
    if (logLevel > 1)
        qDebug("THRWorker::checkDovolenkaFond()");

    QSqlQuery query(db);
    const QString statement = QStringLiteral("SELECT fid FROM funds WHERE iid = %1 AND unit=2;")
                                  .arg(iid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::checkDovolenkaFond() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
    } else if (query.next()) {
        fundId = static_cast<quint16>(query.value(0).toUInt());
    }
    if (logLevel > 0)
        qInfo("THRWorker::checkDovolenkaFond(): fid=%u", static_cast<uint>(fundId));
}

bool THRWorker::dbCheckFundMove(uint pid)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckFundMove(pid: %u)", pid);

    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "SELECT COUNT(*) FROM funds_move WHERE type=3 "
                                  "AND day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = %1 "
                                  "AND uid=(SELECT uid FROM people WHERE pid = %2);")
                                  .arg(fundId)
                                  .arg(pid);
    bool free = false;
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbCheckFundMove() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
    } else {
        free = query.next() && !query.value(0).toBool();
    }
    if (logLevel > 0)
        qInfo("THRWorker::dbCheckFundMove(pid: %u): %s", pid, free ? "OK - non exists" : "exists");
    return free;
}

bool THRWorker::dbCheckAttendance(uint pid, uint *uid)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckAttendance(pid: %u)", pid);

    const bool atRest = isCalculated(pid, uid) && !hasOpenDays(*uid);
    if (logLevel > 0)
        qInfo("THRWorker::dbCheckAttendance(pid: %u): %s", pid, atRest ? "OK" : "NO OK");
    return atRest;
}

/// No calculation is under way, and no unlocked day waits for one. False also without a person and
/// on failure; `uid` is set as soon as the person is found.
bool THRWorker::isCalculated(uint pid, uint *uid)
{
    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a "
                                  "WHERE a.uid = p.uid AND !a.lock AND a.ok = -1) uncalc "
                                  "FROM people p WHERE pid = %1")
                                  .arg(pid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbCheckAttendance() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return false;
    }
    if (!query.next())
        return false;

    *uid = query.value(0).toUInt();
    const uint calc = query.value(1).toUInt();
    const uint uncalculated = query.value(2).toUInt();
    return !isRecentCalculation(calc) && uncalculated == 0;
}

/// From today on the person has an unlocked day that is not calculated.
///
/// Deliberate: a failure counts as none: only the failure of the statement before it refuses.
/// Pinned by tst_Fund::dbCheckAttendance_failureOfTheSecondStatementIsOk().
bool THRWorker::hasOpenDays(uint uid)
{
    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "SELECT COUNT(*) FROM atten WHERE uid = %1 AND `lock`=0 "
                                  "AND ok < 0 AND date >= midnightFromTs(UNIX_TIMESTAMP())")
                                  .arg(uid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbCheckAttendance() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return false;
    }
    return query.next() && query.value(0).toUInt() > 0;
}

int THRWorker::loadFundStatusAndMove3(uint pid, bool *ok)
{
    if (logLevel > 1)
        qDebug("THRWorker::loadFundStatusAndMove3(pid: %u)", pid);

    *ok = true;
    const qint64 monthBegin = secondsAtMidnight(firstOfThisMonth());

    int before = 0;
    QSqlQuery beforeQuery(db);
    // Two blanks before AND.
    const QString beforeStatement
        = QStringLiteral("SELECT SUM(fm.value) FROM funds_move fm JOIN people p USING(uid) "
                         "WHERE fm.day < %3  AND fm.fid = %1 AND p.pid = %2")
              .arg(fundId)
              .arg(pid)
              .arg(monthBegin);
    if (beforeQuery.exec(beforeStatement)) {
        before = nextSum(beforeQuery);
    } else {
        qCritical("THRWorker::loadFundStatusAndMove3() - SQL 1 ERROR [%s]: %s",
                  SQL_CODE_AND_TEXT(beforeQuery));
        *ok = false;
    }

    int corrections = 0;
    QSqlQuery correctionsQuery(db);
    const QString correctionsStatement
        = QStringLiteral("SELECT SUM(fm.value) FROM funds_move fm JOIN people p USING(uid) "
                         "WHERE fm.type=3 AND fm.day >= %3 "
                         "AND fm.day < midnightFromTs(UNIX_TIMESTAMP()) "
                         "AND fm.fid = %1 AND p.pid = %2")
              .arg(fundId)
              .arg(pid)
              .arg(monthBegin);
    if (correctionsQuery.exec(correctionsStatement)) {
        corrections = nextSum(correctionsQuery);
    } else {
        qCritical("THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR [%s]: %s",
                  SQL_CODE_AND_TEXT(correctionsQuery));
        *ok = false;
    }

    const int balance = static_cast<int>(static_cast<qint64>(before) + corrections);
    if (logLevel > 0)
        qInfo("THRWorker::loadFundStatusAndMove3(pid: %u): %i, load OK: %s", pid, balance,
              *ok ? "YES" : "NO");
    return balance;
}

// Deliberate: test mode is not asked for. Pinned by tst_Fund::writeFundMove3_writesInTestMode().
bool THRWorker::writeFundMove3(uint uid, int value)
{
    if (logLevel > 0)
        qDebug("THRWorker::writeFundMove3(uid: %u, value: %i)", uid, value);

    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "INSERT INTO funds_move (type, day, month, value, fid, uid) "
                                  "VALUES(3, %1, monthFromTimestamp(%1), %2, %3, %4) "
                                  "ON DUPLICATE KEY UPDATE value=VALUES(value)")
                                  .arg(secondsAtMidnight(QDate::currentDate()))
                                  .arg(value)
                                  .arg(fundId)
                                  .arg(uid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::writeFundMove3() - SQL ERROR [%s]: %s\n SQL: %s",
                  SQL_CODE_AND_TEXT(query), qPrintable(query.lastQuery()));
        return false;
    }
    return query.numRowsAffected() > 0;
}
