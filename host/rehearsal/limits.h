// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How much a pass may change.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/changes/limitoutcome.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// Every kind that can be limited: those of changes, and without-branch, leave-days,
/// leave-days-each, reopened-days, missing; lost and gained, people of an export against the one
/// before. `changed:COLUMN`, the people of whom a column of `people` differs, is one, too, for each
/// column.
QStringList limitKinds();

/// Fails for `changed:COLUMN` of a column that `people` does not have.
Failure checkColumns(const QVector<Limit> &limits, const QStringList &columnsOfPeople);

/// "ended=5%" or "ended=12". Fails with what is wrong with the text.
Failure readLimit(const QString &text, Limit *limit);
/// The limits without those of the same kind, and with this one.
void setLimit(const Limit &limit, QVector<Limit> *limits);

/// What holds where nobody has said otherwise; docs/rehearsal.md gives the reasons.
QVector<Limit> standardLimits();

/// A kind that no change shows: it compares exports.
bool isOfExports(const QString &kind);

/// The limit against what was found; nothing for one in percent where there are no people.
std::optional<LimitOutcome> limitOutcome(const Limit &limit, double found, int people);

/// All limits against the changes, but for those of exports. Those in percent are left out for a
/// database without people, where everybody is new.
QVector<LimitOutcome> limitOutcomes(const QVector<Limit> &limits, const Changes &changes);

/// "5 %" or "12".
QString limitText(const Limit &limit);
/// "ended (31, limit 10)"
QString exceededWords(const LimitOutcome &outcome);
/// What is exceeded, and by how much.
QString excessText(const LimitOutcome &outcome);
/// The same, and how to let it through once.
QString exceededText(const LimitOutcome &outcome);
