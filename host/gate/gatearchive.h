// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What came to the gate, and what became of it.
#pragma once

#include "host/base/failure.h"
#include "host/gate/gaterecord.h"

#include <QString>
#include <QStringList>

/// The folders of exports that went through and of those that were refused. Each export is a group
/// of files with one name and several endings. The record is written last: files without one are
/// what a gate that was killed has left, and their export still lies where it was delivered.
///
/// Only one gate at a time uses it.
class GateArchive
{
public:
    GateArchive(const QString &archiveFolder, const QString &refusedFolder);

    /// Makes the folders, for their owner only, removes what has no record, and reads the records.
    Failure open();

    /// Of both folders, oldest first.
    const QVector<GateRecord> &records() const { return all; }
    /// Records that cannot be read: an export may be forgotten for it.
    const QStringList &unreadable() const { return unreadableRecords; }
    /// The last one that went through; null if none did.
    const GateRecord *lastPassed() const;
    /// The last one that went through without a person who let it through as it was: what others
    /// are compared with; null if there is none.
    const GateRecord *lastGood() const;
    /// Null if there is none.
    const GateRecord *find(const QString &name) const;
    /// The last one that went through with these bytes, as they came or as they stood in place;
    /// null for an empty digest.
    const GateRecord *passedWith(const QString &digest) const;
    /// These bytes are what the gate has put in place last.
    bool wasPlacedLast(const QString &digest) const;
    /// The one that was made of this delivery.
    const GateRecord *madeOf(const QString &file, const QDateTime &time,
                             const QString &digest) const;

    /// The path of the record's file with this ending, such as ".txt".
    QString path(const GateRecord &record, const QString &ending) const;
    /// Writes the record, in place of an older one of its name.
    Failure keep(const GateRecord &record);
    /// Removes the record and all its files.
    void forget(const GateRecord &record);

    /// Removes exports and reports, which hold names of people, after so many days. The records
    /// stay, and so do the last export that went through and the last good one.
    void removeOlderThan(int days, const QDateTime &now);

private:
    QString folder(GateRecord::Outcome outcome) const;
    void removeFiles(const QString &folder, const QString &name) const;
    void removeUnrecorded(const QString &folder) const;

    const QString archive;
    const QString refused;
    QVector<GateRecord> all;
    QStringList unreadableRecords;
};
