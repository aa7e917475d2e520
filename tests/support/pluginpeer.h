// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tests' view of the plugin object's members.
#pragma once

#include "plugin/talvenhr.h"

struct PluginPeer
{
    explicit PluginPeer(TalvenHR &plugin) :
        logLevel(plugin.logLevel),
        db(plugin.db),
        settings(plugin.settings),
        initialised(plugin.initialised),
        enabled(plugin.enabled),
        workerThread(plugin.workerThread),
        worker(plugin.worker)
    { }

    quint8 &logLevel;
    QSqlDatabase &db;
    EnviroSettings *&settings;
    bool &initialised;
    bool &enabled;
    QThread &workerThread;
    THRWorker *&worker;
};
