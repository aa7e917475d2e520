// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the settings of a server are to a statement, and to the time in it.
#pragma once

#include "host/base/failure.h"

#include <QSqlDatabase>
#include <QVector>

/// A variable of the server that can change what a statement does.
struct ServerVariable
{
    QString name;
    QString global;
    QString session; ///< of the login: the server may set it otherwise when a login connects
};

/// A plain value.
struct ServerSettings
{
    QVector<ServerVariable> variables;
    QString localTimes; ///< what the login's session takes many moments for, see localTimes()
    int autoincLockMode = 1; ///< innodb_autoinc_lock_mode, which only a start can set
    int lowerCaseTableNames = 0; ///< lower_case_table_names, the same

    QString global(const QString &variable) const;
    QString session(const QString &variable) const;
};

/// Of the session of an open handle that nobody has set anything in. Only looks. Fails with the
/// server's words.
Failure readServerSettings(const QSqlDatabase &database, ServerSettings *settings);

/// Gives them to another server through its administrator's open handle: to all sessions that are
/// opened from now on, but to the administrators' only what is global. A time zone that the server
/// does not know by its name comes from the time zones of this machine.
///
/// Refused where the time zone cannot be had: the copy would count in other days.
Failure applyServerSettings(const QSqlDatabase &database, const ServerSettings &settings);

/// A day a week, over decades, as the session of the handle tells the time then; empty on a
/// failure.
QString localTimes(const QSqlDatabase &database);
