// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The processes that this one has started.
#include "host/base/childprocesses.h"

#include <QDir>
#include <QFile>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The arguments stand in it with a NUL behind each.
QString commandOf(const QByteArray &pid)
{
    QByteArray line = contentOf(QStringLiteral("/proc/%1/cmdline").arg(QString::fromLatin1(pid)));
    line.replace('\0', ' ');
    return QString::fromLocal8Bit(line).trimmed();
}

} // namespace

QVector<RunningChild> runningChildren()
{
    QVector<RunningChild> children;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    const QStringList threads = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        const QByteArray pids = contentOf(tasks.filePath(thread + QStringLiteral("/children")));
        const QList<QByteArray> list = pids.simplified().split(' ');
        for (const QByteArray &pid : list) {
            const QString command = pid.isEmpty() ? QString() : commandOf(pid);
            if (!command.isEmpty()) // one that has ended has none
                children.append({pid.toLongLong(), command});
        }
    }
    return children;
}
