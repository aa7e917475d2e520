// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The gate: the end of a road, and who is told of it.
#include "host/gate/gate.h"

#include "host/base/zonedtext.h"
#include "host/gate/hook.h"
#include "host/gate/lateness.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};
} // namespace

Failure Gate::finish(const Delivery &delivery, GateRecord record, GateResult *result)
{
    const Failure failure = remove(delivery);
    tell(&record, result);
    result->decided.append(record);
    return failure;
}

/// Of a road that a gate has not brought to its end.
Failure Gate::finishAgain(const Delivery &delivery, const GateRecord &record, GateResult *result)
{
    const bool isNamed = std::any_of(
        result->decided.cbegin(), result->decided.cend(),
        [&record](const GateRecord &other) { return other.name == record.name; });
    if (record.outcome != GateRecord::Refused)
        result->news.append(Text::tr("%1 was decided on before (%2); its delivery goes now")
                                .arg(record.exported.name, record.name));
    else if (!isNamed)
        result->decided.append(record);
    return remove(delivery);
}

/// The end of every road: whoever is killed before it comes here again.
Failure Gate::remove(const Delivery &delivery)
{
    step("remove");
    // Another one may have been delivered under the same name.
    return delivery.stays || !isUnchanged(delivery) ? Failure() : removeDelivery(delivery);
}

/// Calls the hook, once. Nobody has to do anything about an export without news.
void Gate::tell(GateRecord *record, GateResult *result)
{
    if (record->isTold)
        return;
    step("hook");
    if (record->outcome == GateRecord::Refused && !record->isNothingNew)
        runHook(settings.refusedHook, gateRecordJson(*record), result);
    else if (record->outcome == GateRecord::Passed)
        runHook(settings.passedHook, gateRecordJson(*record), result);
    step("told");
    record->isTold = true;
    if (const Failure failure = archive.keep(*record))
        result->warnings.append(Text::tr("%1; the hook will be called again").arg(failure.text));
}

/// What a gate that was killed has decided, and told nobody.
void Gate::tellAgain(GateResult *result)
{
    const QVector<GateRecord> records = archive.records();
    for (GateRecord record : records) {
        if (record.isTold || record.outcome == GateRecord::Passing)
            continue;
        tell(&record, result);
        if (record.outcome == GateRecord::Refused)
            result->decided.append(record);
    }
}

void Gate::runHook(const QString &command, const QByteArray &json, GateResult *result) const
{
    if (command.isEmpty())
        return;
    const QString trouble = ::runHook(command, json, hookSeconds);
    if (!trouble.isEmpty())
        result->warnings.append(Text::tr("the hook '%1': %2").arg(command, trouble));
}

/// Told by a hook once for each delivery that was the last one, and once where none ever came.
void Gate::lookForLateness(GateResult *result)
{
    const QVector<GateRecord> &records = archive.records();
    const QDateTime since = nothingSince(records, settings.state);
    if (settings.lateAfter == 0 || !since.isValid())
        return;
    const qint64 hours = since.secsTo(QDateTime::currentDateTime()) / 3600;
    if (hours < settings.lateAfter)
        return;
    result->isLate = true;
    if (wasLatenessTold(records, settings.state))
        return;
    const QString when = zonedText(since);
    result->warnings.append(
        records.isEmpty()
            ? Text::tr("no export was delivered for %1 hours, since the gate first ran on %2")
                  .arg(hours)
                  .arg(when)
            : Text::tr("no export was delivered for %1 hours; the last one came on %2")
                  .arg(hours)
                  .arg(when));
    step("late");
    runHook(settings.lateHook, records.isEmpty() ? "null\n" : gateRecordJson(records.constLast()),
            result);
    if (const Failure failure = noteLateness(records, settings.state))
        result->warnings.append(failure.text);
}
