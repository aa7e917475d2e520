// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A small company in the database of the private server, for a pass in which something goes wrong.
#pragma once

#include "support/contentdifference.h"
#include "support/testdatabase.h"

#include <QStringList>

/// The company of serverTable(). The database holds it, and nothing else, from construction on; the
/// force variable is set.
///
/// | | number | who | branch | what the export says |
/// |---|---|---|---|---|
/// | A | 9001 | new, type 11 | 10 | has a supervisor and a balance, and a calendar of long ago |
/// | B | 9002 | known, type 11 | 10 | moves to branch 20; other supervisor, state, balance |
/// | C | 9003 | new, type 51 | none | only PaM is for this one |
///
/// Branch 10 has the terminals 31 and 32 and the administrators 8 and 9, branch 20 the terminal 33;
/// B stands on terminal 34, which is in no branch. Before the pass administrator 5 is B's
/// supervisor; the export names administrator 6.
///
/// Found uids last as long as the process, so each company has people of its own: 9001 stands for
/// that number behind the company's own, such as 479001. The clock has to stand at companyNow().
class ServerCompany
{
public:
    explicit ServerCompany(TestDatabase &testDatabase);

    QStringList exportLines() const;
    /// The uid of A, B or C as the database has it, empty for nobody.
    QString uid(const QString &letter);
    /// What the attendance system does after a pass: calculates all open days. They show as 2.
    void calculateAttendance();

    /// All that a pass may touch, value by value, such as "people B.phone: 111"; sorted.
    QStringList content();
    /// Events with the numbers of the table: 9001 to 9003, and the uids 101 to 103.
    QStringList canonical(QStringList events);

private:
    void fill();
    /// The number with which the company's own numbers begin, before a text.
    QString own(const QString &text) const;
    QStringList lettered(QStringList texts) const;

    static int companies;

    TestDatabase &database;
    const int number;
};

/// Noon of 17 March 2026.
QDateTime companyNow();
