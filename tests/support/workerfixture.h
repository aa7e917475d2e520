// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A worker on the scripted database, driven by hand.
#pragma once

#include "support/eventlog.h"
#include "support/recordbuilder.h"
#include "support/scripteddatabase.h"
#include "support/workerpeer.h"

#include <QTemporaryDir>

/// One to a test function: `WorkerFixture f;`. The worker's connection is open, it can read and set
/// variables, and its start() has not run; the log is empty and at level 0.
class WorkerFixture
{
public:
    WorkerFixture();
    ~WorkerFixture();

    /// Makes what start() makes, without a timer that ticks.
    void init();
    /// One tick, on this thread.
    void tick();
    /// Writes an export file of these lines into a folder of its own and tells the worker of it.
    QString writeExport(const QStringList &lines);
    /// The database holds this of a person; the last export file has stated it.
    void known(const EmployeeRecord &row);
    void stated(const EmployeeRecord &last);
    /// What the record brings about.
    QStringList sync(const EmployeeRecord &given);

    /// Calls that hold the text bring one row of one value, or fail.
    void answer(const char *call, const QVariant &value, int times = -1);
    void fail(const char *call, const char *code = "1205", const char *text = "lock wait");
    /// There is one PaM block, and it lists these people.
    void listInPam(const QString &pids);
    QString filePath(const QString &name) const;

    // In this order: the log must outlive the worker, and the script the worker's connection.
    EventLog log;
    ScriptedDatabase script;
    THRWorker worker;
    WorkerPeer peer;

private:
    OrvDbSettings *const settings; // the worker's until init() makes others
    QTemporaryDir folder;
};
