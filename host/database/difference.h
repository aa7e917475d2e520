// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What lies between two snapshots, row by row.
#pragma once

#include "host/database/snapshot.h"

#include <tuple>

/// Whom a row is about.
struct Person
{
    qlonglong uid = 0; ///< 0: nobody
    QString pamId; ///< empty for one without a row in `people`, or without the number there
    QString name; ///< first name and surname
};

/// One row of one table, before and after.
struct Change
{
    Person person;
    const TouchedTable *table = nullptr; ///< of touchedTables()
    QStringList columns;
    TableRow before; ///< empty: the row was not there
    TableRow after; ///< empty: the row is gone
};

/// What a difference does not look at, for two runs that did the same at another time.
struct SetAside
{
    bool generatedIds = false; ///< rows with such an id are matched by their other cells
    bool stamps = false; ///< when a row was written
};

/// The changes from one snapshot to another, in the order of people (by the numbers of pamId, then
/// those without one by uid, nobody last), of touchedTables(), and of the rows' keys. A person is
/// named as in the second snapshot, or as in the first if gone since. A column that only one of
/// them has is not looked at; a Change has the columns of the second.
QVector<Change> difference(const Snapshot &before, const Snapshot &after,
                           const SetAside &setAside = {});

/// The person's number and name as in the second snapshot, or as in the first if gone since.
Person personOf(qlonglong uid, const Snapshot &before, const Snapshot &after);

/// Where a person stands among others, in the order of difference().
using PersonPlace = std::tuple<bool, bool, qulonglong, qulonglong, qlonglong>;
PersonPlace placeOf(const Person &person);

/// The row of `people` with this uid; null if there is none.
const TableRow *peopleRow(const Snapshot &snapshot, qlonglong uid);
