// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A temporary folder that holds data of people.
#include "host/base/scratchfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ScratchFolder)
};

const QString prefix = QStringLiteral("talvenhr-scratch-");
const QString lockName = QStringLiteral("scratch.lock");

/// The lock of a folder whose process has gone, taken; -1 where it lives, or never had one.
int takeLeftLock(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0)
        return file;
    if (file >= 0)
        ::close(file);
    return -1;
}

} // namespace

ScratchFolder::ScratchFolder() :
    folder(QDir(QDir::tempPath()).filePath(prefix + QStringLiteral("XXXXXX")))
{
    if (!folder.isValid())
        trouble = Text::tr("cannot make a temporary folder: %1").arg(folder.errorString());
    else if (!lockIt())
        trouble = Text::tr("cannot lock the temporary folder '%1': %2")
                      .arg(folder.path(), QString::fromLocal8Bit(std::strerror(errno)));
}

ScratchFolder::~ScratchFolder()
{
    folder.remove();
    if (lock >= 0)
        ::close(lock);
}

/// Under another name first: who sees it under its own finds it locked.
bool ScratchFolder::lockIt()
{
    const QByteArray name = QFile::encodeName(filePath(lockName));
    const QByteArray newName = name + ".new";
    lock = ::open(newName.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) == 0
        && std::rename(newName.constData(), name.constData()) == 0;
}

void removeLeftScratchFolders()
{
    const QFileInfoList folders = QDir(QDir::tempPath())
                                      .entryInfoList({prefix + QLatin1Char('*')},
                                                     QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo &info : folders) {
        if (info.ownerId() != ::geteuid())
            continue;
        const int left = takeLeftLock(QDir(info.filePath()).filePath(lockName));
        if (left < 0)
            continue;
        QDir(info.filePath()).removeRecursively();
        ::close(left);
    }
}
