// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the plugin looks for its settings, and what stands in them.
#pragma once

#include "host/base/failure.h"

#include <QTemporaryDir>

/// What the command has to know of the plugin's settings, each taken as the plugin takes it.
struct PluginSettings
{
    bool enabled = false;
    uint syncInterval = 0; ///< ticks
    uint tickMilliseconds = 0;
    QString importFile; ///< absolute
};

/// Tells the plugins that this process loads where their data directory is, without a trace on the
/// machine: for the process, the system-wide settings are a file in a temporary folder.
///
/// One to a process, made before the plugin is loaded.
class DataDirectory
{
public:
    /// An empty name leaves the search to the plugin.
    explicit DataDirectory(const QString &name);

    QString path() const { return directory; }
    QString iniFile() const { return directory + QStringLiteral("/TalvenHR.ini"); }

    /// Fails when there are no readable settings. Environment variables count as in the plugin, so
    /// with ENABLED set the file may be missing.
    Failure readSettings(PluginSettings *settings) const;

private:
    QTemporaryDir systemSettings;
    QString directory;
};
