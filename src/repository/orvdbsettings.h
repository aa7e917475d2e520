// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings variables: the table `vars` of the attendance database.
#pragma once

#include <QMap>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/// Reads and writes the variables by which programs around the attendance database steer each
/// other.
///
/// A plain object on the connection that it is given; it keeps nothing but that handle, opens no
/// transaction and belongs to the connection's thread. Failures go to the log as critical records,
/// whatever the log level. Names go into the statements as they are: an apostrophe breaks the
/// statement, and % and _ are wildcards where a prefix is taken. Only variableSet() binds its
/// values.
class OrvDbSettings
{
public:
    OrvDbSettings() = default;
    explicit OrvDbSettings(const QSqlDatabase &db);

    /// The previous connection is not closed.
    void setDb(const QSqlDatabase &db);
    bool dbOpen();
    void dbClose();

    /// The value of the row, also when it is NULL or empty; the default when there is no row or the
    /// reading failed.
    QVariant variableGet(const QString &name, QVariant defaultValue);

    /// True when the variable now has the value.
    bool variableSet(const QString &name, const QVariant &value);

    /// True when all have been written. A failed one stops neither the others nor undoes them.
    /// Never true for 65536 variables or more.
    bool variableSet(const QMap<QString, QVariant> &values);

    /// Deletes the variable, or with `like` every variable whose name begins so. True when a row
    /// went.
    bool variableDel(const QString &name, bool like = false);

    /// The variables of these names that exist.
    QMap<QString, QVariant> variableGetMultiple(const QStringList &names);

    /// The variables whose names begin with the prefix, all of them for an empty one.
    QMap<QString, QVariant> variableGetMultiple(const QString &prefix);

private:
    QMap<QString, QVariant> selectVariables(const QString &statement);

    QSqlDatabase db;
};
