// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One call of a database, as a value.
#pragma once

#include <QSqlError>
#include <QString>
#include <QVariant>
#include <QVector>

/// What a program asks of a database through Qt: one call of a driver or of a query.
struct DatabaseCall
{
    enum Kind { Open, Close, Exec, Prepare, Run, Begin, Commit, Rollback };

    /// A value bound to a placeholder. One that was never bound is not valid.
    struct Value
    {
        QString name; ///< ":name" as in the statement; the place from 0 on if bound by place
        QVariant value;
    };

    /// The call in one line: "open", "close", "begin", "commit", "rollback", "exec STATEMENT",
    /// "prepare STATEMENT", "run NAME=VALUE, NAME=VALUE" with NULL for NULL.
    QString text() const;
    /// The kind of error with which such a call fails.
    QSqlError::ErrorType errorType() const;

    Kind kind = Exec;
    QString statement; ///< of Exec, Prepare and Run, as the caller wrote it
    QVector<Value> values; ///< of Run, in the order of their places
};
