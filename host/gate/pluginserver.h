// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The running server whose export command a process is.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

/// A process that has loaded the plugin.
struct PluginServer
{
    qint64 pid = 0;
    QDateTime since; ///< its start, to the second; what the plugin remembers is not older
};

/// The nearest ancestor of a process that runs the code of the plugin file, also when the file was
/// replaced since. None where the system does not tell, as of servers of other users.
std::optional<PluginServer> pluginServerAbove(qint64 process, const QString &pluginFile,
                                              const QString &proc = QStringLiteral("/proc"));
/// That of this process.
std::optional<PluginServer> pluginServerAbove(const QString &pluginFile);
