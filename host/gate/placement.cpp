// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The place where the plugin finds its export.
#include "host/gate/placement.h"

#include "host/base/ownerfile.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Placement)
};

const QString opening = QStringLiteral(".talvenhr-gate-");

/// Of the last call that failed.
QString systemWord()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/// Only the administrator can give files away, and only they have to.
bool giveToKeeper(int handle, const QString &place)
{
    struct stat folder;
    const QByteArray path = QFile::encodeName(QFileInfo(place).path());
    if (::geteuid() != 0 || ::stat(path.constData(), &folder) != 0 || folder.st_uid == 0)
        return true;
    return ::fchown(handle, folder.st_uid, folder.st_gid) == 0;
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

Failure Placement::prepare(const QString &name, const QString &source, int rights)
{
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(source, from.errorString())};
    const QString path = preparedPath(name);
    QFile::remove(path);
    const int handle = ::open(QFile::encodeName(path).constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    QFile to;
    if (handle < 0 || !to.open(handle, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle))
        return cannotPut(place, systemWord());
    const Failure failure = fill(&from, &to, rights);
    if (failure)
        drop(name);
    return failure;
}

/// Others may read it when it is whole.
Failure Placement::fill(QFile *from, QFile *to, int rights) const
{
    while (!from->atEnd()) {
        const QByteArray part = from->read(1 << 20);
        if (part.isEmpty())
            return {ExitUsage,
                    Text::tr("cannot read '%1': %2").arg(from->fileName(), from->errorString())};
        if (to->write(part) != part.size())
            return cannotPut(place, to->errorString());
    }
    const auto mode = static_cast<mode_t>(rights) | S_IRUSR | S_IWUSR;
    const int handle = to->handle();
    if (!to->flush())
        return cannotPut(place, to->errorString());
    if (!giveToKeeper(handle, place) || ::fchmod(handle, mode) != 0 || ::fsync(handle) != 0)
        return cannotPut(place, systemWord());
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
        return cannotPut(place, systemWord());
    writeFolderOut(QFileInfo(place).path());
    return {};
}

void Placement::drop(const QString &name)
{
    QFile::remove(preparedPath(name));
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
