// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folders of a gate, with exports that a test makes up.
#pragma once

#include "host/status/status.h"

#include <QTemporaryDir>

/// archive/, refused/, state/, incoming/, www/ and site/ in a temporary folder; the export's place
/// is site/ron.data. It is noon (UTC) of 22 November 2026 there, whatever the machine's clock says:
/// what a test leaves in the folders is dated by it.
class GateFolder
{
public:
    GateFolder();

    QString path(const QString &name) const { return folder.filePath(name); }
    QString place() const { return path(QStringLiteral("site/ron.data")); }
    StatusSources sources() const;
    Status status() const;
    static QDateTime now();

    /// A record of so many hours ago, of an export with this content, as the gate would name it.
    GateRecord record(int hoursAgo, const QByteArray &content,
                      GateRecord::Outcome outcome = GateRecord::Passed) const;
    /// Keeps the record where it belongs.
    void keep(const GateRecord &record) const;
    /// The changes of its rehearsal.
    void keep(const GateRecord &record, const Changes &changes) const;
    /// A file with its time, or the time of a folder.
    void write(const QString &name, const QByteArray &content, int hoursAgo = 0) const;
    void age(const QString &name, int hoursAgo) const;
    QByteArray read(const QString &name) const;

private:
    QString folderOf(const GateRecord &record) const;

    QTemporaryDir folder;
};
