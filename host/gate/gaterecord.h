// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What became of one export at the gate.
#pragma once

#include "host/changes/changes.h"
#include "host/exportcheck/exportcheck.h"
#include "host/rehearsal/limits.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// Why an export was refused, for people and, by the code, for machines.
struct RefusalReason
{
    QString code; ///< that of a finding, or "limit:KIND", "seen", "older", "hold", "uncompared",
                  ///< "foreign"
    QString text; ///< what is wrong
    QString remedy; ///< what to do; may be empty
};

/// How many findings of a kind a check had.
struct FindingCount
{
    QString code;
    Finding::Severity severity = Finding::Note;
    int count = 0;
};

/// What a rehearsal came to, without people.
struct RehearsedFigures
{
    int after = 0; ///< exports that were replayed before; 0: a freshly started server
    int people = 0; ///< who change
    QString plan;
    KindCounts summary;
};

/// Whoever has let an export through that would have been refused.
struct Release
{
    QString by; ///< login of the machine, behind the person's own if they used sudo
    QString reason;
    QStringList allowed; ///< limits for this once, KIND=N, or codes of findings; empty: everything
                         ///< was let through
};

/// A plain value, without names and cells of people: it outlives the export itself.
struct GateRecord
{
    enum Outcome {
        Passing, ///< about to be put in place: a gate that was killed is seen by it
        Passed,
        Refused,
        Superseded, ///< a newer one went through before it
    };

    QString name; ///< that of all files about it, without the endings: time (UTC) and digest
    Outcome outcome = Refused;
    QDateTime when; ///< of the decision
    QDateTime fileTime; ///< of the file's last writing
    int rights = 0; ///< of the file, as chmod takes them; 0: not known
    ExportIdentity exported; ///< the file as it came
    QString placedDigest; ///< of what stood in place; differs where cells were mended
    QString comparedWith; ///< name of the record of the last good export; empty: there was none
    QDateTime comparedWhen; ///< when that one was decided on
    QString replaced; ///< name of the record whose export was in place unread; empty: none was
    FateCounts fates;
    int lost = 0; ///< people of the last good export who are not in this one
    int gained = 0;
    QVector<FindingCount> findings;
    std::optional<RehearsedFigures> rehearsal;
    QVector<LimitOutcome> limits;
    QVector<RefusalReason> reasons; ///< also those that somebody has let through
    int mendedCells = 0;
    std::optional<Release> release;
    int seconds = 0; ///< that the decision took
    bool isNothingNew = false; ///< refused for the bytes of what went through last
    bool isTold = false; ///< its hook was called, if there is one
};

/// "passing", "passed", "refused", "superseded".
QString outcomeName(GateRecord::Outcome outcome);

/// It went through, and nobody had to let it through in spite of what it holds: others can be
/// compared with it.
bool isGood(const GateRecord &record);

/// The ending of a record's file: "NAME.gate.json".
QString recordEnding();

/// "talvenhr.gate/1", in one line; docs/gate.schema.json describes it. Hooks get it, too.
QByteArray gateRecordJson(const GateRecord &record);
Failure writeGateRecord(const GateRecord &record, const QString &path);
Failure readGateRecord(const QString &path, GateRecord *record);

/// Those of a folder, oldest first. What cannot be read as a record is named in `unreadable`.
QVector<GateRecord> readGateRecords(const QString &folder, QStringList *unreadable = nullptr);
