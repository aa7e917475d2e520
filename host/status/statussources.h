// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where to look for what became of exports and passes.
#pragma once

#include <QString>
#include <QStringList>

/// Paths that are not known are empty.
struct StatusSources
{
    QString incoming; ///< folders of the gate
    QString pattern = QStringLiteral("*"); ///< of the names of deliveries
    QString archive;
    QString refused;
    QString state;
    QStringList changesFolders; ///< others that hold changes of passes
    QString place; ///< the file that the plugin reads
    bool staysInPlace = false; ///< no pass removes the export
    qint64 tickSeconds = 0; ///< from one look of the plugin at its variable to the next; 0: unknown
    qint64 passSeconds = 0; ///< from one pass to the next; 0: unknown
    qint64 lateAfter = 0; ///< seconds without an export; 0: never late
    bool namesDatabase = false; ///< the database is looked at, too
    /// The command of a client on the database, to which `--execute TEXT` is appended.
    QString client = QStringLiteral("mariadb attendance");
};
