// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a private server: whose it is, whether it is in use, and what lies where in it.
#include "host/server/privatefolder.h"

#include "host/server/folderowner.h"
#include "host/server/leftprocess.h"
#include "host/server/serverlog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PrivateFolder)
};

const int leftServerPatience = 30000; // milliseconds
const int firstPatience = 1000; // milliseconds
const int secondPatience = 5000; // milliseconds
// The server takes paths of up to 512 bytes, and some longer ones end in a crash; below its data
// the names of tables need their room.
const int longestPath = 400; // bytes

QString markerName()
{
    return QStringLiteral("talvenhr-private-db");
}

QString completeName()
{
    return QStringLiteral("data.complete");
}

QString systemsWord(int number)
{
    return QString::fromLocal8Bit(std::strerror(number));
}

bool writeFile(const QString &path, const QByteArray &text, QString *error)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
        return true;
    *error = withRemedy(Text::tr("cannot write '%1': %2").arg(path, file.errorString()));
    return false;
}

bool isEmptyFolder(const QString &path)
{
    return QDir(path).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden
                              | QDir::System);
}

/// 0, or the system's number for what is in the way.
int makeFolders(const QString &path, mode_t mode)
{
    const QString parent = QFileInfo(path).path();
    if (!QFileInfo::exists(parent)) {
        if (const int trouble = makeFolders(parent, 0777))
            return trouble;
    }
    return ::mkdir(QFile::encodeName(path).constData(), mode) == 0 ? 0 : errno;
}

/// Whether the system takes the path for a socket, and the database driver as one of its options.
bool isFitForSocket(const QString &path)
{
    const int room = static_cast<int>(sizeof(sockaddr_un::sun_path)) - 1;
    return QFile::encodeName(path).size() <= room && !path.contains(QLatin1Char(';'))
        && path == path.simplified();
}

} // namespace

PrivateFolder::PrivateFolder(const QString &name) :
    directory(QDir::cleanPath(QFileInfo(name).absoluteFilePath()))
{ }

PrivateFolder::~PrivateFolder()
{
    release();
}

bool PrivateFolder::take(QString *error)
{
    release();
    inUse = false;
    if (makeOrRecognise(error) && checkOwner(error) && lockIt(error) && makeTemporaryFolder(error)
        && waitForLeftServer(error) && findSocketPath(error))
        return true;
    release();
    return false;
}

bool PrivateFolder::isKnown(QString *error) const
{
    if (isMarked())
        return true;
    const QFileInfo info(directory);
    if (info.exists() && !info.isDir())
        *error = Text::tr("'%1' is not a folder").arg(directory);
    else if (::access(QFile::encodeName(directory).constData(), R_OK | X_OK) != 0
             && errno == EACCES)
        *error = Text::tr("cannot look into '%1': %2%3")
                     .arg(directory, systemsWord(EACCES), keeperText(directory));
    else if (info.exists() && !isEmptyFolder(directory))
        *error = Text::tr("'%1' holds other files and no private database; name the folder of one "
                          "with --private-db")
                     .arg(directory);
    else
        *error = Text::tr("there is no private database in '%1'; 'talvenhr run' makes one")
                     .arg(directory);
    return false;
}

void PrivateFolder::release()
{
    lock.reset();
    leave();
    if (handle >= 0)
        ::close(handle);
    handle = -1;
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

bool PrivateFolder::join()
{
    return lockJoiners(LOCK_SH);
}

void PrivateFolder::leave()
{
    if (joiners >= 0)
        ::close(joiners);
    joiners = -1;
}

bool PrivateFolder::shutOthersOut()
{
    return lockJoiners(LOCK_EX);
}

/// The lock goes with the process at the latest. Without the file there is nothing to agree on.
bool PrivateFolder::lockJoiners(int operation)
{
    if (joiners < 0)
        joiners = ::open(QFile::encodeName(joinersPath()).constData(), O_RDONLY | O_CLOEXEC);
    return joiners < 0 || ::flock(joiners, operation | LOCK_NB) == 0;
}

bool PrivateFolder::hasData() const
{
    return QFileInfo::exists(path(completeName())) && QFileInfo(dataPath()).isDir();
}

bool PrivateFolder::setHasData(QString *error) const
{
    return writeFile(path(completeName()), "The data folder was made to its end.\n", error);
}

bool PrivateFolder::clearData(QString *error) const
{
    QFile::remove(path(completeName()));
    if (QDir(dataPath()).removeRecursively())
        return true;
    *error = Text::tr("cannot remove the unfinished data in '%1'; remove them by hand")
                 .arg(dataPath());
    return false;
}

QString PrivateFolder::path(const QString &name) const
{
    return directory + QLatin1Char('/') + name;
}

bool PrivateFolder::isMarked() const
{
    return QFileInfo::exists(path(markerName()));
}

bool PrivateFolder::makeOrRecognise(QString *error) const
{
    const int length = QFile::encodeName(directory).size();
    if (length > longestPath) {
        *error = Text::tr("the path '%1' is %2 bytes long, and a private server takes no more "
                          "than %3; name a shorter one")
                     .arg(directory)
                     .arg(length)
                     .arg(longestPath);
        return false;
    }
    const QFileInfo info(directory);
    if (!info.exists())
        return make(error);
    if (!info.isDir()) {
        *error = Text::tr("'%1' is not a folder").arg(directory);
        return false;
    }
    if (isMarked() || !info.isReadable())
        return true; // whose it is comes next
    if (isEmptyFolder(directory))
        return takeEmpty(error);
    *error = Text::tr("'%1' holds other files and no private database; name an empty or a new "
                      "folder")
                 .arg(directory);
    return false;
}

bool PrivateFolder::make(QString *error) const
{
    if (const int trouble = makeFolders(directory, 0700)) {
        *error = withRemedy(Text::tr("cannot make the folder '%1': %2%3")
                                .arg(directory, systemsWord(trouble), keeperText(directory)));
        return false;
    }
    return mark(error);
}

bool PrivateFolder::takeEmpty(QString *error) const
{
    if (!isOwn(directory))
        return true; // which checkOwner() tells
    // The administrator of the server has no password, so nobody else may get at the socket.
    if (::chmod(QFile::encodeName(directory).constData(), 0700) == 0)
        return mark(error);
    *error = Text::tr("cannot keep others out of '%1': %2").arg(directory, systemsWord(errno));
    return false;
}

/// The marker comes first of all, so that a folder broken off at any later moment is still known as
/// ours.
bool PrivateFolder::mark(QString *error) const
{
    return writeFile(path(markerName()),
                     "This folder belongs to talvenhr: a private MariaDB server.\n", error);
}

/// Also the superuser keeps away: what they leave in a folder of somebody else, its owner cannot
/// use.
bool PrivateFolder::checkOwner(QString *error) const
{
    if (!isOwn(directory)) {
        *error = Text::tr("'%1' belongs to %2, and only its owner can use it as a private "
                          "database; you are %3: become %2, or name another folder")
                     .arg(directory, ownerOf(directory), currentUser());
        return false;
    }
    const QString foreign = foreignFileIn(directory);
    if (foreign.isEmpty())
        return true;
    *error = Text::tr("'%1' belongs to %2, so the private database in '%3' does not work for %4; "
                      "let an administrator run: chown -R %4 '%3'")
                 .arg(foreign, ownerOf(foreign), directory, currentUser());
    return false;
}

bool PrivateFolder::lockIt(QString *error)
{
    lock.reset(new QLockFile(lockPath()));
    // No age makes a lock stale, only the end of its process.
    lock->setStaleLockTime(0);
    if (lock->tryLock(0))
        return true;
    inUse = lock->error() == QLockFile::LockFailedError;
    if (inUse) {
        *error = Text::tr("the private database '%1' is in use by %2; wait for its end, or name "
                          "another folder")
                     .arg(directory, holderText());
        return false;
    }
    const QString trouble = writeTroubleIn(directory);
    *error = withRemedy(
        Text::tr("cannot lock the private database '%1': %2")
            .arg(directory, trouble.isEmpty() ? Text::tr("no reason given") : trouble));
    return false;
}

/// "process 4711 (talvenhr) since 2026-11-22 08:15"
QString PrivateFolder::holderText() const
{
    qint64 pid = 0;
    QString machine;
    QString program;
    if (!lock->getLockInfo(&pid, &machine, &program))
        return Text::tr("a process that is just starting");
    const QString since
        = QFileInfo(lockPath()).lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    const QString process = Text::tr("process %1 (%2) since %3").arg(pid).arg(program, since);
    return machine.isEmpty() || machine == QSysInfo::machineHostName()
        ? process
        : Text::tr("%1 on the machine %2").arg(process, machine);
}

bool PrivateFolder::makeTemporaryFolder(QString *error) const
{
    const QByteArray encoded = QFile::encodeName(temporaryPath());
    if (::mkdir(encoded.constData(), 0700) == 0 || errno == EEXIST)
        return true;
    *error = withRemedy(
        Text::tr("cannot make the folder '%1': %2").arg(temporaryPath(), systemsWord(errno)));
    return false;
}

/// After a host that was killed its server still needs a moment to end. One that was making data
/// has nobody to end for, and would go on for ever on a full disk. One that was only starting when
/// the host died may have missed that it is to end, and is told again; it may also have got stuck
/// over it, and then nothing but its death helps, which costs no data.
bool PrivateFolder::waitForLeftServer(QString *error) const
{
    QElapsedTimer timer;
    timer.start();
    bool toldAgain = false;
    for (QVector<qint64> left = processesIn(dataPath()); !left.isEmpty();
         left = processesIn(dataPath())) {
        if (timer.elapsed() > leftServerPatience) {
            *error = Text::tr("a server left behind, process %1, still works in '%2' after %3 s; "
                              "end it first")
                         .arg(left.first())
                         .arg(dataPath())
                         .arg(leftServerPatience / 1000);
            return false;
        }
        const bool tellAgain = !toldAgain && timer.elapsed() > firstPatience;
        const bool isStuck = timer.elapsed() > secondPatience;
        for (const qint64 process : qAsConst(left)) {
            if (isStuck || isMakingData(process))
                ::kill(static_cast<pid_t>(process), SIGKILL);
            else if (tellAgain)
                ::kill(static_cast<pid_t>(process), SIGTERM);
        }
        toldAgain = toldAgain || tellAgain;
        QThread::msleep(10);
    }
    return true;
}

bool PrivateFolder::findSocketPath(QString *error)
{
    const QString name = QStringLiteral("server.sock");
    socket = path(name);
    if (!isFitForSocket(socket)) {
        // A way that ends with this process leaves nothing to tidy up.
        handle = ::open(QFile::encodeName(directory).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        const QString way = QStringLiteral("/proc/%1/fd/%2").arg(::getpid()).arg(handle);
        if (handle < 0 || !QFileInfo(way).isDir()) {
            *error = Text::tr("the path '%1' is too long for a socket, or holds a ';' or two "
                              "blanks in a row; name another folder")
                         .arg(directory);
            return false;
        }
        socket = way + QLatin1Char('/') + name;
    }
    // For others who want to join the server. Made here, it is the owner's in any case.
    return writeFile(joinersPath(), QByteArray(), error)
        && writeFile(socketNotePath(), QFile::encodeName(socket), error);
}
