// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The configuration file, talvenhr.conf.
#pragma once

#include "host/base/failure.h"

#include <QHash>
#include <QStringList>

/// The values of a talvenhr.conf, read line by line: sections in brackets, KEY=VALUE, comments from
/// "#" or ";" at the begin of a line. A value is all that stands behind the "=", without the blanks
/// around it: nothing is quoted or escaped, so that commas and semicolons are what they are.
class Configuration
{
public:
    struct Entry
    {
        QString value;
        int line = 0; ///< from 1
    };

    /// Reads a file. Each key has to be one of `known`, in the form SECTION/KEY, and to stand once.
    /// Where something is wrong, the first of it is the failure, and all else is taken.
    Failure read(const QString &path, const QStringList &known);

    /// The file that was read, absolute; empty if none was.
    QString path() const { return file; }
    bool contains(const QString &setting) const { return entries.contains(setting); }
    Entry entry(const QString &setting) const { return entries.value(setting); }
    /// Those that stand in the file, sorted.
    QStringList settings() const;

    /// The file that counts where none is named: the user's, else the machine's; empty if neither
    /// is there.
    static QString standardPath();
    /// All places where it is looked for, in this order.
    static QStringList standardPaths();

private:
    Failure take(const QString &text, int line, const QStringList &known, QString *section);
    Failure wrong(int line, const QString &text) const;

    QString file;
    QHash<QString, Entry> entries; ///< by SECTION/KEY
};
