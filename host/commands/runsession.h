// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run` at work: a run of the plugin, with signals, a timeout and a private server.
#pragma once

#include "host/base/signalwatch.h"
#include "host/cli/databaseoptions.h"
#include "host/database/hostdatabase.h"
#include "host/plugin/pluginrun.h"
#include "host/report/logwriter.h"

#include <QObject>
#include <QScopedPointer>

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
    int timeout = 0; ///< seconds, 0: none
};

/// Joins a run of the plugin to what may end it: a signal, the timeout, or the end of the private
/// server; a running pass comes to its end first, but for the last of these.
///
/// Made on the stack of the command, on the main thread, and used once.
class RunSession : public QObject
{
    Q_OBJECT

public:
    RunSession(const RunOptions &options, LogWriter *writer);
    ~RunSession() override;

    /// What goes wrong after the plugin has started is told by the writer, and comes back without
    /// its text.
    Failure run();

private Q_SLOTS:
    void tellStart();
    void tellWaiting(bool again);
    void tellMissingExport();
    void endForTimeout();
    void endForDeadServer(const QString &reason);
    void endForLostTick();

private:
    Failure prepare();
    Failure startPrivateDatabase();
    Failure runPlugin();
    Failure told(const Failure &failure);

    const RunOptions options;
    LogWriter *const writer;
    // In this order: the plugin goes before what it uses.
    SignalWatch signalWatch;
    QScopedPointer<PrivateDatabase> privateDatabase;
    HostDatabase database;
    PluginRun plugin;
    bool ending = false; ///< when the running pass has come to its end
    bool failed = false; ///< and was told
};
