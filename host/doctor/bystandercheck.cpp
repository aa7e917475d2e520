// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What else the server does when a pass writes: triggers and foreign keys.
#include "host/doctor/schemaparts.h"

#include "host/catalogue/findings.h"
#include "host/database/errortext.h"
#include "host/doctor/grantedrights.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

bool isWritten(const QString &table)
{
    const NeededTable *const needed = neededTable(table);
    return needed && needed->isWritten();
}

/// The server shows triggers to those who have any right on the table but to read it.
bool showsTriggers(const GrantedRights &granted, const QString &table)
{
    return std::any_of(granted.grants.begin(), granted.grants.end(), [&](const Grant &grant) {
        const bool isThere = grant.level == Grant::Table
            ? grant.schema == granted.schema && grant.object == table
            : grant.level <= Grant::Schema && grant.reaches(granted.schema);
        if (!isThere)
            return false;
        for (const char *right : {"INSERT", "UPDATE", "DELETE", "TRIGGER"}) {
            const QString name = QString::fromLatin1(right);
            if (grant.has(name) || grant.columns.contains(name))
                return true;
        }
        return false;
    });
}

void tellUnseenTriggers(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    GrantedRights granted;
    const Failure failure = readGrantedRights(database, &granted);
    QStringList hidden;
    for (const NeededTable &table : neededTables()) {
        if (table.isWritten() && (failure || !showsTriggers(granted, table.name)))
            hidden.append(table.name);
    }
    if (!hidden.isEmpty()) {
        diagnosis->unknown.append(
            {Text::tr("triggers"),
             Text::tr("the server does not show those of %1 to a login without the right TRIGGER")
                 .arg(hidden.join(QStringLiteral(", ")))});
    }
}

void findTriggers(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral(
            "SELECT event_object_table, trigger_name, action_timing, event_manipulation "
            "FROM information_schema.triggers WHERE event_object_schema = DATABASE() "
            "AND event_manipulation IN('INSERT', 'UPDATE') "
            "ORDER BY event_object_table, trigger_name"))) {
        diagnosis->unknown.append({Text::tr("triggers"), errorText(query.lastError())});
        return;
    }
    while (query.next()) {
        const QString table = query.value(0).toString();
        if (isWritten(table)) {
            diagnosis->findings.append(finding(
                "N-SCHEMA-TRIGGER", table,
                {table, query.value(1).toString(),
                 query.value(2).toString() + QLatin1Char(' ') + query.value(3).toString()}));
        }
    }
}

void findForeignKeys(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral(
            "SELECT table_name, constraint_name, GROUP_CONCAT(column_name ORDER BY "
            "ordinal_position SEPARATOR ', '), referenced_table_name "
            "FROM information_schema.key_column_usage WHERE table_schema = DATABASE() "
            "AND referenced_table_name IS NOT NULL "
            "GROUP BY table_name, constraint_name, referenced_table_name "
            "ORDER BY table_name, constraint_name"))) {
        diagnosis->unknown.append({Text::tr("foreign keys"), errorText(query.lastError())});
        return;
    }
    while (query.next()) {
        const QString table = query.value(0).toString();
        if (isWritten(table)) {
            diagnosis->findings.append(
                finding("N-SCHEMA-FOREIGNKEY", table,
                        {table, query.value(1).toString(), query.value(2).toString(),
                         query.value(3).toString()}));
        }
    }
}

} // namespace

Diagnosis bystanderDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    findTriggers(database, &diagnosis);
    tellUnseenTriggers(database, &diagnosis);
    findForeignKeys(database, &diagnosis);
    return diagnosis;
}
