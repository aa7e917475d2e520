// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The attendance database, as far as a run has to do with it by itself.
#include "host/database/attendance.h"

#include "host/base/silentmessages.h"
#include "host/database/errortext.h"
#include "repository/orvdbsettings.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>

Failure checkAttendance(const QSqlDatabase &database)
{
    const QStringList tables {QStringLiteral("vars"), QStringLiteral("people"),
                              QStringLiteral("branches"), QStringLiteral("atten")};
    for (const QString &table : tables) {
        QSqlQuery query(database);
        if (!query.exec(QStringLiteral("SELECT 1 FROM %1 LIMIT 0").arg(table)))
            return {ExitDatabase,
                    QStringLiteral("table '%1' of database '%2' cannot be used (%3); is this the "
                                   "attendance database, and may user '%4' read it?")
                        .arg(table, database.databaseName(), errorText(query.lastError()),
                             database.userName())};
    }
    return {};
}

Failure forceNextPass(const QSqlDatabase &database)
{
    // The failure's own line tells more.
    const SilentMessages silence;
    OrvDbSettings variables(database);
    if (variables.variableSet(QStringLiteral("OQS.THRWorker.forceSync"), 1))
        return {};
    return {
        ExitDatabase,
        QStringLiteral("the pass cannot be forced: user '%1' may not write into table 'vars' of "
                       "database '%2'")
            .arg(database.userName(), database.databaseName())};
}
