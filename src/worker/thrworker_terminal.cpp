// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: news of a changed person for the terminals that hold him.
#include "worker/thrworker.h"

#include "repository/sqlerror.h"

#include <QVariant>

void THRWorker::addTermSyncPerson(uint pid, QChar type, const QString &ref)
{
    if (logLevel > 1) {
        qDebug("THRWorker::addTermSyncPerson(%u, %s, %s)", pid, qPrintable(QString(type)),
               qPrintable(ref));
    }

    QSqlQuery query(db);
    const QString selection = QStringLiteral("SELECT uid FROM people WHERE pid=%1 LIMIT 1")
                                  .arg(pid);
    const uint uid = query.exec(selection) && query.next() ? query.value(0).toUInt() : 0;
    if (uid == 0) {
        qWarning("THRWorker::addTermSyncPerson(%u) - uid NOT selected from DB!", pid);
        return;
    }

    const QString queueing
        = QStringLiteral(
              "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
              "SELECT `tid` tid, '%1' type, '%2' ref, 'uid' ref_col, %3 ref_id, "
              "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
              "WHERE status = 1 AND uid = %3 AND (flags & 2);")
              .arg(type)
              .arg(ref)
              .arg(uid);
    query.exec(queueing);
    if (query.lastError().isValid()) {
        qCritical("THRWorker::addTermSyncPerson() ERROR: %s", SQL_TEXT(query));
        return;
    }

    query.exec(QStringLiteral("CALL updateTermsSync(%1, 2);").arg(uid));
    if (query.lastError().isValid()) {
        qCritical("THRWorker::addTermSyncPerson() - updateTermsSync() ERROR: %s", SQL_TEXT(query));
    }
}
