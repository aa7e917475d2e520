// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plan of undo, run on a database.
#pragma once

#include "host/undo/undooutcome.h"

#include <QSqlDatabase>

#include <functional>

/// Runs all steps in one transaction on the open handle. After a failure nothing has changed,
/// where the engine of the tables has transactions. Asked between statements, `isInterrupted` ends
/// it (ExitInterrupted).
Failure runUndo(const QSqlDatabase &database, const UndoPlan &plan,
                const std::function<bool()> &isInterrupted, UndoOutcomes *outcomes);
