// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One run at a time on a database.
#pragma once

#include "host/database/connection.h"

/// An advisory lock of the server's, by which a run keeps another one away from its database. It
/// says nothing of an attendance server that has loaded the plugin.
///
/// Owned by the run and used on its thread. The lock goes with its connection, which stays open:
/// with this object, or with the process however that ends.
class RunLock
{
public:
    RunLock();

    /// Fails with ExitRefused when another run has the lock, and tells who. Does nothing once it
    /// has not failed.
    Failure take(const ConnectionParameters &parameters);
    /// False after take() where the server has no such locks: nobody is kept away then.
    bool isHeld() const { return held; }

private:
    Connection connection;
    bool asked = false; ///< without a failure
    bool held = false;
};

/// Who runs the plugin on the database of the open handle, as far as the lock tells; empty if
/// nobody does, or if the server has no such locks. `error` gets the words of a server that does
/// not answer.
QString runLockHolder(const QSqlDatabase &database, QString *error);
