// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The road of an export from its delivery to the place where the plugin finds it.
#include "host/gate/gate.h"

#include "host/base/ownerfile.h"
#include "host/base/zonedtext.h"
#include "host/gate/lateness.h"
#include "host/gate/placestays.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};

const int clockTolerance = 60; // seconds

} // namespace

bool GateResult::hasRefused() const
{
    return std::any_of(decided.cbegin(), decided.cend(), [](const GateRecord &record) {
        return record.outcome == GateRecord::Refused;
    });
}

Gate::Gate(const GateSettings &gateSettings) :
    settings(gateSettings),
    archive(gateSettings.archive, gateSettings.refused),
    placement(gateSettings.place),
    work(gateSettings.state),
    lock(gateSettings.state)
{ }

Gate::~Gate()
{
    if (lock.isHeld())
        work.remove();
}

Failure Gate::run(GateResult *result)
{
    if (const Failure failure = open(result))
        return failure;
    if (const Failure failure = refuseForeign(result))
        return failure;
    const Failure failure = takeDeliveries(result);
    archive.removeOlderThan(settings.keepDays, QDateTime::currentDateTime());
    lookForLateness(result);
    return failure;
}

/// Nothing is made beside a folder that somebody has misspelt.
Failure Gate::open(GateResult *result)
{
    if (const Failure failure = checkIncoming(settings.incoming.folder))
        return failure;
    if (const Failure failure = makeOwnerFolder(settings.state))
        return failure;
    if (const Failure failure = lock.take())
        return failure;
    if (const Failure failure = archive.open())
        return failure;
    for (const QString &path : archive.unreadable())
        result->warnings.append(
            QFileInfo(path).isReadable()
                ? Text::tr("the record '%1' is damaged; its export counts as never seen").arg(path)
                : Text::tr("the record '%1' is closed to this user; its export counts as never "
                           "seen; give it back with 'sudo chown %2 %1'")
                      .arg(path, QFileInfo(settings.state).owner()));
    const QVector<GateRecord> &records = archive.records();
    const QDateTime soon = QDateTime::currentDateTime().addSecs(clockTolerance);
    if (!records.isEmpty() && records.constLast().when > soon)
        result->warnings.append(Text::tr("the last record is of %1, which is still to come; see "
                                         "whether the clock of this machine is right")
                                    .arg(zonedText(records.constLast().when)));
    if (const Failure failure = noteGateBegin(settings.state, QDateTime::currentDateTime()))
        result->warnings.append(
            Text::tr("%1; where no export ever comes, it is not known to be late")
                .arg(failure.text));
    lookAtPlace(result);
    return recover(result);
}

/// Before anything is changed there: when the plugin took the last export is known by it.
void Gate::lookAtPlace(GateResult *result) const
{
    const GateRecord *last = archive.lastPassed();
    if (!last)
        return;
    const QDateTime folderChanged = QFileInfo(QFileInfo(placement.path()).path()).lastModified();
    if (const Failure failure = notePlace(settings.state, last->name,
                                          archive.wasPlacedLast(placement.digest()), folderChanged,
                                          QDateTime::currentDateTime()))
        result->warnings.append(Text::tr("%1; 'talvenhr status' knows less exactly when the last "
                                         "pass ran")
                                    .arg(failure.text));
}

/// Ends what a gate that was killed has begun. What is not in place begins anew while its delivery
/// is still there: what the plugin may have read is read once more then, and nothing is lost.
Failure Gate::recover(GateResult *result)
{
    const QVector<GateRecord> records = archive.records();
    for (GateRecord record : records) {
        if (record.outcome != GateRecord::Passing)
            continue;
        const bool isPrepared = placement.isPrepared(record.name);
        if (isPrepared || (placement.digest() != record.placedDigest && isStillThere(record))) {
            if (!isPrepared)
                result->news.append(
                    (record.release
                         ? Text::tr("a gate that did not end had prepared %1, which is "
                                    "not in place; if it is to be read, release it again")
                         : Text::tr("a gate that did not end had prepared %1, which is "
                                    "not in place; it is looked at anew"))
                        .arg(record.exported.name));
            archive.forget(record);
            continue;
        }
        record.outcome = GateRecord::Passed;
        if (const Failure failure = archive.keep(record))
            return failure;
        result->news.append(Text::tr("%1 had been put in place by a gate that did not end; it is "
                                     "recorded now")
                                .arg(record.exported.name));
    }
    placement.removePrepared();
    const auto isDecided = [this](const Delivery &delivery) {
        return archive.madeOf(delivery.name, delivery.time, digestOfFile(delivery.path)) != nullptr;
    };
    returnTaken(settings.incoming.folder, isDecided);
    returnTaken(QFileInfo(placement.path()).path(), isDecided);
    if (const Failure failure = work.make())
        return failure;
    tellAgain(result);
    return {};
}

/// Where it was delivered, or among those that were refused and a person lets through.
bool Gate::isStillThere(const GateRecord &record) const
{
    const Delivery delivered = deliveryOf(
        QDir(settings.incoming.folder).filePath(record.exported.name));
    if (delivered.time == record.fileTime && digestOfFile(delivered.path) == record.exported.digest)
        return true;
    const QVector<GateRecord> &records = archive.records();
    return std::any_of(records.cbegin(), records.cend(), [&](const GateRecord &other) {
        return other.outcome == GateRecord::Refused
            && other.exported.digest == record.exported.digest
            && QFileInfo::exists(archive.path(other, QStringLiteral(".export")));
    });
}

/// What somebody else has put in place goes the way of a delivery that was refused: the plugin
/// would read it unseen.
Failure Gate::refuseForeign(GateResult *result)
{
    const QString digest = placement.digest();
    if (digest.isEmpty() && placement.exists())
        result->warnings.append(Text::tr("what lies at '%1' cannot be read: nobody knows whether "
                                         "the gate has put it there")
                                    .arg(placement.path()));
    if (digest.isEmpty() || archive.wasPlacedLast(digest))
        return {};
    const Delivery delivery = deliveryOf(placement.path());
    const GateRecord *known = archive.madeOf(delivery.name, delivery.time, digest);
    if (known && known->outcome == GateRecord::Refused)
        return finishAgain(delivery, GateRecord(*known), result);
    GateRecord record;
    if (const Failure failure = takeIn(delivery, &record))
        return failure;
    record.reasons = {{QStringLiteral("foreign"),
                       Text::tr("it lay at importFile, and the gate had not put it there"),
                       Text::tr("deliver exports into '%1'; to let this one through, release it")
                           .arg(settings.incoming.folder)}};
    if (const Failure failure = refuse(&record))
        return failure;
    return finish(delivery, record, result);
}

Failure Gate::takeDeliveries(GateResult *result)
{
    QVector<Delivery> deliveries;
    if (const Failure failure = findDeliveries(settings.incoming, QDateTime::currentDateTime(),
                                               &deliveries, &result->waiting))
        return failure;
    if (const Failure failure = removeLeftOver(result))
        return failure;
    for (const Delivery &delivery : qAsConst(deliveries)) {
        const GateRecord *ended = archive.madeOf(delivery.name, delivery.time,
                                                 digestOfFile(delivery.path));
        // Nothing older goes through where nothing could be said of a newer one.
        if (const Failure failure = ended ? finishAgain(delivery, GateRecord(*ended), result)
                                          : decide(delivery, {}, result))
            return {failure.exitCode,
                    Text::tr("%1; '%2' stays for the next time").arg(failure.text, delivery.path)};
    }
    return {};
}

/// A gate that was killed has removed its ".done", and not the delivery itself. One that came since
/// has changed since.
Failure Gate::removeLeftOver(GateResult *result)
{
    if (settings.incoming.complete != Completeness::Done)
        return {};
    const QStringList names = result->waiting;
    for (const QString &name : names) {
        const Delivery delivery = deliveryOf(QDir(settings.incoming.folder).filePath(name));
        const GateRecord *ended = archive.madeOf(name, delivery.time, digestOfFile(delivery.path));
        if (!ended || delivery.changed > ended->when)
            continue;
        result->waiting.removeOne(name);
        if (const Failure failure = finishAgain(delivery, GateRecord(*ended), result))
            return failure;
    }
    return {};
}

void Gate::step(const char *name) const
{
    if (atStep)
        atStep(name);
}
