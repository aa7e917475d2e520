// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Everything that happens in a test, in one list: log lines and calls of the database.
#include "support/eventlog.h"

#include <QMutexLocker>
#include <QRegularExpression>
#include <QThread>
#include <QtTest>

namespace {

EventLog *current = nullptr;

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug ");
    case QtInfoMsg:
        return QStringLiteral("info ");
    case QtWarningMsg:
        return QStringLiteral("warning ");
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return QStringLiteral("critical ");
}

} // namespace

EventLog::EventLog()
{
    Q_ASSERT(!current);
    current = this;
    previousHandler = qInstallMessageHandler(handleMessage);
}

EventLog::~EventLog()
{
    qInstallMessageHandler(previousHandler);
    current = nullptr;
    QStringList untaken;
    for (const QString &event : take()) {
        if (!event.startsWith(QLatin1String("sql ")))
            untaken.append(event);
    }
    if (!untaken.isEmpty() && !QTest::currentTestFailed()) {
        QTest::qFail(qPrintable(QStringLiteral("log lines that nobody took:\n  ")
                                + untaken.join(QStringLiteral("\n  "))),
                     __FILE__, __LINE__);
    }
}

QStringList EventLog::take()
{
    const QMutexLocker locker(&mutex);
    QStringList texts;
    for (const Event &event : qAsConst(events))
        texts.append(event.text);
    events.clear();
    return texts;
}

QStringList EventLog::takeMessages()
{
    QStringList messages;
    for (const QString &event : take()) {
        if (!event.startsWith(QLatin1String("sql ")))
            messages.append(event);
    }
    return messages;
}

QStringList EventLog::takeStatements()
{
    return takeMatching({QStringLiteral("sql ")});
}

QStringList EventLog::takeMatching(const QStringList &texts)
{
    QStringList matching;
    for (const QString &event : take()) {
        for (const QString &text : texts) {
            if (event.contains(text)) {
                matching.append(event);
                break;
            }
        }
    }
    return matching;
}

bool EventLog::contains(const QString &text) const
{
    return count(text) > 0;
}

int EventLog::count(const QString &text) const
{
    const QMutexLocker locker(&mutex);
    int found = 0;
    for (const Event &event : events)
        found += event.text.contains(text) ? 1 : 0;
    return found;
}

void EventLog::clear()
{
    take();
}

const void *EventLog::threadOf(const QString &text) const
{
    const QMutexLocker locker(&mutex);
    for (int i = events.size() - 1; i >= 0; --i) {
        if (events.at(i).text.contains(text))
            return events.at(i).thread;
    }
    return nullptr;
}

void EventLog::record(const QString &event)
{
    if (!current)
        return;
    const QMutexLocker locker(&current->mutex);
    current->events.append({event, QThread::currentThreadId()});
}

void EventLog::handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // What the plugin writes carries the default category and no place.
    const bool bare = !context.file && !context.function && context.line == 0
        && qstrcmp(context.category, "default") == 0;
    record(levelName(type) + text + (bare ? QString() : QStringLiteral(" [with context]")));
    if (type == QtFatalMsg)
        abort();
}

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result.append(str(text));
    return result;
}

QStringList complaints(const QStringList &events)
{
    return events.filter(QRegularExpression(QStringLiteral("^(warning|critical) ")));
}
