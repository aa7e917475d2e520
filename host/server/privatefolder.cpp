// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a private server: whose it is, whether it is in use, and what lies where in it.
#include "host/server/privatefolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <sys/un.h>

namespace {

const int leftServerPatience = 10000; // milliseconds

QString markerName()
{
    return QStringLiteral("talvenhr-private-db");
}

QString completeName()
{
    return QStringLiteral("data.complete");
}

bool writeFile(const QString &path, const QByteArray &text, QString *error)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
        return true;
    *error = QStringLiteral("cannot write '%1': %2").arg(path, file.errorString());
    return false;
}

bool isEmptyFolder(const QString &path)
{
    return QDir(path).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden
                              | QDir::System);
}

/// Whether the process runs and is a server over these data: its command line names them.
bool servesData(qint64 pid, const QString &dataPath)
{
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(pid));
    return pid > 0 && commandLine.open(QIODevice::ReadOnly)
        && commandLine.readAll().contains(QFile::encodeName(dataPath));
}

} // namespace

PrivateFolder::PrivateFolder(const QString &name) :
    directory(QDir::cleanPath(QFileInfo(name).absoluteFilePath()))
{ }

bool PrivateFolder::take(QString *error)
{
    release();
    if (!makeOrRecognise(error))
        return false;

    lock.reset(new QLockFile(lockPath()));
    // No age makes a lock stale, only the end of its process.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        qint64 pid = 0;
        QString host;
        QString application;
        lock->getLockInfo(&pid, &host, &application);
        *error = lock->error() == QLockFile::LockFailedError
            ? QStringLiteral("the private database '%1' is in use by process %2")
                  .arg(directory)
                  .arg(pid)
            : QStringLiteral("cannot lock the private database '%1'; is the folder writable?")
                  .arg(directory);
        lock.reset();
        return false;
    }
    QDir().mkdir(temporaryPath());
    return waitForLeftServer(error) && findSocketPath(error);
}

bool PrivateFolder::isKnown() const
{
    return QFileInfo::exists(path(markerName()));
}

void PrivateFolder::release()
{
    lock.reset();
}

QString PrivateFolder::socketOfHolder() const
{
    // Looking must not take: a folder that is free stays as it is.
    if (!QFileInfo::exists(lockPath()))
        return QString();
    QLockFile probe(lockPath());
    probe.setStaleLockTime(0);
    if (probe.tryLock(0))
        return QString();
    QFile note(socketNotePath());
    return note.open(QIODevice::ReadOnly) ? QFile::decodeName(note.readAll()) : QString();
}

bool PrivateFolder::hasData() const
{
    return QFileInfo::exists(path(completeName())) && QFileInfo(dataPath()).isDir();
}

bool PrivateFolder::setHasData(QString *error)
{
    return writeFile(path(completeName()), "The data folder was made to its end.\n", error);
}

bool PrivateFolder::clearData(QString *error)
{
    QFile::remove(path(completeName()));
    if (QDir(dataPath()).removeRecursively())
        return true;
    *error = QStringLiteral("cannot remove the unfinished data in '%1'").arg(dataPath());
    return false;
}

QString PrivateFolder::path(const QString &name) const
{
    return directory + QLatin1Char('/') + name;
}

/// The marker comes first of all, so that a folder broken off at any later moment is still known as
/// ours.
bool PrivateFolder::makeOrRecognise(QString *error) const
{
    const QByteArray encoded = QFile::encodeName(directory);
    const QFileInfo info(directory);
    if (!info.exists()) {
        QDir().mkpath(info.path());
        if (::mkdir(encoded.constData(), 0700) != 0) {
            *error = QStringLiteral("cannot make the folder '%1': %2")
                         .arg(directory, QString::fromLocal8Bit(std::strerror(errno)));
            return false;
        }
    } else if (!info.isDir()) {
        *error = QStringLiteral("'%1' is not a folder").arg(directory);
        return false;
    } else if (isKnown()) {
        return true;
    } else if (!isEmptyFolder(directory)) {
        *error = QStringLiteral("'%1' holds other files and no private database; "
                                "name an empty or a new folder")
                     .arg(directory);
        return false;
    } else if (::chmod(encoded.constData(), 0700) != 0) {
        // The administrator of the server has no password, so nobody else may get at the socket.
        *error = QStringLiteral("cannot keep others out of '%1': %2")
                     .arg(directory, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    return writeFile(path(markerName()),
                     "This folder belongs to talvenhr: a private MariaDB server.\n", error);
}

/// After a host that was killed its server still needs a moment to end.
bool PrivateFolder::waitForLeftServer(QString *error) const
{
    QFile file(pidPath());
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const qint64 pid = file.readAll().trimmed().toLongLong();
    QElapsedTimer timer;
    timer.start();
    while (servesData(pid, dataPath())) {
        if (timer.elapsed() > leftServerPatience) {
            *error = QStringLiteral(
                         "a server left behind, process %1, still uses '%2'; end it first")
                         .arg(pid)
                         .arg(directory);
            return false;
        }
        QThread::msleep(10);
    }
    return true;
}

bool PrivateFolder::findSocketPath(QString *error)
{
    const int room = static_cast<int>(sizeof(sockaddr_un::sun_path)) - 1;
    socket = path(QStringLiteral("server.sock"));
    if (QFile::encodeName(socket).size() > room) {
        if (!socketFolder)
            socketFolder.reset(new QTemporaryDir(QStringLiteral("/tmp/talvenhr-XXXXXX")));
        if (!socketFolder->isValid()) {
            *error = QStringLiteral("cannot make a folder for the server's socket: %1")
                         .arg(socketFolder->errorString());
            return false;
        }
        socket = socketFolder->filePath(QStringLiteral("server.sock"));
    }
    // For others who want to join the server.
    return writeFile(socketNotePath(), QFile::encodeName(socket), error);
}
