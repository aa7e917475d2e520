// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A row as a pass has left it, as a condition; and what of it can be put back.
#pragma once

#include "host/undo/undoplan.h"

/// What the ids and moments in the changes are worth.
struct RowOrigin
{
    bool isRehearsed = false; ///< moments are those of the rehearsal
    bool isNewPerson = false; ///< the uid stands in @uid
};

/// The condition that the row is as it was left: its key first.
QString leftCondition(const Change &change, const RowOrigin &origin);
/// The columns of the key alone, wherever the person's own row has gone. `uid` is SQL for it.
QString placeCondition(const Change &change, const RowOrigin &origin, const QString &uid);
/// The other columns that are compared.
QVector<LeftCell> leftCells(const Change &change, const RowOrigin &origin, const IdNames &names);

/// The columns that differ and that a pass writes, but for moments of writing, and the marks of
/// calculation.
QStringList restorableColumns(const Change &change);
/// "`end` = NULL, `phone` = '5'"
QString oldValues(const Change &change, const QStringList &columns);

/// The condition that these columns hold the values of before.
QString backCondition(const Change &change, const QStringList &columns);

/// lastCalc and calc
bool isCalculationMark(const QString &column);
