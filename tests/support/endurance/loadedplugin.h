// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library, loaded as a server loads it, with a look at its members.
#pragma once

#include "support/endurance/resources.h"
#include "support/eventlog.h"
#include "support/plugin/pluginenvironment.h"
#include "support/plugin/pluginlibrary.h"
#include "support/pluginpeer.h"
#include "support/workerpeer.h"

#include <functional>

/// One to a test function. The library is in memory as long as the object lives, but for unload().
class LoadedPlugin
{
public:
    /// An INI file of an enabled plugin that ticks by itself only after an hour, and these lines.
    void writeIni(const QStringList &lines = QStringList());
    QString exportPath() const { return environment.filePath(QStringLiteral("ron.data")); }
    /// Puts an export file of these lines in place at one stroke.
    void writeExport(const QStringList &lines);

    /// Loads the library if it is not there, and makes the plugin object of the loader.
    void create(quint8 logLevel, const QSqlDatabase &handle);
    /// The first start; returns when the worker's own is over.
    void start();
    /// Deletes the plugin object.
    void destroy();
    /// Takes the library out of memory, with the object if there is one.
    void unload();
    bool isMapped() const { return PluginLibrary::isMapped(); }

    ServerInterface &server() { return *plugin; }
    PluginPeer peer() { return PluginPeer(*plugin); }
    WorkerPeer worker() { return WorkerPeer(*peer().worker); }

    /// Runs the step on the worker's thread and waits for its end. No tick is under way meanwhile.
    void onWorkerThread(const std::function<void()> &step = [] {});
    /// What the process holds while no tick is under way.
    Resources resourcesBetweenTicks();
    /// One tick on the worker's thread, to its end.
    void tick();
    /// The worker's timer ticks at this interval from now on (milliseconds); before the first call
    /// of the host that starts it once more.
    void tickEvery(int interval);

    EventLog log;
    PluginEnvironment environment;

private:
    PluginLibrary library;
    TalvenHR *plugin = nullptr;
};
