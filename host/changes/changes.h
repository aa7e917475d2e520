// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that a pass changes: the one value behind `rehearse`, `run --changes` and `undo`.
#pragma once

#include "host/base/finding.h"
#include "host/changes/changekinds.h"
#include "host/changes/limitoutcome.h"
#include "host/database/difference.h"

#include <QDate>
#include <QDateTime>
#include <QStringList>
#include <QVector>

/// The export that a pass has read.
struct ExportIdentity
{
    QString name; ///< the file's, without its folder
    QString digest; ///< SHA-256 in hex of its bytes; empty: there was no export
    qint64 size = 0; ///< bytes
    int lines = 0; ///< blank ones and headers as well
};

/// Where changes come from. A text that is not known is empty.
struct ChangesHeader
{
    enum How {
        Rehearsed, ///< on a copy; nothing else wrote there
        Run, ///< on the database itself; what others wrote meanwhile stands in the changes, too
    };

    How how = Run;
    QDateTime since; ///< the moment of the first snapshot
    /// The moment of the second one; of a rehearsal of another day, a moment of that day. An end
    /// of employment is compared with it.
    QDateTime when;
    int firstPass = 1; ///< of the run; several where the database could not be read in between
    int lastPass = 1;
    bool forced = false; ///< one of the passes was
    ExportIdentity exported; ///< that of the last pass
    /// Those that the server had taken before, the oldest first; of a rehearsal only. None: that of
    /// a freshly started server.
    QVector<ExportIdentity> after;
    QString plugin; ///< version
    QString server; ///< version of the database's server
    QString settings; ///< digest of the plugin's settings
    QString state; ///< digest of what the database held before; see stateDigest()
};

/// A column of the person's own row that is not as it was.
struct ChangedField
{
    QString name;
    QVariant before; ///< plainValue()
    QVariant after;
};

/// What the plugin complained about.
struct PassMessage
{
    bool isError = false; ///< else a warning
    QDateTime time;
    QString text;
};

/// Something that the pass would have done, and has not.
struct NotDone
{
    enum What {
        Branch, ///< no branch has the number: the record waits
        Group, ///< no group carries the calendar
        LeaveNotAtRest, ///< attendance is still to be calculated
        LeaveCorrectedToday, ///< there is a correction of today already
        TestMode,
        Refused, ///< by the database
    };

    What what = Refused;
    QString text; ///< the plugin's words; empty for a statement that only the recording tells of
    QString statement; ///< that was refused; empty where it is not known
    QString error; ///< the server's words about it; may be empty
};

/// The word for machines: "branch", "group", "leave-not-at-rest", …
QString notDoneName(NotDone::What what);
/// False for a word that is none.
bool notDoneOfName(const QString &name, NotDone::What *what);

/// One person, and all that concerns them. There are people without rows: for them something was
/// said, or did not happen.
struct ChangedPerson
{
    Person person; ///< its uid is 0 for somebody without a row in `people`
    qlonglong pid = 0; ///< 0 where it is not known
    KindSet kinds; ///< may be empty, as of a row that was written with the same values again
    QVector<ChangedField> fields; ///< of a row that stood before; not when it was written
    QVector<Change> rows; ///< in the order of difference()
    int leave = 0; ///< hundredths by which the fund's moves grow
    int reopenedDays = 0;
    QDate reopenedSince; ///< the first of these days
    QVector<PassMessage> messages; ///< in their order
    QVector<NotDone> notDone;
    QStringList uncertain; ///< why the real pass may do otherwise with this person
    QVector<Change> otherwise; ///< rows that change beside the others if it does, as far as known
};

/// Numbers beside those of the kinds.
struct ChangeTotals
{
    int activePeople = 0; ///< before the pass: `people.status` is not 0
    int withoutBranch = 0; ///< people whose `bid` is NULL now, and was not or was not there
    qint64 leave = 0; ///< hundredths: the sum of what each person's moves grow or shrink by
    qint64 reopenedDays = 0;
    /// People whose employment has not ended and who stand in no line of the export; -1 where
    /// nobody has looked, as after a pass on the database itself.
    int missing = -1;
    int statements = -1; ///< of the plugin in the pass; -1 where nobody has counted
};

/// What a rehearsal knows beside the changes. Sentences end with a full stop.
struct RehearsalFacts
{
    QVector<LimitOutcome> limits;
    QStringList leftOut; ///< sentences: what the copy lacks, and what that leads to
    QStringList warnings; ///< sentences: what holds of the copy only within limits
    QVector<Finding> findings; ///< what is wrong with the export
};

/// SHA-256 in hex. Empty where it is not known.
struct PlanHashes
{
    QString read; ///< over export, settings, plugin and state
    QString change; ///< over the changes; alike for two passes that do the same at another time
    QString hash; ///< the begins of both; see planHash()
};

/// A plain value.
struct Changes
{
    ChangesHeader header;
    KindCounts summary;
    ChangeTotals totals;
    QVector<ChangedPerson> people; ///< in the order of difference(); then those without a row
    QVector<Change> others; ///< rows of nobody: variables, terminals' marks
    QVector<PassMessage> messages; ///< that name nobody
    PlanHashes plan;
    RehearsalFacts rehearsal; ///< empty for a pass on the database itself
    IdNames names; ///< of the ids in the rows
};
