// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A rehearsal for a person at a terminal.
#pragma once

#include "host/changes/changes.h"
#include "host/database/knownpeople.h"
#include "host/exportcheck/exportdigest.h"

/// Grows part by part. Made and used on the stack of a command; the changes outlive it.
class RehearsalText
{
public:
    RehearsalText(const Changes &rehearsedChanges, int lineWidth);

    /// The summary, what to know of copy and export, and the first people, the worst first.
    void addPage();
    /// All of those whom the text means by number or pid; with `isBrief` their kinds in one line.
    /// Where nothing changes, whether there is such a person at all.
    void addPerson(const QString &meant, const QVector<KnownPerson> &known,
                   const ExportDigest &lines, bool isBrief);
    /// Each limit that is exceeded, and how to let it through.
    void addExceeded();
    /// A paragraph of its own.
    void addLine(const QString &line);

    QString result() const { return text; }

private:
    void addPeople();
    QString unchangedLine(const QString &meant, const QVector<KnownPerson> &known,
                          const ExportDigest &lines) const;

    const Changes &changes;
    const int width;
    QString text;
};
