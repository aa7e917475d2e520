// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When what ran, how it ended, and what waits.
#pragma once

#include "host/gate/gaterecord.h"
#include "host/gate/placestays.h"
#include "host/status/losses.h"
#include "host/status/statussources.h"

#include <QMap>

#include <optional>

/// The file that the plugin reads.
struct PlaceStatus
{
    bool isThere = false;
    QDateTime since; ///< the file's last writing
    qint64 size = 0;
    QString record; ///< of the gate, that has let it through; empty: the gate knows nothing of it
    QDateTime folderChanged; ///< when something last came to the folder, or went
    QVector<PlaceStay> stays; ///< what the gates have seen
};

/// The last pass that is known of.
struct PassStatus
{
    enum Source {
        Unknown,
        FromChanges, ///< a file of changes tells of the pass
        FromPlace, ///< an export of the gate is no longer in its place; figures are the rehearsal's
    };

    Source source = Unknown;
    QDateTime notBefore;
    QDateTime when; ///< not later than that; not valid: nobody knows
    bool forced = false;
    QString file; ///< of the changes, or name of the gate's record
    ExportIdentity exported;
    std::optional<KindCounts> summary;
    QMap<QString, int> errors; ///< by the database's code, "other" for those without one
    QMap<QString, int> rows; ///< that differ, by table
    int statements = -1; ///< that it has run, or was rehearsed to; -1: nobody has counted
};

/// Something that the last pass has left undone.
struct WaitingPerson
{
    Person person;
    NotDone::What what = NotDone::Branch;
    QString text; ///< the plugin's or the server's words
};

struct FolderStatus
{
    QString name; ///< of the setting: "archive"
    QString path;
    int files = 0;
    qint64 bytes = 0;
};

/// How the gate's last run ended, and what waits for the next one.
struct GateState
{
    bool isAtWork = false; ///< a gate is looking at exports now
    QDateTime stopped; ///< when a gate that did not end was last seen; not valid: none
    QDateTime failed; ///< when its last run failed; not valid: it did not
    QString failure; ///< its words
    int deliveries = 0; ///< that wait
    QDateTime waitsSince; ///< the oldest of them
    bool isWithoutIncoming = false; ///< the folder of deliveries is not there
    bool isNew = false; ///< all records can be seen, and there are none
};

/// What only the database tells.
struct DatabaseStatus
{
    bool forced = false; ///< the force variable is set
    std::optional<qint64> queue; ///< rows that terminals have not fetched; none: not to be read
    QString run; ///< who runs the plugin by `talvenhr run`; empty: nobody
};

/// Something that cannot be known, and why.
struct UnknownMatter
{
    QString about;
    QString reason;
    bool isTrouble = true; ///< else nobody has named the thing
};

/// A plain value.
struct Status
{
    QDateTime now;
    StatusSources sources;
    QVector<GateRecord> records; ///< oldest first
    PlaceStatus place;
    PassStatus pass;
    QVector<WaitingPerson> waiting;
    QVector<LostPerson> lost;
    bool lossesAreKnown = false;
    int notJudged
        = 0; ///< exports whose losses are not looked for; see RehearsedExport::isOverlapped
    std::optional<DatabaseStatus> database;
    QString databaseTrouble; ///< why there is none, in the server's words
    QVector<FolderStatus> folders;
    int incomingFiles = 0;
    GateState gate;
    bool isLate = false;
    QVector<UnknownMatter> unknown;
};

/// Null where there is none. The last export that came, whatever became of it: a refused one, too,
/// in whose stead an older one went through; but none that a newer one has superseded.
const GateRecord *lastRecord(const Status &status);
/// Somebody has to see to it: it was refused for more than that nothing in it is new.
bool isRefused(const GateRecord &record);
/// The last export that went through.
const GateRecord *lastPassed(const QVector<GateRecord> &records);
/// Somebody has to do something; what waits for attendance or another day comes by itself.
bool waitsForSomebody(const WaitingPerson &waiting);
/// An export lies in place that the plugin is still to read.
bool isUnread(const Status &status);
/// When an export that went into place, and is no longer there, was gone at the latest.
QDateTime goneBy(const Status &status, const QString &record);
/// When the next pass is due at the latest; not valid where nobody can know.
QDateTime nextPassDue(const Status &status);
