// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the process holds: handles, threads, connections, objects, memory.
#pragma once

#include <QSet>
#include <QString>
#include <QVector>

class QObject;

/// What the process holds at one moment.
struct Resources
{
    static Resources now();
    /// Waits until there are no more threads than these: the system takes a thread off its list a
    /// moment after Qt has seen its end. If they do not go, the result says so.
    static Resources withThreads(int expectedThreads);

    int handles; ///< open file descriptors
    int threads;
    int connections; ///< database connections registered with Qt
    int objects; ///< living QObjects made since countObjects(), 0 without it
    qint64 heapBytes; ///< handed out by the allocator; 0 where heapIsMeasured() is false
};

/// Handles, threads, connections and objects in one line; a test compares these.
QString countsOf(const Resources &resources);

/// Writes a line of figures to the standard output, past the log.
void printFigures(const QString &line);

/// False where a sanitizer has put an allocator of its own in place.
bool heapIsMeasured();

/// Without the allocator's pools for each thread and its caches, which come and go with threads.
/// CTest runs the tests so.
bool heapIsExact();

/// Bytes of the process in memory, now and at most so far.
qint64 residentBytes();
qint64 peakResidentBytes();

/// Begins to count QObjects, in all threads and libraries, until the end of the process.
void countObjects();
/// The living ones among those made since countObjects().
QSet<QObject *> livingObjects();
/// Deletes those that live now, did not live then and have no parent, with their children. Only for
/// objects of the calling thread. The number of objects that went.
int deleteObjectsSince(const QSet<QObject *> &before);
