// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What passes should have written, and have not.
#pragma once

#include "host/changes/changes.h"

/// What brings it back; docs/recovery.md gives the reasons.
enum class Remedy {
    Force, ///< a forced pass with the export
    Restart, ///< a restart of the plugin, with an export
    Rejoin, ///< a forced pass once the row of `brape` is deleted
    Replan, ///< a forced pass once the row of `groups_plan` is deleted
    ByHand,
};

/// "force", "restart", "rejoin", "replan", "by-hand".
QString remedyName(Remedy remedy);

/// Somebody who is not as the rehearsals of exports that have been read said.
struct LostPerson
{
    Person person; ///< as in the rehearsal, with the uid of the database; 0: not there
    QString record; ///< the export that was the last to change what is missing
    ChangedPerson missing; ///< the rows that are not as they should be, with their kinds
    IdNames names; ///< of the ids in these rows, and of others
    QVector<Remedy> remedies; ///< each once
    QStringList uncertain; ///< why the real pass may have done otherwise
};

/// A rehearsed export.
struct RehearsedExport
{
    QString record;
    Changes changes;
    /// What it should have changed is not looked for: a person has said that it is as it should be,
    /// or its pass may still be at work.
    bool isSettled = false;
    bool isOverlapped
        = false; ///< settled, for the next export came before its pass was surely over
};

/// Tables of which a later look tells nothing are left out: what is calculated or fetched since
/// then. The force variable and the lists of PaM as well.
bool lossIsSeen(const TouchedTable &table);

/// What the exports, oldest first, should have changed and is still as it was. What somebody else
/// has changed since is not lost, nor is a row of which a settled export or an older one says
/// something. People in the order of difference().
QVector<LostPerson> lostPeople(const QVector<RehearsedExport> &exports, const Snapshot &now);
