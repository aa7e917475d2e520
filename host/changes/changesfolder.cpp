// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A folder that keeps the changes of passes, a file for each.
#include "host/changes/changesfolder.h"

#include "host/changes/changesjson.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ChangesFolder)
};

QString fileEnding()
{
    return QStringLiteral(".changes.json");
}

} // namespace

QString newChangesPath(const QString &folder, const ChangesHeader &header)
{
    const QString moment = header.when.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    const QString stem = QDir(folder).filePath(
        QStringLiteral("%1-%2").arg(moment).arg(header.lastPass));
    const QString ending = fileEnding();
    QString path = stem + ending;
    for (int i = 2; QFileInfo::exists(path); ++i)
        path = QStringLiteral("%1-%2%3").arg(stem).arg(i).arg(ending);
    return path;
}

Failure readChangesOfPass(const QString &folder, int pass, Changes *changes)
{
    const QStringList names = QDir(folder).entryList(
        {QStringLiteral("*-%1").arg(pass) + fileEnding()}, QDir::Files);
    if (names.size() != 1)
        return {ExitErrors, Text::tr("the pass has left no changes")};
    return readChangesFile(QDir(folder).filePath(names.constFirst()), changes);
}
