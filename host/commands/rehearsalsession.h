// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One rehearsal from the copy to what is told of it.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/cli/databaseoptions.h"
#include "host/copy/copyfacts.h"
#include "host/database/knownpeople.h"
#include "host/rehearsal/limits.h"
#include "host/rehearsal/rehearsal.h"
#include "host/rehearsal/rehearsalinputs.h"
#include "host/report/console.h"

/// The values of the options.
struct RehearsalOptions
{
    RehearsalWishes wishes;
    DatabaseChoice database;
    CopyWishes copy;
    QVector<Limit> limits;
    QString keep; ///< folder for the copy; empty: it goes
    QString person; ///< whose changes are shown whole; empty: a summary of all
    QString changesFile; ///< empty: not written
    QString html; ///< empty: not written
    bool isQuiet = false;
    bool tellsChanges = false; ///< by the exit code
    ReportForm form = ReportForm::Text;
};

/// Made and used on the stack of a command.
class RehearsalSession
{
public:
    explicit RehearsalSession(const RehearsalOptions &rehearsalOptions);

    /// The failure's exit code is that of the command also where nothing has failed.
    Failure run();

    /// Rehearses, and tells nothing. What there is then is told by result().
    Failure rehearse();
    const Changes &result() const { return changes; }
    /// Writes the files that the options name.
    Failure writeFiles() const;

private:
    Failure checkFirst();
    Failure checkExport() const;
    Failure copyAndRun();
    Failure copyAndRunIn(const QString &folder);
    Failure runPass(const ConnectionParameters &copy, const ConnectionParameters &administrator,
                    const std::function<bool()> &interrupted);
    Failure tell() const;
    QString briefText() const;
    QString fullText() const;

    const RehearsalOptions options;
    CopyFacts copied;
    QString looked; ///< digest of the export that was looked at
    ExportLook exported;
    QVector<KnownPerson> known; ///< before the pass
    Changes changes;
};
