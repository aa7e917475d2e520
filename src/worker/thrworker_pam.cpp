// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: PaM enrolment of a new person.
#include "worker/thrworker.h"

#include "repository/orvdbsettings.h"
#include "repository/sqlerror.h"

#include <QVariant>

namespace {

const QLatin1Char comma(',');

bool hasEmptyParts(const QString &list)
{
    return list.startsWith(comma) || list.endsWith(comma) || list.contains(QLatin1String(",,"));
}

/// As a whole entry, between commas or the ends of the list.
bool holdsEntry(const QString &list, const QString &entry)
{
    for (int start = list.indexOf(entry); start >= 0; start = list.indexOf(entry, start + 1)) {
        const int end = start + entry.size();
        if ((start == 0 || list.at(start - 1) == comma)
            && (end == list.size() || list.at(end) == comma))
            return true;
    }
    return false;
}

} // namespace

// Read, changed and written with no lock: an edit that another program makes in between is lost.
bool THRWorker::addPersonIntoPam(uint pid)
{
    if (logLevel > 1)
        qDebug("THRWorker::addPersonIntoPam(%u)", pid);
    if (pid == 0)
        return false;

    // Deliberate: several blocks are as good as none, the value of the one is not read, and
    // "active" goes wherever it stands in the name. Pinned by
    // tst_Pam::addPersonIntoPam_needsExactlyOneBlock(),
    // tst_Pam::addPersonIntoPam_takesAnInactiveBlock() and
    // tst_Pam::addPersonIntoPam_replacesActiveInTheBlockId().
    const QMap<QString, QVariant> blocks = orvSettings->variableGetMultiple(
        QStringLiteral("exportPam.%.active"));
    if (blocks.size() != 1)
        return false;
    QString name = blocks.firstKey();
    name.replace(QLatin1String("active"), QLatin1String("selPeople"));

    // Long in a large company, and so neither taken apart nor copied without need.
    QString people = orvSettings->variableGet(name, QVariant()).toString();
    if (hasEmptyParts(people))
        people = people.split(comma, QString::SkipEmptyParts).join(comma);
    const QString person = QString::number(pid);
    if (holdsEntry(people, person))
        return true;
    if (!people.isEmpty())
        people.append(comma);
    people.append(person);
    return orvSettings->variableSet(name, people);
}

bool THRWorker::dbAddPersonIntoPam(uint pid, uint pamSettingsID)
{
    if (logLevel == 0 && testMode)
        return true;
    if (logLevel > 0)
        qDebug("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u)", pid, pamSettingsID);
    if (testMode) {
        qWarning("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u) - Testing mode is "
                 "active, person not really add into PaM!",
                 pid, pamSettingsID);
        return true;
    }

    QSqlQuery selection(db);
    const bool found = selection.exec(
        QStringLiteral("SELECT uid FROM people WHERE pid=%1").arg(pid));
    const uint uid = found && selection.next() ? selection.value(0).toUInt() : 0;
    if (uid == 0) {
        if (logLevel > 0)
            qWarning("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u) - Unique person ID "
                     "([people].uid) not found!",
                     pid, pamSettingsID);
        return false;
    }

    QSqlQuery query(db);
    const QString statement = QStringLiteral("INSERT INTO people_pam (uid, id) VALUES(%1, %2)"
                                             " ON DUPLICATE KEY UPDATE id=VALUES(id)")
                                  .arg(uid)
                                  .arg(pamSettingsID);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u) - SQL ERROR: %s", pid,
                  pamSettingsID, SQL_TEXT(query));
        return false;
    }
    return query.lastInsertId().toInt() > 0 || query.numRowsAffected() > 0;
}
