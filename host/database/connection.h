// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A connection of the command's own to the attendance database.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"

#include <QSqlDatabase>
#include <QString>

/// Where the server is, as the user named it.
QString serverText(const ConnectionParameters &parameters);

/// With limits for the driver, in seconds, where it knows such and the user has set none: for
/// connecting, for an answer, and for sending.
ConnectionParameters withTimeLimits(const ConnectionParameters &parameters, int seconds);

/// A handle under a name in Qt's list of connections, which goes with this object.
///
/// Owned by a command and used on its thread. What is given the handle works on a clone of it.
class Connection
{
public:
    explicit Connection(const QString &name);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// Makes the handle and opens it. Fails with the server's words.
    Failure open(const ConnectionParameters &parameters);
    /// Opens the handle again.
    Failure open();
    void close();

    QSqlDatabase handle() const;

private:
    const QString name;
    ConnectionParameters parameters;
    bool made = false;
};
