// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What of the changes of a pass is to be taken back.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"

#include <QStringList>

/// All of it, unless people or kinds are named.
struct UndoSelection
{
    QStringList people; ///< numbers such as 4711.1; empty: everybody
    KindSet kinds; ///< empty: all
};

/// The kinds that can be taken back.
QStringList undoableKinds();

/// Adds the kind of this word. Fails where nothing of the kind is ever taken back.
Failure addUndoKind(const QString &name, UndoSelection *selection);

/// Fails if somebody is named of whom the changes know nothing.
Failure checkSelection(const UndoSelection &selection, const Changes &changes);

/// One of the person's rows is wanted, as a whole or in part.
bool isWanted(const UndoSelection &selection, const ChangedPerson &person, const Change &change);

/// The columns of the person's own row that are wanted among those that differ. An end of
/// employment is one column, and so is a move to another branch.
bool isColumnWanted(const UndoSelection &selection, const ChangedPerson &person,
                    const QString &column);

/// The place in the list of a PaM block.
bool isListWanted(const UndoSelection &selection, const ChangedPerson &person);
