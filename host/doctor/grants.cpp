// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that give an account the rights that it needs.
#include "host/doctor/grants.h"

#include "host/catalogue/neededschema.h"
#include "host/doctor/sqlwords.h"

#include <QPair>

namespace {

QStringList runStatements(const QString &account, const QString &schema)
{
    const QString to = QStringLiteral(" TO ") + account;
    QStringList statements;
    for (const NeededTable &table : neededTables()) {
        QStringList rights;
        for (const NeededRight &needed : neededRights()) {
            if (needed.object != table.name)
                continue;
            rights.append(needed.byColumn ? QStringLiteral("%1 (%2)").arg(
                              needed.right, quotedNames(needed.columns))
                                          : needed.right);
        }
        statements.append(
            QStringLiteral("GRANT %1 ON %2.%3")
                .arg(rights.join(QStringLiteral(", ")), quotedName(schema), quotedName(table.name))
            + to);
    }
    for (const NeededRoutine &routine : neededRoutines()) {
        statements.append(
            QStringLiteral("GRANT EXECUTE ON %1 %2.%3")
                .arg(routine.isProcedure ? QStringLiteral("PROCEDURE") : QStringLiteral("FUNCTION"),
                     quotedName(schema), quotedName(routine.name))
            + to);
    }
    return statements;
}

/// As database/grants/undo.sql has them.
QStringList undoStatements(const QString &account, const QString &schema)
{
    QStringList columns;
    const QStringList stay {QStringLiteral("pid"), QStringLiteral("created"),
                            QStringLiteral("lastCalc"), QStringLiteral("calc")};
    for (const NeededColumn &column : neededTable(QStringLiteral("people"))->columns) {
        if (column.isUpdated && !stay.contains(column.name))
            columns.append(column.name);
    }
    const QVector<QPair<QString, QString>> rights {
        {QStringLiteral("people"), QStringLiteral("UPDATE (%1), DELETE").arg(quotedNames(columns))},
        {QStringLiteral("people_pam"), QStringLiteral("UPDATE (`id`), DELETE")},
        {QStringLiteral("brape"), QStringLiteral("UPDATE (`since`), DELETE")},
        {QStringLiteral("people_term"), QStringLiteral("DELETE")},
        {QStringLiteral("admins_people"), QStringLiteral("UPDATE (`request`), DELETE")},
        {QStringLiteral("groups_plan"), QStringLiteral("UPDATE (`gid`), DELETE")},
        {QStringLiteral("groups_month"), QStringLiteral("UPDATE (`gid`), DELETE")},
        {QStringLiteral("funds_move"), QStringLiteral("INSERT, UPDATE")},
        {QStringLiteral("vars"), QStringLiteral("UPDATE (`value`), DELETE")},
        {QStringLiteral("term_sync"), QStringLiteral("INSERT")},
        {QStringLiteral("term"), QStringLiteral("UPDATE (`syn`)")},
    };
    QStringList statements;
    for (const auto &right : rights)
        statements.append(QStringLiteral("GRANT %1 ON %2.%3 TO ")
                              .arg(right.second, quotedName(schema), quotedName(right.first))
                          + account);
    for (const char *routine : {"FUNCTION %1.`midnightFromTs`", "FUNCTION %1.`monthFromTimestamp`",
                                "PROCEDURE %1.`updateTermsSync`"})
        statements.append(QStringLiteral("GRANT EXECUTE ON %1 TO ")
                              .arg(QString::fromLatin1(routine).arg(quotedName(schema)))
                          + account);
    return statements;
}

} // namespace

QStringList grantStatements(const QString &account, const QString &schema, GrantPurpose purpose)
{
    if (purpose == GrantPurpose::Run)
        return runStatements(account, schema);
    const QStringList look {QStringLiteral("GRANT SELECT, TRIGGER, SHOW VIEW ON %1.* TO %2")
                                .arg(quotedSchemaPattern(schema), account),
                            QStringLiteral("GRANT SELECT ON `mysql`.`proc` TO ") + account};
    switch (purpose) {
    case GrantPurpose::Plan:
        return look + runStatements(account, schema);
    case GrantPurpose::Undo:
        return look + undoStatements(account, schema);
    case GrantPurpose::Run:
    case GrantPurpose::Look:
        break;
    }
    return look;
}

QString quotedSchemaPattern(const QString &schema)
{
    QString pattern = schema;
    pattern.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    pattern.replace(QLatin1Char('_'), QLatin1String("\\_"));
    pattern.replace(QLatin1Char('%'), QLatin1String("\\%"));
    return quotedName(pattern);
}
