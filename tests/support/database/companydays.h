// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company on the private server, pass after pass and day after day.
#pragma once

#include "support/databaseworker.h"
#include "support/machineclock.h"

#include <QTime>

#include <memory>

/// One to a test function. It empties the database and fills it anew:
///
/// | branch | number | groups (calendar) | terminals        | administrator |
/// |--------|--------|-------------------|------------------|---------------|
/// | 1      | 100    | 11 (1)            | 1                |               |
/// | 2      | 200    | 21 (1), 22 (2)    | 2, and 3 is off  | 3             |
///
/// Administrators 1 and 2 have the personal numbers 9001 and 9002. The leave fund is 2. There is
/// one PaM block, and it lists the person 77. The worker takes the states 21 and 22 for known.
///
/// The process keeps the uids that it has found: each function, and each row of data, has people of
/// its own.
class CompanyDays
{
public:
    CompanyDays(TestDatabase &companyDatabase, MachineClock &machineClock);

    /// Both clocks stand there from now on, the server's for whoever connects.
    void setTime(const QDate &day, const QTime &time = QTime(8, 0));
    /// From now on there is no leave fund; before the worker's first pass.
    void dropLeaveFund();
    /// A worker that knows nothing of the passes before. It runs a pass on every tick.
    void restartWorker(quint8 logLevel = 0);
    /// The next pass is a forced one.
    void force();
    /// A tick on which a pass over these lines runs. All that happens between the reading of the
    /// tables and the end of the pass; what frames it is compared here, with the number of records
    /// that wait afterwards.
    QStringList pass(const QStringList &lines, int waiting = 0);

    /// A person whose row is what record().pid(personalNumber, 1).branch(100).calendar(1) states,
    /// who is in his branch, on its terminal and in the plan of his calendar.
    void settle(uint uid, uint personalNumber);
    /// The attendance system calculates all days up to the one before.
    void calculate();
    void execute(const QString &statement) { database.execute(statement); }
    QStringList rows(const QString &statement) { return database.rows(statement); }
    QString uidOf(uint pid);
    QStringList personRow(const QString &columns, const QString &uid);
    /// Administrators of a person with their marks.
    QStringList marks(const QString &uid);
    /// Terminal, type, object and person of what is queued; empties the queue.
    QStringList takeQueue();

    std::unique_ptr<DatabaseWorker> worker;

private:
    TestDatabase &database;
    MachineClock &clock;
    QDate today;
    quint8 level = 0;
    uint leaveFund = 2;
    uint passes = 0;
    bool forced = false;
};

// The statements of a pass, each as the database receives it

/// What the fund asks of a person with a row.
QStringList fundChecks(uint pid, uint uid);
/// What it asks of one without.
QStringList fundChecksOfNobody(uint pid);
/// What it asks of one who has a day that is not calculated, or a calculation under way.
QStringList fundChecksAtWork(uint pid);
QStringList balanceRead(uint pid, const QDate &monthBegin);
QString correction(uint uid, int value, const QDate &day);
QStringList reopening(const QString &uid, const QDate &since);
/// The update of a person of record(): what stands between the phone and the type, and from the
/// calendar on.
QString update(uint personalNumber, const QString &phone, const QString &end,
               const QString &interval, const QString &type, const QString &tail);
/// The update of a person of settle() with another phone.
QString phoneUpdate(uint personalNumber, const QString &phone);
/// The news of an update for the terminals.
QStringList news(uint pid, const QString &uid);
QString uidAsked(uint pid);
QString adminAsked(uint personalNumber);
/// From the begin of the transaction to its end.
QStringList markMoved(uint aid, const QString &uid);
/// A person of branch 1 with calendar 1, which is planned since the month.
QStringList membershipInPlace(uint pid, const QString &uid, uint since = 0);
/// The insert of a person of department 7, from the pid to the telephone, the end, and from the
/// type on.
QString insert(const QString &who, const QString &end, const QString &interval,
               const QString &rest);
/// The list of the PaM block is read.
QStringList pamListRead();
/// The list of the PaM block is written, with these people.
QStringList pamListWritten(const char *people);
QStringList pamRow(uint pid, const QString &uid, uint block);
/// What is asked for a person of branch 2 with calendar 2, which holds since the month.
QStringList secondBranchAsked(uint pid, const QString &uid, uint since);
QStringList planWritten(uint gid, const QString &uid, uint since);
/// People join branch 2: the text of all, their list in the queue's statement, the one with a row.
QStringList secondBranchJoined(const QString &uids, const QString &queued, const QString &uid);
