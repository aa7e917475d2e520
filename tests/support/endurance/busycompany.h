// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company whose people change from export to export, and the rows that it owes by then.
#pragma once

#include "support/testdatabase.h"

#include <QMap>
#include <QSet>

#include <random>

/// One to a test function. It empties the database and fills in branches, terminals, groups,
/// administrators and the leave fund; the people are those of its exports. What the database owes
/// is worked out from the exports alone, each of which has to be taken by one pass, by a worker
/// that knows the exports before. The company grows up to sixty people.
class BusyCompany
{
public:
    BusyCompany(TestDatabase &companyDatabase, unsigned seed, int people);

    enum Changes {
        EverythingChanges,
        NobodyMoves, ///< nobody is taken on, nobody joins a branch
    };
    /// The lines of the next export: some people have changed, some are new.
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
    int people() const { return employees.size(); }

private:
    struct Employee
    {
        QString surname;
        QString phone;
        uint branch; ///< number
        uint supervisor; ///< personal number
        double balance;
        QSet<uint> memberships; ///< numbers of branches
    };

    int below(int limit);
    uint otherBranch(uint branch);
    void takeOn();
    void change(Employee &employee, Changes changes);
    void changeRow(Employee &employee, Changes changes);
    QString line(uint number, const Employee &employee) const;

    TestDatabase &database;
    std::mt19937 random;
    QMap<uint, Employee> employees; ///< by personal number
    int notices = 0;
    uint lastNumber;
    uint exportedUpTo = 0; ///< personal number; later ones are new
    int lastPhone = 0;
};
