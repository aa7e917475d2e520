// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a status is taken from, and where it is published.
#pragma once

#include "host/cli/command.h"
#include "host/cli/databaseoptions.h"
#include "host/status/sitefolder.h"
#include "host/status/status.h"

class Options;

/// The values of options and talvenhr.conf.
struct StatusSettings
{
    StatusSources sources;
    DatabaseChoice database; ///< the default one stands for none
    QString whyNoDatabase; ///< it is named, and not looked at; empty: it is
    SiteTarget site; ///< an empty folder: none is written
    QString metricsFile; ///< empty: none is written
};

/// What only talvenhr.conf can set: [status] html, no-names, readers; [metrics] file.
QStringList publishingSettings();

/// Takes the folders, the plugin's settings, the database, and what talvenhr.conf says of site and
/// metrics. For every command with the options of plugin, database and gate folders. What can be
/// taken is taken, also where it fails; site and metrics are named only where all about them holds.
Failure readStatusSettings(const Options &options, StatusSettings *settings);

/// What a status would say of the values about site and metrics.
QStringList publishingProblems(const Options &options);

/// Fails where a file or a folder of ours would take the place of what is read: the export's above
/// all, also while there is none.
Failure checkTargets(const StatusSettings &settings, const QStringList &inputs);

/// Looks at all of it. A database that cannot be seen stands in the status. Reads only.
Status takeStatus(const StatusSettings &settings);

/// Brings site and metrics up to date, as far as the settings name them: to be called after each
/// run. What cannot be written is the failure; the other one is written all the same.
Failure publishStatus(const StatusSettings &settings);
/// The same for a status that was taken already.
Failure publishStatus(const Status &status, const StatusSettings &settings);
