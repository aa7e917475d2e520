// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One gate at a time in a state folder.
#include "host/gate/gatelock.h"

#include "host/base/ownerfile.h"
#include "host/base/zonedtext.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateLock)
};

const int patience = 60; // seconds in which a lock that was made is also filled

} // namespace

GateLock::GateLock(const QString &stateFolder) :
    folder(stateFolder),
    path(QDir(stateFolder).filePath(QStringLiteral("lock"))),
    file(path)
{
    file.setStaleLockTime(0);
}

Failure GateLock::take()
{
    if (file.tryLock(0) || (removeBroken() && file.tryLock(0)))
        return {};
    if (file.error() == QLockFile::LockFailedError)
        return refusal();
    return {ExitUsage,
            Text::tr("cannot lock the folder '%1': %2; no export passes until the gate can write "
                     "there")
                .arg(folder, systemWord())};
}

/// Why no lock could be written, for QLockFile forgets it: what another file there meets.
QString GateLock::systemWord() const
{
    const QString probe = path + QStringLiteral(".probe");
    const Failure failure = writeOwnerFile(probe, [](QIODevice *written) { written->write("\n"); });
    QFile::remove(probe);
    return failure ? failure.text : Text::tr("the lock '%1' could not be written").arg(path);
}

Failure GateLock::refusal() const
{
    const QString since = zonedText(QFileInfo(path).lastModified());
    qint64 pid = 0;
    QString host;
    QString program;
    if (!file.getLockInfo(&pid, &host, &program))
        return {ExitRefused,
                Text::tr("the lock '%1' was made on %2 and names nobody; if it stays for more than "
                         "a minute and no gate is at work, remove it")
                    .arg(path, since)};
    const QString here = QSysInfo::machineHostName();
    if (!host.isEmpty() && host != here)
        // No end of a gate takes this lock away: somebody has to know.
        return {ExitUsage,
                Text::tr("a gate on the machine '%1' (process %2) has locked the folder '%3' since "
                         "%4, and this machine is '%5'; if no gate is at work there, as after this "
                         "machine was renamed, remove '%6'")
                    .arg(host, QString::number(pid), folder, since, here, path)};
    return {ExitRefused,
            Text::tr("another gate is at work since %1: process %2 on %3; try again when it has "
                     "ended")
                .arg(since, QString::number(pid), host)};
}

/// One without content, of a gate that was killed right when it made it: nobody holds it open.
bool GateLock::removeBroken() const
{
    qint64 pid = 0;
    QString host;
    QString program;
    const QFileInfo found(path);
    if (file.error() != QLockFile::LockFailedError || file.getLockInfo(&pid, &host, &program)
        || found.lastModified().secsTo(QDateTime::currentDateTime()) < patience)
        return false;
    const int handle = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC);
    if (handle < 0)
        return false;
    const bool isRemoved = ::flock(handle, LOCK_EX | LOCK_NB) == 0 && QFile::remove(path);
    ::close(handle);
    return isRemoved;
}
