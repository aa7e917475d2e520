// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables of a schema as they are.
#include "host/doctor/schemafacts.h"

#include "host/database/errortext.h"
#include "host/doctor/sqlwords.h"

#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <limits>

namespace {

struct IntegerKind
{
    const char *name;
    int bits;
};

const IntegerKind integerKinds[] = {
    {"tinyint", 8}, {"smallint", 16}, {"mediumint", 24}, {"int", 32}, {"bigint", 64},
};

/// 0 for what is no integer.
int bitsOf(const QString &kind)
{
    for (const IntegerKind &known : integerKinds) {
        if (kind == QLatin1String(known.name))
            return known.bits;
    }
    return 0;
}

bool isUnsigned(const QString &type)
{
    return type.contains(QLatin1String("unsigned"));
}

RealTable *tableIn(QVector<RealTable> *tables, const QString &name)
{
    const auto found = std::find_if(tables->begin(), tables->end(),
                                    [&](const RealTable &table) { return table.name == name; });
    return found == tables->end() ? nullptr : &*found;
}

Failure readTables(QSqlQuery &query, QVector<RealTable> *tables)
{
    if (!query.exec(QStringLiteral(
            "SELECT t.table_name, t.engine, e.transactions FROM information_schema.tables t "
            "LEFT JOIN information_schema.engines e USING (engine) "
            "WHERE t.table_schema = DATABASE()")))
        return {ExitDatabase, errorText(query.lastError())};
    while (query.next()) {
        RealTable table;
        table.name = query.value(0).toString();
        table.engine = query.value(1).toString();
        table.hasTransactions = table.engine.isEmpty()
            || query.value(2).toString() == QLatin1String("YES");
        tables->append(table);
    }
    return {};
}

RealColumn columnFrom(const QSqlQuery &row)
{
    RealColumn column;
    column.name = row.value(1).toString();
    column.kind = row.value(2).toString().toLower();
    column.type = row.value(3).toString();
    column.isNullable = row.value(4).toString() == QLatin1String("YES");
    column.fallback = row.value(5).isNull() ? QString() : row.value(5).toString();
    column.extra = row.value(6).toString();
    column.length = row.value(7).toLongLong();
    column.digits = row.value(8).toInt();
    if (!row.value(9).isNull()) {
        column.letters = QStringLiteral(" CHARACTER SET %1 COLLATE %2")
                             .arg(row.value(9).toString(), row.value(10).toString());
    }
    column.comment = row.value(11).toString();
    return column;
}

Failure readColumns(QSqlQuery &query, QVector<RealTable> *tables)
{
    if (!query.exec(QStringLiteral(
            "SELECT table_name, column_name, data_type, column_type, is_nullable, column_default, "
            "extra, character_maximum_length, numeric_precision - numeric_scale, "
            "character_set_name, collation_name, column_comment FROM information_schema.columns "
            "WHERE table_schema = DATABASE() ORDER BY table_name, ordinal_position")))
        return {ExitDatabase, errorText(query.lastError())};
    while (query.next()) {
        if (RealTable *const table = tableIn(tables, query.value(0).toString()))
            table->columns.append(columnFrom(query));
    }
    return {};
}

Failure readIndexes(QSqlQuery &query, QVector<RealTable> *tables)
{
    if (!query.exec(
            QStringLiteral("SELECT table_name, index_name, column_name, non_unique, sub_part "
                           "FROM information_schema.statistics WHERE table_schema = DATABASE() "
                           "ORDER BY table_name, index_name, seq_in_index")))
        return {ExitDatabase, errorText(query.lastError())};
    while (query.next()) {
        RealTable *const table = tableIn(tables, query.value(0).toString());
        if (!table)
            continue;
        const QString name = query.value(1).toString();
        if (table->indexes.isEmpty() || table->indexes.last().name != name)
            table->indexes.append({name, {}, query.value(3).toInt() == 0, false});
        RealIndex &index = table->indexes.last();
        index.columns.append(query.value(2).toString());
        index.isPartial |= !query.value(4).isNull();
    }
    return {};
}

} // namespace

bool RealColumn::isText() const
{
    return kind.endsWith(QLatin1String("char")) || kind.endsWith(QLatin1String("text"))
        || kind.endsWith(QLatin1String("blob")) || kind.endsWith(QLatin1String("binary"))
        || kind == QLatin1String("enum") || kind == QLatin1String("json");
}

bool RealColumn::isInteger() const
{
    return bitsOf(kind) > 0 || kind == QLatin1String("decimal") || kind == QLatin1String("double")
        || kind == QLatin1String("bit");
}

qint64 RealColumn::least() const
{
    if (isUnsigned(type) || kind == QLatin1String("bit"))
        return 0;
    const int bits = bitsOf(kind);
    return bits == 0 || bits == 64 ? -most() : -(Q_INT64_C(1) << (bits - 1));
}

qint64 RealColumn::most() const
{
    const qint64 huge = std::numeric_limits<qint64>::max();
    const int bits = kind == QLatin1String("bit") ? digits : bitsOf(kind);
    if (bits >= 64 || kind == QLatin1String("double"))
        return huge;
    if (bits > 0) {
        const bool wholly = isUnsigned(type) || kind == QLatin1String("bit");
        return (Q_INT64_C(1) << (wholly ? bits : bits - 1)) - 1;
    }
    qint64 power = isInteger() ? 1 : 0;
    for (int digit = 0; digit < qMin(digits, 18); ++digit)
        power *= 10;
    return qMax(power - 1, Q_INT64_C(0));
}

QString RealColumn::definition(const QString &newType, bool nullable) const
{
    QString text = newType;
    if (isText())
        text += letters;
    text += nullable ? QLatin1String(" NULL") : QLatin1String(" NOT NULL");
    // Long texts may have none, NULL is what a column has by itself, and only one of a kind with
    // days gets the present moment.
    const bool isLong = newType.contains(QLatin1String("TEXT"), Qt::CaseInsensitive);
    const QString present = QStringLiteral("current_timestamp");
    const bool isOfAnotherKind = newType != type && fallback.startsWith(present);
    if (!fallback.isNull() && fallback != QLatin1String("NULL") && !isLong && !isOfAnotherKind)
        text += QLatin1String(" DEFAULT ") + fallback;
    const int update = extra.indexOf(QLatin1String("on update "));
    if (update >= 0 && newType == type)
        text += QLatin1Char(' ') + extra.mid(update);
    if (extra.contains(QLatin1String("auto_increment")))
        text += QLatin1String(" AUTO_INCREMENT");
    if (!comment.isEmpty())
        text += QLatin1String(" COMMENT ") + quotedText(comment);
    return text;
}

const RealColumn *RealTable::find(const QString &column) const
{
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const RealColumn &one) {
        return one.name.compare(column, Qt::CaseInsensitive) == 0;
    });
    return found == columns.end() ? nullptr : &*found;
}

Failure readSchemaFacts(const QSqlDatabase &database, QVector<RealTable> *tables)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    Failure failure = readTables(query, tables);
    if (!failure)
        failure = readColumns(query, tables);
    if (!failure)
        failure = readIndexes(query, tables);
    return failure;
}

Presence presenceBy(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    if (query.exec(statement))
        return Presence::There;
    // No such table, column, routine.
    const QStringList missing {QStringLiteral("1146"), QStringLiteral("1054"),
                               QStringLiteral("1305")};
    return missing.contains(query.lastError().nativeErrorCode()) ? Presence::Missing
                                                                 : Presence::Hidden;
}
