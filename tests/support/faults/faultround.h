// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A faulty pass on the private server, what it leaves, and what comes back afterwards.
#pragma once

#include "support/databasefixture.h"
#include "support/databaseworker.h"
#include "support/faults/servercompany.h"
#include "support/faults/servertable.h"
#include "support/recordeddatabase.h"

#include <QHash>
#include <QVector>

#include <functional>
#include <memory>

/// The same passes with nothing going wrong, to compare with; made once.
class UndisturbedRun
{
public:
    explicit UndisturbedRun(TestDatabase &database);

    /// What the database holds just before the call, from 1 on.
    const QStringList &contentBefore(int call) const { return contents.at(call - 1); }
    /// What it holds after the first pass, and after the two that follow.
    const QStringList &contentAfter() const { return contents.last(); }
    const QStringList &contentInTheEnd() const { return end; }
    /// What it holds after a first pass only some of whose calls succeeded. Each of the others is
    /// taken for itself: it has changed nothing.
    QStringList contentAfter(const ExpectedPass &pass, const Fault &fault) const;

private:
    QVector<QStringList> contents;
    QStringList end;
    // By the id of the call; those of a transaction at its commit.
    QHash<QString, QStringList> changes;
};

/// What the server says when it fails a call.
struct Refusal
{
    QString code; ///< its number, a regular expression
    QString text; ///< a regular expression
};

/// One company and a worker that has not ticked yet, at log level 0.
class FaultRound
{
public:
    explicit FaultRound(TestDatabase &testDatabase);

    /// The events of a pass: calls, warnings and criticals, with the numbers of the table.
    QStringList pass();
    /// As after a start of the plugin: what the worker remembers is gone. The uids that the process
    /// has found stay.
    void restart();
    /// How often Qt's driver has complained in its own words, which no pass() tells: it wants to
    /// tidy up a prepared statement, and the connection has gone.
    int driverComplaints() const { return cleanupComplaints; }
    /// The attendance is calculated, a pass is forced, the attendance is calculated, one more pass.
    void recover();

    /// A pass with this fault, already at work: the events are those of the table, and the database
    /// holds what the calls that came through have written, in the end all but what the table of
    /// losses names. `mend` takes the fault away.
    void comparePass(const UndisturbedRun &undisturbed, const Fault &fault, const Refusal &refusal,
                     const std::function<void()> &mend);

    TestDatabase &database;
    ServerCompany company;
    DatabaseWorker f;

private:
    QStringList takeEvents();

    int cleanupComplaints = 0;
};

/// Runs the function before each call of the passes that follow, with the call's number from 1 on;
/// see RecordedCallHook.
std::unique_ptr<RecordedCallHook> beforeEachCall(const std::function<QSqlError(int)> &function);
/// Runs the function before the call of this number only.
std::unique_ptr<RecordedCallHook> beforeCall(int number,
                                             const std::function<QSqlError()> &function);

/// The base of the test classes: also an undisturbed run.
class FaultFixture : public DatabaseFixture
{
    Q_OBJECT

public:
    FaultFixture();

protected:
    void prepare() override;
    void release() override;

    std::unique_ptr<const UndisturbedRun> undisturbed;
};

/// Where the events leave those of the table, in words; empty where they nowhere do.
QString eventDifference(const QStringList &events, const QStringList &expected,
                        const Refusal &refusal = Refusal());
