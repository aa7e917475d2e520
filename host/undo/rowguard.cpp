// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A row as a pass has left it, as a condition; and what of it can be put back.
#include "host/undo/rowguard.h"

#include "host/catalogue/neededschema.h"
#include "host/copy/sqlnames.h"
#include "host/database/changetext.h"
#include "host/database/value.h"
#include "host/undo/sqlvalue.h"

#include <algorithm>

namespace {

bool isColumn(const QString &column, const QString &name)
{
    return column.compare(name, Qt::CaseInsensitive) == 0;
}

/// In the variable, for a rehearsal has made it up or the row must stand as a whole.
bool isUidOfNewPerson(const Change &change, const RowOrigin &origin, const QString &column)
{
    return origin.isNewPerson && !change.table->isPeople() && column == change.table->person;
}

/// The uid in the changes is that of the rehearsal's copy.
bool isFoundByNumber(const Change &change, const RowOrigin &origin)
{
    return change.table->isPeople() && origin.isRehearsed && origin.isNewPerson;
}

/// Not compared: it says nothing about what somebody has changed, or nobody can know it.
bool isLeftOut(const Change &change, const RowOrigin &origin, const QString &column)
{
    if (isColumn(column, QStringLiteral("edited"))
        || (change.table->isPeople() && isCalculationMark(column)))
        return true;
    if (!origin.isRehearsed)
        return false;
    return change.table->stamps.contains(column)
        || (isFoundByNumber(change, origin) && isColumn(column, QStringLiteral("uid")));
}

QString numberCondition(const Change &change)
{
    return QStringLiteral("`pid` = ")
        + sqlValue(change.after.value(change.columns.indexOf(QStringLiteral("pid"))));
}

QString condition(const Change &change, const RowOrigin &origin, const QString &column)
{
    if (isUidOfNewPerson(change, origin, column))
        return quotedName(column) + QStringLiteral(" = @uid");
    const QVariant value = change.after.value(change.columns.indexOf(column));
    const bool isNumber = value.userType() == QMetaType::LongLong;
    // A plain comparison finds the row by its key.
    return change.table->key.contains(column) && isNumber
        ? quotedName(column) + QStringLiteral(" = ") + sqlValue(value)
        : holdsValue(column, value);
}

} // namespace

bool isCalculationMark(const QString &column)
{
    return isColumn(column, QStringLiteral("lastCalc")) || isColumn(column, QStringLiteral("calc"));
}

QString placeCondition(const Change &change, const RowOrigin &origin, const QString &uid)
{
    if (isFoundByNumber(change, origin))
        return numberCondition(change);
    QStringList conditions;
    for (const QString &column : change.table->key)
        conditions.append(column == change.table->person
                              ? quotedName(column) + QStringLiteral(" = ") + uid
                              : condition(change, origin, column));
    return conditions.join(QStringLiteral(" AND "));
}

QVector<LeftCell> leftCells(const Change &change, const RowOrigin &origin, const IdNames &names)
{
    QVector<LeftCell> cells;
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        if (!change.table->key.contains(column) && !isLeftOut(change, origin, column))
            cells.append({column, cellText(*change.table, column, change.after.at(place), names),
                          condition(change, origin, column)});
    }
    return cells;
}

QString leftCondition(const Change &change, const RowOrigin &origin)
{
    QStringList conditions;
    if (isFoundByNumber(change, origin)) {
        conditions.append(numberCondition(change));
    } else {
        for (const QString &column : change.table->key)
            conditions.append(condition(change, origin, column));
    }
    const QVector<LeftCell> cells = leftCells(change, origin, {});
    for (const LeftCell &cell : cells)
        conditions.append(cell.condition);
    return conditions.join(QStringLiteral(" AND "));
}

QStringList restorableColumns(const Change &change)
{
    QStringList columns;
    const NeededTable *needed = neededTable(change.table->name);
    if (!needed || change.before.isEmpty() || change.after.isEmpty())
        return columns;
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        const bool isWritten = std::any_of(
            needed->columns.cbegin(), needed->columns.cend(),
            [&](const NeededColumn &one) { return one.isUpdated && isColumn(one.name, column); });
        if (!isWritten || change.table->key.contains(column) || isCalculationMark(column)
            || isColumn(column, QStringLiteral("edited"))
            || isColumn(column, QStringLiteral("created")))
            continue;
        if (compareValues(change.before.at(place), change.after.at(place)) != 0)
            columns.append(column);
    }
    return columns;
}

QString oldValues(const Change &change, const QStringList &columns)
{
    QStringList values;
    for (const QString &column : columns)
        values.append(quotedName(column) + QStringLiteral(" = ")
                      + sqlValue(change.before.at(change.columns.indexOf(column))));
    return values.join(QStringLiteral(", "));
}

QString backCondition(const Change &change, const QStringList &columns)
{
    QStringList conditions;
    for (const QString &column : columns)
        conditions.append(holdsValue(column, change.before.at(change.columns.indexOf(column))));
    return conditions.isEmpty() ? QStringLiteral("FALSE")
                                : conditions.join(QStringLiteral(" AND "));
}
