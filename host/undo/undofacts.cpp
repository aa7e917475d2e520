// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a database says of those whom a pass has added.
#include "host/undo/undofacts.h"

#include "host/changes/personkinds.h"
#include "host/copy/loginrights.h"
#include "host/copy/sqlnames.h"
#include "host/database/errortext.h"
#include "host/undo/personsteps.h"
#include "host/undo/undorights.h"

#include <QCoreApplication>
#include <QHash>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoFacts)
};

Failure failed(const QSqlDatabase &database, const QSqlQuery &query)
{
    if (isRightDenied(query.lastError()))
        return missingUndoRight(database.userName(), query.lastError());
    return {ExitDatabase,
            Text::tr("the database cannot be asked who refers to a person: %1")
                .arg(errorText(query.lastError()))};
}

/// Columns of the name, and what foreign keys say.
Failure readReferences(const QSqlDatabase &database, QVector<PersonReference> *references)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral(
            "SELECT c.table_name, c.column_name FROM information_schema.columns c "
            "JOIN information_schema.tables t USING (table_schema, table_name) "
            "WHERE c.table_schema = DATABASE() AND t.table_type = 'BASE TABLE' "
            "AND c.column_name = 'uid' AND c.table_name <> 'people' "
            "UNION SELECT table_name, column_name FROM information_schema.key_column_usage "
            "WHERE table_schema = DATABASE() AND referenced_table_schema = DATABASE() "
            "AND referenced_table_name = 'people' AND referenced_column_name = 'uid' "
            "ORDER BY 1, 2")))
        return failed(database, query);
    while (query.next())
        references->append({query.value(0).toString(), query.value(1).toString()});
    return {};
}

/// Places of those who were added, by the uid that they really have.
Failure readAdded(const QSqlDatabase &database, const Changes &changes,
                  QHash<qlonglong, int> *places)
{
    QHash<qlonglong, int> byPid;
    for (int place = 0; place < changes.people.size(); ++place) {
        const Change *const row = addedRow(changes.people.at(place));
        if (!row)
            continue;
        if (changes.header.how == ChangesHeader::Rehearsed)
            byPid.insert(cellOf(*row, row->after, QStringLiteral("pid")).toLongLong(), place);
        else
            places->insert(changes.people.at(place).person.uid, place);
    }
    if (byPid.isEmpty())
        return {};
    QStringList pids;
    for (auto pid = byPid.cbegin(); pid != byPid.cend(); ++pid)
        pids.append(QString::number(pid.key()));
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT pid, uid FROM people WHERE pid IN (%1)")
                        .arg(pids.join(QStringLiteral(", ")))))
        return failed(database, query);
    while (query.next())
        places->insert(query.value(1).toLongLong(), byPid.value(query.value(0).toLongLong()));
    return {};
}

Failure readReferred(const QSqlDatabase &database, const PersonReference &reference,
                     const QHash<qlonglong, int> &added, QSet<int> *referred)
{
    QStringList uids;
    for (auto uid = added.cbegin(); uid != added.cend(); ++uid)
        uids.append(QString::number(uid.key()));
    QString statement = QStringLiteral("SELECT DISTINCT %1 FROM %2 WHERE %1 IN (%3)")
                            .arg(quotedName(reference.column), quotedName(reference.table),
                                 uids.join(QStringLiteral(", ")));
    if (reference.table == QLatin1String("funds_move"))
        statement += QStringLiteral(" AND type <> 3");
    QSqlQuery query(database);
    if (!query.exec(statement))
        return failed(database, query);
    while (query.next())
        referred->insert(added.value(query.value(0).toLongLong()));
    return {};
}

bool isCopied(const PersonReference &reference, const QStringList &copiedTables)
{
    return copiedTables.contains(reference.table);
}

bool isTouched(const PersonReference &reference)
{
    const QVector<TouchedTable> &tables = touchedTables();
    return std::any_of(tables.cbegin(), tables.cend(),
                       [&](const TouchedTable &table) { return table.name == reference.table; });
}

} // namespace

Failure readUndoFacts(const QSqlDatabase &database, const Changes &changes,
                      const QStringList &copiedTables, UndoFacts *facts)
{
    *facts = {};
    LoginRights rights;
    if (const Failure failure = rights.read(database))
        return failure;
    // No table has this name: the right is one on all of them.
    facts->areWhole = rights.has(QStringLiteral("SELECT"), database.databaseName(),
                                 QStringLiteral("/"));
    if (!facts->areWhole)
        return {};
    if (const Failure failure = readReferences(database, &facts->references))
        return failure;
    QHash<qlonglong, int> added;
    Failure failure = readAdded(database, changes, &added);
    for (const PersonReference &reference : qAsConst(facts->references)) {
        // Rows of the pass itself are in tables that a copy has.
        const bool isAsked = (!isCopied(reference, copiedTables) && !isTouched(reference))
            || reference.table == QLatin1String("funds_move");
        if (!failure && isAsked && !added.isEmpty())
            failure = readReferred(database, reference, added, &facts->referred);
    }
    return failure;
}

UndoFacts factsOfCopy(const UndoFacts &facts, const QStringList &copiedTables)
{
    UndoFacts result = facts;
    result.references.clear();
    for (const PersonReference &reference : facts.references) {
        if (isCopied(reference, copiedTables))
            result.references.append(reference);
    }
    return result;
}
