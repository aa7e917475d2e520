// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the changed rows of a person come to.
#pragma once

#include "host/changes/changes.h"

/// The cell of a row of the change; not valid where there is no row or no such column.
QVariant cellOf(const Change &change, const TableRow &row, const QString &column);

/// Tells from the person's rows their kinds, the fields of their own row, leave and days. `now` is
/// the moment of the pass.
void tellKinds(const QDateTime &now, ChangedPerson *person);

/// The column says what a pass has done to the row, and nothing about the person: when and by whom
/// it was written, up to where attendance is calculated.
bool isOfThePass(const TouchedTable &table, const QString &column);
