// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A worker on the private server, driven by hand.
#pragma once

#include "support/eventlog.h"
#include "support/recordbuilder.h"
#include "support/testdatabase.h"
#include "support/workerpeer.h"

#include <QTemporaryDir>

/// One to a test function: `DatabaseWorker f(*database);`. The worker has the rights of the
/// plugin's own user and what init() makes; no timer ticks. Its connection is open and goes with
/// the object. The log is empty and at level 0.
class DatabaseWorker
{
public:
    enum Calls {
        Unrecorded,
        Recorded, ///< the calls of the database land in the log as well
    };

    explicit DatabaseWorker(TestDatabase &database, Calls calls = Unrecorded);

    /// One tick, on this thread. It ends with a closed connection.
    void tick();
    /// Writes an export file of these lines into a folder of its own and tells the worker of it.
    QString writeExport(const QStringList &lines);
    /// What UNIX_TIMESTAMP() is for the worker, until its connection is closed.
    void setClock(qint64 seconds);

private:
    struct Connection
    {
        ~Connection() { QSqlDatabase::removeDatabase(name); }
        QString name;
    };

public:
    // In this order: the log must outlive the connection, and the connection the worker.
    EventLog log;

private:
    Connection connection;

public:
    THRWorker worker;
    WorkerPeer peer;

private:
    QTemporaryDir folder;
};
