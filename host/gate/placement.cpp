// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The place where the plugin finds its export.
#include "host/gate/placement.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Placement)
};

const QString opening = QStringLiteral(".talvenhr-gate-");

/// A rename outlives a power cut once its folder is written.
void writeFolderOut(const QString &folder)
{
    const int handle = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (handle < 0)
        return;
    ::fsync(handle);
    ::close(handle);
}

Failure cannotPut(const QString &place, const QString &reason)
{
    return {ExitUsage,
            Text::tr("cannot write into the folder of '%1': %2; nothing was let through")
                .arg(place, reason)};
}

} // namespace

Placement::Placement(const QString &importFile) :
    place(importFile)
{ }

bool Placement::exists() const
{
    return QFileInfo::exists(place);
}

QString Placement::digest() const
{
    return digestOfFile(place);
}

Failure Placement::prepare(const QString &name, const QString &source,
                           QFileDevice::Permissions permissions)
{
    QFile from(source);
    QFile to(preparedPath(name));
    if (!from.open(QIODevice::ReadOnly))
        return cannotPut(place, from.errorString());
    if (!to.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return cannotPut(place, to.errorString());
    to.setPermissions(permissions);
    while (!from.atEnd()) {
        const QByteArray part = from.read(1 << 20);
        if (part.isEmpty() || to.write(part) != part.size())
            return cannotPut(place, part.isEmpty() ? from.errorString() : to.errorString());
    }
    if (!to.flush() || ::fsync(to.handle()) != 0)
        return cannotPut(place, to.errorString());
    return {};
}

bool Placement::isPrepared(const QString &name) const
{
    return QFileInfo::exists(preparedPath(name));
}

Failure Placement::put(const QString &name)
{
    // QFile would not replace what lies there.
    if (std::rename(QFile::encodeName(preparedPath(name)).constData(),
                    QFile::encodeName(place).constData())
        != 0)
        return cannotPut(place, QString::fromLocal8Bit(std::strerror(errno)));
    writeFolderOut(QFileInfo(place).path());
    return {};
}

void Placement::removePrepared()
{
    const QDir folder = QFileInfo(place).dir();
    const QStringList names = folder.entryList({opening + QLatin1Char('*')},
                                               QDir::Files | QDir::Hidden);
    for (const QString &name : names)
        QFile::remove(folder.filePath(name));
}

QString Placement::preparedPath(const QString &name) const
{
    return QFileInfo(place).dir().filePath(opening + name);
}

QString digestOfFile(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return QString::fromLatin1(hash.result().toHex());
}
