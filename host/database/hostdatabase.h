// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The command's own handle of the attendance database.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"

#include <QSqlDatabase>
#include <QString>

/// The handle that a plugin gets, with which the command looks at the database before.
///
/// Open only within an operation; owned by the command and used on its thread. The plugin works on
/// a clone of it.
class HostDatabase
{
public:
    /// The handle is Qt's connection of this name.
    explicit HostDatabase(const QString &connectionName = QStringLiteral("talvenhr"));
    ~HostDatabase();
    HostDatabase(const HostDatabase &) = delete;
    HostDatabase &operator=(const HostDatabase &) = delete;

    /// Makes the handle and looks whether the server lets us in and has the tables of a pass. With
    /// `force` it also asks for a forced pass.
    Failure prepare(const ConnectionParameters &parameters, bool force);

    QSqlDatabase handle() const;

private:
    const QString connectionName;
    bool made = false;
};
