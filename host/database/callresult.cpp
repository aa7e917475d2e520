// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The base of results that see each call of their query as a value.
#include "host/database/callresult.h"

bool CallResult::reset(const QString &statement)
{
    return make({DatabaseCall::Exec, statement, {}});
}

bool CallResult::prepare(const QString &)
{
    // As the caller wrote it: in what comes here, Qt may have changed the placeholders.
    return make({DatabaseCall::Prepare, lastQuery(), {}});
}

bool CallResult::exec()
{
    // Alone of the three, this one comes from Qt even when the driver has gone.
    return driver() && make({DatabaseCall::Run, lastQuery(), valuesOfRun()});
}

QVector<DatabaseCall::Value> CallResult::valuesOfRun() const
{
    QVector<DatabaseCall::Value> values;
    const bool named = bindingSyntax() == NamedBinding;
    for (int i = 0; i < boundValueCount(); ++i)
        values.append({named ? boundValueName(i) : QString::number(i), boundValue(i)});
    return values;
}
