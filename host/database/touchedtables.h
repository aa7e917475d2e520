// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables of the attendance database that a pass may write to, and what their columns mean.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// What we know of a table; it may have more columns than are named here. Where a column is one of
/// a kind, its name is empty if the table has none of the kind.
struct TouchedTable
{
    QString name;
    QStringList key; ///< columns that together tell its rows apart
    QString person; ///< column with the uid of the person whom a row is about
    QString personMark; ///< column that says "uid" where the column above holds one
    QString generated; ///< column with an id that the server makes up
    QStringList moments; ///< columns in seconds since the epoch; a midnight stands for its day
    QStringList stamps; ///< the moments among them at which a row was written
    QString list; ///< column that can hold numbers joined by commas
    QString touchable; ///< SQL condition of the rows that a pass may write; empty for all

    /// Its rows are the people themselves.
    bool isPeople() const;
};

/// All of them, people first.
const QVector<TouchedTable> &touchedTables();

/// A column that refers to something with a name, and where the name is.
struct NamedId
{
    QString column; ///< in touched tables, and in the table that holds the name
    QString table;
    QString name; ///< SQL expression
};

/// Those whose names help a reader: branches, groups, terminals, administrators, funds.
const QVector<NamedId> &namedIds();
