// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One life of a plugin: from loading it, through its passes, to unloading it.
#pragma once

#include "host/base/finding.h"
#include "host/exportcheck/exportglance.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/messagelog.h"
#include "host/plugin/pluginfile.h"
#include "host/plugin/settingsfile.h"

#include <QEventLoop>
#include <QMutex>
#include <QObject>
#include <QVector>

class QSqlDatabase;

/// What a life is to be like.
struct PluginRunOptions
{
    QString pluginFile;
    QString dataDirectory; ///< empty: the plugin's own search
    int passes = 0; ///< 0: until told to finish
    int logLevel = 1;
    bool showProgress = false;
};

/// Does what the attendance server does with a plugin: settings and a handle go in, figures or a
/// failure come out.
///
/// A process has one life to give. The worker's connection stays registered under the name of its
/// database, and the uids that it has found are remembered, both for as long as the process lives:
/// a second life would be sent to the database of the first. So a second one is refused; what needs
/// two starts a child process for each.
///
/// Owned by a command and used on its thread. Prints nothing but what the plugin says, through the
/// writer.
class PluginRun : public QObject
{
    Q_OBJECT

public:
    PluginRun(const PluginRunOptions &options, LogWriter *writer, QObject *parent = nullptr);

    /// Looks at the plugin's file and settings, and touches nothing. Fails when the plugin could
    /// not work with them.
    Failure prepare();
    /// Loads the plugin, gives it a clone of the handle to make, and lets it tick until the passes
    /// are over or something ends the run. Returns when the plugin is gone.
    Failure run(const QSqlDatabase &handle);

    /// Those of the plugin, known after prepare().
    const PluginSettings &settings() const { return pluginSettings; }
    /// The plugin's own, known once it has started.
    QString version() const { return pluginVersion; }
    /// Is called with every message of the plugin, on the message's thread. To be set before
    /// run().
    void listen(const std::function<void(QtMsgType type, const QString &text)> &listener)
    {
        log.listen(listener);
    }
    /// What is odd about the settings, known after prepare().
    const QVector<Finding> &findings() const { return settingFindings; }
    /// What was seen of the exports since the last call.
    ExportGlance takeGlance();
    /// The figures so far; from any thread.
    RunFigures figures() const { return log.figures(); }
    bool isPassRunning() const { return log.isPassRunning(); }
    /// When the pass after the last one comes, unless it is forced earlier. Not valid before the
    /// first pass, and when no more is to come.
    QDateTime nextPass() const;
    /// What the plugin said last; from any thread.
    QString lastMessage() const { return log.lastMessage(); }
    /// Removes what only the destructor would, for a process that ends without it; from any thread.
    void removeTraces() const { dataDirectory.removeTraces(); }

public Q_SLOTS:
    /// Ends the run at once, or after the running pass. The first failure given is that of run().
    void finish(const Failure &failure = {});
    /// Ends the run without waiting for the running pass any longer than the plugin does.
    void abort(const Failure &failure);

Q_SIGNALS:
    void started();
    /// The plugin is about to go, which waits for its thread.
    void unloading();
    /// A pass has to come to its end first; `again` if somebody had asked for the end before.
    void waitingForPass(bool again);
    void passEnded();
    /// All that a pass writes is written, and the plugin waits. Emitted on the plugin's thread,
    /// before passEnded().
    void passOver();
    /// passEnded() is on its way. Emitted on the plugin's thread: whoever waits here holds the
    /// plugin, and nobody else.
    void pauseBegins();
    /// The pass reads an export, and takeGlance() has what is odd about it. Emitted on the plugin's
    /// thread, with the number of lines that are dropped.
    void exportSeen(int dropped);
    void exportMissing();
    void databaseNotOpen();

private Q_SLOTS:
    void countPass();
    void lookAtExport();

private:
    Failure start(const QSqlDatabase &handle);
    bool isOver() const;

    const PluginRunOptions options;
    // In this order: the plugin goes before what it uses.
    MessageLog log;
    DataDirectory dataDirectory;
    PluginFile plugin;

    PluginSettings pluginSettings;
    QVector<Finding> settingFindings;
    QString pluginVersion;
    QMutex glanceMutex;
    ExportGlance glance;
    QEventLoop loop;
    Failure outcome;
    bool ending = false; ///< when the pass has come to its end
};
