// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The steps that take back what a pass has done to one person.
#pragma once

#include "host/undo/undoplan.h"

/// An entry of a list of PaM that has come with the pass.
struct PamEntry
{
    const TouchedTable *table = nullptr;
    QString variable;
    qlonglong pid = 0;
    /// Runs behind it: what brings the list back to the form that it had when it was empty. Empty
    /// for most.
    QString tidying;
};

/// What the steps of a person are made of.
struct PersonUndo
{
    const ChangedPerson &person;
    const IdNames &names;
    const UndoSelection &selection;
    QVector<PamEntry> listed; ///< those that are wanted
    QVector<PersonReference> references; ///< that keep somebody new from being removed
    bool canBeRemoved = false; ///< of somebody new
    bool isRehearsed = false;
};

/// In the order in which they run, the person's own row last.
QVector<UndoStep> stepsOf(const PersonUndo &undo);

/// The row that makes the person a new one; null for anybody else.
const Change *addedRow(const ChangedPerson &person);
