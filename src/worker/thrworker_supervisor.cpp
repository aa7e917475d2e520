// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: the supervisor of an employee.
#include "worker/thrworker.h"

#include "repository/sqlerror.h"

#include <QVariant>

// Deliberate: test mode is not asked for. Pinned by
// tst_Supervisor::processNadOsCis_writesInTestMode().
void THRWorker::processNadOsCis(const EmployeeRecord &record)
{
    if (logLevel > 0)
        qDebug("THRWorker::processNadOsCis(%s, NOC: %u)", qPrintable(record.pamId()),
               record.nadOsCis);
    if (record.nadOsCis == 0)
        return;

    const uint aid = dbGetAidByOsCis(record.nadOsCis);
    if (aid == 0) {
        qWarning("THRWorker - admin s osobnym cislom %u nebol najdeny!", record.nadOsCis);
        return;
    }
    const uint pid = record.pid();
    const uint uid = getUidByPid(pid);
    if (uid == 0) {
        // Deliberate: the pid, although the text speaks of a personal number. Pinned by
        // tst_Supervisor::processNadOsCis_unknownPersonIsNamedByPid().
        qWarning("THRWorker - zamestnanec s osobnym cislom %u nebol najdeny!", pid);
        return;
    }

    db.transaction();
    if (moveSupervisorMark(aid, uid)) {
        db.commit();
        return;
    }
    db.rollback();
    qWarning("THRWorker::processNadOsCis() - (Re)Set Admin People Request FAilED!");
}

/// Takes the mark from all other administrators and gives it to the one. True when that is to
/// stand.
///
/// Deliberate: the sum decides: once the reset has touched rows, a set that failed stands as well,
/// and the person is left without a supervisor. Pinned by
/// tst_Supervisor::processNadOsCis_failedSetAfterAResetIsCommitted().
bool THRWorker::moveSupervisorMark(uint aid, uint uid)
{
    const int reset = dbResetAdminPeopleRequest(aid, uid);
    if (reset < 0)
        return false;
    const int set = dbSetAdminPeopleRequest(aid, uid);
    return reset + set >= 0;
}

// Deliberate: the label says uid, the number is the personal number. Pinned by
// tst_Supervisor::dbGetAidByOsCis_trace().
uint THRWorker::dbGetAidByOsCis(uint osCis)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbGetAidByOsCis(uid: %u)", osCis);

    uint aid = 0;
    QSqlQuery query(db);
    const QString statement = QStringLiteral("SELECT aid FROM admins WHERE personalNumber = %1")
                                  .arg(osCis);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbGetAidByOsCis() - SQL ERROR [%s]: %s\n SQL: %s",
                  SQL_CODE_AND_TEXT(query), qPrintable(query.lastQuery()));
    } else if (query.next()) {
        aid = query.value(0).toUInt();
    }
    if (logLevel > 0)
        qDebug("THRWorker::dbGetAidByOsCis(uid: %u): %u", osCis, aid);
    return aid;
}

int THRWorker::dbResetAdminPeopleRequest(uint aid, uint uid)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbResetAdminPeopleRequest(aid: %u, uid: %u)", aid, uid);

    int affected = -1;
    QSqlQuery query(db);
    const QString statement = QStringLiteral("UPDATE admins_people SET request =0 "
                                             "WHERE uid=%1 AND aid != %2")
                                  .arg(uid)
                                  .arg(aid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [%s]: %s\n SQL: %s",
                  SQL_CODE_AND_TEXT(query), qPrintable(query.lastQuery()));
    } else {
        affected = query.numRowsAffected();
        if (logLevel > 1)
            qDebug("THRWorker::dbResetAdminPeopleRequest - query '%s' - affected rows: %i",
                   qPrintable(query.lastQuery()), affected);
    }
    if (logLevel > 0)
        qDebug("THRWorker::dbResetAdminPeopleRequest(aid: %u, uid: %u) - affected: %i", aid, uid,
               affected);
    return affected;
}

// Deliberate: unlike the reset, the set does not name itself in the line of its query. Pinned by
// tst_Supervisor::dbSetAdminPeopleRequest_trace().
int THRWorker::dbSetAdminPeopleRequest(uint aid, uint uid)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbSetAdminPeopleRequest(aid: %u, uid: %u)", aid, uid);

    int affected = -1;
    QSqlQuery query(db);
    const QString statement = QStringLiteral("INSERT INTO admins_people (aid, uid, request) "
                                             "VALUES(%1, %2, 1) ON DUPLICATE KEY UPDATE request=1")
                                  .arg(aid)
                                  .arg(uid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbSetAdminPeopleRequest() - SQL ERROR [%s]: %s\n SQL: %s",
                  SQL_CODE_AND_TEXT(query), qPrintable(query.lastQuery()));
    } else {
        affected = query.numRowsAffected();
        if (logLevel > 1)
            qDebug("THRWorker - query '%s' - affected rows: %i", qPrintable(query.lastQuery()),
                   affected);
    }
    if (logLevel > 0)
        qDebug("THRWorker::dbSetAdminPeopleRequest(aid: %u, uid: %u) - affected: %i", aid, uid,
               affected);
    return affected;
}
