// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts that both pages of a check have.
#pragma once

#include "host/exportcheck/checkoutcome.h"

/// A whole number with signs between its thousands.
QString groupedNumber(int number);

/// Where the cell begins in its line; columns count from 1.
int cellStart(const QString &line, int column);

/// "line 7: " or "lines 3, 7: "; empty for what concerns the file.
QString placeText(const ExportFinding &found);

/// What follows is the same for the first `count` findings of the group, and needs to be said only
/// once.
bool haveOneEffect(const CheckOutcome &outcome, const FindingGroup &group, int count);

/// How many people are new, gone or changed, and in which columns; empty without another export.
QString comparisonText(const CheckOutcome &outcome);

/// How many people the database has; empty without a database.
QString databaseText(const CheckOutcome &outcome);

/// The lines of the first `count` findings of each kind that point to a cell, in their order.
QVector<int> linesOfFindings(const CheckOutcome &outcome, int count);
