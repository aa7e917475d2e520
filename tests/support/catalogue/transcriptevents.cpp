// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The events of tests/transcript.
#include "support/catalogue/transcriptevents.h"

#include <QFile>

namespace {

/// Without remarks; what is indented belongs to the line before it.
QStringList eventsOf(const char *pass)
{
    QFile file(QStringLiteral(TALVENHR_TRANSCRIPT_FOLDER "/%1/transcript.txt")
                   .arg(QString::fromLatin1(pass)));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QStringList events;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("    ")))
            events.last() += QLatin1Char('\n') + line.mid(4);
        else if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            events.append(line);
    }
    return events;
}

} // namespace

QStringList transcriptEvents()
{
    return eventsOf("1-first-pass") + eventsOf("2-unchanged") + eventsOf("3-forced")
        + eventsOf("4-next-day");
}
