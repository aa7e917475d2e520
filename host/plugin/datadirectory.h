// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the plugin looks for its settings.
#pragma once

#include "host/base/failure.h"
#include "host/base/scratchfolder.h"

#include <QScopedPointer>
#include <QString>

/// Tells the plugins that this process loads where their data directory is, without a trace on the
/// machine: for the process, the system-wide settings are a file in a temporary folder.
///
/// One to a process, made before the plugin is loaded.
class DataDirectory
{
public:
    /// An empty name leaves the search to the plugin.
    explicit DataDirectory(const QString &name);

    /// Fails when the plugin cannot be told: it would look elsewhere.
    Failure check() const;
    /// Removes the temporary folder, for a process that ends without the destructor.
    void removeTraces() const;

    QString path() const { return directory; }
    QString iniFile() const { return directory + QStringLiteral("/TalvenHR.ini"); }

private:
    QScopedPointer<ScratchFolder> systemSettings; ///< null if the search is left to the plugin
    bool isTold = true; ///< the plugin will find the directory
    QString directory;
};
