// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Everything that happens in a test, in one list: log lines and calls of the database.
#pragma once

#include <QMutex>
#include <QStringList>
#include <QVector>

#include <initializer_list>

/// Records log lines and database calls of all threads in the order in which they come.
///
/// A log line reads "debug TEXT", "info TEXT", "warning TEXT" or "critical TEXT", a call of the
/// database "sql CALL" (see ScriptedDatabase). There is one log at a time: it installs Qt's message
/// handler at construction and takes it away at destruction. Lines that nobody took fail the test.
class EventLog
{
public:
    EventLog();
    ~EventLog();
    EventLog(const EventLog &) = delete;
    EventLog &operator=(const EventLog &) = delete;

    /// All events so far; the log is empty afterwards.
    QStringList take();
    /// As take(), only the log lines, or only the calls of the database. The others are dropped.
    QStringList takeMessages();
    QStringList takeStatements();
    /// As take(), only the events that hold one of the texts. The others are dropped.
    QStringList takeMatching(const QStringList &texts);

    /// Whether an event with this text has come and was not taken yet.
    bool contains(const QString &text) const;
    int count(const QString &text) const;
    void clear();

    /// The thread on which the newest event with this text came; null if there is none.
    const void *threadOf(const QString &text) const;

    static void record(const QString &event);

private:
    static void handleMessage(QtMsgType type, const QMessageLogContext &context,
                              const QString &text);

    struct Event
    {
        QString text;
        const void *thread;
    };

    mutable QMutex mutex;
    QVector<Event> events;
    QtMessageHandler previousHandler;
};

/// A text, and events, as they stand in a test's text (UTF-8).
QString str(const char *text);
QStringList lines(std::initializer_list<const char *> texts);

/// The warnings and criticals among the events.
QStringList complaints(const QStringList &events);
