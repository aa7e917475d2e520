// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The base of results that see each call of their query as a value.
#pragma once

#include "host/database/databasecall.h"

#include <QSqlResult>

/// Turns what Qt asks of a result into a DatabaseCall. A batch comes as one Run for each of its
/// rows.
///
/// Owned by a query, and on its thread. The query may outlive the driver; then no call is made.
class CallResult : public QSqlResult
{
protected:
    using QSqlResult::QSqlResult;

    /// Makes an Exec, a Prepare or a Run and sets what the result then tells: error, rows, whether
    /// it is active. Whether the call has succeeded.
    virtual bool make(const DatabaseCall &call) = 0;

    bool reset(const QString &statement) final;
    bool prepare(const QString &statement) final;
    bool exec() final;

private:
    QVector<DatabaseCall::Value> valuesOfRun() const;
};
