// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A folder that keeps the changes of passes, a file for each.
#include "host/changes/changesfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ChangesFolder)
};

} // namespace

Failure makeChangesFolder(const QString &folder)
{
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    QDir().mkpath(QFileInfo(path).path());
    const int error = ::mkdir(QFile::encodeName(path).constData(), 0700) == 0 ? 0 : errno;
    const QFileInfo info(path);
    if (error == EEXIST && !info.isDir())
        return {ExitUsage,
                Text::tr("'%1' is no folder; name another one for the changes").arg(folder)};
    if (error != 0 && error != EEXIST)
        return {ExitUsage,
                Text::tr("the folder '%1' for the changes cannot be made: %2")
                    .arg(folder, qt_error_string(error))};
    if (!info.isWritable() || !info.isExecutable())
        return {ExitUsage,
                Text::tr("the folder '%1' for the changes is closed to this user; it belongs to %2")
                    .arg(folder, info.owner())};
    return {};
}

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
