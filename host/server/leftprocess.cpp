// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Processes that a host which was killed has left behind.
#include "host/server/leftprocess.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

QVector<qint64> processesIn(const QString &folder)
{
    struct stat wanted;
    if (::stat(QFile::encodeName(folder).constData(), &wanted) != 0)
        return {};
    QVector<qint64> processes;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &entry : entries) {
        bool isProcess = false;
        const qint64 process = entry.toLongLong(&isProcess);
        struct stat found;
        const QByteArray place = QFile::encodeName(QStringLiteral("/proc/%1/cwd").arg(entry));
        if (isProcess && ::stat(place.constData(), &found) == 0 && found.st_dev == wanted.st_dev
            && found.st_ino == wanted.st_ino)
            processes.append(process);
    }
    return processes;
}

bool isMakingData(qint64 process)
{
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(process));
    return commandLine.open(QIODevice::ReadOnly)
        && commandLine.readAll().split('\0').contains("--bootstrap");
}
