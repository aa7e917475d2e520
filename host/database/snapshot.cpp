// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables that a pass may write to, at one moment.
#include "host/database/snapshot.h"

#include "host/database/errortext.h"
#include "host/database/value.h"

#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>

namespace {

/// A transaction that sees one moment and can write nothing. It ends with the object, if not
/// before.
class ReadTransaction
{
public:
    explicit ReadTransaction(const QSqlDatabase &readDatabase) :
        database(readDatabase)
    { }
    ~ReadTransaction()
    {
        if (running)
            end();
    }
    ReadTransaction(const ReadTransaction &) = delete;
    ReadTransaction &operator=(const ReadTransaction &) = delete;

    Failure begin()
    {
        // At any other level the server would not keep to one moment, whatever it is asked for.
        Failure failure = run(QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ"));
        if (!failure)
            failure = run(QStringLiteral("START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"));
        running = !failure;
        return failure;
    }

    /// Fails if the connection was lost on the way: to a query that looks like the end of the rows.
    Failure end()
    {
        running = false;
        return run(QStringLiteral("COMMIT"));
    }

private:
    Failure run(const QString &statement) const
    {
        QSqlQuery query(database);
        if (query.exec(statement))
            return {};
        return {ExitDatabase,
                QStringLiteral("database '%1' cannot be read: %2")
                    .arg(database.databaseName(), errorText(query.lastError()))};
    }

    const QSqlDatabase database;
    bool running = false;
};

Failure tableFailure(const QSqlDatabase &database, const QString &table, const QSqlError &error)
{
    return {ExitDatabase,
            QStringLiteral("table '%1' of database '%2' cannot be read: %3")
                .arg(table, database.databaseName(), errorText(error))};
}

bool isTemporal(QVariant::Type type)
{
    return type == QVariant::Date || type == QVariant::Time || type == QVariant::DateTime;
}

/// All columns. Those of the database's own dates and times become texts on the server: the driver
/// would lose what is below a millisecond, and a text of Qt's own means nothing to a server.
QString wantedColumns(const QSqlDatabase &database, const TouchedTable &table)
{
    QSqlQuery query(database);
    const bool isKnown = query.exec(QStringLiteral("SELECT * FROM `%1` LIMIT 0").arg(table.name));
    const QSqlRecord record = query.record();
    QStringList columns;
    bool isAny = false;
    for (int column = 0; isKnown && column < record.count(); ++column) {
        QString name = record.fieldName(column);
        const bool isText = isTemporal(record.field(column).type());
        isAny |= isText;
        name = QLatin1Char('`') + name.replace(QLatin1Char('`'), QLatin1String("``"))
            + QLatin1Char('`');
        columns.append(isText ? QStringLiteral("CAST(%1 AS CHAR) AS %1").arg(name) : name);
    }
    return isAny ? columns.join(QStringLiteral(", ")) : QStringLiteral("*");
}

/// In the order of the key as the server sees it, which spares most tables the sorting.
QString contentStatement(const QString &columns, const TouchedTable &table, SnapshotRows wanted)
{
    QString statement = QStringLiteral("SELECT %1 FROM `%2`").arg(columns, table.name);
    if (wanted == SnapshotRows::Touchable && !table.touchable.isEmpty())
        statement += QStringLiteral(" WHERE ") + table.touchable;
    return statement + QStringLiteral(" ORDER BY `%1`").arg(table.key.join(QStringLiteral("`, `")));
}

Failure readTable(const QSqlDatabase &database, SnapshotRows wanted, TableContent *content)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    const QString columns = wantedColumns(database, *content->table);
    // Prepared, numbers come as numbers: as texts, reading them takes longer than all the rest.
    if (!query.prepare(contentStatement(columns, *content->table, wanted)) || !query.exec())
        return tableFailure(database, content->table->name, query.lastError());

    const QSqlRecord record = query.record();
    for (int column = 0; column < record.count(); ++column)
        content->columns.append(record.fieldName(column));
    while (query.next()) {
        TableRow row(record.count());
        for (int column = 0; column < row.size(); ++column)
            row[column] = plainValue(query.value(column));
        content->rows.append(row);
    }
    sortByKey(content);
    return {};
}

Failure readNames(const QSqlDatabase &database, const NamedId &id, QHash<qlonglong, QString> *names)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT %1, %2 FROM `%3`").arg(id.column, id.name, id.table)))
        return tableFailure(database, id.table, query.lastError());
    while (query.next())
        names->insert(query.value(0).toLongLong(), query.value(1).toString());
    return {};
}

} // namespace

const TableContent *Snapshot::find(const QString &table) const
{
    const auto found = std::find_if(
        tables.cbegin(), tables.cend(),
        [&table](const TableContent &content) { return content.table->name == table; });
    return found == tables.cend() ? nullptr : &*found;
}

Failure readSnapshot(const QSqlDatabase &database, SnapshotRows wanted, Snapshot *snapshot)
{
    *snapshot = {};
    ReadTransaction transaction(database);
    if (const Failure failure = transaction.begin())
        return failure;
    for (const TouchedTable &table : touchedTables()) {
        TableContent content;
        content.table = &table;
        if (const Failure failure = readTable(database, wanted, &content))
            return failure;
        snapshot->tables.append(content);
    }
    for (const NamedId &id : namedIds()) {
        if (const Failure failure = readNames(database, id, &snapshot->names[id.column]))
            return failure;
    }
    return transaction.end();
}

void sortByKey(TableContent *content)
{
    const QVector<int> key = placesOf(content->table->key, *content);
    const auto isBefore = [&key](const TableRow &one, const TableRow &other) {
        return compareRows(one, other, key) < 0;
    };
    if (!std::is_sorted(content->rows.cbegin(), content->rows.cend(), isBefore))
        std::stable_sort(content->rows.begin(), content->rows.end(), isBefore);
}

int compareRows(const TableRow &one, const TableRow &other, const QVector<int> &places)
{
    for (const int place : places) {
        if (const int order = compareValues(one.at(place), other.at(place)))
            return order;
    }
    return 0;
}

QVector<int> placesOf(const QStringList &columns, const TableContent &content)
{
    QVector<int> places;
    for (const QString &column : columns) {
        const int place = content.indexOf(column);
        if (place >= 0)
            places.append(place);
    }
    return places;
}
