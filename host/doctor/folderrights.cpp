// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who may do what with a file.
#include "host/doctor/folderrights.h"

#include <QDir>
#include <QFileInfo>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

bool everybodyMay(const QString &path, QFile::Permission permission)
{
    QFileInfo place(QFileInfo(path).canonicalFilePath());
    if (!place.permission(permission))
        return false;
    while (!QDir(place.absoluteFilePath()).isRoot()) {
        place = QFileInfo(place.absolutePath());
        if (!place.permission(QFile::ExeOther))
            return false;
    }
    return true;
}

bool isForEverybody(const QString &folder)
{
    struct stat status;
    return stat(QFile::encodeName(folder).constData(), &status) == 0
        && (status.st_mode & S_ISVTX) != 0 && everybodyMay(folder, QFile::WriteOther);
}

QString userName()
{
    const struct passwd *const entry = getpwuid(getuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(getuid());
}
