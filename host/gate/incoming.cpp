// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Exports that were delivered.
#include "host/gate/incoming.h"

#include "host/gate/exportdate.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Incoming)
};

const QString doneEnding = QStringLiteral(".done");

/// As programs call what they are still writing, and the sign that they are not.
bool isSideFile(const QString &name)
{
    static const QStringList endings {doneEnding, QStringLiteral(".tmp"), QStringLiteral(".part"),
                                      QStringLiteral(".filepart"), QStringLiteral("~")};
    return std::any_of(endings.cbegin(), endings.cend(),
                       [&name](const QString &ending) { return name.endsWith(ending); });
}

/// A copying program may set back the time of the last writing, but not that of the last change.
bool standsStill(const QFileInfo &file, int seconds, const QDateTime &now)
{
    const QDateTime last = qMax(file.lastModified(), file.metadataChangeTime());
    return last.secsTo(now) >= seconds;
}

int rightsOf(const QString &path)
{
    struct stat found;
    return ::stat(QFile::encodeName(path).constData(), &found) == 0
        ? static_cast<int>(found.st_mode & 0777U)
        : 0;
}

bool isComplete(const QFileInfo &file, const IncomingWishes &wishes, const QDateTime &now)
{
    switch (wishes.complete) {
    case Completeness::Rename:
        return true;
    case Completeness::Done:
        return QFileInfo::exists(file.filePath() + doneEnding);
    case Completeness::Still:
        break;
    }
    return standsStill(file, wishes.stillFor, now);
}

QString takenFolder(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral(".talvenhr-taken"));
}

bool isRenamed(const QString &path, const QString &target)
{
    return std::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData())
        == 0;
}

/// One that was delivered since under its name is newer, and has taken its place.
void putBack(const QString &taken, const QString &path)
{
    const QByteArray from = QFile::encodeName(taken);
    const QByteArray to = QFile::encodeName(path);
    if (::link(from.constData(), to.constData()) == 0 || errno == EEXIST)
        ::unlink(from.constData());
    else // a file system without links
        isRenamed(taken, path);
}

} // namespace

bool completenessOfName(const QString &name, Completeness *complete)
{
    static const QStringList names {QStringLiteral("rename"), QStringLiteral("done"),
                                    QStringLiteral("still")};
    const int place = names.indexOf(name);
    if (place >= 0)
        *complete = static_cast<Completeness>(place);
    return place >= 0;
}

Failure checkIncoming(const QString &path)
{
    const QDir folder(path);
    if (!folder.exists())
        return {ExitUsage,
                Text::tr("there is no folder of deliveries '%1'; make it, or correct 'incoming' in "
                         "[gate]")
                    .arg(path)};
    if (!folder.isReadable())
        return {ExitUsage,
                Text::tr("the folder of deliveries '%1' is closed to this user; it belongs to %2")
                    .arg(path, QFileInfo(path).owner())};
    return {};
}

Failure findDeliveries(const IncomingWishes &wishes, const QDateTime &now,
                       QVector<Delivery> *deliveries, QStringList *waiting)
{
    if (const Failure failure = checkIncoming(wishes.folder))
        return failure;
    const QDir folder(wishes.folder);
    const QFileInfoList files = folder.entryInfoList({wishes.pattern}, QDir::Files);
    for (const QFileInfo &file : files) {
        if (isSideFile(file.fileName()))
            continue;
        if (isComplete(file, wishes, now))
            deliveries->append(deliveryOf(file.filePath()));
        else
            waiting->append(file.fileName());
    }
    QVector<DatedFile> ages;
    for (const Delivery &delivery : qAsConst(*deliveries))
        ages.append({delivery.name, delivery.time});
    std::sort(deliveries->begin(), deliveries->end(),
              [order = AgeOrder(ages)](const Delivery &one, const Delivery &other) {
                  return order.isOlder({other.name, other.time}, {one.name, one.time});
              });
    return {};
}

Delivery deliveryOf(const QString &path)
{
    const QFileInfo file(path);
    return {path,
            file.fileName(),
            file.lastModified(),
            file.metadataChangeTime(),
            file.size(),
            rightsOf(path),
            false};
}

bool isUnchanged(const Delivery &delivery)
{
    const Delivery now = deliveryOf(delivery.path);
    return now.time == delivery.time && now.changed == delivery.changed
        && now.size == delivery.size;
}

Failure removeDelivery(const Delivery &delivery)
{
    const QFileInfo file(delivery.path);
    const QString folder = takenFolder(file.path());
    const QString taken = QDir(folder).filePath(file.fileName());
    // First of all: the next one of the name, half written, must not find it.
    QFile::remove(delivery.path + doneEnding);
    errno = 0;
    const bool isTaken = file.isSymLink()
        ? QFile::remove(delivery.path) // what it leads to is not the gate's
        : QDir().mkpath(folder) && isRenamed(delivery.path, taken);
    const QString reason = QString::fromLocal8Bit(std::strerror(errno));
    if (QFileInfo::exists(taken)) {
        const Delivery found = deliveryOf(taken);
        // Its last change is the renaming.
        if (found.time == delivery.time && found.size == delivery.size)
            QFile::remove(taken);
        else
            putBack(taken, delivery.path);
    }
    QDir().rmdir(folder);
    if (isTaken || !QFileInfo::exists(delivery.path))
        return {};
    return {ExitUsage,
            Text::tr("cannot remove '%1': %2; remove it by hand, or it will be looked at again")
                .arg(delivery.path, reason)};
}

void returnTaken(const QString &folder,
                 const std::function<bool(const Delivery &delivery)> &isDecided)
{
    const QDir taken(takenFolder(folder));
    const QFileInfoList files = taken.entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files) {
        const QString path = QDir(folder).filePath(file.fileName());
        if (isDecided(deliveryOf(file.filePath())))
            QFile::remove(file.filePath());
        else
            putBack(file.filePath(), path);
    }
    QDir().rmdir(taken.path());
}
