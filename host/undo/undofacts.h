// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a database says of those whom a pass has added.
#pragma once

#include "host/undo/undoplan.h"

#include <QSqlDatabase>

/// Looks, through the open handle, where rows can refer to a person, and to whom of the added
/// people such rows refer that a copy would not hold: those outside the tables named, and moves of
/// funds that are no corrections. Only reads.
Failure readUndoFacts(const QSqlDatabase &database, const Changes &changes,
                      const QStringList &copiedTables, UndoFacts *facts);

/// The facts as they hold for a copy that has these tables only.
UndoFacts factsOfCopy(const UndoFacts &facts, const QStringList &copiedTables);
