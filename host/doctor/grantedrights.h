// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rights of a login, as the server tells them.
#pragma once

#include "host/base/failure.h"

#include <QMap>
#include <QSet>
#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

/// One line of SHOW GRANTS: rights on one thing.
struct Grant
{
    enum Level { Server, Schema, Table, Function, Procedure };

    Level level = Server;
    QString schema; ///< as it stands there: of the level Schema a pattern with % and _
    QString object; ///< the table or routine; routines in small letters
    QSet<QString> rights; ///< "SELECT"; of all of them "ALL PRIVILEGES"; "GRANT OPTION"
    QMap<QString, QSet<QString>> columns; ///< columns by right, where it is granted on columns only
    QString place; ///< "`attendance`.`people`", as a statement names it
    QString grantee; ///< as a statement names it: an account, a role or PUBLIC

    /// The level has the right, perhaps among all of them.
    bool has(const QString &right) const;
    bool reaches(const QString &schemaName) const;
};

/// A value: everything is for any thread.
struct GrantedRights
{
    QString account; ///< "'talvenhr'@'localhost'", quoted
    QString schema;
    QVector<Grant> grants;
    QStringList sleepingRoles; ///< granted, but not in force: their rights cannot be seen
    QStringList unreadable; ///< lines that have no known form

    /// The right on the table, or on these columns of it if it is not on the table.
    bool onTable(const QString &right, const QString &table, const QStringList &columns) const;
    bool onRoutine(const QString &routine) const;
    /// Something can be written.
    bool canWrite() const;
};

/// Of the login of the open handle, on its schema. Fails with the server's words.
Failure readGrantedRights(const QSqlDatabase &database, GrantedRights *rights);

/// A line of SHOW GRANTS; false for one that grants nothing on a thing (roles, defaults, proxies)
/// or has no known form.
bool parseGrant(const QString &line, Grant *grant);
