// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What has become of the steps of an undo.
#pragma once

#include "host/undo/undoplan.h"

#include <QSqlDatabase>

/// What has become of one step. Two are alike if the same has happened.
struct UndoOutcome
{
    UndoOutcome() = default;
    UndoOutcome(UndoStatement::Effect stepEffect) :
        effect(stepEffect)
    { }

    bool isLeftAlone() const { return effect == UndoStatement::Beside && !isBack; }

    UndoStatement::Effect effect = UndoStatement::Beside; ///< Beside: nothing was changed
    bool isBack = false; ///< nothing, for it was as before already
    QString since; ///< in one line, what somebody has changed instead; may be empty
};

inline bool operator==(const UndoOutcome &one, const UndoOutcome &other)
{
    return one.effect == other.effect && one.isBack == other.isBack;
}

/// One for each step of a plan, in their order.
using UndoOutcomes = QVector<UndoOutcome>;

/// How many steps were left alone, for somebody has changed their rows.
int leftAlone(const UndoOutcomes &outcomes);
/// How many were back already.
int wereBack(const UndoOutcomes &outcomes);
/// There was something to take back, and all of it is back already.
bool isAllBack(const UndoOutcomes &outcomes);

/// Asks, through the open handle, why the step has changed nothing. Only reads; fails with the
/// server's words.
Failure askWhy(const QSqlDatabase &database, const UndoStep &step, const IdNames &names,
               UndoOutcome *outcome);
