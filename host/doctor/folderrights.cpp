// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who may do what with a file.
#include "host/doctor/folderrights.h"

#include <QDir>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

bool everybodyMay(const QString &path, QFile::Permission permission)
{
    QFileInfo place(path);
    if (!place.permission(permission))
        return false;
    while (!QDir(place.absoluteFilePath()).isRoot()) {
        place = QFileInfo(place.absolutePath());
        if (!place.permission(QFile::ExeOther))
            return false;
    }
    return true;
}

QString userName()
{
    const struct passwd *const entry = getpwuid(getuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(getuid());
}
