// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plan of undo, run on a database.
#include "host/undo/undorun.h"

#include "host/database/errortext.h"
#include "host/undo/undorights.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoRun)
};

/// Runs the steps of a plan, within a transaction that somebody else begins and ends.
class StepRunner
{
public:
    StepRunner(const QSqlDatabase &openDatabase, const UndoPlan &undoPlan) :
        database(openDatabase),
        plan(undoPlan)
    { }

    /// The failure names what was refused.
    Failure run(const QString &statement, int *changed = nullptr) const
    {
        QSqlQuery query(database);
        if (!query.exec(statement))
            return isRightDenied(query.lastError())
                ? missingUndoRight(database.userName(), query.lastError())
                : refused(statement, query.lastError());
        if (changed)
            *changed = query.numRowsAffected();
        return {};
    }

    Failure runSteps(const std::function<bool()> &isInterrupted, UndoOutcomes *outcomes) const
    {
        for (const UndoStep &step : plan.steps) {
            if (isInterrupted && isInterrupted())
                return {ExitInterrupted, Text::tr("interrupted; nothing was taken back")};
            UndoOutcome outcome;
            if (const Failure failure = runStep(step, &outcome))
                return failure;
            outcomes->append(outcome);
        }
        return {};
    }

private:
    static Failure refused(const QString &statement, const QSqlError &error)
    {
        return {ExitDatabase,
                Text::tr("nothing was taken back: the database refused '%1': %2")
                    .arg(statement, errorText(error))};
    }

    Failure runStep(const UndoStep &step, UndoOutcome *outcome) const
    {
        for (const UndoStatement &statement : step.statements) {
            int changed = 0;
            if (const Failure failure = run(statement.sql, &changed))
                return failure;
            if (changed > 0 && statement.effect != UndoStatement::Beside)
                outcome->effect = statement.effect;
        }
        return outcome->effect == UndoStatement::Beside
            ? askWhy(database, step, plan.names, outcome)
            : Failure();
    }

    const QSqlDatabase database;
    const UndoPlan &plan;
};

} // namespace

Failure runUndo(const QSqlDatabase &database, const UndoPlan &plan,
                const std::function<bool()> &isInterrupted, UndoOutcomes *outcomes)
{
    outcomes->clear();
    const StepRunner runner(database, plan);
    for (const char *statement : {"SET NAMES utf8mb4", "START TRANSACTION"}) {
        if (const Failure failure = runner.run(QLatin1String(statement)))
            return failure;
    }
    if (const Failure failure = runner.runSteps(isInterrupted, outcomes)) {
        QSqlQuery(database).exec(QStringLiteral("ROLLBACK"));
        return failure;
    }
    QSqlQuery query(database);
    if (query.exec(QStringLiteral("COMMIT")))
        return {};
    return {ExitDatabase,
            Text::tr("the database has not said whether the pass was taken back: %1; run the same "
                     "command again: it tells, and leaves what is back as it is")
                .arg(errorText(query.lastError()))};
}
