// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a plugin finds when it is made: data directory, INI file and environment variables.
#pragma once

#include <QByteArrayList>
#include <QStringList>
#include <QTemporaryDir>

/// Stands in the system-wide settings as the data directory of the running application, so that a
/// plugin made afterwards finds its INI file here.
///
/// The data directory does not exist until something makes it. No variable that the plugin reads is
/// set at construction; those that a test sets go with the object.
class PluginEnvironment
{
public:
    PluginEnvironment();
    ~PluginEnvironment();
    PluginEnvironment(const PluginEnvironment &) = delete;
    PluginEnvironment &operator=(const PluginEnvironment &) = delete;

    void setDataDirectory(const QString &path);
    QString dataDirectory() const { return data; }
    QString iniPath() const;
    /// A path beside the data directory.
    QString filePath(const QString &name) const;

    /// Writes the INI file anew, UTF-8.
    void writeIni(const QStringList &lines);
    /// Only what is set before the plugin is made counts.
    void setVariable(const QByteArray &name, const QByteArray &value);

private:
    QTemporaryDir folder;
    QString data;
    QByteArrayList variables;
};
