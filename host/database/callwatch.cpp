// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A handle that can be asked which of its calls is still waiting for its answer.
#include "host/database/callwatch.h"

#include "host/base/oneline.h"
#include "host/database/recordingdriver.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QMutexLocker>

namespace {

const int longestText = 120;

QString connectionName()
{
    return QStringLiteral("talvenhr.watched");
}

/// A text of the export may hold apostrophes of its own, so none between the first and the last one
/// is taken for an end.
QString withoutTexts(const QString &statement)
{
    const QChar apostrophe = QLatin1Char('\'');
    const int first = statement.indexOf(apostrophe);
    const int last = statement.lastIndexOf(apostrophe);
    if (first == last)
        return first < 0 ? statement : statement.left(first + 1) + QChar(0x2026);
    return statement.left(first + 1) + QChar(0x2026) + statement.mid(last);
}

QString shortText(const DatabaseCall &call)
{
    const QString whole = call.statement.isEmpty() ? call.text().toUpper()
                                                   : withoutTexts(call.statement);
    const QString line = oneLine(whole.simplified());
    return line.size() <= longestText ? line : line.left(longestText - 1) + QChar(0x2026);
}

} // namespace

/// Notes a call in next to no time; its text is made when somebody asks.
class CallWatch::Observer : public CallObserver
{
public:
    QSqlError before(const DatabaseCall &call) override
    {
        const QMutexLocker locker(&mutex);
        current = call;
        isPending = true;
        timer.start();
        return {};
    }

    void after(const DatabaseCall &call, const CallOutcome &outcome) override
    {
        {
            const QMutexLocker locker(&mutex);
            isPending = false;
        }
        if (listener)
            listener(call, outcome);
    }

    std::function<void(const DatabaseCall &, const CallOutcome &)> listener; ///< may be null

    PendingCall pending() const
    {
        const QMutexLocker locker(&mutex);
        if (!isPending)
            return {};
        const QDateTime since = QDateTime::currentDateTime().addMSecs(-timer.elapsed());
        return {shortText(current), since.toOffsetFromUtc(since.offsetFromUtc())};
    }

private:
    mutable QMutex mutex;
    DatabaseCall current;
    bool isPending = false;
    QElapsedTimer timer;
};

CallWatch::CallWatch() :
    observer(std::make_shared<Observer>())
{ }

CallWatch::~CallWatch()
{
    if (driver)
        QSqlDatabase::removeDatabase(connectionName());
}

void CallWatch::listen(
    const std::function<void(const DatabaseCall &, const CallOutcome &)> &listener)
{
    observer->listener = listener;
}

QSqlDatabase CallWatch::watched(const QSqlDatabase &handle)
{
    driver.reset(new RegisteredDriver(recordingDriver(handle.driverName(), observer)));
    return driver->addHandleTo(handle, connectionName());
}

PendingCall CallWatch::pending() const
{
    return observer->pending();
}
