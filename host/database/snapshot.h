// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables that a pass may write to, at one moment.
#pragma once

#include "host/base/failure.h"
#include "host/database/touchedtables.h"

#include <QHash>
#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

/// Values of the kinds of plainValue(), one to each column of the table. Empty: no such row.
using TableRow = QVector<QVariant>;

/// A table with the columns that it really has.
struct TableContent
{
    const TouchedTable *table = nullptr; ///< of touchedTables()
    QStringList columns;
    QVector<TableRow> rows; ///< in the order of the table's key

    int indexOf(const QString &column) const { return columns.indexOf(column); }
};

/// Texts by the ids that stand for them, of each column of namedIds().
using IdNames = QHash<QString, QHash<qlonglong, QString>>;

/// What the database held; a plain value.
struct Snapshot
{
    QVector<TableContent> tables; ///< one to each of touchedTables(), in their order
    IdNames names;

    /// Null for a table that no pass touches.
    const TableContent *find(const QString &table) const;
};

enum class SnapshotRows {
    Touchable, ///< without what a pass leaves alone: closed days, moves that are no corrections
    All,
};

/// Reads all tables as they are at one moment, in a transaction that can only read, and ends it.
/// The handle must be open, on the caller's thread, and not in a transaction. What is held in
/// memory is the result. Fails on the first table that cannot be read, with the server's words; the
/// result is then of no use.
///
/// One moment holds for tables of a transactional engine.
Failure readSnapshot(const QSqlDatabase &database, SnapshotRows wanted, Snapshot *snapshot);

/// Brings rows into the order of their key, in which a Snapshot has them.
void sortByKey(TableContent *content);

/// The order of two rows by the cells at these places: less than 0, 0 or more than 0.
int compareRows(const TableRow &one, const TableRow &other, const QVector<int> &places);

/// Where these columns stand; columns that are not there are passed over.
QVector<int> placesOf(const QStringList &columns, const TableContent &content);
