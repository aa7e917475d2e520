// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A real database whose every call is written down.
#include "support/recordeddatabase.h"

#include "host/database/recordingdriver.h"
#include "support/eventlog.h"

#include <QMutex>
#include <QMutexLocker>

#include <memory>

namespace {

QMutex hookMutex;
RecordedCallHook::Function hookFunction;

/// Writes each call down and asks the hook whether it may go on.
class EventLogObserver : public CallObserver
{
public:
    QSqlError before(const DatabaseCall &call) override
    {
        const QString text = call.text();
        EventLog::record(QStringLiteral("sql ") + text);
        RecordedCallHook::Function hook;
        {
            const QMutexLocker locker(&hookMutex);
            hook = hookFunction;
        }
        return hook ? hook(text) : QSqlError();
    }
};

} // namespace

QSqlDatabase recordedHandle(const QSqlDatabase &database)
{
    static const RegisteredDriver driver = recordingDriver(database.driverName(),
                                                           std::make_shared<EventLogObserver>());
    return driver.addHandleTo(database, database.connectionName() + QStringLiteral("-recorded"));
}

RecordedCallHook::RecordedCallHook(const Function &function)
{
    const QMutexLocker locker(&hookMutex);
    hookFunction = function;
}

RecordedCallHook::~RecordedCallHook()
{
    const QMutexLocker locker(&hookMutex);
    hookFunction = nullptr;
}
