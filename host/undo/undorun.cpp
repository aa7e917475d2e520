// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plan of undo, run on a database.
#include "host/undo/undorun.h"

#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoRun)
};

Failure run(const QSqlDatabase &database, const QString &statement, int *changed)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        return {ExitDatabase,
                Text::tr("nothing was taken back: the database refused '%1': %2")
                    .arg(statement, errorText(query.lastError()))};
    *changed = query.numRowsAffected();
    return {};
}

Failure runStep(const QSqlDatabase &database, const UndoStep &step, UndoStatement::Effect *outcome)
{
    for (const UndoStatement &statement : step.statements) {
        int changed = 0;
        if (const Failure failure = run(database, statement.sql, &changed))
            return failure;
        if (changed > 0 && statement.effect != UndoStatement::Beside)
            *outcome = statement.effect;
    }
    return {};
}

Failure runSteps(const QSqlDatabase &database, const UndoPlan &plan,
                 const std::function<bool()> &isInterrupted, UndoOutcomes *outcomes)
{
    for (const UndoStep &step : plan.steps) {
        if (isInterrupted && isInterrupted())
            return {ExitInterrupted, Text::tr("interrupted; nothing was taken back")};
        UndoStatement::Effect outcome = UndoStatement::Beside;
        if (const Failure failure = runStep(database, step, &outcome))
            return failure;
        outcomes->append(outcome);
    }
    return {};
}

} // namespace

Failure runUndo(const QSqlDatabase &database, const UndoPlan &plan,
                const std::function<bool()> &isInterrupted, UndoOutcomes *outcomes)
{
    outcomes->clear();
    int changed = 0;
    for (const char *statement : {"SET NAMES utf8mb4", "START TRANSACTION"}) {
        if (const Failure failure = run(database, QLatin1String(statement), &changed))
            return failure;
    }
    Failure failure = runSteps(database, plan, isInterrupted, outcomes);
    if (!failure)
        failure = run(database, QStringLiteral("COMMIT"), &changed);
    if (failure)
        QSqlQuery(database).exec(QStringLiteral("ROLLBACK"));
    return failure;
}

int leftAlone(const UndoOutcomes &outcomes)
{
    return static_cast<int>(std::count(outcomes.cbegin(), outcomes.cend(), UndoStatement::Beside));
}
