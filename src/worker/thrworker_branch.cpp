// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: branch and calendar of an employee.
#include "worker/thrworker.h"

#include "repository/groupsplanrepo.h"
#include "repository/sqlerror.h"

#include <QVariant>

bool THRWorker::dbLoadBranches()
{
    if (logLevel > 1)
        qDebug("THRWorker::dbLoadBranches()");

    // Deliberate: emptied before the statement, unlike the people, so that a failure leaves no
    // branch for the whole pass. Pinned by tst_Branch::dbLoadBranches_failureLeavesNoBranch().
    branches.clear();
    QSqlQuery query(db);
    const QString statement = QStringLiteral(
        "SELECT bid, number FROM branches WHERE number IS NOT NULL;");
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbLoadBranches() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return false;
    }
    while (query.next())
        branches.insert(query.value(1).toUInt(), query.value(0).toUInt());
    return !branches.isEmpty();
}

uint THRWorker::getUidByPid(uint pid)
{
    // Deliberate: one cache for the process, never cleared: a uid once found stays in use even if
    // the row is made anew. Pinned by tst_People::getUidByPid_keepsWhatItFound().
    static QHash<uint, uint> uidCache;

    const uint cached = uidCache.value(pid);
    if (cached != 0)
        return cached;
    const uint uid = dbGetUidByPid(pid);
    if (uid != 0)
        uidCache.insert(pid, uid);
    return uid;
}

bool THRWorker::dbCheckPersonInBranch(uint pid, uint bid)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckPersonInBranch(%u, %u)", pid, bid);

    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "SELECT COUNT(*) FROM brape WHERE bid = %1 "
                                  "AND uid = (SELECT uid FROM people WHERE pid = %2 LIMIT 1);")
                                  .arg(bid)
                                  .arg(pid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbCheckPersonInBranch() - SQL ERROR [%s]: %s",
                  SQL_CODE_AND_TEXT(query));
        return false;
    }
    return query.next() && query.value(0).toBool();
}

uint THRWorker::getGroupIdByCalendar(uint bid, uint calendarID)
{
    if (logLevel > 1)
        qDebug("THRWorker::getGroupIdByCalendar(B: %u, C: %u)", bid, calendarID);

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("SELECT gid FROM branches b LEFT JOIN mastergroups mg ON mg.mgid = b.mgid "
                         "LEFT JOIN groups g ON g.parent = mg.mgid "
                         "WHERE bid = %1 AND g.calendarID = %2 LIMIT 1;")
              .arg(bid)
              .arg(calendarID);
    if (!query.exec(statement)) {
        qCritical("THRWorker::getGroupIdByCalendar() - SQL ERROR [%s]: %s",
                  SQL_CODE_AND_TEXT(query));
        return 0;
    }
    return query.next() ? query.value(0).toUInt() : 0;
}

bool THRWorker::dbCheckGroupsPlan(uint gid, uint uid, uint since)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckGroupsPlan(%u, %u, %u)", gid, uid, since);

    QSqlQuery query(db);
    const QString statement = QStringLiteral("SELECT COUNT(*) FROM groups_plan "
                                             "WHERE gid = %1 AND uid = %2 AND since = %3;")
                                  .arg(gid)
                                  .arg(uid)
                                  .arg(since);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbCheckGroupsPlan() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return false;
    }
    return query.next() && query.value(0).toBool();
}

// Deliberate: a member of the branch without a calendar gives false, though nothing was needed; and
// test mode is not asked for. Pinned by tst_Branch::doSyncBranchAndCalendar_memberWithoutCalendar()
// and tst_Branch::doSyncBranchAndCalendar_writesInTestMode().
bool THRWorker::doSyncBranchAndCalendar(const EmployeeRecord &record)
{
    if (logLevel > 2)
        qDebug("THRWorker::doSyncBranchAndCalendar(%s)", qPrintable(record.pamId()));

    const uint bid = branches.value(record.stredisko);
    if (bid == 0) {
        qWarning("THRWorker: Branch '%u' NOT FOUND for employee: '%s'", record.stredisko,
                 qPrintable(record.toText(false)));
        return false;
    }

    const uint pid = record.pid();
    const uint uid = getUidByPid(pid);
    // No row is written yet: each branch gets its people in one go at the end of the pass.
    const bool queued = !dbCheckPersonInBranch(pid, bid);
    if (queued)
        branchPeople[bid].append(QString::number(uid));
    if (record.calendarID == 0)
        return queued;

    const uint gid = getGroupIdByCalendar(bid, record.calendarID);
    if (gid == 0) {
        qWarning("THRWorker: Group ID NOT found for Branch %u and calendar %u [employee: '%s']!",
                 record.stredisko, record.calendarID, qPrintable(record.toText(false)));
        return queued;
    }

    GroupsPlan plan;
    plan.gid = gid;
    plan.uid = uid;
    plan.since = record.kalendarPlatnostOd.toString(QStringLiteral("yyyyMM")).toUInt();
    if (dbCheckGroupsPlan(plan.gid, plan.uid, plan.since))
        return true;
    if (!groupsPlanRepo->add(plan)) {
        qWarning("THRWorker: can't add record '%s' into [groups_plan]!",
                 qPrintable(record.toText(false)));
        return queued;
    }

    // The plan reaches back into days that are calculated already; so does one without a date.
    if (record.kalendarPlatnostOd < QDate::currentDate())
        dbChangeLastCalc(uid, record.kalendarPlatnostOd);
    return true;
}
