// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run` at work: a run of the plugin, with signals, a timeout and a private server.
#pragma once

#include "host/base/signalwatch.h"
#include "host/base/watchdog.h"
#include "host/changes/passnotes.h"
#include "host/changes/passtrace.h"
#include "host/cli/databaseoptions.h"
#include "host/commands/changewatch.h"
#include "host/commands/passhold.h"
#include "host/commands/runsummary.h"
#include "host/database/callwatch.h"
#include "host/database/connection.h"
#include "host/database/runlock.h"
#include "host/plugin/pluginrun.h"
#include "host/report/logwriter.h"

#include <QElapsedTimer>
#include <QObject>
#include <QScopedPointer>

#include <atomic>

class PrivateDatabase;

/// What the command line asks of a run.
struct RunOptions
{
    QString pluginFile;
    QString dataDirectory; ///< empty: the plugin's own search
    DatabaseChoice database;
    int logLevel = 1;
    LogFormat logFormat = LogFormat::Text;
    int passes = 0; ///< 0: until a signal comes
    bool force = false;
    bool held = false; ///< between two passes, until a line comes
    ChangeWishes changes;
    QString trace; ///< file for all messages and calls; empty: none
    QString plannedExport; ///< digest of the only export that may be taken; empty: any
    bool strict = false; ///< warnings count as errors
    int timeout = 0; ///< seconds, 0: none
    int grace = 10; ///< seconds that a pass has to come to its end, once it is to end in any case
};

/// Joins a run of the plugin to what may end it: a signal, the timeout, or the end of the private
/// server. A running pass comes to its end first, but for the last of these, and but for one that
/// outlasts the grace period after the timeout or a second signal: it is cut, and the process ends
/// there and then.
///
/// Made on the stack of the command, on the main thread, and used once.
class RunSession : public QObject
{
    Q_OBJECT

public:
    /// `lock` may be held already.
    RunSession(const RunOptions &options, RunLock *lock, LogWriter *writer);
    ~RunSession() override;

    /// What goes wrong after the plugin has started is told by the writer, and comes back without
    /// its text.
    Failure run();

private Q_SLOTS:
    // What there is to tell (runsession.cpp)
    void tellActivity(const QString &what);
    void tellStart();
    void tellWaiting(bool again);
    void tellChanges();
    void tellNextPass();
    void tellOfExport();
    void tellMissingExport();
    void tellHold();
    // On the plugin's thread, which waits.
    void identifyExport(int dropped);
    void lookAtChanges();
    void holdPlugin();
    void refuseOtherExport();

    // The end (runsession_ending.cpp)
    void endForSignal();
    void endForTimeout();
    void limitUnloading();
    void endForDeadServer(const QString &reason);
    void endForLostTick();

private:
    // runsession.cpp
    void listenForChanges();
    void listenForPasses();
    Failure prepare();
    Failure prepareDatabase();
    Failure openDatabase();
    Failure startPrivateDatabase();
    Failure watchChanges();
    Failure openTrace();
    void hearCall(const DatabaseCall &call, const CallOutcome &outcome);
    void hear(QtMsgType type, const QString &text);
    void closeTrace();
    Failure runPlugin();
    RunFigures figures() const;
    void warn(const QString &text);

    // runsession_ending.cpp
    RunEnding ending(const Failure &failure) const;
    RunEnding timedOut() const;
    Failure told(const Failure &failure);
    void cutAfterGrace(const RunEnding &ending);
    void cut(const RunEnding &ending);
    void leave(const RunEnding &ending);
    QString whatIsWaitedFor() const;
    QString whatThePluginWaitsFor() const;

    const RunOptions options;
    RunLock *const lock;
    LogWriter *const writer;
    QElapsedTimer clock;
    // In this order: the plugin goes before what it uses.
    SignalWatch signalWatch;
    QScopedPointer<PrivateDatabase> privateDatabase;
    std::atomic<qint64> serverProcess {0}; ///< of the private server
    Connection connection {QStringLiteral("talvenhr")};
    CallWatch callWatch; ///< over the connection, for the plugin to clone
    QScopedPointer<ChangeWatch> changes; ///< null unless they are wanted
    PassNotes notes; ///< for the files of changes
    PassTrace trace;
    PassHold hold;
    PluginRun plugin;
    bool graceRuns = false; ///< the process will be cut at its end
    bool endedBySignal = false;
    bool waiting = false; ///< for the running pass to end
    // Of the session itself; the watchdog looks at them, too.
    std::atomic<int> ownWarnings {0};
    std::atomic<int> droppedLines {0};
    std::atomic<bool> testMode {false};
    bool sawUselessExport = false; ///< one without a usable line
    Failure firstFailure; ///< that was told
    bool outputIsLost = false; ///< standard output
    bool changesAreLost = false; ///< a file of changes is missing
    bool traceIsLost = false; ///< a part of it
    std::atomic<bool> hasPlugin {false}; ///< it has started
    Watchdog watchdog; ///< last: it looks at the others
};
