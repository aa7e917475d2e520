// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What must happen in a pass some of whose calls fail, as the table of the pass tells.
#pragma once

#include "support/faults/passtable.h"

#include <QHash>
#include <QSet>

/// Which calls of the database fail: a range of numbers from 1 on, and single ones by their ids.
/// The default is none.
struct Fault
{
    int first = 0;
    int last = 0;
    QStringList ids = {};

    bool strikes(int call, const QString &id) const
    {
        return (call >= first && call <= last) || ids.contains(id);
    }
};

/// The calls of these ids fail, and no others.
Fault only(const QStringList &ids);

/// One walk over the table. Words in braces become what they are by then:
///
/// "{bid of B}" is the branch B, or NULL when the branches were not loaded; "{uid P}" the id of the
/// person P as far as it is known, else 0; "{queue of B}" and "{list of B}" who was queued for the
/// branch, without and with blanks; "{pairs of X in B}" the same persons, each with X, but for 0;
/// "{waiting}" how many records wait; "{today}", "{first of previous month}" and "{1 Mar 2021}" the
/// seconds at the midnight of these days.
class ExpectedPass
{
public:
    ExpectedPass(int level, const Fault &struck);
    /// Of another table than passTable().
    ExpectedPass(int level, const Fault &struck, const PassRows &table);

    /// Calls ("sql CALL"), warnings, criticals and the debug lines of the table, in order.
    const QStringList &events() const { return happening; }
    /// The ids of the calls, in order.
    const QStringList &calls() const { return called; }
    /// The persons whose records wait in the end.
    const QStringList &waiting() const { return waitingPersons; }
    /// Whether a call of this id has succeeded, or a fact has come true.
    bool holds(const QString &id) const;
    /// Whether all terms hold that stand in the form of PassRow::when.
    bool holdsAll(const QString &when) const;
    /// Which rows took place, by their index in the table.
    const QSet<int> &rows() const { return reached; }

private:
    bool applies(const PassRow &row) const;
    void take(const PassRow &row);
    void expectMessage(const QString &text);
    QString uidOf(const QString &person) const;
    QString filled(QString text) const;

    const int logLevel;
    const Fault fault;
    QStringList happening;
    QStringList called;
    QStringList waitingPersons;
    QHash<QString, QStringList> queues;
    QSet<QString> known;
    QSet<QString> facts;
    QSet<int> reached;
};
