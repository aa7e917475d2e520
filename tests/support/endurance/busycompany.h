// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company that lives from export to export, and the rows that it owes by then.
#pragma once

#include "host/company/life.h"
#include "support/testdatabase.h"

#include <QMap>
#include <QSet>

/// One to a test function. It empties the database and fills in branches, terminals, groups,
/// administrators and the leave fund; the people are those of its exports. What the database owes
/// is worked out from what happened alone. Each export has to be taken by one pass, by a worker
/// that knows the exports before. The company grows up to sixty relations.
class BusyCompany
{
public:
    BusyCompany(TestDatabase &companyDatabase, quint32 seed, int people);

    enum Changes {
        EverythingChanges,
        NobodyMoves, ///< nobody is taken on, nobody joins a branch
    };
    /// The lines of the next export: that of the first day, and then always of a day later.
    QStringList nextExport(Changes changes = EverythingChanges);
    /// The lines of the last one once more.
    QStringList sameExport() const;

    /// The people of the database with branch, memberships, terminals and supervisor; owedRows() is
    /// what they have to be.
    QStringList rows();
    QStringList owedRows() const;

    /// The number of rows of term_sync, and what it has to be.
    int queuedNotices();
    int owedNotices() const { return notices; }
    int people() const { return memberships.size(); }

private:
    void takeIn(const QVector<LifeEvent> &events);
    void join(uint pid, uint branch);
    int toldOfNew(uint branch) const;
    int toldOfChanged(const QSet<uint> &branches) const;
    QString owedRow(const Employment &employment) const;

    TestDatabase &database;
    Life life;
    QMap<uint, QSet<uint>> memberships; ///< numbers of branches, by the pid of whoever is added
    int notices = 0;
    bool isFirst = true;
};
