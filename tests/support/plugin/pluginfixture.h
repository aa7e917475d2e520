// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plugin object on the scripted database, in the test's own executable.
#pragma once

#include "support/eventlog.h"
#include "support/patience.h"
#include "support/plugin/pluginenvironment.h"
#include "support/pluginpeer.h"
#include "support/scripteddatabase.h"
#include "support/workerpeer.h"

#include <QSemaphore>

#include <functional>
#include <memory>
#include <vector>

class Gate;

/// One to a test function: `PluginFixture f;`. Everything on the thread of the object is done
/// through the plugin's own timer and threads; nothing is replaced but the database.
class PluginFixture
{
public:
    PluginFixture();
    ~PluginFixture();

    /// Makes the plugin and gives it the scripted handle. The INI file and the variables have to
    /// stand by then.
    void create(quint8 logLevel);
    /// As create(), with an INI file of these lines, and starts the plugin for the first time. The
    /// export file is one that does not exist. The log is empty afterwards.
    void createRunning(quint8 logLevel, const QStringList &iniLines = QStringList());
    /// Destroys the plugin.
    void destroy();

    PluginPeer peer() { return PluginPeer(*plugin); }
    WorkerPeer worker() { return WorkerPeer(*peer().worker); }

    /// Runs the step on the worker's thread and waits for its end. The worker's first start is over
    /// by then.
    void onWorkerThread(const std::function<void()> &step = [] {});
    /// One tick on the worker's thread, to its end.
    void tick();
    /// Begins a tick there, and waits until it has reached the gate.
    void tickUntil(Gate &gate);
    /// Makes a call that starts the worker once more. What it leaves out of the worker's reach goes
    /// with the fixture.
    void restart(const std::function<void()> &call);

    // In this order: the log outlives the script, the script the plugin's connection.
    EventLog log;
    ScriptedDatabase script;
    PluginEnvironment environment;
    std::unique_ptr<TalvenHR> plugin;

private:
    std::vector<std::function<void()>> leftBehind;
};

/// Holds up whoever makes a call of the database with the text, until it is opened or goes. To be
/// made after the fixture, so that a failed test does not wait for ever.
class Gate
{
public:
    Gate(ScriptedDatabase &script, const QString &text)
    {
        const std::shared_ptr<Way> shared = way;
        script.on(text).doing([shared] {
            shared->reached.release();
            shared->open.acquire();
        });
    }
    ~Gate() { open(); }

    bool waitUntilReached() { return way->reached.tryAcquire(1, longestWait); }
    void open() { way->open.release(100); }

private:
    struct Way
    {
        QSemaphore reached;
        QSemaphore open;
    };
    const std::shared_ptr<Way> way = std::make_shared<Way>();
};
