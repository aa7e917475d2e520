// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom a statement or a message is about.
#pragma once

#include <QStringList>
#include <QVector>

/// How the value at a place of a form names people.
enum class Naming {
    Nobody,
    Pid,
    PamId, ///< both numbers joined by a dot, perhaps with more about the person behind a blank
    LastPid, ///< the last one of a list of pids: who joins the list stands last
    Uid,
    Uids, ///< a list
    PairedUids, ///< pairs, a uid at the second place of each
    PlannedUid ///< the U of "G: 11, U: 1, S: 202403"
};

/// The place of a form that names people.
struct NamingPlace
{
    Naming naming = Naming::Nobody;
    int place = 0; ///< from 0 on
};

/// People by one of the two keys that the database has for them.
struct NamedPeople
{
    enum Key { Nobody, Pid, Uid };

    Key key = Nobody;
    /// In the order of the text. A pid of 0 is one that does not fit 32 bits, a uid of 0 a person
    /// without a row.
    QVector<uint> ids;
};

/// The people whom the values name; nobody where the place is not there.
NamedPeople peopleIn(const NamingPlace &named, const QStringList &values);

inline bool operator==(const NamedPeople &one, const NamedPeople &other)
{
    return one.key == other.key && one.ids == other.ids;
}
