// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder that a rehearsed pass works in.
#pragma once

#include "host/base/failure.h"
#include "host/base/scratchfolder.h"

#include <QMap>
#include <QString>
#include <QVariant>

/// A temporary folder for its owner only, with a copy of the export and the settings of the real
/// plugin. Four things in them differ: the export is the copy and stays, no export command runs, a
/// tick comes each second, and each is a pass.
class RehearsalSite
{
public:
    /// Fails with what cannot be read or written.
    Failure make(const QString &settingsFile, const QString &exportFile);

    /// Another export in place of that of the last pass: a file of somebody's, or these bytes.
    Failure replaceExport(const QString &file) const;
    Failure replaceExport(const QByteArray &content) const;

    QString path() const { return folder.path(); }
    QString settingsFile() const { return folder.filePath(QStringLiteral("TalvenHR.ini")); }
    QString exportFile() const { return folder.filePath(QStringLiteral("export.data")); }
    /// Where the process writes what the pass has changed.
    QString changesFolder() const { return changesFolder(path()); }
    static QString changesFolder(const QString &site) { return site + QStringLiteral("/changes"); }

private:
    ScratchFolder folder;
};

/// Writes the settings of a file to another path, with other values for some keys. Both are read by
/// the plugin's own reader: fails, and leaves nothing at `path`, unless the written file gives the
/// plugin these values, and for every other key what the first one gives it.
Failure writeSettingsWith(const QMap<QString, QVariant> &values, const QString &settingsFile,
                          const QString &path);
