// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of a table, as lines for another server.
#include "host/copy/copiedrows.h"

#include "host/copy/copiedlines.h"
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

const int pieceSize = 256 * 1024; // bytes
const int smallRange = 500; // rows
const int largeRange = 20000; // rows

/// The first column of the key, if the table can be read in ranges of it.
QString rangeColumnOf(const CopiedTable &table)
{
    const auto first = std::find_if(
        table.columns.begin(), table.columns.end(),
        [&](const CopiedColumn &column) { return column.name == table.key.value(0); });
    return first != table.columns.end() && isWholeNumber(*first) ? quotedName(first->name)
                                                                 : QString();
}

/// Long texts make long rows.
int rangeRowsOf(const CopiedTable &table)
{
    const bool hasLongTexts = std::any_of(table.columns.begin(), table.columns.end(),
                                          [](const CopiedColumn &column) {
                                              return column.kind.endsWith(QLatin1String("text"))
                                                  || column.kind.endsWith(QLatin1String("blob"))
                                                  || column.kind == QLatin1String("json");
                                          });
    return hasLongTexts ? smallRange : largeRange;
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

/// Empty conditions are none.
QString where(QStringList conditions)
{
    conditions.removeAll(QString());
    return conditions.isEmpty()
        ? QString()
        : QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
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

RowConditions rowConditions(const CopiedSchema &schema, const CopiedTable &table,
                            const CopyWishes &wishes)
{
    return {peopleCondition(table, wishes), periodCondition(schema, table, wishes)};
}

RowStream::RowStream(const QSqlDatabase &readDatabase, const CopiedTable &readTable,
                     const RowConditions &rowsWanted, QCryptographicHash *digestOfAll) :
    database(readDatabase),
    table(readTable),
    wanted(rowsWanted),
    digest(digestOfAll),
    rangeColumn(rangeColumnOf(readTable)),
    rangeRows(rangeRowsOf(readTable))
{ }

QByteArray RowStream::next()
{
    QByteArray lines;
    lines.reserve(pieceSize + 1024);
    while (lines.size() < pieceSize && appendRow(&lines)) {
    }
    if (trouble)
        return QByteArray();
    digest->addData(lines);
    return lines;
}

bool RowStream::appendRow(QByteArray *lines)
{
    if (!nextRow())
        return false;
    const QByteArray line = query->value(0).toByteArray();
    if (line.isEmpty()) {
        // What the server makes of a text beyond its limit.
        trouble = {ExitDatabase,
                   Text::tr("a row of table '%1' of database '%2' does not fit into what the "
                            "server sends at once; raise its variable max_allowed_packet")
                       .arg(table.name, database.databaseName())};
        return false;
    }
    *lines += line;
    ++count;
    return true;
}

/// Goes on with the next range where one ends.
bool RowStream::nextRow()
{
    if (!query && !beginRange())
        return false;
    while (!query->next()) {
        checkEnd();
        if (trouble || atEnd || !beginRange())
            return false;
    }
    return true;
}

bool RowStream::beginRange()
{
    if (!findRange())
        return false;
    // People first: the days of others must not be looked at one after the other.
    const QString statement = QStringLiteral("SELECT %1 FROM %2%3")
                                  .arg(lineExpression(table), quotedName(table.name),
                                       where({rangeCondition(), wanted.people, wanted.period}));
    query = std::make_unique<QSqlQuery>(database);
    query->setForwardOnly(true);
    if (query->exec(QStringLiteral("SET @talvenhrMonth = NULL"))
        && query->exec(statement + orderOf(table)))
        return true;
    fail(query->lastError());
    return false;
}

/// The range that follows the one that was read. All rows of one number are in the same.
bool RowStream::findRange()
{
    after = upTo;
    upTo.clear();
    if (!rangeColumn.isEmpty()) {
        QSqlQuery bound(database);
        if (!bound.exec(QStringLiteral("SELECT %1 FROM %2%3 ORDER BY %1 LIMIT 1 OFFSET %4")
                            .arg(rangeColumn, quotedName(table.name),
                                 where({rangeCondition(), wanted.people}),
                                 QString::number(rangeRows - 1)))) {
            fail(bound.lastError());
            return false;
        }
        if (bound.next())
            upTo = bound.value(0).toString();
    }
    atEnd = upTo.isEmpty();
    return true;
}

QString RowStream::rangeCondition() const
{
    QStringList conditions;
    if (!after.isEmpty())
        conditions.append(QStringLiteral("%1 > %2").arg(rangeColumn, after));
    if (!upTo.isEmpty())
        conditions.append(QStringLiteral("%1 <= %2").arg(rangeColumn, upTo));
    return conditions.join(QStringLiteral(" AND "));
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
