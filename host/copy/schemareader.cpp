// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Follows what a pass needs through tables, triggers and routines.
#include "host/copy/schemareader.h"

#include "host/catalogue/statements.h"
#include "host/copy/sqlnames.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QVariant>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCopy)
};

QStringList objectsOfPass(bool routines)
{
    QStringList objects;
    for (const StatementFacts &facts : allStatements()) {
        for (const StatementNeed &need : facts.needs) {
            if (need.rights.contains(QStringLiteral("EXECUTE")) == routines)
                objects.append(need.object);
        }
    }
    objects.removeDuplicates();
    objects.sort();
    return objects;
}

QString rightOn(const QString &right, const QString &schema, const QString &table)
{
    return QStringLiteral("%1 ON %2.%3").arg(right, quotedName(schema), quotedName(table));
}

} // namespace

bool CopiedTable::hasColumn(const QString &column) const
{
    return std::any_of(columns.begin(), columns.end(), [&](const CopiedColumn &one) {
        return one.name.compare(column, Qt::CaseInsensitive) == 0;
    });
}

const CopiedTable *CopiedSchema::find(const QString &table) const
{
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const CopiedTable &one) { return one.name == table; });
    return found == tables.end() ? nullptr : &*found;
}

QStringList tablesOfPass()
{
    return objectsOfPass(false);
}

QStringList routinesOfPass()
{
    return objectsOfPass(true);
}

Failure readCopiedSchema(const QSqlDatabase &database, const CopyWishes &wishes,
                         CopiedSchema *schema)
{
    return SchemaReader(database, wishes, schema).read();
}

SchemaReader::SchemaReader(const QSqlDatabase &readDatabase, const CopyWishes &copyWishes,
                           CopiedSchema *readSchema) :
    database(readDatabase),
    wishes(copyWishes),
    schema(readSchema)
{ }

Failure SchemaReader::read()
{
    *schema = CopiedSchema();
    if (const Failure failure = readLists())
        return failure;
    const QStringList tables = tablesOfPass();
    for (const QString &table : tables)
        takeTable(table, QString());
    const QStringList routines = routinesOfPass();
    for (const QString &routine : routines)
        takeRoutine(routine, QString());
    std::sort(
        schema->tables.begin(), schema->tables.end(),
        [](const CopiedTable &one, const CopiedTable &other) { return one.name < other.name; });
    if (!tablesWithoutTriggers.isEmpty() && wishes.withoutTriggers) {
        schema->leftOut.append(
            Text::tr("Triggers of these tables cannot be seen and are not in the copy, so that "
                     "what they do is missing: %1.")
                .arg(tablesWithoutTriggers.join(QStringLiteral(", "))));
    }
    return refusal();
}

Failure SchemaReader::failed(const QSqlQuery &query) const
{
    return {ExitDatabase,
            Text::tr("database '%1' cannot be read: %2")
                .arg(database.databaseName(), errorText(query.lastError()))};
}

Failure SchemaReader::readLists()
{
    Failure failure = readSchemaName();
    if (!failure)
        failure = rights.read(database);
    if (failure)
        return failure;
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT table_name, table_type, engine "
                                   "FROM information_schema.tables "
                                   "WHERE table_schema = DATABASE()")))
        return failed(query);
    while (query.next())
        knownTables.insert(query.value(0).toString(),
                           {query.value(1).toString(), query.value(2).toString()});
    if (!query.exec(QStringLiteral("SELECT routine_name, routine_type "
                                   "FROM information_schema.routines "
                                   "WHERE routine_schema = DATABASE()")))
        return failed(query);
    while (query.next())
        knownRoutines.insert(query.value(0).toString().toLower(),
                             {query.value(0).toString(), query.value(1).toString()});
    return readTriggerNames();
}

Failure SchemaReader::readSchemaName()
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT schema_name, default_character_set_name, "
                                   "default_collation_name, CURRENT_USER() "
                                   "FROM information_schema.schemata "
                                   "WHERE schema_name = DATABASE()"))
        || !query.next())
        return failed(query);
    schema->name = query.value(0).toString();
    schema->characterSet = query.value(1).toString();
    schema->collation = query.value(2).toString();
    account = query.value(3).toString();
    return {};
}

Failure SchemaReader::readTriggerNames()
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral(
            "SELECT event_object_table, trigger_name FROM information_schema.triggers "
            "WHERE event_object_schema = DATABASE() "
            "ORDER BY event_object_table, event_manipulation, action_timing, action_order")))
        return failed(query);
    while (query.next())
        knownTriggers[query.value(0).toString()].append(query.value(1).toString());
    return {};
}

/// `wantedBy` is empty for a table that the statements of a pass name.
void SchemaReader::takeTable(const QString &name, const QString &wantedBy)
{
    if (seen.contains(name))
        return;
    seen.insert(name);

    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT * FROM %1 LIMIT 0").arg(quotedName(name)))) {
        const bool exists = query.lastError().nativeErrorCode() != QLatin1String("1146");
        if (exists)
            missTable(name, QStringLiteral("SELECT"), wantedBy);
        else
            schema->warnings.append(
                Text::tr("The database has no table '%1', which a pass uses.").arg(name));
        return;
    }
    CopiedTable table;
    table.name = name;
    const KnownTable known = knownTables.value(name);
    table.isView = known.type.contains(QLatin1String("VIEW"));
    if (!readDefinition(&table) || !readColumns(&table)) {
        missTable(name, table.isView ? QStringLiteral("SHOW VIEW") : QStringLiteral("SELECT"),
                  wantedBy);
        return;
    }
    schema->tables.append(table);
    if (table.isView) {
        follow(table.create, Text::tr("View '%1'").arg(name));
        return;
    }
    if (known.engine != QLatin1String("InnoDB")) {
        schema->warnings.append(Text::tr("Table '%1' is of the engine %2, which has no snapshots: "
                                         "its rows are of another moment than the rest.")
                                    .arg(name, known.engine));
    }
    followReferences(table.create, name);
    takeTriggers(name);
}

void SchemaReader::missTable(const QString &name, const QString &right, const QString &wantedBy)
{
    if (wantedBy.isEmpty()) {
        missing.append(rightOn(right, schema->name, name));
        return;
    }
    schema->leftOut.append(Text::tr("%1 uses the table '%2', which the login may not read: it is "
                                    "not in the copy, and what needs it fails there.")
                               .arg(wantedBy, name));
}

/// The statement that the server gives for its own table. Directories of the source, and its keys,
/// are no business of the copy.
bool SchemaReader::readDefinition(CopiedTable *table)
{
    static const QRegularExpression encryption(
        QStringLiteral(" `?(?:ENCRYPTED|ENCRYPTION_KEY_ID)`?=[^ ]+"));
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SHOW CREATE TABLE %1").arg(quotedName(table->name)))
        || !query.next())
        return false;
    table->create = query.value(1).toString();
    if (!table->isView)
        table->create.remove(encryption);
    return !table->create.isEmpty();
}

bool SchemaReader::readColumns(CopiedTable *table)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT column_name, data_type, column_key "
                                   "FROM information_schema.columns "
                                   "WHERE table_schema = DATABASE() AND table_name = %1 "
                                   "AND is_generated = 'NEVER' ORDER BY ordinal_position")
                        .arg(quotedText(table->name))))
        return false;
    while (query.next())
        table->columns.append({query.value(0).toString(), query.value(1).toString().toLower()});
    if (!query.exec(QStringLiteral("SELECT column_name FROM information_schema.statistics "
                                   "WHERE table_schema = DATABASE() AND table_name = %1 "
                                   "AND index_name = 'PRIMARY' ORDER BY seq_in_index")
                        .arg(quotedText(table->name))))
        return false;
    while (query.next())
        table->key.append(query.value(0).toString());
    return true;
}

void SchemaReader::takeTriggers(const QString &table)
{
    if (!rights.has(QStringLiteral("TRIGGER"), schema->name, table)) {
        tablesWithoutTriggers.append(table);
        return;
    }
    const QStringList names = knownTriggers.value(table);
    for (const QString &name : names) {
        CopiedProgram trigger;
        if (!readProgram(QStringLiteral("TRIGGER"), name, &trigger)) {
            tablesWithoutTriggers.append(table);
            return;
        }
        schema->triggers.append(trigger);
        follow(trigger.create, Text::tr("Trigger '%1'").arg(name));
    }
}

Failure SchemaReader::refusal() const
{
    QStringList rightsMissing = missing;
    QStringList ways;
    if (!tablesWithoutTriggers.isEmpty() && !wishes.withoutTriggers) {
        const auto tables = std::count_if(schema->tables.begin(), schema->tables.end(),
                                          [](const CopiedTable &table) { return !table.isView; });
        if (tablesWithoutTriggers.size() == tables) {
            rightsMissing.append(QStringLiteral("TRIGGER ON %1.*").arg(quotedName(schema->name)));
        } else {
            for (const QString &table : tablesWithoutTriggers)
                rightsMissing.append(rightOn(QStringLiteral("TRIGGER"), schema->name, table));
        }
        ways.append(QStringLiteral("--without-triggers"));
    }
    if (bodiesAreMissing && !wishes.withoutRoutines) {
        rightsMissing.append(QStringLiteral("SELECT ON `mysql`.`proc`"));
        ways.append(QStringLiteral("--without-routines"));
    }
    if (rightsMissing.isEmpty())
        return {};
    const QString text
        = Text::tr("the copy of database '%1' would not be whole: the login '%2' lacks %3; grant "
                   "what is missing, or take an account of those that 'talvenhr doctor --grants' "
                   "prints: that which only reads, or for run --plan the one whose name ends in "
                   "_plan")
              .arg(schema->name, account, rightsMissing.join(QStringLiteral(", ")));
    // The other rights have no way around them.
    return {ExitRefused,
            ways.isEmpty() || !missing.isEmpty()
                ? text
                : Text::tr("%1, or go on with less: %2").arg(text, ways.join(QLatin1Char(' ')))};
}
