// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether a login has a right on a table: what it may not see, the server hides in silence.
#pragma once

#include "host/base/failure.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QString>
#include <QVector>

/// The rights that the server tells of the login of a connection, its role's among them. A value.
class LoginRights
{
public:
    /// Fails with the server's words.
    Failure read(const QSqlDatabase &database);
    /// Takes a line of SHOW GRANTS; one that grants nothing on tables is passed over.
    void add(const QString &line);

    /// The right on all columns of the table, from whichever level it comes.
    bool has(const QString &right, const QString &schema, const QString &table) const;

private:
    struct Grant
    {
        QStringList rights;
        QRegularExpression schema;
        QString table; ///< empty for all tables
    };

    QVector<Grant> grants;
};
