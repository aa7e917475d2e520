// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that the plugin's own code makes of a record.
#pragma once

#include "export/employeerecord.h"
#include "host/database/registereddriver.h"
#include "worker/thrworker.h"

#include <QHash>
#include <QString>

#include <memory>

/// Has a worker of the plugin fill its statements, and takes them before they reach a server.
///
/// Belongs to the thread that makes it, and ends there. Several threads may each have their own,
/// and make and destroy them at once; but nobody else in the process may make or clone a database
/// handle meanwhile (see RegisteredDriver).
class PluginStatements
{
public:
    enum Kind {
        Add, ///< a person whom the database does not know
        Update,
        UpdateFromState, ///< with another evidence state than before: the attendance is
                         ///< recalculated
    };
    static constexpr Kind allKinds[] = {Add, Update, UpdateFromState};

    /// With the texts of the settings by evidence state.
    explicit PluginStatements(const QHash<ushort, QString> &stateTexts);
    ~PluginStatements();
    PluginStatements(const PluginStatements &) = delete;
    PluginStatements &operator=(const PluginStatements &) = delete;

    /// The record with the interval and the text of its evidence state, as the plugin works them
    /// out for such a statement. The row of a known person had no text before.
    EmployeeRecord personOf(Kind kind, const EmployeeRecord &record) const;
    /// The statement for what personOf() gives, word for word. The department is 1, and the branch
    /// has no row. Messages of the plugin are for the caller to silence.
    QString statement(Kind kind, const EmployeeRecord &person);

private:
    const std::shared_ptr<QString> taken;
    std::unique_ptr<RegisteredDriver> driver;
    std::unique_ptr<THRWorker> worker; ///< holds a connection of the driver
};
