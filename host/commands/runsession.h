// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One run of the plugin, from loading to unloading it.
#pragma once

#include "host/base/failure.h"
#include "host/base/signalwatch.h"
#include "host/commands/runoptions.h"
#include "host/database/hostdatabase.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/messagelog.h"
#include "host/plugin/pluginfile.h"

#include <QEventLoop>
#include <QObject>
#include <QScopedPointer>

class PrivateDatabase;

/// Does what the attendance server does with a plugin, and ends when the options, a signal or a
/// misfortune say so; a running pass comes to its end first in every case.
///
/// Made on the stack of the command, on the main thread, and used once.
class RunSession : public QObject
{
    Q_OBJECT

public:
    RunSession(const RunOptions &options, LogWriter *writer);
    ~RunSession() override;

    /// Returns the exit code.
    int run();

private Q_SLOTS:
    void endForSignal();
    void endForTimeout();
    void endForDeadServer(const QString &reason);
    void endForLostTick();
    void tellMissingExport();
    void countPass();

private:
    Failure prepare();
    Failure checkSettings();
    Failure startPrivateDatabase();
    Failure startPlugin();
    void finish();
    void fail(const Failure &failure);

    const RunOptions options;
    LogWriter *const writer;
    // In this order: the plugin goes before what it uses.
    SignalWatch signalWatch;
    MessageLog log;
    DataDirectory dataDirectory;
    QScopedPointer<PrivateDatabase> privateDatabase;
    HostDatabase database;
    PluginFile plugin;

    PluginSettings settings;
    QEventLoop loop;
    Failure outcome;
    bool ending = false; ///< when the pass has come to its end
};
