// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the gate itself does its work.
#include "host/status/gatestate.h"

#include "host/gate/incoming.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>

#include <cerrno>

#include <signal.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateState)
};

/// A number that another program has by now is not the gate.
bool runs(qint64 process, const QString &program)
{
    if (::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH)
        return false;
    const QString file = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process));
    return file.isEmpty() || program.isEmpty() || QFileInfo(file).fileName() == program;
}

bool isAtWork(const QDir &folder)
{
    qint64 process = 0;
    QString host;
    QString program;
    const QLockFile lock(folder.filePath(QStringLiteral("lock")));
    if (!lock.getLockInfo(&process, &host, &program))
        return false;
    const bool isElsewhere = !host.isEmpty() && host != QSysInfo::machineHostName();
    return isElsewhere || runs(process, program);
}

/// The gate removes "work" at its end, before its lock.
void readStop(const QDir &folder, GateState *state)
{
    const auto work = [&folder] { return QFileInfo(folder.filePath(QStringLiteral("work"))); };
    if (!work().isDir())
        return;
    state->isAtWork = isAtWork(folder);
    const QFileInfo left = work();
    if (!state->isAtWork && left.isDir())
        state->stopped = left.lastModified();
}

void readFailure(const QDir &folder, GateState *state)
{
    QFile file(folder.filePath(QStringLiteral("failed")));
    if (!file.exists())
        return;
    const bool isOpen = file.open(QIODevice::ReadOnly);
    state->failed = QDateTime::fromString(QString::fromUtf8(file.readLine()).trimmed(),
                                          Qt::ISODate);
    if (!state->failed.isValid())
        state->failed = QFileInfo(file).lastModified();
    state->failure = QString::fromUtf8(file.readLine()).trimmed();
    if (state->failure.isEmpty())
        state->failure = isOpen ? Text::tr("it gives no reason")
                                : Text::tr("its reason is closed to this user");
}

void readDeliveries(const StatusSources &sources, const QDateTime &now, GateState *state)
{
    QVector<Delivery> deliveries;
    QStringList waiting;
    state->isWithoutIncoming = !sources.incoming.isEmpty() && !QDir(sources.incoming).exists();
    const IncomingWishes wishes {sources.incoming, sources.pattern, Completeness::Rename, 0};
    if (sources.incoming.isEmpty() || findDeliveries(wishes, now, &deliveries, &waiting))
        return;
    state->deliveries = deliveries.size();
    for (const Delivery &delivery : qAsConst(deliveries)) {
        // Whoever copies it may have set back its time.
        const QDateTime since = qMax(delivery.time, delivery.changed);
        if (!state->waitsSince.isValid() || since < state->waitsSince)
            state->waitsSince = since;
    }
}

} // namespace

GateState readGateState(const StatusSources &sources, const QDateTime &now)
{
    GateState state;
    readDeliveries(sources, now, &state);
    if (sources.state.isEmpty())
        return state;
    readStop(QDir(sources.state), &state);
    readFailure(QDir(sources.state), &state);
    return state;
}
