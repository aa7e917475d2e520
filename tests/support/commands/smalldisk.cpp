// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A disk that is soon full.
#include "support/commands/smalldisk.h"

#include <QFile>
#include <QStorageInfo>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

bool writeFile(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
}

} // namespace

SmallDisk::SmallDisk(const QString &folder, int kilobytes) :
    place(folder)
{
    const QByteArray size = "mode=0700,size=" + QByteArray::number(kilobytes) + 'k';
    if (!enterNameSpace()
        || ::mount("none", QFile::encodeName(place).constData(), "tmpfs", 0, size.constData()) != 0)
        trouble = QString::fromLocal8Bit(std::strerror(errno));
}

SmallDisk::~SmallDisk()
{
    if (trouble.isEmpty())
        ::umount2(QFile::encodeName(place).constData(), MNT_DETACH);
}

bool SmallDisk::fillUpTo(int kilobytesLeft) const
{
    const qint64 free = QStorageInfo(place).bytesAvailable();
    const qint64 wanted = free - kilobytesLeft * 1024LL;
    return wanted >= 0
        && writeFile(place + QStringLiteral("/filling"), QByteArray(static_cast<int>(wanted), 'x'));
}

/// Once for the process: nobody else is to see the disk.
bool SmallDisk::enterNameSpace()
{
    static bool entered = false;
    if (entered)
        return true;
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    entered = ::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) == 0;
    if (entered && user != 0) {
        const QByteArray map = QByteArray::number(user);
        entered = writeFile(QStringLiteral("/proc/self/setgroups"), "deny")
            && writeFile(QStringLiteral("/proc/self/uid_map"), map + ' ' + map + " 1")
            && writeFile(QStringLiteral("/proc/self/gid_map"),
                         QByteArray::number(group) + ' ' + QByteArray::number(group) + " 1");
    }
    // Below a root that is no mount of its own there is nothing to part from.
    return entered
        && (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 || errno == EINVAL);
}
