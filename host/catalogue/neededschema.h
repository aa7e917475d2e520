// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables, columns, keys and routines that the statements of a pass rely on.
#pragma once

#include "host/catalogue/statements.h"

#include <QStringList>
#include <QVector>

#include <vector>

/// What a column has to hold.
enum class Holds {
    Number, ///< 0 to 4294967295
    Moment, ///< seconds since the epoch, at least to 4294967295
    Amount, ///< with a sign, 32 bits
    Month, ///< 0 to 999912
    Small, ///< 0 to 4
    Mark, ///< -1 to 1
    Letters ///< text
};

/// A column that a statement of a pass names.
struct NeededColumn
{
    QString name;
    Holds holds = Holds::Number;
    int letters
        = 0; ///< what the plugin writes can be so long; 0: as long as the text of the export
    bool becomesNull = false; ///< the plugin writes NULL
    QString fallback; ///< value of rows that know none; empty for NULL
    bool isRead = false;
    bool isInserted = false;
    bool isUpdated = false; ///< also by an upsert, which has to be able to update what it inserts
};

struct NeededTable
{
    QString name;
    QVector<NeededColumn> columns;
    QStringList uniqueKey; ///< the columns by which an upsert finds its row; empty without upserts
    /// Its rows hold more than is the plugin's business.
    bool isReadByColumn = false;

    /// Null for a column that no pass names.
    const NeededColumn *find(const QString &column) const;
    bool isWritten() const;
};

/// Ordered as the schema is.
const QVector<NeededTable> &neededTables();
/// Null for a table that no pass names.
const NeededTable *neededTable(const QString &name);

struct NeededRoutine
{
    QString name;
    bool isProcedure = false;
};

const QVector<NeededRoutine> &neededRoutines();

/// What a pass needs on one table or routine, over all its statements.
struct NeededRight
{
    QString right; ///< SELECT, INSERT, UPDATE or EXECUTE
    QString object; ///< a table or routine
    QStringList columns; ///< on which it is needed; empty for a routine
    bool byColumn = false; ///< to be granted on these columns and not on the table
};

/// Each right once, in the order of neededTables() and then of neededRoutines().
const QVector<NeededRight> &neededRights();

/// By what a statement finds its rows in a table, and values of what kind fill its form.
struct Lookup
{
    PassStatement statement;
    const char *table;
    const char *columns; ///< an index on them serves it
    const char
        *values; ///< pid, uid, fid, bid, calendar, month, moment, number, list: one to a place
};

/// All but those that read a table as a whole.
const std::vector<Lookup> &lookups();

/// Where a statement calls a table otherwise.
QString tableOfAlias(const QString &alias);
