// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The private server that a copy is made into.
#pragma once

#include "host/copy/copiedschema.h"
#include "host/copy/serversettings.h"
#include "host/database/connection.h"
#include "host/server/privateserver.h"

class QSqlQuery;

/// Fills a private server of its own, step after step, as its administrator.
///
/// Owned by a DatabaseCopy and used on its thread. Nothing of the server has to outlive a power
/// cut: it writes when it has the time.
class CopyTarget
{
public:
    explicit CopyTarget(const QString &folder);

    PrivateServer &server() { return privateServer; }
    const PrivateServer &server() const { return privateServer; }

    /// Makes the data and starts. Fails where the folder has held a database before.
    Failure start(const ServerSettings &settings);
    /// The database and its tables, without rows.
    Failure makeTables(const CopiedSchema &schema);
    /// Rows of one table, as lines for LOAD DATA; an empty piece is the end. `loading` is what that
    /// is told of the lines, from INTO on; `rows` is how many have come.
    Failure fill(const CopiedSchema &schema, const QString &loading,
                 const std::function<QByteArray()> &nextPiece, qint64 *rows);
    /// Has the server look at the rows that are there, as nothing makes it do so by itself.
    Failure gatherStatistics(const CopiedSchema &schema);
    /// Routines, views and triggers, with the accounts that they run as, and the login's.
    ///
    /// A definer need not exist here, and nobody else's rights can be seen at the source: each gets
    /// an account of its name, so that CURRENT_USER() says the same, with all rights on the
    /// database.
    Failure makePrograms(const CopiedSchema &schema, const QString &user);
    /// The last step.
    Failure takeSettings(const ServerSettings &settings);

    ConnectionParameters parameters(const QString &database, const QString &user) const;

private:
    Failure run(const QString &statement);
    Failure makeAccounts(const CopiedSchema &schema, const QString &user);
    Failure makeProgram(const CopiedProgram &program, const CopiedSchema &schema);
    Failure makeViews(const CopiedSchema &schema);
    Failure failed(const QString &error) const;

    PrivateServer privateServer;
    Connection administrator;
};
