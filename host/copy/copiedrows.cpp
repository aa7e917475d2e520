// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of a table, as a statement for another server.
#include "host/copy/copiedrows.h"

#include "host/copy/sqlnames.h"
#include "host/database/errortext.h"
#include "host/database/touchedtables.h"

#include <QCoreApplication>
#include <QVariant>

#include <algorithm>
#include <initializer_list>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCopy)
};

const int statementSize = 256 * 1024; // bytes

bool isOneOf(const QString &kind, const char *kinds)
{
    return QString::fromLatin1(kinds).split(QLatin1Char(' ')).contains(kind);
}

/// An SQL expression that gives the value as a literal, or NULL. Bytes go as they are stored:
/// whatever they mean, they mean the same to a column of the same character set.
QString literalOf(const CopiedColumn &column)
{
    const QString name = quotedName(column.name);
    if (isOneOf(column.kind, "tinyint smallint mediumint int bigint decimal year double"))
        return name;
    if (column.kind == QLatin1String("float")) // would be rounded to six digits
        return QStringLiteral("%1 * 1e0").arg(name);
    // By number: what is none of an enumeration's texts is 0.
    if (isOneOf(column.kind, "bit enum set"))
        return QStringLiteral("CAST(%1 AS UNSIGNED)").arg(name);
    if (column.kind == QLatin1String("timestamp")) // a moment; its local time may come twice
        return QStringLiteral("IF(%1 = 0, '0', CONCAT('FROM_UNIXTIME(', UNIX_TIMESTAMP(%1), ')'))")
            .arg(name);
    if (isOneOf(column.kind, "date datetime time"))
        return QStringLiteral("CONCAT('''', %1, '''')").arg(name);
    if (isOneOf(column.kind,
                "char varchar tinytext text mediumtext longtext json binary varbinary "
                "tinyblob blob mediumblob longblob geometry point linestring polygon multipoint "
                "multilinestring multipolygon geometrycollection"))
        return QStringLiteral("CONCAT('X''', HEX(%1), '''')").arg(name);
    return QStringLiteral("QUOTE(%1)").arg(name);
}

QString rowExpression(const CopiedTable &table)
{
    QStringList literals;
    for (const CopiedColumn &column : table.columns)
        literals.append(QStringLiteral("IFNULL(%1, 'NULL')").arg(literalOf(column)));
    return QStringLiteral("CONCAT('(', %1, ')')").arg(literals.join(QStringLiteral(", ',', ")));
}

/// Always the same for the same rows, so that the digest is, too.
QString orderOf(const CopiedTable &table)
{
    QStringList names;
    for (const QString &column : table.key)
        names.append(quotedName(column));
    return names.isEmpty() ? QStringLiteral(" ORDER BY 1")
                           : QStringLiteral(" ORDER BY ") + names.join(QStringLiteral(", "));
}

bool hasColumns(const CopiedTable &table, std::initializer_list<const char *> columns)
{
    return std::all_of(columns.begin(), columns.end(), [&](const char *column) {
        return table.hasColumn(QString::fromLatin1(column));
    });
}

/// Unlocked days, and the first locked one of each person and month, in the time zone of the
/// session. The rows come person by person and day by day; where they came otherwise, there would
/// only be more of them.
QString dayCondition()
{
    return QStringLiteral("(`lock` = 0 OR NOT (@talvenhrMonth <=> (@talvenhrMonth := "
                          "`uid` * 1000000 + COALESCE(EXTRACT(YEAR_MONTH FROM "
                          "FROM_UNIXTIME(`date`)), 0))))");
}

/// What a pass looks at of tables that grow with the years; empty for all rows.
QString periodCondition(const CopiedSchema &schema, const CopiedTable &table,
                        const CopyWishes &wishes)
{
    if (wishes.whole)
        return QString();
    const CopiedTable *const funds = schema.find(QStringLiteral("funds"));
    if (table.name == QLatin1String("atten") && hasColumns(table, {"uid", "date", "lock"}))
        return dayCondition();
    if (table.name == QLatin1String("funds_move") && hasColumns(table, {"fid"}) && funds
        && hasColumns(*funds, {"fid", "iid", "unit"}))
        return QStringLiteral("`fid` IN (SELECT fid FROM funds WHERE iid = 3 AND unit = 2)");
    return QString();
}

/// The rows of the people who are wished for; empty for all rows.
QString peopleCondition(const CopiedTable &table, const CopyWishes &wishes)
{
    const auto &touched = touchedTables();
    const auto known = std::find_if(
        touched.cbegin(), touched.cend(),
        [&table](const TouchedTable &other) { return other.name == table.name; });
    if (!wishes.onlyPeople || known == touched.cend() || known->person.isEmpty()
        || !table.hasColumn(known->person))
        return QString();
    if (wishes.uids.isEmpty())
        return QStringLiteral("FALSE");
    QStringList uids;
    for (const qlonglong uid : wishes.uids)
        uids.append(QString::number(uid));
    QString condition = QStringLiteral("%1 IN (%2)")
                            .arg(quotedName(known->person), uids.join(QStringLiteral(", ")));
    if (!known->personMark.isEmpty() && table.hasColumn(known->personMark))
        condition += QStringLiteral(" AND %1 = 'uid'").arg(quotedName(known->personMark));
    return condition;
}

} // namespace

QString rowStatement(const CopiedSchema &schema, const CopiedTable &table, const CopyWishes &wishes)
{
    // People first: the days of others must not be looked at one after the other.
    QStringList conditions;
    for (const QString &condition :
         {peopleCondition(table, wishes), periodCondition(schema, table, wishes)}) {
        if (!condition.isEmpty())
            conditions.append(condition);
    }
    const QString where = conditions.isEmpty()
        ? QString()
        : QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    return QStringLiteral("SELECT %1 FROM %2").arg(rowExpression(table), quotedName(table.name))
        + where + orderOf(table);
}

RowStream::RowStream(const QSqlDatabase &readDatabase, const CopiedTable &readTable,
                     const QString &readStatement, QCryptographicHash *digestOfAll) :
    database(readDatabase),
    table(readTable),
    statement(readStatement),
    digest(digestOfAll)
{ }

QByteArray RowStream::next()
{
    QByteArray row;
    if (!nextRow(&row))
        return QByteArray();
    QStringList names;
    for (const CopiedColumn &column : table.columns)
        names.append(quotedName(column.name));
    QByteArray insert = QStringLiteral("INSERT INTO %1 (%2) VALUES\n")
                            .arg(quotedName(table.name), names.join(QStringLiteral(", ")))
                            .toUtf8();
    insert.reserve(statementSize + 1024);
    insert += row;
    while (insert.size() < statementSize && nextRow(&row)) {
        insert += ",\n";
        insert += row;
    }
    if (trouble)
        return QByteArray();
    return insert += ";\n";
}

bool RowStream::nextRow(QByteArray *row)
{
    if (!query && !begin())
        return false;
    if (!query->next()) {
        checkEnd();
        return false;
    }
    *row = query->value(0).toByteArray();
    if (row->isEmpty()) {
        // What the server makes of a text beyond its limit.
        trouble = {ExitDatabase,
                   Text::tr("a row of table '%1' of database '%2' does not fit into what the "
                            "server sends at once; raise its variable max_allowed_packet")
                       .arg(table.name, database.databaseName())};
        return false;
    }
    digest->addData(*row);
    ++count;
    return true;
}

bool RowStream::begin()
{
    query = std::make_unique<QSqlQuery>(database);
    query->setForwardOnly(true);
    if (query->exec(QStringLiteral("SET @talvenhrMonth = NULL")) && query->exec(statement))
        return true;
    fail(query->lastError());
    return false;
}

/// To the query, the loss of the connection and a statement that was killed look like the last row.
void RowStream::checkEnd()
{
    query->finish();
    QSqlQuery question(database);
    if (!question.exec(QStringLiteral("SELECT @@error_count")) || !question.next()) {
        fail(question.lastError());
    } else if (question.value(0).toInt() != 0) {
        trouble = {ExitDatabase,
                   Text::tr("the server has broken off the reading of table '%1' of database '%2'")
                       .arg(table.name, database.databaseName())};
    }
}

void RowStream::fail(const QSqlError &error)
{
    trouble = {ExitDatabase,
               Text::tr("table '%1' of database '%2' cannot be read: %3")
                   .arg(table.name, database.databaseName(), errorText(error))};
}
