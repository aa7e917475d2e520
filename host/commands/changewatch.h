// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the passes of a run change: on standard output, and in files.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/changes/passnotes.h"
#include "host/database/connection.h"

#include <QMutex>
#include <QVector>

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
/// Owned by the run and used on its thread, but for look(). Its connections are open only within an
/// operation.
class ChangeWatch
{
public:
    explicit ChangeWatch(const ChangeWishes &changeWishes);

    /// Makes the folder, and takes the first snapshot, before any pass. The user needs the right to
    /// read all that a pass touches, which is more than the plugin needs.
    Failure begin(const ConnectionParameters &parameters);
    /// Takes a snapshot at the end of this pass, on the plugin's thread: the plugin waits
    /// meanwhile, so that nothing of a later pass is in it.
    void look(int pass, PassNotes *notes);
    /// Tells what was changed by the passes that were looked at since the last call; the result
    /// says what has gone wrong, a line each. Where the database could not be read, the changes
    /// come with the next pass, if they cannot be read now. Of the header plugin and settings are
    /// used.
    QStringList tell(PassNotes *notes, const ChangesHeader &known);

    /// The last pass that was told.
    int toldPass() const { return lastPass; }
    /// Standard output cannot be written, and gets no more.
    bool outputIsLost() const { return outputLost; }
    /// The changes of a pass were not written, and will not be.
    bool fileIsMissing() const { return fileMissing; }

private:
    /// What there was at the end of a pass.
    struct Look
    {
        int pass = 0;
        bool done = false; ///< the database could be read
        QDateTime moment;
        Snapshot snapshot;
        PassTold told;
    };

    Failure read(Connection *connection, Snapshot *snapshot) const;
    QStringList tellOf(const Look &now, const ChangesHeader &known);
    Failure show(int pass, const QVector<Change> &changes, const IdNames &names);
    Failure write(const QVector<Change> &changes, const Look &now, const ChangesHeader &header);

    const ChangeWishes wishes;
    ConnectionParameters parameters;
    QString serverVersion;
    QMutex mutex; ///< of the looks
    QVector<Look> looks; ///< not told yet
    int missedPass = 0; ///< could not be looked at; 0: none
    Snapshot last;
    QDateTime lastMoment;
    int lastPass = 0;
    bool outputLost = false;
    bool fileMissing = false;
};
