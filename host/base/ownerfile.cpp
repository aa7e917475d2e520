// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file about people: for its owner only, unless others are let in.
#include "host/base/ownerfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(OwnerFile)
};

const int partSize = 1 << 20; // bytes

Failure cannotWrite(const QString &path, const QString &reason)
{
    return {ExitUsage, Text::tr("cannot write '%1': %2").arg(path, reason)};
}

/// What the system says; QSaveFile forgets it.
QString systemError(const QSaveFile &file)
{
    return errno == 0 ? file.errorString() : QString::fromLocal8Bit(std::strerror(errno));
}

Failure checkOutputFile(const QString &path, const QStringList &inputs)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return cannotWrite(
            path, info.isDir() ? Text::tr("it is a folder") : Text::tr("it is no regular file"));
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir())
        return cannotWrite(path, Text::tr("there is no folder '%1'").arg(folder.filePath()));
    if (!folder.isWritable() || !folder.isExecutable())
        return cannotWrite(path,
                           Text::tr("the folder '%1' is closed to this user; it belongs to %2")
                               .arg(folder.filePath(), folder.owner()));
    for (const QString &input : inputs) {
        const QString canonical = QFileInfo(input).canonicalFilePath();
        if (!canonical.isEmpty() && canonical == info.canonicalFilePath())
            return cannotWrite(path, Text::tr("'%1' is read, and would be lost").arg(input));
    }
    return {};
}

QFileDevice::Permissions permissionsFor(FileReaders readers)
{
    QFileDevice::Permissions permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    if (readers != FileReaders::Nobody)
        permissions |= QFileDevice::ReadGroup;
    if (readers == FileReaders::Everybody)
        permissions |= QFileDevice::ReadOther;
    return permissions;
}

} // namespace

Failure checkOutputFiles(const QStringList &outputs, const QStringList &inputs)
{
    QStringList taken = inputs;
    taken.removeAll(QString());
    QStringList written;
    for (const QString &output : outputs) {
        if (output.isEmpty())
            continue;
        if (const Failure failure = checkOutputFile(output, taken))
            return failure;
        const QString path = QFileInfo(output).absoluteFilePath();
        if (written.contains(path))
            return cannotWrite(output, Text::tr("two options name it"));
        written.append(path);
    }
    return {};
}

Failure makeOwnerFolder(const QString &folder)
{
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    QDir().mkpath(QFileInfo(path).path());
    const int error = ::mkdir(QFile::encodeName(path).constData(), 0700) == 0 ? 0 : errno;
    const QFileInfo info(path);
    if (error == EEXIST && !info.isDir())
        return {ExitUsage, Text::tr("'%1' is no folder; name another one").arg(folder)};
    if (error != 0 && error != EEXIST)
        return {ExitUsage,
                Text::tr("the folder '%1' cannot be made: %2").arg(folder, qt_error_string(error))};
    if (!info.isWritable() || !info.isExecutable())
        return {ExitUsage,
                Text::tr("the folder '%1' is closed to this user; it belongs to %2")
                    .arg(folder, info.owner())};
    return {};
}

Failure copyToOwnerFile(const QString &source, const QString &target)
{
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(source, from.errorString())};
    return fillOwnerFile(target, [&from](QIODevice *file) {
        while (!from.atEnd()) {
            const QByteArray part = from.read(partSize);
            // A file that cannot be read is never at its end.
            if (part.isEmpty())
                return Failure {
                    ExitUsage,
                    Text::tr("cannot read '%1': %2").arg(from.fileName(), from.errorString())};
            if (file->write(part) < 0)
                return Failure(); // the file knows why
        }
        return Failure();
    });
}

void writeFolderOut(const QString &folder)
{
    const int handle = ::open(QFile::encodeName(folder).constData(),
                              O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    ::fsync(handle);
    ::close(handle);
}

Failure writeOwnerFile(const QString &path, const std::function<void(QIODevice *file)> &write,
                       FileReaders readers)
{
    return fillOwnerFile(
        path,
        [&write](QIODevice *file) {
            write(file);
            return Failure();
        },
        readers);
}

Failure fillOwnerFile(const QString &path, const std::function<Failure(QIODevice *file)> &fill,
                      FileReaders readers)
{
    if (const Failure failure = checkOutputFile(path, {}))
        return failure;
    QSaveFile file(path);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(permissionsFor(readers)))
        return cannotWrite(path, file.errorString());
    errno = 0;
    if (const Failure failure = fill(&file)) {
        file.cancelWriting();
        return failure;
    }
    // A flush that fails does not keep commit() from replacing the file.
    if (!file.flush() || file.error() != QFileDevice::NoError) {
        const QString reason = systemError(file);
        file.cancelWriting();
        return cannotWrite(path, reason);
    }
    if (!file.commit())
        return cannotWrite(path, systemError(file));
    return {};
}
