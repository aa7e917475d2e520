// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rehearsal of one person, from the word that names them to their story.
#pragma once

#include "host/base/failure.h"
#include "host/base/scratchfolder.h"
#include "host/cli/databaseoptions.h"
#include "host/commands/databaselook.h"
#include "host/explain/story.h"
#include "host/rehearsal/rehearsal.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"

#include <functional>

/// The values of the options.
struct ExplainOptions
{
    QString person; ///< as it was written
    RehearsalWishes wishes;
    DatabaseChoice database;
    CopyWishes copy;
    PersonalTexts texts = PersonalTexts::Shown;
    bool withStatements = false;
    bool isQuiet = false;
    ReportForm form = ReportForm::Text;
};

/// Made and used on the stack of a command.
class ExplainSession
{
public:
    explicit ExplainSession(const ExplainOptions &explainOptions);

    /// The failure's exit code is that of the command also where nothing has failed.
    Failure run();

private:
    Failure findPerson();
    Failure readExport(const QVector<KnownPerson> &people);
    Failure checkLines();
    Failure choose(const QVector<KnownPerson> &people);
    Failure rehearse();
    Failure rehearseOn(const ConnectionParameters &copy, const ConnectionParameters &administrator);
    void show(const QString &what);
    void tell();

    const ExplainOptions options;
    ScratchFolder folder; ///< for the copy, and their lines of the export
    LogWriter writer {LogFormat::Text};
    DatabaseLook source;
    QVector<PersonLine> lines; ///< of everybody whom the word may mean
    ExplainFacts facts;
    std::function<bool()> isInterrupted;
    ExitCode code = ExitClean;
};
