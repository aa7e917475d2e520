// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The running server whose export command a process is.
#include "host/gate/pluginserver.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What the system tells of one process.
struct ProcessFacts
{
    qint64 parent = 0; ///< 0 if there is none, or no such process
    qint64 start = 0; ///< ticks since the machine's start
};

ProcessFacts factsOf(qint64 process, const QString &proc)
{
    const QByteArray stat = contentOf(QStringLiteral("%1/%2/stat").arg(proc).arg(process));
    // The name, between parentheses, may hold blanks and parentheses itself.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return {fields.value(1).toLongLong(), fields.value(19).toLongLong()};
}

QDateTime machineStart(const QString &proc)
{
    const QList<QByteArray> lines = contentOf(proc + QStringLiteral("/stat")).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("btime "))
            return QDateTime::fromSecsSinceEpoch(line.mid(6).toLongLong());
    }
    return {};
}

/// A file as the maps of processes name it.
class MappedFile
{
public:
    explicit MappedFile(const QString &file);

    bool isRunBy(qint64 process, const QString &proc) const;

private:
    bool isIn(const QByteArray &line) const;

    QByteArray path;
    QByteArray place; ///< device and inode; empty if there is no file
};

MappedFile::MappedFile(const QString &file)
{
    const QFileInfo info(file);
    const QString canonical = info.canonicalFilePath();
    path = QFile::encodeName(canonical.isEmpty() ? info.absoluteFilePath() : canonical);
    struct stat found;
    if (::stat(path.constData(), &found) == 0)
        place = QStringLiteral("%1:%2 %3")
                    .arg(major(found.st_dev), 2, 16, QLatin1Char('0'))
                    .arg(minor(found.st_dev), 2, 16, QLatin1Char('0'))
                    .arg(found.st_ino)
                    .toLatin1();
    path.replace('\n', "\\012"); // as the maps have it
}

bool MappedFile::isRunBy(qint64 process, const QString &proc) const
{
    const QList<QByteArray> lines = contentOf(QStringLiteral("%1/%2/maps").arg(proc).arg(process))
                                        .split('\n');
    for (const QByteArray &line : lines) {
        if (isIn(line))
            return true;
    }
    return false;
}

/// "BEGIN-END r-xp OFFSET 08:01 1234   /path": of code only, for a look at a file maps it as well.
bool MappedFile::isIn(const QByteArray &line) const
{
    const QList<QByteArray> fields = line.split(' ');
    if (fields.size() < 6 || !fields.at(1).contains('x'))
        return false;
    if (!place.isEmpty() && fields.at(3) + ' ' + fields.at(4) == place)
        return true;
    const int name = line.indexOf('/');
    return name >= 0 && (line.mid(name) == path || line.mid(name) == path + " (deleted)");
}

} // namespace

std::optional<PluginServer> pluginServerAbove(qint64 process, const QString &pluginFile,
                                              const QString &proc)
{
    const MappedFile plugin(pluginFile);
    const long ticks = ::sysconf(_SC_CLK_TCK);
    for (qint64 pid = factsOf(process, proc).parent; pid > 0; pid = factsOf(pid, proc).parent) {
        if (plugin.isRunBy(pid, proc))
            return PluginServer {
                pid, machineStart(proc).addMSecs(factsOf(pid, proc).start * 1000 / ticks)};
    }
    return {};
}

std::optional<PluginServer> pluginServerAbove(const QString &pluginFile)
{
    return pluginServerAbove(QCoreApplication::applicationPid(), pluginFile);
}
