// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A snapshot of a test's own.
#pragma once

#include "host/database/snapshot.h"

#include <QStringList>

#include <initializer_list>

/// Empty tables with their keys for columns, but for those that are given.
class SnapshotBuilder
{
public:
    SnapshotBuilder();

    /// A table as "NAME: COLUMN|COLUMN", and its rows with cells between "|": digits are a number,
    /// NULL is none, the rest are texts. The rows come in any order.
    SnapshotBuilder &with(const char *table, std::initializer_list<const char *> rows);
    SnapshotBuilder &with(const QString &table, const QStringList &rows);
    /// The name of what an id in this column stands for.
    SnapshotBuilder &named(const char *column, qlonglong id, const char *name);

    operator Snapshot() const { return snapshot; }

private:
    Snapshot snapshot;
};
