// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One call of a database, as a value.
#include "host/database/databasecall.h"

#include <QStringList>

namespace {

QString valuesText(const QVector<DatabaseCall::Value> &values)
{
    QStringList texts;
    for (const DatabaseCall::Value &bound : values) {
        const QString text = bound.value.isNull() ? QStringLiteral("NULL") : bound.value.toString();
        texts.append(bound.name + QLatin1Char('=') + text);
    }
    return texts.join(QStringLiteral(", "));
}

} // namespace

QString DatabaseCall::text() const
{
    switch (kind) {
    case Open:
        return QStringLiteral("open");
    case Close:
        return QStringLiteral("close");
    case Exec:
        return QStringLiteral("exec ") + statement;
    case Prepare:
        return QStringLiteral("prepare ") + statement;
    case Run:
        return QStringLiteral("run ") + valuesText(values);
    case Begin:
        return QStringLiteral("begin");
    case Commit:
        return QStringLiteral("commit");
    case Rollback:
        return QStringLiteral("rollback");
    }
    return QString();
}

QSqlError::ErrorType DatabaseCall::errorType() const
{
    switch (kind) {
    case Open:
    case Close:
        return QSqlError::ConnectionError;
    case Exec:
    case Prepare:
    case Run:
        return QSqlError::StatementError;
    case Begin:
    case Commit:
    case Rollback:
        return QSqlError::TransactionError;
    }
    return QSqlError::UnknownError;
}
