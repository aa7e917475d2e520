// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that take a pass back, as a value.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/undo/undoselection.h"

#include <QSet>
#include <QStringList>
#include <QVector>

/// A column that names a person by uid.
struct PersonReference
{
    QString table;
    QString column;
};

/// What a look at the database says of those who were added.
struct UndoFacts
{
    /// All tables can be seen. Without that nobody can know what refers to a person.
    bool areWhole = false;
    QVector<PersonReference> references; ///< but for notices and the person's own row
    /// Places in Changes::people of those to whom something refers that no copy holds.
    QSet<int> referred;
};

struct UndoStatement
{
    QString sql; ///< without a semicolon
    /// What it does to the step where it changes a row; a statement beside it does nothing to it.
    enum Effect { Beside, TakesBack, MakesInactive, Removes } effect = Beside;
};

/// A column of a step's row as the pass has left it.
struct LeftCell
{
    QString column;
    QString text; ///< its value, for people
    QString condition; ///< SQL: it still holds this value
};

/// How a database is asked why a step was left alone.
struct LeftRow
{
    const TouchedTable *table = nullptr;
    QString place; ///< SQL condition: the row by its key alone
    /// SQL condition of such a row: what the step takes back is back already.
    QString isBack;
    bool hasCome = false; ///< with the pass: where there is no such row, it is back already
    QVector<LeftCell> cells; ///< that are compared
    QString otherwise; ///< in words, why it was left alone though all cells are as they were left
};

/// What is taken back as one, or left alone as one.
struct UndoStep
{
    Person person;
    QString table;
    QString what; ///< in words, in one line
    QString columns; ///< that get their values back, in words; empty unless only some of a row do
    QVector<UndoStatement> statements; ///< in their order; at most one of them has its effect
    LeftRow row;
};

struct UndoPlan
{
    QVector<UndoStep> steps; ///< those of a person one after another
    QStringList stays; ///< sentences: what is not taken back, and why
    bool isPart = false; ///< only certain people or kinds are wanted
    IdNames names; ///< of the ids in the rows
    /// What somebody makes to say that all is as it should be; empty where nobody asks for it.
    QString settledFile;
};

/// The plan. Of each row the statement's condition is what the pass has left there: the key, and
/// every column but `edited`, which tells when the row was written, and the marks of calculation,
/// which the attendance system moves on by itself. Of rehearsed changes the other moments are left
/// out, too, and people who were added are found by their number: refused (ExitRefused) where
/// they have none.
///
/// A person's own row comes last: notices of a terminal that loses them need it as it is. Where the
/// row of somebody who was added is not as the pass left it, none of their rows goes.
Failure makeUndoPlan(const Changes &changes, const UndoSelection &selection, const UndoFacts &facts,
                     UndoPlan *plan);
