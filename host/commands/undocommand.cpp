// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr undo`: how a pass is taken back.
#include "host/commands/undocommand.h"

#include "host/changes/changesjson.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/commands/undosession.h"
#include "host/status/folderstatus.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoCommand)
};

Failure read(const Options &options, UndoOptions *undo)
{
    undo->isApplied = options.isSet(QStringLiteral("apply"));
    undo->copy.withoutTriggers = options.isSet(QStringLiteral("without-triggers"));
    undo->selection.people = options.values(QStringLiteral("person"));
    const QStringList kinds = options.values(QStringLiteral("kind"));
    for (const QString &kind : kinds) {
        if (const Failure failure = addUndoKind(kind, &undo->selection))
            return options.usageFailure(failure.text);
    }
    if (const Failure failure = readDatabaseOptions(options, &undo->database))
        return failure;
    if (undo->isApplied && undo->database.isDefault)
        return options.usageFailure(
            Text::tr("--apply takes a database, such as --host db.example.org"));
    if (const Failure failure = readChangesFile(options.argument(0), &undo->changes))
        return failure;
    undo->settledFile = settledFileOf(options.argument(0));
    return checkSelection(undo->selection, undo->changes);
}

Failure run(const Options &options)
{
    UndoOptions undo;
    if (const Failure failure = read(options, &undo))
        return failure;
    return UndoSession(undo).run();
}

OptionGroup undoOptions()
{
    return {Text::tr("Undo"),
            {{QStringLiteral("person"), QStringLiteral("PERSON"),
              Text::tr("only what the pass did to this one, such as 4711.1; may be repeated")},
             {QStringLiteral("kind"), QStringLiteral("KIND"),
              Text::tr("only what is of this kind, one of the summary's: %1; may be repeated")
                  .arg(undoableKinds().join(QStringLiteral(", ")))},
             {QStringLiteral("apply"), QString(),
              Text::tr("take it back, in one transaction, after a look at a copy")},
             {QStringLiteral("without-triggers"), QString(),
              Text::tr("go on where triggers cannot be seen")}}};
}

} // namespace

Command undoCommand()
{
    Command command;
    command.name = QStringLiteral("undo");
    command.summary = Text::tr("take a pass back, or tell how");
    command.purpose = Text::tr(
        "Prints SQL that takes a pass back, from the changes that 'run' or 'rehearse' have written. "
        "Each statement finds its row only as the pass has left it, so that what somebody has "
        "changed since is left alone. With a database it tries them on a copy first and marks what "
        "would be left alone; with --apply it runs them on the database itself. Terminals are told, "
        "leave is given back by a correction, and people who were added are removed, or made "
        "inactive where anything refers to them. Reopened days stay.");
    command.arguments = {{QStringLiteral("CHANGES"),
                          Text::tr("the file of changes, of 'run --changes' or 'rehearse "
                                   "--changes'")}};
    OptionGroup database = databaseOptions();
    database.title = Text::tr("Database (none of these: the statements are printed, and nothing is "
                              "looked at)");
    command.groups = {undoOptions(), database};
    command.exitCodes = {ExitClean,    ExitErrors,  ExitUsage,
                         ExitDatabase, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Exit code 1"), {Text::tr("Something was left alone, or would be.")}},
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr undo 20261122T124002Z-1.changes.json > undo.sql"),
          QStringLiteral("talvenhr undo CHANGES --host db.example.org --user talvenhr_undo"),
          QStringLiteral("talvenhr undo CHANGES --private-db demo/db --person 4711.1 --apply")}}};
    command.run = run;
    return command;
}
