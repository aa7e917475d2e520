// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A data directory with settings and an export file.
#pragma once

#include <QStringList>
#include <QTemporaryDir>

/// A data directory of one's own in a temporary folder. New ones are enabled, tick every second,
/// run a pass on every tick and keep their export file, which holds one known and two new
/// employees.
class Site
{
public:
    Site();

    QString path(const QString &name) const { return folder.filePath(name); }
    QString dataDir() const { return folder.path(); }
    QString exportFile() const { return path(QStringLiteral("ron.data")); }

    /// Sets keys of TalvenHR.ini; each setting reads KEY=VALUE.
    void set(const QStringList &settings);
    void writeFile(const QString &name, const QString &text) const;
    QString readFile(const QString &name) const;

    /// From now on a pass waits at its begin until endPass() is called.
    void holdPasses();
    void endPass() const;

    /// A line of the export, otherwise with good values.
    static QString employee(uint number, const QString &name);
    static QString header();

    /// The options to run the plugin on this site, followed by others.
    QStringList runOptions(const QStringList &others) const;

private:
    QTemporaryDir folder;
};

/// Options for a PrivateServer whose data need not outlive a power failure.
QStringList quickServerOptions();
