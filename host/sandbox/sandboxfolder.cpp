// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a sandbox: whose it is, and what lies where in it.
#include "host/sandbox/sandboxfolder.h"

#include "host/server/folderowner.h"
#include "host/server/leftprocess.h"
#include "host/server/privatefolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SandboxFolder)
};

const QFile::Permissions ownersFile = QFile::ReadOwner | QFile::WriteOwner;
const QFile::Permissions ownersProgram = ownersFile | QFile::ExeOwner;

const int leftServerPatience = 10000; // milliseconds

QString markName()
{
    return QStringLiteral("sandbox.unfinished");
}

QString lockName()
{
    return QStringLiteral("sandbox.lock");
}

QStringList entriesOf(const QString &path)
{
    return QDir(path).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden
                                | QDir::System);
}

Failure cannotWrite(const QString &path, const QString &reason)
{
    return {ExitUsage, Text::tr("cannot write '%1': %2").arg(path, reason)};
}

/// Ends the server that a process which was killed has left behind. What it works on goes anyway,
/// so that it need not take its time.
Failure endLeftServer(const QString &databaseFolder)
{
    if (!PrivateFolder(databaseFolder).socketOfHolder().isEmpty())
        return {ExitRefused,
                Text::tr("the unfinished sandbox's database '%1' is in use by another process")
                    .arg(databaseFolder)};
    const QString dataFolder = PrivateFolder(databaseFolder).dataPath();
    QElapsedTimer timer;
    timer.start();
    for (QVector<qint64> left = processesIn(dataFolder); !left.isEmpty();
         left = processesIn(dataFolder)) {
        if (timer.elapsed() > leftServerPatience)
            return {ExitDatabase,
                    Text::tr("process %1, which an unfinished sandbox has left behind, still works "
                             "in '%2'; end it first")
                        .arg(left.first())
                        .arg(dataFolder)};
        for (const qint64 process : qAsConst(left))
            ::kill(static_cast<pid_t>(process), SIGKILL);
        QThread::msleep(10);
    }
    return {};
}

} // namespace

SandboxFolder::SandboxFolder(const QString &name) :
    directory(QDir::cleanPath(QFileInfo(name).absoluteFilePath()))
{ }

Failure SandboxFolder::take()
{
    const QFileInfo info(directory);
    if (info.exists() && !info.isDir())
        return {ExitUsage, Text::tr("'%1' is not a folder").arg(directory)};
    if (directory.contains(QChar(QChar::ReplacementCharacter)))
        return {ExitUsage, Text::tr("the name of the folder is no UTF-8; choose another one")};
    // Before anything is written into a folder of somebody else.
    if (holdsOtherFiles())
        return otherFiles();
    if (const Failure failure = makeFolder(QString()))
        return failure;

    lock.reset(new QLockFile(path(lockName())));
    // No age makes a lock stale, only the end of its process.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return {
            ExitUsage,
            Text::tr("'%1' is being made by another process, or is not writable").arg(directory)};
    // The other process may have come to its end just now.
    if (holdsOtherFiles()) {
        lock.reset();
        return otherFiles();
    }
    if (const Failure failure = clear())
        return failure;
    return write(markName(), "This sandbox was not made to its end; it will be made anew.\n");
}

/// Neither empty nor half made.
bool SandboxFolder::holdsOtherFiles() const
{
    QStringList entries = entriesOf(directory);
    entries.removeAll(lockName());
    return !entries.isEmpty() && !entries.contains(markName());
}

Failure SandboxFolder::otherFiles() const
{
    return {ExitUsage,
            Text::tr("'%1' holds files already; name an empty or a new folder").arg(directory)};
}

Failure SandboxFolder::finish()
{
    QFile mark(path(markName()));
    if (!mark.remove())
        return cannotWrite(mark.fileName(), mark.errorString());
    lock.reset();
    return {};
}

/// The mark stays, so that a clearing that is broken off can be taken up again.
Failure SandboxFolder::clear() const
{
    if (const Failure failure = endLeftServer(path(QStringLiteral("db"))))
        return failure;
    const QStringList entries = entriesOf(directory);
    for (const QString &entry : entries) {
        if (entry == markName() || entry == lockName())
            continue;
        const QFileInfo info(path(entry));
        const bool gone = info.isDir() && !info.isSymLink()
            ? QDir(info.filePath()).removeRecursively()
            : QFile::remove(info.filePath());
        if (!gone)
            return {ExitUsage,
                    Text::tr("cannot remove '%1', which a sandbox that was not made to "
                             "its end has left")
                        .arg(info.filePath())};
    }
    return {};
}

Failure SandboxFolder::makeFolder(const QString &name) const
{
    const QString folder = name.isEmpty() ? directory : path(name);
    if (QDir().mkpath(folder) && QFile::setPermissions(folder, ownersProgram))
        return {};
    const QString trouble = QString::fromLocal8Bit(std::strerror(errno));
    return {ExitUsage,
            Text::tr("cannot make the folder '%1': %2%3").arg(folder, trouble, keeperText(folder))};
}

Failure SandboxFolder::write(const QString &name, const QByteArray &text, bool isProgram) const
{
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly)
        && file.setPermissions(isProgram ? ownersProgram : ownersFile)
        && file.write(text) == text.size() && file.flush())
        return {};
    return cannotWrite(file.fileName(), file.errorString());
}
