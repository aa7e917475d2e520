// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The database that a command only looks at.
#pragma once

#include "host/base/failure.h"
#include "host/cli/databaseoptions.h"
#include "host/database/connection.h"

#include <QScopedPointer>

class PrivateDatabase;

/// The database that the options name, open until this goes. A private one is started, or joined
/// where somebody is at work on it. One that was started ends when those have gone who joined it.
///
/// Owned by a command and used on its thread.
class DatabaseLook
{
public:
    /// How long the server may take to answer unless the user has set other limits; seconds.
    static constexpr int patience = 30;

    DatabaseLook();
    ~DatabaseLook();
    DatabaseLook(const DatabaseLook &) = delete;
    DatabaseLook &operator=(const DatabaseLook &) = delete;

    /// Fails with the server's words.
    Failure open(const DatabaseChoice &choice);
    QSqlDatabase handle() const { return connection.handle(); }
    /// How to reach it; a private one as its administrator, who may read all of it.
    ConnectionParameters parameters() const;

private:
    Failure startPrivate(const QString &folder);

    ConnectionParameters named; ///< of the choice
    QScopedPointer<PrivateDatabase> privateDatabase;
    Connection connection;
};
