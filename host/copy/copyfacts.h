// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is wanted of the copy of a database, and what it holds in the end.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

/// What somebody wants of a copy, or can do without.
struct CopyWishes
{
    /// Also closed days of attendance and the moves of other funds than that of leave.
    bool whole = false;
    /// Go on where triggers cannot be seen. Those that can be seen come along.
    bool withoutTriggers = false;
    /// Go on where the bodies of routines cannot be read. Those that can be read come along.
    bool withoutRoutines = false;
    /// Of the tables that are about people, only the rows of those whom `uids` names.
    bool onlyPeople = false;
    QVector<qlonglong> uids; ///< may be empty: then of nobody
};

/// What a copy holds, and what it does not. Sentences end with a full stop.
struct CopyFacts
{
    QStringList tables; ///< in the order of their names, with views
    QStringList leftOut; ///< sentences: what is missing, and what that leads to
    QStringList warnings; ///< sentences: what holds only within limits
    QByteArray digest; ///< SHA-256 of all that was copied, in hexadecimal digits
    qint64 rows = 0;
};
