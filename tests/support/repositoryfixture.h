// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A repository on the scripted database.
#pragma once

#include "support/eventlog.h"
#include "support/scripteddatabase.h"

/// One to a test function. The repository has no parent; its connection is open, its log level is 0
/// and the log is empty.
template <typename Repository>
class RepositoryFixture
{
public:
    /// The arguments are those of the repository, but for its parent.
    template <typename... Arguments>
    explicit RepositoryFixture(Arguments... arguments) :
        db(script.handle()),
        repo(nullptr, arguments...)
    {
        db.open();
        repo.setDb(db);
        log.clear();
    }

    /// Closes the connection; the log is empty afterwards.
    void close()
    {
        db.close();
        log.clear();
    }
    /// Calls that hold the text fail with "syntax, väzba (scripted)".
    void fail(const char *call)
    {
        script.on(str(call)).withError(QStringLiteral("1064"), QStringLiteral("syntax, väzba"));
    }
    /// Calls that hold the text succeed, and report "beside (scripted)" all the same.
    void failBeside(const char *call)
    {
        script.on(str(call)).withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    }

    // In this order: the log outlives the script, the script the connection.
    EventLog log;
    ScriptedDatabase script;
    QSqlDatabase db;
    Repository repo;
};
