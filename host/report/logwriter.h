// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The one place that writes to standard error while the plugin runs.
#pragma once

#include "host/report/progressbar.h"

#include <QMutex>
#include <QString>
#include <QtGlobal>

struct Report;

enum class LogFormat {
    Text,
    Json,
};

/// Writes each message as one line, in plain text or as a JSON object, and keeps the progress bar
/// out of the way.
///
/// Owned by the command; used from the command's thread, from the plugin's worker thread, and from
/// that of a watchdog.
class LogWriter
{
public:
    explicit LogWriter(LogFormat format);
    /// Leaves no progress on the terminal.
    ~LogWriter();
    LogWriter(const LogWriter &) = delete;
    LogWriter &operator=(const LogWriter &) = delete;

    /// A line of the plugin's log, or of Qt's.
    void message(QtMsgType type, const QString &text);

    /// What the command itself has to say: news, something odd, or why it cannot go on.
    void say(const QString &text);
    void warn(const QString &text);
    void fail(const QString &text);

    /// What takes its time just now, to be said as often as one likes: on a terminal a line with
    /// the seconds, which goes when something else is written; otherwise news when it changes.
    void activity(const QString &what);

    /// The last line of a run: the verdict, or the figures as a JSON object. What other threads
    /// write after it is dropped.
    void summary(const Report &report);

    void progress(int done, int total);
    void wipeProgress();

private:
    void own(QtMsgType type, const QString &opening, const QString &text);
    QByteArray ownLine(QtMsgType type, const QString &opening, const QString &text) const;
    QByteArray jsonLine(QtMsgType type, const QString &text) const;
    void writeLine(const QByteArray &line);

    const LogFormat format;
    QMutex mutex;
    bool isOver = false; ///< the last line is written
    ProgressBar bar;
    QString lastActivity;
    QElapsedTimer sinceActivity; ///< began
};
