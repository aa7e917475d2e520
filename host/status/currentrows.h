// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of the database, found by what a rehearsal says of them.
#pragma once

#include "host/changes/changes.h"

#include <QHash>

/// Finds rows by person. A person keeps the number, but has another uid in a copy. Made and used
/// on the stack; the snapshot outlives it.
class CurrentRows
{
public:
    explicit CurrentRows(const Snapshot &snapshot);

    /// 0: the person is not there.
    qlonglong uidOf(const ChangedPerson &person) const;
    /// The row with the key of the change, in its columns; empty if there is none.
    TableRow find(const Change &change, qlonglong uid) const;
    /// A move of the same fund and type on a later day: the pass ran past midnight, or another one
    /// after it.
    bool hasLaterMove(const Change &change, qlonglong uid) const;

private:
    const Snapshot &now;
    QHash<qlonglong, qlonglong> uids; ///< by pid
};
