// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the passes of a run change: on standard output, and in files.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/changes/passnotes.h"
#include "host/database/connection.h"

/// What is to become of the changes.
struct ChangeWishes
{
    bool shown = false; ///< on standard output
    QString folder; ///< in which each pass gets a file; empty: in none

    bool any() const { return shown || !folder.isEmpty(); }
};

/// Keeps a snapshot of what passes touch, and tells what has become of it. What others write
/// meanwhile is told as well.
///
/// Owned by the run and used on its thread, with a connection of its own that is open only within
/// an operation.
class ChangeWatch
{
public:
    explicit ChangeWatch(const ChangeWishes &wishes);

    /// Makes the folder, and takes the first snapshot, before any pass. The user needs the right to
    /// read all that a pass touches, which is more than the plugin needs.
    Failure begin(const ConnectionParameters &parameters);
    /// Tells the changes since the snapshot before, which come from the passes up to this number,
    /// and what has gone wrong, a line each. Nothing if they have been told. After a failure of the
    /// database the changes come with the next pass. What a pass has written that began before the
    /// snapshot could is told with the one before. Of the header plugin and settings are used.
    QStringList tell(int pass, PassNotes *notes, const ChangesHeader &known);

    /// Something is left to be done after further passes.
    bool isWanted() const { return wishes.any(); }
    /// The last pass that was told.
    int toldPass() const { return lastPass; }
    /// Standard output cannot be written, and gets no more.
    bool outputIsLost() const { return outputLost; }
    /// The changes of a pass were not written, and will not be.
    bool fileIsMissing() const { return fileMissing; }

private:
    Failure read(Snapshot *snapshot);
    Failure show(int pass, const QVector<Change> &changes, const IdNames &names);
    Failure write(const QVector<Change> &changes, const Snapshot &now, const PassTold &told,
                  const ChangesHeader &header);

    ChangeWishes wishes;
    Connection connection;
    QString serverVersion;
    Snapshot last;
    QDateTime lastMoment;
    int lastPass = 0;
    bool outputLost = false;
    bool fileMissing = false;
};
