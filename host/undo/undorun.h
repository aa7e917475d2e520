// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plan of undo, run on a database.
#pragma once

#include "host/undo/undoplan.h"

#include <QSqlDatabase>

#include <functional>

/// What has become of each step of the plan, in their order; Beside: it was left alone.
using UndoOutcomes = QVector<UndoStatement::Effect>;

/// Runs all steps in one transaction on the open handle. After a failure nothing has changed,
/// where the engine of the tables has transactions. Asked between statements, `isInterrupted` ends
/// it (ExitInterrupted).
Failure runUndo(const QSqlDatabase &database, const UndoPlan &plan,
                const std::function<bool()> &isInterrupted, UndoOutcomes *outcomes);

/// How many steps were left alone.
int leftAlone(const UndoOutcomes &outcomes);
