// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the last gate has failed with, for those who look at it from outside.
#include "host/gate/gatefailure.h"

#include "host/base/oneline.h"
#include "host/base/ownerfile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace {

QString pathIn(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("failed"));
}

} // namespace

void keepGateFailure(const QString &stateFolder, const QString &text)
{
    const QString content = QStringLiteral("%1\n%2\n")
                                .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODate),
                                     oneLine(text));
    if (QDir(stateFolder).exists())
        writeOwnerFile(pathIn(stateFolder),
                       [&content](QIODevice *file) { file->write(content.toUtf8()); });
}

void forgetGateFailure(const QString &stateFolder)
{
    QFile::remove(pathIn(stateFolder));
}
