// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The gate: the end of a road, and who is told of it.
#include "host/gate/gate.h"

#include "host/base/ownerfile.h"
#include "host/gate/hook.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};

const int hookSeconds = 30;

} // namespace

Failure Gate::finish(const Delivery &delivery, const GateRecord &record, GateResult *result)
{
    result->decided.append(record);
    return end(delivery, record, result);
}

/// Of a road that a gate has not brought to its end.
Failure Gate::finishAgain(const Delivery &delivery, const GateRecord &record, GateResult *result)
{
    if (record.outcome == GateRecord::Refused)
        return finish(delivery, record, result);
    result->news.append(Text::tr("%1 was decided on before (%2); its delivery goes now")
                            .arg(record.exported.name, record.name));
    return end(delivery, record, result);
}

/// The end of every road: whoever is killed before it comes here again.
Failure Gate::end(const Delivery &delivery, const GateRecord &record, GateResult *result)
{
    step("hook");
    callHook(record, result);
    step("remove");
    // Another one may have been delivered under the same name.
    return delivery.stays || !isUnchanged(delivery) ? Failure() : removeDelivery(delivery);
}

void Gate::callHook(const GateRecord &record, GateResult *result) const
{
    if (record.outcome == GateRecord::Superseded)
        return;
    const QString &command = record.outcome == GateRecord::Refused ? settings.refusedHook
                                                                   : settings.passedHook;
    if (command.isEmpty())
        return;
    const QString trouble = runHook(command, gateRecordJson(record), hookSeconds);
    if (!trouble.isEmpty())
        result->warnings.append(Text::tr("the hook '%1': %2").arg(command, trouble));
}

/// Told by a hook once for each delivery that was the last one.
void Gate::lookForLateness(GateResult *result)
{
    if (settings.lateAfter == 0 || archive.records().isEmpty())
        return;
    const GateRecord &last = archive.records().constLast();
    const qint64 hours = last.when.secsTo(QDateTime::currentDateTime()) / 3600;
    if (hours < settings.lateAfter)
        return;
    result->isLate = true;
    QFile marker(QDir(settings.state).filePath(QStringLiteral("late")));
    const QByteArray name = last.name.toUtf8();
    if (marker.open(QIODevice::ReadOnly) && marker.readAll() == name)
        return;
    marker.close();
    result->warnings.append(Text::tr("no export was delivered for %1 hours; the last one came on "
                                     "%2")
                                .arg(hours)
                                .arg(last.when.toString(Qt::ISODate)));
    if (!settings.lateHook.isEmpty()) {
        const QString trouble = runHook(settings.lateHook, gateRecordJson(last), hookSeconds);
        if (!trouble.isEmpty())
            result->warnings.append(Text::tr("the hook '%1': %2").arg(settings.lateHook, trouble));
    }
    if (const Failure failure = writeOwnerFile(marker.fileName(),
                                               [&name](QIODevice *file) { file->write(name); }))
        result->warnings.append(failure.text);
}
