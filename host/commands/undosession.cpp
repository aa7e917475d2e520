// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One undo: a look at a copy, and if wanted the real thing.
#include "host/commands/undosession.h"

#include "host/base/scratchfolder.h"
#include "host/base/signalwatch.h"
#include "host/commands/databaselook.h"
#include "host/copy/databasecopy.h"
#include "host/database/connection.h"
#include "host/database/errortext.h"
#include "host/database/runlock.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"
#include "host/report/textreport.h"
#include "host/undo/undofacts.h"
#include "host/undo/undorights.h"
#include "host/undo/undotext.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoSession)
};

/// In UTF-8, as its first statement says, whatever the locale is: letters that it does not have
/// would be put back as question marks.
void printScript(const QString &script)
{
    printBytes(script.toUtf8());
    flushOutput();
}

} // namespace

UndoSession::UndoSession(const UndoOptions &undoOptions) :
    options(undoOptions)
{ }

Failure UndoSession::run()
{
    // No database was named: there is nothing to look at.
    if (options.database.isDefault)
        return printOnly();
    DatabaseLook database;
    if (const Failure failure = database.open(options.database)) {
        const QSqlError error = database.handle().lastError();
        return isRightDenied(error) ? missingUndoRight(options.database.connection.user, error)
                                    : failure;
    }
    RunLock lock;
    if (options.isApplied) {
        if (const Failure failure = lock.take(database.parameters()))
            return failure;
    }
    const SignalWatch signalWatch;
    isInterrupted = [&signalWatch] { return signalWatch.hasCaught(); };
    LogWriter writer(LogFormat::Text);
    show = [&writer](const QString &what) {
        if (ProgressBar::isPossible())
            writer.activity(what);
    };
    Failure failure = look(database.parameters());
    writer.wipeProgress();
    if (!failure && options.isApplied)
        failure = tellAndApply(database.parameters());
    else if (!failure)
        printScript(undoScript(options.changes, plan, outcomes));
    if (failure)
        return failure;
    return {leftAlone(outcomes) > 0 ? ExitErrors : ExitClean, QString()};
}

Failure UndoSession::tellAndApply(const ConnectionParameters &parameters)
{
    const int width = outputWidth();
    if (plan.steps.isEmpty()) {
        printText(wrapped(Text::tr("There is nothing to take back of %1.")
                              .arg(passText(options.changes.header)),
                          width, 0)
                  + QLatin1Char('\n') + afterwardsText(plan, outcomes, width));
        return {};
    }
    if (isAllBack(outcomes)) {
        printText(wrapped(alreadyBackText(plan, options.changes.header), width, 0)
                  + QLatin1Char('\n'));
        return {};
    }
    printText(wrapped(Text::tr("Taking back %1:").arg(passText(options.changes.header)), width, 0)
              + QLatin1Char('\n') + outcomeText(plan, outcomes, width));
    const UndoOutcomes tried = outcomes;
    if (const Failure failure = apply(parameters))
        return failure;
    if (outcomes != tried)
        printText(Text::tr("Otherwise than on the copy, this has become of it:") + QLatin1Char('\n')
                  + outcomeText(plan, outcomes, width));
    printText(wrapped(Text::tr("Done. Taken back: %1, left alone: %2.")
                          .arg(outcomes.size() - leftAlone(outcomes) - wereBack(outcomes))
                          .arg(leftAlone(outcomes)),
                      width, 0)
              + QStringLiteral("\n\n") + afterwardsText(plan, outcomes, width));
    return {};
}

Failure UndoSession::printOnly()
{
    if (const Failure failure = makeUndoPlan(options.changes, options.selection, {}, &plan))
        return failure;
    plan.settledFile = options.settledFile;
    printScript(undoScript(options.changes, plan, {}));
    return {};
}

Failure UndoSession::look(const ConnectionParameters &source)
{
    removeLeftScratchFolders();
    const ScratchFolder folder;
    if (!folder.failure().isEmpty())
        return {ExitUsage, folder.failure()};
    return lookIn(folder.filePath(QStringLiteral("copy")), source);
}

/// The plan of the copy has the same steps: only what refers to a person can be less.
Failure UndoSession::lookIn(const QString &folder, const ConnectionParameters &source)
{
    DatabaseCopy copy(folder);
    copy.setInterruption(isInterrupted);
    QObject::connect(&copy, &DatabaseCopy::progress, show);
    CopyFacts copied;
    if (const Failure failure = copy.make(source, options.copy, &copied))
        return failure;
    UndoFacts facts;
    Connection looking(QStringLiteral("undo-facts"));
    Failure failure = looking.open(source);
    if (!failure)
        failure = readUndoFacts(looking.handle(), options.changes, copied.tables, &facts);
    looking.close();
    UndoPlan copyPlan;
    if (!failure)
        failure = makeUndoPlan(options.changes, options.selection, facts, &plan);
    if (!failure)
        failure = makeUndoPlan(options.changes, options.selection,
                               factsOfCopy(facts, copied.tables), &copyPlan);
    if (failure)
        return failure;
    plan.settledFile = options.settledFile;
    plan.stays = copied.leftOut + copied.warnings + plan.stays;
    if (!facts.areWhole && !plan.steps.isEmpty())
        plan.stays.append(Text::tr("The login may not read all tables: nobody knows what refers to "
                                   "people who were added, so they are made inactive."));
    show(Text::tr("taking the pass back on the copy"));
    Connection connection(QStringLiteral("undo-copy"));
    failure = connection.open(copy.parameters());
    if (!failure)
        failure = runUndo(connection.handle(), copyPlan, isInterrupted, &outcomes);
    if (!failure)
        tellTriggers(connection.handle());
    connection.close();
    return failure;
}

void UndoSession::tellTriggers(const QSqlDatabase &copy)
{
    QSqlQuery query(copy);
    query.exec(QStringLiteral(
        "SELECT GROUP_CONCAT(trigger_name ORDER BY trigger_name SEPARATOR ', ') FROM "
        "information_schema.triggers WHERE trigger_schema = DATABASE()"));
    if (query.next() && !query.value(0).toString().isEmpty())
        plan.stays.append(Text::tr("Triggers run on these statements, too, and what they wrote of "
                                   "the pass into other tables stays: %1.")
                              .arg(query.value(0).toString()));
}

Failure UndoSession::apply(const ConnectionParameters &parameters)
{
    Connection connection(QStringLiteral("undo"));
    if (const Failure failure = connection.open(parameters))
        return failure;
    const Failure failure = runUndo(connection.handle(), plan, isInterrupted, &outcomes);
    connection.close();
    return failure;
}
