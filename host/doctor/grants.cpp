// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that give an account the rights that it needs.
#include "host/doctor/grants.h"

#include "host/catalogue/neededschema.h"
#include "host/doctor/sqlwords.h"

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

} // namespace

QStringList grantStatements(const QString &account, const QString &schema, GrantPurpose purpose)
{
    if (purpose == GrantPurpose::Run)
        return runStatements(account, schema);
    return {QStringLiteral("GRANT SELECT, TRIGGER, SHOW VIEW ON %1.* TO %2")
                .arg(quotedSchemaPattern(schema), account),
            QStringLiteral("GRANT SELECT ON `mysql`.`proc` TO ") + account};
}

QString quotedSchemaPattern(const QString &schema)
{
    QString pattern = schema;
    pattern.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    pattern.replace(QLatin1Char('_'), QLatin1String("\\_"));
    pattern.replace(QLatin1Char('%'), QLatin1String("\\%"));
    return quotedName(pattern);
}
