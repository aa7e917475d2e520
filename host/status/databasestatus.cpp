// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the database tells.
#include "host/status/databasestatus.h"

#include "host/database/errortext.h"
#include "host/database/runlock.h"
#include "host/status/folderstatus.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseStatus)
};

/// The first value of the answer; not valid without one.
Failure ask(const QSqlDatabase &database, const QString &statement, QVariant *value)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        return {ExitDatabase,
                Text::tr("the database does not answer '%1': %2")
                    .arg(statement, errorText(query.lastError()))};
    *value = query.next() ? query.value(0) : QVariant();
    return {};
}

Failure readFacts(const QSqlDatabase &database, DatabaseStatus *facts)
{
    QVariant forced;
    const QString force = QStringLiteral(
        "SELECT value FROM vars WHERE name = 'OQS.THRWorker.forceSync'");
    if (const Failure failure = ask(database, force, &forced))
        return failure;
    QString error;
    facts->run = runLockHolder(database, &error);
    if (!error.isEmpty())
        return {ExitDatabase, Text::tr("the database does not tell who runs: %1").arg(error)};
    facts->forced = forced.toBool();
    return {};
}

/// The plugin's own account may not read it.
void readQueue(const QSqlDatabase &database, Status *status)
{
    QVariant queue;
    if (const Failure failure = ask(database, QStringLiteral("SELECT COUNT(*) FROM term_sync"),
                                    &queue))
        status->unknown.append({Text::tr("the queue of the terminals"), failure.text, true});
    else
        status->database->queue = queue.toLongLong();
}

} // namespace

Failure addDatabase(const QSqlDatabase &database, Status *status)
{
    DatabaseStatus facts;
    if (const Failure failure = readFacts(database, &facts))
        return failure;
    status->database = facts;
    readQueue(database, status);
    const QVector<RehearsedExport> rehearsals = readRehearsals(*status);
    status->lossesAreKnown = true;
    status->notJudged = static_cast<int>(
        std::count_if(rehearsals.cbegin(), rehearsals.cend(),
                      [](const RehearsedExport &exported) { return exported.isOverlapped; }));
    if (rehearsals.isEmpty())
        return {};
    Snapshot snapshot;
    const Failure failure = readSnapshot(database, SnapshotRows::Touchable, &snapshot);
    if (failure) {
        status->lossesAreKnown = false;
        status->unknown.append({Text::tr("what passes have lost"), failure.text, true});
        return {};
    }
    status->lost = lostPeople(rehearsals, snapshot);
    return {};
}
