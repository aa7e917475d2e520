// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file as the plugin takes one: regular, and readable.
#include "host/base/regularfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RegularFile)
};

} // namespace

Failure openRegularFile(QFile *file)
{
    const QString path = file->fileName();
    const QFileInfo info(path);
    if (!info.exists())
        return {ExitUsage,
                info.isSymLink() ? Text::tr("'%1' is a link to '%2', which is not there")
                                       .arg(path, info.symLinkTarget())
                                 : Text::tr("there is no file '%1'").arg(path)};
    if (info.isDir())
        return {ExitUsage, Text::tr("'%1' is a folder, not a file").arg(path)};
    if (!info.isFile())
        return {ExitUsage,
                Text::tr("'%1' is no regular file; the plugin reads no others").arg(path)};
    if (!file->open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(path, file->errorString())};
    return {};
}
