// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The next pass, run on a copy.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"
#include "host/database/snapshot.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// What is to be rehearsed.
struct RehearsalWishes
{
    QString pluginFile;
    QString settingsFile; ///< the real TalvenHR.ini
    QString exportFile;
    bool force = false;
    int timeout = 3600; ///< seconds
    QDate today; ///< the day on which the pass runs; invalid for that of the clock
};

/// A line of the plugin's log.
struct LoggedLine
{
    QDateTime time;
    QtMsgType type = QtDebugMsg;
    QString text;
};

/// A pass, from outside.
struct RehearsedPass
{
    Snapshot before;
    Snapshot after;
    QVector<LoggedLine> log; ///< of the plugin, at level 1
    QStringList warnings; ///< of the program that ran it
    qint64 milliseconds = 0; ///< how long it took, with the start of its process
};

/// Runs one pass of the plugin on a copy, in a process of its own: nothing of this process can show
/// in it, and what happens to it happens to nobody else.
class Rehearsal
{
public:
    explicit Rehearsal(const RehearsalWishes &rehearsalWishes);

    /// Asked many times a second while the pass runs: true ends it.
    void setInterruption(const std::function<bool()> &wanted) { isInterrupted = wanted; }

    /// `copy` is reached as the plugin reaches the real database, `administrator` may read all of
    /// it. Fails with the words of the process where no pass came to its end.
    Failure run(const ConnectionParameters &copy, const ConnectionParameters &administrator,
                RehearsedPass *pass);

private:
    QStringList arguments(const ConnectionParameters &copy, const QString &folder) const;
    Failure runPass(const ConnectionParameters &copy, RehearsedPass *pass);

    const RehearsalWishes wishes;
    std::function<bool()> isInterrupted;
};

/// Sorts the lines of a run's log in JSON: those that are messages of the plugin, and what else
/// there is of warnings and errors.
void readRunLog(const QByteArray &log, RehearsedPass *pass);
