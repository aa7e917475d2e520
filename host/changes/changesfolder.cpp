// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A folder that keeps the changes of passes, a file for each.
#include "host/changes/changesfolder.h"

#include <QDir>
#include <QFileInfo>

QString newChangesPath(const QString &folder, const ChangesHeader &header)
{
    const QString moment = header.when.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    const QString stem = QDir(folder).filePath(
        QStringLiteral("%1-%2").arg(moment).arg(header.lastPass));
    const QString ending = QStringLiteral(".changes.json");
    QString path = stem + ending;
    for (int i = 2; QFileInfo::exists(path); ++i)
        path = QStringLiteral("%1-%2%3").arg(stem).arg(i).arg(ending);
    return path;
}
