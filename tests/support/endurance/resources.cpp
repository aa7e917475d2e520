// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the process holds: handles, threads, connections, objects, memory.
#include "support/endurance/resources.h"

#include "support/patience.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QThread>

#include <cstdio>
#include <malloc.h>
#include <mutex>

// Qt's door for debuggers, exported by its core library: slots 3 and 4 are called with every
// QObject that is made and destroyed.
extern quintptr Q_CORE_EXPORT qtHookData[];

namespace {

const int addObjectHook = 3;
const int removeObjectHook = 4;

std::mutex objectsMutex;

/// Never destroyed: objects go also after main().
QSet<QObject *> &objects()
{
    static auto *const set = new QSet<QObject *>;
    return *set;
}

void addObject(QObject *object)
{
    const std::lock_guard<std::mutex> guard(objectsMutex);
    objects().insert(object);
}

void removeObject(QObject *object)
{
    const std::lock_guard<std::mutex> guard(objectsMutex);
    objects().remove(object);
}

int entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

/// A line of /proc/self/status, in bytes.
qint64 statusLine(const QByteArray &label)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(label))
            return line.mid(label.size()).simplified().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

qint64 heapInUse()
{
    if (!heapIsMeasured())
        return 0;
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks + info.hblkhd);
}

} // namespace

Resources Resources::now()
{
    Resources resources;
    // The reading of the folder has a handle of its own.
    resources.handles = entriesOf(QStringLiteral("/proc/self/fd")) - 1;
    resources.threads = entriesOf(QStringLiteral("/proc/self/task"));
    resources.connections = QSqlDatabase::connectionNames().size();
    resources.objects = livingObjects().size();
    resources.heapBytes = heapInUse();
    return resources;
}

Resources Resources::withThreads(int expectedThreads)
{
    const QDeadlineTimer deadline(longestWait);
    while (entriesOf(QStringLiteral("/proc/self/task")) > expectedThreads && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    return now();
}

QString countsOf(const Resources &resources)
{
    return QStringLiteral("%1 handles, %2 threads, %3 connections, %4 objects")
        .arg(resources.handles)
        .arg(resources.threads)
        .arg(resources.connections)
        .arg(resources.objects);
}

void printFigures(const QString &line)
{
    std::printf("FIGURE : %s\n", qPrintable(line));
    std::fflush(stdout);
}

bool heapIsMeasured()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return false;
#else
    return true;
#endif
#else
    return true;
#endif
}

bool heapIsExact()
{
    return heapIsMeasured() && qgetenv("GLIBC_TUNABLES").contains("arena_max=1:")
        && qgetenv("GLIBC_TUNABLES").contains("tcache_count=0");
}

qint64 residentBytes()
{
    return statusLine("VmRSS:");
}

qint64 peakResidentBytes()
{
    return statusLine("VmHWM:");
}

void countObjects()
{
    qtHookData[addObjectHook] = reinterpret_cast<quintptr>(&addObject);
    qtHookData[removeObjectHook] = reinterpret_cast<quintptr>(&removeObject);
}

QSet<QObject *> livingObjects()
{
    const std::lock_guard<std::mutex> guard(objectsMutex);
    QSet<QObject *> copy = objects();
    copy.detach();
    return copy;
}

int deleteObjectsSince(const QSet<QObject *> &before)
{
    const QSet<QObject *> since = livingObjects() - before;
    QVector<QObject *> roots;
    for (QObject *object : since) {
        if (!object->parent())
            roots.append(object);
    }
    for (QObject *object : qAsConst(roots))
        delete object;
    return since.size() - (livingObjects() - before).size();
}
