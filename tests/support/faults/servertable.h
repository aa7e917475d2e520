// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The pass over the company on the private server as a table, and what its faults cost.
#pragma once

#include "support/faults/expectedpass.h"

/// The forced first pass of a worker over the people of ServerCompany.
PassRows serverTable();

/// The number of a call of an undisturbed pass, from 1 on.
int numberOf(const QString &call);

/// Values in the form of contentDifference() that hold after a pass, if its calls were so.
struct Outcome
{
    QString when; ///< of the calls in the pass; in the form of PassRow::when
    QStringList values;
};

/// Where a call of the faulty pass writes anything else than in an undisturbed one, because others
/// before it have failed: how the content differs from what it would have written there.
QStringList changesOf(const ExpectedPass &pass);

/// What stays different for good, once the database is well and the attendance calculated, after a
/// forced pass and one more.
QStringList lossesOf(const ExpectedPass &pass);

/// What changesOf() and lossesOf() never come to for the passes with these faults, by its `when`.
QStringList idleOutcomes(const QVector<Fault> &faults);
