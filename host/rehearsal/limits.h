// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How much a pass may change.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// At most so many of a kind.
struct Limit
{
    QString kind; ///< that of a change, or another of limitKinds()
    int number = 0;
    bool isPercent = false; ///< of the active people, of whom there count at least fifty
};

/// A limit, and what there is of it. In days for the kinds of days, else a count.
struct LimitOutcome
{
    Limit limit;
    double allowed = 0;
    double found = 0;

    bool isExceeded() const { return found > allowed; }
};

/// Every kind that can be limited: those of changes, and without-branch, leave-days,
/// leave-days-each, reopened-days. `changed:COLUMN`, the people of whom a column of `people`
/// differs, is one, too, for each column.
QStringList limitKinds();

/// "ended=5%" or "ended=12". Fails with what is wrong with the text.
Failure readLimit(const QString &text, Limit *limit);
/// The limits without those of the same kind, and with this one.
void setLimit(const Limit &limit, QVector<Limit> *limits);

/// What holds where nobody has said otherwise; docs/rehearsal.md gives the reasons.
QVector<Limit> standardLimits();

/// All limits against the changes. Those in percent are left out for a database without people,
/// where everybody is new.
QVector<LimitOutcome> limitOutcomes(const QVector<Limit> &limits, const Changes &changes);

/// "5 %" or "12".
QString limitText(const Limit &limit);
/// What is exceeded, by how much, and how to let it through once.
QString exceededText(const LimitOutcome &outcome);
